#include "foundation/xml_utils.h"

#include <string>

#include <gtest/gtest.h>

#include "support/testing.h"

namespace veld {
namespace {

using ::veld::testing::Loaded;

TEST(EscapeXmlTextTest, FiveSpecialCharactersBecomeEntitiesInOrder) {
  EXPECT_EQ(EscapeXmlText("&\"><'"), "&amp;&quot;&gt;&lt;&apos;");
}

TEST(EscapeXmlTextTest, AlreadyEscapedAmpersandIsEscapedAgain) {
  EXPECT_EQ(EscapeXmlText("&amp;"), "&amp;amp;");
}

TEST(EscapeXmlTextTest, OtherTextIsUnchanged) {
  EXPECT_EQ(EscapeXmlText(""), "");
  EXPECT_EQ(EscapeXmlText("plain text 123 Größe"), "plain text 123 Größe");
  EXPECT_EQ(EscapeXmlText("a&b"), "a&amp;b");
}

TEST(EscapeXmlTextTest, NameWithApostropheIsNotFoundByAPredicate) {
  XmlDocument doc = Loaded("<c><option name=\"it's\"/><option name=\"it&amp;apos;s\"/></c>");
  std::string path = "/c/option[@name='" + EscapeXmlText("it's") + "']";
  XmlNodeList found = doc.SelectNodes(path);
  // Only the attribute that literally holds the six characters "&apos;"
  // matches; the real name with an apostrophe does not.
  ASSERT_EQ(found.Length(), 1);
  EXPECT_EQ(found.Item(0).GetAttribute("name"), "it&apos;s");
}

TEST(EscapeXmlTextTest, NamesWithSpecialCharactersAreNotFound) {
  XmlDocument doc = Loaded(
      "<c><o name=\"a&amp;b\"/><o name=\"a&quot;b\"/><o name=\"a&gt;b\"/><o name=\"a&lt;b\"/></c>");
  for (const char* name : {"a&b", "a\"b", "a>b", "a<b"}) {
    std::string path = "/c/o[@name='" + EscapeXmlText(name) + "']";
    EXPECT_EQ(doc.SelectNodes(path).Length(), 0) << name;
  }
}

TEST(GetNodeAttributeTest, PresentButEmptyAttributeGivesEmptyText) {
  XmlDocument doc = Loaded("<a v=\"\"/>");
  EXPECT_EQ(GetNodeAttribute(doc.DocumentElement(), "v", "default"), "");
}

TEST(GetNodeAttributeTest, MissingAttributeGivesDefault) {
  XmlDocument doc = Loaded("<a v=\"1\"/>");
  EXPECT_EQ(GetNodeAttribute(doc.DocumentElement(), "w", "default"), "default");
  EXPECT_EQ(GetNodeAttribute(doc.DocumentElement(), "v", "default"), "1");
}

TEST(GetNodeAttributeTest, NullElementGivesDefault) {
  EXPECT_EQ(GetNodeAttribute(XmlNode(), "v", "default"), "default");
}

TEST(GetNodeTextTest, OnlyTheFirstTextChildCounts) {
  XmlDocument doc = Loaded("<a>first<b/>second</a>");
  EXPECT_EQ(GetNodeText(doc.DocumentElement()), "first");
}

TEST(GetNodeTextTest, TextAfterChildElementOrCommentIsNotIncluded) {
  XmlDocument doc = Loaded("<r><a><b>inner</b>after</a><c><!--note-->tail</c></r>");
  EXPECT_EQ(GetNodeText(doc.SelectSingleNode("/r/a")), "after");
  EXPECT_EQ(GetNodeText(doc.SelectSingleNode("/r/c")), "tail");
}

TEST(GetNodeTextTest, CdataIsNotAText) {
  XmlDocument doc = Loaded("<a><![CDATA[data]]></a>");
  EXPECT_EQ(GetNodeText(doc.DocumentElement()), "");
}

TEST(GetNodeTextTest, NullOrEmptyNodeGivesEmptyText) {
  EXPECT_EQ(GetNodeText(XmlNode()), "");
  XmlDocument doc = Loaded("<a/>");
  EXPECT_EQ(GetNodeText(doc.DocumentElement()), "");
}

TEST(GetNodeAttributeOrTextTest, EmptyElementWithoutAttributeGivesEmptyDespiteDefault) {
  XmlDocument doc = Loaded("<a/>");
  EXPECT_EQ(GetNodeAttributeOrText(doc.DocumentElement(), "value", "default"), "");
}

TEST(GetNodeAttributeOrTextTest, AttributeWinsOverText) {
  XmlDocument doc = Loaded("<a value=\"attr\">text</a>");
  EXPECT_EQ(GetNodeAttributeOrText(doc.DocumentElement(), "value", "d"), "attr");
}

TEST(GetNodeAttributeOrTextTest, TextWhenNoAttribute) {
  XmlDocument doc = Loaded("<a>text</a>");
  EXPECT_EQ(GetNodeAttributeOrText(doc.DocumentElement(), "value", "d"), "text");
}

TEST(GetNodeAttributeOrTextTest, NullElementGivesDefault) {
  EXPECT_EQ(GetNodeAttributeOrText(XmlNode(), "value", "d"), "d");
}

TEST(RemoveSelectedNodesTest, NoMatchReturnsTrueAndChangesNothing) {
  XmlDocument doc = Loaded("<a><b/><c/></a>");
  EXPECT_TRUE(RemoveSelectedNodes(doc.AsNode(), "/a/none"));
  EXPECT_EQ(doc.Xml(), "<a><b/><c/></a>");
}

TEST(RemoveSelectedNodesTest, RemovesEverySelectedNodeFromItsParent) {
  XmlDocument doc = Loaded("<a><b/><c><b/><b><b/></b></c><d/></a>");
  EXPECT_TRUE(RemoveSelectedNodes(doc.AsNode(), "//b"));
  EXPECT_EQ(doc.Xml(), "<a><c/><d/></a>");
}

TEST(RemoveSelectedNodesTest, ExpressionIsTrimmedOfBlanks) {
  XmlDocument doc = Loaded("<a><b/><c/></a>");
  EXPECT_TRUE(RemoveSelectedNodes(doc.AsNode(), "   /a/b   "));
  EXPECT_EQ(doc.Xml(), "<a><c/></a>");
}

TEST(RemoveSelectedNodesTest, RelativeToAContextNode) {
  XmlDocument doc = Loaded("<a><s id=\"1\"><o/><o/></s><s id=\"2\"><o/></s></a>");
  XmlNode first = doc.SelectSingleNode("/a/s[@id='1']");
  EXPECT_TRUE(RemoveSelectedNodes(first, "o"));
  EXPECT_EQ(doc.Xml(), "<a><s id=\"1\"/><s id=\"2\"><o/></s></a>");
}

TEST(RemoveSelectedNodesTest, MalformedExpressionReachesTheCaller) {
  XmlDocument doc = Loaded("<a/>");
  EXPECT_THROW(RemoveSelectedNodes(doc.AsNode(), "/a[@id='x]"), AutomationError);
}

}  // namespace
}  // namespace veld
