// What the fuzz targets share: a check that aborts, a platform with the
// regional settings of a chosen locale, inputs cut into parts, and a scratch
// directory.
#ifndef VELD_FUZZ_FUZZ_SUPPORT_H_
#define VELD_FUZZ_FUZZ_SUPPORT_H_

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <random>
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

// A new directory under the system's temporary directory, removed with its
// contents when the object goes (a static one: at exit).
class ScratchDir {
 public:
  ScratchDir() {
    std::random_device random;
    for (int attempt = 0; path_.empty(); ++attempt) {
      Check(attempt < 100);
      const std::filesystem::path candidate =
          std::filesystem::temp_directory_path() / ("veld-fuzz-" + std::to_string(random()));
      std::error_code error;
      if (std::filesystem::create_directory(candidate, error)) path_ = candidate;
    }
  }
  ~ScratchDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  ScratchDir(const ScratchDir&) = delete;
  ScratchDir& operator=(const ScratchDir&) = delete;

  const std::filesystem::path& path() const { return path_; }
  // The path of `name` inside the directory, as UTF-8 text.
  std::string File(const std::string& name) const {
    const std::u8string text = (path_ / name).u8string();
    return std::string(text.begin(), text.end());
  }

 private:
  std::filesystem::path path_;
};

}  // namespace veld_fuzz

#endif  // VELD_FUZZ_FUZZ_SUPPORT_H_
