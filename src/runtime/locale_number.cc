#include "runtime/locale_number.h"

#include <string>

#include "runtime/numeric.h"
#include "veld/platform/regional_settings.h"

namespace veld {

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

// The locale's symbols are mapped to the classic ones and the loose numeric
// syntax does the rest.
std::optional<double> ParseNumberInLocale(std::string_view text, const RegionalSettings& regional) {
  if (regional.decimal_symbol == "." && regional.grouping_symbol == "," &&
      regional.currency_symbol == "$")
    return ParseNumber(text);
  std::string mapped;
  mapped.reserve(text.size());
  size_t i = 0;
  auto at = [&](const std::string& symbol) {
    return !symbol.empty() && text.compare(i, symbol.size(), symbol) == 0;
  };
  while (i < text.size()) {
    if (at(regional.decimal_symbol)) {
      mapped.push_back('.');
      i += regional.decimal_symbol.size();
    } else if (at(regional.grouping_symbol) && i > 0 && IsDigit(text[i - 1]) &&
               i + regional.grouping_symbol.size() < text.size() &&
               IsDigit(text[i + regional.grouping_symbol.size()])) {
      // Only between digits, since the symbol may be a blank (fr-FR).
      mapped.push_back(',');
      i += regional.grouping_symbol.size();
    } else if (at(regional.currency_symbol)) {
      mapped.push_back('$');
      i += regional.currency_symbol.size();
    } else if (text[i] == '.' || text[i] == ',') {
      return std::nullopt;  // the other locale's symbols mean nothing here
    } else {
      mapped.push_back(text[i++]);
    }
  }
  return ParseNumber(mapped);
}

}  // namespace veld
