#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "veld/items/kvo_general_items.h"

#include "support/testing.h"

namespace veld {
namespace {

using testing::ReadFile;
using testing::TempDir;

std::string Saved(const KvoGeneralItems& items, const std::string& root = "group",
                  const std::string& tag = "option") {
  std::string xml;
  std::string message;
  EXPECT_TRUE(items.Save(xml, root, tag, &message)) << message;
  return xml;
}

std::vector<std::string> Names(const KvoGeneralItems& items) {
  std::vector<std::string> names;
  for (const auto& item : items) names.push_back(item->Name);
  return names;
}

// --- Save ---

TEST(KvoGeneralItemsSaveTest, EmptyCollectionSavesLoneGroupElement) {
  KvoGeneralItems items;
  EXPECT_EQ(Saved(items), "<group/>");
}

TEST(KvoGeneralItemsSaveTest, TypeAndExtraAreWrittenOnlyWhenNotEmpty) {
  KvoGeneralItems items;
  items.SetRootTag("id", "general");
  items.Add("width", "120");
  items.Add("mode", "2", "int", "x");
  items.Add("blank", "");
  EXPECT_EQ(Saved(items),
            "<group id=\"general\"><option name=\"width\" value=\"120\"/>"
            "<option name=\"mode\" value=\"2\" type=\"int\" extra=\"x\"/>"
            "<option name=\"blank\" value=\"\"/></group>");
}

TEST(KvoGeneralItemsSaveTest, EmptyNameIsStillWritten) {
  KvoGeneralItems items;
  items.Add("", "v", "", "e");
  EXPECT_EQ(Saved(items), "<group><option name=\"\" value=\"v\" extra=\"e\"/></group>");
}

TEST(KvoGeneralItemsSaveTest, RootKeyAndItemTagNameTheElements) {
  KvoGeneralItems items;
  items.Add("a", "1");
  EXPECT_EQ(Saved(items, "row", "col"), "<row><col name=\"a\" value=\"1\"/></row>");
}

TEST(KvoGeneralItemsSaveTest, SpecialCharactersAreEscapedByTheSerialiser) {
  KvoGeneralItems items;
  items.SetRootTag("t", "<&>\"'");
  items.Add("a&b", "x<y>\"z'");
  const std::string xml = Saved(items);
  KvoGeneralItems back;
  ASSERT_TRUE(back.Parse(xml));
  EXPECT_EQ(back.Item(1)->Name, "a&b");
  EXPECT_EQ(back.Item(1)->Value, "x<y>\"z'");
  std::string tag;
  back.GetRootTag("t", &tag);
  EXPECT_EQ(tag, "<&>\"'");
}

TEST(KvoGeneralItemsSaveTest, InvalidRootKeyFailsWithTheXmlLayersMessage) {
  KvoGeneralItems items;
  std::string xml = "unchanged";
  std::string message;
  EXPECT_FALSE(items.Save(xml, "bad name", "option", &message));
  EXPECT_EQ(message, "'bad name' is not a valid XML name.");
  EXPECT_EQ(xml, "unchanged");
  EXPECT_FALSE(items.Save(xml, "", "option", &message));
  EXPECT_EQ(message, "An XML name cannot be empty.");
}

TEST(KvoGeneralItemsSaveTest, InvalidItemTagFailsOnlyWhenThereAreItems) {
  KvoGeneralItems items;
  std::string xml;
  std::string message;
  EXPECT_TRUE(items.Save(xml, "group", "1bad", &message));
  items.Add("a");
  EXPECT_FALSE(items.Save(xml, "group", "1bad", &message));
  EXPECT_EQ(message, "'1bad' is not a valid XML name.");
  EXPECT_EQ(items.Count(), 1);
}

TEST(KvoGeneralItemsSaveTest, RootTagWithBlankNameFailsTheSave) {
  KvoGeneralItems items;
  items.SetRootTag("  ", "v");
  std::string xml;
  std::string message;
  EXPECT_FALSE(items.Save(xml, "group", "option", &message));
  EXPECT_EQ(message, "An XML name cannot be empty.");
  EXPECT_EQ(items.RootTagCount(), 1);
}

TEST(KvoGeneralItemsSaveTest, FailureWithoutMessageArgumentReturnsFalse) {
  KvoGeneralItems items;
  std::string xml;
  EXPECT_FALSE(items.Save(xml, "<"));
  EXPECT_EQ(Err().Number(), 0);
}

TEST(KvoGeneralItemsSaveTest, SaveFileWritesTheSameTextWithoutDeclaration) {
  TempDir dir;
  KvoGeneralItems items;
  items.SetRootTag("id", "ü");
  items.Add("név", "érték");
  ASSERT_TRUE(items.SaveFile(dir.File("items.xml")));
  EXPECT_EQ(ReadFile(dir.File("items.xml")), Saved(items));
}

TEST(KvoGeneralItemsSaveTest, SaveFileToMissingDirectoryFails) {
  TempDir dir;
  KvoGeneralItems items;
  std::string message;
  EXPECT_FALSE(items.SaveFile(dir.File("no/such/dir/items.xml"), "group", "option", &message));
  EXPECT_FALSE(message.empty());
}

// --- Parse ---

TEST(KvoGeneralItemsParseTest, BlankTextGivesEmptyCollection) {
  KvoGeneralItems items;
  items.Add("a");
  items.SetRootTag("t", "v");
  std::string message = "untouched";
  EXPECT_TRUE(items.Parse("   ", false, "", &message));
  EXPECT_EQ(items.Count(), 0);
  EXPECT_EQ(items.RootTagCount(), 0);
  EXPECT_EQ(message, "untouched");
}

TEST(KvoGeneralItemsParseTest, TextThatIsNotXmlFailsAndLeavesCollectionEmpty) {
  KvoGeneralItems items;
  items.Add("a");
  items.SetRootTag("t", "v");
  std::string message;
  EXPECT_FALSE(items.Parse("not <xml", false, "", &message));
  EXPECT_EQ(message, "Failed to load items Xml.");
  EXPECT_EQ(items.Count(), 0);
  EXPECT_EQ(items.RootTagCount(), 0);
  EXPECT_EQ(Err().Number(), 0);
}

TEST(KvoGeneralItemsParseTest, FirstChildElementChoosesTheItemTag) {
  KvoGeneralItems items;
  ASSERT_TRUE(items.Parse(
      "<group><option name='a' value='1'/><note name='n' value='x'/><option name='b'/></group>"));
  EXPECT_EQ(Names(items), (std::vector<std::string>{"a", "b"}));
  ASSERT_TRUE(items.Parse(
      "<group><note name='n' value='x'/><option name='a' value='1'/><note name='m'/></group>"));
  EXPECT_EQ(Names(items), (std::vector<std::string>{"n", "m"}));
}

TEST(KvoGeneralItemsParseTest, GivenItemTagIsUsedUnchanged) {
  KvoGeneralItems items;
  ASSERT_TRUE(items.Parse("<group><option name='a'/><note name='n'/></group>", false, "note"));
  EXPECT_EQ(Names(items), (std::vector<std::string>{"n"}));
  ASSERT_TRUE(items.Parse("<group><option name='a'/><note name='n'/></group>", false, "*"));
  EXPECT_EQ(Names(items), (std::vector<std::string>{"a", "n"}));
  ASSERT_TRUE(items.Parse("<group><option name='a'/><note name='n'/></group>", false, "Option"));
  EXPECT_EQ(items.Count(), 0);
}

TEST(KvoGeneralItemsParseTest, LeadingCommentSelectsNoItemsButKeepsRootTags) {
  KvoGeneralItems items;
  std::string message;
  EXPECT_TRUE(items.Parse("<group id='g'><!-- c --><option name='a' value='1'/></group>", false, "",
                          &message));
  EXPECT_EQ(items.Count(), 0);
  EXPECT_EQ(items.GetRootTag("id"), 1);
}

TEST(KvoGeneralItemsParseTest, LeadingTextOrCdataSelectsNoItems) {
  KvoGeneralItems items;
  EXPECT_TRUE(items.Parse("<group id='g'>text<option name='a' value='1'/></group>"));
  EXPECT_EQ(items.Count(), 0);
  EXPECT_EQ(items.RootTagCount(), 1);
  EXPECT_TRUE(items.Parse("<group><![CDATA[x]]><option name='a'/></group>"));
  EXPECT_EQ(items.Count(), 0);
}

TEST(KvoGeneralItemsParseTest, LeadingWhitespaceKeptByXmlSpaceSelectsNoItems) {
  KvoGeneralItems items;
  EXPECT_TRUE(items.Parse("<group xml:space='preserve'>\n  <option name='a'/></group>"));
  EXPECT_EQ(items.Count(), 0);
  EXPECT_EQ(items.RootTagItem(1)->Name, "xml:space");
}

TEST(KvoGeneralItemsParseTest, LeadingWhitespaceDroppedOnLoadDoesNotMatter) {
  KvoGeneralItems items;
  EXPECT_TRUE(items.Parse("<group>\n  <option name='a'/>\n  <option name='b'/>\n</group>"));
  EXPECT_EQ(Names(items), (std::vector<std::string>{"a", "b"}));
}

TEST(KvoGeneralItemsParseTest, LeadingProcessingInstructionNamesAnElementTag) {
  // The node name of a processing instruction is its target, which is also a
  // valid element name.
  KvoGeneralItems items;
  EXPECT_TRUE(items.Parse("<group><?opt x?><option name='a'/><opt name='b'/></group>"));
  EXPECT_EQ(Names(items), (std::vector<std::string>{"b"}));
}

TEST(KvoGeneralItemsParseTest, RootWithoutChildrenGivesRootTagsOnly) {
  KvoGeneralItems items;
  EXPECT_TRUE(items.Parse("<anything a='1' b='2'/>"));
  EXPECT_EQ(items.Count(), 0);
  EXPECT_EQ(items.RootTagCount(), 2);
  EXPECT_EQ(items.RootTagItem(2)->Value, "2");
}

TEST(KvoGeneralItemsParseTest, ElementsWithoutNonEmptyNameOrDeeperAreSkipped) {
  KvoGeneralItems items;
  ASSERT_TRUE(
      items.Parse("<group><option name='a'/><option value='1'/><option name=''/>"
                  "<option name=' '/><wrap><option name='deep'/></wrap><option name='b'/></group>",
                  false, "option"));
  EXPECT_EQ(Names(items), (std::vector<std::string>{"a", "", "b"}));
}

TEST(KvoGeneralItemsParseTest, TextFallbackAppliesToValueTypeAndExtra) {
  KvoGeneralItems items;
  ASSERT_TRUE(items.Parse("<group><option name='greet'>  hi  </option></group>"));
  ASSERT_EQ(items.Count(), 1);
  auto item = items.Item(1);
  EXPECT_EQ(item->Value, "hi");
  EXPECT_EQ(item->TypeString, "hi");
  EXPECT_EQ(item->ExtraValue, "hi");
}

TEST(KvoGeneralItemsParseTest, AttributesWinOverTextAndEmptyAttributesStayEmpty) {
  KvoGeneralItems items;
  ASSERT_TRUE(
      items.Parse("<group><option name=' n ' value='' type=' t '>text<b/>more</option></group>"));
  auto item = items.Item(1);
  EXPECT_EQ(item->Name, "n");
  EXPECT_EQ(item->Value, "");
  EXPECT_EQ(item->TypeString, "t");
  EXPECT_EQ(item->ExtraValue, "text");
}

TEST(KvoGeneralItemsParseTest, OnlyFirstTextChildCounts) {
  KvoGeneralItems items;
  ASSERT_TRUE(items.Parse("<group><option name='a'><b/>after</option></group>"));
  EXPECT_EQ(items.Item(1)->Value, "after");
  ASSERT_TRUE(items.Parse("<group><option name='a'><![CDATA[c]]></option></group>"));
  EXPECT_EQ(items.Item(1)->Value, "");
}

TEST(KvoGeneralItemsParseTest, NamesAsKeysRejectsDuplicatesIgnoringCase) {
  KvoGeneralItems items;
  const std::string xml = "<group t='v'><option name='A'/><option name=' a'/></group>";
  std::string message;
  EXPECT_FALSE(items.Parse(xml, true, "", &message));
  EXPECT_EQ(message, "This key is already associated with an element of this collection");
  EXPECT_EQ(items.Count(), 0);
  EXPECT_EQ(items.RootTagCount(), 0);
  EXPECT_TRUE(items.Parse(xml, false, "", &message));
  EXPECT_EQ(items.Count(), 2);
}

TEST(KvoGeneralItemsParseTest, NamesAsKeysMakesItemsReachableByKey) {
  KvoGeneralItems items;
  ASSERT_TRUE(items.Parse("<group><option name=' Width ' value='3'/></group>", true));
  EXPECT_EQ(items.Item("WIDTH")->Value, "3");
}

TEST(KvoGeneralItemsParseTest, ItemTagThatIsNotAnXPathNameFailsWithXPathError) {
  KvoGeneralItems items;
  std::string message;
  EXPECT_FALSE(items.Parse("<group><option name='a'/></group>", false, "[", &message));
  EXPECT_FALSE(message.empty());
  EXPECT_EQ(items.Count(), 0);
}

TEST(KvoGeneralItemsParseTest, PrefixedFirstChildUsesXPathAndFailsOnUnboundPrefix) {
  KvoGeneralItems items;
  std::string message;
  EXPECT_FALSE(
      items.Parse("<group xmlns:p='urn:p'><p:option name='a'/></group>", false, "", &message));
  EXPECT_FALSE(message.empty());
  EXPECT_EQ(items.Count(), 0);
}

TEST(KvoGeneralItemsParseTest, NamespaceDeclarationsBecomeRootTagsFirst) {
  KvoGeneralItems items;
  ASSERT_TRUE(items.Parse("<g a='1' xmlns:p='urn:p' p:x='2'><option name='n'/></g>"));
  ASSERT_EQ(items.RootTagCount(), 3);
  EXPECT_EQ(items.RootTagItem(1)->Name, "xmlns:p");
  EXPECT_EQ(items.RootTagItem(1)->Value, "urn:p");
  EXPECT_EQ(items.RootTagItem(2)->Name, "a");
  EXPECT_EQ(items.RootTagItem(3)->Name, "p:x");
  std::string xml = Saved(items);
  KvoGeneralItems back;
  ASSERT_TRUE(back.Parse(xml)) << xml;
  EXPECT_EQ(back.RootTagCount(), 3);
  EXPECT_EQ(back.Count(), 1);
}

TEST(KvoGeneralItemsSaveTest, NamespaceRootTagsAreSavedAsDeclarations) {
  KvoGeneralItems items;
  ASSERT_TRUE(items.Parse("<g xmlns:p='u&amp;v' p:x=''/>"));
  const std::string xml = Saved(items);
  KvoGeneralItems back;
  ASSERT_TRUE(back.Parse(xml)) << xml;
  std::string uri;
  std::string first_uri;
  EXPECT_EQ(back.GetRootTag("xmlns:p", &uri), 1);
  items.GetRootTag("xmlns:p", &first_uri);
  EXPECT_EQ(uri, first_uri);
  EXPECT_EQ(back.RootTagCount(), 2);
}

TEST(KvoGeneralItemsSaveTest, RootTagThatCannotDeclareANamespaceFailsTheSave) {
  KvoGeneralItems items;
  items.SetRootTag("xmlns:p", "");
  std::string xml;
  std::string message;
  EXPECT_FALSE(items.Save(xml, "group", "option", &message));
  EXPECT_EQ(message, "'xmlns:p' cannot declare the namespace ''.");
  items.Reset();
  items.SetRootTag("xmlns:1p", "urn:x");
  EXPECT_FALSE(items.Save(xml, "group", "option", &message));
  EXPECT_EQ(message, "'xmlns:1p' cannot declare the namespace 'urn:x'.");
}

TEST(KvoGeneralItemsParseTest, ElementsInDefaultNamespaceAreNotSelectedByName) {
  KvoGeneralItems items;
  EXPECT_TRUE(items.Parse("<group xmlns='urn:x'><option name='a'/></group>"));
  EXPECT_EQ(items.Count(), 0);
  EXPECT_TRUE(items.Parse("<group xmlns='urn:x'><option name='a'/></group>", false, "*"));
  EXPECT_EQ(items.Count(), 1);
}

TEST(KvoGeneralItemsParseTest, ItemTagWithPredicateGoesThroughXPath) {
  KvoGeneralItems items;
  EXPECT_TRUE(
      items.Parse("<group><option name='a'/><option name='b'/></group>", false, "option[2]"));
  EXPECT_EQ(Names(items), (std::vector<std::string>{"b"}));
}

TEST(KvoGeneralItemsParseTest, ParseFileReadsTheDocument) {
  TempDir dir;
  const std::string path = dir.Write("items.xml",
                                     "<?xml version='1.0'?>\n<group id='x'>\n<option name='a' "
                                     "value='1'/>\n</group>\n");
  KvoGeneralItems items;
  ASSERT_TRUE(items.ParseFile(path));
  EXPECT_EQ(items.GetItemValueByName("a"), "1");
  EXPECT_EQ(items.RootTagItem("id")->Value, "x");
}

TEST(KvoGeneralItemsParseTest, ParseFileOfMissingOrMalformedFileFails) {
  TempDir dir;
  KvoGeneralItems items;
  items.Add("keep?");
  std::string message;
  EXPECT_FALSE(items.ParseFile(dir.File("missing.xml"), false, "", &message));
  EXPECT_EQ(message, "Failed to load items Xml.");
  EXPECT_EQ(items.Count(), 0);
  items.Add("keep?");
  message.clear();
  EXPECT_FALSE(items.ParseFile(dir.Write("bad.xml", "<group>"), false, "", &message));
  EXPECT_EQ(message, "Failed to load items Xml.");
  EXPECT_EQ(items.Count(), 0);
}

TEST(KvoGeneralItemsParseTest, ParseFileOfBlankFileFails) {
  TempDir dir;
  KvoGeneralItems items;
  std::string message;
  EXPECT_FALSE(items.ParseFile(dir.Write("blank.xml", "   "), false, "", &message));
  EXPECT_EQ(message, "Failed to load items Xml.");
}

// --- Round trips ---

TEST(KvoGeneralItemsRoundTripTest, RootTagsSurviveButKeysDoNot) {
  KvoGeneralItems items;
  items.SetRootTag("id", "general");
  items.SetRootTag("lang", "hu");
  items.Add("a", "1", "", "", "ka");
  std::string xml = Saved(items);
  KvoGeneralItems back;
  ASSERT_TRUE(back.Parse(xml));
  EXPECT_EQ(back.RootTagCount(), 2);
  EXPECT_EQ(back.RootTagItem("lang")->Value, "hu");
  EXPECT_EQ(back.GetItemValue("ka"), "");
  EXPECT_EQ(back.GetItemValue(1), "1");
}

// Text without leading or trailing blanks (those are trimmed when read),
// drawn from the five XML special characters, letters, non-ASCII text and
// inner blanks.
std::string RandomText(std::mt19937& random, bool allow_empty) {
  static const std::vector<std::string> kPieces = {"&", "<", ">", "\"", "'", "a", "Z",  "9",
                                                   "é", "ß", "Ω", "中", "😀", " ", "\t", "x y"};
  std::uniform_int_distribution<int> length(allow_empty ? 0 : 1, 8);
  std::uniform_int_distribution<size_t> piece(0, kPieces.size() - 1);
  std::string text;
  for (int n = length(random); n > 0; --n) text += kPieces[piece(random)];
  while (!text.empty() && text.front() == ' ') text.erase(0, 1);
  while (!text.empty() && text.back() == ' ') text.pop_back();
  if (text.empty() && !allow_empty) text = "n";
  return text;
}

TEST(KvoGeneralItemsRoundTripTest, RandomCollectionsSurviveSaveAndParse) {
  const uint32_t seed = 20261121;
  std::mt19937 random(seed);
  for (int round = 0; round < 200; ++round) {
    SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
    KvoGeneralItems items;
    std::uniform_int_distribution<int> count(0, 12);
    for (int n = count(random); n > 0; --n) {
      items.Add(RandomText(random, false), RandomText(random, true), RandomText(random, true),
                RandomText(random, true));
    }
    static const char* const kTagNames[] = {"id", "lang", "kind", "x-y", "a.b"};
    for (int n = std::uniform_int_distribution<int>(0, 5)(random); n > 0; --n) {
      items.SetRootTag(kTagNames[n - 1], RandomText(random, true));
    }
    std::string xml;
    std::string message;
    ASSERT_TRUE(items.Save(xml, "group", "option", &message)) << message;
    KvoGeneralItems back;
    ASSERT_TRUE(back.Parse(xml, false, "", &message)) << message << "\n" << xml;
    ASSERT_EQ(back.Count(), items.Count()) << xml;
    for (int32_t i = 1; i <= items.Count(); ++i) {
      EXPECT_EQ(back.Item(i)->Name, items.Item(i)->Name);
      EXPECT_EQ(back.Item(i)->Value, items.Item(i)->Value);
      EXPECT_EQ(back.Item(i)->TypeString, items.Item(i)->TypeString);
      EXPECT_EQ(back.Item(i)->ExtraValue, items.Item(i)->ExtraValue);
    }
    ASSERT_EQ(back.RootTagCount(), items.RootTagCount());
    for (int32_t i = 1; i <= items.RootTagCount(); ++i) {
      EXPECT_EQ(back.RootTagItem(i)->Name, items.RootTagItem(i)->Name);
      EXPECT_EQ(back.RootTagItem(i)->Value, items.RootTagItem(i)->Value);
    }
    std::string again;
    ASSERT_TRUE(back.Save(again));
    EXPECT_EQ(again, xml);
  }
}

}  // namespace
}  // namespace veld
