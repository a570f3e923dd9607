// The reversible masking of option values behind KvoOption::Encode and
// KvoOption::Decode.
//
// Encoded form, every byte as two upper-case hexadecimal digits:
//   "-e" | n filler bytes (3..203) | mask k (4..224) |
//   the text's ANSI bytes in reverse order, each XOR k | n (0..4) | "e-"
// It hides a value from a glance at the file; it does not protect it.
#ifndef VELD_OPTIONS_VALUE_ENCODING_H_
#define VELD_OPTIONS_VALUE_ENCODING_H_

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace veld::options_internal {

// Gives uniform random numbers in [0, 1).
using RandomSource = std::function<double()>;

// The generator of the calling thread, seeded from the clock on first use.
double ClockSeededRandom();

// The upper-case hexadecimal digits of `value` (0..255), with a "0" in front
// of a single digit.
std::string Hex2(int value);

// The encoded form of `text`, drawing from `random` the mask, then the
// filler count, then each filler byte (the last drawn is written first).
// "" for "". Raises when the ANSI code page cannot be opened.
std::string EncodeValue(std::string_view text, const RandomSource& random);

// The text an encoded form stands for, or nullopt when `text` is not one:
// marks missing, a body too short for the count and the mask, a count that
// does not fit, a digit that is not hexadecimal, no data byte or half a data
// byte. Raises when the ANSI code page cannot be opened.
std::optional<std::string> DecodeValue(std::string_view text);

}  // namespace veld::options_internal

#endif  // VELD_OPTIONS_VALUE_ENCODING_H_
