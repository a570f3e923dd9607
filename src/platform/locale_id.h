// Locale names as the platform hands them to the locale data.
#ifndef VELD_PLATFORM_LOCALE_ID_H_
#define VELD_PLATFORM_LOCALE_ID_H_

#include <memory>
#include <string>
#include <string_view>

namespace veld {

// A BCP 47 tag for a locale name: "de_DE.UTF-8@euro" -> "de-DE". "", "C"
// and "POSIX" give "en-US". Characters other than letters, digits, "-" and
// "_" end the name; the result is at most 64 characters.
std::string NormalizeLocaleId(std::string_view locale_id);

struct RegionalSettings;

// The settings of a normalised locale tag from the system's locale data
// (regional_icu.cc on POSIX, windows/regional_windows.cc on Windows);
// RegionalSettingsForLocale caches what it returns.
std::shared_ptr<const RegionalSettings> BuildRegionalSettings(const std::string& tag);

}  // namespace veld

#endif  // VELD_PLATFORM_LOCALE_ID_H_
