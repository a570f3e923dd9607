// Encode and Decode of KvoOption, and the encoding steps behind them.
#include "options/value_encoding.h"

#include <cstdint>
#include <deque>
#include <iostream>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "runtime/code_page.h"
#include "veld/options/kvo_option.h"
#include "veld/platform/platform.h"
#include "veld/runtime/automation_error.h"

#include "option_testing.h"

namespace veld {
namespace {

using options_internal::DecodeValue;
using options_internal::EncodeValue;
using options_internal::Hex2;
using ::veld::testing::HeldOption;

// The pieces of an encoded text, read back independently of the decoder.
struct Pieces {
  std::vector<int> filler;
  int mask = -1;
  std::vector<int> data;
  int filler_count = -1;
};

int Byte(const std::string& text, size_t at) { return std::stoi(text.substr(at, 2), nullptr, 16); }

// Splits `encoded` using its filler count; fails the test when it is not
// framed by the marks or not made of upper-case hexadecimal pairs.
Pieces Split(const std::string& encoded) {
  Pieces pieces;
  EXPECT_GE(encoded.size(), 8u) << encoded;
  if (encoded.size() < 8) return pieces;
  EXPECT_EQ(encoded.substr(0, 2), "-e");
  EXPECT_EQ(encoded.substr(encoded.size() - 2), "e-");
  const std::string body = encoded.substr(2, encoded.size() - 4);
  EXPECT_EQ(body.size() % 2, 0u) << encoded;
  EXPECT_EQ(body.find_first_not_of("0123456789ABCDEF"), std::string::npos) << encoded;
  pieces.filler_count = Byte(body, body.size() - 2);
  for (int i = 0; i < pieces.filler_count; ++i) pieces.filler.push_back(Byte(body, 2 * i));
  pieces.mask = Byte(body, 2 * pieces.filler_count);
  for (size_t at = 2 * pieces.filler_count + 2; at + 2 < body.size(); at += 2) {
    pieces.data.push_back(Byte(body, at));
  }
  return pieces;
}

// A random source that gives the listed numbers in order.
options_internal::RandomSource Sequence(std::vector<double> numbers) {
  auto queue = std::make_shared<std::deque<double>>(numbers.begin(), numbers.end());
  return [queue] {
    double next = queue->front();
    queue->pop_front();
    return next;
  };
}

// Random text of the ANSI code page: `length` random bytes 1..255 decoded
// from windows-1252.
std::string RandomCodePageText(std::mt19937& generator, size_t length) {
  std::uniform_int_distribution<int> byte(1, 255);
  std::string bytes;
  for (size_t i = 0; i < length; ++i) bytes += static_cast<char>(byte(generator));
  return FromAnsiBytes(bytes);
}

// --- The steps ---

TEST(ValueEncodingTest, Hex2WritesTwoUpperCaseDigits) {
  EXPECT_EQ(Hex2(0), "00");
  EXPECT_EQ(Hex2(9), "09");
  EXPECT_EQ(Hex2(15), "0F");
  EXPECT_EQ(Hex2(16), "10");
  EXPECT_EQ(Hex2(171), "AB");
  EXPECT_EQ(Hex2(255), "FF");
}

TEST(ValueEncodingTest, EncodeDrawsMaskThenCountThenFillersAndRoundsHalvesToEven) {
  // Mask 0.125 * 220 + 4 = 31.5 -> 32; count Int(0.5 * 5) = 2; fillers
  // 0.0625 * 200 + 3 = 15.5 -> 16 and 0.1875 * 200 + 3 = 40.5 -> 40, the
  // later one written first. Data: "B" ^ 32, then "A" ^ 32.
  EXPECT_EQ(EncodeValue("AB", Sequence({0.125, 0.5, 0.0625, 0.1875})), "-e281020626102e-");
  // Mask 0.375 * 220 + 4 = 86.5 -> 86 (0x56); no filler.
  EXPECT_EQ(EncodeValue("A", Sequence({0.375, 0.0})), "-e561700e-");
}

TEST(ValueEncodingTest, EncodeReachesTheEndsOfEveryRange) {
  const double below_one = 0.99999999999999989;
  // The largest mask 224, four fillers, the largest filler 203.
  EXPECT_EQ(EncodeValue("x", Sequence({below_one, below_one, below_one, 0.0, 0.5, below_one})),
            "-eCB6703CBE09804e-");
  // The smallest mask 4 and no filler.
  EXPECT_EQ(EncodeValue("x", Sequence({0.0, 0.0})), "-e047C00e-");
}

TEST(ValueEncodingTest, DecodeReadsWhatTheStepsWrote) {
  EXPECT_EQ(DecodeValue("-e281020626102e-"), "AB");
  EXPECT_EQ(DecodeValue("-eCB6703CBE09804e-"), "x");
  EXPECT_EQ(DecodeValue("-e047C00e-"), "x");
}

TEST(ValueEncodingTest, DecodeAcceptsLowerCaseDigits) {
  EXPECT_EQ(DecodeValue("-ecb6703cbe09804e-"), "x");
}

// --- Encode and Decode ---

TEST(KvoOptionEncodingTest, EncodingSameTextTwiceGivesDifferentOutputsThatBothDecode) {
  HeldOption option;
  std::set<std::string> outputs;
  // Two draws may coincide by chance; twenty that all coincide would mean the
  // generator does not move.
  for (int i = 0; i < 20; ++i) {
    const std::string encoded = option.Encode("secret value");
    EXPECT_EQ(option.Decode(encoded), "secret value") << encoded;
    outputs.insert(encoded);
  }
  EXPECT_GT(outputs.size(), 1u);
}

TEST(KvoOptionEncodingTest, DecodeOfPlainValueReturnsItUnchanged) {
  HeldOption option;
  for (const std::string plain :
       {"120", "plain text", "-e", "e-", "-e plain", "plain e-", "Größe", "-E41E-"}) {
    EXPECT_EQ(option.Decode(plain), plain);
  }
}

TEST(KvoOptionEncodingTest, DecodeOfMarksAloneReturnsThemUnchanged) {
  HeldOption option;

  EXPECT_EQ(option.Decode("-ee-"), "-ee-");
}

TEST(KvoOptionEncodingTest, EncodeOfEmptyTextGivesEmptyText) {
  HeldOption option;

  EXPECT_EQ(option.Encode(""), "");
  EXPECT_EQ(option.Encode(Variant::Empty()), "");
  EXPECT_EQ(option.Decode(""), "");
}

TEST(KvoOptionEncodingTest, CharactersOutsideTheCodePageComeBackAsQuestionMarks) {
  HeldOption option;

  EXPECT_EQ(option.Decode(option.Encode("Ā€ü✓")), "?€ü?");
}

TEST(KvoOptionEncodingTest, EncodedLengthIsTwiceDataFillerAndTwoPlusFour) {
  HeldOption option;
  const uint32_t seed = 20261121;
  std::mt19937 generator(seed);
  std::cout << "[ RANDOM   ] encoded-length seed " << seed << "\n";
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::uniform_int_distribution<size_t> length(1, 40);
  for (int i = 0; i < 300; ++i) {
    const std::string text = RandomCodePageText(generator, length(generator));
    const size_t data_bytes = ToAnsiBytes(text).size();
    const std::string encoded = option.Encode(text);
    const Pieces pieces = Split(encoded);
    ASSERT_GE(pieces.filler_count, 0);
    ASSERT_LE(pieces.filler_count, 4);
    EXPECT_EQ(encoded.size(), 2 * (data_bytes + pieces.filler_count + 2) + 4) << encoded;
    EXPECT_EQ(pieces.data.size(), data_bytes);
  }
}

TEST(KvoOptionEncodingTest, MaskFillerAndCountStayInTheirRangesAndReachTheirEnds) {
  HeldOption option;
  std::set<int> masks;
  std::set<int> fillers;
  std::set<int> counts;
  for (int i = 0; i < 20000; ++i) {
    const Pieces pieces = Split(option.Encode("ab"));
    masks.insert(pieces.mask);
    counts.insert(pieces.filler_count);
    fillers.insert(pieces.filler.begin(), pieces.filler.end());
    // The data bytes are the text's bytes in reverse order, each XOR the mask.
    ASSERT_EQ(pieces.data.size(), 2u);
    EXPECT_EQ(pieces.data[0], 'b' ^ pieces.mask);
    EXPECT_EQ(pieces.data[1], 'a' ^ pieces.mask);
  }
  // Each end has a chance of at least 1 in 440 per draw, so after 20000
  // encodings missing one means the range is wrong.
  EXPECT_EQ(*masks.begin(), 4);
  EXPECT_EQ(*masks.rbegin(), 224);
  EXPECT_EQ(masks.size(), 221u);
  EXPECT_EQ(*fillers.begin(), 3);
  EXPECT_EQ(*fillers.rbegin(), 203);
  EXPECT_EQ(fillers.size(), 201u);
  EXPECT_EQ(counts, (std::set<int>{0, 1, 2, 3, 4}));
}

TEST(KvoOptionEncodingTest, RandomCodePageTextRoundTrips) {
  HeldOption option;
  const uint32_t seed = 77031;
  std::mt19937 generator(seed);
  std::cout << "[ RANDOM   ] round-trip seed " << seed << "\n";
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::uniform_int_distribution<size_t> length(1, 64);
  for (int i = 0; i < 500; ++i) {
    const std::string text = RandomCodePageText(generator, length(generator));
    const std::string encoded = option.Encode(text);
    ASSERT_NE(encoded, text);
    ASSERT_EQ(option.Decode(encoded), text) << "case " << i;
  }
}

TEST(KvoOptionEncodingTest, EveryByteOfTheCodePageRoundTrips) {
  HeldOption option;
  std::string bytes;
  for (int b = 1; b < 256; ++b) bytes += static_cast<char>(b);
  const std::string text = FromAnsiBytes(bytes);

  EXPECT_EQ(option.Decode(option.Encode(text)), text);
}

TEST(KvoOptionEncodingTest, MalformedBodiesReturnTheInputUnchanged) {
  HeldOption option;
  // "-e" + body + "e-", each body broken in one way.
  const std::vector<std::string> malformed = {
      "-eAe-",         // a body of one character: no count and mask
      "-e00e-",        // a count and nothing for the mask
      "-e4100e-",      // a mask and no data byte
      "-e41Z2e-",      // a count that is not hexadecimal
      "-e414105e-",    // a count of 5 fillers in a body with room for none
      "-e4141FFe-",    // a count of 255
      "-eG14100e-",    // a mask that is not hexadecimal
      "-e41Q100e-",    // a data pair that is not hexadecimal
      "-e41 100e-",    // a blank inside a pair
      "-e41-100e-",    // a sign inside a pair
      "-e4120200e-",   // half a data byte
      "-e414100e-e-",  // the mark inside the body makes the count unreadable
      "-e0A414100e-"
      "-e",  // no closing mark
  };
  for (const std::string& text : malformed) {
    EXPECT_EQ(option.Decode(text), text);
  }
}

TEST(KvoOptionEncodingTest, KeyIsAcceptedAndIgnored) {
  HeldOption option;
  const std::string encoded = option.Encode("value", "key one");

  EXPECT_EQ(option.Decode(encoded, "another key"), "value");
}

TEST(KvoOptionEncodingTest, NumbersAreEncodedAsTheirText) {
  HeldOption option;

  EXPECT_EQ(option.Decode(option.Encode(Variant(int32_t{120}))), "120");
  EXPECT_EQ(option.Decode(Variant(2.5)), "2.5");
}

TEST(KvoOptionEncodingTest, NullGivesEmptyTextWithoutRecording) {
  HeldOption option;
  Err().Clear();

  EXPECT_EQ(option.Encode(Variant::Null()), "");
  EXPECT_EQ(option.Decode(Variant::Null()), "");

  EXPECT_EQ(option.GetLastError(), "");
  EXPECT_EQ(Err().Number(), 0);
}

class UnknownCodePagePlatform : public ForwardingPlatform {
 public:
  std::string AnsiCodePage() override { return "no-such-code-page"; }
};

TEST(KvoOptionEncodingTest, CodePageFailureReturnsTheInputAndRecordsNothing) {
  HeldOption option;
  const std::string encoded = option.Encode("value");
  EXPECT_EQ(option.GetOption("missing"), "");
  const std::string recorded = option.GetLastError();
  Err().Clear();

  UnknownCodePagePlatform platform;
  ScopedPlatform installed(platform);
  EXPECT_EQ(option.Encode("value"), "value");
  EXPECT_EQ(option.Decode(encoded), encoded);

  EXPECT_EQ(option.GetLastError(), recorded);
  EXPECT_EQ(Err().Number(), 0);
}

TEST(KvoOptionEncodingTest, EncodeAndDecodeLeaveTheRecordAlone) {
  HeldOption option;
  EXPECT_FALSE(option.LoadOptionFromXml(""));

  const std::string encoded = option.Encode("abc");
  EXPECT_EQ(option.Decode(encoded), "abc");
  EXPECT_EQ(option.Decode("-ee-"), "-ee-");

  EXPECT_EQ(option.GetLastError(), "No option xml specified.");
}

TEST(KvoOptionEncodingTest, EncodedValuesMixWithPlainOnesInOptions) {
  HeldOption option;
  ASSERT_TRUE(option.SetOption("user", "plain", "s", "g"));
  ASSERT_TRUE(option.SetOption("password", option.Encode("p@ss<w>rd"), "s", "g"));

  EXPECT_EQ(option.Decode(option.GetOption("user", "s", "g")), "plain");
  EXPECT_EQ(option.Decode(option.GetOption("password", "s", "g")), "p@ss<w>rd");
}

}  // namespace
}  // namespace veld
