#include "veld/datasets/kvo_dataset.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "datasets/dataset_test_support.h"

#include "support/testing.h"

namespace veld {
namespace {

using testing::CountingGuidPlatform;

const char kRows[] =
    "<data guid=\"D\"><row n=\"1\"><col name=\"k\" value=\"A\"/></row><row n=\"2\"><col "
    "name=\"k\" value=\"B\"/></row><row n=\"3\"><col name=\"k\" value=\"A\"/></row></data>";

class KvoDatasetTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(ds_.AddData("", kRows)); }
  std::string Saved() {
    std::string text;
    EXPECT_TRUE(ds_.Save(text));
    return text;
  }
  std::string Row(int32_t n) {
    std::string text;
    EXPECT_TRUE(ds_.GetDataRow("D", n, text)) << ds_.GetLastError();
    return text;
  }

  CountingGuidPlatform guids_;
  ScopedPlatform scoped_{guids_};
  KvoDataset ds_;
};

TEST_F(KvoDatasetTest, NewObjectHoldsEmptyDatasetRoot) {
  KvoDataset fresh;
  std::string text;
  EXPECT_TRUE(fresh.Save(text));
  EXPECT_EQ(text, "<dataset/>");
}

TEST_F(KvoDatasetTest, RowsKeepTheirAttributesAndGetNoGuid) {
  EXPECT_EQ(Row(2), "<row n=\"2\"><col name=\"k\" value=\"B\"/></row>");
  EXPECT_EQ(ds_.GetDataRowCount("d"), 3);
}

TEST_F(KvoDatasetTest, InsertDataRowAtOneMakesTheNewRowFirst) {
  EXPECT_TRUE(ds_.InsertDataRow("D", "<row n=\"new\"/>", 1));
  EXPECT_EQ(Row(1), "<row n=\"new\"/>");
  EXPECT_EQ(Row(2), "<row n=\"1\"><col name=\"k\" value=\"A\"/></row>");
  EXPECT_TRUE(ds_.InsertDataRow("D", "<row n=\"mid\"/>", 3));
  EXPECT_EQ(Row(3), "<row n=\"mid\"/>");
  EXPECT_EQ(ds_.GetDataRowCount("D"), 5);
}

TEST_F(KvoDatasetTest, InsertDataRowAtZeroOrPastTheEndAppends) {
  EXPECT_TRUE(ds_.InsertDataRow("D", "<row n=\"z\"/>", 0));
  EXPECT_EQ(Row(4), "<row n=\"z\"/>");
  EXPECT_TRUE(ds_.InsertDataRow("D", "<row n=\"p\"/>", 99));
  EXPECT_EQ(Row(5), "<row n=\"p\"/>");
}

TEST_F(KvoDatasetTest, InsertDataRowChecksItsArguments) {
  EXPECT_FALSE(ds_.InsertDataRow("D", "<row/>", -1));
  EXPECT_EQ(ds_.GetLastError(), "Invalid data ID or row index content to insert.");
  EXPECT_FALSE(ds_.InsertDataRow(" ", "<row/>", 1));
  EXPECT_EQ(ds_.GetLastError(), "Invalid data ID or row index content to insert.");
  EXPECT_FALSE(ds_.InsertDataRow("X", "<row/>", 1));
  EXPECT_EQ(ds_.GetLastError(), "Invalid data ID - X.");
  EXPECT_FALSE(ds_.InsertDataRow("D", "<row", 1));
  EXPECT_EQ(ds_.GetLastError(), "Invalid data row content.");
  EXPECT_EQ(ds_.GetDataRowCount("D"), 3);
}

TEST_F(KvoDatasetTest, GetDataRowAtZeroFailsAndAtMinusOneGivesTheFirst) {
  std::string text;
  EXPECT_FALSE(ds_.GetDataRow("D", 0, text));
  EXPECT_EQ(ds_.GetLastError(), "Specified data/row id cannot be found.");
  EXPECT_TRUE(ds_.GetDataRow("D", -1, text));
  EXPECT_EQ(text, "<row n=\"1\"><col name=\"k\" value=\"A\"/></row>");
  EXPECT_FALSE(ds_.GetDataRow("D", 4, text));
  EXPECT_FALSE(ds_.GetDataRow("X", 1, text));
}

TEST_F(KvoDatasetTest, UpdateDataRowReplacesTheWholeRowWithItsAttributes) {
  EXPECT_TRUE(
      ds_.UpdateDataRow("D", 2, "<row a=\"x\" b=\"y\"><col name=\"k\" value=\"Q\"/></row>"));
  EXPECT_EQ(Row(2), "<row a=\"x\" b=\"y\"><col name=\"k\" value=\"Q\"/></row>");
  EXPECT_EQ(ds_.GetDataRowCount("D"), 3);
}

TEST_F(KvoDatasetTest, UpdateDataRowChecksItsArguments) {
  EXPECT_FALSE(ds_.UpdateDataRow("D", -1, "<row/>"));
  EXPECT_EQ(ds_.GetLastError(), "Invalid data/row index to update.");
  EXPECT_FALSE(ds_.UpdateDataRow("X", 1, "<row/>"));
  EXPECT_EQ(ds_.GetLastError(), "Invalid data ID - X.");
  EXPECT_FALSE(ds_.UpdateDataRow("D", 0, "<row/>"));
  EXPECT_EQ(ds_.GetLastError(), "Specified data/row cannot be found.");
  EXPECT_FALSE(ds_.UpdateDataRow("D", 1, ""));
  EXPECT_EQ(ds_.GetLastError(), "Invalid data row content.");
}

TEST_F(KvoDatasetTest, AddDataRowToMissingDataFailsAndCreatesNothing) {
  const std::string before = Saved();
  EXPECT_FALSE(ds_.AddDataRow("d2", "<row/>"));
  EXPECT_EQ(ds_.GetLastError(), "Invalid data ID - d2.");
  EXPECT_EQ(Saved(), before);
  EXPECT_FALSE(ds_.AddDataRow("  ", "<row/>"));
  EXPECT_EQ(ds_.GetLastError(), "Invalid data ID or row content to add.");
  EXPECT_FALSE(ds_.AddDataRow("D", ""));
  EXPECT_EQ(ds_.GetLastError(), "Invalid data row content.");
}

TEST_F(KvoDatasetTest, AddDataRowAppendsTheRootElementWhateverItsName) {
  EXPECT_TRUE(ds_.AddDataRow("D", "<!--c--><item x=\"1\"/>"));
  EXPECT_EQ(ds_.GetDataRowCount("D"), 3);
  EXPECT_TRUE(ds_.AddDataRow("D", "<row n=\"4\"/>"));
  EXPECT_EQ(Row(4), "<row n=\"4\"/>");
  EXPECT_TRUE(ds_.AddDataRowByIndex(1, "<row n=\"5\"/>"));
  EXPECT_EQ(Row(5), "<row n=\"5\"/>");
  EXPECT_NE(Saved().find("<item x=\"1\"/><row n=\"4\"/>"), std::string::npos);
}

TEST_F(KvoDatasetTest, UpdateDataOfUnknownIdFailsButAddDataSucceeds) {
  const std::string rows = "<data><row n=\"1\"/><row index=\"0\"/></data>";
  EXPECT_FALSE(ds_.UpdateData("E", rows));
  EXPECT_EQ(ds_.GetLastError(), "Specified Data element can't be found - E");
  EXPECT_TRUE(ds_.AddData("E", rows));
  EXPECT_EQ(ds_.GetDataRowCount("E"), 1);
  std::string text;
  EXPECT_TRUE(ds_.GetData("E", text));
  EXPECT_EQ(text, "<data guid=\"E\"><row n=\"1\"/></data>");
}

TEST_F(KvoDatasetTest, GetDataRowByKeyColWithIndexPastTheMatchesFails) {
  std::string text;
  EXPECT_FALSE(ds_.GetDataRowByKeyCol("D", "k", "B", text, 2));
  EXPECT_EQ(ds_.GetLastError(), "Specified index value out of bounds.");
  EXPECT_FALSE(ds_.GetDataRowByKeyCol("D", "k", "B", text, 0));
  EXPECT_EQ(ds_.GetLastError(), "Invalid index value.");
  EXPECT_TRUE(ds_.GetDataRowByKeyCol("D", "k", "A", text, 2));
  EXPECT_EQ(text, "<row n=\"3\"><col name=\"k\" value=\"A\"/></row>");
}

TEST_F(KvoDatasetTest, KeyColumnArrayAndDeleteRemovesEveryMatch) {
  std::vector<std::string> rows = {"keep"};
  EXPECT_EQ(ds_.GetDataRowArrayByKeyCol("D", "k", "none", rows), 0);
  EXPECT_EQ(rows, (std::vector<std::string>{"keep"}));
  EXPECT_EQ(ds_.GetDataRowArrayByKeyCol("D", "k", "A", rows), 2);
  EXPECT_EQ(ds_.GetDataRowArrayByKeyCol("D", "", "A", rows), -1);
  EXPECT_EQ(ds_.GetLastError(), "Key column name not specified.");
  EXPECT_TRUE(ds_.DeleteDataRowByKeyCol("D", "k", "A"));
  EXPECT_EQ(ds_.GetDataRowCount("D"), 1);
  EXPECT_EQ(Row(1), "<row n=\"2\"><col name=\"k\" value=\"B\"/></row>");
  EXPECT_FALSE(ds_.DeleteDataRowByKeyCol("Z", "k", "A"));
  EXPECT_EQ(ds_.GetLastError(), "Specified data not found(Z).");
}

TEST_F(KvoDatasetTest, DeleteDataRowByPositionAndNegativeRemovesAll) {
  EXPECT_TRUE(ds_.DeleteDataRow("D", 2));
  EXPECT_EQ(Row(2), "<row n=\"3\"><col name=\"k\" value=\"A\"/></row>");
  EXPECT_TRUE(ds_.DeleteDataRow("D", 0));
  EXPECT_EQ(ds_.GetDataRowCount("D"), 2);
  EXPECT_TRUE(ds_.DeleteDataRow("D", -1));
  EXPECT_EQ(ds_.GetDataRowCount("D"), 0);
}

TEST_F(KvoDatasetTest, ParseKeepsRowsWholeAndDropsMarkers) {
  EXPECT_TRUE(
      ds_.Parse("<dataset><data guid=\"P\"><row index=\"0\"/><row guid=\"g\" index=\"1\"><col "
                "name=\"a\"/><x/></row></data></dataset>"));
  EXPECT_EQ(Saved(),
            "<dataset><data guid=\"P\"><row guid=\"g\" index=\"1\"><col name=\"a\"/><x/></row>"
            "</data></dataset>");
  EXPECT_FALSE(ds_.Parse("nope"));
  EXPECT_EQ(ds_.GetLastError(), "Failed to load dataset xml.");
}

TEST_F(KvoDatasetTest, ColumnItemsOfARow) {
  std::shared_ptr<KvoGeneralItems> items = ds_.GetDataRowColItems("D", 2);
  ASSERT_NE(items, nullptr);
  EXPECT_EQ(items->GetItemValueByName("k"), "B");
  std::string n;
  EXPECT_EQ(items->GetRootTag("n", &n), 1);
  EXPECT_EQ(n, "2");
  items = ds_.GetDataRowColItemsByKeyCol("D", "k", "A");
  ASSERT_NE(items, nullptr);
  EXPECT_EQ(items->GetRootTag("n", &n), 1);
  EXPECT_EQ(n, "1");
  EXPECT_EQ(ds_.GetDataRowColItems("D", 9), nullptr);
  EXPECT_EQ(ds_.GetLastError(), "Specified data/row id cannot be found.");
}

TEST_F(KvoDatasetTest, DataLevelMembers) {
  EXPECT_TRUE(ds_.AddData("second"));
  EXPECT_EQ(ds_.GetDataCount(), 2);
  std::string id;
  EXPECT_TRUE(ds_.GetDataID(2, id));
  EXPECT_EQ(id, "second");
  EXPECT_TRUE(ds_.ExistData("SECOND"));
  EXPECT_EQ(ds_.GetExactDataID("SECOND"), "second");
  EXPECT_TRUE(ds_.UpdateDataByIndex(2, "<data><row/></data>"));
  EXPECT_EQ(ds_.GetDataRowCountByIndex(2), 1);
  std::string text;
  EXPECT_TRUE(ds_.GetDataByIndex(2, text));
  EXPECT_EQ(text, "<data guid=\"second\"><row/></data>");
  EXPECT_TRUE(ds_.DeleteDataByIndex(1));
  EXPECT_EQ(ds_.GetDataCount(), 1);
  EXPECT_FALSE(ds_.GetDataID(0, id));
  EXPECT_EQ(ds_.GetLastError(), "Invalid data index (0).");
}

TEST_F(KvoDatasetTest, FileRoundTrip) {
  testing::TempDir dir;
  EXPECT_TRUE(ds_.SaveToFile(dir.File("p.xml")));
  KvoDataset other;
  EXPECT_TRUE(other.ParseFile(dir.File("p.xml")));
  EXPECT_EQ(other.GetDataRowCount("D"), 3);
  EXPECT_FALSE(other.ParseFile(dir.File("none.xml")));
  EXPECT_EQ(other.GetLastError(), "Failed to load dataset file.");
}

}  // namespace
}  // namespace veld
