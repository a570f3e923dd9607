#include "runtime/numeric.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

#include "veld/runtime/automation_error.h"
#include "veld/runtime/variant.h"

namespace veld {

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t'; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// A text that passed the loose numeric syntax, before conversion.
struct ScannedNumber {
  bool negative = false;
  bool radix = false;
  uint32_t radix_value = 0;
  // Decimal form: the digits with "." and exponent, no sign, no separators.
  std::string decimal;
};

int HexDigitValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// Scans the loose syntax documented in numeric.h over one text.
class NumberScanner {
 public:
  explicit NumberScanner(std::string_view text) : text_(text) {}

  std::optional<ScannedNumber> Scan() {
    SkipBlanks();
    ScanDecorations(/*leading=*/true);
    ScannedNumber result;
    if (!ScanBody(result)) return std::nullopt;
    ScanDecorations(/*leading=*/false);
    if (pos_ != text_.size()) return std::nullopt;
    if (paren_open_ && !paren_closed_) return std::nullopt;
    result.negative = negative_;
    return result;
  }

 private:
  bool AtEnd() const { return pos_ >= text_.size(); }
  char Peek(size_t ahead = 0) const {
    return pos_ + ahead < text_.size() ? text_[pos_ + ahead] : '\0';
  }
  void SkipBlanks() {
    while (!AtEnd() && IsBlank(text_[pos_])) ++pos_;
  }

  // Signs, parentheses and the currency sign around the number, each once.
  void ScanDecorations(bool leading) {
    while (!AtEnd()) {
      const char c = text_[pos_];
      if ((c == '+' || c == '-') && !sign_seen_ && !paren_open_) {
        sign_seen_ = true;
        negative_ = (c == '-');
      } else if (leading && c == '(' && !paren_open_ && !sign_seen_) {
        paren_open_ = true;
        negative_ = true;
      } else if (!leading && c == ')' && paren_open_ && !paren_closed_) {
        paren_closed_ = true;
      } else if (c == '$' && !currency_seen_) {
        currency_seen_ = true;
      } else if (!leading && IsBlank(c)) {
        // Trailing blanks may stand between trailing decorations.
      } else {
        return;
      }
      ++pos_;
      if (leading) SkipBlanks();
    }
  }

  bool ScanBody(ScannedNumber& result) {
    if (Peek() == '&') {
      const char kind = Peek(1);
      if (kind == 'H' || kind == 'h') return ScanRadix(16, result);
      if (kind == 'O' || kind == 'o') return ScanRadix(8, result);
      return false;
    }
    return ScanDecimal(result);
  }

  bool ScanRadix(int radix, ScannedNumber& result) {
    pos_ += 2;
    uint64_t value = 0;
    size_t digits = 0;
    while (!AtEnd()) {
      const int d = HexDigitValue(text_[pos_]);
      if (d < 0 || d >= radix) break;
      value = value * static_cast<uint64_t>(radix) + static_cast<uint64_t>(d);
      if (value > 0xFFFFFFFFull) return false;
      ++digits;
      ++pos_;
    }
    if (digits == 0) return false;
    result.radix = true;
    result.radix_value = static_cast<uint32_t>(value);
    return true;
  }

  bool ScanDecimal(ScannedNumber& result) {
    std::string& digits = result.decimal;
    size_t int_digits = 0;
    while (!AtEnd()) {
      const char c = text_[pos_];
      if (IsDigit(c)) {
        digits.push_back(c);
        ++int_digits;
        ++pos_;
      } else if (c == ',' && int_digits > 0 && IsDigit(Peek(1))) {
        ++pos_;
      } else {
        break;
      }
    }
    size_t frac_digits = 0;
    if (Peek() == '.') {
      ++pos_;
      std::string fraction;
      while (!AtEnd() && IsDigit(text_[pos_])) {
        fraction.push_back(text_[pos_]);
        ++frac_digits;
        ++pos_;
      }
      if (int_digits == 0) digits.push_back('0');
      if (frac_digits > 0) {
        digits.push_back('.');
        digits += fraction;
      }
    }
    if (int_digits + frac_digits == 0) return false;
    if (Peek() == 'e' || Peek() == 'E') {
      size_t ahead = 1;
      if (Peek(ahead) == '+' || Peek(ahead) == '-') ++ahead;
      if (IsDigit(Peek(ahead))) {
        digits.push_back('e');
        if (Peek(1) == '-') digits.push_back('-');
        pos_ += ahead;
        while (!AtEnd() && IsDigit(text_[pos_])) {
          digits.push_back(text_[pos_]);
          ++pos_;
        }
      }
    }
    return true;
  }

  std::string_view text_;
  size_t pos_ = 0;
  bool sign_seen_ = false;
  bool negative_ = false;
  bool paren_open_ = false;
  bool paren_closed_ = false;
  bool currency_seen_ = false;
};

// Whether an out-of-range decimal text overflowed (rather than underflowed):
// its first significant digit sits at a non-negative power of ten.
bool DecimalOverflows(const std::string& decimal) {
  const size_t e = decimal.find('e');
  const std::string_view mantissa = std::string_view(decimal).substr(0, e);
  int64_t exponent = 0;
  if (e != std::string::npos) {
    bool negative = false;
    for (size_t i = e + 1; i < decimal.size(); ++i) {
      if (decimal[i] == '-') {
        negative = true;
      } else if (exponent < 100000000) {
        exponent = exponent * 10 + (decimal[i] - '0');
      }
    }
    if (negative) exponent = -exponent;
  }
  const size_t point = mantissa.find('.');
  const int64_t int_digits =
      static_cast<int64_t>(point == std::string_view::npos ? mantissa.size() : point);
  int64_t first_significant = 0;  // Digit index, ignoring the point.
  bool all_zero = true;
  for (char c : mantissa) {
    if (c == '.') continue;
    if (c != '0') {
      all_zero = false;
      break;
    }
    ++first_significant;
  }
  return !all_zero && int_digits - first_significant - 1 + exponent >= 0;
}

double RadixAsLong(uint32_t value) {
  return value > 0x7FFFFFFFu ? static_cast<double>(value) - 4294967296.0
                             : static_cast<double>(value);
}

std::optional<ScannedNumber> ScanNumber(std::string_view text) {
  return NumberScanner(text).Scan();
}

double ScannedValue(const ScannedNumber& number) {
  double value;
  if (number.radix) {
    value = RadixAsLong(number.radix_value);
  } else {
    const std::string& d = number.decimal;
    const std::from_chars_result r =
        std::from_chars(d.data(), d.data() + d.size(), value, std::chars_format::general);
    if (r.ec == std::errc::result_out_of_range) {
      value = DecimalOverflows(d) ? std::numeric_limits<double>::infinity() : 0.0;
    } else if (r.ec != std::errc()) {
      value = 0.0;  // Not reached: the scanner only lets well-formed digits through.
    }
  }
  return number.negative ? -value : value;
}

// A conversion result: the value, or the error number that CLng / CInt /
// CDbl would raise.
template <class T>
struct Converted {
  T value{};
  int32_t error = 0;
};

Converted<int32_t> ConvertToLong(std::string_view text) {
  const std::optional<ScannedNumber> scanned = ScanNumber(text);
  if (!scanned) return {0, errnum::kTypeMismatch};
  const double rounded = RoundHalfEven(ScannedValue(*scanned));
  if (!(rounded >= -2147483648.0 && rounded <= 2147483647.0)) return {0, errnum::kOverflow};
  return {static_cast<int32_t>(rounded), 0};
}

Converted<int16_t> ConvertToInteger(std::string_view text) {
  const std::optional<ScannedNumber> scanned = ScanNumber(text);
  if (!scanned) return {0, errnum::kTypeMismatch};
  double value;
  if (scanned->radix && scanned->radix_value <= 0xFFFFu) {
    value = static_cast<int16_t>(static_cast<uint16_t>(scanned->radix_value));
    if (scanned->negative) value = -value;
  } else {
    value = RoundHalfEven(ScannedValue(*scanned));
  }
  if (!(value >= -32768.0 && value <= 32767.0)) return {0, errnum::kOverflow};
  return {static_cast<int16_t>(value), 0};
}

}  // namespace

bool IsNumeric(std::string_view text) { return ScanNumber(text).has_value(); }

namespace {

// True for the plainest and by far most common form, "-ddd.ddd" without
// blanks, signs elsewhere, grouping, currency or exponent, which reads the
// same directly as through the scanner.
bool IsPlainDecimal(std::string_view text) {
  size_t i = !text.empty() && text.front() == '-' ? 1 : 0;
  const size_t digits_start = i;
  while (i < text.size() && text[i] >= '0' && text[i] <= '9') ++i;
  if (i == digits_start) return false;
  if (i == text.size()) return true;
  if (text[i] != '.') return false;
  const size_t fraction_start = ++i;
  while (i < text.size() && text[i] >= '0' && text[i] <= '9') ++i;
  return i == text.size() && i > fraction_start;
}

}  // namespace

std::optional<double> ParseNumber(std::string_view text) {
  if (text.size() <= 32 && IsPlainDecimal(text)) {
    double value = 0.0;
    const std::from_chars_result r =
        std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    if (r.ec == std::errc() && r.ptr == text.data() + text.size()) return value;
  }
  const std::optional<ScannedNumber> scanned = ScanNumber(text);
  if (!scanned) return std::nullopt;
  return ScannedValue(*scanned);
}

double RoundHalfEven(double value) {
  const double floor = std::floor(value);
  const double fraction = value - floor;
  if (fraction > 0.5) return floor + 1.0;
  if (fraction == 0.5) return std::fmod(floor, 2.0) == 0.0 ? floor : floor + 1.0;
  return floor;
}

double ToDouble(std::string_view text) {
  const std::optional<double> value = ParseNumber(text);
  if (!value) RaiseError(errnum::kTypeMismatch);
  if (!std::isfinite(*value)) RaiseError(errnum::kOverflow);
  return *value;
}

int32_t ToLong(std::string_view text) {
  const Converted<int32_t> converted = ConvertToLong(text);
  if (converted.error != 0) RaiseError(converted.error);
  return converted.value;
}

std::optional<int32_t> TryToLong(std::string_view text) {
  const Converted<int32_t> converted = ConvertToLong(text);
  if (converted.error != 0) return std::nullopt;
  return converted.value;
}

int16_t ToInteger(std::string_view text) {
  const Converted<int16_t> converted = ConvertToInteger(text);
  if (converted.error != 0) RaiseError(converted.error);
  return converted.value;
}

std::optional<int16_t> TryToInteger(std::string_view text) {
  const Converted<int16_t> converted = ConvertToInteger(text);
  if (converted.error != 0) return std::nullopt;
  return converted.value;
}

int32_t DoubleToLong(double value) {
  const double rounded = RoundHalfEven(value);
  if (!(rounded >= -2147483648.0 && rounded <= 2147483647.0)) RaiseError(errnum::kOverflow);
  return static_cast<int32_t>(rounded);
}

int16_t DoubleToInteger(double value) {
  const double rounded = RoundHalfEven(value);
  if (!(rounded >= -32768.0 && rounded <= 32767.0)) RaiseError(errnum::kOverflow);
  return static_cast<int16_t>(rounded);
}

std::string DoubleToText(double value) {
  if (std::isnan(value)) return "-1.#IND";
  if (std::isinf(value)) return value > 0 ? "1.#INF" : "-1.#INF";
  if (value == 0.0) return "0";

  // 15 significant digits in scientific form: "d.ddddddddddddddde[+-]x".
  char buffer[64];
  const std::to_chars_result r =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific, 14);
  std::string_view sci(buffer, static_cast<size_t>(r.ptr - buffer));
  const bool negative = sci.front() == '-';
  if (negative) sci.remove_prefix(1);
  const size_t e = sci.find('e');
  std::string digits;
  for (char c : sci.substr(0, e)) {
    if (c != '.') digits.push_back(c);
  }
  int exponent = 0;
  std::from_chars(sci.data() + e + 1 + (sci[e + 1] == '+' ? 1 : 0), sci.data() + sci.size(),
                  exponent);
  while (digits.size() > 1 && digits.back() == '0') digits.pop_back();

  std::string out;
  if (negative) out.push_back('-');
  if (exponent < -4 || exponent >= 15) {
    out.push_back(digits[0]);
    if (digits.size() > 1) {
      out.push_back('.');
      out.append(digits, 1, std::string::npos);
    }
    out.push_back('E');
    out.push_back(exponent < 0 ? '-' : '+');
    const int magnitude = exponent < 0 ? -exponent : exponent;
    if (magnitude < 10) out.push_back('0');
    out += std::to_string(magnitude);
  } else if (exponent >= 0) {
    const auto int_length = static_cast<size_t>(exponent) + 1;
    if (digits.size() <= int_length) {
      out += digits;
      out.append(int_length - digits.size(), '0');
    } else {
      out.append(digits, 0, int_length);
      out.push_back('.');
      out.append(digits, int_length, std::string::npos);
    }
  } else {
    out += "0.";
    out.append(static_cast<size_t>(-exponent - 1), '0');
    out += digits;
  }
  return out;
}

std::string HexString(int64_t value, int width_bits) {
  uint64_t bits = static_cast<uint64_t>(value);
  if (width_bits < 64) bits &= (uint64_t{1} << width_bits) - 1;
  if (bits == 0) return "0";
  static constexpr char kDigits[] = "0123456789ABCDEF";
  std::string out;
  while (bits != 0) {
    out.insert(out.begin(), kDigits[bits & 0xF]);
    bits >>= 4;
  }
  return out;
}

std::string Hex(const Variant& value) {
  switch (value.Type()) {
    case VarType::kEmpty:
      return "0";
    case VarType::kByte:
      return HexString(value.AsByte(), 8);
    case VarType::kInteger:
      return HexString(value.AsInteger(), 16);
    case VarType::kBoolean:
      return HexString(value.AsBool() ? -1 : 0, 16);
    default:
      // Null, Missing and every other kind take the classic conversion to
      // a Long, which raises 94 / 13 / 6 as CLng would.
      return HexString(value.ToLong(), 32);
  }
}

}  // namespace veld
