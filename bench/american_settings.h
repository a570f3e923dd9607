// En-US regional settings installed through the platform, once per process,
// so that benchmarks measure the same formats on every machine.
#ifndef VELD_BENCH_AMERICAN_SETTINGS_H_
#define VELD_BENCH_AMERICAN_SETTINGS_H_

#include <memory>

#include "veld/platform/platform.h"
#include "veld/platform/regional_settings.h"

namespace veld_bench {

class AmericanPlatform : public veld::ForwardingPlatform {
 public:
  std::shared_ptr<const veld::RegionalSettings> Regional() override { return settings_; }

 private:
  std::shared_ptr<const veld::RegionalSettings> settings_ =
      veld::RegionalSettingsForLocale("en-US");
};

inline void InstallAmerican() {
  static AmericanPlatform* platform = [] {
    auto* p = new AmericanPlatform();
    veld::InstallPlatform(p);
    return p;
  }();
  static_cast<void>(platform);
}

}  // namespace veld_bench

#endif  // VELD_BENCH_AMERICAN_SETTINGS_H_
