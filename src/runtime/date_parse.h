// Text to date by the regional settings (the reading behind CDate and
// IsDate, described in veld/runtime/format.h).
#ifndef VELD_RUNTIME_DATE_PARSE_H_
#define VELD_RUNTIME_DATE_PARSE_H_

#include <optional>
#include <string_view>

namespace veld {

struct RegionalSettings;

// The date serial that `text` names, or nullopt when it names no date.
// `current_year` stands in for a missing year; 0 means this year.
std::optional<double> ParseDateText(std::string_view text, const RegionalSettings& regional,
                                    int current_year = 0);

}  // namespace veld

#endif  // VELD_RUNTIME_DATE_PARSE_H_
