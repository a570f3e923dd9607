#include "foundation/this_utils.h"

#include <set>
#include <string>

#include <gtest/gtest.h>

#include "veld/platform/platform.h"

#include "support/testing.h"

namespace veld {
namespace {

TEST(ToLongOrDefaultTest, WholeNumber) { EXPECT_EQ(ToLongOrDefault("12", -5), 12); }

TEST(ToLongOrDefaultTest, BlanksAroundAreAllowed) { EXPECT_EQ(ToLongOrDefault("  7  ", -5), 7); }

TEST(ToLongOrDefaultTest, HalvesRoundToEven) {
  EXPECT_EQ(ToLongOrDefault("2.5", -5), 2);
  EXPECT_EQ(ToLongOrDefault("3.5", -5), 4);
  EXPECT_EQ(ToLongOrDefault("-1.5", -5), -2);
  EXPECT_EQ(ToLongOrDefault("0.5", -5), 0);
  EXPECT_EQ(ToLongOrDefault("2.6", -5), 3);
}

TEST(ToLongOrDefaultTest, LettersGiveDefault) { EXPECT_EQ(ToLongOrDefault("abc", -5), -5); }

TEST(ToLongOrDefaultTest, ElevenDigitNumberGivesDefault) {
  EXPECT_EQ(ToLongOrDefault("12345678901", -5), -5);
}

TEST(ToLongOrDefaultTest, RangeLimits) {
  EXPECT_EQ(ToLongOrDefault("2147483647", 0), 2147483647);
  EXPECT_EQ(ToLongOrDefault("-2147483648", 0), -2147483647 - 1);
  EXPECT_EQ(ToLongOrDefault("2147483648", 9), 9);
  EXPECT_EQ(ToLongOrDefault("2147483647.5", 9), 9);
}

TEST(ToLongOrDefaultTest, SignsAndExponents) {
  EXPECT_EQ(ToLongOrDefault("-12", 0), -12);
  EXPECT_EQ(ToLongOrDefault("+12", 0), 12);
  EXPECT_EQ(ToLongOrDefault("1e3", 0), 1000);
  EXPECT_EQ(ToLongOrDefault("1.5E+1", 0), 15);
}

TEST(ToLongOrDefaultTest, NotNumericGivesDefault) {
  for (const char* text : {"", " ", ".", "-", "1.2.3", "12abc", "1e", "--1"}) {
    EXPECT_EQ(ToLongOrDefault(text, 77), 77) << '"' << text << '"';
  }
}

TEST(FileExistsTest, OrdinaryFileExists) {
  ::veld::testing::TempDir dir;
  EXPECT_TRUE(FileExists(dir.Write("a.xml", "<a/>")));
}

TEST(FileExistsTest, DirectoryAndMissingFileDoNot) {
  ::veld::testing::TempDir dir;
  EXPECT_FALSE(FileExists(dir.Path()));
  EXPECT_FALSE(FileExists(dir.File("missing.xml")));
}

TEST(FileExistsTest, FailingSearchGivesFalse) {
  class FailingPlatform : public ForwardingPlatform {
   public:
    bool FileExists(const std::string&) override { RaiseError(52); }
  } failing;
  ScopedPlatform installed(failing);
  EXPECT_FALSE(FileExists("anything"));
}

TEST(NewGuidTextTest, GivesNewPureDataGuids) {
  std::set<std::string> seen;
  for (int i = 0; i < 100; ++i) {
    std::string guid = NewGuidText(Kvo_GUID_FORMAT_PUREDATA);
    EXPECT_EQ(guid.size(), 32u);
    seen.insert(guid);
  }
  EXPECT_EQ(seen.size(), 100u);
  EXPECT_EQ(NewGuidText(KVO_GUID_FORMAT_GENERAL).size(), 38u);
}

}  // namespace
}  // namespace veld
