#include "tablestore/field_type.h"

#include <cstdint>
#include <string>

#include <gtest/gtest.h>

namespace veld {
namespace {

std::optional<FieldValue> Convert(const char* declared, const std::string& text) {
  return ConvertText(ClassifyDeclaredType(declared), text);
}

template <class T>
T As(const std::optional<FieldValue>& value) {
  EXPECT_TRUE(value.has_value());
  if (!value) return T();
  EXPECT_TRUE(std::holds_alternative<T>(*value));
  return std::holds_alternative<T>(*value) ? std::get<T>(*value) : T();
}

TEST(FieldTypeTest, ClassifiesDeclaredTypes) {
  EXPECT_EQ(ClassifyDeclaredType("INTEGER").kind, FieldKind::kInteger);
  EXPECT_EQ(ClassifyDeclaredType("int").max, 2147483647);
  EXPECT_EQ(ClassifyDeclaredType("SMALLINT").min, -32768);
  EXPECT_EQ(ClassifyDeclaredType("tinyint").max, 255);
  EXPECT_EQ(ClassifyDeclaredType("BIGINT").max, INT64_MAX);
  EXPECT_EQ(ClassifyDeclaredType("VARCHAR(20)").kind, FieldKind::kText);
  EXPECT_EQ(ClassifyDeclaredType("varchar( 20 )").length, 20);
  EXPECT_EQ(ClassifyDeclaredType("TEXT").length, 0);
  EXPECT_EQ(ClassifyDeclaredType("NUMERIC(10,2)").kind, FieldKind::kDecimal);
  EXPECT_EQ(ClassifyDeclaredType("NUMERIC(10,2)").scale, 2);
  EXPECT_EQ(ClassifyDeclaredType("NUMERIC").kind, FieldKind::kReal);
  EXPECT_EQ(ClassifyDeclaredType("DOUBLE PRECISION").kind, FieldKind::kReal);
  EXPECT_EQ(ClassifyDeclaredType("BOOLEAN").kind, FieldKind::kBoolean);
  EXPECT_EQ(ClassifyDeclaredType("DATE").kind, FieldKind::kDate);
  EXPECT_EQ(ClassifyDeclaredType("DATETIME").kind, FieldKind::kDateTime);
  EXPECT_EQ(ClassifyDeclaredType("TIMESTAMP").kind, FieldKind::kDateTime);
  EXPECT_EQ(ClassifyDeclaredType("TIME").kind, FieldKind::kTime);
  EXPECT_EQ(ClassifyDeclaredType("").kind, FieldKind::kAny);
  EXPECT_EQ(ClassifyDeclaredType("BLOB").kind, FieldKind::kAny);
}

TEST(FieldTypeTest, IntegersRoundHalfToEvenAndCheckTheRange) {
  EXPECT_EQ(As<int64_t>(Convert("INTEGER", " 42 ")), 42);
  EXPECT_EQ(As<int64_t>(Convert("INTEGER", "2.5")), 2);
  EXPECT_EQ(As<int64_t>(Convert("INTEGER", "3.5")), 4);
  EXPECT_EQ(As<int64_t>(Convert("INTEGER", "-2.5")), -2);
  EXPECT_EQ(As<int64_t>(Convert("INTEGER", "1,234")), 1234);
  EXPECT_EQ(As<int64_t>(Convert("INTEGER", "2147483647")), 2147483647);
  EXPECT_FALSE(Convert("INTEGER", "2147483648"));
  EXPECT_FALSE(Convert("SMALLINT", "40000"));
  EXPECT_FALSE(Convert("TINYINT", "-1"));
  EXPECT_EQ(As<int64_t>(Convert("BIGINT", "9223372036854775807")), INT64_MAX);
  EXPECT_FALSE(Convert("BIGINT", "9223372036854775808"));
  EXPECT_FALSE(Convert("INTEGER", "abc"));
  EXPECT_FALSE(Convert("INTEGER", ""));
}

TEST(FieldTypeTest, RealsAndDecimals) {
  EXPECT_DOUBLE_EQ(As<double>(Convert("REAL", "1.5e3")), 1500.0);
  EXPECT_FALSE(Convert("REAL", "1.5x"));
  EXPECT_DOUBLE_EQ(As<double>(Convert("NUMERIC(10,2)", "12.345")), 12.34);
  EXPECT_DOUBLE_EQ(As<double>(Convert("NUMERIC(10,2)", "12.355")), 12.36);
  EXPECT_FALSE(Convert("NUMERIC(4,2)", "100"));
  EXPECT_DOUBLE_EQ(As<double>(Convert("NUMERIC(4,2)", "99.99")), 99.99);
}

TEST(FieldTypeTest, BooleansAcceptWordsAndNumbers) {
  for (const char* yes : {"True", "true", " YES ", "on", "1", "-1", "2.5"}) {
    EXPECT_EQ(As<int64_t>(Convert("BOOLEAN", yes)), 1) << yes;
  }
  for (const char* no : {"False", "no", "OFF", "0", "0.0"}) {
    EXPECT_EQ(As<int64_t>(Convert("BOOLEAN", no)), 0) << no;
  }
  EXPECT_FALSE(Convert("BOOLEAN", "maybe"));
}

TEST(FieldTypeTest, DatesAndTimesAreStoredInIsoForm) {
  EXPECT_EQ(As<std::string>(Convert("DATE", "2026-11-21")), "2026-11-21");
  EXPECT_EQ(As<std::string>(Convert("DATE", "11/21/2026")), "2026-11-21");
  EXPECT_EQ(As<std::string>(Convert("DATE", "2026-11-21 00:00:00")), "2026-11-21");
  EXPECT_FALSE(Convert("DATE", "2026-11-21 10:00"));
  EXPECT_FALSE(Convert("DATE", "2026-02-30"));
  EXPECT_FALSE(Convert("DATE", "2026-13-01"));
  EXPECT_EQ(As<std::string>(Convert("DATE", "2024-02-29")), "2024-02-29");
  EXPECT_EQ(As<std::string>(Convert("DATETIME", "2026-11-21T13:45")), "2026-11-21 13:45:00");
  EXPECT_EQ(As<std::string>(Convert("DATETIME", "11/21/2026 1:45:07 PM")), "2026-11-21 13:45:07");
  EXPECT_EQ(As<std::string>(Convert("DATETIME", "12:00:00 AM")), "1899-12-30 00:00:00");
  EXPECT_EQ(As<std::string>(Convert("TIME", "9:05")), "09:05:00");
  EXPECT_FALSE(Convert("TIME", "2026-11-21 09:05"));
  EXPECT_FALSE(Convert("TIME", "25:00"));
  EXPECT_FALSE(Convert("DATETIME", "yesterday"));
  EXPECT_FALSE(Convert("DATETIME", "13:00 PM"));
}

TEST(FieldTypeTest, TextLengthCountsCharacters) {
  EXPECT_EQ(As<std::string>(Convert("VARCHAR(3)", "äöü")), "äöü");
  EXPECT_FALSE(Convert("VARCHAR(3)", "abcd"));
  EXPECT_EQ(As<std::string>(Convert("TEXT", std::string(10000, 'x'))).size(), 10000u);
  EXPECT_EQ(As<std::string>(Convert("", "anything")), "anything");
}

}  // namespace
}  // namespace veld
