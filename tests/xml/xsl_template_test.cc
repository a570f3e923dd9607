#include "veld/xml/xsl_template.h"

#include <cstdio>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>  // dup, dup2 and close (mingw-w64 has them too)

#include "veld/platform/platform.h"
#include "veld/runtime/automation_error.h"
#include "veld/xml/xml_document.h"

#include "support/loopback_listener.h"
#include "support/testing.h"

namespace veld {
namespace {

using ::veld::testing::Loaded;

using testing::TempDir;

constexpr const char* kSecret = "TOP-SECRET-CONTENT-42";

std::string Sheet(const std::string& body, const std::string& extra_attributes = "") {
  return "<xsl:stylesheet version=\"1.0\" xmlns:xsl=\"http://www.w3.org/1999/XSL/Transform\"" +
         extra_attributes + ">" + body + "</xsl:stylesheet>";
}

XslTemplate Compiled(const std::string& text) { return XslTemplate(Loaded(text)); }

// Expects `statement` to raise kXmlFailure with a message containing `part`.
#define EXPECT_XML_FAILURE(statement, part)                                                \
  do {                                                                                     \
    bool raised = false;                                                                   \
    try {                                                                                  \
      statement;                                                                           \
    } catch (const AutomationError& error) {                                               \
      raised = true;                                                                       \
      EXPECT_EQ(error.Number(), errnum::kXmlFailure);                                      \
      EXPECT_NE(error.Description().find(part), std::string::npos) << error.Description(); \
      EXPECT_EQ(Err().Number(), errnum::kXmlFailure);                                      \
    }                                                                                      \
    EXPECT_TRUE(raised) << "expected " #statement " to raise";                             \
  } while (0)

const char* const kCopyItems =
    "<xsl:template match=\"/\"><list><xsl:for-each select=\"//item\">"
    "<entry name=\"{@name}\"><xsl:value-of select=\".\"/></entry>"
    "</xsl:for-each></list></xsl:template>";

TEST(XmlXslTemplateTest, TransformGivesANewDocument) {
  XslTemplate xsl = Compiled(Sheet(kCopyItems));
  XmlDocument input = Loaded("<r><item name=\"a\">1</item><item name=\"b\">\xC3\xA9</item></r>");
  XmlDocument output = xsl.Transform(input);
  EXPECT_EQ(output.Xml(),
            "<list><entry name=\"a\">1</entry><entry name=\"b\">\xC3\xA9</entry></list>");
  EXPECT_EQ(output.SelectNodes("//entry").Length(), 2);
  EXPECT_FALSE(output == input);
}

TEST(XmlXslTemplateTest, TemplateIsReusable) {
  XslTemplate xsl = Compiled(Sheet(kCopyItems));
  EXPECT_EQ(xsl.Transform(Loaded("<r><item name=\"x\"/></r>")).Xml(),
            "<list><entry name=\"x\"/></list>");
  EXPECT_EQ(xsl.Transform(Loaded("<r/>")).Xml(), "<list/>");
  XslTemplate copy = xsl;
  EXPECT_EQ(copy.Transform(Loaded("<r/>")).Xml(), "<list/>");
}

TEST(XmlXslTemplateTest, TransformToTextOfTextOutput) {
  XslTemplate xsl = Compiled(
      Sheet("<xsl:output method=\"text\"/><xsl:template match=\"/\">"
            "<xsl:for-each select=\"//v\"><xsl:value-of select=\".\"/><xsl:text>, </xsl:text>"
            "</xsl:for-each></xsl:template>"));
  EXPECT_EQ(xsl.TransformToText(Loaded("<r><v>a &amp; b</v><v>&lt;c&gt;</v></r>")), "a & b, <c>, ");
}

TEST(XmlXslTemplateTest, TransformToTextOfXmlOutputHasNoDeclaration) {
  XslTemplate xsl =
      Compiled(Sheet("<xsl:output method=\"xml\" indent=\"yes\" encoding=\"ISO-8859-1\"/>" +
                     std::string(kCopyItems)));
  EXPECT_EQ(xsl.TransformToText(Loaded("<r><item name=\"\xC3\xA9\"/></r>")),
            "<list><entry name=\"\xC3\xA9\"/></list>");
}

TEST(XmlXslTemplateTest, TransformIntoReplacesTheOutputDocument) {
  XslTemplate xsl = Compiled(Sheet(kCopyItems));
  XmlDocument output = Loaded("<old><kept/></old>");
  XmlDocument shared = output;
  XmlNode kept = output.SelectSingleNode("//kept");
  xsl.TransformInto(Loaded("<r><item name=\"n\">v</item></r>"), output);
  EXPECT_EQ(shared.Xml(), "<list><entry name=\"n\">v</entry></list>");
  EXPECT_EQ(kept.NodeName(), "kept");
  EXPECT_EQ(kept.ParentNode().NodeName(), "old");
}

TEST(XmlXslTemplateTest, InputIsNotChanged) {
  XslTemplate xsl =
      Compiled(Sheet("<xsl:strip-space elements=\"*\"/><xsl:template match=\"/\">"
                     "<n><xsl:value-of select=\"count(//text())\"/></n></xsl:template>"));
  XmlDocument input = Loaded("<r xml:space=\"preserve\"> <a> </a> </r>");
  XmlNode blank = input.DocumentElement().FirstChild();
  EXPECT_EQ(xsl.Transform(input).Xml(), "<n>0</n>");
  EXPECT_EQ(input.Xml(), "<r xml:space=\"preserve\"> <a> </a> </r>");
  EXPECT_EQ(blank.NodeValue(), " ");
  EXPECT_EQ(blank.ParentNode(), input.DocumentElement());
}

TEST(XmlXslTemplateTest, MsxslNodeSetIsAvailable) {
  XslTemplate xsl = Compiled(Sheet(
      "<xsl:variable name=\"t\"><x>1</x><x>2</x></xsl:variable>"
      "<xsl:template match=\"/\"><n><xsl:value-of select=\"count(msxsl:node-set($t)/x)\"/></n>"
      "</xsl:template>",
      " xmlns:msxsl=\"urn:schemas-microsoft-com:xslt\" exclude-result-prefixes=\"msxsl\""));
  EXPECT_EQ(xsl.Transform(Loaded("<r/>")).Xml(), "<n>2</n>");
}

TEST(XmlXslTemplateTest, StylesheetWithSyntaxErrorsRaises) {
  XslTemplate xsl;
  EXPECT_XML_FAILURE(xsl.SetStylesheet(Loaded(Sheet("<xsl:template match=\"/\">"
                                                    "<xsl:value-of select=\"//a[\"/>"
                                                    "</xsl:template>"))),
                     "");
  EXPECT_FALSE(Err().Description().empty());
  EXPECT_FALSE(xsl.HasStylesheet());
  EXPECT_XML_FAILURE(xsl.SetStylesheet(Loaded("<not-a-style-sheet/>")), "");
  EXPECT_FALSE(Err().Description().empty());
  EXPECT_XML_FAILURE(xsl.SetStylesheet(Loaded(Sheet("<xsl:bogus/>"))), "");
  EXPECT_FALSE(Err().Description().empty());
}

TEST(XmlXslTemplateTest, EmptyStylesheetAndMissingStylesheetRaise) {
  EXPECT_RAISES(XslTemplate{XmlDocument()}, errnum::kXmlFailure, "The style sheet is empty.");
  XslTemplate none;
  EXPECT_RAISES(none.Transform(Loaded("<r/>")), errnum::kXmlFailure,
                "No style sheet has been set.");
}

TEST(XmlXslTemplateTest, FailedCompileKeepsThePreviousStylesheet) {
  XslTemplate xsl = Compiled(Sheet(kCopyItems));
  EXPECT_XML_FAILURE(xsl.SetStylesheet(Loaded("<plain/>")), "");
  EXPECT_EQ(xsl.Transform(Loaded("<r/>")).Xml(), "<list/>");
}

TEST(XmlXslTemplateTest, MessageThatTerminatesRaisesWithItsText) {
  XslTemplate xsl = Compiled(
      Sheet("<xsl:template match=\"/\"><xsl:message terminate=\"yes\">stopped here</xsl:message>"
            "</xsl:template>"));
  EXPECT_XML_FAILURE(xsl.Transform(Loaded("<r/>")), "stopped here");
}

TEST(XmlXslTemplateTest, FileWritesAreRefused) {
  TempDir dir;
  std::string target = dir.File("written.txt");
  std::string created = dir.File("newdir/written.txt");
  XslTemplate xsl = Compiled(
      "<xsl:stylesheet version=\"1.1\" xmlns:xsl=\"http://www.w3.org/1999/XSL/Transform\">"
      "<xsl:template match=\"/\"><xsl:document href=\"" +
      target + "\" method=\"text\">PWNED</xsl:document><xsl:document href=\"" + created +
      "\" method=\"text\">PWNED</xsl:document><out/></xsl:template></xsl:stylesheet>");
  EXPECT_XML_FAILURE(xsl.Transform(Loaded("<r/>")), "refused");
  EXPECT_FALSE(std::filesystem::exists(target));
  EXPECT_FALSE(std::filesystem::exists(dir.File("newdir")));
}

TEST(XmlXslTemplateTest, LocalFileReadsAreRefused) {
  TempDir dir;
  std::string side = dir.Write("side.xml", std::string("<s>") + kSecret + "</s>");
  XslTemplate xsl =
      Compiled(Sheet("<xsl:template match=\"/\"><out><xsl:value-of select=\"document('" + side +
                     "')/s\"/></out></xsl:template>"));
  try {
    std::string text = xsl.TransformToText(Loaded("<r/>"));
    EXPECT_EQ(text.find(kSecret), std::string::npos) << text;
    ADD_FAILURE() << "expected the read to be refused";
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.Number(), errnum::kXmlFailure);
    EXPECT_NE(error.Description().find("refused"), std::string::npos) << error.Description();
  }
}

TEST(XmlXslTemplateTest, NetworkReadsAreRefusedWithoutConnecting) {
  testing::LoopbackListener listener;
  ASSERT_TRUE(listener.Ready());
  const std::string url = listener.Url("/d.xml");
  XslTemplate xsl =
      Compiled(Sheet("<xsl:template match=\"/\"><out><xsl:value-of select=\"document('" + url +
                     "')/s\"/></out></xsl:template>"));
  EXPECT_XML_FAILURE(xsl.Transform(Loaded("<r/>")), "refused");
  EXPECT_FALSE(listener.WasContacted()) << "the transform connected to " << url;
}

TEST(XmlXslTemplateTest, ImportAndIncludeAreRefused) {
  TempDir dir;
  std::string other = dir.Write("other.xsl", Sheet(kCopyItems));
  EXPECT_XML_FAILURE(Compiled(Sheet("<xsl:import href=\"" + other + "\"/>")), "refused");
  EXPECT_XML_FAILURE(Compiled(Sheet("<xsl:include href=\"" + other + "\"/>")), "refused");
}

TEST(XmlXslTemplateTest, DocumentOfTheStylesheetItselfWorksWhenLoadedFromAFile) {
  TempDir dir;
  std::string path = dir.Write(
      "lookup.xsl", Sheet("<t:names><t:n k=\"1\">one</t:n><t:n k=\"2\">two</t:n></t:names>"
                          "<xsl:template match=\"/\"><out><xsl:value-of "
                          "select=\"document('')//t:n[@k=current()/r/@k]\"/></out></xsl:template>",
                          " xmlns:t=\"urn:table\" exclude-result-prefixes=\"t\""));
  XmlDocument sheet;
  ASSERT_TRUE(sheet.Load(path)) << sheet.ParseError().Reason();
  XslTemplate xsl(sheet);
  EXPECT_EQ(xsl.Transform(Loaded("<r k=\"2\"/>")).Xml(), "<out>two</out>");
}

TEST(XmlXslTemplateTest, StylesheetDocumentIsNotChanged) {
  XmlDocument sheet = Loaded(Sheet(kCopyItems));
  std::string before = sheet.Xml();
  XslTemplate xsl(sheet);
  EXPECT_EQ(sheet.Xml(), before);
}

TEST(XmlXslTemplateTest, FailuresAreNotPrinted) {
  TempDir dir;
  std::string side = dir.Write("side.xml", "<s/>");
  std::fflush(stderr);
  int saved = dup(2);
  std::string log = dir.File("stderr.txt");
  FILE* file = std::fopen(log.c_str(), "w");
  dup2(fileno(file), 2);
  std::fclose(file);
  try {
    Compiled(Sheet("<xsl:template match=\"/\"><xsl:value-of select=\"//a[\"/></xsl:template>"));
  } catch (const AutomationError&) {
  }
  try {
    Compiled(Sheet("<xsl:template match=\"/\"><out><xsl:value-of select=\"document('" + side +
                   "')/s\"/><xsl:message>note</xsl:message></out></xsl:template>"))
        .Transform(Loaded("<r/>"));
  } catch (const AutomationError&) {
  }
  std::fflush(stderr);
  dup2(saved, 2);
  close(saved);
  EXPECT_EQ(testing::ReadFile(log), "");
}

// A platform that lets style sheets read other local documents.
class DocumentReadingPlatform : public ForwardingPlatform {
 public:
  bool XslDocumentReadAllowed() override { return true; }
};

TEST(XmlXslTemplateTest, LocalFileReadsAreRefusedByTheDefaultPlatform) {
  ASSERT_FALSE(CurrentPlatform().XslDocumentReadAllowed());
  TempDir dir;
  std::string side = dir.Write("side.xml", std::string("<s>") + kSecret + "</s>");
  XslTemplate xsl =
      Compiled(Sheet("<xsl:template match=\"/\"><out><xsl:value-of select=\"document('file://" +
                     side + "')/s\"/></out></xsl:template>"));
  EXPECT_RAISES(xsl.Transform(Loaded("<r/>")), errnum::kXmlFailure,
                "Local file read for file://" + side + " refused");
}

TEST(XmlXslTemplateTest, LocalFileReadsWorkWhenThePlatformAllowsThem) {
  TempDir dir;
  std::string side = dir.Write("side.xml", std::string("<s>") + kSecret + "</s>");
  XslTemplate xsl =
      Compiled(Sheet("<xsl:template match=\"/\"><out><xsl:value-of select=\"document('" + side +
                     "')/s\"/>|<xsl:value-of select=\"document('file://" + side +
                     "')/s\"/></out></xsl:template>"));
  {
    DocumentReadingPlatform platform;
    ScopedPlatform installed(platform);
    EXPECT_EQ(xsl.Transform(Loaded("<r/>")).Xml(),
              std::string("<out>") + kSecret + "|" + kSecret + "</out>");
  }
  // The platform is asked at each transform, not when compiling.
  EXPECT_RAISES(xsl.Transform(Loaded("<r/>")), errnum::kXmlFailure,
                "Local file read for " + side + " refused");
}

TEST(XmlXslTemplateTest, AllowedReadsStillRefuseTheNetworkAndExternalEntities) {
  DocumentReadingPlatform platform;
  ScopedPlatform installed(platform);
  TempDir dir;
  std::string secret = dir.Write("secret.txt", kSecret);
  std::string side = dir.Write(
      "side.xml", "<!DOCTYPE s [<!ENTITY e SYSTEM \"file://" + secret + "\">]><s>visible&e;</s>");
  XslTemplate reader =
      Compiled(Sheet("<xsl:template match=\"/\"><out><xsl:value-of select=\"document('" + side +
                     "')/s\"/></out></xsl:template>"));
  EXPECT_EQ(reader.TransformToText(Loaded("<r/>")), "<out>visible</out>");
  XslTemplate network =
      Compiled(Sheet("<xsl:template match=\"/\"><out><xsl:value-of "
                     "select=\"document('http://127.0.0.1:9/d.xml')/s\"/></out></xsl:template>"));
  EXPECT_RAISES(network.Transform(Loaded("<r/>")), errnum::kXmlFailure,
                "Network file read for http://127.0.0.1:9/d.xml refused");
}

TEST(XmlXslTemplateTest, ExslDocumentIsRefusedAndWritesNothing) {
  TempDir dir;
  std::string target = dir.File("exsl.txt");
  XslTemplate xsl = Compiled(
      Sheet("<xsl:template match=\"/\"><exsl:document href=\"" + target +
                "\" method=\"text\">PWNED</exsl:document><out/></xsl:template>",
            " xmlns:exsl=\"http://exslt.org/common\" extension-element-prefixes=\"exsl\""));
  EXPECT_RAISES(xsl.Transform(Loaded("<r/>")), errnum::kXmlFailure,
                "File write for " + target + " refused");
  EXPECT_FALSE(std::filesystem::exists(target));
}

TEST(XmlXslTemplateTest, UnknownExtensionElementFailsUnlessItHasAFallback) {
  XslTemplate without =
      Compiled(Sheet("<xsl:template match=\"/\"><ext:do/><out/></xsl:template>",
                     " xmlns:ext=\"urn:unknown\" extension-element-prefixes=\"ext\""));
  EXPECT_RAISES(without.Transform(Loaded("<r/>")), errnum::kXmlFailure,
                "xsltApplySequenceConstructor: failed to find extension do");
  XslTemplate with = Compiled(
      Sheet("<xsl:template match=\"/\"><ext:do><xsl:fallback><fell/></xsl:fallback></ext:do>"
            "</xsl:template>",
            " xmlns:ext=\"urn:unknown\" extension-element-prefixes=\"ext\""));
  EXPECT_EQ(with.Transform(Loaded("<r/>")).Xml(), "<fell/>");
}

TEST(XmlXslTemplateTest, ExsltModulesAreAvailable) {
  XslTemplate xsl = Compiled(
      Sheet("<xsl:template match=\"/\"><out><xsl:for-each select=\"set:distinct(//v)\">"
            "<xsl:value-of select=\".\"/></xsl:for-each>|<xsl:value-of "
            "select=\"count(str:tokenize('a,b,,c', ','))\"/>|<xsl:value-of "
            "select=\"math:min(//v)\"/></out></xsl:template>",
            " xmlns:set=\"http://exslt.org/sets\" xmlns:str=\"http://exslt.org/strings\""
            " xmlns:math=\"http://exslt.org/math\" exclude-result-prefixes=\"set str math\""));
  EXPECT_EQ(xsl.Transform(Loaded("<r><v>3</v><v>1</v><v>3</v></r>")).Xml(), "<out>31|3|1</out>");
}

TEST(XmlXslTemplateTest, OutputMethodIsTheDeclaredOne) {
  EXPECT_EQ(Compiled(Sheet(kCopyItems)).OutputMethod(), "");
  EXPECT_EQ(
      Compiled(Sheet("<xsl:output method=\"xml\"/>" + std::string(kCopyItems))).OutputMethod(),
      "xml");
  EXPECT_EQ(
      Compiled(Sheet("<xsl:output method=\"html\"/>" + std::string(kCopyItems))).OutputMethod(),
      "html");
  EXPECT_EQ(
      Compiled(Sheet("<xsl:output method=\"text\"/>" + std::string(kCopyItems))).OutputMethod(),
      "text");
  XslTemplate none;
  EXPECT_RAISES(none.OutputMethod(), errnum::kXmlFailure, "No style sheet has been set.");
}

TEST(XmlXslTemplateTest, TextOutputIsRefusedAsADocument) {
  XslTemplate xsl =
      Compiled(Sheet("<xsl:output method=\"text\"/><xsl:template match=\"/\">"
                     "plain text</xsl:template>"));
  const char* const message =
      "The style sheet's output method is text; its result is not an XML document.";
  EXPECT_RAISES(xsl.Transform(Loaded("<r/>")), errnum::kXmlFailure, message);
  XmlDocument output = Loaded("<kept/>");
  EXPECT_RAISES(xsl.TransformInto(Loaded("<r/>"), output), errnum::kXmlFailure, message);
  EXPECT_EQ(output.Xml(), "<kept/>");
  EXPECT_EQ(xsl.TransformToText(Loaded("<r/>")), "plain text");
}

TEST(XmlXslTemplateTest, HtmlOutputGivesAnXmlDocument) {
  XslTemplate xsl =
      Compiled(Sheet("<xsl:output method=\"html\"/><xsl:template match=\"/\"><html><head>"
                     "<title>T</title></head><body><br/><hr/><p>x &lt; y</p></body></html>"
                     "</xsl:template>"));
  XmlDocument output = xsl.Transform(Loaded("<r/>"));
  EXPECT_EQ(output.AsNode().NodeType(), NODE_DOCUMENT);
  EXPECT_EQ(output.Xml(),
            "<html><head><title>T</title></head><body><br/><hr/><p>x &lt; y</p></body></html>");
  EXPECT_EQ(output.SelectNodes("/html/body/*").Length(), 3);
  EXPECT_EQ(xsl.TransformToText(Loaded("<r/>")), output.Xml());
}

TEST(XmlXslTemplateTest, DoctypeSettingsGiveNoDocumentType) {
  for (const char* output :
       {"<xsl:output method=\"html\" doctype-public=\"-//W3C//DTD HTML 4.01//EN\"/>",
        "<xsl:output method=\"xml\" doctype-system=\"list.dtd\"/>"}) {
    XslTemplate xsl = Compiled(Sheet(output + std::string(kCopyItems)));
    XmlDocument result = xsl.Transform(Loaded("<r><item name=\"a\"/></r>"));
    EXPECT_EQ(result.ChildNodes().Length(), 1) << output;
    EXPECT_EQ(result.Xml(), "<list><entry name=\"a\"/></list>") << output;
    EXPECT_EQ(xsl.TransformToText(Loaded("<r/>")), "<list/>") << output;
  }
}

TEST(XmlXslTemplateTest, TransformToFileWritesTheResult) {
  TempDir dir;
  std::string xml_file = dir.File("out.xml");
  Compiled(Sheet(kCopyItems)).TransformToFile(Loaded("<r><item name=\"a\">1</item></r>"), xml_file);
  EXPECT_EQ(testing::ReadFile(xml_file), "<list><entry name=\"a\">1</entry></list>");
  std::string text_file = dir.File("out.txt");
  Compiled(Sheet("<xsl:output method=\"text\" encoding=\"ISO-8859-1\"/>"
                 "<xsl:template match=\"/\">\xC3\xA9 &amp; &lt;</xsl:template>"))
      .TransformToFile(Loaded("<r/>"), text_file);
  EXPECT_EQ(testing::ReadFile(text_file), "\xC3\xA9 & <");
}

TEST(XmlXslTemplateTest, TransformToFileWritesNothingWhenTheTransformFails) {
  TempDir dir;
  std::string target = dir.File("out.xml");
  XslTemplate xsl = Compiled(Sheet(
      "<xsl:template match=\"/\"><xsl:message terminate=\"yes\">no</xsl:message></xsl:template>"));
  EXPECT_RAISES(xsl.TransformToFile(Loaded("<r/>"), target), errnum::kXmlFailure, "no");
  EXPECT_FALSE(std::filesystem::exists(target));
  EXPECT_RAISES(Compiled(Sheet(kCopyItems)).TransformToFile(Loaded("<r/>"), dir.File("x/y.xml")),
                errnum::kXmlPathNotFound, "The system cannot find the path specified.");
}

TEST(XmlXslTemplateTest, EndlessRecursionFailsTheTransform) {
  XslTemplate xsl = Compiled(
      Sheet("<xsl:template match=\"/\"><a><xsl:apply-templates select=\"/\"/></a></xsl:template>"));
  EXPECT_RAISES(xsl.Transform(Loaded("<r/>")), errnum::kXmlFailure,
                "xsltApplySequenceConstructor: A potential infinite template recursion was "
                "detected.");
}

}  // namespace
}  // namespace veld
