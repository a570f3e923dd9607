// Dates as the classic runtime stores them: a Double counting days from
// 1899-12-30 (serial 0), the fraction being the time of day. For negative
// serials the fraction is an absolute time of day added to the (negative)
// day, so -1.25 is 1899-12-29 06:00 and the number line is discontinuous
// below 0. Calendar arithmetic is proleptic Gregorian; the valid range is
// 100-01-01 (-657434) to 9999-12-31 23:59:59 (just below 2958466).
#ifndef VELD_RUNTIME_DATE_TIME_H_
#define VELD_RUNTIME_DATE_TIME_H_

#include <cstdint>
#include <string>

namespace veld {

inline constexpr double kMinDateSerial = -657434.0;
// The first serial past 9999-12-31 23:59:59.
inline constexpr double kDateSerialLimit = 2958466.0;

struct DateParts {
  int year = 1899;
  int month = 12;
  int day = 30;
  int hour = 0;
  int minute = 0;
  int second = 0;
};

// True for a finite serial inside the valid range.
bool IsValidDateSerial(double serial);

// The calendar date and time of a valid serial, the time rounded to the
// nearest second (a time that rounds up to 24:00:00 moves to the next day).
DateParts DatePartsFromSerial(double serial);
// The same, also giving the whole days since 1899-12-30 of the result.
DateParts DatePartsFromSerial(double serial, int64_t& days);

// The serial of a date and time; the parts must name a real date and time
// (month 1-12, day within the month, hour 0-23, minute and second 0-59).
double SerialFromDateParts(const DateParts& parts);

// Whole days since 1899-12-30 of a calendar date.
int64_t DaysSinceEpoch(int year, int month, int day);

// The general date display of a valid serial (CStr of a Date), en-US:
// "M/d/yyyy h:mm:ss AM/PM"; only the date when the time is midnight, only the
// time when the date is 1899-12-30 ("12:00:00 AM" for 0). Years below 1000
// are written without padding ("1/1/100"). Raises 5 "Invalid procedure call
// or argument" when the serial is outside the valid range or not finite.
std::string DateToText(double serial);

}  // namespace veld

#endif  // VELD_RUNTIME_DATE_TIME_H_
