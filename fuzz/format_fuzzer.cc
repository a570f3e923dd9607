// Feeds arbitrary values and patterns to Format under five locales. The
// first byte chooses the value's kind and the locale, the second the first
// day of week and first week of year; the rest is the value's text and the
// pattern, split at the first NUL. Format must return or raise one of the
// classic errors (5, 6, 13), and its output must stay bounded by the pattern
// and the value, never grow without limit.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "veld/platform/platform.h"
#include "veld/platform/regional_settings.h"
#include "veld/runtime/automation_error.h"
#include "veld/runtime/format.h"

#include "fuzz_support.h"

namespace {

using veld_fuzz::Check;

veld::Variant ValueOf(uint8_t kind, std::string_view text) {
  double number = 0;
  int32_t whole = 0;
  std::memcpy(&number, text.data(), std::min(text.size(), sizeof number));
  std::memcpy(&whole, text.data(), std::min(text.size(), sizeof whole));
  // A serial anywhere near the date range, out-of-range ones included.
  const double serial = static_cast<double>(whole) / 256.0;
  switch (kind % 8) {
    case 0:
      return veld::Variant();
    case 1:
      return veld::Variant::Null();
    case 2:
      return veld::Variant(!text.empty());
    case 3:
      return veld::Variant(whole);
    case 4:
      return veld::Variant(number);
    case 5:
      return veld::Variant::Date(serial);
    default:
      return veld::Variant(std::string(text));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 2) return 0;
  static const char* const kLocales[] = {"en-US", "en-GB", "de-DE", "fr-FR", "ja-JP"};
  veld_fuzz::LocalePlatform& platform = veld_fuzz::LocalePlatform::Installed();
  platform.Use(kLocales[(data[0] >> 3) % 5]);
  const int first_day = data[1] % 8;
  const int first_week = (data[1] >> 3) % 4;
  const std::string_view rest(reinterpret_cast<const char*>(data) + 2, size - 2);
  const size_t cut = rest.find('\0');
  const std::string_view text = rest.substr(0, cut);
  const std::string_view pattern = cut == std::string_view::npos ? "" : rest.substr(cut + 1);
  const veld::Variant value = ValueOf(data[0], text);
  try {
    const veld::Variant result = veld::Format(value, pattern, first_day, first_week);
    if (!result.IsNull()) {
      // Every pattern character yields at most a long date or a long number.
      Check(result.AsString().size() <= 512 * (pattern.size() + 1) + 4 * text.size() + 1024);
    }
  } catch (const veld::AutomationError& error) {
    const int32_t number = error.Number();
    Check(number == 5 || number == 6 || number == 13);
  }
  return 0;
}
