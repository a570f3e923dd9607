#include "veld/datasets/kvo_dataset_o.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "datasets/dataset_access.h"
#include "datasets/dataset_test_support.h"
#include "veld/runtime/automation_error.h"

#include "support/testing.h"

namespace veld {
namespace {

using testing::CountingGuidPlatform;

constexpr char kXPathErrorTag[] = "(ERR#: -2147467259)";

const char kTwoRows[] =
    "<data guid=\"D1\"><row guid=\"R1\"><col name=\"code\" value=\"A1\"/>"
    "<col name=\"title\" value=\"First\"/></row><row guid=\"R2\"><col name=\"code\" "
    "value=\"B2\"/><col name=\"title\" value=\"Second\"/></row></data>";

class KvoDatasetOTest : public ::testing::Test {
 protected:
  std::string Saved() {
    std::string text;
    EXPECT_TRUE(ds_.Save(text));
    return text;
  }
  bool EndsWith(const std::string& text, const std::string& tail) {
    return text.size() >= tail.size() &&
           text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
  }

  CountingGuidPlatform guids_;
  ScopedPlatform scoped_{guids_};
  KvoDatasetO ds_;
};

std::string G(uint32_t n) { return CountingGuidPlatform::Text(n); }

// --- Documents ---

TEST_F(KvoDatasetOTest, NewObjectHoldsEmptyDatasetRootAndNoError) {
  EXPECT_EQ(Saved(), "<dataset/>");
  EXPECT_EQ(ds_.GetLastError(), "");
  EXPECT_EQ(ds_.GetDataCount(), 0);
}

TEST_F(KvoDatasetOTest, FirstAddDataCreatesOneDataChildOfTheRoot) {
  Variant id;
  EXPECT_TRUE(ds_.AddData("", "", "", &id));
  EXPECT_EQ(id.ToString(), G(1));
  EXPECT_EQ(Saved(), "<dataset><data guid=\"" + G(1) + "\"/></dataset>");
}

TEST_F(KvoDatasetOTest, ResetAfterFailureGivesEmptyRootAndClearsError) {
  EXPECT_TRUE(ds_.AddData("X"));
  std::string text;
  EXPECT_FALSE(ds_.GetData("nope", text));
  EXPECT_NE(ds_.GetLastError(), "");
  ds_.Reset();
  EXPECT_EQ(ds_.GetLastError(), "");
  EXPECT_EQ(Saved(), "<dataset/>");
}

TEST_F(KvoDatasetOTest, DocumentWithAnotherRootNameKeepsWorking) {
  datasets_internal::Access::Document(ds_).LoadXml(
      "<table><data guid=\"T\"><row guid=\"r\"><col name=\"a\" value=\"1\"/></row></data></table>");
  EXPECT_EQ(ds_.GetDataCount(), 1);
  std::string row;
  EXPECT_TRUE(ds_.GetDataRow("t", "r", row));
  EXPECT_EQ(row, "<row guid=\"r\"><col name=\"a\" value=\"1\"/></row>");
  EXPECT_TRUE(ds_.AddDataRow("T", "s", "<row><col name=\"a\" value=\"2\"/></row>"));
  EXPECT_EQ(ds_.GetDataRowCount("T"), 2);
  EXPECT_EQ(Saved(),
            "<table><data guid=\"T\"><row guid=\"r\"><col name=\"a\" value=\"1\"/></row>"
            "<row guid=\"s\"><col name=\"a\" value=\"2\"/></row></data></table>");
}

TEST_F(KvoDatasetOTest, ExistDataIgnoresCaseAndGetExactDataIdGivesStoredSpelling) {
  EXPECT_TRUE(ds_.AddData("ABC"));
  EXPECT_TRUE(ds_.ExistData("abc"));
  EXPECT_EQ(ds_.GetExactDataID("abc"), "ABC");
  EXPECT_FALSE(ds_.ExistData("abd"));
  EXPECT_EQ(ds_.GetExactDataID("abd"), "");
  EXPECT_EQ(ds_.GetExactDataID(""), "");
  EXPECT_EQ(ds_.GetLastError(), "");
}

TEST_F(KvoDatasetOTest, DataIdWithTrailingBlankIsFoundTrimmedButStoredWithTheBlank) {
  EXPECT_TRUE(ds_.AddData("abc"));
  // Found by its trimmed form.
  EXPECT_TRUE(ds_.AddDataRow("abc ", "r1", "<row><col name=\"a\" value=\"1\"/></row>"));
  EXPECT_EQ(ds_.GetDataRowCount("abc"), 1);
  // A new element keeps the blank, and can then not be reached by it.
  EXPECT_FALSE(ds_.AddDataRow("xyz ", "r1", "<row><col name=\"a\" value=\"1\"/></row>"));
  EXPECT_EQ(ds_.GetLastError(), "Specified data/row cannot be found.");
  EXPECT_EQ(Saved(),
            "<dataset><data guid=\"abc\"><row guid=\"r1\"><col name=\"a\" value=\"1\"/></row>"
            "</data><data guid=\"xyz \"><row guid=\"r1\"/></data></dataset>");
}

TEST_F(KvoDatasetOTest, RowTextWhoseOnlyRowIsAMarkerAddsNoRow) {
  EXPECT_TRUE(
      ds_.AddData("D", "<data><row index=\"0\"><col name=\"a\" value=\"1\"/></row></data>"));
  EXPECT_EQ(ds_.GetDataRowCount("D"), 0);
  EXPECT_EQ(Saved(), "<dataset><data guid=\"D\"/></dataset>");
}

TEST_F(KvoDatasetOTest, IdWithApostropheFailsWithTheXPathError) {
  EXPECT_TRUE(ds_.AddData("D"));
  std::string text;
  EXPECT_FALSE(ds_.GetData("a'b", text));
  EXPECT_TRUE(EndsWith(ds_.GetLastError(), kXPathErrorTag)) << ds_.GetLastError();
  EXPECT_FALSE(ds_.GetDataRow("D", "r'1", text));
  EXPECT_TRUE(EndsWith(ds_.GetLastError(), kXPathErrorTag)) << ds_.GetLastError();
  EXPECT_EQ(ds_.GetDataRowCount("x'y"), -1);
  EXPECT_TRUE(EndsWith(ds_.GetLastError(), kXPathErrorTag));
}

TEST_F(KvoDatasetOTest, IdWithApostropheThatFormsAValidExpressionSelectsWhatTheExpressionSays) {
  EXPECT_TRUE(ds_.AddData("D", kTwoRows, "code"));
  std::string text;
  // The row ID is put into the expression as it is.
  EXPECT_TRUE(ds_.GetDataRow("D", "x' or @guid='B2", text));
  EXPECT_EQ(text.substr(0, 15), "<row guid=\"B2\">");
}

// --- Whole documents ---

TEST_F(KvoDatasetOTest, ParseGivesRowsNewGuidsEvenWithARowGuidColumn) {
  EXPECT_TRUE(ds_.Parse(std::string("<dataset>") + kTwoRows + "</dataset>", "code"));
  EXPECT_EQ(Saved(), "<dataset><data guid=\"D1\"><row guid=\"" + G(1) +
                         "\"><col name=\"code\" value=\"A1\"/><col name=\"title\" "
                         "value=\"First\"/></row><row guid=\"" +
                         G(2) +
                         "\"><col name=\"code\" value=\"B2\"/><col name=\"title\" "
                         "value=\"Second\"/></row></data></dataset>");
}

TEST_F(KvoDatasetOTest, ParseDropsMarkerRowsAndOtherContent) {
  EXPECT_TRUE(ds_.Parse(
      "<?pi x?><!--c--><root a=\"1\"><data guid=\"d\" extra=\"e\"><row index=\"0\"><col "
      "name=\"h\"/></row><row index=\"2\" guid=\"x\"><col name=\"a\" value=\"1\"/>text<other/>"
      "</row></data><note/></root>"));
  EXPECT_EQ(Saved(), "<dataset><data guid=\"d\"><row guid=\"" + G(1) +
                         "\"><col name=\"a\" value=\"1\"/></row></data></dataset>");
}

TEST_F(KvoDatasetOTest, ParseWithEmptyPathTakesOnlyDataChildrenOfTheRoot) {
  const std::string text = "<dataset><data guid=\"A\"/><group><data guid=\"B\"/></group></dataset>";
  EXPECT_TRUE(ds_.Parse(text, "", ""));
  EXPECT_EQ(Saved(), "<dataset><data guid=\"A\"/></dataset>");
  EXPECT_TRUE(ds_.Parse(text));
  EXPECT_EQ(Saved(), "<dataset><data guid=\"A\"/><data guid=\"B\"/></dataset>");
}

TEST_F(KvoDatasetOTest, ParseOfNestedDataElementsAddsEachAsChildOfTheRoot) {
  EXPECT_TRUE(ds_.Parse(
      "<dataset><data guid=\"A\"><row><col name=\"a\" value=\"1\"/></row><x><data guid=\"B\">"
      "<row><col name=\"b\" value=\"2\"/></row></data></x></data></dataset>"));
  EXPECT_EQ(ds_.GetDataCount(), 2);
  EXPECT_EQ(ds_.GetDataRowCount("A"), 2);
  EXPECT_EQ(ds_.GetDataRowCount("B"), 1);
}

TEST_F(KvoDatasetOTest, ParseOfMalformedTextFailsAndLeavesAnEmptyDocument) {
  EXPECT_TRUE(ds_.AddData("X"));
  EXPECT_FALSE(ds_.Parse("<dataset><data>"));
  EXPECT_EQ(ds_.GetLastError(), "Failed to load dataset xml.");
  EXPECT_EQ(Saved(), "<dataset/>");
  EXPECT_FALSE(ds_.Parse(""));
  EXPECT_EQ(ds_.GetLastError(), "Failed to load dataset xml.");
}

TEST_F(KvoDatasetOTest, ParseWithBadPathRecordsTheXPathError) {
  EXPECT_FALSE(ds_.Parse("<dataset><data guid=\"a\"/></dataset>", "", "//data["));
  EXPECT_TRUE(EndsWith(ds_.GetLastError(), kXPathErrorTag));
  EXPECT_EQ(Saved(), "<dataset/>");
}

TEST_F(KvoDatasetOTest, ParseFileOfMissingFileFails) {
  testing::TempDir dir;
  EXPECT_FALSE(ds_.ParseFile(dir.File("missing.xml")));
  EXPECT_EQ(ds_.GetLastError(), "Failed to load dataset file.");
}

TEST_F(KvoDatasetOTest, SaveToFileAndParseFileRoundTrip) {
  testing::TempDir dir;
  EXPECT_TRUE(ds_.AddData("D", kTwoRows));
  EXPECT_TRUE(ds_.SaveToFile(dir.File("d.xml")));
  KvoDatasetO other;
  EXPECT_TRUE(other.ParseFile(dir.File("d.xml")));
  EXPECT_EQ(other.GetDataRowCount("D"), 2);
  EXPECT_FALSE(ds_.SaveToFile(dir.File("no/such/dir/d.xml")));
  EXPECT_NE(ds_.GetLastError().find("(ERR#: "), std::string::npos);
}

// --- Data operations ---

TEST_F(KvoDatasetOTest, GetDataIdWithIndexZeroOrPastTheEndFails) {
  EXPECT_TRUE(ds_.AddData("A"));
  std::string id = "x";
  EXPECT_FALSE(ds_.GetDataID(0, id));
  EXPECT_EQ(id, "");
  EXPECT_EQ(ds_.GetLastError(), "Invalid data index (0).");
  EXPECT_FALSE(ds_.GetDataID(2, id));
  EXPECT_EQ(ds_.GetLastError(), "Specified data index (2) out of boundary.");
  EXPECT_FALSE(ds_.GetDataID(-3, id));
  EXPECT_EQ(ds_.GetLastError(), "Invalid data index (-3).");
  EXPECT_TRUE(ds_.GetDataID(1, id));
  EXPECT_EQ(id, "A");
  EXPECT_EQ(ds_.GetLastError(), "");
}

TEST_F(KvoDatasetOTest, AddDataTwiceWithoutIdMakesTwoElementsWithGuidReplacesRows) {
  const std::string rows = "<data><row><col name=\"a\" value=\"1\"/></row></data>";
  EXPECT_TRUE(ds_.AddData("", rows));
  EXPECT_TRUE(ds_.AddData("", rows));
  EXPECT_EQ(ds_.GetDataCount(), 2);
  std::string first, second;
  ds_.GetDataID(1, first);
  ds_.GetDataID(2, second);
  EXPECT_NE(first, second);

  KvoDatasetO other;
  const std::string with_guid = "<data guid=\"G\"><row><col name=\"a\" value=\"1\"/></row></data>";
  EXPECT_TRUE(other.AddData("", with_guid));
  EXPECT_TRUE(other.AddData("", with_guid));
  EXPECT_EQ(other.GetDataCount(), 1);
  EXPECT_EQ(other.GetDataRowCount("G"), 1);
}

TEST_F(KvoDatasetOTest, GetDataByIndexOfSecondCaseVariantReturnsTheFirst) {
  EXPECT_TRUE(ds_.AddData("", "<data guid=\"ab\"><row guid=\"1\"/></data>"));
  datasets_internal::Access::Document(ds_).LoadXml(
      "<dataset><data guid=\"ab\"><row guid=\"1\"/></data><data guid=\"AB\"/></dataset>");
  std::string text;
  EXPECT_TRUE(ds_.GetDataByIndex(2, text));
  EXPECT_EQ(text, "<data guid=\"ab\"><row guid=\"1\"/></data>");
}

TEST_F(KvoDatasetOTest, UpdateDataWithOnlyMarkerRowsEmptiesTheElement) {
  EXPECT_TRUE(ds_.AddData("D", kTwoRows));
  EXPECT_TRUE(ds_.UpdateData("D", "<data><row index=\"0\"/><row index=\"0\"/></data>"));
  EXPECT_EQ(Saved(), "<dataset><data guid=\"D\"/></dataset>");
}

TEST_F(KvoDatasetOTest, UpdateDataUsesRowGuidColumnAndDropsRowAttributes) {
  EXPECT_TRUE(ds_.UpdateData("N", kTwoRows, "code"));
  EXPECT_EQ(Saved(),
            "<dataset><data guid=\"N\"><row guid=\"A1\"><col name=\"code\" value=\"A1\"/><col "
            "name=\"title\" value=\"First\"/></row><row guid=\"B2\"><col name=\"code\" "
            "value=\"B2\"/><col name=\"title\" value=\"Second\"/></row></data></dataset>");
}

TEST_F(KvoDatasetOTest, UpdateDataOfMalformedTextFailsAfterRemovingOldRows) {
  EXPECT_TRUE(ds_.AddData("D", kTwoRows));
  EXPECT_FALSE(ds_.UpdateData("D", "<data>"));
  EXPECT_EQ(ds_.GetLastError(), "Failed to load data xml.");
  EXPECT_EQ(ds_.GetDataRowCount("D"), 0);
}

TEST_F(KvoDatasetOTest, UpdateDataWithoutRowsDoesNotCreateTheElement) {
  EXPECT_TRUE(ds_.UpdateData("N", "<data/>"));
  EXPECT_EQ(ds_.GetDataCount(), 0);
}

TEST_F(KvoDatasetOTest, AddDataWithTextReadsDataIdFromText) {
  Variant id;
  EXPECT_TRUE(ds_.AddData("  ", kTwoRows, "", &id));
  EXPECT_EQ(id.ToString(), "D1");
  EXPECT_FALSE(ds_.AddData("", "<data", "", &id));
  EXPECT_EQ(ds_.GetLastError(), "Failed to load data xml.");
  EXPECT_EQ(id.ToString(), "");
}

TEST_F(KvoDatasetOTest, DeleteDataOfUnknownIdSucceedsAndDeleteByIndexRemoves) {
  EXPECT_TRUE(ds_.AddData("A"));
  EXPECT_TRUE(ds_.AddData("B"));
  EXPECT_TRUE(ds_.DeleteData("zzz"));
  EXPECT_EQ(ds_.GetDataCount(), 2);
  EXPECT_TRUE(ds_.DeleteData("a"));
  EXPECT_TRUE(ds_.DeleteDataByIndex(1));
  EXPECT_EQ(Saved(), "<dataset/>");
  EXPECT_FALSE(ds_.DeleteDataByIndex(1));
  EXPECT_EQ(ds_.GetLastError(), "Specified data index (1) out of boundary.");
}

TEST_F(KvoDatasetOTest, DeleteDataWithEmptyIdRemovesEveryDataElement) {
  EXPECT_TRUE(ds_.AddData("A"));
  EXPECT_TRUE(ds_.AddData("B"));
  EXPECT_TRUE(ds_.DeleteData(""));
  EXPECT_EQ(ds_.GetDataCount(), 0);
}

TEST_F(KvoDatasetOTest, GetDataOfUnknownIdFails) {
  std::string text = "x";
  EXPECT_FALSE(ds_.GetData("nope", text));
  EXPECT_EQ(text, "");
  EXPECT_EQ(ds_.GetLastError(), "Specified data id cannot be found.");
}

TEST_F(KvoDatasetOTest, UpdateDataByIndexReplacesRows) {
  EXPECT_TRUE(ds_.AddData("D", kTwoRows));
  EXPECT_TRUE(ds_.UpdateDataByIndex(1, "<data><row><col name=\"z\" value=\"9\"/></row></data>"));
  EXPECT_EQ(ds_.GetDataRowCountByIndex(1), 1);
  EXPECT_EQ(ds_.GetDataRowCountByIndex(2), -1);
}

// --- Rows ---

TEST_F(KvoDatasetOTest, AddDataRowWithGuidColumnCreatesOrReplacesThatRow) {
  const std::string row =
      "<row><col name=\"code\" value=\"A1\"/><col name=\"n\" value=\"1\"/></row>";
  EXPECT_TRUE(ds_.AddDataRow("D", "", row, "code"));
  EXPECT_TRUE(ds_.AddDataRow("D", "", "<row><col name=\"code\" value=\"A1\"/></row>", "code"));
  EXPECT_EQ(Saved(),
            "<dataset><data guid=\"D\"><row guid=\"A1\"><col name=\"code\" value=\"A1\"/></row>"
            "</data></dataset>");
}

TEST_F(KvoDatasetOTest, AddDataRowToMissingDataCreatesDataAndRow) {
  EXPECT_TRUE(ds_.AddDataRow("New", "r", "<row><col name=\"a\" value=\"1\"/></row>"));
  EXPECT_EQ(Saved(),
            "<dataset><data guid=\"New\"><row guid=\"r\"><col name=\"a\" value=\"1\"/></row>"
            "</data></dataset>");
}

TEST_F(KvoDatasetOTest, AddDataRowWithBlankIdOrTextFails) {
  EXPECT_FALSE(ds_.AddDataRow(" ", "r", "<row/>"));
  EXPECT_EQ(ds_.GetLastError(), "Invalid data ID or row content to add.");
  EXPECT_FALSE(ds_.AddDataRow("D", "r", "  "));
  EXPECT_EQ(ds_.GetLastError(), "Invalid data ID or row content to add.");
  EXPECT_EQ(Saved(), "<dataset/>");
}

TEST_F(KvoDatasetOTest, AddDataRowOfMalformedTextLeavesTheNewEmptyRow) {
  EXPECT_FALSE(ds_.AddDataRow("D", "r", "<row>"));
  EXPECT_EQ(ds_.GetLastError(), "Failed to load data row xml.");
  EXPECT_EQ(Saved(), "<dataset><data guid=\"D\"><row guid=\"r\"/></data></dataset>");
  // With a GUID column the text is read first, so nothing is created.
  KvoDatasetO other;
  EXPECT_FALSE(other.AddDataRow("D", "", "<row>", "code"));
  EXPECT_EQ(other.GetLastError(), "Failed to load data row xml.");
  std::string text;
  other.Save(text);
  EXPECT_EQ(text, "<dataset/>");
}

TEST_F(KvoDatasetOTest, AddDataRowWithoutIdGetsANewGuid) {
  EXPECT_TRUE(ds_.AddDataRow("D", "", "<row><col name=\"a\" value=\"1\"/></row>", "missing"));
  std::string id;
  EXPECT_TRUE(ds_.GetDataRowID("D", 1, id));
  EXPECT_EQ(id, G(1));
}

TEST_F(KvoDatasetOTest, UpdateDataRowWithTwoRowsCopiesOnlyTheFirstRowsCols) {
  EXPECT_TRUE(ds_.AddData("D", kTwoRows, "code"));
  EXPECT_TRUE(ds_.UpdateDataRow("D", "A1",
                                "<rows><row guid=\"zz\" a=\"b\"><col name=\"x\" value=\"1\"/>"
                                "</row><row><col name=\"y\" value=\"2\"/></row></rows>"));
  std::string row;
  EXPECT_TRUE(ds_.GetDataRow("D", "A1", row));
  EXPECT_EQ(row, "<row guid=\"A1\"><col name=\"x\" value=\"1\"/></row>");
  EXPECT_TRUE(ds_.UpdateDataRow("D", "A1",
                                "<data><row><col name=\"x\" value=\"1\"/></row>"
                                "<row><col name=\"y\" value=\"2\"/></row></data>"));
  EXPECT_TRUE(ds_.GetDataRow("D", "A1", row));
  EXPECT_EQ(row, "<row guid=\"A1\"><col name=\"x\" value=\"1\"/></row>");
}

TEST_F(KvoDatasetOTest, UpdateDataRowChecksItsArguments) {
  EXPECT_TRUE(ds_.AddData("D", kTwoRows, "code"));
  EXPECT_FALSE(ds_.UpdateDataRow("D", " ", "<row/>"));
  EXPECT_EQ(ds_.GetLastError(), "Invalid data/row ID to update.");
  EXPECT_FALSE(ds_.UpdateDataRow("D", "nope", "<row/>"));
  EXPECT_EQ(ds_.GetLastError(), "Specified data/row cannot be found.");
  EXPECT_FALSE(ds_.UpdateDataRow("D", "A1", "<row"));
  EXPECT_EQ(ds_.GetLastError(), "Failed to load data row xml.");
  std::string row;
  EXPECT_TRUE(ds_.GetDataRow("D", "A1", row));
  EXPECT_EQ(row, "<row guid=\"A1\"/>");
}

TEST_F(KvoDatasetOTest, GetDataRowWithEmptyRowIdGivesTheFirstRowAndUnknownFails) {
  EXPECT_TRUE(ds_.AddData("D", kTwoRows, "code"));
  std::string row;
  EXPECT_TRUE(ds_.GetDataRow("d", "", row));
  EXPECT_EQ(row.substr(0, 15), "<row guid=\"A1\">");
  EXPECT_FALSE(ds_.GetDataRow("D", "a1", row));
  EXPECT_EQ(row, "");
  EXPECT_EQ(ds_.GetLastError(), "Specified data/row id cannot be found.");
  EXPECT_TRUE(ds_.GetDataRow("D", " B2 ", row));
}

TEST_F(KvoDatasetOTest, GetDataRowIdWithIndexZeroFails) {
  EXPECT_TRUE(ds_.AddData("D", kTwoRows, "code"));
  std::string id;
  EXPECT_FALSE(ds_.GetDataRowID("D", 0, id));
  EXPECT_EQ(ds_.GetLastError(), "Invalid data index (0).");
  EXPECT_FALSE(ds_.GetDataRowID("X", 1, id));
  EXPECT_EQ(ds_.GetLastError(), "Specified data not found(X).");
  EXPECT_FALSE(ds_.GetDataRowID("D", 3, id));
  EXPECT_EQ(ds_.GetLastError(), "Specified data row index (3) out of boundary.");
  EXPECT_TRUE(ds_.GetDataRowID("D", 2, id));
  EXPECT_EQ(id, "B2");
}

TEST_F(KvoDatasetOTest, DeleteDataRowWithEmptyRowIdEmptiesTheDataElement) {
  EXPECT_TRUE(ds_.AddData("D", kTwoRows));
  EXPECT_TRUE(ds_.DeleteDataRow("D", ""));
  EXPECT_EQ(ds_.GetDataRowCount("D"), 0);
  EXPECT_EQ(Saved(), "<dataset><data guid=\"D\"/></dataset>");
}

TEST_F(KvoDatasetOTest, RowCountIsZeroForMissingDataWithoutError) {
  EXPECT_EQ(ds_.GetDataRowCount("none"), 0);
  EXPECT_EQ(ds_.GetLastError(), "");
}

TEST_F(KvoDatasetOTest, PositionalRowWrappers) {
  EXPECT_TRUE(ds_.AddData("D", kTwoRows, "code"));
  std::string row;
  EXPECT_TRUE(ds_.GetDataRowByIndex("D", 2, row));
  EXPECT_EQ(row.substr(0, 15), "<row guid=\"B2\">");
  EXPECT_TRUE(ds_.UpdateDataRowByIndex("D", 2, "<row><col name=\"q\" value=\"1\"/></row>"));
  EXPECT_TRUE(ds_.GetDataRowByIndex("D", 2, row));
  EXPECT_EQ(row, "<row guid=\"B2\"><col name=\"q\" value=\"1\"/></row>");
  EXPECT_TRUE(ds_.DeleteDataRowByIndex("D", 1));
  EXPECT_EQ(ds_.GetDataRowCount("D"), 1);
  EXPECT_TRUE(ds_.AddDataRowByIndex(1, "C3", "<row><col name=\"c\" value=\"3\"/></row>"));
  EXPECT_TRUE(ds_.GetDataRowByIndex("D", 2, row));
  EXPECT_EQ(row, "<row guid=\"C3\"><col name=\"c\" value=\"3\"/></row>");
  EXPECT_FALSE(ds_.GetDataRowByIndex("D", 3, row));
  EXPECT_EQ(ds_.GetLastError(), "Specified data row index (3) out of boundary.");
  EXPECT_FALSE(ds_.AddDataRowByIndex(5, "x", "<row/>"));
  EXPECT_EQ(ds_.GetLastError(), "Specified data index (5) out of boundary.");
}

// --- Key columns ---

class KvoDatasetOKeyTest : public KvoDatasetOTest {
 protected:
  void SetUp() override {
    ASSERT_TRUE(ds_.AddData(
        "D",
        "<data><row><col name=\"k\" value=\"A\"/><col name=\"n\" value=\"1\"/></row>"
        "<row><col name=\"k\" value=\"B\"/><col name=\"n\" value=\"2\"/></row>"
        "<row><col name=\"k\" value=\"A\"/><col name=\"n\" value=\"3\"/></row>"
        "<row><col name=\"k\" value=\"a\"/><col name=\"n\" value=\"4\"/></row>"
        "<row><col name=\"k\" value=\"A\"/><col name=\"n\" value=\"5\"/></row>"
        "<row><col name=\"k\" value=\"x&apos;y\"/><col name=\"n\" value=\"6\"/></row>"
        "<row><col name=\"k\" value=\"x&amp;apos;y\"/><col name=\"n\" value=\"7\"/></row>"
        "</data>",
        "n"));
  }
};

TEST_F(KvoDatasetOKeyTest, KeyValueIsTrimmedAndMatchedWithCase) {
  std::vector<std::string> ids;
  EXPECT_EQ(ds_.GetDataRowIDArrayByKeyCol("D", " k ", "  A ", ids), 3);
  EXPECT_EQ(ids, (std::vector<std::string>{"1", "3", "5"}));
  EXPECT_EQ(ds_.GetDataRowIDArrayByKeyCol("D", "k", "a", ids), 1);
  EXPECT_EQ(ids, (std::vector<std::string>{"4"}));
}

TEST_F(KvoDatasetOKeyTest, KeyValueWithApostropheMatchesOnlyItsEntityText) {
  std::vector<std::string> ids;
  EXPECT_EQ(ds_.GetDataRowIDArrayByKeyCol("D", "k", "x'y", ids), 1);
  EXPECT_EQ(ids, (std::vector<std::string>{"7"}));
}

TEST_F(KvoDatasetOKeyTest, IdArrayIsUntouchedWhenNothingMatchesAndMinusOneOnFailure) {
  std::vector<std::string> ids = {"keep"};
  EXPECT_EQ(ds_.GetDataRowIDArrayByKeyCol("D", "k", "none", ids), 0);
  EXPECT_EQ(ids, (std::vector<std::string>{"keep"}));
  EXPECT_EQ(ds_.GetDataRowIDArrayByKeyCol("D", "  ", "A", ids), -1);
  EXPECT_EQ(ds_.GetLastError(), "Key column name not specified.");
  EXPECT_EQ(ds_.GetDataRowIDArrayByKeyCol("E", "k", "A", ids), -1);
  EXPECT_EQ(ds_.GetLastError(), "Specified data not found(E).");
  EXPECT_EQ(ids, (std::vector<std::string>{"keep"}));
}

TEST_F(KvoDatasetOKeyTest, RowByKeyColumnMembers) {
  std::string id, row;
  EXPECT_TRUE(ds_.GetDataRowIDByKeyCol("D", "k", "B", id));
  EXPECT_EQ(id, "2");
  EXPECT_FALSE(ds_.GetDataRowIDByKeyCol("D", "k", " Z ", id));
  EXPECT_EQ(ds_.GetLastError(), "Specified row cannot be found(k= Z ).");
  EXPECT_TRUE(ds_.GetDataRowByKeyCol("D", "k", "B", row));
  EXPECT_EQ(row,
            "<row guid=\"2\"><col name=\"k\" value=\"B\"/><col name=\"n\" value=\"2\"/></row>");
  std::vector<std::string> rows;
  EXPECT_EQ(ds_.GetDataRowArrayByKeyCol("D", "k", "A", rows), 3);
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_EQ(rows[2],
            "<row guid=\"5\"><col name=\"k\" value=\"A\"/><col name=\"n\" value=\"5\"/></row>");
  EXPECT_TRUE(ds_.UpdateDataRowByKeyCol("D", "k", "B", "<row><col name=\"k\" value=\"C\"/></row>"));
  EXPECT_TRUE(ds_.GetDataRow("D", "2", row));
  EXPECT_EQ(row, "<row guid=\"2\"><col name=\"k\" value=\"C\"/></row>");
}

TEST_F(KvoDatasetOKeyTest, DeleteByKeyColumnRemovesFirstMatchAndArrayRemovesAll) {
  EXPECT_TRUE(ds_.DeleteDataRowByKeyCol("D", "k", "A"));
  std::vector<std::string> ids;
  EXPECT_EQ(ds_.GetDataRowIDArrayByKeyCol("D", "k", "A", ids), 2);
  EXPECT_EQ(ds_.DeleteDataRowArrayByKeyCol("D", "k", "A"), 2);
  EXPECT_EQ(ds_.GetDataRowIDArrayByKeyCol("D", "k", "A", ids), 0);
  EXPECT_EQ(ds_.DeleteDataRowArrayByKeyCol("D", "k", "A"), 0);
  EXPECT_EQ(ds_.DeleteDataRowArrayByKeyCol("D", "", "A"), -1);
  EXPECT_EQ(ds_.GetDataRowCount("D"), 4);
}

// --- Column items ---

TEST_F(KvoDatasetOTest, ColumnItemsHoldColsAndRowAttributesAsRootTags) {
  EXPECT_TRUE(ds_.AddData("D", kTwoRows, "code"));
  std::shared_ptr<KvoGeneralItems> items = ds_.GetDataRowColItems("D", "B2");
  ASSERT_NE(items, nullptr);
  EXPECT_EQ(items->Count(), 2);
  EXPECT_EQ(items->GetItemValueByName("title"), "Second");
  std::string guid;
  EXPECT_EQ(items->GetRootTag("guid", &guid), 1);
  EXPECT_EQ(guid, "B2");
  items = ds_.GetDataRowColItemsByIndex("D", 1);
  ASSERT_NE(items, nullptr);
  EXPECT_EQ(items->GetItemValueByName("code"), "A1");
  items = ds_.GetDataRowColItemsByKeyCol("D", "title", "Second");
  ASSERT_NE(items, nullptr);
  EXPECT_EQ(items->GetItemValueByName("code"), "B2");
  EXPECT_EQ(ds_.GetDataRowColItems("D", "none"), nullptr);
  EXPECT_EQ(ds_.GetLastError(), "Specified data/row id cannot be found.");
  EXPECT_EQ(ds_.GetDataRowColItemsByIndex("D", 0), nullptr);
  EXPECT_EQ(ds_.GetLastError(), "Invalid data index (0).");
}

// --- Frame ---

TEST_F(KvoDatasetOTest, RaiseLastErrorRaisesTheRecordedCheck) {
  std::string id;
  ds_.GetDataID(0, id);
  EXPECT_RAISES(ds_.RaiseLastError(), -1, "Invalid data index (0).");
  EXPECT_TRUE(ds_.GetDataID(1, id) == false);
}

}  // namespace
}  // namespace veld
