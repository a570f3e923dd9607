// A platform whose regional settings are those of a chosen locale, so that
// tests never depend on the machine's own.
#ifndef VELD_TESTS_SUPPORT_LOCALE_PLATFORM_H_
#define VELD_TESTS_SUPPORT_LOCALE_PLATFORM_H_

#include <memory>
#include <string>

#include "veld/platform/platform.h"
#include "veld/platform/regional_settings.h"

namespace veld::testing {

class LocalePlatform : public ForwardingPlatform {
 public:
  explicit LocalePlatform(const std::string& locale_id)
      : settings_(RegionalSettingsForLocale(locale_id)) {}
  explicit LocalePlatform(std::shared_ptr<const RegionalSettings> settings)
      : settings_(std::move(settings)) {}
  std::shared_ptr<const RegionalSettings> Regional() override { return settings_; }

 private:
  std::shared_ptr<const RegionalSettings> settings_;
};

// Installs the settings of `locale_id` for the lifetime of the scope.
class ScopedLocale {
 public:
  explicit ScopedLocale(const std::string& locale_id) : platform_(locale_id), scope_(platform_) {}

 private:
  LocalePlatform platform_;
  ScopedPlatform scope_;
};

}  // namespace veld::testing

#endif  // VELD_TESTS_SUPPORT_LOCALE_PLATFORM_H_
