#include "tablestore/field_type.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "runtime/numeric.h"
#include "runtime/text.h"

namespace veld {

namespace {

bool Contains(std::string_view haystack, std::string_view needle) {
  return haystack.find(needle) != std::string_view::npos;
}

// The numbers in parentheses after a type name: "(20)" or "(10, 2)".
void ReadTypeArguments(std::string_view upper, int32_t& first, int32_t& second) {
  const size_t open = upper.find('(');
  if (open == std::string_view::npos) return;
  std::string_view rest = upper.substr(open + 1);
  auto read = [&rest](int32_t& out) {
    while (!rest.empty() && rest.front() == ' ') rest.remove_prefix(1);
    int32_t value = 0;
    auto [ptr, ec] = std::from_chars(rest.data(), rest.data() + rest.size(), value);
    if (ec != std::errc()) return false;
    out = value;
    rest.remove_prefix(static_cast<size_t>(ptr - rest.data()));
    while (!rest.empty() && rest.front() == ' ') rest.remove_prefix(1);
    return true;
  };
  if (!read(first)) return;
  if (!rest.empty() && rest.front() == ',') {
    rest.remove_prefix(1);
    read(second);
  }
}

FieldType Integer(int64_t min, int64_t max) {
  FieldType type;
  type.kind = FieldKind::kInteger;
  type.min = min;
  type.max = max;
  return type;
}

bool EqualsIgnoringAsciiCase(std::string_view text, std::string_view lower) {
  if (text.size() != lower.size()) return false;
  for (size_t i = 0; i < text.size(); ++i) {
    const char c =
        text[i] >= 'A' && text[i] <= 'Z' ? static_cast<char>(text[i] - 'A' + 'a') : text[i];
    if (c != lower[i]) return false;
  }
  return true;
}

bool IsLeapYear(int year) { return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0; }

int DaysInMonth(int year, int month) {
  static const int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return month == 2 && IsLeapYear(year) ? 29 : kDays[month - 1];
}

// A small cursor over date text.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  void SkipBlanks() {
    while (!text_.empty() && text_.front() == ' ') text_.remove_prefix(1);
  }
  bool AtEnd() const { return text_.empty(); }
  bool Take(char c) {
    if (text_.empty() || text_.front() != c) return false;
    text_.remove_prefix(1);
    return true;
  }
  // 1 to `max_digits` digits.
  std::optional<int> Number(int max_digits) {
    int value = 0;
    int digits = 0;
    while (!text_.empty() && digits < max_digits && text_.front() >= '0' && text_.front() <= '9') {
      value = value * 10 + (text_.front() - '0');
      text_.remove_prefix(1);
      ++digits;
    }
    if (digits == 0 || (!text_.empty() && text_.front() >= '0' && text_.front() <= '9')) {
      return std::nullopt;
    }
    return value;
  }
  // "AM" / "PM" in any case: 0 for AM, 12 for PM, nullopt for neither.
  std::optional<int> Meridiem() {
    if (text_.size() < 2) return std::nullopt;
    const std::string word = UCase(text_.substr(0, 2));
    if (word != "AM" && word != "PM") return std::nullopt;
    text_.remove_prefix(2);
    return word == "AM" ? 0 : 12;
  }
  bool Peek(char c) const { return !text_.empty() && text_.front() == c; }

 private:
  std::string_view text_;
};

bool ReadTime(Scanner& in, ParsedDateTime& out) {
  auto hour = in.Number(2);
  if (!hour || !in.Take(':')) return false;
  auto minute = in.Number(2);
  if (!minute) return false;
  int second = 0;
  if (in.Take(':')) {
    auto s = in.Number(2);
    if (!s) return false;
    second = *s;
  }
  in.SkipBlanks();
  int h = *hour;
  if (auto meridiem = in.Meridiem()) {
    if (h < 1 || h > 12) return false;
    h = h % 12 + *meridiem;
  }
  if (h > 23 || *minute > 59 || second > 59) return false;
  out.has_time = true;
  out.hour = h;
  out.minute = *minute;
  out.second = second;
  return true;
}

}  // namespace

FieldType ClassifyDeclaredType(std::string_view declared) {
  const std::string upper = UCase(Trim(declared));
  FieldType type;
  if (upper.empty() || Contains(upper, "BLOB")) return type;
  if (Contains(upper, "BOOL") || upper == "BIT" || Contains(upper, "YESNO") ||
      Contains(upper, "LOGICAL")) {
    type.kind = FieldKind::kBoolean;
    return type;
  }
  if (Contains(upper, "DATETIME") || Contains(upper, "TIMESTAMP")) {
    type.kind = FieldKind::kDateTime;
    return type;
  }
  if (Contains(upper, "DATE")) {
    type.kind = FieldKind::kDate;
    return type;
  }
  if (Contains(upper, "TIME")) {
    type.kind = FieldKind::kTime;
    return type;
  }
  if (Contains(upper, "INT") || Contains(upper, "BYTE") || Contains(upper, "LONG") ||
      Contains(upper, "COUNTER")) {
    if (Contains(upper, "TINYINT") || upper == "BYTE") return Integer(0, 255);
    if (Contains(upper, "SMALLINT") || upper == "INT2" || upper == "SHORT") {
      return Integer(-32768, 32767);
    }
    if (Contains(upper, "BIGINT") || upper == "INT8" || upper == "LONGLONG") {
      return Integer(std::numeric_limits<int64_t>::min(), std::numeric_limits<int64_t>::max());
    }
    return Integer(std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max());
  }
  if (Contains(upper, "CHAR") || Contains(upper, "CLOB") || Contains(upper, "TEXT") ||
      Contains(upper, "MEMO") || Contains(upper, "STRING")) {
    type.kind = FieldKind::kText;
    ReadTypeArguments(upper, type.length, type.precision);
    type.precision = 0;
    return type;
  }
  if (Contains(upper, "NUMERIC") || Contains(upper, "DECIMAL")) {
    type.kind = FieldKind::kDecimal;
    ReadTypeArguments(upper, type.precision, type.scale);
    if (type.precision == 0) type.kind = FieldKind::kReal;
    type.scale_factor = std::pow(10.0, type.scale);
    type.limit = std::pow(10.0, type.precision - type.scale);
    return type;
  }
  if (Contains(upper, "REAL") || Contains(upper, "FLOA") || Contains(upper, "DOUB") ||
      Contains(upper, "CURRENCY") || Contains(upper, "MONEY") || Contains(upper, "SINGLE")) {
    type.kind = FieldKind::kReal;
    return type;
  }
  return type;
}

std::optional<ParsedDateTime> ParseDateTimeText(std::string_view text) {
  Scanner in(text);
  ParsedDateTime out;
  in.SkipBlanks();
  Scanner probe = in;
  // A time alone: digits then ":".
  if (probe.Number(2) && probe.Peek(':')) {
    if (!ReadTime(in, out)) return std::nullopt;
  } else {
    auto first = in.Number(4);
    if (!first) return std::nullopt;
    if (in.Take('-')) {
      auto month = in.Number(2);
      if (!month || !in.Take('-')) return std::nullopt;
      auto day = in.Number(2);
      if (!day) return std::nullopt;
      out.year = *first;
      out.month = *month;
      out.day = *day;
      if (in.Take('T')) {
        if (!ReadTime(in, out)) return std::nullopt;
      }
    } else if (in.Take('/')) {
      auto day = in.Number(2);
      if (!day || !in.Take('/')) return std::nullopt;
      auto year = in.Number(4);
      if (!year) return std::nullopt;
      out.month = *first;
      out.day = *day;
      out.year = *year;
    } else {
      return std::nullopt;
    }
    if (out.year < 100 || out.month < 1 || out.month > 12 || out.day < 1 ||
        out.day > DaysInMonth(out.year, out.month)) {
      return std::nullopt;
    }
    out.has_date = true;
    in.SkipBlanks();
    if (!out.has_time && !in.AtEnd() && !ReadTime(in, out)) return std::nullopt;
  }
  in.SkipBlanks();
  if (!in.AtEnd()) return std::nullopt;
  return out;
}

namespace {

// Writes `value` as `width` decimal digits, with leading zeros.
void PutDigits(char* at, int width, int value) {
  for (int i = width - 1; i >= 0; --i) {
    at[i] = static_cast<char>('0' + value % 10);
    value /= 10;
  }
}

// Puts text into `out`, reusing the string it may already hold.
void AssignText(FieldValue& out, std::string_view text) {
  if (auto* held = std::get_if<std::string>(&out)) {
    held->assign(text);
  } else {
    out.emplace<std::string>(text);
  }
}

}  // namespace

bool ConvertTextInto(const FieldType& type, std::string_view text, FieldValue& out) {
  switch (type.kind) {
    case FieldKind::kAny:
      AssignText(out, text);
      return true;
    case FieldKind::kText: {
      if (type.length > 0) {
        int64_t characters = 0;
        for (unsigned char c : text) characters += (c & 0xC0) != 0x80 ? 1 : 0;
        if (characters > type.length) return false;
      }
      AssignText(out, text);
      return true;
    }
    case FieldKind::kInteger: {
      // Plain whole numbers are read exactly (64-bit values do not fit a
      // double); anything else goes through the loose numeric syntax.
      std::string_view trimmed = text;
      while (!trimmed.empty() && trimmed.front() == ' ') trimmed.remove_prefix(1);
      while (!trimmed.empty() && trimmed.back() == ' ') trimmed.remove_suffix(1);
      int64_t exact = 0;
      const char* begin = trimmed.data() + (trimmed.starts_with('+') ? 1 : 0);
      const char* end = trimmed.data() + trimmed.size();
      auto [ptr, ec] = std::from_chars(begin, end, exact);
      if (ec == std::errc() && ptr == end && begin != end) {
        if (exact < type.min || exact > type.max) return false;
        out = FieldValue(exact);
        return true;
      }
      auto number = ParseNumber(text);
      if (!number) return false;
      const double rounded = RoundHalfEven(*number);
      // Doubles at or beyond 2^63 do not convert to int64.
      if (!std::isfinite(rounded) || rounded < -9223372036854775808.0 ||
          rounded >= 9223372036854775808.0) {
        return false;
      }
      const auto value = static_cast<int64_t>(rounded);
      if (value < type.min || value > type.max) return false;
      out = FieldValue(value);
      return true;
    }
    case FieldKind::kReal: {
      auto number = ParseNumber(text);
      if (!number || !std::isfinite(*number)) return false;
      out = FieldValue(*number);
      return true;
    }
    case FieldKind::kDecimal: {
      auto number = ParseNumber(text);
      if (!number || !std::isfinite(*number)) return false;
      const double rounded = RoundHalfEven(*number * type.scale_factor) / type.scale_factor;
      if (std::fabs(rounded) >= type.limit) return false;
      out = FieldValue(rounded);
      return true;
    }
    case FieldKind::kBoolean: {
      std::string_view word = text;
      while (!word.empty() && word.front() == ' ') word.remove_prefix(1);
      while (!word.empty() && word.back() == ' ') word.remove_suffix(1);
      for (const char* yes : {"true", "yes", "on", "t", "y"}) {
        if (EqualsIgnoringAsciiCase(word, yes)) {
          out = FieldValue(int64_t{1});
          return true;
        }
      }
      for (const char* no : {"false", "no", "off", "f", "n"}) {
        if (EqualsIgnoringAsciiCase(word, no)) {
          out = FieldValue(int64_t{0});
          return true;
        }
      }
      auto number = ParseNumber(text);
      if (!number || std::isnan(*number)) return false;
      out = FieldValue(int64_t{*number != 0.0 ? 1 : 0});
      return true;
    }
    case FieldKind::kDate:
    case FieldKind::kTime:
    case FieldKind::kDateTime: {
      auto parsed = ParseDateTimeText(text);
      if (!parsed) return false;
      // "yyyy-mm-dd hh:mm:ss"; the date of a time alone is the day the
      // classic date numbering starts from.
      char both[] = "1899-12-30 00:00:00";
      if (parsed->has_date) {
        PutDigits(both, 4, parsed->year);
        PutDigits(both + 5, 2, parsed->month);
        PutDigits(both + 8, 2, parsed->day);
      }
      PutDigits(both + 11, 2, parsed->hour);
      PutDigits(both + 14, 2, parsed->minute);
      PutDigits(both + 17, 2, parsed->second);
      const std::string_view date(both, 10);
      const std::string_view time(both + 11, 8);
      if (type.kind == FieldKind::kDate) {
        // A date column keeps the date; a time of day would be lost, so it fails.
        if (!parsed->has_date || (parsed->hour | parsed->minute | parsed->second) != 0) {
          return false;
        }
        AssignText(out, date);
        return true;
      }
      if (type.kind == FieldKind::kTime) {
        if (parsed->has_date) return false;
        AssignText(out, time);
        return true;
      }
      AssignText(out, std::string_view(both, 19));
      return true;
    }
  }
  return false;
}

std::optional<FieldValue> ConvertText(const FieldType& type, std::string_view text) {
  FieldValue value;
  if (!ConvertTextInto(type, text, value)) return std::nullopt;
  return value;
}

}  // namespace veld
