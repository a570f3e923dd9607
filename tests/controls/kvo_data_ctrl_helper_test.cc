#include "veld/controls/kvo_data_ctrl_helper.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "veld/controls/headless_image_combo.h"
#include "veld/controls/headless_list_view.h"
#include "veld/controls/headless_tree_view.h"
#include "veld/xml/xml_node_list.h"

#include "dataset_text.h"
#include "support/testing.h"

namespace veld {
namespace {

using testing::Data;
using testing::Row;

constexpr char kXmlFailureTag[] = "(ERR#: -2147467259)";

// Exposes the held document for checks.
class Helper : public KvoDataCtrlHelper {
 public:
  XmlDocument& Data() { return m_cXmlDom; }
  KvoErrObject& Record() { return m_cErrObj; }
};

class KvoDataCtrlHelperTest : public ::testing::Test {
 protected:
  // The ids of the rows left in the first data element.
  std::vector<std::string> RowIds() {
    std::vector<std::string> ids;
    XmlNodeList cols = helper_.Data().SelectNodes("//data[1]/row/col[@name='id']/@value");
    for (int32_t i = 0; i < cols.Length(); ++i) ids.push_back(cols.Item(i).NodeValue());
    return ids;
  }

  Helper helper_;
  testing::TempDir dir_;
};

// --- the data source ---

TEST_F(KvoDataCtrlHelperTest, LoadXmlFailureEmptiesTheData) {
  ASSERT_TRUE(helper_.LoadXml("<dataset><data/></dataset>"));
  EXPECT_FALSE(helper_.LoadXml("<dataset><data>"));
  EXPECT_EQ(helper_.GetLastError(), "Failed to load xml data.");
  EXPECT_EQ(helper_.Data().Xml(), "");
}

TEST_F(KvoDataCtrlHelperTest, LoadFileOfAMissingFileNamesIt) {
  const std::string missing = dir_.File("missing.xml");
  EXPECT_FALSE(helper_.LoadFile(missing));
  EXPECT_EQ(helper_.GetLastError(), "Failed to load data from file - " + missing + ".");
}

TEST_F(KvoDataCtrlHelperTest, LoadFileUsesTheNameAsGiven) {
  const std::string file = dir_.Write("data.xml", "<dataset><data/></dataset>");
  EXPECT_FALSE(helper_.LoadFile(" " + file));
  EXPECT_EQ(helper_.GetLastError(), "Failed to load data from file -  " + file + ".");
  EXPECT_TRUE(helper_.LoadFile(file));
}

TEST_F(KvoDataCtrlHelperTest, LoadsDoNotClearThePreviousError) {
  EXPECT_FALSE(helper_.LoadXml("not xml"));
  EXPECT_TRUE(helper_.LoadXml("<dataset/>"));
  EXPECT_EQ(helper_.GetLastError(), "Failed to load xml data.");
  EXPECT_TRUE(helper_.LoadFile(dir_.Write("d.xml", "<dataset/>")));
  EXPECT_EQ(helper_.GetLastError(), "Failed to load xml data.");
  // Other members clear it.
  EXPECT_TRUE(helper_.RemoveDataRow("id", "1"));
  EXPECT_EQ(helper_.GetLastError(), "");
}

// --- removing rows ---

const char kRows[] =
    "<dataset><data id=\"d1\">"
    "<row><col name=\"id\" value=\"1\"/><col name=\"type\" value=\"A\"/><col name=\"n\" "
    "value=\"7\"/></row>"
    "<row index=\"0\"><col name=\"id\" value=\"2\"/><col name=\"type\" value=\"A\"/><col "
    "name=\"n\" value=\"7\"/></row>"
    "<row index=\"3\"><col name=\"id\" value=\"3\"/><col name=\"type\" value=\"B\"/><col "
    "name=\"n\" value=\"10\"/></row>"
    "<row><col name=\"id\" value=\"4\"/><col name=\"type\" value=\"A\"/><col name=\"n\" "
    "value=\"5\"/></row>"
    "<row><col name=\"id\" value=\"5\"/><col name=\"n\" value=\"9\"/></row>"
    "</data><data id=\"d2\">"
    "<row><col name=\"id\" value=\"6\"/><col name=\"type\" value=\"A\"/><col name=\"n\" "
    "value=\"7\"/></row>"
    "</data></dataset>";

TEST_F(KvoDataCtrlHelperTest, RemoveDataRowRemovesActiveRowsWithTheValue) {
  ASSERT_TRUE(helper_.LoadXml(kRows));
  EXPECT_TRUE(helper_.RemoveDataRow("n", "7"));
  // Row 2 has index "0" and stays; row 6 is in the second data element.
  EXPECT_EQ(RowIds(), (std::vector<std::string>{"2", "3", "4", "5"}));
  EXPECT_EQ(helper_.Data().SelectNodes("//data[2]/row").Length(), 1);
}

TEST_F(KvoDataCtrlHelperTest, RemoveDataRowComparesAsXPathDoes) {
  ASSERT_TRUE(helper_.LoadXml(kRows));
  // A number against the string's number: 7, 10 and 9 are greater than 6.
  EXPECT_TRUE(helper_.RemoveDataRow("n", "6", ">"));
  EXPECT_EQ(RowIds(), (std::vector<std::string>{"2", "4"}));
}

TEST_F(KvoDataCtrlHelperTest, RemoveDataRowTrimsTheValueButNotTheName) {
  ASSERT_TRUE(helper_.LoadXml(kRows));
  EXPECT_TRUE(helper_.RemoveDataRow(" type ", "A"));
  EXPECT_EQ(RowIds().size(), 5u);
  EXPECT_TRUE(helper_.RemoveDataRow("type", " A "));
  EXPECT_EQ(RowIds(), (std::vector<std::string>{"2", "3", "5"}));
}

TEST_F(KvoDataCtrlHelperTest, RemoveDataRowEscapesTheValue) {
  ASSERT_TRUE(helper_.LoadXml("<dataset><data>" + Row({{"id", "1"}, {"v", "O'Brien"}}) +
                              Row({{"id", "2"}, {"v", "a&amp;amp;b"}}) +
                              Row({{"id", "3"}, {"v", "a&amp;b"}}) + "</data></dataset>"));
  // A value with an apostrophe never matches its own row.
  EXPECT_TRUE(helper_.RemoveDataRow("v", "O'Brien"));
  EXPECT_EQ(RowIds().size(), 3u);
  // "a&b" is compared as "a&amp;b": it matches the value that holds that text.
  EXPECT_TRUE(helper_.RemoveDataRow("v", "a&b"));
  EXPECT_EQ(RowIds(), (std::vector<std::string>{"1", "3"}));
}

TEST_F(KvoDataCtrlHelperTest, RemoveDataRowRecordsXPathFailuresAndChangesNothing) {
  ASSERT_TRUE(helper_.LoadXml(kRows));
  EXPECT_FALSE(helper_.RemoveDataRow("n", "7", "=="));
  EXPECT_EQ(helper_.GetLastError(), std::string("Invalid expression") + kXmlFailureTag);
  EXPECT_FALSE(helper_.RemoveDataRow("it's", "7"));
  EXPECT_EQ(helper_.GetLastError(), std::string("Invalid predicate") + kXmlFailureTag);
  EXPECT_EQ(RowIds().size(), 5u);
}

TEST_F(KvoDataCtrlHelperTest, RemoveDataRowExOnAColumn) {
  ASSERT_TRUE(helper_.LoadXml(kRows));
  EXPECT_TRUE(helper_.RemoveDataRowEx("@value='A'", "type"));
  EXPECT_EQ(RowIds(), (std::vector<std::string>{"2", "3", "5"}));
  EXPECT_TRUE(helper_.RemoveDataRowEx("starts-with(@value, '1')", "n"));
  EXPECT_EQ(RowIds(), (std::vector<std::string>{"2", "5"}));
}

TEST_F(KvoDataCtrlHelperTest, RemoveDataRowExOnTheRow) {
  ASSERT_TRUE(helper_.LoadXml(kRows));
  EXPECT_TRUE(helper_.RemoveDataRowEx("count(col)=2"));
  EXPECT_EQ(RowIds(), (std::vector<std::string>{"1", "2", "3", "4"}));
  // The column name is compared exactly: a blank is a name.
  EXPECT_TRUE(helper_.RemoveDataRowEx("@value='A'", " "));
  EXPECT_EQ(RowIds().size(), 4u);
}

TEST_F(KvoDataCtrlHelperTest, RemoveDataRowExRecordsBadExpressions) {
  ASSERT_TRUE(helper_.LoadXml(kRows));
  EXPECT_FALSE(helper_.RemoveDataRowEx("count(col"));
  EXPECT_EQ(helper_.GetLastError(), std::string("Invalid expression") + kXmlFailureTag);
  EXPECT_EQ(RowIds().size(), 5u);
}

TEST_F(KvoDataCtrlHelperTest, RemovingNothingSucceeds) {
  ASSERT_TRUE(helper_.LoadXml("<dataset/>"));
  EXPECT_TRUE(helper_.RemoveDataRow("id", "1"));
  EXPECT_TRUE(helper_.RemoveDataRowEx("true()"));
  helper_.Reset();
  EXPECT_TRUE(helper_.RemoveDataRow("id", "1"));
}

// --- keys ---

TEST(KvoDataCtrlHelperKeysTest, GenerateKeyFromIDString) {
  EXPECT_EQ(KvoDataCtrlHelper::GenerateKeyFromIDString("123"), "K123");
  EXPECT_EQ(KvoDataCtrlHelper::GenerateKeyFromIDString(""), "");
  EXPECT_EQ(KvoDataCtrlHelper::GenerateKeyFromIDString(" a "), "K a ");
}

TEST(KvoDataCtrlHelperKeysTest, GetIDStringFromKey) {
  EXPECT_EQ(KvoDataCtrlHelper::GetIDStringFromKey("k7"), "");
  EXPECT_EQ(KvoDataCtrlHelper::GetIDStringFromKey("K"), "");
  EXPECT_EQ(KvoDataCtrlHelper::GetIDStringFromKey("KK7"), "K7");
  EXPECT_EQ(KvoDataCtrlHelper::GetIDStringFromKey(""), "");
  EXPECT_EQ(KvoDataCtrlHelper::GetIDStringFromKey("K123"), "123");
}

// --- tree views ---

std::string Node3(const std::string& id, const std::string& parent, const std::string& text,
                  const std::string& attributes = "") {
  return Row({{"id", id}, {"parent", parent}, {"text", text}, {"tag", "t" + id}}, attributes);
}

TEST_F(KvoDataCtrlHelperTest, TreeFromParentKeysWithImages) {
  ASSERT_TRUE(
      helper_.LoadXml(Data({Node3("A", "", "a"), Node3("B", "A", "b"), Node3("C", "B", "c")})));
  HeadlessTreeView tree;
  ASSERT_TRUE(helper_.TreeView_LoadData(&tree, "id", "parent", "text", "", "tag", "folder", "item"))
      << helper_.GetLastError();
  NodeCollection& nodes = tree.Nodes();
  ASSERT_EQ(nodes.Count(), 3);
  Node& a = nodes.Item(Variant("KA"));
  Node& b = nodes.Item(Variant("KB"));
  Node& c = nodes.Item(Variant("KC"));
  EXPECT_EQ(a.Parent(), nullptr);
  EXPECT_EQ(b.Parent(), &a);
  EXPECT_EQ(c.Parent(), &b);
  EXPECT_EQ(a.Image(), "folder");
  EXPECT_EQ(b.Image(), "folder");
  EXPECT_EQ(c.Image(), "item");
  EXPECT_EQ(c.Tag(), "tC");
  EXPECT_EQ(c.Text(), "c");
  // Node 1 is selected; nothing is expanded.
  EXPECT_EQ(tree.SelectedItem(), &a);
  EXPECT_FALSE(a.Expanded());
}

TEST_F(KvoDataCtrlHelperTest, TreeParentAfterChildFailsKeepingEarlierNodes) {
  ASSERT_TRUE(
      helper_.LoadXml(Data({Node3("A", "", "a"), Node3("C", "B", "c"), Node3("B", "A", "b")})));
  HeadlessTreeView tree;
  EXPECT_FALSE(helper_.TreeView_LoadData(&tree, "id", "parent", "text"));
  EXPECT_EQ(helper_.GetLastError(), "Element not found(ERR#: 35601)");
  ASSERT_EQ(tree.Nodes().Count(), 1);
  EXPECT_EQ(tree.Nodes().Item(Variant(int32_t{1})).Key(), "KA");
  // The selection step did not run.
  EXPECT_EQ(tree.SelectedItem(), nullptr);
}

TEST_F(KvoDataCtrlHelperTest, TreeDuplicateKeyFails) {
  ASSERT_TRUE(helper_.LoadXml(Data({Node3("A", "", "a"), Node3("A", "", "again")})));
  HeadlessTreeView tree;
  EXPECT_FALSE(helper_.TreeView_LoadData(&tree, "id", "parent", "text"));
  EXPECT_EQ(helper_.GetLastError(), "Key is not unique in collection(ERR#: 35602)");
  EXPECT_EQ(tree.Nodes().Count(), 1);
}

TEST_F(KvoDataCtrlHelperTest, TreeRowNamingItselfAsParentFails) {
  ASSERT_TRUE(helper_.LoadXml(Data({Node3("A", "A", "a")})));
  HeadlessTreeView tree;
  EXPECT_FALSE(helper_.TreeView_LoadData(&tree, "id", "parent", "text"));
  EXPECT_EQ(helper_.GetLastError(), "Element not found(ERR#: 35601)");
  EXPECT_EQ(tree.Nodes().Count(), 0);
}

TEST_F(KvoDataCtrlHelperTest, TreeTextJoinsTheSecondText) {
  ASSERT_TRUE(helper_.LoadXml(Data({Row({{"id", "1"}, {"n", "Sales"}, {"d", "Dept 1"}}),
                                    Row({{"id", "2"}, {"n", ""}, {"d", "Dept 2"}}),
                                    Row({{"id", "3"}, {"n", "  "}, {"d", "Dept 3"}}),
                                    Row({{"id", "4"}, {"n", "No second"}})})));
  HeadlessTreeView tree;
  ASSERT_TRUE(helper_.TreeView_LoadData(&tree, "id", "parent", "n", "d"));
  NodeCollection& nodes = tree.Nodes();
  ASSERT_EQ(nodes.Count(), 4);
  EXPECT_EQ(nodes.Item(Variant("K1")).Text(), "[Sales]   Dept 1");
  EXPECT_EQ(nodes.Item(Variant("K2")).Text(), "Dept 2");
  EXPECT_EQ(nodes.Item(Variant("K3")).Text(), "Dept 3");
  EXPECT_EQ(nodes.Item(Variant("K4")).Text(), "No second");
}

TEST_F(KvoDataCtrlHelperTest, TreeSkipsInactiveRowsAndRowsWithoutKeyOrText) {
  ASSERT_TRUE(helper_.LoadXml(
      Data({Node3("A", "", "a"), Node3("B", "", "b", " index=\"0\""), Node3("", "", "no key"),
            Node3("D", "", ""), Row({{"text", "e"}}), Node3("F", "", "f", " index=\"5\"")})));
  HeadlessTreeView tree;
  ASSERT_TRUE(helper_.TreeView_LoadData(&tree, "id", "parent", "text"));
  ASSERT_EQ(tree.Nodes().Count(), 2);
  EXPECT_EQ(tree.Nodes().Item(Variant(int32_t{2})).Key(), "KF");
}

TEST_F(KvoDataCtrlHelperTest, TreeFieldNamesIgnoreCaseAndBlanks) {
  ASSERT_TRUE(helper_.LoadXml(Data({Row({{"Id", "A"}, {" Text ", "a"}, {"Tag", "x"}}),
                                    Row({{"Id", "B"}, {" Text ", "b"}, {"PARENT", "A"}})})));
  HeadlessTreeView tree;
  // "parent" is not a column of the first row, so it stays as given and the
  // second row's PARENT col is not found: B becomes a root.
  ASSERT_TRUE(helper_.TreeView_LoadData(&tree, "ID", "parent", "text", "", "TAG"));
  ASSERT_EQ(tree.Nodes().Count(), 2);
  EXPECT_EQ(tree.Nodes().Item(Variant("KA")).Text(), "a");
  EXPECT_EQ(tree.Nodes().Item(Variant("KA")).Tag(), "x");
  EXPECT_EQ(tree.Nodes().Item(Variant("KB")).Parent(), nullptr);
}

TEST_F(KvoDataCtrlHelperTest, TreeFilterIsAnEquality) {
  ASSERT_TRUE(helper_.LoadXml(
      Data({Row({{"id", "1"}, {"t", "a"}, {"g", "x"}}), Row({{"id", "2"}, {"t", "b"}, {"g", "y"}}),
            Row({{"id", "3"}, {"t", "c"}, {"g", "x"}})})));
  HeadlessTreeView tree;
  ASSERT_TRUE(helper_.TreeView_LoadData(&tree, "id", "p", "t", "", "tag", "", "",
                                        Variant::Missing(), "G", " x "));
  ASSERT_EQ(tree.Nodes().Count(), 2);
  EXPECT_EQ(tree.Nodes().Item(Variant(int32_t{2})).Key(), "K3");
}

TEST_F(KvoDataCtrlHelperTest, TreeSelectsTheNamedNodeElseTheFirst) {
  ASSERT_TRUE(helper_.LoadXml(Data({Node3("A", "", "a"), Node3("B", "A", "b")})));
  HeadlessTreeView tree;
  ASSERT_TRUE(
      helper_.TreeView_LoadData(&tree, "id", "parent", "text", "", "tag", "", "", Variant("KB")));
  EXPECT_EQ(tree.SelectedItem()->Key(), "KB");
  EXPECT_FALSE(tree.Nodes().Item(Variant("KA")).Expanded());
  ASSERT_TRUE(helper_.TreeView_LoadData(&tree, "id", "parent", "text", "", "tag", "", "",
                                        Variant(int32_t{2})));
  EXPECT_EQ(tree.SelectedItem()->Key(), "KB");
  ASSERT_TRUE(helper_.TreeView_LoadData(&tree, "id", "parent", "text", "", "tag", "", "",
                                        Variant("Kunknown")));
  EXPECT_EQ(tree.SelectedItem()->Key(), "KA");
}

TEST_F(KvoDataCtrlHelperTest, TreeOfAnEmptyDataElementIsEmpty) {
  ASSERT_TRUE(helper_.LoadXml("<dataset><data/></dataset>"));
  HeadlessTreeView tree;
  tree.Nodes().Add(Variant::Missing(), Variant::Missing(), Variant("Kold"));
  ASSERT_TRUE(helper_.TreeView_LoadData(&tree, "id", "parent", "text"));
  EXPECT_EQ(tree.Nodes().Count(), 0);
}

TEST_F(KvoDataCtrlHelperTest, TreeTypeCheck) {
  HeadlessListView list;
  EXPECT_FALSE(helper_.TreeView_LoadData(&list, "id", "parent", "text"));
  EXPECT_EQ(helper_.GetLastError(), "TreeView object required.");
  EXPECT_FALSE(helper_.TreeView_LoadData(nullptr, "id", "parent", "text"));
  EXPECT_EQ(helper_.GetLastError(), "TreeView object required.");
  std::string id = "kept";
  HeadlessImageCombo combo;
  EXPECT_FALSE(helper_.TreeView_GetSelectedItemIDString(&combo, id));
  EXPECT_EQ(helper_.GetLastError(), "TreeView object required.");
  EXPECT_EQ(id, "kept");
  EXPECT_FALSE(helper_.TreeView_SelectItemByIDString(&list, "A"));
  EXPECT_EQ(helper_.GetLastError(), "TreeView object required.");
}

TEST_F(KvoDataCtrlHelperTest, TreeFieldNameWithAnApostropheFailsOnTheFirstRow) {
  ASSERT_TRUE(helper_.LoadXml(Data({Node3("A", "", "a")})));
  HeadlessTreeView tree;
  EXPECT_FALSE(helper_.TreeView_LoadData(&tree, "id", "parent", "te'xt"));
  EXPECT_EQ(helper_.GetLastError(), std::string("Invalid predicate") + kXmlFailureTag);
  // Without rows nothing is read, so nothing fails.
  ASSERT_TRUE(helper_.LoadXml("<dataset><data/></dataset>"));
  EXPECT_TRUE(helper_.TreeView_LoadData(&tree, "id", "parent", "te'xt"));
}

TEST_F(KvoDataCtrlHelperTest, TreeFilterValueWithQuotesIsEscaped) {
  ASSERT_TRUE(helper_.LoadXml(Data({Row({{"id", "1"}, {"t", "a"}, {"g", "it's"}})})));
  HeadlessTreeView tree;
  ASSERT_TRUE(helper_.TreeView_LoadData(&tree, "id", "p", "t", "", "tag", "", "",
                                        Variant::Missing(), "g", "it's"));
  EXPECT_EQ(tree.Nodes().Count(), 0);
}

TEST_F(KvoDataCtrlHelperTest, TreeTenThousandLevelsDeep) {
  std::vector<std::string> rows;
  rows.push_back(Node3("0", "", "n0"));
  for (int i = 1; i < 10000; ++i)
    rows.push_back(Node3(std::to_string(i), std::to_string(i - 1), "n" + std::to_string(i)));
  ASSERT_TRUE(helper_.LoadXml(Data(rows)));
  HeadlessTreeView tree;
  ASSERT_TRUE(helper_.TreeView_LoadData(&tree, "id", "parent", "text", "", "tag", "f", "i"));
  EXPECT_EQ(tree.Nodes().Count(), 10000);
  // Ids that look like numbers are keyed with their "K".
  EXPECT_EQ(tree.Nodes().Item(Variant("K9999")).Image(), "i");
  EXPECT_TRUE(helper_.TreeView_SelectItemByIDString(&tree, "9999"));
  EXPECT_TRUE(tree.Nodes().Item(Variant("K0")).Expanded());
}

TEST_F(KvoDataCtrlHelperTest, TreeSelectionMembers) {
  ASSERT_TRUE(
      helper_.LoadXml(Data({Node3("A", "", "a"), Node3("B", "A", "b"), Node3("C", "B", "c")})));
  HeadlessTreeView tree;
  std::string id;
  EXPECT_FALSE(helper_.TreeView_GetSelectedItemIDString(&tree, id));
  EXPECT_EQ(helper_.GetLastError(), "No item selected.");
  EXPECT_FALSE(helper_.TreeView_GetSelectedItemTag(&tree, id));
  EXPECT_EQ(helper_.GetLastError(), "No item selected.");
  ASSERT_TRUE(helper_.TreeView_LoadData(&tree, "id", "parent", "text"));
  // A node in a collapsed branch is selected and its branch expanded.
  EXPECT_TRUE(helper_.TreeView_SelectItemByIDString(&tree, "C"));
  EXPECT_EQ(helper_.GetLastError(), "");
  EXPECT_TRUE(tree.Nodes().Item(Variant("KA")).Expanded());
  EXPECT_TRUE(tree.Nodes().Item(Variant("KB")).Expanded());
  EXPECT_TRUE(helper_.TreeView_GetSelectedItemIDString(&tree, id));
  EXPECT_EQ(id, "C");
  EXPECT_TRUE(helper_.TreeView_GetSelectedItemTag(&tree, id));
  EXPECT_EQ(id, "tC");
  // The lookup is exact.
  EXPECT_FALSE(helper_.TreeView_SelectItemByIDString(&tree, "c"));
  EXPECT_EQ(helper_.GetLastError(), "Specified item not found in the list.");
  EXPECT_FALSE(helper_.TreeView_SelectItemByIDString(&tree, ""));
  EXPECT_EQ(helper_.GetLastError(), "Specified item not found in the list.");
  EXPECT_EQ(tree.SelectedItem()->Key(), "KC");
}

TEST_F(KvoDataCtrlHelperTest, TreeOfMalformedDataLoadsNothing) {
  EXPECT_FALSE(helper_.LoadXml("<dataset><data><row>"));
  HeadlessTreeView tree;
  EXPECT_TRUE(helper_.TreeView_LoadData(&tree, "id", "parent", "text"));
  EXPECT_EQ(tree.Nodes().Count(), 0);
}

}  // namespace
}  // namespace veld
