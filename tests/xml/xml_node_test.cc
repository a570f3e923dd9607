#include "veld/xml/xml_node.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "veld/runtime/automation_error.h"
#include "veld/xml/xml_document.h"

#include "support/testing.h"

namespace veld {
namespace {

using ::veld::testing::Loaded;

std::vector<std::string> Names(const XmlNodeList& list) {
  std::vector<std::string> names;
  for (XmlNode node : list) names.push_back(node.NodeName());
  return names;
}

TEST(XmlNodeTest, NullNodeIsFalseAndRaisesObjectNotSet) {
  XmlNode node;
  EXPECT_TRUE(node.IsNull());
  EXPECT_FALSE(node);
  EXPECT_EQ(node, XmlNode());
  EXPECT_RAISES(node.NodeName(), 91, "Object variable or With block variable not set");
  EXPECT_RAISES(node.Xml(), 91, "Object variable or With block variable not set");
  EXPECT_RAISES(node.SelectNodes("*"), 91, "Object variable or With block variable not set");
}

TEST(XmlNodeTest, NodeNamesTypesAndValues) {
  XmlDocument doc = Loaded("<r a=\"v\"><e>t</e><!--c--><?p d?><![CDATA[x]]></r>");
  XmlNode root = doc.DocumentElement();
  EXPECT_EQ(root.NodeType(), NODE_ELEMENT);
  EXPECT_EQ(root.NodeName(), "r");
  EXPECT_EQ(root.NodeValue(), "");
  EXPECT_EQ(Names(root.ChildNodes()),
            (std::vector<std::string>{"e", "#comment", "p", "#cdata-section"}));
  XmlNode text = root.FirstChild().FirstChild();
  EXPECT_EQ(text.NodeType(), NODE_TEXT);
  EXPECT_EQ(text.NodeName(), "#text");
  EXPECT_EQ(text.NodeValue(), "t");
  EXPECT_EQ(root.ChildNodes().Item(1).NodeValue(), "c");
  EXPECT_EQ(root.ChildNodes().Item(2).NodeValue(), "d");
  XmlNode attr = root.GetAttributeNode("a");
  EXPECT_EQ(attr.NodeType(), NODE_ATTRIBUTE);
  EXPECT_EQ(attr.NodeName(), "a");
  EXPECT_EQ(attr.NodeValue(), "v");
  EXPECT_EQ(attr.Text(), "v");
  EXPECT_EQ(attr.Xml(), "a=\"v\"");
}

TEST(XmlNodeTest, TextConcatenatesTextAndCdataButNotComments) {
  XmlDocument doc = Loaded("<a>x<b>y<c>z</c></b><![CDATA[w]]><!--no--><?pi no?></a>");
  EXPECT_EQ(doc.DocumentElement().Text(), "xyzw");
  EXPECT_EQ(doc.AsNode().Text(), "xyzw");
}

TEST(XmlNodeTest, SetTextReplacesChildren) {
  XmlDocument doc = Loaded("<a>x<b/>y</a>");
  XmlNode a = doc.DocumentElement();
  XmlNode b = a.ChildNodes().Item(1);
  a.SetText("new & <text>");
  EXPECT_EQ(a.Xml(), "<a>new &amp; &lt;text&gt;</a>");
  EXPECT_EQ(b.NodeName(), "b");
  EXPECT_FALSE(b.ParentNode());
  a.SetText("other");
  EXPECT_EQ(a.Xml(), "<a>other</a>");
  a.SetText("");
  EXPECT_EQ(a.Xml(), "<a/>");
}

TEST(XmlNodeTest, SetNodeValueChangesTextAndRefusesElements) {
  XmlDocument doc = Loaded("<a>old</a>");
  XmlNode text = doc.DocumentElement().FirstChild();
  text.SetNodeValue("new");
  EXPECT_EQ(doc.Xml(), "<a>new</a>");
  EXPECT_RAISES(doc.DocumentElement().SetNodeValue("x"), errnum::kXmlFailure,
                "The value of a node of this type cannot be set.");
}

TEST(XmlNodeTest, TextAndAttributeEscaping) {
  XmlDocument doc;
  XmlNode e = doc.AppendChild(doc.CreateElement("e"));
  e.SetAttribute("q", "a\"b<c>&d'");
  e.AppendChild(doc.CreateTextNode("x<y>&\"'"));
  EXPECT_EQ(doc.Xml(), "<e q=\"a&quot;b&lt;c&gt;&amp;d'\">x&lt;y&gt;&amp;\"'</e>");
  XmlDocument again = Loaded(doc.Xml());
  EXPECT_EQ(again.DocumentElement().GetAttribute("q"), "a\"b<c>&d'");
  EXPECT_EQ(again.DocumentElement().Text(), "x<y>&\"'");
}

TEST(XmlNodeTest, AttributesGetSetRemove) {
  XmlDocument doc = Loaded("<a x=\"1\" empty=\"\"/>");
  XmlNode a = doc.DocumentElement();
  EXPECT_EQ(a.GetAttribute("x"), "1");
  EXPECT_TRUE(a.HasAttribute("x"));
  // Absent and empty both read as "", the node tells them apart.
  EXPECT_EQ(a.GetAttribute("missing"), "");
  EXPECT_FALSE(a.GetAttributeNode("missing"));
  EXPECT_FALSE(a.HasAttribute("missing"));
  EXPECT_EQ(a.GetAttribute("empty"), "");
  ASSERT_TRUE(a.GetAttributeNode("empty"));
  EXPECT_EQ(a.GetAttributeNode("empty").NodeValue(), "");

  a.SetAttribute("x", "2");
  a.SetAttribute("y", "3");
  EXPECT_EQ(a.Xml(), "<a x=\"2\" empty=\"\" y=\"3\"/>");
  EXPECT_EQ(Names(a.Attributes()), (std::vector<std::string>{"x", "empty", "y"}));
  a.RemoveAttribute("empty");
  a.RemoveAttribute("never-there");
  EXPECT_EQ(a.Xml(), "<a x=\"2\" y=\"3\"/>");
  EXPECT_RAISES(a.SetAttribute("bad name", "v"), errnum::kXmlFailure,
                "'bad name' is not a valid XML name.");
  EXPECT_RAISES(a.SetAttribute("", "v"), errnum::kXmlFailure, "An XML name cannot be empty.");
}

TEST(XmlNodeTest, AttributeNodeValueCanBeSet) {
  XmlDocument doc = Loaded("<a x=\"1\"/>");
  XmlNode attr = doc.DocumentElement().GetAttributeNode("x");
  attr.SetNodeValue("two");
  EXPECT_EQ(doc.Xml(), "<a x=\"two\"/>");
  EXPECT_EQ(attr.ChildNodes().Length(), 1);
}

TEST(XmlNodeTest, AttributeMethodsOnNonElementsAreNotSupported) {
  XmlDocument doc = Loaded("<a>t</a>");
  XmlNode text = doc.DocumentElement().FirstChild();
  EXPECT_RAISES(text.GetAttribute("x"), 438, "Object doesn't support this property or method");
  EXPECT_RAISES(text.SetAttribute("x", "1"), 438, "Object doesn't support this property or method");
  EXPECT_FALSE(text.Attributes());
  EXPECT_EQ(text.Attributes().Length(), 0);
}

TEST(XmlNodeTest, NamespacedAttributesUseTheirQualifiedName) {
  XmlDocument doc = Loaded("<a xmlns:p=\"urn:p\" p:x=\"1\" xml:lang=\"en\"/>");
  XmlNode a = doc.DocumentElement();
  EXPECT_EQ(a.GetAttribute("p:x"), "1");
  EXPECT_EQ(a.GetAttribute("xml:lang"), "en");
  EXPECT_FALSE(a.GetAttributeNode("x"));
  a.SetAttribute("p:y", "2");
  EXPECT_EQ(a.Xml(), "<a xmlns:p=\"urn:p\" p:x=\"1\" xml:lang=\"en\" p:y=\"2\"/>");
  EXPECT_EQ(a.SelectNodes("@*").Length(), 3);
}

TEST(XmlNodeTest, RelativesAndSiblings) {
  XmlDocument doc = Loaded("<r><a/><b/><c/></r>");
  XmlNode r = doc.DocumentElement();
  XmlNode b = r.ChildNodes().Item(1);
  EXPECT_EQ(b.PreviousSibling().NodeName(), "a");
  EXPECT_EQ(b.NextSibling().NodeName(), "c");
  EXPECT_FALSE(r.LastChild().NextSibling());
  EXPECT_FALSE(r.FirstChild().PreviousSibling());
  EXPECT_EQ(b.ParentNode(), r);
  EXPECT_EQ(r.ParentNode(), doc.AsNode());
  EXPECT_FALSE(doc.AsNode().ParentNode());
  EXPECT_TRUE(r.HasChildNodes());
  EXPECT_FALSE(b.HasChildNodes());
  EXPECT_FALSE(b.FirstChild());
}

TEST(XmlNodeTest, AppendInsertReplaceRemove) {
  XmlDocument doc = Loaded("<r><a/><c/></r>");
  XmlNode r = doc.DocumentElement();
  XmlNode c = r.LastChild();
  XmlNode b = doc.CreateElement("b");
  EXPECT_EQ(r.InsertBefore(b, c), b);
  EXPECT_EQ(doc.Xml(), "<r><a/><b/><c/></r>");
  XmlNode d = r.AppendChild(doc.CreateElement("d"));
  EXPECT_EQ(doc.Xml(), "<r><a/><b/><c/><d/></r>");
  r.InsertBefore(doc.CreateElement("e"), XmlNode());
  EXPECT_EQ(doc.Xml(), "<r><a/><b/><c/><d/><e/></r>");
  XmlNode x = doc.CreateElement("x");
  EXPECT_EQ(r.ReplaceChild(x, c), c);
  EXPECT_EQ(doc.Xml(), "<r><a/><b/><x/><d/><e/></r>");
  EXPECT_FALSE(c.ParentNode());
  EXPECT_EQ(r.RemoveChild(d), d);
  EXPECT_EQ(doc.Xml(), "<r><a/><b/><x/><e/></r>");
  // Moving within the tree takes the node from its old place.
  r.AppendChild(r.FirstChild());
  EXPECT_EQ(doc.Xml(), "<r><b/><x/><e/><a/></r>");
  r.InsertBefore(r.LastChild(), r.FirstChild());
  EXPECT_EQ(doc.Xml(), "<r><a/><b/><x/><e/></r>");
  // Inserting a node before itself changes nothing.
  r.InsertBefore(b, b);
  EXPECT_EQ(doc.Xml(), "<r><a/><b/><x/><e/></r>");
  r.ReplaceChild(b, b);
  EXPECT_EQ(doc.Xml(), "<r><a/><b/><x/><e/></r>");
  // Replacing with a sibling moves the sibling.
  r.ReplaceChild(r.LastChild(), b);
  EXPECT_EQ(doc.Xml(), "<r><a/><e/><x/></r>");
}

TEST(XmlNodeTest, RemoveChildOfAStrangerRaises) {
  XmlDocument doc = Loaded("<r><a><b/></a></r>");
  XmlNode r = doc.DocumentElement();
  XmlNode b = doc.SelectSingleNode("//b");
  EXPECT_RAISES(r.RemoveChild(b), errnum::kXmlFailure, "The node is not a child of this node.");
  EXPECT_RAISES(r.RemoveChild(XmlNode()), errnum::kXmlFailure,
                "The node is not a child of this node.");
  EXPECT_RAISES(r.ReplaceChild(doc.CreateElement("n"), b), errnum::kXmlFailure,
                "The node is not a child of this node.");
  EXPECT_RAISES(r.InsertBefore(doc.CreateElement("n"), b), errnum::kXmlFailure,
                "The reference node is not a child of this node.");
  EXPECT_EQ(doc.Xml(), "<r><a><b/></a></r>");
}

TEST(XmlNodeTest, AppendingAnAncestorOrItselfRaises) {
  XmlDocument doc = Loaded("<r><a><b/></a></r>");
  XmlNode r = doc.DocumentElement();
  XmlNode a = r.FirstChild();
  XmlNode b = a.FirstChild();
  EXPECT_RAISES(b.AppendChild(a), errnum::kXmlFailure, "Inserting the node would create a cycle.");
  EXPECT_RAISES(b.AppendChild(r), errnum::kXmlFailure, "Inserting the node would create a cycle.");
  EXPECT_RAISES(a.AppendChild(a), errnum::kXmlFailure, "Inserting the node would create a cycle.");
  EXPECT_RAISES(a.ReplaceChild(a, b), errnum::kXmlFailure,
                "Inserting the node would create a cycle.");
  EXPECT_EQ(doc.Xml(), "<r><a><b/></a></r>");
}

TEST(XmlNodeTest, InvalidChildrenRaise) {
  XmlDocument doc = Loaded("<r x=\"1\">t</r>");
  XmlNode r = doc.DocumentElement();
  XmlNode text = r.FirstChild();
  EXPECT_RAISES(text.AppendChild(doc.CreateElement("e")), errnum::kXmlFailure,
                "A node of this type cannot have children.");
  EXPECT_RAISES(r.AppendChild(r.GetAttributeNode("x")), errnum::kXmlFailure,
                "A node of this type cannot be inserted here.");
  EXPECT_RAISES(r.AppendChild(doc.AsNode()), errnum::kXmlFailure,
                "A node of this type cannot be inserted here.");
  EXPECT_RAISES(r.AppendChild(XmlNode()), errnum::kXmlFailure, "The node to insert is not set.");
}

TEST(XmlNodeTest, AdjacentTextNodesStaySeparate) {
  XmlDocument doc;
  XmlNode e = doc.AppendChild(doc.CreateElement("e"));
  XmlNode first = e.AppendChild(doc.CreateTextNode("a"));
  XmlNode second = e.AppendChild(doc.CreateTextNode("b"));
  XmlNode zeroth = e.InsertBefore(doc.CreateTextNode("0"), first);
  EXPECT_EQ(e.ChildNodes().Length(), 3);
  EXPECT_EQ(first.NodeValue(), "a");
  EXPECT_EQ(second.NodeValue(), "b");
  EXPECT_EQ(zeroth.NodeValue(), "0");
  EXPECT_EQ(e.Text(), "0ab");
  EXPECT_EQ(doc.Xml(), "<e>0ab</e>");
  EXPECT_EQ(e.SelectNodes("text()").Length(), 3);
}

TEST(XmlNodeTest, AppendingANodeOfAnotherDocumentAppendsACopy) {
  XmlDocument source = Loaded("<s><item id=\"1\">one<sub/></item></s>");
  XmlNode item = source.DocumentElement().FirstChild();
  XmlDocument target = Loaded("<t/>");
  XmlNode copy = target.DocumentElement().AppendChild(item);
  EXPECT_NE(copy, item);
  EXPECT_EQ(target.Xml(), "<t><item id=\"1\">one<sub/></item></t>");
  EXPECT_EQ(source.Xml(), "<s><item id=\"1\">one<sub/></item></s>");
  EXPECT_EQ(item.ParentNode(), source.DocumentElement());
  EXPECT_TRUE(copy.OwnerDocument() == target);
  EXPECT_EQ(copy.ParentNode(), target.DocumentElement());
  // The copy is a node of the target like any other.
  target.DocumentElement().RemoveChild(copy);
  EXPECT_EQ(target.Xml(), "<t/>");
}

TEST(XmlNodeTest, DocumentAppendOfAnotherDocumentsRootCopiesIt) {
  XmlDocument source = Loaded("<s a=\"1\"><x/></s>");
  XmlDocument target;
  XmlNode copy = target.AppendChild(source.DocumentElement());
  EXPECT_EQ(target.Xml(), "<s a=\"1\"><x/></s>");
  EXPECT_EQ(target.DocumentElement(), copy);
  EXPECT_EQ(source.Xml(), "<s a=\"1\"><x/></s>");
}

TEST(XmlNodeTest, CloneNodeDeepAndShallow) {
  XmlDocument doc = Loaded("<r><a x=\"1\"><b>t</b></a></r>");
  XmlNode a = doc.DocumentElement().FirstChild();
  XmlNode deep = a.CloneNode(true);
  XmlNode shallow = a.CloneNode(false);
  EXPECT_EQ(deep.Xml(), "<a x=\"1\"><b>t</b></a>");
  EXPECT_EQ(shallow.Xml(), "<a x=\"1\"/>");
  EXPECT_FALSE(deep.ParentNode());
  EXPECT_TRUE(deep.OwnerDocument() == doc);
  EXPECT_NE(deep, a);
  doc.DocumentElement().AppendChild(deep);
  EXPECT_EQ(doc.Xml(), "<r><a x=\"1\"><b>t</b></a><a x=\"1\"><b>t</b></a></r>");
  XmlNode attr_copy = a.GetAttributeNode("x").CloneNode(true);
  EXPECT_EQ(attr_copy.NodeName(), "x");
  EXPECT_EQ(attr_copy.NodeValue(), "1");
}

TEST(XmlNodeTest, CloneOfTheDocumentNodeIsANewDocument) {
  XmlDocument doc = Loaded("<r><a/></r>");
  XmlNode copy = doc.AsNode().CloneNode(true);
  EXPECT_EQ(copy.NodeType(), NODE_DOCUMENT);
  EXPECT_EQ(copy.Xml(), "<r><a/></r>");
  XmlDocument copy_doc = copy.OwnerDocument();
  EXPECT_FALSE(copy_doc == doc);
  copy_doc.DocumentElement().AppendChild(copy_doc.CreateElement("b"));
  EXPECT_EQ(copy_doc.Xml(), "<r><a/><b/></r>");
  EXPECT_EQ(doc.Xml(), "<r><a/></r>");
}

TEST(XmlNodeTest, NamespacesSurviveMovesAndRemoval) {
  XmlDocument doc =
      Loaded("<r xmlns=\"urn:d\" xmlns:p=\"urn:p\"><p:a p:x=\"1\"><b/></p:a><c/></r>");
  XmlNode r = doc.DocumentElement();
  XmlNode a = r.FirstChild();
  XmlNode removed = r.RemoveChild(a);
  EXPECT_EQ(removed.NodeName(), "p:a");
  std::string removed_xml = removed.Xml();
  XmlDocument reparsed = Loaded(removed_xml);
  EXPECT_EQ(reparsed.DocumentElement().NodeName(), "p:a");
  EXPECT_EQ(reparsed.SelectNodes("//*").Length(), 2);
  // Put back elsewhere: still the same names, and the text parses again.
  r.LastChild().AppendChild(removed);
  EXPECT_EQ(removed.NodeName(), "p:a");
  EXPECT_TRUE(Loaded(doc.Xml()).DocumentElement());
}

TEST(XmlNodeTest, OwnerDocumentOfANodeOfAReplacedDocument) {
  XmlDocument doc = Loaded("<old/>");
  XmlNode old_root = doc.DocumentElement();
  EXPECT_TRUE(doc.LoadXml("<new/>"));
  XmlDocument owner = old_root.OwnerDocument();
  EXPECT_FALSE(owner == doc);
  EXPECT_EQ(owner.Xml(), "<old/>");
  EXPECT_EQ(doc.Xml(), "<new/>");
}

TEST(XmlNodeListTest, UnsetListIsEmpty) {
  XmlNodeList list;
  EXPECT_TRUE(list.IsNull());
  EXPECT_FALSE(list);
  EXPECT_EQ(list.Length(), 0);
  EXPECT_FALSE(list.Item(0));
  int count = 0;
  for (XmlNode node : list) {
    (void)node;
    ++count;
  }
  EXPECT_EQ(count, 0);
}

TEST(XmlNodeListTest, ItemOutOfRangeIsNull) {
  XmlDocument doc = Loaded("<r><a/><b/></r>");
  XmlNodeList children = doc.DocumentElement().ChildNodes();
  EXPECT_TRUE(children);
  EXPECT_EQ(children.Length(), 2);
  EXPECT_EQ(children.Item(0).NodeName(), "a");
  EXPECT_EQ(children.Item(1).NodeName(), "b");
  EXPECT_FALSE(children.Item(2));
  EXPECT_FALSE(children.Item(-1));
}

TEST(XmlNodeListTest, ListIsASnapshot) {
  XmlDocument doc = Loaded("<r><a/><b/></r>");
  XmlNode r = doc.DocumentElement();
  XmlNodeList children = r.ChildNodes();
  r.AppendChild(doc.CreateElement("c"));
  r.RemoveChild(r.FirstChild());
  EXPECT_EQ(Names(children), (std::vector<std::string>{"a", "b"}));
  XmlNodeList copy = children;
  EXPECT_EQ(copy.Length(), 2);
}

TEST(XmlNodeListTest, ChildNodesOfALeafIsAnEmptySetList) {
  XmlDocument doc = Loaded("<r/>");
  XmlNodeList children = doc.DocumentElement().ChildNodes();
  EXPECT_TRUE(children);
  EXPECT_EQ(children.Length(), 0);
}

}  // namespace
}  // namespace veld
