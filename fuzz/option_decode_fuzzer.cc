// Decodes arbitrary text as an encoded option value, and encodes it and
// decodes the result. Decode must give its input back unless the input is
// framed by "-e" and "e-"; an encoded text must decode to the input as the
// "ANSI" code page holds it; and the encoded length must follow from the
// data and filler counts. Nothing may crash or raise.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <string>

#include "options/value_encoding.h"
#include "runtime/code_page.h"
#include "veld/options/kvo_option.h"

namespace {

void Check(bool condition) {
  if (!condition) std::abort();
}

bool Framed(const std::string& text) {
  return text.size() >= 4 && text.compare(0, 2, "-e") == 0 &&
         text.compare(text.size() - 2, 2, "e-") == 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  veld::KvoOption option;

  const std::string decoded = option.Decode(text);
  if (!Framed(text)) Check(decoded == text);
  Check(option.GetLastError().empty());

  // A generator fixed by the input keeps runs reproducible.
  std::mt19937_64 generator(size);
  const veld::options_internal::RandomSource random = [&generator] {
    return static_cast<double>(generator() >> 11) * 0x1.0p-53;
  };
  const std::string encoded = veld::options_internal::EncodeValue(text, random);
  if (text.empty()) {
    Check(encoded.empty());
    return 0;
  }
  const std::string bytes = veld::ToAnsiBytes(text);
  Check(Framed(encoded));
  const size_t filler_count = encoded[encoded.size() - 3] - '0';
  Check(filler_count <= 4);
  Check(encoded.size() == 2 * (bytes.size() + filler_count + 2) + 4);
  Check(option.Decode(encoded) == veld::FromAnsiBytes(bytes));
  return 0;
}
