// Writing one value through a compiled format section.
#ifndef VELD_RUNTIME_FORMAT_RENDER_H_
#define VELD_RUNTIME_FORMAT_RENDER_H_

#include <string>

#include "runtime/format_pattern.h"

namespace veld {

struct RegionalSettings;

namespace format_internal {

// Appends `magnitude` (finite, not negative) written through `section`. The
// caller writes any sign.
void RenderNumber(const NumberSection& section, double magnitude, const RegionalSettings& regional,
                  std::string& out);

// Appends the date `serial` (a valid date serial) written through `items`.
// first_day_of_week is 1 (Sunday) to 7; first_week_of_year 1 to 3.
void RenderDate(const DateSection& items, double serial, const RegionalSettings& regional,
                int first_day_of_week, int first_week_of_year, std::string& out);

// The general date form: the short date, the long time, or both.
void RenderGeneralDate(double serial, const RegionalSettings& regional, std::string& out);

// The regional named forms, compiled once per settings object.
struct RegionalPictures {
  const RegionalSettings* owner = nullptr;
  DateSection short_date;
  DateSection long_date;
  DateSection long_time;
};
const RegionalPictures& PicturesOf(const RegionalSettings& regional);

}  // namespace format_internal
}  // namespace veld

#endif  // VELD_RUNTIME_FORMAT_RENDER_H_
