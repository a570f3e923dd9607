// Numbers in text by the regional settings' symbols (the reading behind
// Format's text conversion, CLng of a cell and the like).
#ifndef VELD_RUNTIME_LOCALE_NUMBER_H_
#define VELD_RUNTIME_LOCALE_NUMBER_H_

#include <optional>
#include <string_view>

namespace veld {

struct RegionalSettings;

// The value of `text` by the loose numeric syntax (runtime/numeric.h) with
// the locale's decimal symbol, grouping symbol (between digits) and currency
// symbol in place of ".", "," and "$"; nullopt when it is not a number.
std::optional<double> ParseNumberInLocale(std::string_view text, const RegionalSettings& regional);

}  // namespace veld

#endif  // VELD_RUNTIME_LOCALE_NUMBER_H_
