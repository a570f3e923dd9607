// Handles outlive the tree they came from. These tests read and change nodes
// after their document was replaced or they were removed; the sanitizer build
// is what proves there is no use after free and no leak.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "veld/xml/xml_document.h"
#include "xml/document_core.h"
#include "xml/xml_internal.h"

#include "support/testing.h"

namespace veld {
namespace {

using ::veld::testing::Loaded;

size_t OrphanCount(const XmlDocument& doc) {
  return xml_internal::Access::State(doc)->core()->orphan_count();
}

constexpr const char* kSample = "<r a=\"1\"><x k=\"v\">text<y/></x><z/></r>";

TEST(XmlLifetimeTest, NodeStaysUsableAfterDocumentIsReassigned) {
  XmlDocument doc = Loaded(kSample);
  XmlNode x = doc.SelectSingleNode("/r/x");
  XmlNode root = doc.DocumentElement();
  doc = XmlDocument();
  EXPECT_EQ(x.NodeName(), "x");
  EXPECT_EQ(x.Xml(), "<x k=\"v\">text<y/></x>");
  EXPECT_EQ(x.GetAttribute("k"), "v");
  EXPECT_EQ(x.ChildNodes().Length(), 2);
  EXPECT_EQ(x.ParentNode(), root);
  EXPECT_EQ(root.GetAttribute("a"), "1");
  x.SetAttribute("k", "changed");
  x.AppendChild(x.OwnerDocument().CreateElement("n"));
  EXPECT_EQ(root.Xml(), "<r a=\"1\"><x k=\"changed\">text<y/><n/></x><z/></r>");
  EXPECT_EQ(x.SelectNodes("*").Length(), 2);
}

TEST(XmlLifetimeTest, NodeStaysUsableAfterLoadXmlOfOtherText) {
  XmlDocument doc = Loaded(kSample);
  XmlNode y = doc.SelectSingleNode("//y");
  XmlNode text = doc.SelectSingleNode("//x/text()");
  ASSERT_TRUE(doc.LoadXml("<other/>"));
  EXPECT_EQ(y.NodeName(), "y");
  EXPECT_EQ(y.ParentNode().NodeName(), "x");
  EXPECT_EQ(text.NodeValue(), "text");
  EXPECT_EQ(y.SelectSingleNode("/r/z").NodeName(), "z");
  EXPECT_EQ(doc.Xml(), "<other/>");
}

TEST(XmlLifetimeTest, NodeStaysUsableAfterFailedLoad) {
  XmlDocument doc = Loaded(kSample);
  XmlNode x = doc.SelectSingleNode("/r/x");
  EXPECT_FALSE(doc.LoadXml("<broken"));
  EXPECT_EQ(x.Xml(), "<x k=\"v\">text<y/></x>");
}

TEST(XmlLifetimeTest, NodeListStaysUsableAfterReset) {
  XmlDocument doc = Loaded(kSample);
  XmlNodeList all = doc.SelectNodes("//*");
  XmlNodeList attributes = doc.SelectNodes("//@*");
  doc = XmlDocument();
  ASSERT_EQ(all.Length(), 4);
  std::vector<std::string> names;
  for (XmlNode node : all) names.push_back(node.NodeName());
  EXPECT_EQ(names, (std::vector<std::string>{"r", "x", "y", "z"}));
  EXPECT_EQ(all.Item(1).Xml(), "<x k=\"v\">text<y/></x>");
  ASSERT_EQ(attributes.Length(), 2);
  EXPECT_EQ(attributes.Item(1).NodeValue(), "v");
}

TEST(XmlLifetimeTest, RemovedNodeStaysUsableAndCanBeAppendedAgain) {
  XmlDocument doc = Loaded(kSample);
  XmlNode root = doc.DocumentElement();
  XmlNode x = root.RemoveChild(root.FirstChild());
  EXPECT_FALSE(x.ParentNode());
  EXPECT_EQ(doc.Xml(), "<r a=\"1\"><z/></r>");
  EXPECT_EQ(x.Xml(), "<x k=\"v\">text<y/></x>");
  EXPECT_EQ(x.FirstChild().NodeValue(), "text");
  root.AppendChild(x);
  EXPECT_EQ(doc.Xml(), "<r a=\"1\"><z/><x k=\"v\">text<y/></x></r>");
  EXPECT_EQ(x.ParentNode(), root);
}

TEST(XmlLifetimeTest, DescendantOfARemovedNodeKeepsItsAncestors) {
  XmlDocument doc = Loaded(kSample);
  XmlNode y = doc.SelectSingleNode("//y");
  doc.DocumentElement().RemoveChild(doc.SelectSingleNode("/r/x"));
  doc = XmlDocument();
  XmlNode x = y.ParentNode();
  ASSERT_TRUE(x);
  EXPECT_EQ(x.NodeName(), "x");
  EXPECT_FALSE(x.ParentNode());
  EXPECT_EQ(x.Xml(), "<x k=\"v\">text<y/></x>");
}

TEST(XmlLifetimeTest, RemovedNodeOutlivesTheFormerParent) {
  XmlDocument doc = Loaded("<r xmlns:p=\"urn:p\"><p:a p:k=\"1\"><p:b/></p:a></r>");
  XmlNode b = doc.SelectSingleNode("//*[local-name()='b']");
  XmlNode a = b.ParentNode();
  a.RemoveChild(b);
  doc.DocumentElement().RemoveChild(a);
  XmlNode attr = a.GetAttributeNode("p:k");
  a.RemoveAttribute("p:k");
  a = XmlNode();
  doc = XmlDocument();
  // The former parent and root are gone from every handle; b and the
  // attribute still name their namespace.
  EXPECT_EQ(b.NodeName(), "p:b");
  EXPECT_EQ(b.Xml(), "<p:b xmlns:p=\"urn:p\"/>");
  EXPECT_EQ(attr.NodeName(), "p:k");
  EXPECT_EQ(attr.NodeValue(), "1");
}

TEST(XmlLifetimeTest, ReplacedAndClonedNodesStayUsable) {
  XmlDocument doc = Loaded(kSample);
  XmlNode root = doc.DocumentElement();
  XmlNode clone = root.FirstChild().CloneNode(true);
  XmlNode old = root.ReplaceChild(doc.CreateElement("new"), root.FirstChild());
  doc.LoadXml("<gone/>");
  root = XmlNode();
  EXPECT_EQ(old.Xml(), "<x k=\"v\">text<y/></x>");
  EXPECT_EQ(clone.Xml(), "<x k=\"v\">text<y/></x>");
  clone.AppendChild(old);
  EXPECT_EQ(clone.Xml(), "<x k=\"v\">text<y/><x k=\"v\">text<y/></x></x>");
}

TEST(XmlLifetimeTest, HeldTextNodeSurvivesAttributeAndTextChanges) {
  XmlDocument doc = Loaded("<a x=\"1\">t<b/></a>");
  XmlNode a = doc.DocumentElement();
  XmlNode attr_text = a.GetAttributeNode("x").FirstChild();
  XmlNode b = a.LastChild();
  a.SetAttribute("x", "2");
  a.SetText("replaced");
  a.SetAttribute("x", "3");
  EXPECT_EQ(attr_text.NodeValue(), "3");
  EXPECT_EQ(b.NodeName(), "b");
  EXPECT_EQ(doc.Xml(), "<a x=\"3\">replaced</a>");
}

TEST(XmlLifetimeTest, OrphansAreFreedWhenNoHandleIsLeft) {
  XmlDocument doc = Loaded("<r/>");
  {
    XmlNode root = doc.DocumentElement();
    for (int i = 0; i < 100; ++i) {
      root.AppendChild(doc.CreateElement("e"));
      root.RemoveChild(root.FirstChild());
    }
    // The root handle is alive, so the removed nodes are kept.
    EXPECT_EQ(OrphanCount(doc), 100u);
  }
  EXPECT_EQ(OrphanCount(doc), 0u);
  EXPECT_EQ(doc.Xml(), "<r/>");
}

TEST(XmlLifetimeTest, OrphansAreKeptWhileAListHoldsTheirDocument) {
  XmlDocument doc = Loaded("<r><a/><b/></r>");
  XmlNodeList children = doc.DocumentElement().ChildNodes();
  doc.DocumentElement().RemoveChild(children.Item(0));
  EXPECT_EQ(OrphanCount(doc), 1u);
  EXPECT_EQ(children.Item(0).NodeName(), "a");
  children = XmlNodeList();
  EXPECT_EQ(OrphanCount(doc), 0u);
}

TEST(XmlLifetimeTest, UnusedCreatedNodesDoNotAccumulate) {
  XmlDocument doc;
  for (int i = 0; i < 100; ++i) doc.CreateElement("tmp").SetAttribute("i", "1");
  EXPECT_EQ(OrphanCount(doc), 0u);
}

TEST(XmlLifetimeTest, WrappedRawNodeIsAHandleLikeAnyOther) {
  XmlDocument doc = Loaded(kSample);
  xmlNodePtr raw_root = xmlDocGetRootElement(xml_internal::LibxmlDoc(doc));
  XmlNode root = xml_internal::WrapNode(doc, raw_root);
  EXPECT_EQ(root, doc.DocumentElement());
  EXPECT_EQ(xml_internal::LibxmlNode(root), raw_root);
  XmlNode x = xml_internal::WrapNode(root, raw_root->children);
  EXPECT_EQ(x.NodeName(), "x");
  EXPECT_EQ(xml_internal::LibxmlDoc(x), xml_internal::LibxmlDoc(doc));
  xml_internal::OrphanNode(doc, raw_root->children);
  EXPECT_EQ(doc.Xml(), "<r a=\"1\"><z/></r>");
  EXPECT_EQ(x.Xml(), "<x k=\"v\">text<y/></x>");
}

}  // namespace
}  // namespace veld
