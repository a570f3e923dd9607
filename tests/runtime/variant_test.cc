#include "veld/runtime/variant.h"

#include <cstdint>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "support/testing.h"

namespace veld {
namespace {

constexpr int32_t kInvalidUseOfNull = 94;

TEST(VariantTest, FactoriesAndTypeTests) {
  EXPECT_TRUE(Variant().IsEmpty());
  EXPECT_TRUE(Variant::Empty().IsEmpty());
  EXPECT_EQ(Variant::Empty().Type(), VarType::kEmpty);
  EXPECT_TRUE(Variant::Null().IsNull());
  EXPECT_EQ(Variant::Null().Type(), VarType::kNull);
  EXPECT_TRUE(Variant::Missing().IsMissing());
  EXPECT_EQ(Variant::Missing().Type(), VarType::kError);
  EXPECT_FALSE(Variant::Missing().IsEmpty());
  EXPECT_FALSE(Variant::Null().IsEmpty());
  EXPECT_EQ(Variant::Date(2.5).Type(), VarType::kDate);
  EXPECT_EQ(Variant::Date(2.5).AsDate(), 2.5);
}

TEST(VariantTest, ImplicitConstructorsPickTheClassicKinds) {
  EXPECT_EQ(Variant(true).Type(), VarType::kBoolean);
  EXPECT_EQ(Variant(uint8_t{7}).Type(), VarType::kByte);
  EXPECT_EQ(Variant(int16_t{7}).Type(), VarType::kInteger);
  EXPECT_EQ(Variant(int32_t{7}).Type(), VarType::kLong);
  EXPECT_EQ(Variant(7).Type(), VarType::kLong);
  EXPECT_EQ(Variant(2.5).Type(), VarType::kDouble);
  EXPECT_EQ(Variant("text").Type(), VarType::kString);
  EXPECT_EQ(Variant(std::string("text")).Type(), VarType::kString);
  EXPECT_TRUE(Variant("text").IsString());
  EXPECT_EQ(Variant(int16_t{-3}).AsInteger(), -3);
  EXPECT_EQ(Variant("x").AsString(), "x");
}

TEST(VariantTest, IsNumericForNumbersBooleansAndDates) {
  EXPECT_TRUE(Variant(true).IsNumeric());
  EXPECT_TRUE(Variant(uint8_t{1}).IsNumeric());
  EXPECT_TRUE(Variant(int16_t{1}).IsNumeric());
  EXPECT_TRUE(Variant(1).IsNumeric());
  EXPECT_TRUE(Variant(1.5).IsNumeric());
  EXPECT_TRUE(Variant::Date(1.0).IsNumeric());
  EXPECT_FALSE(Variant("1").IsNumeric());
  EXPECT_FALSE(Variant::Empty().IsNumeric());
  EXPECT_FALSE(Variant::Null().IsNumeric());
  EXPECT_FALSE(Variant::Missing().IsNumeric());
}

TEST(VariantToStringTest, EachKind) {
  EXPECT_EQ(Variant::Empty().ToString(), "");
  EXPECT_EQ(Variant(true).ToString(), "True");
  EXPECT_EQ(Variant(false).ToString(), "False");
  EXPECT_EQ(Variant(uint8_t{255}).ToString(), "255");
  EXPECT_EQ(Variant(int16_t{-32768}).ToString(), "-32768");
  EXPECT_EQ(Variant(5).ToString(), "5");
  EXPECT_EQ(Variant(-2147483647 - 1).ToString(), "-2147483648");
  EXPECT_EQ(Variant(2.5).ToString(), "2.5");
  EXPECT_EQ(Variant(0.1 + 0.2).ToString(), "0.3");
  EXPECT_EQ(Variant(1e20).ToString(), "1E+20");
  EXPECT_EQ(Variant(-459.65).ToString(), "-459.65");
  EXPECT_EQ(Variant("abc").ToString(), "abc");
}

TEST(VariantToStringTest, DateUsesTheGeneralDateForm) {
  EXPECT_EQ(Variant::Date(0.0).ToString(), "12:00:00 AM");
  EXPECT_EQ(Variant::Date(3.34).ToString(), "1/2/1900 8:09:36 AM");
  EXPECT_EQ(Variant::Date(365.0).ToString(), "12/30/1900");
  EXPECT_EQ(Variant::Date(-1.25).ToString(), "12/29/1899 6:00:00 AM");
}

TEST(VariantToStringTest, NullAndMissingRaise) {
  EXPECT_RAISES(Variant::Null().ToString(), kInvalidUseOfNull, "Invalid use of Null");
  EXPECT_RAISES(Variant::Missing().ToString(), 13, "Type mismatch");
}

TEST(VariantToLongTest, EachKind) {
  EXPECT_EQ(Variant::Empty().ToLong(), 0);
  EXPECT_EQ(Variant(true).ToLong(), -1);
  EXPECT_EQ(Variant(false).ToLong(), 0);
  EXPECT_EQ(Variant(uint8_t{200}).ToLong(), 200);
  EXPECT_EQ(Variant(int16_t{-5}).ToLong(), -5);
  EXPECT_EQ(Variant(123456).ToLong(), 123456);
  EXPECT_EQ(Variant(2.5).ToLong(), 2);
  EXPECT_EQ(Variant(3.5).ToLong(), 4);
  EXPECT_EQ(Variant(-2.5).ToLong(), -2);
  EXPECT_EQ(Variant(25427.55).ToLong(), 25428);
  EXPECT_EQ(Variant::Date(5.75).ToLong(), 6);
  EXPECT_EQ(Variant(" 7 ").ToLong(), 7);
  EXPECT_EQ(Variant("-1.5").ToLong(), -2);
}

TEST(VariantToLongTest, FailuresRaise) {
  EXPECT_RAISES(Variant(2147483648.0).ToLong(), 6, "Overflow");
  EXPECT_RAISES(Variant("2147483648").ToLong(), 6, "Overflow");
  EXPECT_RAISES(Variant("abc").ToLong(), 13, "Type mismatch");
  EXPECT_RAISES(Variant("").ToLong(), 13, "Type mismatch");
  EXPECT_RAISES(Variant::Null().ToLong(), kInvalidUseOfNull, "Invalid use of Null");
  EXPECT_RAISES(Variant::Missing().ToLong(), 13, "Type mismatch");
}

TEST(VariantToIntegerTest, SixteenBitRange) {
  EXPECT_EQ(Variant(32767).ToInteger(), 32767);
  EXPECT_EQ(Variant(-32768).ToInteger(), -32768);
  EXPECT_EQ(Variant(2345.5678).ToInteger(), 2346);
  EXPECT_EQ(Variant(true).ToInteger(), -1);
  EXPECT_EQ(Variant::Empty().ToInteger(), 0);
  EXPECT_EQ(Variant("&HFFFF").ToInteger(), -1);
  EXPECT_RAISES(Variant(32768).ToInteger(), 6, "Overflow");
  EXPECT_RAISES(Variant(32767.5).ToInteger(), 6, "Overflow");
  EXPECT_RAISES(Variant("32767.5").ToInteger(), 6, "Overflow");
  EXPECT_RAISES(Variant("x").ToInteger(), 13, "Type mismatch");
  EXPECT_RAISES(Variant::Null().ToInteger(), kInvalidUseOfNull, "Invalid use of Null");
}

TEST(VariantToDoubleTest, EachKind) {
  EXPECT_EQ(Variant::Empty().ToDouble(), 0.0);
  EXPECT_EQ(Variant(true).ToDouble(), -1.0);
  EXPECT_EQ(Variant(uint8_t{3}).ToDouble(), 3.0);
  EXPECT_EQ(Variant(int16_t{3}).ToDouble(), 3.0);
  EXPECT_EQ(Variant(3).ToDouble(), 3.0);
  EXPECT_EQ(Variant(2.25).ToDouble(), 2.25);
  EXPECT_EQ(Variant::Date(5.25).ToDouble(), 5.25);
  EXPECT_EQ(Variant("1,234.5").ToDouble(), 1234.5);
  EXPECT_RAISES(Variant("1.2.3").ToDouble(), 13, "Type mismatch");
  EXPECT_RAISES(Variant("1e999").ToDouble(), 6, "Overflow");
  EXPECT_RAISES(Variant::Null().ToDouble(), kInvalidUseOfNull, "Invalid use of Null");
  EXPECT_RAISES(Variant::Missing().ToDouble(), 13, "Type mismatch");
}

TEST(VariantToBoolTest, NumbersAreTrueWhenNotZero) {
  EXPECT_FALSE(Variant::Empty().ToBool());
  EXPECT_TRUE(Variant(true).ToBool());
  EXPECT_FALSE(Variant(uint8_t{0}).ToBool());
  EXPECT_TRUE(Variant(int16_t{-1}).ToBool());
  EXPECT_TRUE(Variant(5).ToBool());
  EXPECT_TRUE(Variant(0.1).ToBool());
  EXPECT_FALSE(Variant(0.0).ToBool());
  EXPECT_FALSE(Variant::Date(0.0).ToBool());
}

TEST(VariantToBoolTest, TextIsTrueFalseOrNumeric) {
  EXPECT_TRUE(Variant("True").ToBool());
  EXPECT_TRUE(Variant("TRUE").ToBool());
  EXPECT_FALSE(Variant("false").ToBool());
  EXPECT_TRUE(Variant(" true ").ToBool());
  EXPECT_TRUE(Variant("-1").ToBool());
  EXPECT_FALSE(Variant("0").ToBool());
  EXPECT_TRUE(Variant("0.5").ToBool());
  EXPECT_RAISES(Variant("yes").ToBool(), 13, "Type mismatch");
  EXPECT_RAISES(Variant("").ToBool(), 13, "Type mismatch");
  EXPECT_RAISES(Variant::Null().ToBool(), kInvalidUseOfNull, "Invalid use of Null");
  EXPECT_RAISES(Variant::Missing().ToBool(), 13, "Type mismatch");
}

TEST(VariantEqualityTest, SameKindAndSameValue) {
  EXPECT_EQ(Variant(5), Variant(5));
  EXPECT_NE(Variant(5), Variant(6));
  EXPECT_NE(Variant(5), Variant(int16_t{5}));  // Different kinds.
  EXPECT_NE(Variant(5), Variant("5"));
  EXPECT_EQ(Variant("a"), Variant(std::string("a")));
  EXPECT_NE(Variant("a"), Variant("A"));
  EXPECT_EQ(Variant::Null(), Variant::Null());
  EXPECT_EQ(Variant::Missing(), Variant::Missing());
  EXPECT_EQ(Variant::Empty(), Variant());
  EXPECT_NE(Variant::Empty(), Variant::Null());
  EXPECT_NE(Variant::Null(), Variant::Missing());
  EXPECT_EQ(Variant::Date(1.5), Variant::Date(1.5));
  EXPECT_NE(Variant::Date(1.5), Variant(1.5));
  EXPECT_EQ(Variant(true), Variant(true));
  EXPECT_NE(Variant(true), Variant(false));
}

TEST(VariantEqualityTest, CopiesCompareEqual) {
  const Variant original("copy me");
  Variant copy = original;
  EXPECT_EQ(copy, original);
  copy = Variant(1);
  EXPECT_NE(copy, original);
  EXPECT_EQ(original.AsString(), "copy me");
}

TEST(VariantTest, ToIntegerKeepsTheSixteenBitRange) {
  EXPECT_EQ(Variant(int32_t{32767}).ToInteger(), 32767);
  EXPECT_EQ(Variant(int32_t{-32768}).ToInteger(), -32768);
  EXPECT_RAISES(Variant(int32_t{40000}).ToInteger(), 6, "Overflow");
  EXPECT_RAISES(Variant(32767.5).ToInteger(), 6, "Overflow");
  EXPECT_EQ(Variant(2.5).ToInteger(), 2);
  EXPECT_EQ(Variant(true).ToInteger(), -1);
  EXPECT_EQ(Variant::Empty().ToInteger(), 0);
  EXPECT_EQ(Variant("12").ToInteger(), 12);
  EXPECT_RAISES(Variant::Null().ToInteger(), 94, "Invalid use of Null");
}

TEST(VariantTest, ToBoolOfNumbersAndText) {
  EXPECT_TRUE(Variant(int32_t{5}).ToBool());
  EXPECT_FALSE(Variant(0.0).ToBool());
  EXPECT_TRUE(Variant::Date(1.0).ToBool());
  EXPECT_FALSE(Variant::Empty().ToBool());
  EXPECT_TRUE(Variant(" true ").ToBool());
  EXPECT_FALSE(Variant("FALSE").ToBool());
  EXPECT_TRUE(Variant("-1").ToBool());
  EXPECT_FALSE(Variant("0").ToBool());
  EXPECT_RAISES(Variant("maybe").ToBool(), 13, "Type mismatch");
  EXPECT_RAISES(Variant::Missing().ToBool(), 13, "Type mismatch");
}

}  // namespace
}  // namespace veld
