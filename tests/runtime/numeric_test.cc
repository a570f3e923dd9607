#include "runtime/numeric.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "veld/runtime/variant.h"

#include "support/testing.h"

namespace veld {
namespace {

constexpr int32_t kInvalidUseOfNull = 94;

// --- IsNumeric -------------------------------------------------------------

TEST(IsNumericTest, AcceptsTheClassicLooseForms) {
  for (const char* text : {"53",        "459.95",     " 12 ",
                           "+5",        "5-",         "5+",
                           "(5)",       "$5",         "1,234.5",
                           "1e3",       "&H1F",       "1,000",
                           "$1,234",    "1e1",        "1e-1",
                           "1e+01",     "1E3",        "&HF800",
                           "&h0abcdef", "&O300",      "&o17",
                           "(0)",       "\t7\t",      "5.",
                           ".5",        "-.5",        "0",
                           "007",       "- 5",        "$ 5",
                           "($5)",      "$-5",        "-$5",
                           "5$",        "5 -",        " ( 5 ) ",
                           "1,2,3",     "&HFFFFFFFF", "&O37777777777",
                           "-&H10",     "1e400",      "123456789012345678901234567890"}) {
    EXPECT_TRUE(IsNumeric(text)) << '"' << text << '"';
  }
}

TEST(IsNumericTest, RejectsTextThatIsNotWhollyANumber) {
  for (const char* text : {"",
                           " ",
                           ".",
                           "-",
                           "+",
                           "$",
                           "()",
                           "1.2.3",
                           "1.1.",
                           "12abc",
                           "45 Help",
                           "+ +0",
                           "+0+",
                           "-0-",
                           "(-5)",
                           "-(5)",
                           "(5",
                           "5)",
                           "0x0",
                           "0x10",
                           "FE",
                           "&H",
                           "&O",
                           "&O8",
                           "&HG",
                           "&X10",
                           "&10",
                           "1e",
                           "1e+",
                           "e5",
                           ",5",
                           "5,",
                           "1,,000",
                           "1,.5",
                           "$$5",
                           "5$$",
                           "1 2",
                           "\n5",
                           "5\n",
                           "\xC2\xA0"
                           "5",
                           "1D2",
                           "&H100000000",
                           "Infinity",
                           "NaN",
                           "True"}) {
    EXPECT_FALSE(IsNumeric(text)) << '"' << text << '"';
  }
}

TEST(IsNumericTest, EmbeddedNulIsNotNumeric) { EXPECT_FALSE(IsNumeric(std::string("5\0", 2))); }

// --- ParseNumber -----------------------------------------------------------

// Plain decimals take a shorter path; a leading blank sends the same digits
// through the full scanner, which must give the very same double.
TEST(ParseNumberTest, PlainDecimalsReadExactlyAsTheFullScannerReadsThem) {
  std::mt19937_64 random(20261121);
  auto digits = [&random](int count) {
    std::string text;
    for (int i = 0; i < count; ++i) text += static_cast<char>('0' + random() % 10);
    return text;
  };
  std::vector<std::string> samples = {"0",     "-0",
                                      "0.0",   "-0.0",
                                      "007",   "1.5",
                                      "2.675", "9007199254740993",
                                      "0.1",   "123456789012345678901234.5"};
  for (int i = 0; i < 5000; ++i) {
    std::string text = (random() % 3 == 0 ? "-" : "") + digits(1 + random() % 18);
    if (random() % 2 == 0) text += "." + digits(1 + random() % 12);
    samples.push_back(text);
  }
  for (const std::string& text : samples) {
    SCOPED_TRACE(text);
    const std::optional<double> plain = ParseNumber(text);
    const std::optional<double> scanned = ParseNumber(" " + text);
    ASSERT_TRUE(plain.has_value());
    ASSERT_TRUE(scanned.has_value());
    EXPECT_EQ(std::bit_cast<uint64_t>(*plain), std::bit_cast<uint64_t>(*scanned));
  }
}

TEST(ParseNumberTest, GivesTheValueOfEachForm) {
  EXPECT_EQ(ParseNumber("53"), 53.0);
  EXPECT_EQ(ParseNumber(" 12 "), 12.0);
  EXPECT_EQ(ParseNumber("+5"), 5.0);
  EXPECT_EQ(ParseNumber("5-"), -5.0);
  EXPECT_EQ(ParseNumber("5 -"), -5.0);
  EXPECT_EQ(ParseNumber("(5)"), -5.0);
  EXPECT_EQ(ParseNumber("($1,234.50)"), -1234.5);
  EXPECT_EQ(ParseNumber("$5"), 5.0);
  EXPECT_EQ(ParseNumber("1,234.5"), 1234.5);
  EXPECT_EQ(ParseNumber("1e3"), 1000.0);
  EXPECT_EQ(ParseNumber("1e-1"), 0.1);
  EXPECT_EQ(ParseNumber("1e+01"), 10.0);
  EXPECT_EQ(ParseNumber("-.5"), -0.5);
  EXPECT_EQ(ParseNumber("5."), 5.0);
  EXPECT_EQ(ParseNumber("1,2,3"), 123.0);
}

TEST(ParseNumberTest, RadixFormsAreUnsignedUpTo31BitsAndTwosComplementAbove) {
  EXPECT_EQ(ParseNumber("&H1F"), 31.0);
  EXPECT_EQ(ParseNumber("&h0abcdef"), 11259375.0);
  EXPECT_EQ(ParseNumber("&O300"), 192.0);
  EXPECT_EQ(ParseNumber("&HF060"), 61536.0);
  EXPECT_EQ(ParseNumber("&HFFFF"), 65535.0);
  EXPECT_EQ(ParseNumber("&HFFFFF060"), -4000.0);
  EXPECT_EQ(ParseNumber("&HFFFFFFFF"), -1.0);
  EXPECT_EQ(ParseNumber("&H7FFFFFFF"), 2147483647.0);
  EXPECT_EQ(ParseNumber("&H80000000"), -2147483648.0);
  EXPECT_EQ(ParseNumber("-&H10"), -16.0);
}

TEST(ParseNumberTest, NotNumericGivesNothing) {
  EXPECT_EQ(ParseNumber(""), std::nullopt);
  EXPECT_EQ(ParseNumber("."), std::nullopt);
  EXPECT_EQ(ParseNumber("-"), std::nullopt);
  EXPECT_EQ(ParseNumber("1.2.3"), std::nullopt);
  EXPECT_EQ(ParseNumber("12abc"), std::nullopt);
}

TEST(ParseNumberTest, MagnitudeBeyondDoubleIsInfinityAndBelowIsZero) {
  EXPECT_EQ(ParseNumber("1e400"), std::numeric_limits<double>::infinity());
  EXPECT_EQ(ParseNumber("-1e400"), -std::numeric_limits<double>::infinity());
  EXPECT_EQ(ParseNumber("1e-400"), 0.0);
  EXPECT_EQ(ParseNumber("0.0001e-400"), 0.0);
  EXPECT_EQ(ParseNumber("0e99999999999999999999"), 0.0);
  EXPECT_EQ(ParseNumber("1e99999999999999999999"), std::numeric_limits<double>::infinity());
}

// --- RoundHalfEven ---------------------------------------------------------

TEST(RoundHalfEvenTest, HalvesGoToTheEvenNeighbour) {
  EXPECT_EQ(RoundHalfEven(0.5), 0.0);
  EXPECT_EQ(RoundHalfEven(1.5), 2.0);
  EXPECT_EQ(RoundHalfEven(2.5), 2.0);
  EXPECT_EQ(RoundHalfEven(-0.5), 0.0);
  EXPECT_EQ(RoundHalfEven(-1.5), -2.0);
  EXPECT_EQ(RoundHalfEven(-2.5), -2.0);
  EXPECT_EQ(RoundHalfEven(0.4), 0.0);
  EXPECT_EQ(RoundHalfEven(0.6), 1.0);
  EXPECT_EQ(RoundHalfEven(-0.6), -1.0);
  EXPECT_EQ(RoundHalfEven(2345.5678), 2346.0);
  EXPECT_EQ(RoundHalfEven(25427.45), 25427.0);
  EXPECT_EQ(RoundHalfEven(25427.55), 25428.0);
  EXPECT_EQ(RoundHalfEven(1e300), 1e300);
  EXPECT_TRUE(std::isinf(RoundHalfEven(std::numeric_limits<double>::infinity())));
}

// --- ToLong / TryToLong ----------------------------------------------------

TEST(ToLongTest, TextIsRoundedHalfToEven) {
  EXPECT_EQ(ToLong("-1.5"), -2);
  EXPECT_EQ(ToLong("-0.6"), -1);
  EXPECT_EQ(ToLong("-0.5"), 0);
  EXPECT_EQ(ToLong("-0.4"), 0);
  EXPECT_EQ(ToLong("0.4"), 0);
  EXPECT_EQ(ToLong("0.5"), 0);
  EXPECT_EQ(ToLong("0.6"), 1);
  EXPECT_EQ(ToLong("1.5"), 2);
  EXPECT_EQ(ToLong("2.5"), 2);
  EXPECT_EQ(ToLong("25427.45"), 25427);
  EXPECT_EQ(ToLong("25427.55"), 25428);
}

TEST(ToLongTest, LimitsOfThe32BitRange) {
  EXPECT_EQ(ToLong("2147483647"), 2147483647);
  EXPECT_EQ(ToLong("-2147483648"), -2147483647 - 1);
  EXPECT_EQ(ToLong("2147483647.4"), 2147483647);
  EXPECT_RAISES(ToLong("2147483648"), 6, "Overflow");
  EXPECT_RAISES(ToLong("2147483647.5"), 6, "Overflow");
  EXPECT_RAISES(ToLong("-2147483649"), 6, "Overflow");
  EXPECT_RAISES(ToLong("12345678901"), 6, "Overflow");
  EXPECT_RAISES(ToLong("1e400"), 6, "Overflow");
}

TEST(ToLongTest, TextThatIsNotNumericIsATypeMismatch) {
  EXPECT_RAISES(ToLong("abc"), 13, "Type mismatch");
  EXPECT_RAISES(ToLong(""), 13, "Type mismatch");
  EXPECT_RAISES(ToLong("1.2.3"), 13, "Type mismatch");
}

TEST(ToLongTest, RadixTextKeepsTheHighBit) {
  EXPECT_EQ(ToLong("&HF060"), 61536);
  EXPECT_EQ(ToLong("&HFFFFF060"), -4000);
  EXPECT_EQ(ToLong("&HFFFFFFFF"), -1);
  EXPECT_EQ(ToLong("&H80000000"), -2147483647 - 1);
}

TEST(ToLongTest, LooseFormsConvert) {
  EXPECT_EQ(ToLong("  7  "), 7);
  EXPECT_EQ(ToLong("(1,234)"), -1234);
  EXPECT_EQ(ToLong("$12"), 12);
  EXPECT_EQ(ToLong("1e3"), 1000);
  EXPECT_EQ(ToLong("5-"), -5);
}

TEST(TryToLongTest, GivesNothingInsteadOfRaising) {
  Err().Clear();
  EXPECT_EQ(TryToLong("12"), 12);
  EXPECT_EQ(TryToLong("abc"), std::nullopt);
  EXPECT_EQ(TryToLong("2147483648"), std::nullopt);
  EXPECT_EQ(TryToLong("12345678901"), std::nullopt);
  EXPECT_EQ(Err().Number(), 0);
}

// The helper "ToLongOrDefault(text, default)" of the XML text helpers is
// TryToLong(text).value_or(default); these are its documented cases.
TEST(TryToLongTest, ServesAsToLongOrDefault) {
  const int32_t d = -99;
  EXPECT_EQ(TryToLong("12").value_or(d), 12);
  EXPECT_EQ(TryToLong("  7  ").value_or(d), 7);
  EXPECT_EQ(TryToLong("2.5").value_or(d), 2);
  EXPECT_EQ(TryToLong("abc").value_or(d), d);
  EXPECT_EQ(TryToLong("12345678901").value_or(d), d);
  EXPECT_EQ(TryToLong("-1.5").value_or(d), -2);
  EXPECT_EQ(TryToLong("0.5").value_or(d), 0);
  EXPECT_EQ(TryToLong("1.5").value_or(d), 2);
  EXPECT_EQ(TryToLong("2147483647").value_or(d), 2147483647);
  EXPECT_EQ(TryToLong("2147483648").value_or(d), d);
  EXPECT_EQ(TryToLong("-2147483648").value_or(d), -2147483647 - 1);
}

// --- ToInteger -------------------------------------------------------------

TEST(ToIntegerTest, SixteenBitRangeAndRounding) {
  EXPECT_EQ(ToInteger("32767"), 32767);
  EXPECT_EQ(ToInteger("-32768"), -32768);
  EXPECT_EQ(ToInteger("2345.5678"), 2346);
  EXPECT_RAISES(ToInteger("32767.5"), 6, "Overflow");
  EXPECT_RAISES(ToInteger("-32769"), 6, "Overflow");
  EXPECT_RAISES(ToInteger("x"), 13, "Type mismatch");
  EXPECT_EQ(TryToInteger("40000"), std::nullopt);
}

TEST(ToIntegerTest, SixteenBitRadixTextKeepsTheHighBit) {
  EXPECT_EQ(ToInteger("&HFFFF"), -1);
  EXPECT_EQ(ToInteger("&H8002"), -32766);
  EXPECT_EQ(ToInteger("&HF060"), -4000);
  EXPECT_EQ(ToInteger("&HFFFFFFFF"), -1);
  EXPECT_RAISES(ToInteger("&H10000"), 6, "Overflow");
}

// --- ToDouble --------------------------------------------------------------

TEST(ToDoubleTest, ConvertsOrRaises) {
  EXPECT_EQ(ToDouble(" 2.5 "), 2.5);
  EXPECT_RAISES(ToDouble("two"), 13, "Type mismatch");
  EXPECT_RAISES(ToDouble("1e400"), 6, "Overflow");
}

TEST(DoubleToLongTest, RoundsAndChecksTheRange) {
  EXPECT_EQ(DoubleToLong(2.5), 2);
  EXPECT_EQ(DoubleToLong(-2147483648.4), -2147483647 - 1);
  EXPECT_RAISES(DoubleToLong(2147483647.5), 6, "Overflow");
  EXPECT_RAISES(DoubleToLong(std::nan("")), 6, "Overflow");
  EXPECT_EQ(DoubleToInteger(125.5678), 126);
  EXPECT_RAISES(DoubleToInteger(32767.5), 6, "Overflow");
}

// --- DoubleToText ----------------------------------------------------------

TEST(DoubleToTextTest, UpToFifteenSignificantDigits) {
  EXPECT_EQ(DoubleToText(2.5), "2.5");
  EXPECT_EQ(DoubleToText(0.1 + 0.2), "0.3");
  EXPECT_EQ(DoubleToText(1.0 / 3.0), "0.333333333333333");
  EXPECT_EQ(DoubleToText(2.0 / 3.0), "0.666666666666667");
  EXPECT_EQ(DoubleToText(-459.65), "-459.65");
  EXPECT_EQ(DoubleToText(5.0), "5");
  EXPECT_EQ(DoubleToText(100.0), "100");
  EXPECT_EQ(DoubleToText(12345.67), "12345.67");
  EXPECT_EQ(DoubleToText(0.0), "0");
  EXPECT_EQ(DoubleToText(-0.0), "0");
}

TEST(DoubleToTextTest, ExponentFormOutsideFifteenDigitsOrBelowTenThousandth) {
  EXPECT_EQ(DoubleToText(1e20), "1E+20");
  EXPECT_EQ(DoubleToText(1e15), "1E+15");
  EXPECT_EQ(DoubleToText(1e14), "100000000000000");
  EXPECT_EQ(DoubleToText(123456789012345.0), "123456789012345");
  EXPECT_EQ(DoubleToText(1234567890123456.0), "1.23456789012346E+15");
  EXPECT_EQ(DoubleToText(-2.5e100), "-2.5E+100");
  EXPECT_EQ(DoubleToText(0.0001), "0.0001");
  EXPECT_EQ(DoubleToText(0.00012345), "0.00012345");
  EXPECT_EQ(DoubleToText(0.00001), "1E-05");
  EXPECT_EQ(DoubleToText(1.5e-7), "1.5E-07");
  EXPECT_EQ(DoubleToText(4.9406564584124654e-324), "4.94065645841247E-324");
  EXPECT_EQ(DoubleToText(1.7976931348623157e308), "1.79769313486232E+308");
}

TEST(DoubleToTextTest, NonFiniteValuesUseTheClassicCRuntimeText) {
  EXPECT_EQ(DoubleToText(std::numeric_limits<double>::infinity()), "1.#INF");
  EXPECT_EQ(DoubleToText(-std::numeric_limits<double>::infinity()), "-1.#INF");
  EXPECT_EQ(DoubleToText(std::nan("")), "-1.#IND");
}

// --- HexString / Hex -------------------------------------------------------

TEST(HexStringTest, UpperCaseNoPrefixNoLeadingZeros) {
  EXPECT_EQ(HexString(5, 32), "5");
  EXPECT_EQ(HexString(10, 32), "A");
  EXPECT_EQ(HexString(459, 32), "1CB");
  EXPECT_EQ(HexString(255, 32), "FF");
  EXPECT_EQ(HexString(0, 32), "0");
  EXPECT_EQ(HexString(65535, 32), "FFFF");
}

TEST(HexStringTest, NegativeValuesUseTheTwosComplementOfTheirWidth) {
  EXPECT_EQ(HexString(-1, 16), "FFFF");
  EXPECT_EQ(HexString(-1, 32), "FFFFFFFF");
  EXPECT_EQ(HexString(-32768, 16), "8000");
  EXPECT_EQ(HexString(-1, 8), "FF");
  EXPECT_EQ(HexString(-1, 64), "FFFFFFFFFFFFFFFF");
  EXPECT_EQ(HexString(-2147483647 - 1, 32), "80000000");
}

TEST(HexTest, WidthFollowsTheHeldKind) {
  EXPECT_EQ(Hex(Variant(int16_t{-1})), "FFFF");
  EXPECT_EQ(Hex(Variant(int32_t{-1})), "FFFFFFFF");
  EXPECT_EQ(Hex(Variant(uint8_t{255})), "FF");
  EXPECT_EQ(Hex(Variant(true)), "FFFF");
  EXPECT_EQ(Hex(Variant(false)), "0");
  EXPECT_EQ(Hex(Variant(-1.0)), "FFFFFFFF");
  EXPECT_EQ(Hex(Variant(459)), "1CB");
  EXPECT_EQ(Hex(Variant::Empty()), "0");
  EXPECT_EQ(Hex(Variant("255")), "FF");
}

TEST(HexTest, FractionsAreRoundedHalfToEvenFirst) {
  EXPECT_EQ(Hex(Variant(2.5)), "2");
  EXPECT_EQ(Hex(Variant(3.5)), "4");
  EXPECT_EQ(Hex(Variant(254.6)), "FF");
}

TEST(HexTest, FailuresRaiseTheConversionErrors) {
  EXPECT_RAISES(Hex(Variant(4294967296.0)), 6, "Overflow");
  EXPECT_RAISES(Hex(Variant("x")), 13, "Type mismatch");
  EXPECT_RAISES(Hex(Variant::Null()), kInvalidUseOfNull, "Invalid use of Null");
  EXPECT_RAISES(Hex(Variant::Missing()), 13, "Type mismatch");
}

}  // namespace
}  // namespace veld
