#include "veld/xml/xml_document.h"

#include <string>

#include <gtest/gtest.h>

#include "veld/runtime/automation_error.h"
#include "xml/xml_internal.h"

#include "support/testing.h"

namespace veld {
namespace {

using ::veld::testing::Loaded;

using testing::ReadFile;
using testing::TempDir;

TEST(XmlDocumentTest, NewDocumentIsEmpty) {
  XmlDocument doc;
  EXPECT_TRUE(doc.IsEmpty());
  EXPECT_FALSE(doc.HasChildNodes());
  EXPECT_FALSE(doc.DocumentElement());
  EXPECT_EQ(doc.Xml(), "");
  EXPECT_EQ(doc.ParseError().ErrorCode(), 0);
  EXPECT_EQ(doc.AsNode().NodeType(), NODE_DOCUMENT);
  EXPECT_EQ(doc.AsNode().NodeName(), "#document");
}

TEST(XmlDocumentTest, XmlHasNoDeclarationAndNothingBetweenElements) {
  XmlDocument doc = Loaded(
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<a>\n  <b x=\"1\">t</b>\n  <c/>\n</a>\n");
  EXPECT_EQ(doc.Xml(), "<a><b x=\"1\">t</b><c/></a>");
}

TEST(XmlDocumentTest, TopLevelNodesFollowEachOtherWithoutBreaks) {
  XmlDocument doc = Loaded("<?xml version=\"1.0\"?>\n<!--c-->\n<a/>\n<?pi data?>\n");
  EXPECT_EQ(doc.Xml(), "<!--c--><a/><?pi data?>");
  EXPECT_EQ(doc.ChildNodes().Length(), 3);
}

TEST(XmlDocumentTest, RoundTripOfSerialisedTextIsStable) {
  const std::string text =
      "<r a=\"1\" b=\"x &amp; y\"><e>t &lt; u</e><!--note--><?p d?><![CDATA[c<d]]><f/></r>";
  XmlDocument doc = Loaded(text);
  EXPECT_EQ(doc.Xml(), text);
  EXPECT_EQ(Loaded(doc.Xml()).Xml(), text);
}

TEST(XmlDocumentTest, NonAsciiIsWrittenAsUtf8NotAsReferences) {
  XmlDocument doc = Loaded("<a t=\"\xC3\xA9\xE2\x82\xAC\">\xC3\xBC&#x20AC;</a>");
  EXPECT_EQ(doc.Xml(), "<a t=\"\xC3\xA9\xE2\x82\xAC\">\xC3\xBC\xE2\x82\xAC</a>");
  XmlNode root = doc.DocumentElement();
  root.SetAttribute("n", "\xC3\x9F");
  EXPECT_EQ(root.Xml(), "<a t=\"\xC3\xA9\xE2\x82\xAC\" n=\"\xC3\x9F\">\xC3\xBC\xE2\x82\xAC</a>");
}

TEST(XmlDocumentTest, BuiltDocumentWritesNonAsciiAsUtf8) {
  XmlDocument doc;
  XmlNode root = doc.AppendChild(doc.CreateElement("r"));
  root.SetAttribute("v", "\xC3\xA4");
  root.AppendChild(doc.CreateTextNode("\xE6\x97\xA5"));
  EXPECT_EQ(doc.Xml(), "<r v=\"\xC3\xA4\">\xE6\x97\xA5</r>");
}

TEST(XmlDocumentTest, LoadXmlReadsUtf8WhateverTheDeclarationSays) {
  XmlDocument doc = Loaded("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a>\xC3\xA9</a>");
  EXPECT_EQ(doc.DocumentElement().Text(), "\xC3\xA9");
  EXPECT_EQ(doc.Xml(), "<a>\xC3\xA9</a>");
}

TEST(XmlDocumentTest, LoadXmlOfInvalidUtf8Fails) {
  XmlDocument doc;
  EXPECT_FALSE(doc.LoadXml("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a>\xE9</a>"));
  EXPECT_FALSE(doc.ParseError().Reason().empty());
}

TEST(XmlDocumentTest, LoadHonoursTheFileEncodingDeclaration) {
  TempDir dir;
  std::string path = dir.Write(
      "latin1.xml", "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a v=\"\xE9\">\xFC</a>");
  XmlDocument doc;
  ASSERT_TRUE(doc.Load(path)) << doc.ParseError().Reason();
  EXPECT_EQ(doc.DocumentElement().Text(), "\xC3\xBC");
  EXPECT_EQ(doc.DocumentElement().GetAttribute("v"), "\xC3\xA9");
  EXPECT_EQ(doc.Xml(), "<a v=\"\xC3\xA9\">\xC3\xBC</a>");
}

TEST(XmlDocumentTest, LoadReadsUtf8FileWithByteOrderMark) {
  TempDir dir;
  std::string path = dir.Write("bom.xml", "\xEF\xBB\xBF<a>\xC3\xA9</a>");
  XmlDocument doc;
  ASSERT_TRUE(doc.Load(path)) << doc.ParseError().Reason();
  EXPECT_EQ(doc.Xml(), "<a>\xC3\xA9</a>");
}

TEST(XmlDocumentTest, WhitespaceOnlyTextIsDroppedEverywhere) {
  XmlDocument doc = Loaded("<a>  <b>\n\t</b> <c> x </c>\r\n<d/>  </a>");
  EXPECT_EQ(doc.Xml(), "<a><b/><c> x </c><d/></a>");
  XmlNode b = doc.SelectSingleNode("/a/b");
  EXPECT_FALSE(b.HasChildNodes());
  EXPECT_EQ(doc.DocumentElement().ChildNodes().Length(), 3);
}

TEST(XmlDocumentTest, EmptyElementWithBlanksHasNoChildren) {
  XmlDocument doc = Loaded("<a>   </a>");
  EXPECT_FALSE(doc.DocumentElement().HasChildNodes());
  EXPECT_EQ(doc.Xml(), "<a/>");
}

TEST(XmlDocumentTest, MixedContentKeepsTextWithItsSpaces) {
  XmlDocument doc = Loaded("<a> one <b/> two </a>");
  XmlNodeList children = doc.DocumentElement().ChildNodes();
  ASSERT_EQ(children.Length(), 3);
  EXPECT_EQ(children.Item(0).NodeValue(), " one ");
  EXPECT_EQ(children.Item(2).NodeValue(), " two ");
}

TEST(XmlDocumentTest, XmlSpacePreserveKeepsWhitespaceUntilDefault) {
  XmlDocument doc = Loaded(
      "<r><a xml:space=\"preserve\"> <b> </b><c xml:space=\"default\"> <d> </d></c></a><e> "
      "</e></r>");
  EXPECT_EQ(doc.Xml(),
            "<r><a xml:space=\"preserve\"> <b> </b><c xml:space=\"default\"><d/></c></a><e/></r>");
  XmlNode a = doc.SelectSingleNode("/r/a");
  EXPECT_EQ(a.FirstChild().NodeType(), NODE_TEXT);
  EXPECT_EQ(a.FirstChild().NodeValue(), " ");
}

TEST(XmlDocumentTest, XslTextKeepsItsWhitespace) {
  XmlDocument doc = Loaded(
      "<xsl:stylesheet xmlns:xsl=\"http://www.w3.org/1999/XSL/Transform\" version=\"1.0\">\n"
      "  <xsl:template match=\"/\"><xsl:text> </xsl:text></xsl:template>\n"
      "</xsl:stylesheet>");
  EXPECT_NE(doc.Xml().find("<xsl:text> </xsl:text>"), std::string::npos) << doc.Xml();
  EXPECT_EQ(doc.Xml().find("\n"), std::string::npos);
}

TEST(XmlDocumentTest, CdataStaysACdataNode) {
  XmlDocument doc = Loaded("<a><![CDATA[x < y & z]]><![CDATA[ ]]></a>");
  XmlNodeList children = doc.DocumentElement().ChildNodes();
  ASSERT_EQ(children.Length(), 2);
  EXPECT_EQ(children.Item(0).NodeType(), NODE_CDATA_SECTION);
  EXPECT_EQ(children.Item(0).NodeName(), "#cdata-section");
  EXPECT_EQ(children.Item(0).NodeValue(), "x < y & z");
  EXPECT_EQ(children.Item(1).NodeValue(), " ");
  EXPECT_EQ(doc.Xml(), "<a><![CDATA[x < y & z]]><![CDATA[ ]]></a>");
  EXPECT_EQ(doc.DocumentElement().Text(), "x < y & z ");
}

TEST(XmlDocumentTest, InternalEntityStaysAReferenceWithText) {
  XmlDocument doc = Loaded("<!DOCTYPE r [<!ENTITY e \"hello\">]><r>&e; world</r>");
  XmlNode root = doc.DocumentElement();
  XmlNode reference = root.FirstChild();
  EXPECT_EQ(reference.NodeType(), NODE_ENTITY_REFERENCE);
  EXPECT_EQ(reference.NodeName(), "e");
  EXPECT_EQ(reference.Text(), "hello");
  EXPECT_EQ(root.Text(), "hello world");
  EXPECT_EQ(root.Xml(), "<r>&e; world</r>");
  EXPECT_EQ(doc.ChildNodes().Item(0).NodeType(), NODE_DOCUMENT_TYPE);
  EXPECT_EQ(doc.ChildNodes().Item(0).NodeName(), "r");
  EXPECT_NE(doc.Xml().find("<!DOCTYPE r"), std::string::npos);
}

TEST(XmlDocumentTest, FailedLoadXmlEmptiesTheDocumentAndSetsParseError) {
  XmlDocument doc = Loaded("<a><b/></a>");
  EXPECT_FALSE(doc.LoadXml("<a>\n<b></a>"));
  EXPECT_TRUE(doc.IsEmpty());
  EXPECT_EQ(doc.Xml(), "");
  EXPECT_FALSE(doc.DocumentElement());
  const XmlParseError& error = doc.ParseError();
  EXPECT_EQ(error.ErrorCode(), errnum::kXmlFailure);
  EXPECT_FALSE(error.Reason().empty());
  EXPECT_NE(error.Reason().back(), '\n');
  EXPECT_EQ(error.Line(), 2);
  EXPECT_GT(error.LinePos(), 0);
  EXPECT_EQ(error.SrcText(), "<b></a>");
  EXPECT_NE(error.ParserCode(), 0);
}

TEST(XmlDocumentTest, SuccessfulLoadClearsParseError) {
  XmlDocument doc;
  EXPECT_FALSE(doc.LoadXml("not xml"));
  EXPECT_NE(doc.ParseError().ErrorCode(), 0);
  EXPECT_TRUE(doc.LoadXml("<a/>"));
  EXPECT_EQ(doc.ParseError().ErrorCode(), 0);
  EXPECT_EQ(doc.ParseError().Reason(), "");
}

TEST(XmlDocumentTest, EmptyTextFailsToLoad) {
  XmlDocument doc;
  EXPECT_FALSE(doc.LoadXml(""));
  EXPECT_FALSE(doc.ParseError().Reason().empty());
  EXPECT_FALSE(doc.LoadXml("   "));
  EXPECT_FALSE(doc.ParseError().Reason().empty());
}

TEST(XmlDocumentTest, UndeclaredNamespacePrefixFailsToLoad) {
  XmlDocument doc;
  EXPECT_FALSE(doc.LoadXml("<p:a/>"));
  EXPECT_FALSE(doc.ParseError().Reason().empty());
  EXPECT_TRUE(doc.IsEmpty());
}

TEST(XmlDocumentTest, FailedLoadEmptiesTheDocument) {
  TempDir dir;
  std::string path = dir.Write("bad.xml", "<a><b></a>");
  XmlDocument doc = Loaded("<a/>");
  EXPECT_FALSE(doc.Load(path));
  EXPECT_TRUE(doc.IsEmpty());
  EXPECT_EQ(doc.ParseError().ErrorCode(), errnum::kXmlFailure);
  EXPECT_FALSE(doc.ParseError().Reason().empty());
  EXPECT_EQ(doc.ParseError().Url(), path);
}

TEST(XmlDocumentTest, LoadOfMissingFileFailsAndSaysSo) {
  TempDir dir;
  XmlDocument doc = Loaded("<a/>");
  EXPECT_FALSE(doc.Load(dir.File("missing.xml")));
  EXPECT_TRUE(doc.IsEmpty());
  EXPECT_EQ(doc.ParseError().ErrorCode(), -2147024894);
  EXPECT_EQ(doc.ParseError().Reason(), "The system cannot find the file specified.");
  EXPECT_EQ(doc.ParseError().Url(), dir.File("missing.xml"));
}

// A file is read as the parser goes; what it gives, and how it fails, is
// what loading the same bytes as text gives (with the file's own encoding).
TEST(XmlDocumentTest, LoadOfAFileGivesWhatItsBytesGiveAsText) {
  TempDir dir;
  const std::string texts[] = {
      "<a><b x='1'>t</b>\n  <c/></a>",
      "<a>\n<b></a>",
      "<a>" + std::string(200000, 'x') + "</a>",
      "<a>" + std::string(100000, 'x') + "<b></c></a>",
      "",
      "   ",
  };
  int n = 0;
  for (const std::string& text : texts) {
    SCOPED_TRACE(text.substr(0, 40));
    const std::string path = dir.Write("f" + std::to_string(n++) + ".xml", text);
    XmlDocument from_file;
    XmlDocument from_text;
    EXPECT_EQ(from_file.Load(path), from_text.LoadXml(text));
    EXPECT_EQ(from_file.Xml(), from_text.Xml());
    const XmlParseError& a = from_file.ParseError();
    const XmlParseError& b = from_text.ParseError();
    EXPECT_EQ(a.ErrorCode(), b.ErrorCode());
    EXPECT_EQ(a.Reason(), b.Reason());
    EXPECT_EQ(a.Line(), b.Line());
    EXPECT_EQ(a.LinePos(), b.LinePos());
    EXPECT_EQ(a.SrcText(), b.SrcText());
    EXPECT_EQ(a.ParserCode(), b.ParserCode());
  }
}

// The bytes of the file are the document: a compressed file is not unpacked.
TEST(XmlDocumentTest, LoadDoesNotUnpackACompressedFile) {
  TempDir dir;
  // "<a/>" compressed with gzip.
  const std::string gzip(
      "\x1f\x8b\x08\x00\x00\x00\x00\x00\x00\x03\xb3\x49\xd4\xb7\x03\x00"
      "\xd4\x1c\xd1\x01\x04\x00\x00\x00",
      24);
  XmlDocument doc;
  EXPECT_FALSE(doc.Load(dir.Write("a.xml.gz", gzip)));
  EXPECT_EQ(doc.ParseError().ErrorCode(), errnum::kXmlFailure);
}

TEST(XmlDocumentTest, LoadOfDirectoryFailsWithAccessDenied) {
  TempDir dir;
  XmlDocument doc;
  EXPECT_FALSE(doc.Load(dir.Path()));
  EXPECT_EQ(doc.ParseError().ErrorCode(), errnum::kXmlAccessDenied);
  EXPECT_EQ(doc.ParseError().Reason(), "Access is denied.");
}

TEST(XmlDocumentTest, SaveWritesUtf8WithoutDeclaration) {
  TempDir dir;
  XmlDocument doc =
      Loaded("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<a v=\"\xC3\xA9\">\n <b/></a>");
  std::string path = dir.File("out.xml");
  doc.Save(path);
  EXPECT_EQ(ReadFile(path), "<a v=\"\xC3\xA9\"><b/></a>");
  XmlDocument again;
  ASSERT_TRUE(again.Load(path));
  EXPECT_EQ(again.Xml(), doc.Xml());
}

TEST(XmlDocumentTest, SaveReplacesAnExistingFile) {
  TempDir dir;
  std::string path = dir.Write("out.xml", "old content that is longer than the new one");
  Loaded("<n/>").Save(path);
  EXPECT_EQ(ReadFile(path), "<n/>");
}

TEST(XmlDocumentTest, SaveToMissingDirectoryRaisesPathNotFound) {
  TempDir dir;
  XmlDocument doc = Loaded("<a/>");
  EXPECT_RAISES(doc.Save(dir.File("missing/out.xml")), errnum::kXmlPathNotFound,
                "The system cannot find the path specified.");
}

TEST(XmlDocumentTest, SaveOverADirectoryRaisesAccessDenied) {
  TempDir dir;
  XmlDocument doc = Loaded("<a/>");
  EXPECT_RAISES(doc.Save(dir.Path()), errnum::kXmlAccessDenied, "Access is denied.");
}

TEST(XmlDocumentTest, CopiesReferToTheSameDocument) {
  XmlDocument a = Loaded("<a/>");
  XmlDocument b = a;
  EXPECT_TRUE(a == b);
  EXPECT_TRUE(b.LoadXml("<b/>"));
  EXPECT_EQ(a.Xml(), "<b/>");
  b = XmlDocument();
  EXPECT_FALSE(a == b);
  EXPECT_EQ(a.Xml(), "<b/>");
  EXPECT_EQ(b.Xml(), "");
}

TEST(XmlDocumentTest, OwnerDocumentIsTheSameDocument) {
  XmlDocument doc = Loaded("<a><b/></a>");
  XmlNode b = doc.SelectSingleNode("//b");
  XmlDocument owner = b.OwnerDocument();
  EXPECT_TRUE(owner == doc);
  EXPECT_TRUE(owner.LoadXml("<c/>"));
  EXPECT_EQ(doc.Xml(), "<c/>");
}

TEST(XmlDocumentTest, DocumentTakesOneRootElement) {
  XmlDocument doc;
  XmlNode root = doc.AppendChild(doc.CreateElement("r"));
  EXPECT_EQ(doc.DocumentElement(), root);
  EXPECT_RAISES(doc.AppendChild(doc.CreateElement("s")), errnum::kXmlFailure,
                "Only one top level element is allowed in an XML document.");
  doc.AppendChild(doc.CreateComment("c"));
  doc.InsertBefore(doc.CreateProcessingInstruction("p", "d"), root);
  EXPECT_EQ(doc.Xml(), "<?p d?><r/><!--c-->");
  XmlNode other = doc.CreateElement("s");
  EXPECT_EQ(doc.ReplaceChild(other, root), root);
  EXPECT_EQ(doc.DocumentElement(), other);
  EXPECT_EQ(doc.Xml(), "<?p d?><s/><!--c-->");
}

TEST(XmlDocumentTest, DocumentRefusesText) {
  XmlDocument doc;
  EXPECT_RAISES(doc.AppendChild(doc.CreateTextNode("t")), errnum::kXmlFailure,
                "A node of this type cannot be inserted here.");
}

TEST(XmlDocumentTest, DocumentRemoveChildOfRootWorksAndOfAttributeFails) {
  XmlDocument doc = Loaded("<a x=\"1\"/>");
  XmlNode attr = doc.SelectSingleNode("/a/@x");
  ASSERT_TRUE(attr);
  EXPECT_FALSE(attr.ParentNode());
  EXPECT_RAISES(doc.RemoveChild(attr), errnum::kXmlFailure,
                "The node is not a child of this node.");
  XmlNode root = doc.DocumentElement();
  EXPECT_EQ(doc.RemoveChild(root), root);
  EXPECT_TRUE(doc.IsEmpty());
}

TEST(XmlDocumentTest, CreateElementRaisesOnInvalidName) {
  XmlDocument doc;
  EXPECT_RAISES(doc.CreateElement("a b"), errnum::kXmlFailure, "'a b' is not a valid XML name.");
  EXPECT_RAISES(doc.CreateElement("1a"), errnum::kXmlFailure, "'1a' is not a valid XML name.");
  EXPECT_RAISES(doc.CreateElement(""), errnum::kXmlFailure, "An XML name cannot be empty.");
  EXPECT_EQ(doc.CreateElement("ok-name_1.x").NodeName(), "ok-name_1.x");
}

TEST(XmlDocumentTest, CreatedNodesHaveTheirTypes) {
  XmlDocument doc;
  EXPECT_EQ(doc.CreateElement("e").NodeType(), NODE_ELEMENT);
  EXPECT_EQ(doc.CreateTextNode("t").NodeType(), NODE_TEXT);
  EXPECT_EQ(doc.CreateTextNode("t").NodeName(), "#text");
  EXPECT_EQ(doc.CreateComment("c").NodeType(), NODE_COMMENT);
  EXPECT_EQ(doc.CreateComment("c").NodeName(), "#comment");
  EXPECT_EQ(doc.CreateCDataSection("d").NodeType(), NODE_CDATA_SECTION);
  XmlNode pi = doc.CreateProcessingInstruction("target", "data");
  EXPECT_EQ(pi.NodeType(), NODE_PROCESSING_INSTRUCTION);
  EXPECT_EQ(pi.NodeName(), "target");
  EXPECT_EQ(pi.NodeValue(), "data");
  EXPECT_FALSE(doc.CreateElement("e").ParentNode());
  EXPECT_TRUE(doc.IsEmpty());
}

}  // namespace
}  // namespace veld

namespace veld {
namespace {

// What the parser notes while loading: each fact set by the one thing that
// sets it, none by a plain document, all for a document that was not loaded.
TEST(XmlLoadFactsTest, EachFactIsSetByWhatItNamesAndNoneByAPlainDocument) {
  using xml_internal::ParseFacts;
  auto facts = [](const std::string& text) {
    XmlDocument doc;
    EXPECT_TRUE(doc.LoadXml(text)) << text;
    return xml_internal::LoadFacts(doc);
  };
  EXPECT_TRUE(facts("<a><b x='1'>t</b><!-- c --><?p d?><![CDATA[x]]><b/></a>").Plain());
  EXPECT_TRUE(facts("<a>\n  <b/>\n</a>").Plain());  // dropped blanks leave nothing behind

  EXPECT_TRUE(facts("<a xmlns='urn:a'/>").namespaces);
  EXPECT_TRUE(facts("<a><p:b xmlns:p='urn:p'/></a>").namespaces);
  EXPECT_TRUE(facts("<a><b xml:lang='en'/></a>").namespaces);
  EXPECT_FALSE(facts("<a xml:lang='en'/>").doctype);

  EXPECT_TRUE(facts("<!DOCTYPE a><a/>").doctype);
  EXPECT_TRUE(facts("<!DOCTYPE a [<!ENTITY e 'x'>]><a>&e;</a>").doctype);

  EXPECT_TRUE(facts("<a xml:space='preserve'> <b/></a>").blank_text);
  EXPECT_FALSE(facts("<a xml:space='preserve'><b/></a>").blank_text);

  EXPECT_TRUE(facts("<a><b><a/></b></a>").nested_same_name);
  EXPECT_TRUE(facts("<r><row><col><row/></col></row></r>").nested_same_name);
  EXPECT_FALSE(facts("<r><row/><row/><col/></r>").nested_same_name);

  XmlDocument made;
  made.AppendChild(made.CreateElement("a"));
  EXPECT_FALSE(xml_internal::LoadFacts(made).Plain());
  XmlDocument failed;
  EXPECT_FALSE(failed.LoadXml("<a>"));
  EXPECT_FALSE(xml_internal::LoadFacts(failed).Plain());
}

}  // namespace
}  // namespace veld
