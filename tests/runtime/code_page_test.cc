#include "runtime/code_page.h"

#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "veld/platform/platform.h"

#include "support/testing.h"

namespace veld {
namespace {

// A platform whose ANSI code page is chosen by the test.
class CodePagePlatform : public ForwardingPlatform {
 public:
  explicit CodePagePlatform(std::string code_page) : code_page_(std::move(code_page)) {}
  std::string AnsiCodePage() override { return code_page_; }

 private:
  std::string code_page_;
};

std::string Bytes(std::initializer_list<int> values) {
  std::string out;
  for (int v : values) out.push_back(static_cast<char>(v));
  return out;
}

TEST(CodePageTest, DefaultIsWindows1252) {
  EXPECT_EQ(CurrentPlatform().AnsiCodePage(), "windows-1252");
  // Café € 5 “q”
  EXPECT_EQ(ToAnsiBytes("Caf\xC3\xA9 \xE2\x82\xAC 5 \xE2\x80\x9Cq\xE2\x80\x9D"),
            Bytes({0x43, 0x61, 0x66, 0xE9, 0x20, 0x80, 0x20, 0x35, 0x20, 0x93, 0x71, 0x94}));
  EXPECT_EQ(ToAnsiBytes("ABCDEFG"), "ABCDEFG");
  EXPECT_EQ(ToAnsiBytes(""), "");
  EXPECT_EQ(FromAnsiBytes(""), "");
}

TEST(CodePageTest, UnmappableCharactersBecomeQuestionMarks) {
  EXPECT_EQ(ToAnsiBytes("\xE4\xB8\xAD"), "?");  // 中
  EXPECT_EQ(ToAnsiBytes("a\xC4\x80"
                        "b"),
            "a?b");                                 // Ā: no best fit to "A"
  EXPECT_EQ(ToAnsiBytes("\xF0\x9F\x98\x80"), "?");  // One "?" per character.
  // Characters that are ignorable in display are not dropped either.
  EXPECT_EQ(ToAnsiBytes("\xCD\x8F\xCD\x8F"), "??");  // U+034F twice
  EXPECT_EQ(ToAnsiBytes("a\xE2\x81\xA0"
                        "b"),
            "a?b");                         // U+2060
  EXPECT_EQ(ToAnsiBytes("x\xFFy"), "x?y");  // Ill-formed UTF-8.
}

TEST(CodePageTest, EveryWindows1252ByteRoundTrips) {
  std::string all;
  for (int b = 0; b < 256; ++b) all.push_back(static_cast<char>(b));
  const std::string utf8 = FromAnsiBytes(all);
  EXPECT_EQ(ToAnsiBytes(utf8), all);
  EXPECT_EQ(FromAnsiBytes(Bytes({0x80})), "\xE2\x82\xAC");
  EXPECT_EQ(FromAnsiBytes(Bytes({0xE9})), "\xC3\xA9");
  EXPECT_EQ(FromAnsiBytes(Bytes({0x93, 0x94})), "\xE2\x80\x9C\xE2\x80\x9D");
}

TEST(CodePageTest, UndefinedWindows1252BytesDecodeToC1Controls) {
  for (int b : {0x81, 0x8D, 0x8F, 0x90, 0x9D}) {
    std::string expected;
    expected.push_back(static_cast<char>(0xC2));
    expected.push_back(static_cast<char>(b));
    EXPECT_EQ(FromAnsiBytes(Bytes({b})), expected) << b;
  }
}

TEST(CodePageTest, InstalledPlatformChangesTheCodePage) {
  const std::string zhe = "\xD0\x96\xD0\xB6";  // Жж
  EXPECT_EQ(ToAnsiBytes(zhe), "??");
  {
    CodePagePlatform cyrillic("windows-1251");
    ScopedPlatform scoped(cyrillic);
    EXPECT_EQ(ToAnsiBytes(zhe), Bytes({0xC6, 0xE6}));
    EXPECT_EQ(FromAnsiBytes(Bytes({0xC6, 0xE6})), zhe);
    EXPECT_EQ(ToAnsiBytes("\xC3\xA9"), "?");  // é is not in windows-1251.
  }
  {
    CodePagePlatform greek("ISO-8859-7");
    ScopedPlatform scoped(greek);
    EXPECT_EQ(ToAnsiBytes("\xCE\xB1\xCE\xB2"), Bytes({0xE1, 0xE2}));  // αβ
    EXPECT_EQ(FromAnsiBytes(Bytes({0xE1})), "\xCE\xB1");
  }
  EXPECT_EQ(ToAnsiBytes("\xC3\xA9"), Bytes({0xE9}));
}

TEST(CodePageTest, UnknownCodePageRaises5) {
  CodePagePlatform bogus("no-such-code-page");
  ScopedPlatform scoped(bogus);
  EXPECT_RAISES(ToAnsiBytes("x"), 5, "Unknown code page \"no-such-code-page\"");
  EXPECT_RAISES(FromAnsiBytes("x"), 5, "Unknown code page \"no-such-code-page\"");
}

TEST(CodePageTest, EmptyCodePageNameRaises5) {
  CodePagePlatform empty("");
  ScopedPlatform scoped(empty);
  EXPECT_RAISES(ToAnsiBytes("x"), 5, "Unknown code page \"\"");
}

}  // namespace
}  // namespace veld
