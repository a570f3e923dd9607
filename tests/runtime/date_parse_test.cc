#include "runtime/date_parse.h"

#include <ctime>
#include <string>

#include <gtest/gtest.h>

#include "runtime/date_time.h"
#include "veld/platform/regional_settings.h"
#include "veld/runtime/format.h"

#include "support/locale_platform.h"
#include "support/testing.h"

namespace veld {
namespace {

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

double Serial(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
  return SerialFromDateParts({year, month, day, hour, minute, second});
}

class DateParseTest : public ::testing::Test {
 protected:
  std::optional<double> Parse(const std::string& text, const std::string& locale = "en-US") {
    return ParseDateText(text, *RegionalSettingsForLocale(locale), 2024);
  }
  void ExpectDate(const std::string& text, double serial, const std::string& locale = "en-US") {
    const auto parsed = Parse(text, locale);
    ASSERT_TRUE(parsed.has_value()) << text;
    EXPECT_DOUBLE_EQ(*parsed, serial) << text;
  }
  void ExpectNoDate(const std::string& text, const std::string& locale = "en-US") {
    EXPECT_FALSE(Parse(text, locale).has_value()) << text;
  }
};

TEST_F(DateParseTest, NumbersFollowTheLocalesOrderThenFallBack) {
  ExpectDate("1 2 3", Serial(2003, 1, 2));
  ExpectDate("2 14 3", Serial(2003, 2, 14));
  ExpectDate("14 2 3", Serial(2014, 2, 3));
  ExpectDate("32 2 3", Serial(1932, 2, 3));
  ExpectDate("2 3 32", Serial(1932, 2, 3));
  ExpectDate("13-1-1970", Serial(1970, 1, 13));
  ExpectDate("1/2/1970", Serial(1970, 1, 2));
  ExpectDate("04/28/2014", Serial(2014, 4, 28));
  ExpectNoDate("13/32/2014");
}

TEST_F(DateParseTest, TwoDigitYearsPivotAtThirty) {
  ExpectDate("1 2 29", Serial(2029, 1, 2));
  ExpectDate("1 2 30", Serial(1930, 1, 2));
  ExpectDate("1/2/00", Serial(2000, 1, 2));
  ExpectDate("1/2/99", Serial(1999, 1, 2));
}

TEST_F(DateParseTest, AMissingYearIsTheCurrentOne) {
  ExpectDate("1 2", Serial(2024, 1, 2));
  ExpectDate("2 1", Serial(2024, 2, 1));
  ExpectDate("14 1", Serial(2024, 1, 14));
  ExpectDate("1 14", Serial(2024, 1, 14));
  ExpectDate("30 2", Serial(1930, 2, 1));
  ExpectDate("12-11", Serial(2024, 12, 11));
  const auto now = ParseDateText("3/4", *RegionalSettingsForLocale("en-US"));
  ASSERT_TRUE(now.has_value());
  EXPECT_EQ(DatePartsFromSerial(*now).year, ThisYear());
}

TEST_F(DateParseTest, MonthNames) {
  ExpectDate("Jan 35", Serial(1935, 1, 1));
  ExpectDate("35-Jan", Serial(1935, 1, 1));
  ExpectDate("Jan/35", Serial(1935, 1, 1));
  ExpectDate("2 January, 1970", Serial(1970, 1, 2));
  ExpectDate("2-Jan-1970", Serial(1970, 1, 2));
  ExpectDate("April 28, 2014", Serial(2014, 4, 28));
  ExpectDate("april 28 2014", Serial(2014, 4, 28));
  ExpectDate("Jan 5", Serial(2024, 1, 5));
}

TEST_F(DateParseTest, WeekdayNamesAndOtherWordsAreNoDate) {
  ExpectNoDate("Monday, April 28, 2014");
  ExpectNoDate("True");
  ExpectNoDate("hello");
}

TEST_F(DateParseTest, IsoDatesAndTimes) {
  ExpectDate("1970-1-13", Serial(1970, 1, 13));
  ExpectDate("2013-05-14 02:04:12", Serial(2013, 5, 14, 2, 4, 12));
  ExpectDate("2013-05-14 02:04", Serial(2013, 5, 14, 2, 4));
  ExpectDate("2013/05/14", Serial(2013, 5, 14));
  ExpectNoDate("2013-05-14 02:04:12.017000000");
  // ISO stays year-month-day whatever the locale's order.
  ExpectDate("2013-05-04", Serial(2013, 5, 4), "en-GB");
  ExpectDate("2013-05-04", Serial(2013, 5, 4), "de-DE");
}

TEST_F(DateParseTest, TimesWithAndWithoutDesignators) {
  ExpectDate("6/30/2011 01:20:34 PM", 40724.55594907407);
  ExpectDate("1 am", Serial(1899, 12, 30, 1));
  ExpectDate("12:59 AM", Serial(1899, 12, 30, 0, 59));
  ExpectDate("00:00 pm", Serial(1899, 12, 30, 12));
  ExpectDate("13:00 AM", Serial(1899, 12, 30, 13));
  ExpectDate("0.1", Serial(1899, 12, 30, 0, 1));
  ExpectDate("2.5", Serial(1899, 12, 30, 2, 5));
  ExpectDate("04.28.14", Serial(1899, 12, 30, 4, 28, 14));
}

TEST_F(DateParseTest, TextsThatAreNoDate) {
  for (const char* text :
       {"0", "1", "0.0", "True", "24:00", "0:60", "1;2;3", "1.2.3.4", "04.28.2014", "89:98",
        "1/2/2014 89:98", "", " ", "1 2 3 4", "1:2 3:4", "-5", "12:30:45:10"})
    ExpectNoDate(text);
}

TEST_F(DateParseTest, GermanDatesUseTheDotAsDateSeparator) {
  ExpectDate("02.01.1970", Serial(1970, 1, 2), "de-DE");
  ExpectDate("02.13.1970", Serial(1970, 2, 13), "de-DE");
  ExpectDate("2. Januar 1970", Serial(1970, 1, 2), "de-DE");
  ExpectDate("2 January 1970", Serial(1970, 1, 2), "de-DE");
  ExpectDate("14.05.2013 18:30", Serial(2013, 5, 14, 18, 30), "de-DE");
}

TEST_F(DateParseTest, BritishAndJapaneseOrders) {
  ExpectDate("04/05/2013", Serial(2013, 5, 4), "en-GB");
  ExpectDate("13/05/2013", Serial(2013, 5, 13), "en-GB");
  ExpectDate("04/05/2013", Serial(2013, 4, 5), "en-US");
  ExpectDate("13/05/04", Serial(2013, 5, 4), "ja-JP");
}

// --- CDate and IsDate ---

TEST(CDateTest, ReadsTextByTheInstalledSettings) {
  testing::ScopedLocale british("en-GB");
  EXPECT_EQ(CDate("04/05/2013"), Variant::Date(Serial(2013, 5, 4)));
  testing::ScopedLocale american("en-US");
  EXPECT_EQ(CDate("04/05/2013"), Variant::Date(Serial(2013, 4, 5)));
}

TEST(CDateTest, NumbersAreSerials) {
  EXPECT_EQ(CDate(2.525), Variant::Date(2.525));
  EXPECT_EQ(CDate(Variant()), Variant::Date(0));
  EXPECT_EQ(CDate(true), Variant::Date(-1));
  EXPECT_EQ(CDate(Variant::Date(7)), Variant::Date(7));
}

TEST(CDateTest, Failures) {
  testing::ScopedLocale american("en-US");
  EXPECT_RAISES(CDate("hello"), 13, "Type mismatch");
  EXPECT_RAISES(CDate("2013-05-14 02:04:12.017"), 13, "Type mismatch");
  EXPECT_RAISES(CDate(1e9), 6, "Overflow");
  EXPECT_RAISES(CDate(Variant::Null()), 94, "Invalid use of Null");
}

TEST(IsDateTest, DocumentedExamples) {
  testing::ScopedLocale american("en-US");
  EXPECT_TRUE(IsDate("04/28/2014"));
  EXPECT_TRUE(IsDate("April 28, 2014"));
  EXPECT_FALSE(IsDate("13/32/2014"));
  EXPECT_TRUE(IsDate("04.28.14"));
  EXPECT_FALSE(IsDate("04.28.2014"));
  EXPECT_TRUE(IsDate(Variant::Date(5)));
  EXPECT_FALSE(IsDate(5));
  EXPECT_FALSE(IsDate(Variant()));
  EXPECT_FALSE(IsDate(Variant::Null()));
}

}  // namespace
}  // namespace veld
