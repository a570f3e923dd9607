// Reading, writing and removing single options, groups and sections of the
// held option document.
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "veld/items/kvo_general_items.h"
#include "veld/options/kvo_option.h"
#include "veld/xml/xml_document.h"

#include "option_testing.h"
#include "support/testing.h"

namespace veld {
namespace {

using ::veld::testing::HeldOption;
using ::veld::testing::Loaded;
using ::veld::testing::TempDir;

constexpr char kTwoSections[] =
    "<config>"
    "<section id=\"s1\">"
    "<group id=\"g1\"><option name=\"a\" value=\"1\" type=\"int\" extra=\"e\"/>"
    "<option name=\"b\" value=\"2\"/></group>"
    "<group id=\"g2\"><option name=\"a\" value=\"3\"/></group>"
    "</section>"
    "<section id=\"s2\"><group id=\"g1\"><option name=\"a\" value=\"4\"/></group></section>"
    "</config>";

class KvoOptionAccessTest : public ::testing::Test {
 protected:
  void Hold(const std::string& xml) {
    ASSERT_TRUE(option_.LoadOptionFromXml(xml)) << option_.GetLastError();
  }

  HeldOption option_;
};

// --- GetOption ---

TEST_F(KvoOptionAccessTest, GetOptionReturnsValueAttribute) {
  Hold(kTwoSections);

  EXPECT_EQ(option_.GetOption("a", "s1", "g2", "def"), "3");
  EXPECT_EQ(option_.GetOption("a", "s2", "g1"), "4");
  EXPECT_EQ(option_.GetLastError(), "");
}

TEST_F(KvoOptionAccessTest, MissingOptionReturnsDefaultAndRecordsPath) {
  Hold(kTwoSections);

  EXPECT_EQ(option_.GetOption("it's", "s1", "g1", "fallback"), "fallback");

  EXPECT_CHECK_FAILED(option_,
                      "Specified option not found - "
                      "/*/section[@id='s1']/group[@id='g1']/option[@name='it&apos;s']");
}

TEST_F(KvoOptionAccessTest, MissingOptionPathShowsTheWidenedLevels) {
  EXPECT_EQ(option_.GetOption("x"), "");

  EXPECT_CHECK_FAILED(option_, "Specified option not found - /*/section/group/option[@name='x']");
}

TEST_F(KvoOptionAccessTest, MissingOptionPathHoldsTrimmedEscapedNames) {
  EXPECT_EQ(option_.GetOption(" a<b ", " s&t ", "\"g\""), "");

  EXPECT_CHECK_FAILED(option_,
                      "Specified option not found - /*/section[@id='s&amp;t']"
                      "/group[@id='&quot;g&quot;']/option[@name='a&lt;b']");
}

TEST_F(KvoOptionAccessTest, OptionWrittenAsElementTextReturnsThatText) {
  Hold(
      "<config><section id=\"s\"><group id=\"g\"><option name=\"t\">hello</option>"
      "</group></section></config>");

  EXPECT_EQ(option_.GetOption("t", "s", "g", "def"), "hello");
  EXPECT_EQ(option_.GetLastError(), "");
}

TEST_F(KvoOptionAccessTest, EmptyOptionElementGivesEmptyTextNotTheDefault) {
  Hold("<config><section id=\"s\"><group id=\"g\"><option name=\"e\"/></group></section></config>");

  EXPECT_EQ(option_.GetOption("e", "s", "g", "def"), "");
  EXPECT_EQ(option_.GetLastError(), "");
}

TEST_F(KvoOptionAccessTest, GetOptionWithEmptySectionAndGroupFindsFirstOptionAnywhere) {
  Hold(kTwoSections);

  EXPECT_EQ(option_.GetOption("a"), "1");
  EXPECT_EQ(option_.GetOption("a", "s2"), "4");
  EXPECT_EQ(option_.GetOption("a", "", "g2"), "3");
}

TEST_F(KvoOptionAccessTest, GetOptionTrimsNamesAndIds) {
  Hold(kTwoSections);

  EXPECT_EQ(option_.GetOption(" b ", "  s1", "g1  "), "2");
}

TEST_F(KvoOptionAccessTest, GetOptionComparesNamesWithCase) {
  Hold(kTwoSections);

  EXPECT_EQ(option_.GetOption("A", "s1", "g1", "none"), "none");
  EXPECT_NE(option_.GetLastError(), "");
}

// --- SetOption ---

TEST_F(KvoOptionAccessTest, SetOptionCreatesSectionGroupAndOptionAtTheEnd) {
  Hold("<config><section id=\"s0\"/></config>");

  EXPECT_TRUE(option_.SetOption("n", "v", "s", "g"));
  EXPECT_TRUE(option_.SetOption("m", "w", "s", "g"));
  EXPECT_TRUE(option_.SetOption("k", "x", "s", "h"));

  EXPECT_EQ(
      option_.HeldXml(),
      "<config><section id=\"s0\"/><section id=\"s\">"
      "<group id=\"g\"><option name=\"n\" value=\"v\"/><option name=\"m\" value=\"w\"/></group>"
      "<group id=\"h\"><option name=\"k\" value=\"x\"/></group></section></config>");
  EXPECT_EQ(option_.GetOption("m", "s", "g"), "w");
}

TEST_F(KvoOptionAccessTest, SetOptionUpdatesValueAndKeepsOtherAttributes) {
  Hold(kTwoSections);

  EXPECT_TRUE(option_.SetOption("a", "new", "s1", "g1"));

  EXPECT_EQ(option_.GetOption("a", "s1", "g1"), "new");
  XmlDocument held = Loaded(option_.HeldXml());
  XmlNode a = held.SelectSingleNode("/config/section[@id='s1']/group[@id='g1']/option[@name='a']");
  ASSERT_TRUE(a);
  EXPECT_EQ(a.Xml(), "<option name=\"a\" value=\"new\" type=\"int\" extra=\"e\"/>");
}

TEST_F(KvoOptionAccessTest, SetOptionGivesTextOptionAValueAttribute) {
  Hold(
      "<config><section id=\"s\"><group id=\"g\"><option name=\"t\">old</option>"
      "</group></section></config>");

  EXPECT_TRUE(option_.SetOption("t", "new", "s", "g"));

  EXPECT_EQ(option_.GetOption("t", "s", "g"), "new");
}

TEST_F(KvoOptionAccessTest, SetOptionStoresTrimmedIdsAndNames) {
  EXPECT_TRUE(option_.SetOption(" n ", "v", " s ", " g "));
  EXPECT_TRUE(option_.SetOption("n", "w", "s", "g"));

  EXPECT_EQ(option_.HeldXml(),
            "<config><section id=\"s\"><group id=\"g\"><option name=\"n\" value=\"w\"/></group>"
            "</section></config>");
}

TEST_F(KvoOptionAccessTest, SetOptionWithEmptyGroupFailsOnlyForNewOption) {
  Hold(kTwoSections);
  const std::string before = option_.HeldXml();

  EXPECT_FALSE(option_.SetOption("new", "v", "s1", ""));
  EXPECT_CHECK_FAILED(option_, "No SectionID/GroupID/OptionName specified.");
  EXPECT_EQ(option_.HeldXml(), before);

  // An existing option found through the widened path is updated: the first
  // "b" of any group of s1.
  EXPECT_TRUE(option_.SetOption("b", "changed", "s1", ""));
  EXPECT_EQ(option_.GetLastError(), "");
  EXPECT_EQ(option_.GetOption("b", "s1", "g1"), "changed");
}

TEST_F(KvoOptionAccessTest, SetOptionWithEmptySectionOrNameFailsForNewOption) {
  EXPECT_FALSE(option_.SetOption("n", "v", "", "g"));
  EXPECT_CHECK_FAILED(option_, "No SectionID/GroupID/OptionName specified.");

  EXPECT_FALSE(option_.SetOption("", "v", "s", "g"));
  EXPECT_CHECK_FAILED(option_, "No SectionID/GroupID/OptionName specified.");

  EXPECT_EQ(option_.HeldXml(), "<config/>");
}

TEST_F(KvoOptionAccessTest, SetOptionWithEmptyNameUpdatesFirstOptionOfGroup) {
  Hold(kTwoSections);

  EXPECT_TRUE(option_.SetOption("", "first", "s1", "g1"));

  EXPECT_EQ(option_.GetOption("a", "s1", "g1"), "first");
  EXPECT_EQ(option_.GetOption("b", "s1", "g1"), "2");
}

TEST_F(KvoOptionAccessTest, SpecialCharactersAreStoredLiterallyAndNotFoundByName) {
  const std::string name = "q\"a'b&c<d>e ü";
  const std::string value = "v\"a'l&u<e> Größe ✓";

  EXPECT_TRUE(option_.SetOption(name, value, "s", "g"));

  // Stored and read back through the group readers.
  std::shared_ptr<KvoGeneralItems> items = option_.GetGroupOptions("s", "g");
  ASSERT_NE(items, nullptr);
  ASSERT_EQ(items->Count(), 1);
  EXPECT_EQ(items->Item(1)->Name, name);
  EXPECT_EQ(items->Item(1)->Value, value);
  XmlNodeList nodes = option_.GetOptionGroup("s", "g");
  ASSERT_EQ(nodes.Length(), 1);
  EXPECT_EQ(nodes.Item(0).GetAttribute("name"), name);
  EXPECT_EQ(nodes.Item(0).GetAttribute("value"), value);

  // A lookup by the name does not find it, so setting it again adds another.
  EXPECT_EQ(option_.GetOption(name, "s", "g", "def"), "def");
  EXPECT_CHECK_FAILED(option_,
                      "Specified option not found - /*/section[@id='s']/group[@id='g']"
                      "/option[@name='q&quot;a&apos;b&amp;c&lt;d&gt;e ü']");
  EXPECT_TRUE(option_.SetOption(name, "second", "s", "g"));
  EXPECT_EQ(option_.GetOptionGroup("s", "g").Length(), 2);
}

TEST_F(KvoOptionAccessTest, NonAsciiNamesAreFoundByName) {
  EXPECT_TRUE(option_.SetOption("Größe", "groß", "Sektion", "Grüppe"));

  EXPECT_EQ(option_.GetOption("Größe", "Sektion", "Grüppe"), "groß");
}

TEST_F(KvoOptionAccessTest, SectionIdWithSpecialCharactersCreatesNewSectionEachTime) {
  EXPECT_TRUE(option_.SetOption("n", "1", "a'b", "g"));
  EXPECT_TRUE(option_.SetOption("n", "2", "a'b", "g"));

  EXPECT_EQ(option_.HeldXml(),
            "<config><section id=\"a'b\"><group id=\"g\"><option name=\"n\" value=\"1\"/>"
            "</group></section><section id=\"a'b\"><group id=\"g\"><option name=\"n\" "
            "value=\"2\"/></group></section></config>");
}

// --- SetGroupOptions ---

TEST_F(KvoOptionAccessTest, SetGroupOptionsSetsEveryItemInOrder) {
  Hold(
      "<config><section id=\"s\"><group id=\"g\"><option name=\"b\" value=\"old\" "
      "type=\"t\"/></group></section></config>");

  EXPECT_TRUE(option_.SetGroupOptions(
      "<group><option name=\"a\" value=\"1\" type=\"ignored\"/><option name=\"b\" value=\"2\"/>"
      "<option name=\"c\"> text </option></group>",
      "s", "g"));

  EXPECT_EQ(option_.GetLastError(), "");
  EXPECT_EQ(option_.HeldXml(),
            "<config><section id=\"s\"><group id=\"g\"><option name=\"b\" value=\"2\" "
            "type=\"t\"/><option name=\"a\" value=\"1\"/><option name=\"c\" value=\"text\"/>"
            "</group></section></config>");
}

TEST_F(KvoOptionAccessTest, SetGroupOptionsOfBlankTextSetsNothing) {
  EXPECT_TRUE(option_.SetGroupOptions("   ", "s", "g"));

  EXPECT_EQ(option_.HeldXml(), "<config/>");
}

TEST_F(KvoOptionAccessTest, SetGroupOptionsOfMalformedTextRecordsParseMessage) {
  EXPECT_FALSE(option_.SetGroupOptions("<group><option", "s", "g"));

  EXPECT_CHECK_FAILED(option_, "Failed to load items Xml.");
  EXPECT_EQ(option_.HeldXml(), "<config/>");
}

TEST_F(KvoOptionAccessTest, SetGroupOptionsStopsAtFirstOptionThatCannotBeSet) {
  Hold(
      "<config><section id=\"s\"><group id=\"g\"><option name=\"b\" value=\"old\"/>"
      "</group></section></config>");

  // With no group id, "b" is found through the widened path, "new" is not.
  EXPECT_FALSE(option_.SetGroupOptions(
      "<group><option name=\"b\" value=\"1\"/><option name=\"new\" value=\"2\"/>"
      "<option name=\"b\" value=\"3\"/></group>",
      "s", ""));

  EXPECT_CHECK_FAILED(option_, "No SectionID/GroupID/OptionName specified.");
  EXPECT_EQ(option_.GetOption("b", "s", "g"), "1");
}

TEST_F(KvoOptionAccessTest, SetGroupOptionsStoresSpecialCharactersLiterally) {
  EXPECT_TRUE(option_.SetGroupOptions(
      "<group><option name=\"a&amp;b\" value=\"&lt;x&gt; &quot;y&quot; 'z'\"/></group>", "s", "g"));

  std::shared_ptr<KvoGeneralItems> items = option_.GetGroupOptions("s", "g");
  ASSERT_NE(items, nullptr);
  ASSERT_EQ(items->Count(), 1);
  EXPECT_EQ(items->Item(1)->Name, "a&b");
  EXPECT_EQ(items->Item(1)->Value, "<x> \"y\" 'z'");
}

// --- Removing ---

TEST_F(KvoOptionAccessTest, RemoveSectionWithoutArgumentsEmptiesDocumentToRoot) {
  Hold(kTwoSections);

  EXPECT_TRUE(option_.RemoveSection());

  EXPECT_EQ(option_.HeldXml(), "<config/>");
  EXPECT_EQ(option_.GetLastError(), "");
}

TEST_F(KvoOptionAccessTest, RemoveSectionRemovesOnlyThatSection) {
  Hold(kTwoSections);

  EXPECT_TRUE(option_.RemoveSection(" s1 "));

  EXPECT_EQ(option_.HeldXml(),
            "<config><section id=\"s2\"><group id=\"g1\"><option name=\"a\" value=\"4\"/></group>"
            "</section></config>");
}

TEST_F(KvoOptionAccessTest, RemovingWhatDoesNotExistReturnsTrueAndChangesNothing) {
  Hold(kTwoSections);
  const std::string before = option_.HeldXml();

  EXPECT_TRUE(option_.RemoveSection("nope"));
  EXPECT_TRUE(option_.RemoveOptionGroup("s1", "nope"));
  EXPECT_TRUE(option_.RemoveOption("s1", "g1", "nope"));
  EXPECT_TRUE(option_.RemoveOption("s1", "g1", "it's"));

  EXPECT_EQ(option_.HeldXml(), before);
  EXPECT_EQ(option_.GetLastError(), "");
}

TEST_F(KvoOptionAccessTest, RemoveOptionGroupWithEmptyGroupRemovesEveryGroupOfSection) {
  Hold(kTwoSections);

  EXPECT_TRUE(option_.RemoveOptionGroup("s1"));

  EXPECT_EQ(option_.HeldXml(),
            "<config><section id=\"s1\"/><section id=\"s2\"><group id=\"g1\">"
            "<option name=\"a\" value=\"4\"/></group></section></config>");
}

TEST_F(KvoOptionAccessTest, RemoveOptionGroupWithEmptySectionRemovesThatGroupEverywhere) {
  Hold(kTwoSections);

  EXPECT_TRUE(option_.RemoveOptionGroup("", "g1"));

  EXPECT_EQ(option_.HeldXml(),
            "<config><section id=\"s1\"><group id=\"g2\"><option name=\"a\" value=\"3\"/></group>"
            "</section><section id=\"s2\"/></config>");
}

TEST_F(KvoOptionAccessTest, RemoveOptionWithEmptyNameRemovesEveryOptionOfGroup) {
  Hold(kTwoSections);

  EXPECT_TRUE(option_.RemoveOption("s1", "g1"));

  EXPECT_EQ(option_.GetOptionGroup("s1", "g1").Length(), 0);
  EXPECT_EQ(option_.GetOption("a", "s1", "g2"), "3");
}

TEST_F(KvoOptionAccessTest, RemoveOptionRemovesTheNamedOptionOnly) {
  Hold(kTwoSections);

  EXPECT_TRUE(option_.RemoveOption("s1", "g1", "a"));

  EXPECT_EQ(option_.GetOption("a", "s1", "g1", "gone"), "gone");
  EXPECT_EQ(option_.GetOption("b", "s1", "g1"), "2");
  EXPECT_EQ(option_.GetOption("a", "s2", "g1"), "4");
}

// --- GetOptionGroup ---

TEST_F(KvoOptionAccessTest, GetOptionGroupListsOptionsOfMatchingGroupsInDocumentOrder) {
  Hold(kTwoSections);

  XmlNodeList all = option_.GetOptionGroup("", "g1");
  ASSERT_EQ(all.Length(), 3);
  EXPECT_EQ(all.Item(0).GetAttribute("value"), "1");
  EXPECT_EQ(all.Item(1).GetAttribute("value"), "2");
  EXPECT_EQ(all.Item(2).GetAttribute("value"), "4");

  XmlNodeList none = option_.GetOptionGroup("s1", "missing");
  EXPECT_FALSE(none.IsNull());
  EXPECT_EQ(none.Length(), 0);
}

TEST_F(KvoOptionAccessTest, GetOptionGroupNodesBelongToTheHeldDocument) {
  Hold(kTwoSections);

  XmlNodeList nodes = option_.GetOptionGroup("s1", "g1");
  ASSERT_EQ(nodes.Length(), 2);
  nodes.Item(1).SetAttribute("value", "through the node");

  EXPECT_EQ(option_.GetOption("b", "s1", "g1"), "through the node");
}

TEST_F(KvoOptionAccessTest, GetOptionGroupListStaysValidAfterResetAndRemoval) {
  Hold(kTwoSections);
  XmlNodeList nodes = option_.GetOptionGroup("s1", "g1");
  ASSERT_EQ(nodes.Length(), 2);

  EXPECT_TRUE(option_.RemoveSection("s1"));
  option_.Reset();

  EXPECT_EQ(nodes.Item(0).Xml(), "<option name=\"a\" value=\"1\" type=\"int\" extra=\"e\"/>");
  EXPECT_EQ(nodes.Item(1).GetAttribute("name"), "b");
}

// --- GetGroupOptions ---

TEST_F(KvoOptionAccessTest, GetGroupOptionsReadsAllFourAttributes) {
  Hold(
      "<config><section id=\"s\"><group id=\"g\">"
      "<option name=\"a\" value=\"1\" type=\"int\" extra=\"x\"/>"
      "<option name=\"t\">text value</option>"
      "<option name=\"b\" value=\"2\"/></group></section></config>");

  std::shared_ptr<KvoGeneralItems> items = option_.GetGroupOptions("s", "g");

  ASSERT_NE(items, nullptr);
  ASSERT_EQ(items->Count(), 3);
  EXPECT_EQ(items->Item(1)->Name, "a");
  EXPECT_EQ(items->Item(1)->Value, "1");
  EXPECT_EQ(items->Item(1)->TypeString, "int");
  EXPECT_EQ(items->Item(1)->ExtraValue, "x");
  EXPECT_EQ(items->Item(2)->Name, "t");
  EXPECT_EQ(items->Item(2)->Value, "text value");
  EXPECT_EQ(items->Item(2)->TypeString, "");
  EXPECT_EQ(items->Item(3)->Name, "b");
  EXPECT_EQ(items->Item(3)->ExtraValue, "");
  // No keys: the items can be reached by position only.
  EXPECT_EQ(items->GetItemValue("a"), "");
}

TEST_F(KvoOptionAccessTest, GetGroupOptionsOfGroupWhoseOnlyOptionIsEmptyGivesEmptyCollection) {
  Hold(
      "<config><section id=\"s\"><group id=\"g\"><option name=\"a\" value=\"\"/></group>"
      "</section></config>");

  std::shared_ptr<KvoGeneralItems> items = option_.GetGroupOptions("s", "g");

  ASSERT_NE(items, nullptr);
  EXPECT_EQ(items->Count(), 0);
}

TEST_F(KvoOptionAccessTest, GetGroupOptionsLeavesOutOptionsWithoutNameOrValue) {
  Hold(
      "<config><section id=\"s\"><group id=\"g\"><option name=\"a\" value=\"\"/>"
      "<option value=\"nameless\"/><option name=\"\" value=\"x\"/><option name=\"e\"/>"
      "<option name=\"ok\" value=\"1\"/></group></section></config>");

  std::shared_ptr<KvoGeneralItems> items = option_.GetGroupOptions("s", "g");

  ASSERT_NE(items, nullptr);
  ASSERT_EQ(items->Count(), 1);
  EXPECT_EQ(items->Item(1)->Name, "ok");
}

TEST_F(KvoOptionAccessTest, GetGroupOptionsOfMissingGroupGivesNoObject) {
  Hold(kTwoSections);

  EXPECT_EQ(option_.GetGroupOptions("s1", "missing"), nullptr);
  EXPECT_EQ(option_.GetGroupOptions("missing", "g1"), nullptr);
  EXPECT_EQ(option_.GetLastError(), "");
}

TEST_F(KvoOptionAccessTest, GetGroupOptionsGivesANewCollectionEachCall) {
  Hold(kTwoSections);

  std::shared_ptr<KvoGeneralItems> first = option_.GetGroupOptions("s1", "g1");
  std::shared_ptr<KvoGeneralItems> second = option_.GetGroupOptions("s1", "g1");
  ASSERT_NE(first, nullptr);
  ASSERT_NE(second, nullptr);
  first->Item(1)->Value = "changed";

  EXPECT_NE(first, second);
  EXPECT_EQ(second->Item(1)->Value, "1");
  EXPECT_EQ(option_.GetOption("a", "s1", "g1"), "1");
}

// --- SetOptionGroup ---

TEST_F(KvoOptionAccessTest, SetOptionGroupAppendsDeepCopiesAndKeepsExistingOptions) {
  Hold(
      "<config><section id=\"s\"><group id=\"g\"><option name=\"a\" value=\"old\"/></group>"
      "</section></config>");
  XmlDocument source = Loaded(
      "<group><option name=\"a\" value=\"new\"><note>n</note></option><other x=\"1\"/></group>");
  XmlNodeList nodes = source.SelectNodes("/group/*");

  EXPECT_TRUE(option_.SetOptionGroup("s", "g", nodes));

  EXPECT_EQ(option_.HeldXml(),
            "<config><section id=\"s\"><group id=\"g\"><option name=\"a\" value=\"old\"/>"
            "<option name=\"a\" value=\"new\"><note>n</note></option><other x=\"1\"/></group>"
            "</section></config>");
  // The source is untouched.
  EXPECT_EQ(source.Xml(),
            "<group><option name=\"a\" value=\"new\"><note>n</note></option><other x=\"1\"/>"
            "</group>");
}

TEST_F(KvoOptionAccessTest, SetOptionGroupCreatesMissingGroupAndSection) {
  XmlDocument source = Loaded("<g><option name=\"x\" value=\"1\"/></g>");

  EXPECT_TRUE(option_.SetOptionGroup("s", "g", source.SelectNodes("/g/option")));

  EXPECT_EQ(option_.HeldXml(),
            "<config><section id=\"s\"><group id=\"g\"><option name=\"x\" value=\"1\"/></group>"
            "</section></config>");
}

TEST_F(KvoOptionAccessTest, SetOptionGroupCopiesNodesOfTheHeldDocumentWithoutMovingThem) {
  Hold(kTwoSections);

  EXPECT_TRUE(option_.SetOptionGroup("s2", "copy", option_.GetOptionGroup("s1", "g1")));

  EXPECT_EQ(option_.GetOptionGroup("s1", "g1").Length(), 2);
  EXPECT_EQ(option_.GetOptionGroup("s2", "copy").Length(), 2);
  EXPECT_EQ(option_.GetOption("b", "s2", "copy"), "2");
}

TEST_F(KvoOptionAccessTest, SetOptionGroupWithEmptyListAddsEmptyGroup) {
  XmlDocument source = Loaded("<g/>");

  EXPECT_TRUE(option_.SetOptionGroup("s", "g", source.SelectNodes("/g/option")));

  EXPECT_EQ(option_.HeldXml(), "<config><section id=\"s\"><group id=\"g\"/></section></config>");
}

TEST_F(KvoOptionAccessTest, SetOptionGroupWithUnsetListRecordsMessage) {
  EXPECT_FALSE(option_.SetOptionGroup("s", "g", XmlNodeList()));

  EXPECT_CHECK_FAILED(option_, "Invalid input node list to save.");
  EXPECT_EQ(option_.HeldXml(), "<config/>");
}

TEST_F(KvoOptionAccessTest, SetOptionGroupWithEmptyIdsRecordsMessage) {
  XmlDocument source = Loaded("<g><option name=\"x\" value=\"1\"/></g>");

  EXPECT_FALSE(option_.SetOptionGroup("s", "", source.SelectNodes("/g/option")));
  EXPECT_CHECK_FAILED(option_, "No SectionID/Group ID specified.");
  EXPECT_FALSE(option_.SetOptionGroup("", "g", source.SelectNodes("/g/option")));
  EXPECT_CHECK_FAILED(option_, "No SectionID/Group ID specified.");

  EXPECT_EQ(option_.HeldXml(), "<config/>");
}

TEST_F(KvoOptionAccessTest, SetOptionGroupRefusesEmptyGroupIdEvenWhenGroupsExist) {
  Hold(kTwoSections);
  const std::string before = option_.HeldXml();
  XmlDocument source = Loaded("<g><option name=\"x\" value=\"1\"/></g>");

  EXPECT_FALSE(option_.SetOptionGroup("s1", "", source.SelectNodes("/g/option")));

  EXPECT_CHECK_FAILED(option_, "No SectionID/Group ID specified.");
  EXPECT_EQ(option_.HeldXml(), before);
}

TEST_F(KvoOptionAccessTest, SetOptionGroupStopsAtNodeThatCannotBeAppended) {
  XmlDocument source = Loaded("<g><option name=\"x\" value=\"1\"/></g>");
  XmlNodeList nodes = source.SelectNodes("/g/option | /g/option/@name");
  ASSERT_EQ(nodes.Length(), 2);

  EXPECT_FALSE(option_.SetOptionGroup("s", "g", nodes));

  EXPECT_EQ(option_.RecordedNumber(), -2147467259);
  EXPECT_NE(option_.RecordedDescription(), "");
  // The copy made before the failure stays.
  EXPECT_EQ(option_.GetOption("x", "s", "g"), "1");
}

// --- GenerateGUID ---

TEST_F(KvoOptionAccessTest, GenerateGuidGivesTheRequestedForms) {
  const std::string general = option_.GenerateGUID();
  ASSERT_EQ(general.size(), 38u);
  EXPECT_EQ(general.front(), '{');
  EXPECT_EQ(general[9], '-');
  EXPECT_EQ(general[14], '-');
  EXPECT_EQ(general[19], '-');
  EXPECT_EQ(general[24], '-');
  EXPECT_EQ(general.back(), '}');

  const std::string pure = option_.GenerateGUID(Kvo_GUID_FORMAT_PUREDATA);
  ASSERT_EQ(pure.size(), 32u);
  EXPECT_EQ(pure.find_first_not_of("0123456789ABCDEF"), std::string::npos);
  EXPECT_NE(pure, option_.GenerateGUID(Kvo_GUID_FORMAT_PUREDATA));

  EXPECT_EQ(option_.GenerateGUID(KVO_GUID_FORMAT_UNKNOWN), "");
  EXPECT_EQ(option_.GenerateGUID(static_cast<KvoGuidFormatEnum>(7)), "");
}

TEST_F(KvoOptionAccessTest, GenerateGuidLeavesTheRecordAlone) {
  EXPECT_EQ(option_.GetOption("missing"), "");
  const std::string recorded = option_.GetLastError();
  ASSERT_NE(recorded, "");

  EXPECT_EQ(option_.GenerateGUID().size(), 38u);

  EXPECT_EQ(option_.GetLastError(), recorded);
}

}  // namespace
}  // namespace veld
