// Locale names as the platform hands them to the locale data.
#ifndef VELD_PLATFORM_LOCALE_ID_H_
#define VELD_PLATFORM_LOCALE_ID_H_

#include <string>
#include <string_view>

namespace veld {

// A BCP 47 tag for a locale name: "de_DE.UTF-8@euro" -> "de-DE". "", "C"
// and "POSIX" give "en-US". Characters other than letters, digits, "-" and
// "_" end the name; the result is at most 64 characters.
std::string NormalizeLocaleId(std::string_view locale_id);

}  // namespace veld

#endif  // VELD_PLATFORM_LOCALE_ID_H_
