// Numbers in text the way the classic automation runtime reads and writes
// them: the loose numeric test (IsNumeric), conversion of text to numbers
// (CDbl, CLng, CInt), rounding half to even, the text of a Double (CStr) and
// the classic Hex.
//
// The loose numeric syntax, with en-US separators. A text is numeric when it
// is, in this order:
//   1. any run of blanks (space U+0020 and tab U+0009);
//   2. leading decorations, in any order, each at most once and each
//      followed by optional blanks: a sign "+" or "-", an opening "(", a
//      currency sign "$". A sign and a parenthesis never go together;
//   3. the number, either
//      - decimal: digits, where a thousands separator "," may stand between
//        two digits of the integer part ("1,234", also "1,2,3"); then an
//        optional "." with optional digits; at least one digit overall
//        ("5.", ".5" and "5" are numbers, "." is not); then an optional
//        exponent "e" or "E", an optional sign and at least one digit, or
//      - radix: "&H" / "&h" and hexadecimal digits, or "&O" / "&o" and octal
//        digits, with a value of at most 32 bits (0xFFFFFFFF);
//   4. trailing decorations, in any order, each at most once, with blanks
//      anywhere between them: a sign (only when step 2 had none and there is
//      no parenthesis: "5-" is -5), the closing ")" (required when step 2
//      opened one, forbidden otherwise), a "$" (when step 2 had none);
//   5. the end of the text.
// "(5)" is -5, "()" is not numeric; "" / "." / "-" / "1.2.3" / "12abc" /
// "+ +0" / "0x10" / "1e" are not numeric. The "D" exponent and the locale's
// own separators are not accepted.
//
// Radix values: the digits give an unsigned 32-bit value. As a Double or a
// Long a value above 0x7FFFFFFF is the 32-bit two's complement ("&HFFFFFFFF"
// is -1, "&HFFFFF060" is -4000) while smaller values are not sign-extended
// ("&HF060" is 61536); as an Integer a value of at most 0xFFFF is the 16-bit
// two's complement ("&HFFFF" is -1). A leading or trailing "-" then negates.
#ifndef VELD_RUNTIME_NUMERIC_H_
#define VELD_RUNTIME_NUMERIC_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace veld {

class Variant;

// True when `text` is numeric by the loose syntax above.
bool IsNumeric(std::string_view text);

// The value of a numeric text, or nullopt when the text is not numeric.
// A magnitude beyond the Double range gives an infinity (the conversions
// below then raise 6 "Overflow"); one below it gives 0.
std::optional<double> ParseNumber(std::string_view text);

// Rounds to the nearest whole number, halves to the even neighbour
// (0.5 -> 0, 1.5 -> 2, -2.5 -> -2). Infinities and NaN are returned as they are.
double RoundHalfEven(double value);

// CDbl of text: raises 13 "Type mismatch" when the text is not numeric and
// 6 "Overflow" when its magnitude is beyond the Double range.
double ToDouble(std::string_view text);

// CLng of text: parsed, rounded half to even, then range-checked. Raises
// 13 "Type mismatch" when the text is not numeric, 6 "Overflow" when the
// rounded value is outside -2147483648..2147483647.
int32_t ToLong(std::string_view text);
// The same conversion without raising: nullopt on either failure.
std::optional<int32_t> TryToLong(std::string_view text);

// CInt of text: like ToLong with the range -32768..32767.
int16_t ToInteger(std::string_view text);
std::optional<int16_t> TryToInteger(std::string_view text);

// CLng / CInt of a Double: rounded half to even; raises 6 "Overflow" when
// out of range or not a number.
int32_t DoubleToLong(double value);
int16_t DoubleToInteger(double value);

// The text of a Double as the classic runtime writes it (CStr): at most 15
// significant digits, no trailing zeros, "." as decimal separator, no
// thousands separators. Numbers whose decimal exponent is below -4 or at least
// 15 use the exponent form "d.dddE+XX" with at least two exponent digits:
// 0.0001 -> "0.0001", 0.00001 -> "1E-05", 1E+15 -> "1E+15",
// 123456789012345 -> "123456789012345". -0 gives "0". Infinities and NaN
// give the classic C runtime's "1.#INF", "-1.#INF" and "-1.#IND".
std::string DoubleToText(double value);

// The hexadecimal digits of `value` taken as a two's complement number of
// `width_bits` bits (8, 16, 32 or 64): upper case, no prefix, no leading zeros,
// "0" for zero. HexString(-1, 16) is "FFFF", HexString(-1, 32) "FFFFFFFF",
// HexString(459, 32) "1CB". Bits above the width are ignored.
std::string HexString(int64_t value, int width_bits);

// The classic Hex of a Variant. The width follows the held kind: Byte 8 bits,
// Integer and Boolean 16 bits, everything else is first converted to a Long
// (CLng: half to even, raising 6 "Overflow" or 13 "Type mismatch") and
// written with 32 bits. Empty gives "0"; Null raises 94 "Invalid use of Null"
// (the classic Hex returns Null, which a string cannot hold), Missing raises
// 13 "Type mismatch".
std::string Hex(const Variant& value);

}  // namespace veld

#endif  // VELD_RUNTIME_NUMERIC_H_
