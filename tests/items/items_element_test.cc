#include "items/items_element.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "veld/items/kvo_general_items.h"
#include "xml/xml_internal.h"

#include "support/testing.h"

namespace veld {
namespace {

// The items as text, to compare two collections field by field.
std::string Dump(const KvoGeneralItems& items) {
  std::string text;
  for (int32_t i = 1; i <= items.RootTagCount(); ++i) {
    text += "@" + items.RootTagItem(i)->Name + "=" + items.RootTagItem(i)->Value + ";";
  }
  for (const auto& item : items) {
    text += item->Name + "|" + item->Value + "|" + item->TypeString + "|" + item->ExtraValue + ";";
  }
  return text;
}

// Each element of the document below the root, parsed in place and from its
// own text, gives the same collection and the same result.
TEST(ItemsElementTest, ParsingAnElementInPlaceEqualsParsingItsText) {
  const XmlDocument doc = testing::Loaded(
      "<dataset><data id='d'>"
      "<row id='r1'><col name='a' value='1'/><col name=' b '>  text </col><x name='c'/></row>"
      "<row id='r2'><!-- note --><col name='a'/></row>"
      "<row id='r3'/>"
      "<row id='r4'><col name='A'/><col name='a'/></row>"
      "<row id='r5'>lead<col name='a'/></row>"
      "</data></dataset>");
  const std::vector<std::string> tags = {"", "col", "*", "col[2]", "x|col", "#text"};
  for (const XmlNode& row : doc.SelectNodes("//row")) {
    for (const std::string& tag : tags) {
      for (bool name_as_key : {false, true}) {
        SCOPED_TRACE(row.Xml() + " tag=" + tag + (name_as_key ? " keyed" : ""));
        KvoGeneralItems in_place;
        KvoGeneralItems from_text;
        std::string message_in_place;
        std::string message_from_text;
        const bool parsed_in_place =
            items_internal::ParseElement(in_place, row, name_as_key, tag, &message_in_place);
        const bool parsed_from_text =
            from_text.Parse(row.Xml(), name_as_key, tag, &message_from_text);
        EXPECT_EQ(parsed_in_place, parsed_from_text);
        EXPECT_EQ(message_in_place, message_from_text);
        EXPECT_EQ(Dump(in_place), Dump(from_text));
      }
    }
  }
}

// The names and values Parse of the element's text gives, or why it fails.
std::string NamesAndValuesFromText(const XmlNode& row) {
  KvoGeneralItems items;
  std::string message;
  if (!items.Parse(row.Xml(), false, "", &message)) return "failed: " + message;
  std::string text;
  for (const auto& item : items) text += item->Name + "=" + item->Value + ";";
  return text;
}

std::string Joined(const std::vector<std::string>& names, const std::vector<std::string>& values) {
  std::string text;
  for (size_t i = 0; i < names.size(); ++i) text += names[i] + "=" + values[i] + ";";
  return text;
}

// Read in place, an element gives what Parse of its text gives; elements
// whose content could read differently in place are refused, and their
// callers parse the text instead.
TEST(ItemsElementTest, PlainRowsReadInPlaceAsTheirTextParsesAndOthersAreRefused) {
  struct Case {
    const char* row;
    bool plain;
  };
  const Case cases[] = {
      {"<row><col name='a' value='1'/><col name=' b ' value=' two '/></row>", true},
      {"<row><col name='a'>  text </col><col name='c' value='x'>ignored</col></row>", true},
      {"<row><col name='a'/><x name='b' value='2'/><col name='' value='3'/><col value='4'/></row>",
       true},
      {"<row><!-- note --><col name='a' value='1'/></row>", true},
      {"<row>lead<col name='a' value='1'/></row>", true},
      {"<row><![CDATA[c]]><col name='a' value='1'/></row>", true},
      {"<row><col name='a'><![CDATA[cdata]]>text</col></row>", true},
      {"<row/>", true},
      {"<row guid='G' other='o'><col name='a' value='&amp;&lt;&#65;'/></row>", true},
      {"<row><col name='A' value='1'/><col name='a' value='2'/></row>", true},
      {"<row><col name='a' value='1'><deep><deeper x='1'/></deep></col></row>", true},
      {"<row><col name='\xC3\xA9' value='\xE2\x82\xAC'/></row>", true},
      {"<row><col name='a' value='1'/><?pi data?></row>", true},
      {"<row><?pi data?><col name='a' value='1'/></row>", false},
      // A name the parser takes but the name check of Parse does not.
      {"<row><x\xEF\xBB\xBFy name='a' value='1'/></row>", false},
      {"<row xmlns:p='urn:p'><col name='a' value='1'/></row>", false},
      {"<row><col p:extra='1' name='a' value='1' xmlns:p='urn:p'/></row>", false},
      {"<row><p:col name='a' value='1' xmlns:p='urn:p'/></row>", false},
      {"<row xmlns='urn:d'><col name='a' value='1'/></row>", false},
      {"<row><col xml:lang='en' name='a' value='1'/></row>", false},
      {"<row xml:space='preserve'> <col name='a' value='1'/></row>", false},
      {"<row><col name='a' xml:space='preserve'> <b/>x</col></row>", false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.row);
    const XmlDocument doc = testing::Loaded(std::string("<data>") + c.row + "</data>");
    const XmlNode row = doc.DocumentElement().FirstChild();
    std::vector<std::string> names = {"stale", "stale"};
    std::vector<std::string> values = {"stale", "stale"};
    const bool read =
        items_internal::ReadPlainNamesAndValues(xml_internal::LibxmlNode(row), names, values);
    EXPECT_EQ(read, c.plain);
    if (read) {
      EXPECT_EQ(Joined(names, values), NamesAndValuesFromText(row));
    }
  }
}

// Every row of `text` is refused by the in-place read.
void ExpectRowsRefused(const std::string& text) {
  const XmlDocument doc = testing::Loaded(text);
  for (const XmlNode& row : doc.SelectNodes("/data/row")) {
    SCOPED_TRACE(row.Xml());
    std::vector<std::string> names;
    std::vector<std::string> values;
    EXPECT_FALSE(
        items_internal::ReadPlainNamesAndValues(xml_internal::LibxmlNode(row), names, values));
  }
}

// Entity references stay nodes of their own when the document declares the
// entity; such content is refused too.
TEST(ItemsElementTest, EntityReferencesAreRefused) {
  ExpectRowsRefused(
      "<!DOCTYPE data [<!ENTITY e 'entity text'>]>"
      "<data><row><col name='a' value='x&e;'/></row><row><col name='a'>&e;</col></row></data>");
}

// Whitespace-only text kept under xml:space="preserve" would be dropped by a
// fresh parse of the row's text, so such a row is refused.
TEST(ItemsElementTest, WhitespaceOnlyTextIsRefused) {
  ExpectRowsRefused(
      "<data xml:space='preserve'><row> <col name='a' value='1'/></row>"
      "<row><col name='a'> <b/>x</col></row></data>");
}

TEST(ItemsElementTest, FailureEmptiesTheCollection) {
  const XmlDocument doc = testing::Loaded("<r><col name='a'/><col name='A'/></r>");
  KvoGeneralItems items;
  items.Add("old");
  std::string message;
  EXPECT_FALSE(items_internal::ParseElement(items, doc.DocumentElement(), true, "", &message));
  EXPECT_EQ(message, "This key is already associated with an element of this collection");
  EXPECT_EQ(items.Count(), 0);
}

}  // namespace
}  // namespace veld
