#include "runtime/text.h"

#include <string>

#include <gtest/gtest.h>

namespace veld {
namespace {

TEST(TrimTest, RemovesOnlyTheSpaceCharacter) {
  EXPECT_EQ(Trim("  <-Trim->  "), "<-Trim->");
  EXPECT_EQ(LTrim("  <-Trim->  "), "<-Trim->  ");
  EXPECT_EQ(RTrim("  <-Trim->  "), "  <-Trim->");
  EXPECT_EQ(Trim("\t x \t"), "\t x \t");
  EXPECT_EQ(Trim("\r\nx\r\n"), "\r\nx\r\n");
  EXPECT_EQ(Trim("\xC2\xA0x\xC2\xA0"), "\xC2\xA0x\xC2\xA0");  // No-break spaces stay.
  EXPECT_EQ(Trim(" \t "), "\t");
}

TEST(TrimTest, BlankOrEmptyTextBecomesEmpty) {
  EXPECT_EQ(Trim(""), "");
  EXPECT_EQ(Trim("    "), "");
  EXPECT_EQ(LTrim("   "), "");
  EXPECT_EQ(RTrim("   "), "");
}

TEST(CaseTest, UCaseAndLCaseChangeOnlyLetters) {
  EXPECT_EQ(UCase("Hello World 1234"), "HELLO WORLD 1234");
  EXPECT_EQ(LCase("Hello World 1234"), "hello world 1234");
  EXPECT_EQ(UCase(""), "");
}

TEST(CaseTest, NonAsciiLettersChangeCase) {
  EXPECT_EQ(UCase("caf\xC3\xA9 \xC3\xA4pfel"), "CAF\xC3\x89 \xC3\x84PFEL");  // café äpfel
  EXPECT_EQ(LCase("\xD0\x9C\xD0\x98\xD0\xA0"), "\xD0\xBC\xD0\xB8\xD1\x80");  // МИР -> мир
  EXPECT_EQ(UCase("\xCE\xB1\xCE\xB2\xCE\xB3"), "\xCE\x91\xCE\x92\xCE\x93");  // αβγ
  EXPECT_EQ(UCase("\xF0\x90\x90\xA8"), "\xF0\x90\x90\x80");  // Deseret, outside the BMP.
}

TEST(CaseTest, OneLetterMapsToOneLetter) {
  EXPECT_EQ(UCase("stra\xC3\x9F"
                  "e"),
            "STRA\xC3\x9F"
            "E");                                            // ß stays ß
  EXPECT_EQ(LCase("\xCE\xA3\xCE\xA3"), "\xCF\x83\xCF\x83");  // ΣΣ -> σσ, no final sigma
}

TEST(CaseTest, IllFormedUtf8IsCopiedUnchanged) {
  EXPECT_EQ(UCase("a\xFF"
                  "b"),
            "A\xFF"
            "B");
  EXPECT_EQ(LCase("A\x80\xC3"), "a\x80\xC3");
  EXPECT_EQ(UCase("\xC0\xAFx"), "\xC0\xAFX");          // Overlong "/".
  EXPECT_EQ(UCase("\xED\xA0\x80y"), "\xED\xA0\x80Y");  // Encoded surrogate.
  EXPECT_EQ(FoldCase("K\xE2\x82"), "k\xE2\x82");       // Truncated sequence.
}

TEST(FoldCaseTest, FoldsFullyAndLocaleIndependently) {
  EXPECT_EQ(FoldCase("HeLLo"), "hello");
  EXPECT_EQ(FoldCase("\xC3\x84PFEL"), FoldCase("\xC3\xA4pfel"));
  EXPECT_EQ(FoldCase("Stra\xC3\x9F"
                     "e"),
            "strasse");
  EXPECT_EQ(FoldCase("\xE2\x84\xAA"), "k");     // Kelvin sign.
  EXPECT_EQ(FoldCase("\xCF\x82"), "\xCF\x83");  // Final sigma folds to sigma.
}

TEST(EqualsIgnoreCaseTest, ComparesByCaseFolding) {
  EXPECT_TRUE(EqualsIgnoreCase("TEST", "Test"));
  EXPECT_TRUE(EqualsIgnoreCase("\xC3\x84PFEL", "\xC3\xA4pfel"));
  EXPECT_TRUE(EqualsIgnoreCase("STRASSE \xC3\x84pfel", "strasse \xC3\xA4PFEL"));
  EXPECT_TRUE(
      EqualsIgnoreCase("Stra\xC3\x9F"
                       "e",
                       "STRASSE"));
  EXPECT_TRUE(EqualsIgnoreCase("", ""));
  EXPECT_FALSE(EqualsIgnoreCase("apfel", "\xC3\xA4pfel"));  // Accents count.
  EXPECT_FALSE(EqualsIgnoreCase("abc", "abcd"));
  EXPECT_FALSE(EqualsIgnoreCase("a\xFF", "a\xFE"));
}

}  // namespace
}  // namespace veld
