#include "platform/locale_id.h"

#include <cstdlib>
#include <map>
#include <mutex>

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

std::shared_ptr<const RegionalSettings> RegionalSettingsForLocale(std::string_view locale_id) {
  const std::string tag = NormalizeLocaleId(locale_id);
  static std::mutex mutex;
  static auto* cache = new std::map<std::string, std::shared_ptr<const RegionalSettings>>();
  std::lock_guard<std::mutex> lock(mutex);
  auto found = cache->find(tag);
  if (found != cache->end()) return found->second;
  auto settings = BuildRegionalSettings(tag);
  if (cache->size() < 64) cache->emplace(tag, settings);
  return settings;
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
