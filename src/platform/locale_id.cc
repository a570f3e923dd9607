#include "platform/locale_id.h"

#include <cstdlib>

#include "veld/platform/regional_settings.h"

namespace veld {

std::string NormalizeLocaleId(std::string_view locale_id) {
  std::string tag;
  for (const char c : locale_id) {
    const bool keep = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                      c == '-' || c == '_';
    if (!keep || tag.size() == 64) break;
    tag.push_back(c == '_' ? '-' : c);
  }
  while (!tag.empty() && tag.back() == '-') tag.pop_back();
  if (tag.empty() || tag == "C" || tag == "POSIX") return "en-US";
  return tag;
}

#ifndef _WIN32
// Windows reads the user's locale instead (windows/regional_windows.cc).
std::string ProcessLocaleId() {
  for (const char* name : {"LC_ALL", "LC_TIME", "LANG"}) {
    const char* value = std::getenv(name);
    if (value != nullptr && *value != '\0') return NormalizeLocaleId(value);
  }
  return "en-US";
}
#endif

}  // namespace veld
