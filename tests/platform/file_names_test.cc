// File names are UTF-8 in the interface on every platform: names with
// characters outside any one code page (here a directory "Zürich-東京" and
// files "café-Ωμέγα") save, load and export. On Windows they reach the system
// as UTF-16; on POSIX as the bytes given.
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "veld/datasets/kvo_dataset_o.h"
#include "veld/options/kvo_option.h"
#include "veld/xml/xml_document.h"
#include "veld/xmlhelper/kvo_xml_helper.h"

#include "support/sqlite_file.h"
#include "support/testing.h"

namespace veld {
namespace {

class FileNamesTest : public ::testing::Test {
 protected:
  void SetUp() override {
    std::filesystem::create_directory(Path(dir_name_));
    ASSERT_TRUE(std::filesystem::is_directory(Path(dir_name_)));
  }

  // The UTF-8 name `name` inside the non-ASCII directory.
  std::string Inside(const std::string& name) const { return dir_name_ + "/" + name; }

  static std::filesystem::path Path(const std::string& utf8) { return testing::Utf8Path(utf8); }

  testing::TempDir dir_;
  const std::string dir_name_ = dir_.File("Z\xC3\xBCrich-\xE6\x9D\xB1\xE4\xBA\xAC");
  const std::string stem_ = "caf\xC3\xA9-\xCE\xA9\xCE\xBC\xCE\xAD\xCE\xB3\xCE\xB1";
};

TEST_F(FileNamesTest, OptionFileWithNonAsciiNameSavesAndLoadsBack) {
  const std::string file = Inside(stem_ + ".xml");
  KvoOption option;
  ASSERT_TRUE(option.SetOption("city", "Z\xC3\xBCrich", "main", "general"));
  ASSERT_TRUE(option.SaveOption(file)) << option.GetLastError();
  EXPECT_TRUE(std::filesystem::exists(Path(file)));

  KvoOption loaded;
  ASSERT_TRUE(loaded.LoadOption(file)) << loaded.GetLastError();
  EXPECT_EQ(loaded.GetOption("city", "main", "general"), "Z\xC3\xBCrich");
}

TEST_F(FileNamesTest, DatasetFileWithNonAsciiNameSavesParsesAndExports) {
  const std::string file = Inside(stem_ + ".xml");
  KvoDatasetO dataset;
  ASSERT_TRUE(dataset.Parse(
      "<dataset><data guid=\"D\"><row><col name=\"n\" value=\"7\"/></row></data></dataset>"));
  ASSERT_TRUE(dataset.SaveToFile(file)) << dataset.GetLastError();

  KvoDatasetO parsed;
  ASSERT_TRUE(parsed.ParseFile(file)) << parsed.GetLastError();
  EXPECT_EQ(parsed.GetDataRowCount("D"), 1);

  const std::string db = Inside(stem_ + ".db");
  testing::SqliteExec(db, "CREATE TABLE t (n INTEGER)");
  KvoDatasetO exporter;
  ASSERT_TRUE(exporter.ExportFileToMDBTable(file, "D", db, "t")) << exporter.GetLastError();
  EXPECT_EQ(testing::SqliteRows(db, "SELECT n FROM t"), (testing::SqliteRowList{{"7"}}));
}

TEST_F(FileNamesTest, DocumentsAndStyleSheetsWithNonAsciiNamesLoad) {
  const std::string file = Inside(stem_ + ".xml");
  XmlDocument doc;
  ASSERT_TRUE(doc.LoadXml("<r a=\"\xC3\xA9\"/>"));
  doc.Save(file);
  XmlDocument loaded;
  ASSERT_TRUE(loaded.Load(file));
  EXPECT_EQ(loaded.Xml(), "<r a=\"\xC3\xA9\"/>");

  const std::string sheet = Inside(stem_ + ".xsl");
  const std::string out = Inside(stem_ + "-out.xml");
  XmlDocument xsl;
  ASSERT_TRUE(xsl.LoadXml(
      "<xsl:stylesheet version=\"1.0\" xmlns:xsl=\"http://www.w3.org/1999/XSL/Transform\">"
      "<xsl:template match=\"/\"><out><xsl:value-of select=\"r/@a\"/></out></xsl:template>"
      "</xsl:stylesheet>"));
  xsl.Save(sheet);
  KvoXmlHelper helper;
  ASSERT_TRUE(helper.LoadFile(file)) << helper.GetLastError();
  ASSERT_TRUE(helper.TransformDataToXmlFile(sheet, out)) << helper.GetLastError();
  EXPECT_EQ(testing::ReadFile(out), "<out>\xC3\xA9</out>");
}

TEST_F(FileNamesTest, MissingNonAsciiFileIsReportedNotFoundByItsName) {
  const std::string missing = Inside(stem_ + "-missing.xml");
  KvoOption option;
  EXPECT_FALSE(option.LoadOption(missing));
  EXPECT_EQ(option.GetLastError(), "Option file not found - " + missing + ".");
}

}  // namespace
}  // namespace veld
