// What the fuzz targets share: a check that aborts, a platform with the
// regional settings of a chosen locale, and inputs cut into parts.
#ifndef VELD_FUZZ_FUZZ_SUPPORT_H_
#define VELD_FUZZ_FUZZ_SUPPORT_H_

#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "veld/platform/platform.h"
#include "veld/platform/regional_settings.h"

namespace veld_fuzz {

inline void Check(bool condition) {
  if (!condition) std::abort();
}

// Installed once for the process; Use() switches its locale.
class LocalePlatform : public veld::ForwardingPlatform {
 public:
  static LocalePlatform& Installed() {
    static LocalePlatform* platform = [] {
      auto* p = new LocalePlatform();
      veld::InstallPlatform(p);
      return p;
    }();
    return *platform;
  }
  void Use(const char* locale_id) { settings_ = veld::RegionalSettingsForLocale(locale_id); }
  std::shared_ptr<const veld::RegionalSettings> Regional() override { return settings_; }

 private:
  std::shared_ptr<const veld::RegionalSettings> settings_ =
      veld::RegionalSettingsForLocale("en-US");
};

// `input` cut at each `separator` into exactly `count` parts (missing ones
// empty, the last one taking the rest).
inline std::vector<std::string> SplitInput(std::string_view input, char separator, size_t count) {
  std::vector<std::string> parts;
  size_t start = 0;
  while (parts.size() + 1 < count) {
    const size_t cut = input.find(separator, start);
    if (cut == std::string_view::npos) break;
    parts.emplace_back(input.substr(start, cut - start));
    start = cut + 1;
  }
  parts.emplace_back(input.substr(std::min(start, input.size())));
  parts.resize(count);
  return parts;
}

}  // namespace veld_fuzz

#endif  // VELD_FUZZ_FUZZ_SUPPORT_H_
