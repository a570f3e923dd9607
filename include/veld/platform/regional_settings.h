// RegionalSettings: what a user's locale says about writing dates, times and
// numbers, in the form a Windows user of that locale sees in the control
// panel. Format (veld/runtime/format.h), CDate and the list views read them
// from Platform::Regional().
//
// Date and time patterns are Windows pictures, case-sensitive: d dd (day),
// ddd dddd (weekday name), M MM MMM MMMM (month), y yy yyyy (year), h hh
// (12-hour), H HH (24-hour), m mm (minute), s ss (second), t tt (first letter
// of / whole AM or PM designator) and 'quoted literal text'; anything else
// is written as it stands.
#ifndef VELD_PLATFORM_REGIONAL_SETTINGS_H_
#define VELD_PLATFORM_REGIONAL_SETTINGS_H_

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "veld/export.h"

namespace veld {

struct RegionalSettings {
  // The locale as a BCP 47 tag ("en-US", "de-DE").
  std::string locale_id = "en-US";

  std::string short_date_pattern = "M/d/yyyy";
  std::string long_date_pattern = "dddd, MMMM d, yyyy";
  std::string long_time_pattern = "h:mm:ss tt";
  std::string am_designator = "AM";
  std::string pm_designator = "PM";

  std::string decimal_symbol = ".";
  std::string grouping_symbol = ",";
  std::string list_separator = ",";
  std::string date_separator = "/";
  std::string time_separator = ":";

  std::string currency_symbol = "$";
  // Where the symbol goes, by the Windows numbers: positive 0 "$1", 1 "1$",
  // 2 "$ 1", 3 "1 $"; negative 0 "($1)", 1 "-$1", 2 "$-1", 3 "$1-",
  // 4 "(1$)", 5 "-1$", 6 "1-$", 7 "1$-", 8 "-1 $", 9 "-$ 1", 10 "1 $-",
  // 11 "$ 1-", 12 "$ -1", 13 "1- $", 14 "($ 1)", 15 "(1 $)".
  int32_t currency_positive_format = 0;
  int32_t currency_negative_format = 0;
  int32_t currency_digits = 2;

  // 1 Sunday ... 7 Saturday, as Format's firstDayOfWeek counts.
  int32_t first_day_of_week = 1;

  // January first; Sunday first.
  std::array<std::string, 12> month_names{};
  std::array<std::string, 12> abbreviated_month_names{};
  std::array<std::string, 7> day_names{};
  std::array<std::string, 7> abbreviated_day_names{};
};

// The settings of a locale, from the system's locale data (ICU on POSIX,
// GetLocaleInfoEx on Windows). `locale_id` is a BCP 47 tag or a POSIX
// locale name ("de-DE", "de_DE", "de_DE.UTF-8"); "", "C" and "POSIX" give
// en-US. A locale the system does not know gives its nearest parent's
// settings (ultimately the root locale's). Results are cached and shared.
VELD_EXPORT std::shared_ptr<const RegionalSettings> RegionalSettingsForLocale(
    std::string_view locale_id);

// The locale named by the POSIX environment: the first of LC_ALL, LC_TIME
// and LANG that is set and not empty, as a BCP 47 tag; "en-US" when none is
// set or the name is "C" or "POSIX".
VELD_EXPORT std::string ProcessLocaleId();

}  // namespace veld

#endif  // VELD_PLATFORM_REGIONAL_SETTINGS_H_
