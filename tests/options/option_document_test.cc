// The XPath addressing and the node-creating steps of the option document.
#include "options/option_document.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "veld/xml/xml_document.h"

#include "support/testing.h"

namespace veld::options_internal {
namespace {

using ::veld::testing::Loaded;

TEST(OptionPathTest, EmptyIdsWidenEachLevel) {
  EXPECT_EQ(SectionPath(""), "/*/section");
  EXPECT_EQ(GroupPath("", ""), "/*/section/group");
  EXPECT_EQ(OptionPath("", "", ""), "/*/section/group/option");
  EXPECT_EQ(OptionPath("s", "", ""), "/*/section[@id='s']/group/option");
  EXPECT_EQ(OptionPath("", "g", ""), "/*/section/group[@id='g']/option");
  EXPECT_EQ(OptionPath("", "", "n"), "/*/section/group/option[@name='n']");
}

TEST(OptionPathTest, IdsAndNamesAreEscapedThenTrimmed) {
  EXPECT_EQ(OptionPath(" s ", "a&b", " it's "),
            "/*/section[@id='s']/group[@id='a&amp;b']/option[@name='it&apos;s']");
  EXPECT_EQ(GroupPath("<x>", "\"q\""), "/*/section[@id='&lt;x&gt;']/group[@id='&quot;q&quot;']");
  // Blanks only are not empty: they give an empty predicate, not a wider path.
  EXPECT_EQ(SectionPath("   "), "/*/section[@id='']");
}

TEST(OptionPathTest, SectionSelectPathAlwaysHasAPredicate) {
  EXPECT_EQ(SectionSelectPath(""), "/*/section[@id='']");
  EXPECT_EQ(SectionSelectPath(" a "), "/*/section[@id='a']");
}

TEST(OptionPathTest, EscapedValueStaysLiteralInTheLookup) {
  XmlDocument doc =
      Loaded("<config><section id=\"a&amp;b\"/><section id=\"a&amp;amp;b\"/></config>");

  XmlNodeList found = doc.SelectNodes(SectionPath("a&b"));

  ASSERT_EQ(found.Length(), 1);
  EXPECT_EQ(found.Item(0).GetAttribute("id"), "a&amp;b");
}

TEST(OptionNodeTest, GetOptionNodeFindsExistingOptionWithoutCreating) {
  XmlDocument doc = Loaded(
      "<config><section id=\"s\"><group id=\"g\"><option name=\"n\" value=\"1\"/></group>"
      "</section></config>");
  const std::string before = doc.Xml();

  XmlNode option = GetOptionNode(doc, doc.DocumentElement(), "s", "g", "n");

  EXPECT_EQ(option.GetAttribute("value"), "1");
  EXPECT_EQ(doc.Xml(), before);
}

TEST(OptionNodeTest, GetOptionNodeCreatesOnlyTheMissingLevels) {
  XmlDocument doc = Loaded("<config><section id=\"s\"><group id=\"h\"/></section></config>");

  XmlNode option = GetOptionNode(doc, doc.DocumentElement(), "s", "g", "n");

  EXPECT_EQ(option.Xml(), "<option name=\"n\"/>");
  EXPECT_EQ(doc.Xml(),
            "<config><section id=\"s\"><group id=\"h\"/><group id=\"g\"><option name=\"n\"/>"
            "</group></section></config>");
}

TEST(OptionNodeTest, EmptyIdsRaiseTheLevelsMessage) {
  XmlDocument doc = Loaded("<config/>");
  const XmlNode root = doc.DocumentElement();

  EXPECT_RAISES(GetSectionNode(doc, root, ""), -1, "No Section ID specified.");
  EXPECT_RAISES(GetGroupNode(doc, root, "s", ""), -1, "No SectionID/Group ID specified.");
  EXPECT_RAISES(GetGroupNode(doc, root, "", "g"), -1, "No SectionID/Group ID specified.");
  EXPECT_RAISES(GetOptionNode(doc, root, "s", "g", ""), -1,
                "No SectionID/GroupID/OptionName specified.");
  EXPECT_RAISES(GetOptionNode(doc, root, "", "g", "n"), -1,
                "No SectionID/GroupID/OptionName specified.");
  EXPECT_EQ(doc.Xml(), "<config/>");
}

TEST(SectionSelectionTest, ListWithoutBlankEntryIsUsedAsItIs) {
  XmlDocument doc = Loaded("<config><section id=\"a\"/></config>");

  EXPECT_EQ(SelectSectionIds(doc, {"x", " y "}), (std::vector<std::string>{"x", " y "}));
  EXPECT_EQ(SelectSectionIds(doc, {}), std::vector<std::string>{});
}

TEST(SectionSelectionTest, BlankEntryMeansEverySectionInDocumentOrder) {
  XmlDocument doc =
      Loaded("<root><section id=\"b\"/><other id=\"x\"/><section/><section id=\"a\"/></root>");

  EXPECT_EQ(SelectSectionIds(doc, {"a", " "}), (std::vector<std::string>{"b", "", "a"}));
}

TEST(SectionExportTest, ExportCopiesSectionsIntoANewConfigDocument) {
  XmlDocument held = Loaded("<config><section id=\"a\"><group id=\"g\"/></section></config>");

  XmlDocument exported = ExportSections(held, {"a", "a"});
  exported.DocumentElement().FirstChild().SetAttribute("id", "changed");

  EXPECT_EQ(exported.Xml(),
            "<config><section id=\"changed\"><group id=\"g\"/></section>"
            "<section id=\"a\"><group id=\"g\"/></section></config>");
  EXPECT_EQ(held.Xml(), "<config><section id=\"a\"><group id=\"g\"/></section></config>");
}

}  // namespace
}  // namespace veld::options_internal
