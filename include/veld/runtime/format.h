// The classic Format function, and dates read from text (CDate, IsDate).
//
// Everything here follows the regional settings of the current platform
// (Platform::Regional(), veld/platform/regional_settings.h): month and day
// names, AM/PM designators, the decimal, grouping, date and time symbols,
// and the named date forms.
//
// Format(value, pattern):
//   - No pattern: numbers as CStr writes them with the locale's decimal
//     symbol ("23", "2.5"), True/False, dates in the general date form,
//     text unchanged, Empty as "".
//   - Named formats, matched without regard to case: General Number,
//     Currency, Fixed, Standard, Percent, Scientific, Yes/No, True/False,
//     On/Off, General Date, Long Date, Medium Date, Short Date, Long Time,
//     Medium Time, Short Time.
//   - User-defined numeric patterns (0 # . , % E- E+ e- e+, literals, \c and
//     "text", scaling by commas left of the decimal point, up to four
//     sections: positive; negative; zero; Null), date/time patterns (c d dd
//     ddd dddd ddddd dddddd w ww m mm mmm mmmm q y yy yyyy h hh n nn s ss
//     ttttt AM/PM am/pm A/P a/p AMPM : /, letters without regard to case) and
//     text patterns (@ & < > !, two sections: text; Null or "").
//   - A pattern is a date pattern when its first section holds a date or
//     time token, a text pattern when it holds none of those but @ & < > or
//     !, else numeric (so "#,##0.00;;;Nil" is numeric).
//     Only the first 257 characters of a pattern count.
//   - Text with a numeric or date pattern is read as a number by the locale's
//     symbols, else as a date (CDate); text that is neither is returned as
//     it stands. Numbers and dates with a text pattern are first written as
//     text; dates take numeric patterns as their serial number and numbers
//     take date patterns as a serial.
//
// Choices where the classic function's behaviour is not documented:
//   - Null gives Null, except with a numeric pattern of four sections (the
//     fourth is written) and a text pattern of two (the second is written).
//   - Empty with a numeric or date pattern is formatted as 0; with no
//     pattern or a text pattern it gives "".
//   - Rounding is half away from zero on the value's 15-significant-digit
//     decimal form, so 1.005 with "0.00" gives "1.01". A negative value that
//     rounds to zero keeps its sign ("-0.00" for -0.001 with "0.00"); the
//     double -0 counts as zero.
//   - Medium Date is "d-mmm-yy" ("3-Apr-93"), Medium Time "h:mm AM/PM" with
//     the locale's designators ("5:34 PM"), Short Time "hh:mm" (24-hour).
//   - With "!" text fills placeholders from the left; in both directions
//     text longer than the placeholders goes whole into the last one.
//   - A date pattern letter that is no token ("t" alone, "a" outside AM/PM)
//     is written as it stands; so is any character a numeric pattern does
//     not know.
//   - Week numbers (ww) with first week of year 2 or 3: days before week 1
//     belong to the last week of the year before.
#ifndef VELD_RUNTIME_FORMAT_H_
#define VELD_RUNTIME_FORMAT_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "veld/export.h"
#include "veld/runtime/variant.h"

namespace veld {

// firstDayOfWeek: 0 the locale's, 1 Sunday (default) ... 7 Saturday.
// firstWeekOfYear: 0 the locale's (the week of January 1), 1 the week of
// January 1 (default), 2 the first week with at least four days, 3 the first
// full week. Raises 5 "Invalid procedure call or argument" for other values
// and for a date outside 100-01-01 .. 9999-12-31; 13 "Type mismatch" for
// Missing. Returns a String, or Null as described above.
VELD_EXPORT Variant Format(const Variant& value, std::string_view pattern = "",
                           int32_t firstDayOfWeek = 1, int32_t firstWeekOfYear = 1);

// Format$: as Format, but a Null result raises 94 "Invalid use of Null".
VELD_EXPORT std::string FormatText(const Variant& value, std::string_view pattern = "",
                                   int32_t firstDayOfWeek = 1, int32_t firstWeekOfYear = 1);

// CDate: a Date from a date, a number (the serial), Empty (0), a Boolean
// (True is -1) or a text read by the regional settings. Raises 13 "Type
// mismatch" for text that is no date, 6 "Overflow" for a number outside the
// date range, 94 "Invalid use of Null" for Null.
//
// Text is read as the classic runtime reads it: numbers in the locale's
// short date order, falling back to the other orders when a part cannot be
// a month or a day; yyyy-mm-dd and yyyy/mm/dd; month names, full or
// abbreviated, of the locale or English; a time h:mm[:ss] (or h.mm[.ss] where
// "." is not the date separator) with AM/PM; two-digit years 00-29 as 20xx,
// 30-99 as 19xx; a missing year is the current one. Weekday names, fractions
// of seconds and lone numbers are not dates.
VELD_EXPORT Variant CDate(const Variant& value);

// IsDate: True for a Date and for text that CDate reads; False otherwise
// (numbers included, as the classic function does).
VELD_EXPORT bool IsDate(const Variant& value);

}  // namespace veld

#endif  // VELD_RUNTIME_FORMAT_H_
