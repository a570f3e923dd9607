// Dates through date sections and the locale's pictures.
#include "runtime/date_time.h"
#include "runtime/format_render.h"
#include "veld/platform/regional_settings.h"

namespace veld::format_internal {

namespace {

void Append2(int value, std::string& out) {
  const char digits[2] = {static_cast<char>('0' + value / 10 % 10),
                          static_cast<char>('0' + value % 10)};
  out.append(digits, 2);
}

void AppendNumber(int value, std::string& out) {
  char digits[12];
  int n = 0;
  unsigned magnitude = value < 0 ? 0u - static_cast<unsigned>(value) : static_cast<unsigned>(value);
  do {
    digits[n++] = static_cast<char>('0' + magnitude % 10);
    magnitude /= 10;
  } while (magnitude != 0);
  if (value < 0) digits[n++] = '-';
  char ordered[12];
  for (int i = 0; i < n; ++i) ordered[i] = digits[n - 1 - i];
  out.append(ordered, static_cast<size_t>(n));
}

// The first character (UTF-8) of a text.
std::string FirstCharacter(const std::string& text) {
  if (text.empty()) return text;
  size_t length = 1;
  while (length < text.size() && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80)
    ++length;
  return text.substr(0, length);
}

// 1 (Sunday) to 7 (Saturday); day 0 of the serial calendar is a Saturday.
int Weekday(int64_t days) { return static_cast<int>(((days % 7) + 7 + 6) % 7) + 1; }

int WeekOfYear(int year, int day_of_year, int first_day_of_week, int first_week_of_year) {
  const int jan1 = Weekday(DaysSinceEpoch(year, 1, 1));
  const int before = (jan1 - first_day_of_week + 7) % 7;  // days of week 1 in the old year
  int week = (day_of_year - 1 + before) / 7 + 1;
  const bool first_counts = first_week_of_year == 1 ||
                            (first_week_of_year == 2 && 7 - before >= 4) ||
                            (first_week_of_year == 3 && before == 0);
  if (!first_counts) --week;
  if (week == 0 && year > 100) {
    const int64_t days_last_year = DaysSinceEpoch(year, 1, 1) - DaysSinceEpoch(year - 1, 1, 1);
    return WeekOfYear(year - 1, static_cast<int>(days_last_year), first_day_of_week,
                      first_week_of_year);
  }
  return week == 0 ? 1 : week;
}

struct Moment {
  DateParts parts;
  int64_t days = 0;
  bool zero_date = false;
  bool midnight = false;
};

Moment MomentOf(double serial) {
  Moment m;
  m.parts = DatePartsFromSerial(serial, m.days);
  m.zero_date = m.days == 0;
  m.midnight = m.parts.hour == 0 && m.parts.minute == 0 && m.parts.second == 0;
  return m;
}

void Render(const DateSection& items, const Moment& m, const RegionalSettings& regional,
            int first_day_of_week, int first_week_of_year, std::string& out);

void RenderGeneral(const Moment& m, const RegionalSettings& regional, std::string& out) {
  const RegionalPictures& pictures = PicturesOf(regional);
  if (!m.zero_date) {
    Render(pictures.short_date, m, regional, 1, 1, out);
    if (m.midnight) return;
    out.push_back(' ');
  }
  Render(pictures.long_time, m, regional, 1, 1, out);
}

void Render(const DateSection& items, const Moment& m, const RegionalSettings& regional,
            int first_day_of_week, int first_week_of_year, std::string& out) {
  const DateParts& p = m.parts;
  const bool pm = p.hour >= 12;
  for (const DateItem& item : items) {
    switch (item.token) {
      case DateToken::kLiteral:
        out += item.text;
        break;
      case DateToken::kDateSeparator:
        out += regional.date_separator;
        break;
      case DateToken::kTimeSeparator:
        out += regional.time_separator;
        break;
      case DateToken::kGeneral:
        RenderGeneral(m, regional, out);
        break;
      case DateToken::kDay:
        AppendNumber(p.day, out);
        break;
      case DateToken::kDay2:
        Append2(p.day, out);
        break;
      case DateToken::kDayAbbr:
        out += regional.abbreviated_day_names[Weekday(m.days) - 1];
        break;
      case DateToken::kDayName:
        out += regional.day_names[Weekday(m.days) - 1];
        break;
      case DateToken::kShortDate:
        Render(PicturesOf(regional).short_date, m, regional, 1, 1, out);
        break;
      case DateToken::kLongDate:
        Render(PicturesOf(regional).long_date, m, regional, 1, 1, out);
        break;
      case DateToken::kWeekday:
        AppendNumber((Weekday(m.days) - first_day_of_week + 7) % 7 + 1, out);
        break;
      case DateToken::kWeek: {
        const int day_of_year = static_cast<int>(m.days - DaysSinceEpoch(p.year, 1, 1)) + 1;
        AppendNumber(WeekOfYear(p.year, day_of_year, first_day_of_week, first_week_of_year), out);
        break;
      }
      case DateToken::kMonth:
        AppendNumber(p.month, out);
        break;
      case DateToken::kMonth2:
        Append2(p.month, out);
        break;
      case DateToken::kMonthAbbr:
        out += regional.abbreviated_month_names[p.month - 1];
        break;
      case DateToken::kMonthName:
        out += regional.month_names[p.month - 1];
        break;
      case DateToken::kQuarter:
        AppendNumber((p.month - 1) / 3 + 1, out);
        break;
      case DateToken::kDayOfYear:
        AppendNumber(static_cast<int>(m.days - DaysSinceEpoch(p.year, 1, 1)) + 1, out);
        break;
      case DateToken::kYear1:
        AppendNumber(p.year % 100, out);
        break;
      case DateToken::kYear2:
        Append2(p.year % 100, out);
        break;
      case DateToken::kYear4:
        AppendNumber(p.year, out);
        break;
      case DateToken::kHour:
        AppendNumber(p.hour, out);
        break;
      case DateToken::kHour2:
        Append2(p.hour, out);
        break;
      case DateToken::kHour12:
        AppendNumber(p.hour % 12 == 0 ? 12 : p.hour % 12, out);
        break;
      case DateToken::kHour12_2:
        Append2(p.hour % 12 == 0 ? 12 : p.hour % 12, out);
        break;
      case DateToken::kMinute:
        AppendNumber(p.minute, out);
        break;
      case DateToken::kMinute2:
        Append2(p.minute, out);
        break;
      case DateToken::kSecond:
        AppendNumber(p.second, out);
        break;
      case DateToken::kSecond2:
        Append2(p.second, out);
        break;
      case DateToken::kLongTime:
        Render(PicturesOf(regional).long_time, m, regional, 1, 1, out);
        break;
      case DateToken::kAmPmUpper:
        out += pm ? "PM" : "AM";
        break;
      case DateToken::kAmPmLower:
        out += pm ? "pm" : "am";
        break;
      case DateToken::kAPUpper:
        out += pm ? "P" : "A";
        break;
      case DateToken::kAPLower:
        out += pm ? "p" : "a";
        break;
      case DateToken::kAmPmLocale:
        out += pm ? regional.pm_designator : regional.am_designator;
        break;
      case DateToken::kAmPmLocaleFirst:
        out += FirstCharacter(pm ? regional.pm_designator : regional.am_designator);
        break;
    }
  }
}

}  // namespace

const RegionalPictures& PicturesOf(const RegionalSettings& regional) {
  // One column is formatted with one settings object; recompile only when
  // the settings change.
  thread_local RegionalPictures pictures;
  thread_local std::string short_date, long_date, long_time;
  if (pictures.owner != &regional || short_date != regional.short_date_pattern ||
      long_date != regional.long_date_pattern || long_time != regional.long_time_pattern) {
    pictures.owner = &regional;
    short_date = regional.short_date_pattern;
    long_date = regional.long_date_pattern;
    long_time = regional.long_time_pattern;
    pictures.short_date = CompilePicture(short_date);
    pictures.long_date = CompilePicture(long_date);
    pictures.long_time = CompilePicture(long_time);
  }
  return pictures;
}

void RenderDate(const DateSection& items, double serial, const RegionalSettings& regional,
                int first_day_of_week, int first_week_of_year, std::string& out) {
  Render(items, MomentOf(serial), regional, first_day_of_week, first_week_of_year, out);
}

void RenderGeneralDate(double serial, const RegionalSettings& regional, std::string& out) {
  RenderGeneral(MomentOf(serial), regional, out);
}

}  // namespace veld::format_internal
