// The --locale option of the veld commands: while a LocaleScope lives, the
// library formats and reads dates by the named locale's regional settings;
// without the option the process locale stays.
#ifndef VELD_TOOLS_VELD_LOCALE_SCOPE_H_
#define VELD_TOOLS_VELD_LOCALE_SCOPE_H_

#include <memory>
#include <string>

#include "veld/platform/platform.h"
#include "veld/platform/regional_settings.h"

#include "cli.h"

namespace veld::cli {

class LocaleScope {
 public:
  explicit LocaleScope(const Args& args) {
    if (!args.Has("locale")) return;
    platform_ = std::make_unique<LocalePlatform>(RegionalSettingsForLocale(args.Get("locale")));
    scope_ = std::make_unique<ScopedPlatform>(*platform_);
  }

 private:
  class LocalePlatform : public ForwardingPlatform {
   public:
    explicit LocalePlatform(std::shared_ptr<const RegionalSettings> settings)
        : settings_(std::move(settings)) {}
    std::shared_ptr<const RegionalSettings> Regional() override { return settings_; }

   private:
    std::shared_ptr<const RegionalSettings> settings_;
  };

  std::unique_ptr<LocalePlatform> platform_;
  std::unique_ptr<ScopedPlatform> scope_;
};

}  // namespace veld::cli

#endif  // VELD_TOOLS_VELD_LOCALE_SCOPE_H_
