#include "runtime/format_pattern.h"

#include <array>
#include <unordered_map>
#include <utility>

namespace veld::format_internal {

namespace {

char Lower(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

bool StartsWithNoCase(std::string_view text, size_t at, std::string_view word) {
  if (text.size() - at < word.size()) return false;
  for (size_t i = 0; i < word.size(); ++i) {
    if (Lower(text[at + i]) != word[i]) return false;
  }
  return true;
}

bool EqualsNoCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() && StartsWithNoCase(a, 0, b);
}

size_t RunLength(std::string_view text, size_t at, bool ignore_case) {
  size_t n = 1;
  const char c = ignore_case ? Lower(text[at]) : text[at];
  while (at + n < text.size() && (ignore_case ? Lower(text[at + n]) : text[at + n]) == c) ++n;
  return n;
}

// Skips a quoted literal or an escaped character starting at `at`; returns
// the position after it and appends its text to `literal`.
size_t ReadQuoted(std::string_view text, size_t at, std::string& literal) {
  if (text[at] == '\\') {
    if (at + 1 < text.size()) literal.push_back(text[at + 1]);
    return at + 2;
  }
  size_t end = at + 1;  // text[at] is '"'
  while (end < text.size() && text[end] != '"') literal.push_back(text[end++]);
  return end + 1;
}

std::vector<std::string_view> SplitSections(std::string_view pattern) {
  std::vector<std::string_view> sections;
  size_t start = 0;
  size_t i = 0;
  std::string ignored;
  while (i < pattern.size()) {
    const char c = pattern[i];
    if (c == '"' || c == '\\') {
      i = ReadQuoted(pattern, i, ignored);
    } else if (c == ';') {
      sections.push_back(pattern.substr(start, i - start));
      start = ++i;
    } else {
      ++i;
    }
  }
  sections.push_back(pattern.substr(start, std::min(i, pattern.size()) - start));
  return sections;
}

PatternKind Classify(std::string_view pattern) {
  bool text = false;
  std::string ignored;
  size_t i = 0;
  while (i < pattern.size()) {
    const char c = pattern[i];
    if (c == '"' || c == '\\') {
      i = ReadQuoted(pattern, i, ignored);
      continue;
    }
    switch (Lower(c)) {
      case 'c':
      case 'd':
      case 'w':
      case 'm':
      case 'q':
      case 'y':
      case 'h':
      case 'n':
      case 's':
        return PatternKind::kDate;
      case 't':
        if (RunLength(pattern, i, true) >= 5) return PatternKind::kDate;
        break;
      case 'a':
        if (StartsWithNoCase(pattern, i, "am/pm") || StartsWithNoCase(pattern, i, "a/p") ||
            StartsWithNoCase(pattern, i, "ampm"))
          return PatternKind::kDate;
        break;
      case '@':
      case '&':
      case '<':
      case '>':
      case '!':
        text = true;
        break;
      default:
        break;
    }
    ++i;
  }
  return text ? PatternKind::kText : PatternKind::kNumeric;
}

NamedFormat MatchNamed(std::string_view pattern) {
  static const std::array<std::pair<std::string_view, NamedFormat>, 16> kNames = {{
      {"general number", NamedFormat::kGeneralNumber},
      {"currency", NamedFormat::kCurrency},
      {"fixed", NamedFormat::kFixed},
      {"standard", NamedFormat::kStandard},
      {"percent", NamedFormat::kPercent},
      {"scientific", NamedFormat::kScientific},
      {"yes/no", NamedFormat::kYesNo},
      {"true/false", NamedFormat::kTrueFalse},
      {"on/off", NamedFormat::kOnOff},
      {"general date", NamedFormat::kGeneralDate},
      {"long date", NamedFormat::kLongDate},
      {"medium date", NamedFormat::kMediumDate},
      {"short date", NamedFormat::kShortDate},
      {"long time", NamedFormat::kLongTime},
      {"medium time", NamedFormat::kMediumTime},
      {"short time", NamedFormat::kShortTime},
  }};
  for (const auto& [name, named] : kNames) {
    if (EqualsNoCase(pattern, name)) return named;
  }
  return NamedFormat::kNone;
}

void AddLiteral(std::vector<DateItem>& items, std::string_view text) {
  if (text.empty()) return;
  if (!items.empty() && items.back().token == DateToken::kLiteral) {
    items.back().text += text;
  } else {
    items.push_back({DateToken::kLiteral, std::string(text)});
  }
}

void AddLiteral(std::vector<NumberItem>& items, std::string_view text) {
  if (text.empty()) return;
  if (!items.empty() && items.back().kind == NumberItem::Kind::kLiteral) {
    items.back().text += text;
  } else {
    items.push_back({NumberItem::Kind::kLiteral, std::string(text), 0});
  }
}

TextSection CompileTextSection(std::string_view section) {
  TextSection out;
  out.empty = section.empty();
  size_t i = 0;
  auto literal = [&](std::string_view text) {
    if (text.empty()) return;
    if (!out.items.empty() && out.items.back().kind == TextItem::Kind::kLiteral) {
      out.items.back().text += text;
    } else {
      out.items.push_back({TextItem::Kind::kLiteral, std::string(text)});
    }
  };
  while (i < section.size()) {
    const char c = section[i];
    if (c == '"' || c == '\\') {
      std::string text;
      i = ReadQuoted(section, i, text);
      literal(text);
      continue;
    }
    switch (c) {
      case '@':
        out.items.push_back({TextItem::Kind::kCharOrSpace, {}});
        ++out.placeholders;
        break;
      case '&':
        out.items.push_back({TextItem::Kind::kCharOrNothing, {}});
        ++out.placeholders;
        break;
      case '<':
        out.lower = true;
        out.upper = false;
        break;
      case '>':
        out.upper = true;
        out.lower = false;
        break;
      case '!':
        out.left_to_right = true;
        break;
      default:
        literal(section.substr(i, 1));
        break;
    }
    ++i;
  }
  return out;
}

std::shared_ptr<const CompiledPattern> Compile(std::string_view pattern) {
  auto out = std::make_shared<CompiledPattern>();
  if (pattern.empty()) return out;
  out->named = MatchNamed(pattern);
  if (out->named != NamedFormat::kNone) {
    out->kind = PatternKind::kNamed;
    return out;
  }
  const std::vector<std::string_view> sections = SplitSections(pattern);
  // The first section decides, so that a Null section may say "Nil".
  out->kind = Classify(sections.front().empty() ? pattern : sections.front());
  switch (out->kind) {
    case PatternKind::kDate:
      out->date = CompileDateSection(sections.front());
      break;
    case PatternKind::kText:
      for (size_t i = 0; i < sections.size() && i < 2; ++i)
        out->text_sections.push_back(CompileTextSection(sections[i]));
      break;
    default:
      for (size_t i = 0; i < sections.size() && i < 4; ++i)
        out->number_sections.push_back(CompileNumberSection(sections[i]));
      break;
  }
  return out;
}

}  // namespace

NumberSection CompileNumberSection(std::string_view section) {
  NumberSection out;
  out.empty = section.empty();
  enum class Part { kInteger, kFraction, kExponent } part = Part::kInteger;
  // Commas of the integer part, by the number of digit placeholders before.
  std::vector<int> commas;
  int leftmost_zero = -1;
  int last_frac_zero = -1;
  size_t i = 0;
  while (i < section.size()) {
    const char c = section[i];
    if (c == '"' || c == '\\') {
      std::string text;
      i = ReadQuoted(section, i, text);
      AddLiteral(out.items, text);
      continue;
    }
    if (c == '0' || c == '#') {
      if (part == Part::kInteger) {
        if (c == '0' && leftmost_zero < 0) leftmost_zero = out.int_digits;
        out.items.push_back({NumberItem::Kind::kIntDigit, {}, out.int_digits++});
      } else if (part == Part::kFraction) {
        if (c == '0') last_frac_zero = out.frac_digits;
        out.items.push_back({NumberItem::Kind::kFracDigit, {}, out.frac_digits++});
      } else {
        if (c == '0') ++out.min_exp_digits;
        out.items.push_back({NumberItem::Kind::kExpDigit, {}, out.exp_digits++});
      }
      ++i;
      continue;
    }
    if (c == '.' && part == Part::kInteger) {
      out.decimal_point = true;
      out.items.push_back({NumberItem::Kind::kDecimalPoint, {}, 0});
      part = Part::kFraction;
      ++i;
      continue;
    }
    if (c == ',') {
      if (part == Part::kInteger) commas.push_back(out.int_digits);
      ++i;
      continue;
    }
    if ((c == 'E' || c == 'e') && part != Part::kExponent && i + 2 < section.size() &&
        (section[i + 1] == '+' || section[i + 1] == '-') &&
        (section[i + 2] == '0' || section[i + 2] == '#')) {
      out.scientific = true;
      out.exponent_plus = section[i + 1] == '+';
      out.items.push_back({NumberItem::Kind::kExponent, std::string(1, c), 0});
      part = Part::kExponent;
      i += 2;
      continue;
    }
    if (c == '%') {
      ++out.percent;
      AddLiteral(out.items, "%");
    } else if (c == ':') {
      out.items.push_back({NumberItem::Kind::kTimeSeparator, {}, 0});
    } else if (c == '/') {
      out.items.push_back({NumberItem::Kind::kDateSeparator, {}, 0});
    } else {
      AddLiteral(out.items, section.substr(i, 1));
    }
    ++i;
  }
  for (const int before : commas) {
    if (before > 0 && before < out.int_digits) {
      out.grouping = true;
    } else if (before > 0 && before == out.int_digits) {
      ++out.thousands_scale;
    }
  }
  out.min_int_digits = leftmost_zero < 0 ? 0 : out.int_digits - leftmost_zero;
  out.min_frac_digits = last_frac_zero + 1;
  return out;
}

DateSection CompileDateSection(std::string_view section) {
  DateSection items;
  size_t i = 0;
  while (i < section.size()) {
    const char c = section[i];
    const char lower = Lower(c);
    if (c == '"' || c == '\\') {
      std::string text;
      i = ReadQuoted(section, i, text);
      AddLiteral(items, text);
      continue;
    }
    if (c == ':') {
      items.push_back({DateToken::kTimeSeparator, {}});
      ++i;
      continue;
    }
    if (c == '/') {
      items.push_back({DateToken::kDateSeparator, {}});
      ++i;
      continue;
    }
    if (lower == 'a') {
      if (StartsWithNoCase(section, i, "am/pm")) {
        items.push_back({c == 'A' ? DateToken::kAmPmUpper : DateToken::kAmPmLower, {}});
        i += 5;
      } else if (StartsWithNoCase(section, i, "a/p")) {
        items.push_back({c == 'A' ? DateToken::kAPUpper : DateToken::kAPLower, {}});
        i += 3;
      } else if (StartsWithNoCase(section, i, "ampm")) {
        items.push_back({DateToken::kAmPmLocale, {}});
        i += 4;
      } else {
        AddLiteral(items, section.substr(i, 1));
        ++i;
      }
      continue;
    }
    size_t run = RunLength(section, i, true);
    size_t at = i;  // start of the part of the run not yet taken
    i += run;
    while (run > 0) {
      size_t take = 1;
      switch (lower) {
        case 'c':
          items.push_back({DateToken::kGeneral, {}});
          break;
        case 'd': {
          take = std::min<size_t>(run, 6);
          static constexpr DateToken kDays[] = {DateToken::kDay,       DateToken::kDay2,
                                                DateToken::kDayAbbr,   DateToken::kDayName,
                                                DateToken::kShortDate, DateToken::kLongDate};
          items.push_back({kDays[take - 1], {}});
          break;
        }
        case 'w':
          take = std::min<size_t>(run, 2);
          items.push_back({take == 2 ? DateToken::kWeek : DateToken::kWeekday, {}});
          break;
        case 'm': {
          take = std::min<size_t>(run, 4);
          static constexpr DateToken kMonths[] = {DateToken::kMonth, DateToken::kMonth2,
                                                  DateToken::kMonthAbbr, DateToken::kMonthName};
          items.push_back({kMonths[take - 1], {}});
          break;
        }
        case 'q':
          items.push_back({DateToken::kQuarter, {}});
          break;
        case 'y':
          take = run >= 4 ? 4 : run >= 2 ? 2 : 1;
          items.push_back({take == 4   ? DateToken::kYear4
                           : take == 2 ? DateToken::kYear2
                                       : DateToken::kDayOfYear,
                           {}});
          break;
        case 'h':
          take = std::min<size_t>(run, 2);
          items.push_back({take == 2 ? DateToken::kHour2 : DateToken::kHour, {}});
          break;
        case 'n':
          take = std::min<size_t>(run, 2);
          items.push_back({take == 2 ? DateToken::kMinute2 : DateToken::kMinute, {}});
          break;
        case 's':
          take = std::min<size_t>(run, 2);
          items.push_back({take == 2 ? DateToken::kSecond2 : DateToken::kSecond, {}});
          break;
        case 't':
          if (run >= 5) {
            take = 5;
            items.push_back({DateToken::kLongTime, {}});
          } else {
            take = run;
            AddLiteral(items, section.substr(at, run));
          }
          break;
        default:
          take = run;
          AddLiteral(items, section.substr(at, run));
          break;
      }
      run -= take;
      at += take;
    }
  }
  // "m" and "mm" stand for minutes when the nearest token before them
  // (separators and literals aside) is an hour; a 12-hour clock when any
  // designator token is present.
  DateToken previous = DateToken::kLiteral;
  bool twelve_hour = false;
  for (DateItem& item : items) {
    switch (item.token) {
      case DateToken::kLiteral:
      case DateToken::kDateSeparator:
      case DateToken::kTimeSeparator:
        continue;
      case DateToken::kMonth:
      case DateToken::kMonth2:
        if (previous == DateToken::kHour || previous == DateToken::kHour2) {
          item.token = item.token == DateToken::kMonth ? DateToken::kMinute : DateToken::kMinute2;
        }
        break;
      case DateToken::kAmPmUpper:
      case DateToken::kAmPmLower:
      case DateToken::kAPUpper:
      case DateToken::kAPLower:
      case DateToken::kAmPmLocale:
        twelve_hour = true;
        break;
      default:
        break;
    }
    previous = item.token;
  }
  if (twelve_hour) {
    for (DateItem& item : items) {
      if (item.token == DateToken::kHour) item.token = DateToken::kHour12;
      if (item.token == DateToken::kHour2) item.token = DateToken::kHour12_2;
    }
  }
  return items;
}

DateSection CompilePicture(std::string_view picture) {
  DateSection items;
  size_t i = 0;
  while (i < picture.size()) {
    const char c = picture[i];
    if (c == '\'') {
      size_t end = i + 1;
      if (end < picture.size() && picture[end] == '\'') {
        AddLiteral(items, "'");
        i = end + 1;
        continue;
      }
      std::string text;
      while (end < picture.size() && picture[end] != '\'') text.push_back(picture[end++]);
      AddLiteral(items, text);
      i = end + 1;
      continue;
    }
    const size_t run = RunLength(picture, i, false);
    DateToken token = DateToken::kLiteral;
    switch (c) {
      case 'd':
        token = run == 1   ? DateToken::kDay
                : run == 2 ? DateToken::kDay2
                : run == 3 ? DateToken::kDayAbbr
                           : DateToken::kDayName;
        break;
      case 'M':
        token = run == 1   ? DateToken::kMonth
                : run == 2 ? DateToken::kMonth2
                : run == 3 ? DateToken::kMonthAbbr
                           : DateToken::kMonthName;
        break;
      case 'y':
        token = run == 1 ? DateToken::kYear1 : run == 2 ? DateToken::kYear2 : DateToken::kYear4;
        break;
      case 'h':
        token = run == 1 ? DateToken::kHour12 : DateToken::kHour12_2;
        break;
      case 'H':
        token = run == 1 ? DateToken::kHour : DateToken::kHour2;
        break;
      case 'm':
        token = run == 1 ? DateToken::kMinute : DateToken::kMinute2;
        break;
      case 's':
        token = run == 1 ? DateToken::kSecond : DateToken::kSecond2;
        break;
      case 't':
        token = run == 1 ? DateToken::kAmPmLocaleFirst : DateToken::kAmPmLocale;
        break;
      case 'g':
        i += run;  // era: no place in these pictures
        continue;
      default:
        AddLiteral(items, picture.substr(i, 1));
        ++i;
        continue;
    }
    items.push_back({token, {}});
    i += run;
  }
  return items;
}

std::shared_ptr<const CompiledPattern> CompilePattern(std::string_view pattern) {
  pattern = pattern.substr(0, kMaxPatternLength);
  // The last pattern is the usual hit (one column formatted row after row);
  // a few others are kept beside it.
  thread_local std::string last_pattern;
  thread_local std::shared_ptr<const CompiledPattern> last_compiled;
  if (last_compiled != nullptr && pattern == last_pattern) return last_compiled;
  thread_local std::unordered_map<std::string, std::shared_ptr<const CompiledPattern>> cache;
  std::string key(pattern);
  auto found = cache.find(key);
  std::shared_ptr<const CompiledPattern> compiled;
  if (found != cache.end()) {
    compiled = found->second;
  } else {
    compiled = Compile(pattern);
    if (cache.size() >= 64) cache.clear();
    cache.emplace(key, compiled);
  }
  last_pattern = std::move(key);
  last_compiled = compiled;
  return compiled;
}

}  // namespace veld::format_internal
