// Loading never reaches outside the text: no network, no external DTD, no
// external entity, and entity expansion stays bounded.
#include <cerrno>
#include <string>

#include <gtest/gtest.h>

#include "veld/xml/xml_document.h"

#include "support/loopback_listener.h"
#include "support/testing.h"

namespace veld {
namespace {

using testing::TempDir;

constexpr const char* kSecret = "TOP-SECRET-CONTENT-42";

std::string BillionLaughs() {
  std::string text = "<?xml version=\"1.0\"?>\n<!DOCTYPE lolz [\n <!ENTITY lol \"lol\">\n";
  for (int level = 1; level <= 9; ++level) {
    std::string previous = level == 1 ? "lol" : "lol" + std::to_string(level - 1);
    text += " <!ENTITY lol" + std::to_string(level) + " \"";
    for (int i = 0; i < 10; ++i) text += "&" + previous + ";";
    text += "\">\n";
  }
  text += "]>\n<lolz>&lol9;</lolz>\n";
  return text;
}

TEST(XmlSecurityTest, ExternalEntityNamingALocalFileIsNotExpanded) {
  TempDir dir;
  std::string secret = dir.Write("secret.txt", kSecret);
  const std::string text = "<?xml version=\"1.0\"?>\n<!DOCTYPE d [<!ENTITY x SYSTEM \"file://" +
                           secret + "\">]>\n<d>[&x;]<e a=\"1\">&x;</e></d>";
  XmlDocument doc;
  if (doc.LoadXml(text)) {
    EXPECT_EQ(doc.Xml().find(kSecret), std::string::npos) << doc.Xml();
    EXPECT_EQ(doc.DocumentElement().Text().find(kSecret), std::string::npos);
    EXPECT_EQ(doc.AsNode().Text().find(kSecret), std::string::npos);
    for (XmlNode node : doc.SelectNodes("//node()")) {
      EXPECT_EQ(node.Text().find(kSecret), std::string::npos);
    }
  }
  // Loading the same text from a file (relative system id this time) too.
  std::string path =
      dir.Write("xxe.xml", "<!DOCTYPE d [<!ENTITY x SYSTEM \"secret.txt\">]><d>&x;</d>");
  XmlDocument from_file;
  if (from_file.Load(path)) {
    EXPECT_EQ(from_file.Xml().find(kSecret), std::string::npos);
    EXPECT_EQ(from_file.DocumentElement().Text().find(kSecret), std::string::npos);
  }
}

TEST(XmlSecurityTest, ExternalEntityInAttributeValueIsRefused) {
  TempDir dir;
  std::string secret = dir.Write("secret.txt", kSecret);
  XmlDocument doc;
  EXPECT_FALSE(
      doc.LoadXml("<!DOCTYPE d [<!ENTITY x SYSTEM \"file://" + secret + "\">]><d a=\"&x;\"/>"));
  EXPECT_EQ(doc.Xml().find(kSecret), std::string::npos);
}

TEST(XmlSecurityTest, ExternalDtdIsNotLoaded) {
  TempDir dir;
  std::string dtd = dir.Write("ext.dtd", "<!ENTITY leak \"" + std::string(kSecret) + "\">");
  XmlDocument doc;
  // The entity would only be defined by the external DTD; unloaded, it is an
  // undeclared entity, which the parser tolerates in a document with an
  // external subset.
  if (doc.LoadXml("<!DOCTYPE d SYSTEM \"file://" + dtd + "\"><d>&leak;</d>")) {
    EXPECT_EQ(doc.Xml().find(kSecret), std::string::npos);
    EXPECT_EQ(doc.DocumentElement().Text().find(kSecret), std::string::npos);
  }
}

TEST(XmlSecurityTest, BillionLaughsFailsWithoutLargeMemory) {
  long before = testing::PeakMemoryKib();
  XmlDocument doc;
  EXPECT_FALSE(doc.LoadXml(BillionLaughs()));
  EXPECT_FALSE(doc.ParseError().Reason().empty());
  EXPECT_TRUE(doc.IsEmpty());
  // A full expansion would need gigabytes.
  EXPECT_LT(testing::PeakMemoryKib() - before, 256 * 1024);
}

// One large entity referenced many times: each reference is small, but
// reading the text would expand it thousands of times.
std::string ManyReferencesToALargeEntity(int references) {
  std::string text = "<!DOCTYPE items [<!ENTITY e \"" + std::string(100000, 'x') +
                     "\">]><items><item name=\"a\" value=\"";
  for (int i = 0; i < references; ++i) text += "&e;";
  return text + "\"/></items>";
}

constexpr char kExpansionRefused[] =
    "The entity references of the document expand to more than ten times its size.";

TEST(XmlSecurityTest, ManyReferencesToALargeEntityAreRefusedAtLoad) {
  long before = testing::PeakMemoryKib();
  XmlDocument doc;
  EXPECT_FALSE(doc.LoadXml(ManyReferencesToALargeEntity(20000)));
  EXPECT_EQ(doc.ParseError().Reason(), kExpansionRefused);
  EXPECT_TRUE(doc.IsEmpty());
  EXPECT_LT(testing::PeakMemoryKib() - before, 256 * 1024);
}

TEST(XmlSecurityTest, ManyReferencesToALargeEntityInAFileAreRefused) {
  TempDir dir;
  XmlDocument doc;
  EXPECT_FALSE(doc.Load(dir.Write("quad.xml", ManyReferencesToALargeEntity(200))));
  EXPECT_EQ(doc.ParseError().Reason(), kExpansionRefused);
}

TEST(XmlSecurityTest, EntityExpansionWithinTenTimesTheDocumentLoads) {
  XmlDocument doc;
  // 100 KB of entity, referenced 9 times: under ten times the document.
  ASSERT_TRUE(doc.LoadXml(ManyReferencesToALargeEntity(9))) << doc.ParseError().Reason();
  EXPECT_EQ(doc.SelectSingleNode("//item").GetAttribute("value").size(), 900000u);
}

TEST(XmlSecurityTest, SmallDocumentsMayExpandToOneMebibyte) {
  std::string text = "<!DOCTYPE r [<!ENTITY e \"" + std::string(1000, 'y') + "\">]><r>";
  for (int i = 0; i < 1000; ++i) text += "&e;";
  XmlDocument doc;
  ASSERT_TRUE(doc.LoadXml(text + "</r>")) << doc.ParseError().Reason();
  EXPECT_EQ(doc.DocumentElement().Text().size(), 1000000u);
}

TEST(XmlSecurityTest, BillionLaughsFromAFileFails) {
  TempDir dir;
  XmlDocument doc;
  EXPECT_FALSE(doc.Load(dir.Write("lol.xml", BillionLaughs())));
  EXPECT_FALSE(doc.ParseError().Reason().empty());
}

TEST(XmlSecurityTest, NetworkDoctypeAndEntitiesAreNeverFetched) {
  testing::LoopbackListener listener;
  ASSERT_TRUE(listener.Ready());
  const std::string base = "http://127.0.0.1:" + std::to_string(listener.Port());
  const std::string text = "<?xml version=\"1.0\"?>\n<!DOCTYPE r SYSTEM \"" + base +
                           "/r.dtd\" [<!ENTITY e SYSTEM \"" + base +
                           "/e.xml\"><!ENTITY % p SYSTEM \"" + base + "/p.ent\"> %p;]>\n<r>&e;</r>";
  XmlDocument doc;
  doc.LoadXml(text);
  XmlDocument plain;
  EXPECT_TRUE(plain.LoadXml("<!DOCTYPE r SYSTEM \"" + base + "/r.dtd\"><r/>"))
      << plain.ParseError().Reason();
  EXPECT_EQ(plain.Xml().find("<r/>"), plain.Xml().size() - 4);
  TempDir dir;
  XmlDocument from_file;
  from_file.Load(dir.Write("net.xml", text));
  EXPECT_FALSE(listener.WasContacted());
}

}  // namespace
}  // namespace veld
