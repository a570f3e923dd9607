// Feeds arbitrary text to the date reader under five locales. A text that
// reads as a date must give a valid serial, and that date written as
// "yyyy-mm-dd hh:nn:ss" must read back as the same serial in every locale.
// IsDate and CDate must agree with the reader.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "runtime/date_parse.h"
#include "runtime/date_time.h"
#include "veld/platform/platform.h"
#include "veld/platform/regional_settings.h"
#include "veld/runtime/automation_error.h"
#include "veld/runtime/format.h"

#include "fuzz_support.h"

namespace {

using veld_fuzz::Check;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const char* const kLocales[] = {"en-US", "en-GB", "de-DE", "fr-FR", "ja-JP"};
  veld_fuzz::LocalePlatform& platform = veld_fuzz::LocalePlatform::Installed();
  const std::string text(reinterpret_cast<const char*>(data), size);
  for (const char* locale : kLocales) {
    platform.Use(locale);
    const auto serial = veld::ParseDateText(text, *platform.Regional(), 2024);
    if (!serial) continue;
    Check(veld::IsValidDateSerial(*serial));
    const std::string iso = veld::FormatText(veld::Variant::Date(*serial), "yyyy-mm-dd hh:nn:ss");
    for (const char* other : kLocales) {
      const auto again = veld::ParseDateText(iso, *veld::RegionalSettingsForLocale(other), 2024);
      Check(again.has_value() && *again == *serial);
    }
  }
  platform.Use("en-US");
  const bool is_date = veld::IsDate(veld::Variant(text));
  try {
    veld::CDate(veld::Variant(text));
    Check(is_date);
  } catch (const veld::AutomationError& error) {
    Check(!is_date && error.Number() == 13);
  }
  return 0;
}
