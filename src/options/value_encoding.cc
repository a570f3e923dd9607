#include "options/value_encoding.h"

#include <chrono>
#include <cmath>
#include <cstdint>
#include <functional>
#include <random>
#include <thread>

#include "runtime/code_page.h"
#include "runtime/numeric.h"

namespace veld::options_internal {

namespace {

constexpr char kOpenMark[] = "-e";
constexpr char kCloseMark[] = "e-";
constexpr char kHexDigits[] = "0123456789ABCDEF";

// The value of one hexadecimal digit (either case), or -1.
int HexDigitValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

// The byte that two hexadecimal digits give, or -1.
int HexPairValue(std::string_view pair) {
  const int high = HexDigitValue(pair[0]);
  const int low = HexDigitValue(pair[1]);
  if (high < 0 || low < 0) return -1;
  return high * 16 + low;
}

}  // namespace

double ClockSeededRandom() {
  thread_local std::mt19937_64 generator([] {
    const auto ticks = std::chrono::system_clock::now().time_since_epoch().count();
    // Threads started in the same clock tick still get different sequences.
    return static_cast<uint64_t>(ticks) ^ std::hash<std::thread::id>()(std::this_thread::get_id());
  }());
  // 53 random bits give every double of [0, 1) on an even grid, never 1.
  return static_cast<double>(generator() >> 11) * 0x1.0p-53;
}

std::string Hex2(int value) {
  std::string digits;
  if (value >= 16) digits += kHexDigits[(value >> 4) & 0xF];
  digits += kHexDigits[value & 0xF];
  if (digits.size() < 2) digits.insert(0, "0");
  return digits;
}

std::string EncodeValue(std::string_view text, const RandomSource& random) {
  if (text.empty()) return "";
  const std::string bytes = ToAnsiBytes(text);
  const int mask = static_cast<int>(RoundHalfEven(random() * 220 + 4));
  std::string body = Hex2(mask);
  body.reserve(2 * (bytes.size() + 6));
  for (auto it = bytes.rbegin(); it != bytes.rend(); ++it) {
    body += Hex2(static_cast<unsigned char>(*it) ^ mask);
  }
  const int filler_count = static_cast<int>(std::floor(random() * 5));
  std::string filler;
  for (int i = 0; i < filler_count; ++i) {
    // Each new filler byte goes in front of the ones before it.
    filler.insert(0, Hex2(static_cast<int>(RoundHalfEven(random() * 200 + 3))));
  }
  return kOpenMark + filler + body + Hex2(filler_count) + kCloseMark;
}

std::optional<std::string> DecodeValue(std::string_view text) {
  if (text.size() < 4 || text.substr(0, 2) != kOpenMark ||
      text.substr(text.size() - 2) != kCloseMark) {
    return std::nullopt;
  }
  const std::string_view body = text.substr(2, text.size() - 4);
  if (body.size() < 2) return std::nullopt;
  const int filler_count = HexPairValue(body.substr(body.size() - 2));
  if (filler_count < 0) return std::nullopt;
  const size_t filler_length = 2 * static_cast<size_t>(filler_count);
  if (filler_length + 2 > body.size()) return std::nullopt;
  std::string_view work = body.substr(filler_length, body.size() - filler_length - 2);
  if (work.size() < 2) return std::nullopt;
  const int mask = HexPairValue(work.substr(0, 2));
  if (mask < 0) return std::nullopt;
  work.remove_prefix(2);
  // Encode never writes an empty value or half a byte; such a body is not one
  // of its texts.
  if (work.empty() || work.size() % 2 != 0) return std::nullopt;
  const size_t count = work.size() / 2;
  std::string bytes(count, '\0');
  for (size_t i = 0; i < count; ++i) {
    const int value = HexPairValue(work.substr(2 * i, 2));
    if (value < 0) return std::nullopt;
    bytes[count - 1 - i] = static_cast<char>(value ^ mask);
  }
  return FromAnsiBytes(bytes);
}

}  // namespace veld::options_internal
