#include "items/items_element.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "veld/items/kvo_general_items.h"

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
