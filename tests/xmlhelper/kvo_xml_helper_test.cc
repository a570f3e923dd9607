#include "veld/xmlhelper/kvo_xml_helper.h"

#include <filesystem>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "veld/platform/platform.h"
#include "veld/runtime/automation_error.h"
#include "veld/xml/xml_document.h"

#include "support/loopback_listener.h"
#include "support/testing.h"

namespace veld {
namespace {

using testing::ReadFile;
using testing::TempDir;

constexpr const char* kXmlFailureTag = "(ERR#: -2147467259)";

std::string Sheet(const std::string& body, const std::string& extra_attributes = "",
                  const std::string& version = "1.0") {
  return "<xsl:stylesheet version=\"" + version +
         "\" xmlns:xsl=\"http://www.w3.org/1999/XSL/Transform\"" + extra_attributes + ">" + body +
         "</xsl:stylesheet>";
}

// Lists the items as name=value pairs in a document of their own.
const char* const kItemsToList =
    "<xsl:template match=\"/\"><list><xsl:for-each select=\"//item\">"
    "<entry name=\"{@name}\"><xsl:value-of select=\".\"/></entry>"
    "</xsl:for-each></list></xsl:template>";

const char* const kItems = "<r><item name=\"a\">1</item><item name=\"b\">2</item></r>";
const char* const kItemsListed =
    "<list><entry name=\"a\">1</entry><entry name=\"b\">2</entry></list>";

// A platform that lets style sheets read other local documents.
class DocumentReadingPlatform : public ForwardingPlatform {
 public:
  bool XslDocumentReadAllowed() override { return true; }
};

class KvoXmlHelperTest : public ::testing::Test {
 protected:
  // The held document as text.
  std::string Held() {
    std::string xml = "unset";
    EXPECT_TRUE(helper_.GetXmlByXPath("/*", xml)) << helper_.GetLastError();
    return xml;
  }

  void LoadItems() { ASSERT_TRUE(helper_.LoadXml(kItems)) << helper_.GetLastError(); }

  std::string WriteSheet(const std::string& name, const std::string& text) {
    return dir_.Write(name, text);
  }

  // The recorded failure, as RaiseLastError raises it.
  ErrorInfo RecordedFailure() {
    try {
      helper_.RaiseLastError();
    } catch (const AutomationError& error) {
      return error.Info();
    }
    ADD_FAILURE() << "nothing was recorded";
    return ErrorInfo{};
  }

  // Expects a failure of the XML library to be recorded: its number, a
  // description of its own, and GetLastError showing both.
  void ExpectXmlFailureRecorded() {
    ErrorInfo failure = RecordedFailure();
    EXPECT_EQ(failure.number, errnum::kXmlFailure);
    EXPECT_FALSE(failure.description.empty());
    EXPECT_EQ(helper_.GetLastError(), failure.description + kXmlFailureTag);
  }

  TempDir dir_;
  KvoXmlHelper helper_;
};

// --- Frame ---

TEST_F(KvoXmlHelperTest, NewHelperHoldsAnEmptyDocumentAndNoError) {
  EXPECT_EQ(helper_.GetLastError(), "");
  helper_.RaiseLastError();
  EXPECT_EQ(Held(), "");
  std::string all = "unset";
  EXPECT_TRUE(helper_.GetXmlByXPath("/", all));
  EXPECT_EQ(all, "");
}

TEST_F(KvoXmlHelperTest, ResetEmptiesTheDocumentAndKeepsTheLastError) {
  LoadItems();
  EXPECT_FALSE(helper_.LoadFile(dir_.File("missing.xml")));
  ASSERT_TRUE(helper_.LoadXml(kItems));
  EXPECT_FALSE(helper_.LoadXml("<broken>"));
  helper_.Reset();
  EXPECT_EQ(helper_.GetLastError(), "Failed to load xml data.");
  EXPECT_EQ(Held(), "");
}

TEST_F(KvoXmlHelperTest, RaiseLastErrorRaisesTheRecordedFailure) {
  EXPECT_FALSE(helper_.LoadXml("not xml"));
  EXPECT_RAISES(helper_.RaiseLastError(), -1, "Failed to load xml data.");
  EXPECT_RAISES(helper_.RaiseLastError(), -1, "Failed to load xml data.");
}

TEST_F(KvoXmlHelperTest, SuccessfulCallClearsTheLastError) {
  EXPECT_FALSE(helper_.LoadXml("not xml"));
  std::string xml;
  EXPECT_TRUE(helper_.GetXmlByXPath("/nothing", xml));
  EXPECT_EQ(helper_.GetLastError(), "");
}

// --- Loading ---

TEST_F(KvoXmlHelperTest, LoadXmlParsesTextIntoTheHeldDocument) {
  EXPECT_TRUE(helper_.LoadXml("<r>\n  <a x=\"1\"/>\n</r>"));
  EXPECT_EQ(helper_.GetLastError(), "");
  EXPECT_EQ(Held(), "<r><a x=\"1\"/></r>");
}

TEST_F(KvoXmlHelperTest, LoadXmlOfMalformedTextFailsAndLeavesTheDocumentEmpty) {
  LoadItems();
  EXPECT_FALSE(helper_.LoadXml("<r><a></r>"));
  EXPECT_EQ(helper_.GetLastError(), "Failed to load xml data.");
  EXPECT_EQ(Held(), "");
}

TEST_F(KvoXmlHelperTest, LoadFileReadsTheFileIntoTheHeldDocument) {
  std::string path = dir_.Write("data.xml", "<?xml version=\"1.0\"?>\n<d><v>\xC3\xA9</v></d>\n");
  EXPECT_TRUE(helper_.LoadFile(path));
  EXPECT_EQ(helper_.GetLastError(), "");
  EXPECT_EQ(Held(), "<d><v>\xC3\xA9</v></d>");
}

TEST_F(KvoXmlHelperTest, LoadFileOfAMissingFileFailsWithTheFileName) {
  LoadItems();
  std::string path = dir_.File("no-such-file.xml");
  EXPECT_FALSE(helper_.LoadFile(path));
  EXPECT_EQ(helper_.GetLastError(), "Failed to load data from file - " + path + ".");
  EXPECT_EQ(Held(), "");
}

TEST_F(KvoXmlHelperTest, LoadFileOfAMalformedFileFailsWithTheFileName) {
  std::string path = dir_.Write("bad.xml", "<a><b></a>");
  EXPECT_FALSE(helper_.LoadFile(path));
  EXPECT_EQ(helper_.GetLastError(), "Failed to load data from file - " + path + ".");
}

// --- GetXmlByXPath ---

TEST_F(KvoXmlHelperTest, GetXmlByXPathWithNoMatchReturnsTrueAndEmptyText) {
  LoadItems();
  std::string xml = "previous";
  EXPECT_TRUE(helper_.GetXmlByXPath("//missing", xml));
  EXPECT_EQ(xml, "");
  EXPECT_EQ(helper_.GetLastError(), "");
}

TEST_F(KvoXmlHelperTest, GetXmlByXPathGivesTheFirstMatchWithItsSubtree) {
  ASSERT_TRUE(helper_.LoadXml("<r><g id=\"1\"><o v=\"x\">t</o></g><g id=\"2\"/></r>"));
  std::string xml;
  EXPECT_TRUE(helper_.GetXmlByXPath("  //g  ", xml));
  EXPECT_EQ(xml, "<g id=\"1\"><o v=\"x\">t</o></g>");
  EXPECT_TRUE(helper_.GetXmlByXPath("//g/@id", xml));
  EXPECT_EQ(xml, "id=\"1\"");
  EXPECT_TRUE(helper_.GetXmlByXPath("//o/text()", xml));
  EXPECT_EQ(xml, "t");
}

TEST_F(KvoXmlHelperTest, GetXmlByXPathOfAnInvalidExpressionFailsWithTheXPathError) {
  LoadItems();
  std::string xml = "previous";
  EXPECT_FALSE(helper_.GetXmlByXPath("//item[", xml));
  EXPECT_EQ(xml, "");
  ExpectXmlFailureRecorded();
}

// --- GetElemAttribute ---

TEST_F(KvoXmlHelperTest, GetElemAttributeOfATextNodeOrNoMatchReturnsNull) {
  ASSERT_TRUE(helper_.LoadXml("<r a=\"1\">text</r>"));
  EXPECT_EQ(helper_.GetElemAttribute("/r/text()"), nullptr);
  EXPECT_EQ(helper_.GetLastError(), "");
  EXPECT_EQ(helper_.GetElemAttribute("/r/@a"), nullptr);
  EXPECT_EQ(helper_.GetElemAttribute("//missing"), nullptr);
  EXPECT_EQ(helper_.GetLastError(), "");
}

TEST_F(KvoXmlHelperTest, GetElemAttributeListsTheAttributesInDocumentOrder) {
  ASSERT_TRUE(helper_.LoadXml("<r><e a=\"1\" b=\"two\"/><e c=\"3\"/></r>"));
  std::shared_ptr<KvoGeneralItems> items = helper_.GetElemAttribute("//e");
  ASSERT_NE(items, nullptr);
  ASSERT_EQ(items->Count(), 2);
  EXPECT_EQ(items->Item(1)->Name, "a");
  EXPECT_EQ(items->Item(1)->Value, "1");
  EXPECT_EQ(items->Item(1)->TypeString, "");
  EXPECT_EQ(items->Item(1)->ExtraValue, "");
  EXPECT_EQ(items->Item(2)->Name, "b");
  EXPECT_EQ(items->Item(2)->Value, "two");
  EXPECT_EQ(items->Item(2)->TypeString, "");
  EXPECT_EQ(items->Item(2)->ExtraValue, "");
  EXPECT_EQ(items->RootTagCount(), 0);
}

TEST_F(KvoXmlHelperTest, GetElemAttributeOfAnElementWithoutAttributesGivesAnEmptyCollection) {
  ASSERT_TRUE(helper_.LoadXml("<r><e/></r>"));
  std::shared_ptr<KvoGeneralItems> items = helper_.GetElemAttribute("/r/e");
  ASSERT_NE(items, nullptr);
  EXPECT_EQ(items->Count(), 0);
}

TEST_F(KvoXmlHelperTest, GetElemAttributeItemsAreUnkeyedAndStayWithTheCaller) {
  ASSERT_TRUE(helper_.LoadXml("<r x=\"1\"/>"));
  std::shared_ptr<KvoGeneralItems> items = helper_.GetElemAttribute("/r");
  ASSERT_NE(items, nullptr);
  EXPECT_RAISES(items->Item("x"), errnum::kInvalidProcedureCall,
                "Invalid procedure call or argument");
  helper_.Reset();
  ASSERT_TRUE(helper_.LoadXml("<other/>"));
  EXPECT_EQ(items->GetItemValueByName("x"), "1");
  EXPECT_NE(helper_.GetElemAttribute("/other"), items);
}

TEST_F(KvoXmlHelperTest, GetElemAttributeOfAnInvalidExpressionRecordsAndReturnsNull) {
  ASSERT_TRUE(helper_.LoadXml("<r x=\"1\"/>"));
  EXPECT_EQ(helper_.GetElemAttribute("/r["), nullptr);
  ExpectXmlFailureRecorded();
}

// --- RemoveNodes ---

TEST_F(KvoXmlHelperTest, RemoveNodesRemovesEveryMatch) {
  ASSERT_TRUE(helper_.LoadXml("<r><a/><b><a><a/></a></b><c>t</c></r>"));
  EXPECT_TRUE(helper_.RemoveNodes(" //a "));
  EXPECT_EQ(Held(), "<r><b/><c>t</c></r>");
  EXPECT_TRUE(helper_.RemoveNodes("//c/text()"));
  EXPECT_EQ(Held(), "<r><b/><c/></r>");
  EXPECT_TRUE(helper_.RemoveNodes("/r"));
  EXPECT_EQ(Held(), "");
}

TEST_F(KvoXmlHelperTest, RemoveNodesWithNoMatchReturnsTrueAndChangesNothing) {
  LoadItems();
  EXPECT_TRUE(helper_.RemoveNodes("//missing"));
  EXPECT_EQ(helper_.GetLastError(), "");
  EXPECT_EQ(Held(), kItems);
}

TEST_F(KvoXmlHelperTest, RemoveNodesWithAnXPathSelectingAttributesFails) {
  ASSERT_TRUE(helper_.LoadXml("<r><b/><c x=\"1\"/><d/></r>"));
  EXPECT_FALSE(helper_.RemoveNodes("//b | //@x | //d"));
  EXPECT_EQ(helper_.GetLastError(),
            std::string("The node is not a child of this node.") + kXmlFailureTag);
  // The nodes before the attribute are gone, the attribute and the rest stay.
  EXPECT_EQ(Held(), "<r><c x=\"1\"/><d/></r>");
}

TEST_F(KvoXmlHelperTest, RemoveNodesOfTheDocumentNodeFailsAndKeepsTheDocument) {
  LoadItems();
  EXPECT_FALSE(helper_.RemoveNodes("/"));
  EXPECT_EQ(helper_.GetLastError(),
            std::string("The node is not a child of this node.") + kXmlFailureTag);
  EXPECT_EQ(Held(), kItems);
}

TEST_F(KvoXmlHelperTest, RemoveNodesOfAnInvalidExpressionFails) {
  LoadItems();
  EXPECT_FALSE(helper_.RemoveNodes("//item[@name="));
  ExpectXmlFailureRecorded();
  EXPECT_EQ(Held(), kItems);
}

// --- Transforms ---

TEST_F(KvoXmlHelperTest, TransformDataToXmlDomDocFillsTheTargetDocument) {
  LoadItems();
  std::string sheet = WriteSheet("list.xsl", Sheet(kItemsToList));
  XmlDocument target = testing::Loaded("<old/>");
  XmlDocument other_handle = target;
  EXPECT_TRUE(helper_.TransformDataToXmlDomDoc(sheet, target));
  EXPECT_EQ(helper_.GetLastError(), "");
  EXPECT_EQ(other_handle.Xml(), kItemsListed);
  EXPECT_EQ(target.SelectNodes("//entry").Length(), 2);
  EXPECT_EQ(Held(), kItems);
}

TEST_F(KvoXmlHelperTest, TransformDataToXmlGivesTheResultText) {
  LoadItems();
  std::string sheet = WriteSheet("list.xsl", Sheet(kItemsToList));
  std::string xml;
  EXPECT_TRUE(helper_.TransformDataToXml(sheet, xml));
  EXPECT_EQ(xml, kItemsListed);
  EXPECT_EQ(Held(), kItems);
}

TEST_F(KvoXmlHelperTest, TransformDataReplacesTheHeldDocument) {
  LoadItems();
  std::string sheet = WriteSheet("list.xsl", Sheet(kItemsToList));
  EXPECT_TRUE(helper_.TransformData(sheet));
  EXPECT_EQ(helper_.GetLastError(), "");
  EXPECT_EQ(Held(), kItemsListed);
}

TEST_F(KvoXmlHelperTest, TransformDataFollowedByGetXmlByXPathReadsTheTransformedDocument) {
  LoadItems();
  std::string sheet = WriteSheet("list.xsl", Sheet(kItemsToList));
  ASSERT_TRUE(helper_.TransformData(sheet));
  std::string xml;
  EXPECT_TRUE(helper_.GetXmlByXPath("/list/entry[@name='b']", xml));
  EXPECT_EQ(xml, "<entry name=\"b\">2</entry>");
  EXPECT_TRUE(helper_.GetXmlByXPath("//item", xml));
  EXPECT_EQ(xml, "");
}

TEST_F(KvoXmlHelperTest, TransformDataToXmlFileSavesTheResult) {
  LoadItems();
  std::string sheet = WriteSheet("list.xsl", Sheet(kItemsToList));
  std::string target = dir_.Write("out.xml", "previous content that is longer than the result");
  EXPECT_TRUE(helper_.TransformDataToXmlFile(sheet, target));
  EXPECT_EQ(helper_.GetLastError(), "");
  EXPECT_EQ(ReadFile(target), kItemsListed);
}

TEST_F(KvoXmlHelperTest, TransformDataToXmlFileIntoAMissingDirectoryRecordsThePathError) {
  LoadItems();
  std::string sheet = WriteSheet("list.xsl", Sheet(kItemsToList));
  std::string target = dir_.File("no-dir/out.xml");
  EXPECT_FALSE(helper_.TransformDataToXmlFile(sheet, target));
  EXPECT_EQ(helper_.GetLastError(),
            "The system cannot find the path specified.(ERR#: -2147024893)");
  EXPECT_FALSE(std::filesystem::exists(target));
}

TEST_F(KvoXmlHelperTest, TransformMembersWithASyntaxErrorInTheStyleSheetFailWithTheParseReason) {
  LoadItems();
  std::string sheet =
      WriteSheet("broken.xsl", Sheet("<xsl:template match=\"/\"><out></xsl:template>"));
  XmlDocument probe;
  ASSERT_FALSE(probe.Load(sheet));
  const std::string reason = probe.ParseError().Reason();
  ASSERT_FALSE(reason.empty());
  const std::string expected = "Failed to load XSL file - " + reason + ".";
  EXPECT_EQ(expected,
            "Failed to load XSL file - Opening and ending tag mismatch: out line 1 and "
            "xsl:template.");

  XmlDocument target = testing::Loaded("<kept/>");
  EXPECT_FALSE(helper_.TransformDataToXmlDomDoc(sheet, target));
  EXPECT_EQ(helper_.GetLastError(), expected);
  EXPECT_EQ(target.Xml(), "<kept/>");

  std::string xml = "unchanged";
  EXPECT_FALSE(helper_.TransformDataToXml(sheet, xml));
  EXPECT_EQ(helper_.GetLastError(), expected);
  EXPECT_EQ(xml, "unchanged");

  EXPECT_FALSE(helper_.TransformData(sheet));
  EXPECT_EQ(helper_.GetLastError(), expected);
  EXPECT_EQ(Held(), kItems);

  std::string file = dir_.File("out.xml");
  EXPECT_FALSE(helper_.TransformDataToXmlFile(sheet, file));
  EXPECT_EQ(helper_.GetLastError(), expected);
  EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(KvoXmlHelperTest, MissingStyleSheetFileFailsWithTheFileSystemReason) {
  LoadItems();
  std::string xml = "unchanged";
  // The reason ends with its own full stop; the message adds one more.
  EXPECT_FALSE(helper_.TransformDataToXml(dir_.File("missing.xsl"), xml));
  EXPECT_EQ(helper_.GetLastError(),
            "Failed to load XSL file - The system cannot find the file specified..");
  EXPECT_EQ(xml, "unchanged");
}

TEST_F(KvoXmlHelperTest, EmptyStyleSheetNameFailsWithThePathReason) {
  LoadItems();
  std::string xml = "unchanged";
  EXPECT_FALSE(helper_.TransformDataToXml("", xml));
  EXPECT_EQ(helper_.GetLastError(),
            "Failed to load XSL file - The system cannot find the path specified..");
  EXPECT_EQ(xml, "unchanged");
}

TEST_F(KvoXmlHelperTest, StyleSheetThatDoesNotCompileRecordsTheEngineError) {
  LoadItems();
  std::string sheet =
      WriteSheet("bad-xpath.xsl", Sheet("<xsl:template match=\"/\"><xsl:value-of select=\"//a[\"/>"
                                        "</xsl:template>"));
  XmlDocument target = testing::Loaded("<kept/>");
  EXPECT_FALSE(helper_.TransformDataToXmlDomDoc(sheet, target));
  ExpectXmlFailureRecorded();
  EXPECT_EQ(target.Xml(), "<kept/>");

  std::string not_a_sheet = WriteSheet("plain.xsl", "<plain/>");
  EXPECT_FALSE(helper_.TransformData(not_a_sheet));
  ExpectXmlFailureRecorded();
  EXPECT_EQ(Held(), kItems);
}

TEST_F(KvoXmlHelperTest, FailedTransformChangesNothing) {
  LoadItems();
  std::string sheet =
      WriteSheet("stop.xsl", Sheet("<xsl:template match=\"/\"><out/><xsl:message terminate=\"yes\">"
                                   "stopped at the root</xsl:message></xsl:template>"));
  XmlDocument target = testing::Loaded("<kept/>");
  EXPECT_FALSE(helper_.TransformDataToXmlDomDoc(sheet, target));
  EXPECT_EQ(helper_.GetLastError(), std::string("stopped at the root") + kXmlFailureTag);
  EXPECT_EQ(target.Xml(), "<kept/>");

  std::string xml = "unchanged";
  EXPECT_FALSE(helper_.TransformDataToXml(sheet, xml));
  EXPECT_EQ(xml, "unchanged");
  EXPECT_FALSE(helper_.TransformData(sheet));
  EXPECT_EQ(Held(), kItems);
  std::string existing = dir_.Write("existing.xml", "<before/>");
  EXPECT_FALSE(helper_.TransformDataToXmlFile(sheet, existing));
  EXPECT_EQ(ReadFile(existing), "<before/>");
  std::string fresh = dir_.File("fresh.xml");
  EXPECT_FALSE(helper_.TransformDataToXmlFile(sheet, fresh));
  EXPECT_FALSE(std::filesystem::exists(fresh));
  EXPECT_EQ(helper_.GetLastError(), std::string("stopped at the root") + kXmlFailureTag);
}

TEST_F(KvoXmlHelperTest, TransformOfTheEmptyHeldDocumentWorks) {
  std::string sheet = WriteSheet("count.xsl", Sheet("<xsl:template match=\"/\"><n>"
                                                    "<xsl:value-of select=\"count(//*)\"/>"
                                                    "</n></xsl:template>"));
  std::string xml;
  EXPECT_TRUE(helper_.TransformDataToXml(sheet, xml));
  EXPECT_EQ(xml, "<n>0</n>");
}

TEST_F(KvoXmlHelperTest, TargetDocumentMayBeASnapshotOfTheHeldDocument) {
  LoadItems();
  std::string sheet = WriteSheet("list.xsl", Sheet(kItemsToList));
  XmlDocument target;
  ASSERT_TRUE(helper_.TransformDataToXmlDomDoc(sheet, target));
  // A second transform into the same target replaces its content.
  ASSERT_TRUE(helper_.LoadXml("<r><item name=\"z\">9</item></r>"));
  ASSERT_TRUE(helper_.TransformDataToXmlDomDoc(sheet, target));
  EXPECT_EQ(target.Xml(), "<list><entry name=\"z\">9</entry></list>");
}

// --- Output methods ---

const char* const kTextSheetBody =
    "<xsl:output method=\"text\"/><xsl:template match=\"/\">"
    "<xsl:for-each select=\"//item\"><xsl:value-of select=\"@name\"/>=<xsl:value-of "
    "select=\".\"/><xsl:text>&#10;</xsl:text></xsl:for-each>&lt;done &amp; ok&gt;"
    "</xsl:template>";

TEST_F(KvoXmlHelperTest, TextOutputGivesTheTextToTheTextAndFileMembers) {
  LoadItems();
  std::string sheet = WriteSheet("text.xsl", Sheet(kTextSheetBody));
  std::string text;
  EXPECT_TRUE(helper_.TransformDataToXml(sheet, text));
  EXPECT_EQ(text, "a=1\nb=2\n<done & ok>");
  std::string file = dir_.File("out.txt");
  EXPECT_TRUE(helper_.TransformDataToXmlFile(sheet, file));
  EXPECT_EQ(ReadFile(file), "a=1\nb=2\n<done & ok>");
}

TEST_F(KvoXmlHelperTest, TextOutputFailsTheDocumentMembersAndChangesNothing) {
  LoadItems();
  std::string sheet = WriteSheet("text.xsl", Sheet(kTextSheetBody));
  const std::string expected =
      std::string("The style sheet's output method is text; its result is not an XML document.") +
      kXmlFailureTag;
  XmlDocument target = testing::Loaded("<kept/>");
  EXPECT_FALSE(helper_.TransformDataToXmlDomDoc(sheet, target));
  EXPECT_EQ(helper_.GetLastError(), expected);
  EXPECT_EQ(target.Xml(), "<kept/>");
  EXPECT_FALSE(helper_.TransformData(sheet));
  EXPECT_EQ(helper_.GetLastError(), expected);
  EXPECT_EQ(Held(), kItems);
}

TEST_F(KvoXmlHelperTest, HtmlOutputKeepsTheResultTreeAsAnXmlDocument) {
  LoadItems();
  std::string sheet = WriteSheet(
      "html.xsl",
      Sheet("<xsl:output method=\"html\" doctype-public=\"-//W3C//DTD HTML 4.01//EN\"/>"
            "<xsl:template match=\"/\"><html><body><br/><p>a &amp; b</p>"
            "<xsl:for-each select=\"//item\"><input name=\"{@name}\" checked=\"checked\"/>"
            "</xsl:for-each></body></html></xsl:template>"));
  const std::string body =
      "<body><br/><p>a &amp; b</p><input name=\"a\" checked=\"checked\"/>"
      "<input name=\"b\" checked=\"checked\"/></body>";
  std::string xml;
  EXPECT_TRUE(helper_.TransformDataToXml(sheet, xml));
  EXPECT_EQ(xml, "<html>" + body + "</html>");

  XmlDocument target;
  EXPECT_TRUE(helper_.TransformDataToXmlDomDoc(sheet, target));
  EXPECT_EQ(target.AsNode().NodeType(), NODE_DOCUMENT);
  EXPECT_EQ(target.DocumentElement().NodeName(), "html");
  EXPECT_EQ(target.SelectNodes("/html/body/input").Length(), 2);

  std::string file = dir_.File("out.html");
  EXPECT_TRUE(helper_.TransformDataToXmlFile(sheet, file));
  EXPECT_EQ(ReadFile(file), xml);

  EXPECT_TRUE(helper_.TransformData(sheet));
  std::string br;
  EXPECT_TRUE(helper_.GetXmlByXPath("/html/body", br));
  EXPECT_EQ(br, body);
}

TEST_F(KvoXmlHelperTest, SerialisationSettingsOfTheStyleSheetAreNotApplied) {
  ASSERT_TRUE(helper_.LoadXml("<r><item name=\"\xC3\xA9\">x</item></r>"));
  std::string sheet = WriteSheet(
      "settings.xsl", Sheet("<xsl:output method=\"xml\" indent=\"yes\" encoding=\"ISO-8859-1\" "
                            "omit-xml-declaration=\"no\"/>" +
                            std::string(kItemsToList)));
  const std::string expected = "<list><entry name=\"\xC3\xA9\">x</entry></list>";
  std::string xml;
  EXPECT_TRUE(helper_.TransformDataToXml(sheet, xml));
  EXPECT_EQ(xml, expected);
  std::string file = dir_.File("out.xml");
  EXPECT_TRUE(helper_.TransformDataToXmlFile(sheet, file));
  EXPECT_EQ(ReadFile(file), expected);
}

TEST_F(KvoXmlHelperTest, ExsltFunctionsAreAvailable) {
  LoadItems();
  std::string sheet = WriteSheet(
      "exslt.xsl",
      Sheet("<xsl:variable name=\"t\"><v>3</v><v>1</v><v>2</v></xsl:variable>"
            "<xsl:template match=\"/\"><out n=\"{count(exsl:node-set($t)/v)}\" "
            "max=\"{math:max(exsl:node-set($t)/v)}\" pad=\"{str:padding(3, '-')}\"/>"
            "</xsl:template>",
            " xmlns:exsl=\"http://exslt.org/common\" xmlns:math=\"http://exslt.org/math\""
            " xmlns:str=\"http://exslt.org/strings\" exclude-result-prefixes=\"exsl math str\""));
  std::string xml;
  EXPECT_TRUE(helper_.TransformDataToXml(sheet, xml)) << helper_.GetLastError();
  EXPECT_EQ(xml, "<out n=\"3\" max=\"3\" pad=\"---\"/>");
}

// --- Confinement ---

// A path as libxslt names it in a refusal: by its URI, so that on Windows
// the backslashes of the path appear escaped.
std::string NamedByXslt(const std::string& path) {
#ifdef _WIN32
  std::string named;
  for (char c : path) named += c == '\\' ? std::string("%5C") : std::string(1, c);
  return named;
#else
  return path;
#endif
}

class KvoXmlHelperSecurityTest : public KvoXmlHelperTest {
 protected:
  void SetUp() override { LoadItems(); }

  // Expects every transform member to fail with `message` and no file to
  // appear at `forbidden` or at the target of the file member.
  void ExpectAllMembersFail(const std::string& sheet, const std::string& message,
                            const std::string& forbidden) {
    const std::string expected = message + kXmlFailureTag;
    XmlDocument target = testing::Loaded("<kept/>");
    EXPECT_FALSE(helper_.TransformDataToXmlDomDoc(sheet, target));
    EXPECT_EQ(helper_.GetLastError(), expected);
    EXPECT_EQ(target.Xml(), "<kept/>");
    std::string xml = "unchanged";
    EXPECT_FALSE(helper_.TransformDataToXml(sheet, xml));
    EXPECT_EQ(helper_.GetLastError(), expected);
    EXPECT_EQ(xml, "unchanged");
    EXPECT_FALSE(helper_.TransformData(sheet));
    EXPECT_EQ(helper_.GetLastError(), expected);
    EXPECT_EQ(Held(), kItems);
    std::string out = dir_.File("out.xml");
    EXPECT_FALSE(helper_.TransformDataToXmlFile(sheet, out));
    EXPECT_EQ(helper_.GetLastError(), expected);
    EXPECT_FALSE(std::filesystem::exists(out));
    if (!forbidden.empty()) {
      EXPECT_FALSE(std::filesystem::exists(forbidden)) << forbidden;
    }
  }
};

TEST_F(KvoXmlHelperSecurityTest, ExslDocumentFailsAndWritesNothing) {
  std::string written = dir_.File("exsl.txt");
  std::string sheet = WriteSheet(
      "exsl.xsl", Sheet("<xsl:template match=\"/\"><exsl:document href=\"" + written +
                            "\" method=\"text\">PWNED</exsl:document><out/></xsl:template>",
                        " xmlns:exsl=\"http://exslt.org/common\""
                        " extension-element-prefixes=\"exsl\""));
  ExpectAllMembersFail(sheet, "File write for " + NamedByXslt(written) + " refused", written);
}

TEST_F(KvoXmlHelperSecurityTest, ExslDocumentIntoANewDirectoryCreatesNothing) {
  std::string written = dir_.File("new-dir/deeper/exsl.txt");
  std::string sheet = WriteSheet(
      "exsl-dir.xsl", Sheet("<xsl:template match=\"/\"><exsl:document href=\"" + written +
                                "\" method=\"text\">PWNED</exsl:document><out/></xsl:template>",
                            " xmlns:exsl=\"http://exslt.org/common\""
                            " extension-element-prefixes=\"exsl\""));
  ExpectAllMembersFail(sheet, "File write for " + NamedByXslt(written) + " refused",
                       dir_.File("new-dir"));
}

TEST_F(KvoXmlHelperSecurityTest, XslDocumentFailsAndWritesNothing) {
  std::string written = dir_.File("xsl-document.txt");
  std::string sheet = WriteSheet(
      "xsl-document.xsl", Sheet("<xsl:template match=\"/\"><xsl:document href=\"" + written +
                                    "\" method=\"text\">PWNED</xsl:document><out/></xsl:template>",
                                "", "1.1"));
  ExpectAllMembersFail(sheet, "File write for " + NamedByXslt(written) + " refused", written);
}

TEST_F(KvoXmlHelperSecurityTest, SaxonOutputExtensionFailsAndWritesNothing) {
  std::string written = dir_.File("saxon.txt");
  std::string sheet = WriteSheet(
      "saxon.xsl", Sheet("<xsl:template match=\"/\"><saxon:output href=\"" + written +
                             "\" method=\"text\">PWNED</saxon:output><out/></xsl:template>",
                         " xmlns:saxon=\"http://icl.com/saxon\""
                         " extension-element-prefixes=\"saxon\""));
  ExpectAllMembersFail(sheet, "File write for " + NamedByXslt(written) + " refused", written);
}

TEST_F(KvoXmlHelperSecurityTest, UnknownWritingExtensionFailsAndWritesNothing) {
  std::string written = dir_.File("redirect.txt");
  std::string sheet = WriteSheet(
      "redirect.xsl", Sheet("<xsl:template match=\"/\"><redirect:write file=\"" + written +
                                "\">PWNED</redirect:write><out/></xsl:template>",
                            " xmlns:redirect=\"http://xml.apache.org/xalan/redirect\""
                            " extension-element-prefixes=\"redirect\""));
  ExpectAllMembersFail(sheet, "xsltApplySequenceConstructor: failed to find extension write",
                       written);
}

TEST_F(KvoXmlHelperSecurityTest, DocumentOfAUrlFailsWithoutConnecting) {
  testing::LoopbackListener listener;
  ASSERT_TRUE(listener.Ready());
  std::string url = listener.Url("/d.xml");
  std::string sheet = WriteSheet(
      "url.xsl", Sheet("<xsl:template match=\"/\"><out><xsl:value-of select=\"document('" + url +
                       "')/s\"/></out></xsl:template>"));
  ExpectAllMembersFail(sheet, "Network file read for " + url + " refused", "");
  EXPECT_FALSE(listener.WasContacted());
}

TEST_F(KvoXmlHelperSecurityTest, UrlIsRefusedEvenWhenLocalReadsAreAllowed) {
  DocumentReadingPlatform platform;
  ScopedPlatform installed(platform);
  testing::LoopbackListener listener;
  ASSERT_TRUE(listener.Ready());
  std::string url = listener.Url("/d.xml");
  std::string sheet = WriteSheet(
      "url.xsl", Sheet("<xsl:template match=\"/\"><out><xsl:value-of select=\"document('" + url +
                       "')/s\"/></out></xsl:template>"));
  ExpectAllMembersFail(sheet, "Network file read for " + url + " refused", "");
  EXPECT_FALSE(listener.WasContacted());
}

const char* const kSecret = "TOP-SECRET-CONTENT-42";

// A reference to the file `path` as a style sheet writes it: the path
// itself on POSIX, where an absolute path is a URI reference, a file URI on
// Windows, where "C:\..." is not one.
std::string FileReference(const std::string& path) {
#ifdef _WIN32
  std::string uri = "file:///";
  for (char c : path) uri += c == '\\' ? '/' : c;
  return uri;
#else
  return path;
#endif
}

TEST_F(KvoXmlHelperSecurityTest, DocumentOfAnotherLocalFileIsRefusedByDefault) {
  std::string side = FileReference(dir_.Write("side.xml", std::string("<s>") + kSecret + "</s>"));
  std::string sheet = WriteSheet(
      "read.xsl", Sheet("<xsl:template match=\"/\"><out><xsl:value-of select=\"document('" + side +
                        "')/s\"/></out></xsl:template>"));
  ExpectAllMembersFail(sheet, "Local file read for " + side + " refused", "");
}

TEST_F(KvoXmlHelperSecurityTest, DocumentOfAnotherLocalFileWorksWhenThePlatformAllowsIt) {
  DocumentReadingPlatform platform;
  ScopedPlatform installed(platform);
  std::string side = FileReference(dir_.Write("side.xml", std::string("<s>") + kSecret + "</s>"));
  // A relative reference is resolved against the style sheet's own location.
  std::string sheet = WriteSheet(
      "read.xsl", Sheet("<xsl:template match=\"/\"><out><xsl:value-of select=\"document('" + side +
                        "')/s\"/>|<xsl:value-of select=\"document('side.xml')/s\"/>"
                        "</out></xsl:template>"));
  std::string xml;
  EXPECT_TRUE(helper_.TransformDataToXml(sheet, xml)) << helper_.GetLastError();
  EXPECT_EQ(xml, std::string("<out>") + kSecret + "|" + kSecret + "</out>");
}

TEST_F(KvoXmlHelperSecurityTest, StyleSheetFileWithAnExternalEntityDoesNotReadIt) {
  std::string side = dir_.Write("entity.txt", kSecret);
  std::string sheet = WriteSheet(
      "entity.xsl", "<!DOCTYPE xsl:stylesheet [<!ENTITY secret SYSTEM \"file://" + side + "\">]>" +
                        Sheet("<xsl:template match=\"/\"><out>&secret;</out>"
                              "</xsl:template>"));
  std::string xml;
  helper_.TransformDataToXml(sheet, xml);
  EXPECT_EQ(xml.find(kSecret), std::string::npos) << xml;
}

}  // namespace
}  // namespace veld
