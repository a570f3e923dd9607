// Numbers through numeric sections. Digits come from the value's
// 15-significant-digit decimal form (the precision the classic runtime
// shows), rounded half away from zero at the section's last digit, so that
// 1.005 with "0.00" is "1.01" although the double lies below 1.005.
#include <charconv>
#include <cmath>

#include "runtime/format_render.h"
#include "veld/platform/regional_settings.h"

namespace veld::format_internal {

namespace {

// value = 0.d[0]d[1]...d[count-1] x 10^exponent; count 0 means zero.
struct Digits {
  char d[24];
  int count = 0;
  int exponent = 0;
};

Digits DecimalDigits(double magnitude) {
  Digits out;
  if (!(magnitude > 0) || !std::isfinite(magnitude)) return out;
  char buffer[40];
  const auto result =
      std::to_chars(buffer, buffer + sizeof buffer, magnitude, std::chars_format::scientific, 14);
  // "d.dddddddddddddde[+-]XX"
  const char* p = buffer;
  const char* end = result.ptr;
  while (p < end && *p != 'e') {
    if (*p != '.') out.d[out.count++] = *p;
    ++p;
  }
  int exponent = 0;
  std::from_chars(p + 1 + (p[1] == '+' ? 1 : 0), end, exponent);
  out.exponent = exponent + 1;
  while (out.count > 0 && out.d[out.count - 1] == '0') --out.count;
  return out;
}

// Keeps `keep` leading digits, rounding half away from zero.
void RoundTo(Digits& digits, int keep) {
  if (keep >= digits.count) return;
  if (keep < 0) {
    digits.count = 0;
    return;
  }
  const bool up = digits.d[keep] >= '5';
  digits.count = keep;
  if (up) {
    int i = keep - 1;
    while (i >= 0 && digits.d[i] == '9') --i;
    if (i < 0) {
      digits.d[0] = '1';
      digits.count = 1;
      ++digits.exponent;
      return;
    }
    ++digits.d[i];
    digits.count = i + 1;
  }
  while (digits.count > 0 && digits.d[digits.count - 1] == '0') --digits.count;
}

double Scaled(const NumberSection& section, double magnitude) {
  for (int i = 0; i < section.percent; ++i) magnitude *= 100;
  for (int i = 0; i < section.thousands_scale; ++i) magnitude /= 1000;
  return magnitude;
}

// The integer and fraction digit strings of a fixed-point section.
void FixedParts(const NumberSection& section, double magnitude, std::string& int_part,
                std::string& frac_part) {
  Digits digits = DecimalDigits(Scaled(section, magnitude));
  RoundTo(digits, digits.exponent + section.frac_digits);
  if (digits.count == 0) digits.exponent = 0;
  for (int i = 0; i < digits.exponent; ++i)
    int_part.push_back(i < digits.count ? digits.d[i] : '0');
  for (int i = 0; i < section.frac_digits; ++i) {
    const int at = digits.exponent + i;
    frac_part.push_back(at >= 0 && at < digits.count ? digits.d[at] : '0');
  }
}

// Scientific form: the mantissa's digit strings and the exponent.
void ScientificParts(const NumberSection& section, double magnitude, std::string& int_part,
                     std::string& frac_part, int& exponent) {
  Digits digits = DecimalDigits(Scaled(section, magnitude));
  const int significant = std::max(section.int_digits + section.frac_digits, 1);
  RoundTo(digits, significant);
  exponent = digits.count == 0 ? 0 : digits.exponent - section.int_digits;
  int at = 0;
  for (int i = 0; i < section.int_digits; ++i, ++at) {
    if (digits.count > 0) int_part.push_back(at < digits.count ? digits.d[at] : '0');
  }
  for (int i = 0; i < section.frac_digits; ++i, ++at)
    frac_part.push_back(at < digits.count ? digits.d[at] : '0');
}

void AppendGrouped(const std::string& digits, size_t begin, size_t end, bool grouping,
                   const std::string& group, std::string& out) {
  const size_t length = digits.size();
  for (size_t p = begin; p < end; ++p) {
    out.push_back(digits[p]);
    const size_t after = length - 1 - p;
    if (grouping && after > 0 && after % 3 == 0) out += group;
  }
}

}  // namespace

void RenderNumber(const NumberSection& section, double magnitude, const RegionalSettings& regional,
                  std::string& out) {
  std::string int_part;
  std::string frac_part;
  int exponent = 0;
  if (section.scientific) {
    ScientificParts(section, magnitude, int_part, frac_part, exponent);
  } else {
    FixedParts(section, magnitude, int_part, frac_part);
  }
  if (static_cast<int>(int_part.size()) < section.min_int_digits)
    int_part.insert(0, section.min_int_digits - int_part.size(), '0');
  while (static_cast<int>(frac_part.size()) > section.min_frac_digits && frac_part.back() == '0')
    frac_part.pop_back();

  const int length = static_cast<int>(int_part.size());
  const int offset = section.int_digits - length;  // placeholders without a digit
  for (const NumberItem& item : section.items) {
    switch (item.kind) {
      case NumberItem::Kind::kLiteral:
        out += item.text;
        break;
      case NumberItem::Kind::kIntDigit: {
        // The leftmost placeholder also takes the digits no placeholder has.
        const int begin = item.index == 0 ? 0 : item.index - offset;
        const int end = item.index - offset + 1;
        if (end > 0 && end > begin)
          AppendGrouped(int_part, static_cast<size_t>(std::max(begin, 0)), static_cast<size_t>(end),
                        section.grouping, regional.grouping_symbol, out);
        break;
      }
      case NumberItem::Kind::kDecimalPoint:
        if (section.int_digits == 0)
          AppendGrouped(int_part, 0, int_part.size(), section.grouping, regional.grouping_symbol,
                        out);
        out += regional.decimal_symbol;
        break;
      case NumberItem::Kind::kFracDigit:
        if (item.index < static_cast<int>(frac_part.size())) out.push_back(frac_part[item.index]);
        break;
      case NumberItem::Kind::kExponent:
        out += item.text;
        if (exponent < 0) {
          out.push_back('-');
        } else if (section.exponent_plus) {
          out.push_back('+');
        }
        break;
      case NumberItem::Kind::kExpDigit:
        if (item.index == 0) {
          std::string text = std::to_string(exponent < 0 ? -exponent : exponent);
          if (static_cast<int>(text.size()) < section.min_exp_digits)
            text.insert(0, section.min_exp_digits - text.size(), '0');
          out += text;
        }
        break;
      case NumberItem::Kind::kDateSeparator:
        out += regional.date_separator;
        break;
      case NumberItem::Kind::kTimeSeparator:
        out += regional.time_separator;
        break;
    }
  }
}

}  // namespace veld::format_internal
