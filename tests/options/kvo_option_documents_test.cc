// Whole sections moved between the held option document and files or XML
// texts: loading with the section-level merge, saving, and their failures.
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "veld/items/kvo_general_items.h"
#include "veld/options/kvo_option.h"

#include "option_testing.h"
#include "support/testing.h"

namespace veld {
namespace {

using ::veld::testing::HeldOption;
using ::veld::testing::ReadFile;
using ::veld::testing::TempDir;

class KvoOptionDocumentsTest : public ::testing::Test {
 protected:
  // Fills the held document from `xml`, which must load.
  void Hold(const std::string& xml) {
    ASSERT_TRUE(option_.LoadOptionFromXml(xml)) << option_.GetLastError();
  }

  TempDir dir_;
  HeldOption option_;
};

TEST_F(KvoOptionDocumentsTest, NewObjectHoldsEmptyConfigRoot) {
  EXPECT_EQ(option_.HeldXml(), "<config/>");
  EXPECT_EQ(option_.GetLastError(), "");
}

TEST_F(KvoOptionDocumentsTest, LoadOptionWithoutSectionIdLoadsEverySectionAndKeepsOthers) {
  Hold(
      "<config><section id=\"a\"><group id=\"old\"/></section>"
      "<section id=\"z\"><group id=\"kept\"/></section></config>");
  const std::string file = dir_.Write("options.xml",
                                      "<config><section id=\"a\"><group id=\"new\"/></section>"
                                      "<section id=\"b\"><group id=\"b1\"/></section></config>");

  EXPECT_TRUE(option_.LoadOption(file));

  EXPECT_EQ(option_.GetLastError(), "");
  // "a" is replaced and moves to the end; "z", which the file lacks, stays.
  EXPECT_EQ(option_.HeldXml(),
            "<config><section id=\"z\"><group id=\"kept\"/></section>"
            "<section id=\"a\"><group id=\"new\"/></section>"
            "<section id=\"b\"><group id=\"b1\"/></section></config>");
}

TEST_F(KvoOptionDocumentsTest, LoadOptionsWithOneBlankIdAmongRealIdsLoadsEverySection) {
  const std::string file = dir_.Write(
      "options.xml", "<config><section id=\"a\"/><section id=\"b\"/><section id=\"c\"/></config>");
  std::vector<std::string> ids{"b", "", "zzz"};

  EXPECT_TRUE(option_.LoadOptions(file, ids));

  EXPECT_EQ(option_.HeldXml(),
            "<config><section id=\"a\"/><section id=\"b\"/><section id=\"c\"/></config>");
  // The caller's list is only read.
  EXPECT_EQ(ids, (std::vector<std::string>{"b", "", "zzz"}));
}

TEST_F(KvoOptionDocumentsTest, IdOfBlanksAmongRealIdsAlsoMeansEverySection) {
  const std::string file =
      dir_.Write("options.xml", "<config><section id=\"a\"/><section id=\"b\"/></config>");
  std::vector<std::string> ids{"b", "   "};

  EXPECT_TRUE(option_.LoadOptions(file, ids));

  EXPECT_EQ(option_.HeldXml(), "<config><section id=\"a\"/><section id=\"b\"/></config>");
}

TEST_F(KvoOptionDocumentsTest, LoadOptionsLoadsOnlyTheListedSectionsInListOrder) {
  const std::string file = dir_.Write(
      "options.xml", "<config><section id=\"a\"/><section id=\"b\"/><section id=\"c\"/></config>");
  std::vector<std::string> ids{"c", "a"};

  EXPECT_TRUE(option_.LoadOptions(file, ids));

  EXPECT_EQ(option_.HeldXml(), "<config><section id=\"c\"/><section id=\"a\"/></config>");
}

TEST_F(KvoOptionDocumentsTest, LoadingSectionWithFewerGroupsLeavesOnlyTheFilesGroups) {
  Hold(
      "<config><section id=\"a\"><group id=\"g1\"><option name=\"x\" value=\"1\"/></group>"
      "<group id=\"g2\"><option name=\"y\" value=\"2\"/></group></section></config>");
  const std::string file = dir_.Write(
      "options.xml",
      "<config><section id=\"a\"><group id=\"g1\"><option name=\"x\" value=\"9\"/></group>"
      "</section></config>");

  EXPECT_TRUE(option_.LoadOption(file, "a"));

  EXPECT_EQ(option_.HeldXml(),
            "<config><section id=\"a\"><group id=\"g1\"><option name=\"x\" value=\"9\"/>"
            "</group></section></config>");
  EXPECT_EQ(option_.GetOption("y", "a", "g2", "none"), "none");
}

TEST_F(KvoOptionDocumentsTest, LoadingSectionTheFileLacksChangesNothingAndReturnsTrue) {
  Hold("<config><section id=\"a\"><group id=\"g\"/></section></config>");
  const std::string before = option_.HeldXml();
  const std::string file =
      dir_.Write("options.xml", "<config><section id=\"b\"><group id=\"x\"/></section></config>");

  EXPECT_TRUE(option_.LoadOption(file, "a"));
  EXPECT_TRUE(option_.LoadOption(file, "missing"));

  EXPECT_EQ(option_.GetLastError(), "");
  EXPECT_EQ(option_.HeldXml(), before);
}

TEST_F(KvoOptionDocumentsTest, SourceWhoseRootIsNotConfigLoadsAllTheSame) {
  const std::string file = dir_.Write(
      "options.xml",
      "<settings><section id=\"a\"><group id=\"g\"><option name=\"n\" value=\"v\"/></group>"
      "</section></settings>");

  EXPECT_TRUE(option_.LoadOption(file));

  EXPECT_EQ(option_.GetOption("n", "a", "g"), "v");
  EXPECT_EQ(option_.HeldXml(),
            "<config><section id=\"a\"><group id=\"g\"><option name=\"n\" value=\"v\"/>"
            "</group></section></config>");
}

TEST_F(KvoOptionDocumentsTest, SectionIdIsTrimmedWhenLoading) {
  const std::string file =
      dir_.Write("options.xml", "<config><section id=\"a\"/><section id=\"b\"/></config>");

  EXPECT_TRUE(option_.LoadOption(file, "  a "));

  EXPECT_EQ(option_.HeldXml(), "<config><section id=\"a\"/></config>");
}

TEST_F(KvoOptionDocumentsTest, SectionIdsCompareWithCase) {
  const std::string file = dir_.Write("options.xml", "<config><section id=\"Main\"/></config>");

  EXPECT_TRUE(option_.LoadOption(file, "main"));

  EXPECT_EQ(option_.HeldXml(), "<config/>");
}

TEST_F(KvoOptionDocumentsTest, EmptyIdListLoadsNothing) {
  const std::string file = dir_.Write("options.xml", "<config><section id=\"a\"/></config>");
  std::vector<std::string> ids;

  EXPECT_TRUE(option_.LoadOptions(file, ids));

  EXPECT_EQ(option_.HeldXml(), "<config/>");
}

TEST_F(KvoOptionDocumentsTest, SourceWithSeveralSectionsOfOneIdGivesOneCopyOfTheFirst) {
  const std::string xml =
      "<config><section id=\"a\"><group id=\"first\"/></section>"
      "<section id=\"a\"><group id=\"second\"/></section></config>";

  EXPECT_TRUE(option_.LoadOptionFromXml(xml));

  EXPECT_EQ(option_.HeldXml(),
            "<config><section id=\"a\"><group id=\"first\"/></section></config>");
}

TEST_F(KvoOptionDocumentsTest, SourceSectionWithEmptyIdReplacesEveryHeldSection) {
  // The held sections go by the widening path of RemoveSection, so a source
  // section with id="" takes the place of all of them.
  Hold("<config><section id=\"a\"/><section id=\"b\"/></config>");

  EXPECT_TRUE(
      option_.LoadOptionFromXml("<config><section id=\"\"><group id=\"g\"/></section></config>"));

  EXPECT_EQ(option_.HeldXml(), "<config><section id=\"\"><group id=\"g\"/></section></config>");
}

TEST_F(KvoOptionDocumentsTest, SourceSectionWithoutIdIsNotLoaded) {
  Hold("<config><section id=\"a\"/></config>");

  EXPECT_TRUE(option_.LoadOptionFromXml("<config><section><group id=\"g\"/></section></config>"));

  EXPECT_EQ(option_.HeldXml(), "<config><section id=\"a\"/></config>");
}

TEST_F(KvoOptionDocumentsTest, SectionWhoseIdHoldsSpecialCharactersIsNotLoaded) {
  // The id goes into the predicate escaped, and XPath does not decode it.
  EXPECT_TRUE(option_.LoadOptionFromXml(
      "<config><section id=\"a&amp;b\"/><section id=\"it's\"/><section id=\"ok\"/></config>"));

  EXPECT_EQ(option_.HeldXml(), "<config><section id=\"ok\"/></config>");
}

TEST_F(KvoOptionDocumentsTest, LoadOptionWithEmptyFileNameRecordsMessage) {
  Hold("<config><section id=\"a\"/></config>");

  EXPECT_FALSE(option_.LoadOption(""));

  EXPECT_CHECK_FAILED(option_, "No source option filename specified.");
  EXPECT_EQ(option_.HeldXml(), "<config><section id=\"a\"/></config>");
}

TEST_F(KvoOptionDocumentsTest, LoadOptionOfMissingFileRecordsFileNotFound) {
  const std::string file = dir_.File("absent.xml");

  EXPECT_FALSE(option_.LoadOption(file));

  EXPECT_CHECK_FAILED(option_, "Option file not found - " + file + ".");
}

TEST_F(KvoOptionDocumentsTest, LoadOptionOfDirectoryRecordsFileNotFound) {
  std::filesystem::create_directory(dir_.File("folder"));

  EXPECT_FALSE(option_.LoadOption(dir_.File("folder")));

  EXPECT_CHECK_FAILED(option_, "Option file not found - " + dir_.File("folder") + ".");
}

TEST_F(KvoOptionDocumentsTest, LoadOptionOfMalformedFileRecordsMessageAndKeepsDocument) {
  Hold("<config><section id=\"a\"/></config>");
  const std::string file = dir_.Write("bad.xml", "<config><section id=\"a\"></config>");

  EXPECT_FALSE(option_.LoadOption(file));

  EXPECT_CHECK_FAILED(option_, "Faield to load option file(Not a valid xml format?).");
  EXPECT_EQ(option_.HeldXml(), "<config><section id=\"a\"/></config>");
}

TEST_F(KvoOptionDocumentsTest, LoadOptionFromEmptyXmlRecordsMessage) {
  EXPECT_FALSE(option_.LoadOptionFromXml(""));

  EXPECT_CHECK_FAILED(option_, "No option xml specified.");
}

TEST_F(KvoOptionDocumentsTest, LoadOptionFromMalformedXmlRecordsMessageAndKeepsDocument) {
  Hold("<config><section id=\"a\"/></config>");

  EXPECT_FALSE(option_.LoadOptionFromXml("<config><section id=\"b\">"));
  EXPECT_CHECK_FAILED(option_, "Faield to load option data(Not a valid xml format?).");
  EXPECT_FALSE(option_.LoadOptionFromXml("   "));
  EXPECT_CHECK_FAILED(option_, "Faield to load option data(Not a valid xml format?).");

  EXPECT_EQ(option_.HeldXml(), "<config><section id=\"a\"/></config>");
}

TEST_F(KvoOptionDocumentsTest, SuccessfulCallClearsTheEarlierRecord) {
  EXPECT_FALSE(option_.LoadOptionFromXml(""));
  ASSERT_NE(option_.GetLastError(), "");

  EXPECT_TRUE(option_.LoadOptionFromXml("<config/>"));

  EXPECT_EQ(option_.GetLastError(), "");
}

TEST_F(KvoOptionDocumentsTest, ResetAfterFailureClearsRecordAndEmptiesDocument) {
  Hold("<config><section id=\"a\"/></config>");
  EXPECT_FALSE(option_.LoadOption(""));

  option_.Reset();

  EXPECT_EQ(option_.GetLastError(), "");
  EXPECT_EQ(option_.HeldXml(), "<config/>");
}

TEST_F(KvoOptionDocumentsTest, RaiseLastErrorRaisesTheRecordedMessage) {
  EXPECT_FALSE(option_.LoadOptionFromXml(""));

  EXPECT_RAISES(option_.RaiseLastError(), -1, "No option xml specified.");
}

TEST_F(KvoOptionDocumentsTest, SaveOptionWithSectionTheDocumentLacksWritesEmptyConfigRoot) {
  Hold("<config><section id=\"a\"/></config>");
  const std::string file = dir_.File("out.xml");

  EXPECT_TRUE(option_.SaveOption(file, "missing"));

  EXPECT_EQ(ReadFile(file), "<config/>");
  EXPECT_EQ(option_.GetLastError(), "");
}

TEST_F(KvoOptionDocumentsTest, SaveOptionWritesOnlyTheSelectedSection) {
  Hold(
      "<config><section id=\"a\"><group id=\"g\"><option name=\"n\" value=\"1\"/></group>"
      "</section><section id=\"b\"/></config>");
  const std::string file = dir_.File("out.xml");

  EXPECT_TRUE(option_.SaveOption(file, " a "));

  EXPECT_EQ(ReadFile(file),
            "<config><section id=\"a\"><group id=\"g\"><option name=\"n\" value=\"1\"/></group>"
            "</section></config>");
}

TEST_F(KvoOptionDocumentsTest, SaveOptionsReplacesTheWholeFile) {
  Hold("<config><section id=\"a\"/><section id=\"b\"/></config>");
  const std::string file =
      dir_.Write("out.xml", "<config><section id=\"old\"/><section id=\"a\"/></config>");
  std::vector<std::string> ids{"b", "a"};

  EXPECT_TRUE(option_.SaveOptions(file, ids));

  EXPECT_EQ(ReadFile(file), "<config><section id=\"b\"/><section id=\"a\"/></config>");
}

TEST_F(KvoOptionDocumentsTest, SaveOptionsOverExistingFileLeavesNoBakFile) {
  Hold("<config><section id=\"a\"/></config>");
  const std::string file = dir_.Write("out.xml", "<config><section id=\"old\"/></config>");
  dir_.Write("out.xml.bak", "stale backup");
  std::vector<std::string> ids{""};

  EXPECT_TRUE(option_.SaveOptions(file, ids));

  EXPECT_EQ(ReadFile(file), "<config><section id=\"a\"/></config>");
  EXPECT_FALSE(std::filesystem::exists(file + ".bak"));
}

TEST_F(KvoOptionDocumentsTest, SaveOptionWithEmptyFileNameRecordsMessage) {
  EXPECT_FALSE(option_.SaveOption(""));

  EXPECT_CHECK_FAILED(option_, "No target option filename specified.");
}

TEST_F(KvoOptionDocumentsTest, SaveOptionIntoMissingDirectoryRecordsPathNotFound) {
  Hold("<config><section id=\"a\"/></config>");
  const std::string file = dir_.File("no-such-dir/out.xml");

  EXPECT_FALSE(option_.SaveOption(file));

  EXPECT_RECORDED(option_, -2147024893, "The system cannot find the path specified.");
  EXPECT_EQ(option_.GetLastError(),
            "The system cannot find the path specified.(ERR#: -2147024893)");
  EXPECT_FALSE(std::filesystem::exists(file));
  EXPECT_FALSE(std::filesystem::exists(file + ".bak"));
  EXPECT_EQ(option_.HeldXml(), "<config><section id=\"a\"/></config>");
}

TEST_F(KvoOptionDocumentsTest, SavedFileLoadsBackIntoTheSameDocument) {
  Hold(
      "<config><section id=\"a\"><group id=\"g\"><option name=\"n\" value=\"1\" type=\"int\" "
      "extra=\"x\"/><option name=\"t\">text</option></group></section>"
      "<section id=\"b\"><group id=\"h\"/></section></config>");
  const std::string file = dir_.File("round.xml");
  ASSERT_TRUE(option_.SaveOption(file));

  HeldOption other;
  EXPECT_TRUE(other.LoadOption(file));

  EXPECT_EQ(other.HeldXml(), option_.HeldXml());
}

TEST_F(KvoOptionDocumentsTest, SaveOptionToXmlGivesTheSelectedSections) {
  Hold("<config><section id=\"a\"/><section id=\"b\"><group id=\"g\"/></section></config>");
  std::string xml = "previous";

  EXPECT_TRUE(option_.SaveOptionToXml(xml, "b"));
  EXPECT_EQ(xml, "<config><section id=\"b\"><group id=\"g\"/></section></config>");

  EXPECT_TRUE(option_.SaveOptionToXml(xml));
  EXPECT_EQ(xml,
            "<config><section id=\"a\"/><section id=\"b\"><group id=\"g\"/></section></config>");
}

TEST_F(KvoOptionDocumentsTest, SaveOptionsToXmlFollowsListOrderAndSkipsMissingIds) {
  Hold("<config><section id=\"a\"/><section id=\"b\"/><section id=\"c\"/></config>");
  std::string xml;
  std::vector<std::string> ids{"c", "nope", "a"};

  EXPECT_TRUE(option_.SaveOptionsToXml(xml, ids));

  EXPECT_EQ(xml, "<config><section id=\"c\"/><section id=\"a\"/></config>");
  EXPECT_EQ(ids, (std::vector<std::string>{"c", "nope", "a"}));
}

TEST_F(KvoOptionDocumentsTest, SavingNeverChangesTheHeldDocument) {
  Hold("<config><section id=\"a\"><group id=\"g\"/></section><section id=\"b\"/></config>");
  const std::string before = option_.HeldXml();
  std::string xml;

  EXPECT_TRUE(option_.SaveOptionToXml(xml, "b"));
  EXPECT_TRUE(option_.SaveOption(dir_.File("one.xml"), "a"));

  EXPECT_EQ(option_.HeldXml(), before);
}

TEST_F(KvoOptionDocumentsTest, HeldSectionWhoseIdHoldsSpecialCharactersIsNotSaved) {
  ASSERT_TRUE(option_.SetOption("n", "v", "a&b", "g"));
  ASSERT_TRUE(option_.SetOption("n", "v", "plain", "g"));
  std::string xml;

  EXPECT_TRUE(option_.SaveOptionToXml(xml));

  EXPECT_EQ(xml,
            "<config><section id=\"plain\"><group id=\"g\"><option name=\"n\" value=\"v\"/>"
            "</group></section></config>");
}

TEST_F(KvoOptionDocumentsTest, SpecialAndNonAsciiTextSurvivesSaveAndLoad) {
  const std::string value = "Ünïcödé ✓ 日本 \"q\" 'a' & <b>";
  const std::string odd_name = "it's <&> \"x\"";
  ASSERT_TRUE(option_.SetOption("Größe", value, "Sektion", "Gruppe"));
  ASSERT_TRUE(option_.SetOption(odd_name, value, "Sektion", "Gruppe"));
  const std::string file = dir_.File("unicode.xml");
  ASSERT_TRUE(option_.SaveOption(file));

  HeldOption other;
  ASSERT_TRUE(other.LoadOption(file));

  EXPECT_EQ(other.HeldXml(), option_.HeldXml());
  EXPECT_EQ(other.GetOption("Größe", "Sektion", "Gruppe"), value);
  std::shared_ptr<KvoGeneralItems> items = other.GetGroupOptions("Sektion", "Gruppe");
  ASSERT_NE(items, nullptr);
  ASSERT_EQ(items->Count(), 2);
  EXPECT_EQ(items->Item(2)->Name, odd_name);
  EXPECT_EQ(items->Item(2)->Value, value);
}

}  // namespace
}  // namespace veld
