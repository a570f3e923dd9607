#include <cstdio>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <unistd.h>

#include "veld/runtime/automation_error.h"
#include "veld/xml/xml_document.h"

#include "support/testing.h"

namespace veld {
namespace {

using ::veld::testing::Loaded;

std::vector<std::string> Ids(const XmlNodeList& list) {
  std::vector<std::string> ids;
  for (XmlNode node : list) ids.push_back(node.GetAttribute("i"));
  return ids;
}

// Sends what is written to stderr (file descriptor 2) to a file while it
// lives, so a test can see whether anything was printed.
class StderrCapture {
 public:
  StderrCapture() : path_(dir_.File("stderr.txt")) {
    std::fflush(stderr);
    saved_ = dup(2);
    FILE* file = std::fopen(path_.c_str(), "w");
    dup2(fileno(file), 2);
    std::fclose(file);
  }
  ~StderrCapture() { Restore(); }
  std::string Text() {
    Restore();
    return testing::ReadFile(path_);
  }

 private:
  void Restore() {
    if (saved_ < 0) return;
    std::fflush(stderr);
    dup2(saved_, 2);
    close(saved_);
    saved_ = -1;
  }

  testing::TempDir dir_;
  std::string path_;
  int saved_ = -1;
};

TEST(XmlXPathTest, SelectNodesGivesDocumentOrder) {
  XmlDocument doc = Loaded("<r><a i=\"1\"><b i=\"2\"/></a><b i=\"3\"/><a i=\"4\"/></r>");
  EXPECT_EQ(Ids(doc.SelectNodes("//b | //a")), (std::vector<std::string>{"1", "2", "3", "4"}));
  EXPECT_EQ(Ids(doc.SelectNodes("//a/descendant-or-self::* | //b")),
            (std::vector<std::string>{"1", "2", "3", "4"}));
  EXPECT_EQ(Ids(doc.SelectNodes("(//b)[last()]/preceding::*")),
            (std::vector<std::string>{"1", "2"}));
}

TEST(XmlXPathTest, SelectionRelativeToANode) {
  XmlDocument doc = Loaded("<r><a i=\"1\"><b i=\"2\"/></a><b i=\"3\"/></r>");
  XmlNode a = doc.SelectSingleNode("/r/a");
  EXPECT_EQ(Ids(a.SelectNodes("b")), (std::vector<std::string>{"2"}));
  EXPECT_EQ(Ids(a.SelectNodes("//b")), (std::vector<std::string>{"2", "3"}));
  EXPECT_EQ(a.SelectSingleNode("..").NodeName(), "r");
  EXPECT_EQ(a.SelectSingleNode("/").NodeType(), NODE_DOCUMENT);
}

TEST(XmlXPathTest, SelectsAttributesAndText) {
  XmlDocument doc = Loaded("<r><o name=\"n1\" value=\"v1\">first<x/>second</o></r>");
  XmlNodeList attributes = doc.SelectNodes("/r/o/@*");
  ASSERT_EQ(attributes.Length(), 2);
  EXPECT_EQ(attributes.Item(0).NodeType(), NODE_ATTRIBUTE);
  EXPECT_EQ(attributes.Item(0).NodeName(), "name");
  EXPECT_EQ(attributes.Item(1).NodeValue(), "v1");
  XmlNode o = doc.SelectSingleNode("//o");
  XmlNode text = o.SelectSingleNode("text()");
  ASSERT_TRUE(text);
  EXPECT_EQ(text.NodeValue(), "first");
  EXPECT_EQ(o.SelectNodes("text()").Length(), 2);
  EXPECT_EQ(doc.SelectSingleNode("//o[@name='n1']/@value").NodeValue(), "v1");
}

TEST(XmlXPathTest, NoMatchGivesEmptyListAndNullNode) {
  XmlDocument doc = Loaded("<r/>");
  XmlNodeList none = doc.SelectNodes("//missing");
  EXPECT_TRUE(none);
  EXPECT_EQ(none.Length(), 0);
  EXPECT_FALSE(doc.SelectSingleNode("//missing"));
}

TEST(XmlXPathTest, EmptyDocumentSelectsNothing) {
  XmlDocument doc;
  EXPECT_EQ(doc.SelectNodes("//*").Length(), 0);
  EXPECT_FALSE(doc.SelectSingleNode("/r"));
}

TEST(XmlXPathTest, InvalidExpressionRaisesXmlFailureWithAMessage) {
  XmlDocument doc = Loaded("<r/>");
  for (const char* xpath : {"//a[", "///", "", "a b", "unknown-function()", "$undefined", "p:a"}) {
    Err().Clear();
    bool raised = false;
    try {
      doc.SelectNodes(xpath);
    } catch (const AutomationError& error) {
      raised = true;
      EXPECT_EQ(error.Number(), errnum::kXmlFailure) << xpath;
      EXPECT_FALSE(error.Description().empty()) << xpath;
      EXPECT_NE(error.Description().back(), '\n') << xpath;
      EXPECT_EQ(Err().Number(), errnum::kXmlFailure);
      EXPECT_EQ(Err().Description(), error.Description());
    }
    EXPECT_TRUE(raised) << xpath;
  }
}

TEST(XmlXPathTest, InvalidExpressionRaisesTheEnginesMessage) {
  XmlDocument doc = Loaded("<r/>");
  EXPECT_RAISES(doc.SelectNodes("//a["), errnum::kXmlFailure, "Invalid expression");
  EXPECT_RAISES(doc.SelectNodes("unknown-function()"), errnum::kXmlFailure,
                "Unregistered function");
  EXPECT_RAISES(doc.SelectSingleNode("p:a"), errnum::kXmlFailure, "Undefined namespace prefix");
}

TEST(XmlXPathTest, ExpressionThatIsNotANodeSetRaises) {
  XmlDocument doc = Loaded("<r><a/></r>");
  EXPECT_RAISES(doc.SelectNodes("count(//a)"), errnum::kXmlFailure,
                "Expression does not evaluate to a node-set.");
  EXPECT_RAISES(doc.SelectSingleNode("'text'"), errnum::kXmlFailure,
                "Expression does not evaluate to a node-set.");
}

TEST(XmlXPathTest, XPathErrorsAreNotPrinted) {
  XmlDocument doc = Loaded("<r/>");
  StderrCapture capture;
  for (const char* xpath : {"//a[", "bogus(", "unknown-function()", "$v", "p:a", "1 +"}) {
    try {
      doc.SelectNodes(xpath);
    } catch (const AutomationError&) {
    }
  }
  XmlDocument bad;
  EXPECT_FALSE(bad.LoadXml("<a><b></a>"));
  EXPECT_FALSE(bad.LoadXml("<p:a/>"));
  EXPECT_EQ(capture.Text(), "");
}

TEST(XmlXPathTest, SelectionFromARemovedNode) {
  XmlDocument doc = Loaded("<r><a><b i=\"1\"/><b i=\"2\"/></a></r>");
  XmlNode a = doc.DocumentElement().RemoveChild(doc.SelectSingleNode("/r/a"));
  EXPECT_EQ(Ids(a.SelectNodes("b")), (std::vector<std::string>{"1", "2"}));
  EXPECT_EQ(doc.SelectNodes("//b").Length(), 0);
}

}  // namespace
}  // namespace veld
