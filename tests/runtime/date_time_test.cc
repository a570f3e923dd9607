#include "runtime/date_time.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "support/testing.h"

namespace veld {
namespace {

void ExpectParts(double serial, int year, int month, int day, int hour, int minute, int second) {
  const DateParts parts = DatePartsFromSerial(serial);
  EXPECT_EQ(parts.year, year) << serial;
  EXPECT_EQ(parts.month, month) << serial;
  EXPECT_EQ(parts.day, day) << serial;
  EXPECT_EQ(parts.hour, hour) << serial;
  EXPECT_EQ(parts.minute, minute) << serial;
  EXPECT_EQ(parts.second, second) << serial;
}

TEST(DateSerialTest, DaysCountFrom18991230) {
  ExpectParts(0.0, 1899, 12, 30, 0, 0, 0);
  ExpectParts(2.0, 1900, 1, 1, 0, 0, 0);
  ExpectParts(5.25, 1900, 1, 4, 6, 0, 0);
  ExpectParts(5.875, 1900, 1, 4, 21, 0, 0);
  ExpectParts(2.525, 1900, 1, 1, 12, 36, 0);
  ExpectParts(40531.0, 2010, 12, 19, 0, 0, 0);
  ExpectParts(-657434.0, 100, 1, 1, 0, 0, 0);
  ExpectParts(2958465.0, 9999, 12, 31, 0, 0, 0);
}

TEST(DateSerialTest, NegativeSerialsAddTheTimeToTheDay) {
  ExpectParts(-1.0, 1899, 12, 29, 0, 0, 0);
  ExpectParts(-1.25, 1899, 12, 29, 6, 0, 0);
  ExpectParts(-0.5, 1899, 12, 30, 12, 0, 0);
  ExpectParts(-49192.24, 1765, 4, 24, 5, 45, 36);
}

TEST(DateSerialTest, TimeRoundsToTheNearestSecond) {
  ExpectParts(3.34, 1900, 1, 2, 8, 9, 36);
  ExpectParts(1.0 - 1e-9, 1899, 12, 31, 0, 0, 0);
  ExpectParts(-1.0 - (1.0 - 1e-9), 1899, 12, 30, 0, 0, 0);
}

TEST(DateSerialTest, PartsGiveTheSerialBack) {
  EXPECT_EQ(SerialFromDateParts({1899, 12, 30, 0, 0, 0}), 0.0);
  EXPECT_EQ(SerialFromDateParts({1900, 1, 4, 6, 0, 0}), 5.25);
  EXPECT_EQ(SerialFromDateParts({1899, 12, 29, 6, 0, 0}), -1.25);
  EXPECT_EQ(SerialFromDateParts({100, 1, 1, 0, 0, 0}), -657434.0);
  EXPECT_EQ(SerialFromDateParts({9999, 12, 31, 0, 0, 0}), 2958465.0);
  EXPECT_NEAR(SerialFromDateParts({2011, 6, 30, 13, 20, 34}), 40724.55594907407, 1e-9);
  EXPECT_EQ(DaysSinceEpoch(2000, 2, 29), 36585);
}

TEST(DateSerialTest, ValidRange) {
  EXPECT_TRUE(IsValidDateSerial(-657434.0));
  EXPECT_TRUE(IsValidDateSerial(2958465.9999));
  EXPECT_FALSE(IsValidDateSerial(-657434.5));
  EXPECT_FALSE(IsValidDateSerial(2958466.0));
  EXPECT_FALSE(IsValidDateSerial(std::nan("")));
  EXPECT_FALSE(IsValidDateSerial(std::numeric_limits<double>::infinity()));
}

TEST(DateToTextTest, GeneralDateForm) {
  EXPECT_EQ(DateToText(0.0), "12:00:00 AM");
  EXPECT_EQ(DateToText(3.34), "1/2/1900 8:09:36 AM");
  EXPECT_EQ(DateToText(365.0), "12/30/1900");
  EXPECT_EQ(DateToText(365.25), "12/30/1900 6:00:00 AM");
  EXPECT_EQ(DateToText(1461.5), "12/31/1903 12:00:00 PM");
  EXPECT_EQ(DateToText(-49192.24), "4/24/1765 5:45:36 AM");
  EXPECT_EQ(DateToText(-657434.0), "1/1/100");
  EXPECT_EQ(DateToText(2958465.0), "12/31/9999");
  EXPECT_EQ(DateToText(0.5), "12:00:00 PM");
  EXPECT_EQ(DateToText(2.725), "1/1/1900 5:24:00 PM");
  EXPECT_EQ(DateToText(40724.55594907407), "6/30/2011 1:20:34 PM");
}

TEST(DateToTextTest, OutOfRangeRaises5) {
  EXPECT_RAISES(DateToText(2958466.0), 5, "Invalid procedure call or argument");
  EXPECT_RAISES(DateToText(-700000.0), 5, "Invalid procedure call or argument");
  EXPECT_RAISES(DateToText(std::nan("")), 5, "Invalid procedure call or argument");
}

}  // namespace
}  // namespace veld
