// Text to date. The text is cut into numbers, words and separators; a run
// of numbers joined by the time separator (or by "." where "." is not the
// date separator) is the time, an AM/PM word after it or after a lone
// number sets the half of the day, a month name stands for the month, and
// the numbers left over are the date, read in the locale's order first and
// in the other orders when a part cannot be a month or a day.
#include "runtime/date_parse.h"

#include <array>
#include <ctime>
#include <string>

#include "runtime/date_time.h"
#include "veld/platform/regional_settings.h"
#include "veld/runtime/case_folding.h"

namespace veld {

namespace {

constexpr size_t kMaxTokens = 16;

struct Token {
  enum class Kind { kNumber, kMonth, kAm, kPm, kSeparator, kBlank } kind = Kind::kBlank;
  int value = 0;   // number value, month 1-12
  int digits = 0;  // number of digits
  char separator = 0;
};

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || static_cast<unsigned char>(c) >= 0x80;
}

bool NameMatches(std::string_view word, std::string_view name) {
  if (!name.empty() && name.back() == '.') name.remove_suffix(1);
  return !name.empty() && EqualsIgnoreCase(word, name);
}

// A word's meaning: a month, a designator, or nothing (weekday names and
// other words make the text no date).
bool ReadWord(std::string_view word, const RegionalSettings& regional, Token& token) {
  const RegionalSettings& english = *RegionalSettingsForLocale("en-US");
  for (const RegionalSettings* names : {&regional, &english}) {
    for (int m = 0; m < 12; ++m) {
      if (NameMatches(word, names->month_names[m]) ||
          NameMatches(word, names->abbreviated_month_names[m])) {
        token.kind = Token::Kind::kMonth;
        token.value = m + 1;
        return true;
      }
    }
  }
  if (NameMatches(word, regional.am_designator) || EqualsIgnoreCase(word, "AM")) {
    token.kind = Token::Kind::kAm;
    return true;
  }
  if (NameMatches(word, regional.pm_designator) || EqualsIgnoreCase(word, "PM")) {
    token.kind = Token::Kind::kPm;
    return true;
  }
  return false;
}

bool Tokenize(std::string_view text, const RegionalSettings& regional,
              std::array<Token, kMaxTokens>& tokens, size_t& count) {
  count = 0;
  size_t i = 0;
  auto push = [&](const Token& token) {
    if (count == kMaxTokens) return false;
    tokens[count++] = token;
    return true;
  };
  while (i < text.size()) {
    const char c = text[i];
    Token token;
    if (c == ' ' || c == '\t') {
      while (i < text.size() && (text[i] == ' ' || text[i] == '\t')) ++i;
      token.kind = Token::Kind::kBlank;
    } else if (IsDigit(c)) {
      token.kind = Token::Kind::kNumber;
      while (i < text.size() && IsDigit(text[i])) {
        if (++token.digits > 9) return false;
        token.value = token.value * 10 + (text[i++] - '0');
      }
    } else if (IsLetter(c)) {
      const size_t start = i;
      while (i < text.size() && IsLetter(text[i])) ++i;
      if (!ReadWord(text.substr(start, i - start), regional, token)) return false;
    } else if (c == '/' || c == '-' || c == '.' || c == ',' || c == ':' ||
               regional.date_separator == std::string_view(&text[i], 1) ||
               regional.time_separator == std::string_view(&text[i], 1)) {
      token.kind = Token::Kind::kSeparator;
      token.separator = c == regional.time_separator[0] ? ':' : c;
      ++i;
    } else {
      return false;
    }
    if (!push(token)) return false;
  }
  return true;
}

int ExpandYear(int value, int digits) {
  if (digits <= 2) return value < 30 ? 2000 + value : 1900 + value;
  return value;
}

int DaysInMonth(int year, int month) {
  static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (month == 2) {
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return leap ? 29 : 28;
  }
  return kDays[month - 1];
}

struct Part {
  int value = 0;
  int digits = 0;
};

bool ValidYear(const Part& year, int& out) {
  if (year.digits > 4) return false;
  out = ExpandYear(year.value, year.digits);
  return out >= 100 && out <= 9999;
}

bool ValidMonth(const Part& month) {
  return month.digits <= 2 && month.value >= 1 && month.value <= 12;
}

bool Valid(int year, const Part& month, const Part& day) {
  return ValidMonth(month) && day.digits <= 2 && day.value >= 1 &&
         day.value <= DaysInMonth(year, month.value);
}

// Date orders, as the positions of year, month and day among three parts.
enum class Order { kMDY, kDMY, kYMD };

Order LocaleOrder(const std::string& short_date) {
  for (const char c : short_date) {
    if (c == 'd') return Order::kDMY;
    if (c == 'M') return Order::kMDY;
    if (c == 'y') return Order::kYMD;
  }
  return Order::kMDY;
}

bool TryThree(Order order, const Part* p, DateParts& date) {
  Part year, month, day;
  switch (order) {
    case Order::kMDY:
      month = p[0];
      day = p[1];
      year = p[2];
      break;
    case Order::kDMY:
      day = p[0];
      month = p[1];
      year = p[2];
      break;
    case Order::kYMD:
      year = p[0];
      month = p[1];
      day = p[2];
      break;
  }
  int y = 0;
  if (!ValidYear(year, y) || !Valid(y, month, day)) return false;
  date.year = y;
  date.month = month.value;
  date.day = day.value;
  return true;
}

bool ResolveNumbers(const Part* parts, size_t count, Order locale, int this_year, DateParts& date) {
  if (count == 3) {
    if (parts[0].digits >= 3) return TryThree(Order::kYMD, parts, date);
    const Order orders[] = {locale, Order::kYMD, Order::kMDY, Order::kDMY};
    for (const Order order : orders) {
      if (TryThree(order, parts, date)) return true;
    }
    return false;
  }
  if (count != 2) return false;
  // Month and day of this year, either way round; then year and month.
  const bool day_first = locale == Order::kDMY;
  const Part& a = parts[0];
  const Part& b = parts[1];
  const std::pair<const Part*, const Part*> month_day[] = {
      day_first ? std::pair{&b, &a} : std::pair{&a, &b},
      day_first ? std::pair{&a, &b} : std::pair{&b, &a}};
  for (const auto& [month, day] : month_day) {
    if (Valid(this_year, *month, *day)) {
      date = {this_year, month->value, day->value, 0, 0, 0};
      return true;
    }
  }
  const std::pair<const Part*, const Part*> year_month[] = {{&a, &b}, {&b, &a}};
  for (const auto& [year, month] : year_month) {
    int y = 0;
    if (ValidYear(*year, y) && ValidMonth(*month)) {
      date = {y, month->value, 1, 0, 0, 0};
      return true;
    }
  }
  return false;
}

bool ResolveWithMonth(int month, const Part* parts, size_t count, int this_year, DateParts& date) {
  const Part month_part{month, 1};
  if (count == 1) {
    if (Valid(this_year, month_part, parts[0])) {
      date = {this_year, month, parts[0].value, 0, 0, 0};
      return true;
    }
    int y = 0;
    if (!ValidYear(parts[0], y)) return false;
    date = {y, month, 1, 0, 0, 0};
    return true;
  }
  if (count != 2) return false;
  const std::pair<const Part*, const Part*> day_year[] = {{&parts[0], &parts[1]},
                                                          {&parts[1], &parts[0]}};
  for (const auto& [day, year] : day_year) {
    int y = 0;
    if (ValidYear(*year, y) && Valid(y, month_part, *day)) {
      date = {y, month, day->value, 0, 0, 0};
      return true;
    }
  }
  return false;
}

int ThisYear() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
#ifdef _WIN32
  localtime_s(&local, &now);
#else
  localtime_r(&now, &local);
#endif
  return local.tm_year + 1900;
}

}  // namespace

std::optional<double> ParseDateText(std::string_view text, const RegionalSettings& regional,
                                    int current_year) {
  std::array<Token, kMaxTokens> tokens;
  size_t count = 0;
  if (!Tokenize(text, regional, tokens, count)) return std::nullopt;

  const bool dot_is_time = regional.date_separator != ".";
  // The time: the first number followed by ":" (or "."), with the numbers
  // that follow it joined by the same separator.
  int time_parts[3] = {0, 0, 0};
  int time_count = 0;
  char time_separator = 0;
  bool used[kMaxTokens] = {};
  for (size_t i = 0; i + 2 < count && time_count == 0; ++i) {
    const Token& t = tokens[i];
    if (t.kind != Token::Kind::kNumber || tokens[i + 1].kind != Token::Kind::kSeparator) continue;
    const char sep = tokens[i + 1].separator;
    if (sep != ':' && !(sep == '.' && dot_is_time)) continue;
    if (tokens[i + 2].kind != Token::Kind::kNumber) return std::nullopt;
    time_separator = sep;
    size_t j = i;
    while (true) {
      if (time_count == 3) return std::nullopt;
      if (tokens[j].digits > 2 && time_count > 0) return std::nullopt;
      time_parts[time_count++] = tokens[j].value;
      used[j] = true;
      if (j + 2 < count && tokens[j + 1].kind == Token::Kind::kSeparator &&
          tokens[j + 1].separator == sep && tokens[j + 2].kind == Token::Kind::kNumber) {
        used[j + 1] = true;
        j += 2;
      } else {
        break;
      }
    }
  }
  // AM or PM after the time, or after a lone number that is then the hour.
  int half = 0;  // 1 AM, 2 PM
  for (size_t i = 0; i < count; ++i) {
    const Token& t = tokens[i];
    if (t.kind != Token::Kind::kAm && t.kind != Token::Kind::kPm) continue;
    if (half != 0) return std::nullopt;
    half = t.kind == Token::Kind::kAm ? 1 : 2;
    used[i] = true;
    if (time_count == 0) {
      size_t j = i;
      while (j > 0 && tokens[j - 1].kind == Token::Kind::kBlank) --j;
      if (j == 0 || tokens[j - 1].kind != Token::Kind::kNumber) return std::nullopt;
      time_parts[time_count++] = tokens[j - 1].value;
      used[j - 1] = true;
    }
  }
  if (time_count > 0) {
    if (time_parts[0] > 23 || time_parts[1] > 59 || time_parts[2] > 59) return std::nullopt;
    // The classic reader refuses "0.0" though it reads "0.1".
    if (time_separator == '.' && time_count == 2 && time_parts[0] == 0 && time_parts[1] == 0)
      return std::nullopt;
    if (half == 2 && time_parts[0] < 12) time_parts[0] += 12;
    if (half == 1 && time_parts[0] == 12) time_parts[0] = 0;
  }

  // The date: the numbers and month name left over.
  Part parts[kMaxTokens];
  size_t part_count = 0;
  int month = 0;
  for (size_t i = 0; i < count; ++i) {
    if (used[i]) continue;
    const Token& t = tokens[i];
    if (t.kind == Token::Kind::kNumber) {
      parts[part_count++] = {t.value, t.digits};
    } else if (t.kind == Token::Kind::kMonth) {
      if (month != 0) return std::nullopt;
      month = t.value;
    } else if (t.kind == Token::Kind::kSeparator && t.separator == ':') {
      return std::nullopt;  // a second time, or a time part without its number
    }
  }
  if (part_count > 3) return std::nullopt;
  DateParts date;  // 1899-12-30
  const bool has_date = part_count > 0 || month != 0;
  if (!has_date && time_count == 0) return std::nullopt;
  if (has_date) {
    const int this_year = current_year != 0 ? current_year : ThisYear();
    const bool ok = month != 0
                        ? ResolveWithMonth(month, parts, part_count, this_year, date)
                        : ResolveNumbers(parts, part_count,
                                         LocaleOrder(regional.short_date_pattern), this_year, date);
    if (!ok) return std::nullopt;
  }
  date.hour = time_parts[0];
  date.minute = time_parts[1];
  date.second = time_parts[2];
  return SerialFromDateParts(date);
}

}  // namespace veld
