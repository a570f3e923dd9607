// KvoOption: Encode and Decode, which swallow every failure.
#include "options/value_encoding.h"
#include "veld/options/kvo_option.h"
#include "veld/runtime/automation_error.h"

namespace veld {

namespace oi = options_internal;

namespace {

// Runs `body` on the text of `value` and returns what it gives; on any
// failure returns the text as far as it was obtained ("" when even that
// failed). The thread's current runtime error is left as it was.
template <class Body>
std::string SwallowingFailures(const Variant& value, Body&& body) noexcept {
  std::string result;
  ErrorInfo before;
  try {
    before = Err().Info();
    result = value.ToString();
    result = body(result);
  } catch (...) {
  }
  try {
    Err().Set(before);
  } catch (...) {
  }
  return result;
}

}  // namespace

std::string KvoOption::Encode(const Variant& sEncStr, const std::string& sKey) {
  return SwallowingFailures(sEncStr, [](const std::string& text) {
    return oi::EncodeValue(text, oi::ClockSeededRandom);
  });
}

std::string KvoOption::Decode(const Variant& sEncStr, const std::string& sKey) {
  return SwallowingFailures(
      sEncStr, [](const std::string& text) { return oi::DecodeValue(text).value_or(text); });
}

}  // namespace veld
