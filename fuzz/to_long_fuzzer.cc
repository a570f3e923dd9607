// Feeds arbitrary text to the loose numeric test and the text-to-number
// conversions, and checks that they agree with one another: a text is
// numeric exactly when it parses, TryToLong has a value exactly when ToLong
// does not raise (and then the same value), ToLong raises only 6 or 13, and
// the text of a parsed Double reads back as the same number to 15 digits.
// ToLongOrDefault, the helper the worker classes use, must never raise and
// must give the converted value or the default.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/this_utils.h"
#include "runtime/numeric.h"
#include "veld/runtime/automation_error.h"

namespace {

void Check(bool condition) {
  if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);

  const bool numeric = veld::IsNumeric(text);
  const std::optional<double> parsed = veld::ParseNumber(text);
  Check(numeric == parsed.has_value());
  if (parsed) Check(!std::isnan(*parsed));

  const std::optional<int32_t> tried = veld::TryToLong(text);
  int32_t raised = 0;
  int32_t converted = 0;
  try {
    converted = veld::ToLong(text);
  } catch (const veld::AutomationError& error) {
    raised = error.Number();
  }
  Check(tried.has_value() == (raised == 0));
  if (tried) Check(*tried == converted);
  if (!numeric) Check(raised == 13);
  if (numeric) Check(raised == 0 || raised == 6);
  if (tried) Check(std::fabs(*parsed - *tried) <= 0.5);

  // Two different defaults tell a converted value from the default.
  const int32_t with_low = veld::ToLongOrDefault(text, INT32_MIN);
  const int32_t with_high = veld::ToLongOrDefault(text, INT32_MAX);
  if (tried) {
    Check(with_low == *tried && with_high == *tried);
  } else {
    Check(with_low == INT32_MIN && with_high == INT32_MAX);
  }

  const std::optional<int16_t> tried_integer = veld::TryToInteger(text);
  if (tried_integer) Check(numeric);

  if (parsed && std::isfinite(*parsed)) {
    const std::string written = veld::DoubleToText(*parsed);
    const std::optional<double> reread = veld::ParseNumber(written);
    Check(reread.has_value());
    // Rounding to 15 digits may carry the largest Doubles past the range, as
    // it does in the classic runtime.
    if (std::isinf(*reread)) {
      Check(std::fabs(*parsed) > 1.797693134862e308);
      return 0;
    }
    const double tolerance = std::fabs(*parsed) * 1e-14;
    Check(std::fabs(*reread - *parsed) <= tolerance);
  }
  return 0;
}
