#include "veld/foundation/kvo_utils.h"

#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "veld/platform/platform.h"

#include "support/testing.h"

namespace veld {
namespace {

// Hands out one fixed GUID, or fails, on cue.
class FixedGuidPlatform : public ForwardingPlatform {
 public:
  int32_t CreateGuid(Guid& guid) override {
    if (fail) return -2147467259;
    guid = fixed;
    return 0;
  }
  Guid fixed;
  bool fail = false;
};

std::string Hex(const Variant& value, const Variant& digits = Variant(int16_t{0})) {
  KvoUtils utils;
  return utils.KvoNumberToHexStr(value, digits).AsString();
}

TEST(KvoNumberToHexStrTest, PadsToTheGivenDigits) {
  EXPECT_EQ(Hex(Variant(int32_t{255}), Variant(int32_t{4})), "00FF");
}

TEST(KvoNumberToHexStrTest, NoDigitsMeansNoPadding) { EXPECT_EQ(Hex(Variant(int32_t{255})), "FF"); }

TEST(KvoNumberToHexStrTest, LongerTextIsNeverCut) {
  EXPECT_EQ(Hex(Variant(int32_t{65535}), Variant(int32_t{2})), "FFFF");
}

TEST(KvoNumberToHexStrTest, NegativeIntegerUsesItsOwnWidth) {
  EXPECT_EQ(Hex(Variant(int16_t{-1}), Variant(int32_t{4})), "FFFF");
  EXPECT_EQ(Hex(Variant(int32_t{-1}), Variant(int32_t{4})), "FFFFFFFF");
}

TEST(KvoNumberToHexStrTest, ZeroAndByteValues) {
  EXPECT_EQ(Hex(Variant(int32_t{0})), "0");
  EXPECT_EQ(Hex(Variant(uint8_t{255})), "FF");
  EXPECT_EQ(Hex(Variant(uint8_t{10}), Variant(int32_t{2})), "0A");
}

TEST(KvoNumberToHexStrTest, NegativeOrZeroDigitsMeanNoPadding) {
  EXPECT_EQ(Hex(Variant(int32_t{10}), Variant(int32_t{-3})), "A");
  EXPECT_EQ(Hex(Variant(int32_t{10}), Variant(int32_t{0})), "A");
}

TEST(KvoNumberToHexStrTest, FractionsAreRoundedHalfToEven) {
  EXPECT_EQ(Hex(Variant(2.5)), "2");
  EXPECT_EQ(Hex(Variant(3.5)), "4");
  EXPECT_EQ(Hex(Variant(-1.0)), "FFFFFFFF");
}

TEST(KvoNumberToHexStrTest, NumericTextIsConverted) { EXPECT_EQ(Hex(Variant("255")), "FF"); }

TEST(KvoNumberToHexStrTest, NullGivesNull) {
  KvoUtils utils;
  EXPECT_TRUE(utils.KvoNumberToHexStr(Variant::Null(), Variant(int32_t{4})).IsNull());
}

TEST(KvoNumberToHexStrTest, BadInputsRaise) {
  KvoUtils utils;
  EXPECT_RAISES(utils.KvoNumberToHexStr(Variant("abc")), 13, "Type mismatch");
  EXPECT_RAISES(utils.KvoNumberToHexStr(Variant(1e10)), 6, "Overflow");
}

TEST(KvoNumberToHexStrTest, ResultIsAStringVariant) {
  KvoUtils utils;
  EXPECT_EQ(utils.KvoNumberToHexStr(Variant(int32_t{1})).Type(), VarType::kString);
}

TEST(KvoGenerateGUIDTest, GeneralFormHasBracesAndDashes) {
  KvoUtils utils;
  std::string guid = utils.KvoGenerateGUID(KVO_GUID_FORMAT_GENERAL);
  ASSERT_EQ(guid.size(), 38u);
  EXPECT_EQ(guid.front(), '{');
  EXPECT_EQ(guid.back(), '}');
  // Dashes at character positions 10, 15, 20 and 25 counting from 1.
  for (size_t position : {10u, 15u, 20u, 25u}) EXPECT_EQ(guid[position - 1], '-') << position;
  for (size_t i = 1; i < 37; ++i) {
    if (guid[i] == '-') continue;
    EXPECT_NE(std::strchr("0123456789ABCDEF", guid[i]), nullptr) << guid;
  }
}

TEST(KvoGenerateGUIDTest, DefaultFormatIsGeneral) {
  KvoUtils utils;
  EXPECT_EQ(utils.KvoGenerateGUID().size(), 38u);
}

TEST(KvoGenerateGUIDTest, PureDataFormIs32HexDigits) {
  KvoUtils utils;
  std::string guid = utils.KvoGenerateGUID(Kvo_GUID_FORMAT_PUREDATA);
  ASSERT_EQ(guid.size(), 32u);
  EXPECT_EQ(guid.find_first_not_of("0123456789ABCDEF"), std::string::npos) << guid;
}

TEST(KvoGenerateGUIDTest, UnknownAndOtherFormatsGiveEmptyText) {
  KvoUtils utils;
  EXPECT_EQ(utils.KvoGenerateGUID(KVO_GUID_FORMAT_UNKNOWN), "");
  EXPECT_EQ(utils.KvoGenerateGUID(static_cast<KvoGuidFormatEnum>(7)), "");
}

TEST(KvoGenerateGUIDTest, EachCallGivesANewValue) {
  KvoUtils utils;
  EXPECT_NE(utils.KvoGenerateGUID(), utils.KvoGenerateGUID());
}

TEST(KvoGenerateGUIDTest, FieldsAreWrittenInRegistryOrder) {
  FixedGuidPlatform platform;
  platform.fixed =
      Guid{0x0012ABCD, 0x00EF, 0xF001, {0x01, 0xA2, 0x03, 0x04, 0x05, 0x06, 0x07, 0xFF}};
  ScopedPlatform installed(platform);
  KvoUtils utils;
  EXPECT_EQ(utils.KvoGenerateGUID(KVO_GUID_FORMAT_GENERAL),
            "{0012ABCD-00EF-F001-01A2-0304050607FF}");
  EXPECT_EQ(utils.KvoGenerateGUID(Kvo_GUID_FORMAT_PUREDATA), "0012ABCD00EFF00101A20304050607FF");
}

TEST(KvoGenerateGUIDTest, HighBitFieldsKeepTheirFullWidth) {
  FixedGuidPlatform platform;
  platform.fixed = Guid{0xFFFFFFFF, 0x8000, 0xFFFF, {0x80, 0, 0, 0, 0, 0, 0, 0}};
  ScopedPlatform installed(platform);
  KvoUtils utils;
  EXPECT_EQ(utils.KvoGenerateGUID(), "{FFFFFFFF-8000-FFFF-8000-000000000000}");
}

TEST(KvoGenerateGUIDTest, FailingGeneratorGivesEmptyText) {
  FixedGuidPlatform platform;
  platform.fail = true;
  ScopedPlatform installed(platform);
  KvoUtils utils;
  EXPECT_EQ(utils.KvoGenerateGUID(KVO_GUID_FORMAT_GENERAL), "");
  EXPECT_EQ(utils.KvoGenerateGUID(Kvo_GUID_FORMAT_PUREDATA), "");
}

}  // namespace
}  // namespace veld

namespace veld {
namespace {

// The GUID text is the classic composition of KvoNumberToHexStr over the
// fields with their signed types, for field values with and without the top
// bit set.
TEST(KvoGenerateGUIDTest, TextEqualsTheHexOfEachField) {
  const Guid samples[] = {
      {0x00000001, 0x0002, 0x0003, {0, 1, 2, 3, 4, 5, 6, 7}},
      {0xFFFFFFFF, 0xFFFF, 0x8000, {0xFF, 0x80, 0x7F, 0x00, 0x10, 0xAB, 0xCD, 0xEF}},
      {0x80000000, 0x7FFF, 0xABCD, {0x9A, 0x0B, 0xC0, 0xDE, 0xF0, 0x01, 0x23, 0x45}},
  };
  for (const Guid& sample : samples) {
    FixedGuidPlatform platform;
    platform.fixed = sample;
    ScopedPlatform installed(platform);
    KvoUtils utils;
    auto hex = [&](const Variant& value, int16_t digits) {
      return utils.KvoNumberToHexStr(value, Variant(digits)).AsString();
    };
    std::string expected = hex(Variant(static_cast<int32_t>(sample.Data1)), 8) + "-" +
                           hex(Variant(static_cast<int16_t>(sample.Data2)), 4) + "-" +
                           hex(Variant(static_cast<int16_t>(sample.Data3)), 4) + "-" +
                           hex(Variant(sample.Data4[0]), 2) + hex(Variant(sample.Data4[1]), 2) +
                           "-";
    for (int i = 2; i < 8; ++i) expected += hex(Variant(sample.Data4[i]), 2);
    EXPECT_EQ(utils.KvoGenerateGUID(KVO_GUID_FORMAT_GENERAL), "{" + expected + "}");
    std::string pure = expected;
    std::erase(pure, '-');
    EXPECT_EQ(utils.KvoGenerateGUID(Kvo_GUID_FORMAT_PUREDATA), pure);
  }
}

}  // namespace
}  // namespace veld
