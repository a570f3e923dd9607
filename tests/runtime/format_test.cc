#include "veld/runtime/format.h"

#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "support/locale_platform.h"
#include "support/testing.h"

namespace veld {
namespace {

// Every test runs with en-US settings unless it installs others.
class FormatTest : public ::testing::Test {
 protected:
  static std::string F(const Variant& value, const std::string& pattern = "", int day = 1,
                       int week = 1) {
    const Variant result = Format(value, pattern, day, week);
    return result.IsNull() ? "<Null>" : result.AsString();
  }
  testing::ScopedLocale locale_{"en-US"};
};

const Variant kDate2525 = Variant::Date(2.525);  // 1900-01-01 12:36:00

// --- general ---

TEST_F(FormatTest, NoPatternWritesNumbersWithoutTheSignSpace) {
  EXPECT_EQ(F(23), "23");
  EXPECT_EQ(F(-459.65), "-459.65");
  EXPECT_EQ(F(5), "5");
  EXPECT_EQ(F(0.5), "0.5");
  EXPECT_EQ(F(true), "True");
  EXPECT_EQ(F("text"), "text");
  EXPECT_EQ(F(Variant()), "");
}

TEST_F(FormatTest, NullGivesNullWithoutANullSection) {
  EXPECT_TRUE(Format(Variant::Null()).IsNull());
  EXPECT_TRUE(Format(Variant::Null(), "0.00").IsNull());
  EXPECT_TRUE(Format(Variant::Null(), "yyyy").IsNull());
  EXPECT_TRUE(Format(Variant::Null(), "Standard").IsNull());
  EXPECT_RAISES(FormatText(Variant::Null(), "0.00"), 94, "Invalid use of Null");
}

TEST_F(FormatTest, FourthSectionIsForNull) {
  EXPECT_EQ(F(Variant::Null(), "#,##0.00;;;Nil"), "Nil");
  EXPECT_EQ(F(5, "#,##0.00;;;Nil"), "5.00");
  EXPECT_EQ(F(-5, "#,##0.00;;;Nil"), "-5.00");
  EXPECT_EQ(F(0.5, "#,##0.00;;;Nil"), "0.50");
}

TEST_F(FormatTest, EmptyIsZeroForNumericAndDatePatterns) {
  EXPECT_EQ(F(Variant(), "0.00"), "0.00");
  EXPECT_EQ(F(Variant(), "yyyy-mm-dd"), "1899-12-30");
  EXPECT_EQ(F(Variant(), "@@"), "  ");
}

TEST_F(FormatTest, PatternsAreCutAt257Characters) {
  const std::string pattern = std::string(257, '0') + "\"tail\"";
  const std::string out = F(1, pattern);
  EXPECT_EQ(out, std::string(256, '0') + "1");
}

TEST_F(FormatTest, BadWeekArgumentsRaiseFive) {
  EXPECT_RAISES(Format(1, "0", 8), 5, "Invalid procedure call or argument");
  EXPECT_RAISES(Format(1, "0", 1, 4), 5, "Invalid procedure call or argument");
  EXPECT_RAISES(Format(1, "0", -1), 5, "Invalid procedure call or argument");
}

TEST_F(FormatTest, DatesOutOfRangeRaiseFive) {
  EXPECT_RAISES(Format(Variant::Date(3e6)), 5, "Invalid procedure call or argument");
  EXPECT_RAISES(Format(1e9, "yyyy"), 5, "Invalid procedure call or argument");
  EXPECT_RAISES(Format(-700000.0, "Short Date"), 5, "Invalid procedure call or argument");
}

TEST_F(FormatTest, MissingIsATypeMismatch) {
  EXPECT_RAISES(Format(Variant::Missing(), "0"), 13, "Type mismatch");
}

// --- named numeric formats ---

TEST_F(FormatTest, NamedNumericFormats) {
  EXPECT_EQ(F(1, "General Number"), "1");
  EXPECT_EQ(F(12345.67, "General Number"), "12345.67");
  EXPECT_EQ(F(12345.67, "Currency"), "$12,345.67");
  EXPECT_EQ(F(-3456.789, "Currency"), "($3,456.79)");
  EXPECT_EQ(F(12345.67, "Fixed"), "12345.67");
  EXPECT_EQ(F(3.56645, "Fixed"), "3.57");
  EXPECT_EQ(F(1, "Standard"), "1.00");
  EXPECT_EQ(F(12345.67, "Standard"), "12,345.67");
  EXPECT_EQ(F(1, "Percent"), "100.00%");
  EXPECT_EQ(F(0, "Percent"), "0.00%");
  EXPECT_EQ(F(1, "Scientific"), "1.00E+00");
  EXPECT_EQ(F(0, "Scientific"), "0.00E+00");
  EXPECT_EQ(F(12345.67, "Scientific"), "1.23E+04");
  EXPECT_EQ(F(1, "Yes/No"), "Yes");
  EXPECT_EQ(F(0, "Yes/No"), "No");
  EXPECT_EQ(F(1, "True/False"), "True");
  EXPECT_EQ(F(0, "True/False"), "False");
  EXPECT_EQ(F(1, "On/Off"), "On");
  EXPECT_EQ(F(0, "On/Off"), "Off");
  EXPECT_EQ(F(-2, "Yes/No"), "Yes");
}

TEST_F(FormatTest, NamedFormatsMatchWithoutRegardToCase) {
  EXPECT_EQ(F(kDate2525, "short time"), "12:36");
  EXPECT_EQ(F(kDate2525, "SHORT TIME"), "12:36");
  EXPECT_EQ(F(12345.67, "sTaNdArD"), "12,345.67");
}

// --- named date formats ---

TEST_F(FormatTest, NamedTimeFormats) {
  EXPECT_EQ(F(2.525, "Long Time"), "12:36:00 PM");
  EXPECT_EQ(F(2.525, "Medium Time"), "12:36 PM");
  EXPECT_EQ(F(2.525, "Short Time"), "12:36");
  EXPECT_EQ(F(Variant::Date(17.0 / 24 + 45.0 / 1440), "Short Time"), "17:45");
  EXPECT_EQ(F(Variant::Date(17.0 / 24 + 34.0 / 1440), "Medium Time"), "5:34 PM");
}

TEST_F(FormatTest, NamedDateFormats) {
  const Variant april3 = Variant::Date(34062);  // 1993-04-03
  EXPECT_EQ(F(april3, "Long Date"), "Saturday, April 3, 1993");
  EXPECT_EQ(F(april3, "Medium Date"), "3-Apr-93");
  EXPECT_EQ(F(april3, "Short Date"), "4/3/1993");
  EXPECT_EQ(F(april3, "General Date"), "4/3/1993");
}

TEST_F(FormatTest, GeneralDateDropsTheZeroDateAndMidnight) {
  EXPECT_EQ(F(Variant::Date(0.0)), "12:00:00 AM");
  EXPECT_EQ(F(Variant::Date(3.34)), "1/2/1900 8:09:36 AM");
  EXPECT_EQ(F(Variant::Date(365.0)), "12/30/1900");
  EXPECT_EQ(F(Variant::Date(365.25)), "12/30/1900 6:00:00 AM");
  EXPECT_EQ(F(Variant::Date(1461.5)), "12/31/1903 12:00:00 PM");
  EXPECT_EQ(F(Variant::Date(-49192.24)), "4/24/1765 5:45:36 AM");
  EXPECT_EQ(F(Variant::Date(-657434.0)), "1/1/100");
  EXPECT_EQ(F(Variant::Date(2958465.0)), "12/31/9999");
  EXPECT_EQ(F(3.34, "General Date"), "1/2/1900 8:09:36 AM");
}

// --- user-defined numeric patterns ---

struct NumberCase {
  const char* pattern;
  double value;
  const char* expected;
};

TEST_F(FormatTest, WorkedNumericExamples) {
  const NumberCase cases[] = {
      {"0", 5, "5"},
      {"0", -5, "-5"},
      {"0", 0.5, "1"},
      {"0.00", 5, "5.00"},
      {"0.00", -5, "-5.00"},
      {"0.00", 0.5, "0.50"},
      {"#,##0", 5, "5"},
      {"#,##0", -5, "-5"},
      {"#,##0", 0.5, "1"},
      {"$#,##0;($#,##0)", 5, "$5"},
      {"$#,##0;($#,##0)", -5, "($5)"},
      {"$#,##0;($#,##0)", 0.5, "$1"},
      {"$#,##0.00;($#,##0.00)", 5, "$5.00"},
      {"$#,##0.00;($#,##0.00)", -5, "($5.00)"},
      {"$#,##0.00;($#,##0.00)", 0.5, "$0.50"},
      {"0%", 5, "500%"},
      {"0%", -5, "-500%"},
      {"0%", 0.5, "50%"},
      {"0.00%", 5, "500.00%"},
      {"0.00%", -5, "-500.00%"},
      {"0.00%", 0.5, "50.00%"},
      {"0.00E+00", 5, "5.00E+00"},
      {"0.00E+00", -5, "-5.00E+00"},
      {"0.00E+00", 0.5, "5.00E-01"},
      {"0.00E-00", 5, "5.00E00"},
      {"0.00E-00", -5, "-5.00E00"},
      {"0.00E-00", 0.5, "5.00E-01"},
      {"##,##0.00", 5459.4, "5,459.40"},
      {"###0.00", 334.9, "334.90"},
      {"0.00%", 5, "500.00%"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(F(c.value, c.pattern), c.expected) << c.pattern << " " << c.value;
}

TEST_F(FormatTest, DigitPlaceholders) {
  const NumberCase cases[] = {
      {"#", 0, ""},
      {"#.#", 1, "1."},
      {"#.#", 0, "."},
      {"00", 1, "01"},
      {"#00000000", 1, "00000001"},
      {"000###", 1, "000001"},
      {"#,###,###,###", 100000, "100,000"},
      {"0,000,000,000", 1, "0,000,000,001"},
      {"#,#.#", 123456789, "123,456,789."},
      {"#;-#", -1, "-1"},
      {"#.00", 17, "17.00"},
      {"#.00", .17, ".17"},
      {"#.##", -1.57, "-1.57"},
      {".#", -0.1, "-.1"},
      {"#.#", 0.099, ".1"},
      {"#.##", 0.0049, "."},
      {"#0.##########", 0.00010705, "0.00010705"},
      {"#,##0.00", 1, "1.00"},
      {"#0", 1.7, "2"},
      {"#0.000000", 9.9999999, "10.000000"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(F(c.value, c.pattern), c.expected) << c.pattern << " " << c.value;
}

TEST_F(FormatTest, LiteralsAndEscapes) {
  EXPECT_EQ(F(1, "00\\c\\o\\p\\y"), "01copy");
  EXPECT_EQ(F(-1, "\"pos\";\"neg\""), "neg");
  EXPECT_EQ(F(0, "\"pos\";\"neg\""), "pos");
  EXPECT_EQ(F(0, "\"pos\";\"neg\";\"zero\""), "zero");
  EXPECT_EQ(F(0, "$#,##0;;\\Z\\e\\r\\o"), "Zero");
  EXPECT_EQ(F(5551234567.0, "(###) ###-####"), "(555) 123-4567");
  EXPECT_EQ(F(5, "\\\\0"), "\\5");
  EXPECT_EQ(F(5, "+ 0 -"), "+ 5 -");
}

TEST_F(FormatTest, SeparatorsInNumericPatternsAreTheLocales) {
  EXPECT_EQ(F(1234, "00:00"), "12:34");
  EXPECT_EQ(F(1234, "00/00"), "12/34");
  testing::ScopedLocale german("de-DE");
  EXPECT_EQ(F(1234, "00/00"), "12.34");
}

TEST_F(FormatTest, ScientificPatterns) {
  const NumberCase cases[] = {
      {"0.0000E+000", 1.73245, "1.7325E+000"},
      {"0.0000E+0", 100.0001, "1.0000E+2"},
      {".0000E+0", 47.11, ".4711E+2"},
      {"0.0000E-000", 1.7, "1.7000E000"},
      {"0.00e+00", 12345.67, "1.23e+04"},
      {"0.00E+00", 9.999, "1.00E+01"},
      {"0E+0", 0, "0E+0"},
      {"0.0E-0", 0.000123, "1.2E-4"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(F(c.value, c.pattern), c.expected) << c.pattern << " " << c.value;
}

TEST_F(FormatTest, ThousandsScalingByCommasLeftOfThePoint) {
  EXPECT_EQ(F(100000000, "##0,,"), "100");
  EXPECT_EQ(F(999999, "##0,,"), "1");
  EXPECT_EQ(F(400000, "##0,,"), "0");
  EXPECT_EQ(F(1234567, "#,##0,.00"), "1,234.57");
  EXPECT_EQ(F(1234567, "#,,##0"), "1,234,567");
}

TEST_F(FormatTest, RoundingIsHalfAwayFromZeroOnTheDecimalDigits) {
  EXPECT_EQ(F(1.005, "0.00"), "1.01");
  EXPECT_EQ(F(-1.005, "0.00"), "-1.01");
  EXPECT_EQ(F(2.5, "0"), "3");
  EXPECT_EQ(F(-2.5, "0"), "-3");
  EXPECT_EQ(F(0.125, "0.00"), "0.13");
  EXPECT_EQ(F(1e15, "0"), "1000000000000000");
  EXPECT_EQ(F(1.5e300, "0").size(), 301u);
}

TEST_F(FormatTest, NegativeValuesThatRoundToZeroKeepTheirSign) {
  EXPECT_EQ(F(-0.001, "0.00"), "-0.00");
  EXPECT_EQ(F(-0.0, "0.00"), "0.00");
  EXPECT_EQ(F(-0.0, "0;(0);\"zero\""), "zero");
}

TEST_F(FormatTest, EmptySectionsStandForTheFirst) {
  EXPECT_EQ(F(-5, "0.0;;\"zero\""), "-5.0");
  EXPECT_EQ(F(0, "0.0;;"), "0.0");
}

TEST_F(FormatTest, DatesTakeNumericPatternsAsTheirSerial) {
  EXPECT_EQ(F(kDate2525, "0.000"), "2.525");
  EXPECT_EQ(F(true, "0"), "-1");
}

TEST_F(FormatTest, InfinitiesAndNaNAreWrittenAsTheClassicRuntimeWritesThem) {
  EXPECT_EQ(F(std::numeric_limits<double>::infinity(), "0.00"), "1.#INF");
  EXPECT_EQ(F(-std::numeric_limits<double>::infinity(), "Standard"), "-1.#INF");
}

// --- user-defined date patterns ---

struct DateCase {
  const char* pattern;
  const char* expected;
};

TEST_F(FormatTest, DateTokensOn2525) {
  const DateCase cases[] = {
      {"q", "1"},
      {"d", "1"},
      {"dd", "01"},
      {"ddd", "Mon"},
      {"dddd", "Monday"},
      {"mmm", "Jan"},
      {"mmmm", "January"},
      {"y", "1"},
      {"yy", "00"},
      {"yyyy", "1900"},
      {"am/pm", "pm"},
      {"AM/PM", "PM"},
      {"A/P", "P"},
      {"a/p", "p"},
      {"dd mm yyyy hh:mm:ss", "01 01 1900 12:36:00"},
      {"yyy", "001"},
      {"ddddd", "1/1/1900"},
      {"dddddd", "Monday, January 1, 1900"},
      {"ttttt", "12:36:00 PM"},
      {"c", "1/1/1900 12:36:00 PM"},
      {"AMPM", "PM"},
      {"w", "2"},
      {"ww", "1"},
  };
  for (const auto& c : cases) EXPECT_EQ(F(kDate2525, c.pattern), c.expected) << c.pattern;
}

TEST_F(FormatTest, MIsMinuteRightAfterAnHour) {
  const DateCase cases[] = {
      {"dd mm yyyy mm", "01 01 1900 01"}, {"dd mm yyyy :mm", "01 01 1900 :01"},
      {"mm :mm:ss", "01 :01:00"},         {"hh:mm :ss:mm", "12:36 :00:01"},
      {"hh:dd :mm:mm", "12:01 :01:01"},   {"dd:hh :mm:mm", "01:12 :36:01"},
      {"hh :mm:mm", "12 :36:01"},         {"dd :mm:nn", "01 :01:36"},
  };
  for (const auto& c : cases) EXPECT_EQ(F(kDate2525, c.pattern), c.expected) << c.pattern;
}

TEST_F(FormatTest, DateLettersIgnoreCase) {
  EXPECT_EQ(F(kDate2525, "YYYY-MM-DD HH:NN:SS"), "1900-01-01 12:36:00");
  EXPECT_EQ(F(kDate2525, "Hh:Nn"), "12:36");
}

TEST_F(FormatTest, TwelveHourClock) {
  EXPECT_EQ(F(Variant::Date(2.725), "hh:nn:ss A/P"), "05:24:00 P");
  const Variant evening = Variant::Date(17.0 / 24 + 4.0 / 1440 + 23.0 / 86400);
  EXPECT_EQ(F(evening, "h:m:s"), "17:4:23");
  EXPECT_EQ(F(evening, "hh:mm:ss AM/PM"), "05:04:23 PM");
  EXPECT_EQ(F(evening, "hh:mm:ss am/pm"), "05:04:23 pm");
  EXPECT_EQ(F(Variant::Date(0.0), "h AM/PM"), "12 AM");
}

TEST_F(FormatTest, DocumentedDateExamples) {
  // 1958-12-07 20:50:35
  const Variant when = Variant::Date(21526 + (20 * 3600 + 50 * 60 + 35) / 86400.0);
  const DateCase cases[] = {
      {"m/d/yy", "12/7/58"},          {"d-mmm", "7-Dec"},
      {"d-mmmm-yy", "7-December-58"}, {"d mmmm", "7 December"},
      {"mmmm yy", "December 58"},     {"hh:mm AM/PM", "08:50 PM"},
      {"h:mm:ss a/p", "8:50:35 p"},   {"h:mm", "20:50"},
      {"h:mm:ss", "20:50:35"},        {"m/d/yy h:mm", "12/7/58 20:50"},
  };
  for (const auto& c : cases) EXPECT_EQ(F(when, c.pattern), c.expected) << c.pattern;
  EXPECT_EQ(F(Variant::Date(33996), "dddd, mmm d yyyy"), "Wednesday, Jan 27 1993");
  EXPECT_EQ(F(Variant::Date(40531), "dddd"), "Sunday");
}

TEST_F(FormatTest, WeekdayFollowsTheFirstDayOfWeek) {
  const char* expected[] = {"7", "6", "5", "4", "3", "2", "1"};
  for (int day = 1; day <= 7; ++day) EXPECT_EQ(F(Variant::Date(0), "w", day), expected[day - 1]);
  // 0: the locale's first day (Sunday in en-US, Monday in de-DE).
  EXPECT_EQ(F(Variant::Date(0), "w", 0), "7");
  testing::ScopedLocale german("de-DE");
  EXPECT_EQ(F(Variant::Date(0), "w", 0), "6");
}

TEST_F(FormatTest, WeekOfYearFollowsTheFirstWeekRule) {
  // 2021-01-01 is a Friday; 2021-01-04 a Monday.
  const Variant jan1 = Variant::Date(44197);
  const Variant jan4 = Variant::Date(44200);
  EXPECT_EQ(F(jan1, "ww"), "1");
  EXPECT_EQ(F(jan4, "ww"), "2");
  EXPECT_EQ(F(jan4, "ww", 2, 2), "1");   // Monday weeks, four days: ISO week 1
  EXPECT_EQ(F(jan1, "ww", 2, 2), "53");  // belongs to the last week of 2020
  EXPECT_EQ(F(jan4, "ww", 2, 3), "1");
  EXPECT_EQ(F(Variant::Date(44561), "ww"), "53");  // 2021-12-31, Sunday weeks
  EXPECT_EQ(F(Variant::Date(36891), "ww"), "54");  // 2000-12-31: a leap year from a Saturday
}

TEST_F(FormatTest, QuarterAndDayOfYear) {
  EXPECT_EQ(F(Variant::Date(44561), "q y"), "4 365");
  EXPECT_EQ(F(Variant::Date(36891), "q y"), "4 366");
}

TEST_F(FormatTest, NumbersTakeDatePatternsAsASerial) {
  EXPECT_EQ(F(2.525, "hh:nn"), "12:36");
  EXPECT_EQ(F(40531, "yyyy-mm-dd"), "2010-12-19");
}

TEST_F(FormatTest, LettersThatAreNoTokenAreWritten) {
  EXPECT_EQ(F(kDate2525, "t hh"), "t 12");
  EXPECT_EQ(F(kDate2525, "\"at\" hh"), "at 12");
  EXPECT_EQ(F(kDate2525, "yyyy \\y"), "1900 y");
  // aaaa and oooo (localised day and month names in one copy of the old
  // help) are not tokens here.
  EXPECT_EQ(F(kDate2525, "aaaa oooo"), "aaaa oooo");
}

// --- text ---

TEST_F(FormatTest, TextPatterns) {
  EXPECT_EQ(F("HELLO", "<"), "hello");
  EXPECT_EQ(F("This is it", ">"), "THIS IS IT");
  EXPECT_EQ(F("testing", ""), "testing");
  EXPECT_EQ(F("testing", "@@@@@@@@"), " testing");
  EXPECT_EQ(F("testing", "&&&&&&&&"), "testing");
  EXPECT_EQ(F("testing", ">&&"), "TESTING");
  EXPECT_EQ(F("testing", "\\x@\\x@"), "xtxesting");
  EXPECT_EQ(F(1, "<&>&"), "1");
}

TEST_F(FormatTest, TextFillsFromTheRightUnlessBang) {
  EXPECT_EQ(F("ab", "@@@@"), "  ab");
  EXPECT_EQ(F("ab", "!@@@@"), "ab  ");
  EXPECT_EQ(F("ab", "&&-&&"), "-ab");
  EXPECT_EQ(F("ab", "!&&-&&"), "ab-");
  EXPECT_EQ(F("5551234", "@@@-@@@@"), "555-1234");
}

TEST_F(FormatTest, TextSecondSectionIsForNullAndEmptyText) {
  EXPECT_EQ(F("", "@;\"none\""), "none");
  EXPECT_EQ(F(Variant::Null(), "@;\"none\""), "none");
  EXPECT_EQ(F("x", "@;\"none\""), "x");
  EXPECT_TRUE(Format(Variant::Null(), "@").IsNull());
}

TEST_F(FormatTest, TextIsReadAsANumberOrADateFirst) {
  EXPECT_EQ(F("39697.11", "hh:mm"), "02:38");
  EXPECT_EQ(F("6,90", "###,##0.00"), "690.00");
  EXPECT_EQ(F("12-11", "dd-mm"), "11-12");
  EXPECT_EQ(F("hello", "0.00"), "hello");
  EXPECT_EQ(F("hello", "yyyy"), "hello");
  EXPECT_EQ(F("2013-05-14", "dd.mm.yyyy"), "14.05.2013");
  testing::ScopedLocale german("de-DE");
  EXPECT_EQ(F("6,90", "###,##0.00"), "6,90");
  EXPECT_EQ(F("1.234,5", "0.0"), "1234,5");
}

// --- locales ---

TEST_F(FormatTest, GermanSettings) {
  testing::ScopedLocale german("de-DE");
  EXPECT_EQ(F(1234567.891, "#,##0.00"), "1.234.567,89");
  EXPECT_EQ(F(Variant::Date(40531.75), "Short Date"), "19.12.2010");
  EXPECT_EQ(F(Variant::Date(40531.75), "Long Time"), "18:00:00");
  EXPECT_EQ(F(Variant::Date(40531.75)), "19.12.2010 18:00:00");
  EXPECT_EQ(F(Variant::Date(40531), "dddd, d. mmmm yyyy"), "Sonntag, 19. Dezember 2010");
  EXPECT_EQ(F(2.5), "2,5");
  EXPECT_EQ(F(1234.5, "Currency"), "1.234,50 \xE2\x82\xAC");
  EXPECT_EQ(F(-1234.5, "Currency"), "-1.234,50 \xE2\x82\xAC");
}

TEST_F(FormatTest, BritishSettings) {
  testing::ScopedLocale british("en-GB");
  EXPECT_EQ(F(Variant::Date(40531.75), "Short Date"), "19/12/2010");
  EXPECT_EQ(F(Variant::Date(40531.75), "Long Time"), "18:00:00");
  EXPECT_EQ(F(1234567.891, "Standard"), "1,234,567.89");
  EXPECT_EQ(F(Variant::Date(40531), "mmmm"), "December");
}

TEST_F(FormatTest, FrenchSettings) {
  testing::ScopedLocale french("fr-FR");
  EXPECT_EQ(F(Variant::Date(40531.75), "Short Date"), "19/12/2010");
  EXPECT_EQ(F(Variant::Date(40531.75), "Long Time"), "18:00:00");
  // The grouping symbol is the locale data's: a blank here, a no-break
  // space in Wine's data.
  const std::string group = CurrentPlatform().Regional()->grouping_symbol;
  EXPECT_EQ(F(1234567.891, "#,##0.00"), "1" + group + "234" + group + "567,89");
  EXPECT_EQ(F(Variant::Date(40531), "dddd d mmmm"),
            "dimanche 19 d\xC3\xA9"
            "cembre");
}

TEST_F(FormatTest, JapaneseSettings) {
  testing::ScopedLocale japanese("ja-JP");
  EXPECT_EQ(F(Variant::Date(40531.75), "Short Date"), "2010/12/19");
  EXPECT_EQ(F(Variant::Date(40531.25), "Long Time"), "6:00:00");
  EXPECT_EQ(F(1234567.891, "#,##0.00"), "1,234,567.89");
  EXPECT_EQ(F(Variant::Date(40531), "mmmm"), "12\xE6\x9C\x88");
}

}  // namespace
}  // namespace veld
