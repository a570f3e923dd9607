// Transforms of real-world style sheets through KvoXmlHelper give the same
// result tree as the xsltproc tool on the same input. Both results are
// compared in canonical form (C14N 1.0 without comments).
//
// "The same input" is the document as the helper holds it: the input file is
// loaded and saved again through XmlDocument (which drops whitespace-only
// text between elements, as the classic DOM does) and xsltproc reads that.
#include <cctype>
#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <libxml/c14n.h>
#include <libxml/parser.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "veld/xml/xml_document.h"
#include "veld/xmlhelper/kvo_xml_helper.h"

#include "support/testing.h"

extern char** environ;

namespace veld {
namespace {

using testing::ReadFile;
using testing::TempDir;

const std::string kXsltproc = VELD_XSLTPROC;
const std::string kDataDir = VELD_XSLT_DATA_DIR;

std::string DataFile(const std::string& name) { return kDataDir + "/" + name; }

// Runs xsltproc on `sheet` and `input`, writing its result to `output`.
// Returns the exit status (-1 when it could not be started).
int RunXsltproc(const std::string& sheet, const std::string& input, const std::string& output) {
  std::vector<std::string> args = {kXsltproc, "--nonet", "--novalid", "-o", output, sheet, input};
  std::vector<char*> argv;
  for (std::string& arg : args) argv.push_back(arg.data());
  argv.push_back(nullptr);
  pid_t pid = 0;
  if (posix_spawn(&pid, kXsltproc.c_str(), nullptr, nullptr, argv.data(), environ) != 0) {
    return -1;
  }
  int status = 0;
  if (waitpid(pid, &status, 0) != pid) return -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// The canonical form of an XML text; "" (with a test failure) when it does
// not parse.
std::string Canonical(const std::string& text, const std::string& what) {
  xmlDocPtr doc = xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr,
                                XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
  if (doc == nullptr) {
    ADD_FAILURE() << what << " does not parse:\n" << text;
    return "";
  }
  xmlChar* canonical = nullptr;
  int length = xmlC14NDocDumpMemory(doc, nullptr, XML_C14N_1_0, nullptr, 0, &canonical);
  std::string result;
  if (length >= 0 && canonical != nullptr) {
    result.assign(reinterpret_cast<const char*>(canonical), static_cast<size_t>(length));
  } else {
    ADD_FAILURE() << what << " cannot be canonicalised";
  }
  xmlFree(canonical);
  xmlFreeDoc(doc);
  return result;
}

struct Case {
  const char* sheet;
  const char* input;
};

void PrintTo(const Case& c, std::ostream* out) { *out << c.sheet << " on " << c.input; }

class XsltprocConformanceTest : public ::testing::TestWithParam<Case> {};

TEST(XsltprocToolTest, XsltprocWasFoundAtConfigureTime) {
  ASSERT_FALSE(kXsltproc.empty()) << "xsltproc was not found when the build was configured; "
                                     "scripts/setup.sh installs it";
  EXPECT_TRUE(std::filesystem::exists(kXsltproc)) << kXsltproc;
}

TEST_P(XsltprocConformanceTest, ResultTreeMatchesXsltproc) {
  ASSERT_FALSE(kXsltproc.empty()) << "xsltproc was not found when the build was configured";
  const std::string sheet = DataFile(GetParam().sheet);
  const std::string input = DataFile(GetParam().input);
  TempDir dir;

  XmlDocument held;
  ASSERT_TRUE(held.Load(input)) << held.ParseError().Reason();
  const std::string normalised = dir.File("input.xml");
  held.Save(normalised);
  const std::string expected_file = dir.File("expected.xml");
  ASSERT_EQ(RunXsltproc(sheet, normalised, expected_file), 0);
  const std::string expected = Canonical(ReadFile(expected_file), "the result of xsltproc");
  ASSERT_FALSE(expected.empty());

  KvoXmlHelper helper;
  ASSERT_TRUE(helper.LoadFile(input)) << helper.GetLastError();

  std::string text;
  ASSERT_TRUE(helper.TransformDataToXml(sheet, text)) << helper.GetLastError();
  EXPECT_EQ(Canonical(text, "TransformDataToXml"), expected);

  XmlDocument target;
  ASSERT_TRUE(helper.TransformDataToXmlDomDoc(sheet, target)) << helper.GetLastError();
  EXPECT_EQ(Canonical(target.Xml(), "TransformDataToXmlDomDoc"), expected);

  const std::string file = dir.File("ours.xml");
  ASSERT_TRUE(helper.TransformDataToXmlFile(sheet, file)) << helper.GetLastError();
  EXPECT_EQ(Canonical(ReadFile(file), "TransformDataToXmlFile"), expected);

  ASSERT_TRUE(helper.TransformData(sheet)) << helper.GetLastError();
  std::string held_text;
  ASSERT_TRUE(helper.GetXmlByXPath("/*", held_text));
  EXPECT_EQ(Canonical(held_text, "TransformData"), expected);
}

INSTANTIATE_TEST_SUITE_P(
    StyleSheets, XsltprocConformanceTest,
    ::testing::Values(Case{"identity.xsl", "catalog.xml"}, Case{"group_by_key.xsl", "catalog.xml"},
                      Case{"sort.xsl", "catalog.xml"}, Case{"number_format.xsl", "catalog.xml"},
                      Case{"named_templates.xsl", "orders.xml"},
                      Case{"parameters.xsl", "catalog.xml"}, Case{"modes.xsl", "manual.xml"},
                      Case{"copy_of.xsl", "catalog.xml"}, Case{"computed_names.xsl", "catalog.xml"},
                      Case{"strings.xsl", "contacts.xml"}, Case{"numbering.xsl", "manual.xml"},
                      Case{"key_join.xsl", "orders.xml"}, Case{"namespaces.xsl", "contacts.xml"},
                      Case{"identity.xsl", "contacts.xml"}, Case{"identity.xsl", "orders.xml"}),
    [](const ::testing::TestParamInfo<Case>& info) {
      std::string name = std::string(info.param.sheet) + "_on_" + info.param.input;
      for (char& c : name) {
        if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
      }
      return name;
    });

}  // namespace
}  // namespace veld
