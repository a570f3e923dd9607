// ListView_FormatColumnData over arbitrary type codes and raw texts in three
// locales: it never raises, never returns an empty text, and keeps its fixed
// answers for the codes that have them.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "veld/controls/kvo_data_ctrl_helper.h"
#include "veld/platform/platform.h"
#include "veld/platform/regional_settings.h"

#include "fuzz_support.h"

namespace {

using veld_fuzz::Check;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1) return 0;
  static const char* const kLocales[] = {"en-US", "de-DE", "ja-JP"};
  veld_fuzz::LocalePlatform& platform = veld_fuzz::LocalePlatform::Installed();
  platform.Use(kLocales[data[0] % 3]);
  const std::string_view input(reinterpret_cast<const char*>(data) + 1, size - 1);
  const size_t cut = input.find('\0');
  const std::string raw(input.substr(0, cut));
  const std::string code = cut == std::string_view::npos ? "" : std::string(input.substr(cut + 1));
  for (const std::string& each :
       {code, std::string("b"), std::string("i"), std::string("d"), std::string("t"),
        std::string("dt"), std::string("p"), std::string("s")}) {
    const std::string shown = veld::KvoDataCtrlHelper::ListView_FormatColumnData(raw, each);
    Check(!shown.empty());
    if (raw.empty() || each == "p") Check(shown == " ");
    if (each == "s" && !raw.empty()) Check(shown == raw);
  }
  return 0;
}
