#include "datasets/dataset_store.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "xml/xml_internal.h"
#include "xml/xml_xpath.h"

#include "support/testing.h"

namespace veld::datasets_internal {
namespace {

namespace xi = xml_internal;

const char* const kDocuments[] = {
    "<dataset><data><row/><row index=\"0\"/><row index=\"00\"/><row index=\" 0\"/></data>"
    "<data><row/></data></dataset>",
    "<data><row><col name=\"a\"/><data><row a=\"1\"><col/></row></data></row><x><data/><data>"
    "<row/></data></x></data>",
    "<a xmlns:p=\"urn:p\"><p:data><row/></p:data><data><p:row/><row p:index=\"0\"/></data></a>",
    "<a xmlns=\"urn:d\"><data><row/></data></a>",
    "<row><col name=\"a\"><row><col name=\"b\"/></row></col><row><col name=\"c\"/></row><col/>"
    "</row>",
    "<data><row><col/><col><row><col/></row></col></row></data>",
};

std::vector<xmlNodePtr> ByXPath(XmlDocument& doc, const std::string& xpath) {
  return xi::SelectRaw(reinterpret_cast<xmlNodePtr>(xi::LibxmlDoc(doc)), xpath);
}

TEST(DatasetStoreTest, MarkedRowWalkSelectsWhatTheXPathSelects) {
  for (const char* text : kDocuments) {
    XmlDocument doc = testing::Loaded(text);
    std::vector<xmlNodePtr> walked;
    bool nested = false;
    CollectMarkedRows(xi::LibxmlDoc(doc)->children, false, walked, nested);
    EXPECT_EQ(walked, ByXPath(doc, "//data[1]/row[@index!='0' or not (@index)]")) << text;
  }
}

TEST(DatasetStoreTest, FirstRowColWalkSelectsWhatTheXPathSelects) {
  for (const char* text : kDocuments) {
    XmlDocument doc = testing::Loaded(text);
    std::vector<xmlNodePtr> walked;
    bool nested = false;
    CollectFirstRowCols(xi::LibxmlDoc(doc)->children, false, walked, nested);
    EXPECT_EQ(walked, ByXPath(doc, "//row[1]/col")) << text;
  }
}

TEST(DatasetStoreTest, NestedSelectionIsReported) {
  XmlDocument doc = testing::Loaded(kDocuments[4]);
  std::vector<xmlNodePtr> walked;
  bool nested = false;
  CollectFirstRowCols(xi::LibxmlDoc(doc)->children, false, walked, nested);
  EXPECT_TRUE(nested);
}

TEST(DatasetStoreTest, PlainLiteralsAreReadBackUnchangedByTheXPathEngine) {
  // Every text judged plain must compile and compare equal to itself.
  std::vector<std::string> texts;
  for (int c = 1; c < 256; ++c) texts.push_back(std::string(1, static_cast<char>(c)));
  texts.push_back("\xC3\xA9t\xC3\xA9");
  texts.push_back("\xE2\x82\xAC");
  texts.push_back("\xF0\x9F\x98\x80");
  texts.push_back("\xEF\xBF\xBE");
  texts.push_back("\xED\xA0\x80");
  texts.push_back("\xC0\xAF");
  texts.push_back("a b\tc");
  for (const std::string& text : texts) {
    if (!IsPlainLiteral(text)) continue;
    XmlDocument doc;
    XmlNode root = doc.CreateElement("r");
    root.SetAttribute("a", text);
    doc.AppendChild(root);
    std::vector<xmlNodePtr> found;
    ASSERT_NO_THROW(found = ByXPath(doc, "/*[@a='" + text + "']"))
        << static_cast<int>(static_cast<unsigned char>(text[0]));
    EXPECT_EQ(found.size(), 1u) << static_cast<int>(static_cast<unsigned char>(text[0]));
  }
  EXPECT_FALSE(IsPlainLiteral("a'b"));
  EXPECT_FALSE(IsPlainLiteral(std::string(1, '\x01')));
  EXPECT_FALSE(IsPlainLiteral("\xC3"));
  EXPECT_TRUE(IsPlainLiteral("ABC 123"));
}

}  // namespace
}  // namespace veld::datasets_internal
