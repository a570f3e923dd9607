#include "runtime/date_time.h"

#include <cmath>

#include "veld/runtime/automation_error.h"

namespace veld {

namespace {

// Days from 1970-01-01 to a proleptic Gregorian date, and back (the
// era-based algorithms, exact for every year of the valid range).
int64_t DaysFromCivil(int64_t year, int64_t month, int64_t day) {
  year -= month <= 2 ? 1 : 0;
  const int64_t era = (year >= 0 ? year : year - 399) / 400;
  const int64_t year_of_era = year - era * 400;
  const int64_t day_of_year = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
  const int64_t day_of_era = year_of_era * 365 + year_of_era / 4 - year_of_era / 100 + day_of_year;
  return era * 146097 + day_of_era - 719468;
}

void CivilFromDays(int64_t days, DateParts& parts) {
  days += 719468;
  const int64_t era = (days >= 0 ? days : days - 146096) / 146097;
  const int64_t day_of_era = days - era * 146097;
  const int64_t year_of_era =
      (day_of_era - day_of_era / 1460 + day_of_era / 36524 - day_of_era / 146096) / 365;
  const int64_t day_of_year =
      day_of_era - (365 * year_of_era + year_of_era / 4 - year_of_era / 100);
  const int64_t mp = (5 * day_of_year + 2) / 153;
  const int64_t month = mp < 10 ? mp + 3 : mp - 9;
  parts.year = static_cast<int>(year_of_era + era * 400 + (month <= 2 ? 1 : 0));
  parts.month = static_cast<int>(month);
  parts.day = static_cast<int>(day_of_year - (153 * mp + 2) / 5 + 1);
}

constexpr int64_t kEpochFromUnix = -25569;  // 1899-12-30 in days from 1970-01-01.
constexpr int64_t kSecondsPerDay = 86400;

std::string TwoDigits(int value) {
  std::string out;
  out.push_back(static_cast<char>('0' + value / 10));
  out.push_back(static_cast<char>('0' + value % 10));
  return out;
}

}  // namespace

bool IsValidDateSerial(double serial) {
  return std::isfinite(serial) && serial >= kMinDateSerial && serial < kDateSerialLimit;
}

int64_t DaysSinceEpoch(int year, int month, int day) {
  return DaysFromCivil(year, month, day) - kEpochFromUnix;
}

DateParts DatePartsFromSerial(double serial) {
  int64_t days = 0;
  return DatePartsFromSerial(serial, days);
}

DateParts DatePartsFromSerial(double serial, int64_t& days) {
  days = static_cast<int64_t>(std::trunc(serial));
  // The fraction is a time of day on either side of 0 (see the header).
  const double fraction = std::fabs(serial - static_cast<double>(days));
  // Not negative, so adding a half and truncating rounds half up.
  int64_t seconds = static_cast<int64_t>(fraction * static_cast<double>(kSecondsPerDay) + 0.5);
  if (seconds >= kSecondsPerDay) {
    seconds -= kSecondsPerDay;
    days += 1;
  }
  DateParts parts;
  CivilFromDays(days + kEpochFromUnix, parts);
  parts.hour = static_cast<int>(seconds / 3600);
  parts.minute = static_cast<int>(seconds / 60 % 60);
  parts.second = static_cast<int>(seconds % 60);
  return parts;
}

double SerialFromDateParts(const DateParts& parts) {
  const auto days = static_cast<double>(DaysSinceEpoch(parts.year, parts.month, parts.day));
  const double time = (parts.hour * 3600.0 + parts.minute * 60.0 + parts.second) /
                      static_cast<double>(kSecondsPerDay);
  return days >= 0 ? days + time : days - time;
}

std::string DateToText(double serial) {
  if (!IsValidDateSerial(serial)) RaiseError(errnum::kInvalidProcedureCall);
  const DateParts parts = DatePartsFromSerial(serial);
  const bool zero_date = parts.year == 1899 && parts.month == 12 && parts.day == 30;
  const bool midnight = parts.hour == 0 && parts.minute == 0 && parts.second == 0;
  std::string out;
  if (!zero_date) {
    out = std::to_string(parts.month) + "/" + std::to_string(parts.day) + "/" +
          std::to_string(parts.year);
    if (midnight) return out;
    out.push_back(' ');
  }
  const int hour12 = parts.hour % 12 == 0 ? 12 : parts.hour % 12;
  out += std::to_string(hour12) + ":" + TwoDigits(parts.minute) + ":" + TwoDigits(parts.second) +
         (parts.hour < 12 ? " AM" : " PM");
  return out;
}

}  // namespace veld
