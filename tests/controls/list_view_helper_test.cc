// KvoDataCtrlHelper's list view members over a HeadlessListView, under en-US
// and, where the locale shows, de-DE.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "veld/controls/headless_list_view.h"
#include "veld/controls/headless_tree_view.h"
#include "veld/controls/kvo_data_ctrl_helper.h"

#include "dataset_text.h"
#include "support/locale_platform.h"
#include "support/testing.h"

namespace veld {
namespace {

using testing::Data;
using testing::Row;

class ListViewHelperTest : public ::testing::Test {
 protected:
  // The texts of column `column` (1-based) in item order.
  std::vector<std::string> Column(int32_t column) {
    std::vector<std::string> out;
    for (int32_t i = 1; i <= list_.ListItems().Count(); ++i)
      out.push_back(list_.ListItems().Item(Variant(i)).SubItems(column - 1));
    return out;
  }
  void Columns(const std::string& cols) {
    ASSERT_TRUE(helper_.ListView_InitializeColumns(&list_, "<cols>" + cols + "</cols>"))
        << helper_.GetLastError();
  }
  std::string Tag(int32_t column) { return list_.ColumnHeaders().Item(Variant(column)).Tag(); }

  testing::ScopedLocale locale_{"en-US"};
  KvoDataCtrlHelper helper_;
  HeadlessListView list_;
};

// --- columns ---

TEST_F(ListViewHelperTest, TypeCodesAndInheritance) {
  Columns(
      "<col name=\"A\" type=\"Date \"/><col name=\"B\" type=\"time\"/><col name=\"C\" "
      "type=\"bogus\"/>"
      "<col name=\"D\" type=\"icon\"/><col name=\"E\" type=\"BOOL\"/><col name=\"F\" "
      "type=\"boolean\"/>"
      "<col name=\"G\" type=\"datetime\"/><col name=\"H\" type=\"integer\"/><col name=\"I\" "
      "type=\"text\"/>"
      "<col name=\"J\" type=\"double\" format=\" #,##0.00 \"/><col name=\"K\" type=\"b\"/>"
      "<col name=\"L\" type=\"double\" format=\"Standard\"/><col name=\"\" type=\"text\"/><col "
      "type=\"text\"/>");
  ASSERT_EQ(list_.ColumnHeaders().Count(), 12);
  const std::vector<std::string> codes = {"d",  "t", "t", "p",        "b",        "b",
                                          "dt", "i", "s", "#,##0.00", "#,##0.00", "standard"};
  for (int32_t i = 1; i <= 12; ++i) EXPECT_EQ(Tag(i), codes[i - 1]) << i;
}

TEST_F(ListViewHelperTest, FirstColumnWithoutAKnownTypeHasTheEmptyCode) {
  Columns("<col name=\"A\"/><col name=\"B\" type=\"integer\"/><col name=\"C\" type=\"?\"/>");
  EXPECT_EQ(Tag(1), "");
  EXPECT_EQ(Tag(3), "i");
}

TEST_F(ListViewHelperTest, ColumnPropertiesFromTheSpec) {
  Columns(
      "<col name=\" Name \" field=\" name \" width=\"100\" align=\" Right \"/>"
      "<col name=\"Size\" field=\"size\" width=\"12px\" align=\"CENTER\"/>"
      "<col name=\"X\" field=\"x\" align=\"middle\"/><col name=\"Y\" field=\"y\" width=\"-5\"/>"
      "<col name=\"Z\" field=\"z\" width=\" 7 \"/>");
  ColumnHeader& first = list_.ColumnHeaders().Item(Variant(int32_t{1}));
  EXPECT_EQ(first.Key(), "name");
  EXPECT_EQ(first.Text(), " Name ");
  EXPECT_EQ(first.Width(), 1500.0);  // 100 pixels of 15 twips
  EXPECT_EQ(first.Alignment(), 1);
  EXPECT_EQ(list_.ColumnHeaders().Item(Variant(int32_t{2})).Width(), 225.0);  // not numeric: 15
  EXPECT_EQ(list_.ColumnHeaders().Item(Variant(int32_t{2})).Alignment(), 2);
  EXPECT_EQ(list_.ColumnHeaders().Item(Variant(int32_t{3})).Width(), 225.0);  // absent: 15
  EXPECT_EQ(list_.ColumnHeaders().Item(Variant(int32_t{3})).Alignment(), 0);
  EXPECT_EQ(list_.ColumnHeaders().Item(Variant(int32_t{4})).Width(), -75.0);
  EXPECT_EQ(list_.ColumnHeaders().Item(Variant(int32_t{5})).Width(), 105.0);
}

TEST_F(ListViewHelperTest, BadSpecLeavesNoColumns) {
  Columns("<col name=\"A\"/>");
  EXPECT_FALSE(helper_.ListView_InitializeColumns(&list_, "<cols><col name="));
  EXPECT_EQ(helper_.GetLastError(), "Invalid column spec xml.");
  EXPECT_EQ(list_.ColumnHeaders().Count(), 0);
  EXPECT_TRUE(helper_.ListView_InitializeColumns(&list_, "<cols><row name=\"x\"/></cols>"));
  EXPECT_EQ(list_.ColumnHeaders().Count(), 0);
}

TEST_F(ListViewHelperTest, DuplicateFieldsAreRefusedByTheControl) {
  EXPECT_FALSE(helper_.ListView_InitializeColumns(
      &list_, "<cols><col name=\"A\" field=\"a\"/><col name=\"B\" field=\"a\"/></cols>"));
  EXPECT_EQ(helper_.GetLastError(), "Key is not unique in collection(ERR#: 35602)");
  EXPECT_EQ(list_.ColumnHeaders().Count(), 1);
}

TEST_F(ListViewHelperTest, TypeChecks) {
  HeadlessTreeView tree;
  EXPECT_FALSE(helper_.ListView_InitializeColumns(&tree, "<cols/>"));
  EXPECT_EQ(helper_.GetLastError(), "ListView object required.");
  EXPECT_FALSE(helper_.ListView_LoadData(nullptr));
  EXPECT_EQ(helper_.GetLastError(), "ListView object required.");
  EXPECT_EQ(helper_.ListView_AddItem(&tree, "<row/>"), -1);
  EXPECT_EQ(helper_.GetLastError(), "ListView object required.");
  std::string id = "kept";
  EXPECT_FALSE(helper_.ListView_GetSelectedItemIDString(&tree, id));
  EXPECT_EQ(id, "kept");
  EXPECT_EQ(helper_.ListView_GetColumnIndex(&tree, "a"), -1);
  EXPECT_EQ(helper_.GetLastError(), "ListView object required.");
  helper_.ListView_SortData(&tree, 1);
  EXPECT_EQ(helper_.GetLastError(), "ListView object required.");
}

// --- cell formatting ---

TEST_F(ListViewHelperTest, FormatColumnData) {
  using H = KvoDataCtrlHelper;
  EXPECT_EQ(H::ListView_FormatColumnData("", "s"), " ");
  EXPECT_EQ(H::ListView_FormatColumnData("x", "p"), " ");
  EXPECT_EQ(H::ListView_FormatColumnData("1", "b"), "Y");
  EXPECT_EQ(H::ListView_FormatColumnData("-1", "b"), "Y");
  EXPECT_EQ(H::ListView_FormatColumnData("0", "b"), "N");
  EXPECT_EQ(H::ListView_FormatColumnData(" yes ", "b"), "yes");
  EXPECT_EQ(H::ListView_FormatColumnData(" a ", "s"), " a ");
  EXPECT_EQ(H::ListView_FormatColumnData("2.5", "i"), "2");
  EXPECT_EQ(H::ListView_FormatColumnData("3.5", "i"), "4");
  EXPECT_EQ(H::ListView_FormatColumnData("abc", "i"), " ");
  EXPECT_EQ(H::ListView_FormatColumnData("9999999999", "i"), " ");
  EXPECT_EQ(H::ListView_FormatColumnData("2010-12-19 18:30:00", "d"), "12/19/2010");
  EXPECT_EQ(H::ListView_FormatColumnData("2010-12-19 18:30:00", "t"), "6:30:00 PM");
  EXPECT_EQ(H::ListView_FormatColumnData("2010-12-19 18:30:00", "dt"), "12/19/2010 6:30:00 PM");
  EXPECT_EQ(H::ListView_FormatColumnData("2010-12-19", "dt"), "12/19/2010");
  EXPECT_EQ(H::ListView_FormatColumnData("word", "d"), " ");
  EXPECT_EQ(H::ListView_FormatColumnData("1234.5", "#,##0.00"), "1,234.50");
  EXPECT_EQ(H::ListView_FormatColumnData("1234.5", ""), "1234.5");
  EXPECT_EQ(H::ListView_FormatColumnData("word", "#,##0.00"), "word");
  // The code is compared exactly.
  EXPECT_EQ(H::ListView_FormatColumnData("1", "B"), "B");
}

TEST_F(ListViewHelperTest, FormatColumnDataInGerman) {
  testing::ScopedLocale german("de-DE");
  using H = KvoDataCtrlHelper;
  EXPECT_EQ(H::ListView_FormatColumnData("2010-12-19 18:30:00", "d"), "19.12.2010");
  EXPECT_EQ(H::ListView_FormatColumnData("2010-12-19 18:30:00", "t"), "18:30:00");
  EXPECT_EQ(H::ListView_FormatColumnData("1234,5", "#,##0.00"), "1.234,50");
  EXPECT_EQ(H::ListView_FormatColumnData("2,5", "i"), "2");
}

// --- loading ---

const char kSpec[] =
    "<cols><col name=\"Name\" field=\"name\" type=\"text\"/>"
    "<col name=\"Qty\" field=\"qty\" type=\"integer\" align=\"right\"/>"
    "<col name=\"Price\" field=\"price\" type=\"double\" format=\"#,##0.00\"/>"
    "<col name=\"Ok\" field=\"ok\" type=\"boolean\"/></cols>";

TEST_F(ListViewHelperTest, LoadDataFillsItemsInDataOrder) {
  ASSERT_TRUE(helper_.ListView_InitializeColumns(&list_, kSpec));
  ASSERT_TRUE(helper_.LoadXml(Data({
      Row({{"_guid_", " A1 "},
           {"name", "Apple"},
           {"qty", "2.5"},
           {"price", "1234.5"},
           {"ok", "1"},
           {"t", "x"}}),
      Row({{"_guid_", "B2"}, {"name", "Hidden"}}, " index=\"0\""),
      Row({{"_guid_", "C3"}, {"qty", "3.5"}, {"ok", "yes"}}),
  })));
  ASSERT_TRUE(helper_.ListView_LoadData(&list_, "_guid_", Variant::Missing(), "t"));
  ASSERT_EQ(list_.ListItems().Count(), 2);
  ListItem& apple = list_.ListItems().Item(Variant(int32_t{1}));
  EXPECT_EQ(apple.Key(), "KA1");
  EXPECT_EQ(apple.Text(), "Apple");
  EXPECT_EQ(apple.SubItems(1), "2");
  EXPECT_EQ(apple.SubItems(2), "1,234.50");
  EXPECT_EQ(apple.SubItems(3), "Y");
  EXPECT_EQ(apple.Tag(), "x");
  ListItem& other = list_.ListItems().Item(Variant(int32_t{2}));
  // The first column's col is missing: the text stays empty; the others get
  // a single blank.
  EXPECT_EQ(other.Text(), "");
  EXPECT_EQ(other.SubItems(1), "4");
  EXPECT_EQ(other.SubItems(2), " ");
  EXPECT_EQ(other.SubItems(3), "yes");
  EXPECT_EQ(other.Tag(), "");
  // The first item is selected and scrolled into view.
  EXPECT_EQ(list_.SelectedItem(), &apple);
  EXPECT_EQ(list_.VisibleItem(), &apple);
}

TEST_F(ListViewHelperTest, LoadDataInGermanShowsTheLocalesForms) {
  testing::ScopedLocale german("de-DE");
  ASSERT_TRUE(helper_.ListView_InitializeColumns(
      &list_,
      "<cols><col name=\"D\" field=\"d\" type=\"date\"/><col name=\"N\" field=\"n\" "
      "type=\"double\" format=\"#,##0.00\"/></cols>"));
  ASSERT_TRUE(helper_.LoadXml(Data({Row({{"d", "2010-12-19"}, {"n", "1234,5"}})})));
  ASSERT_TRUE(helper_.ListView_LoadData(&list_));
  EXPECT_EQ(Column(1), (std::vector<std::string>{"19.12.2010"}));
  EXPECT_EQ(Column(2), (std::vector<std::string>{"1.234,50"}));
}

TEST_F(ListViewHelperTest, IconColumn) {
  ASSERT_TRUE(
      helper_.ListView_InitializeColumns(&list_,
                                         "<cols><col name=\"\xC2\xA0\" field=\"img\" "
                                         "type=\"icon\"/><col name=\"N\" field=\"n\"/></cols>"));
  ASSERT_TRUE(helper_.LoadXml(
      Data({Row({{"img", " folder "}, {"n", "a"}}), Row({{"img", ""}, {"n", "b"}})})));
  ASSERT_TRUE(helper_.ListView_LoadData(&list_));
  ListItem& first = list_.ListItems().Item(Variant(int32_t{1}));
  EXPECT_EQ(first.Icon(), "folder");
  EXPECT_EQ(first.SmallIcon(), "folder");
  EXPECT_EQ(first.Text(), "");
  ListItem& second = list_.ListItems().Item(Variant(int32_t{2}));
  EXPECT_EQ(second.Text(), " ");
  EXPECT_EQ(second.Icon(), "");
}

TEST_F(ListViewHelperTest, FieldNamesInOtherCaseFindTheirColumns) {
  ASSERT_TRUE(helper_.ListView_InitializeColumns(
      &list_, "<cols><col name=\"N\" field=\"NAME\"/><col name=\"M\" field=\"missing\"/></cols>"));
  ASSERT_TRUE(helper_.LoadXml(
      Data({Row({{"ID", "1"}, {" name ", "x"}}), Row({{"ID", "2"}, {"name", "y"}})})));
  ASSERT_TRUE(helper_.ListView_LoadData(&list_, "id"));
  // The first row spells the col " name ": the field becomes "name", which
  // the first row's col does not carry but the second row's does.
  EXPECT_EQ(Column(1), (std::vector<std::string>{"", "y"}));
  EXPECT_EQ(list_.ListItems().Item(Variant(int32_t{2})).Key(), "K2");
}

TEST_F(ListViewHelperTest, LoadDataSelection) {
  ASSERT_TRUE(helper_.ListView_InitializeColumns(&list_, kSpec));
  ASSERT_TRUE(helper_.LoadXml(
      Data({Row({{"_guid_", "A"}, {"name", "a"}}), Row({{"_guid_", "B"}, {"name", "b"}})})));
  ASSERT_TRUE(helper_.ListView_LoadData(&list_, "_guid_", Variant("KB")));
  EXPECT_EQ(list_.SelectedItem()->Key(), "KB");
  ASSERT_TRUE(helper_.ListView_LoadData(&list_, "_guid_", Variant("Knothing")));
  EXPECT_EQ(list_.SelectedItem()->Key(), "KA");
  ASSERT_TRUE(helper_.ListView_LoadData(&list_, "_guid_", Variant(int32_t{2})));
  EXPECT_EQ(list_.SelectedItem()->Key(), "KB");
}

TEST_F(ListViewHelperTest, LoadDataOfAnEmptyDataElement) {
  ASSERT_TRUE(helper_.ListView_InitializeColumns(&list_, kSpec));
  list_.ListItems().Add(Variant::Missing(), Variant("Kold"));
  list_.SetSorted(true);
  ASSERT_TRUE(helper_.LoadXml("<dataset><data/></dataset>"));
  EXPECT_TRUE(helper_.ListView_LoadData(&list_));
  EXPECT_EQ(list_.ListItems().Count(), 0);
  EXPECT_FALSE(list_.Sorted());
}

TEST_F(ListViewHelperTest, LoadDataWithoutColumnsFails) {
  ASSERT_TRUE(helper_.LoadXml(Data({Row({{"name", "a"}})})));
  EXPECT_FALSE(helper_.ListView_LoadData(&list_));
  EXPECT_EQ(helper_.GetLastError(), "No column defined for the list view.");
}

TEST_F(ListViewHelperTest, LoadDataStopsAtAFailedFillKeepingEarlierItems) {
  ASSERT_TRUE(helper_.ListView_InitializeColumns(&list_, kSpec));
  ASSERT_TRUE(helper_.LoadXml(
      Data({Row({{"_guid_", "A"}, {"name", "a"}}), Row({{"_guid_", "A"}, {"name", "again"}}),
            Row({{"_guid_", "C"}, {"name", "c"}})})));
  EXPECT_FALSE(helper_.ListView_LoadData(&list_));
  EXPECT_EQ(helper_.GetLastError(), "Key is not unique in collection(ERR#: 35602)");
  EXPECT_EQ(Column(1), (std::vector<std::string>{"a"}));
}

TEST_F(ListViewHelperTest, AddItem) {
  ASSERT_TRUE(helper_.ListView_InitializeColumns(&list_, kSpec));
  EXPECT_EQ(helper_.ListView_AddItem(
                &list_, "<r>" + Row({{"_guid_", "A"}, {"NAME", "a"}, {"qty", "7"}}) + "</r>"),
            1);
  EXPECT_EQ(list_.SelectedItem()->Key(), "KA");
  EXPECT_EQ(Column(1), (std::vector<std::string>{"a"}));
  EXPECT_EQ(
      helper_.ListView_AddItem(&list_, Row({{"_guid_", "B"}, {"name", "b"}}), "_guid_", false), 2);
  EXPECT_EQ(list_.SelectedItem()->Key(), "KA");
  EXPECT_EQ(helper_.ListView_AddItem(&list_, "<row"), -1);
  EXPECT_EQ(helper_.GetLastError(), "Faield to load data item xml.");
  EXPECT_EQ(helper_.ListView_AddItem(&list_, "<data/>"), -1);
  EXPECT_EQ(helper_.GetLastError(), "No data element found.");
  EXPECT_EQ(helper_.ListView_AddItem(&list_, Row({{"_guid_", "A"}, {"name", "dup"}})), -1);
  EXPECT_EQ(helper_.GetLastError(), "Key is not unique in collection(ERR#: 35602)");
  EXPECT_EQ(list_.ListItems().Count(), 2);
}

TEST_F(ListViewHelperTest, UpdateItem) {
  ASSERT_TRUE(helper_.ListView_InitializeColumns(&list_, kSpec));
  ASSERT_TRUE(helper_.LoadXml(
      Data({Row({{"_guid_", "A"}, {"name", "a"}}), Row({{"_guid_", "B"}, {"name", "b"}})})));
  ASSERT_TRUE(helper_.ListView_LoadData(&list_));
  EXPECT_EQ(helper_.ListView_UpdateItem(&list_, "B",
                                        Row({{"_guid_", "B2"}, {"name", "bee"}}, " index=\"0\"")),
            2);
  ListItem& updated = list_.ListItems().Item(Variant(int32_t{2}));
  EXPECT_EQ(updated.Key(), "KB2");
  EXPECT_EQ(updated.Text(), "bee");
  EXPECT_EQ(list_.SelectedItem(), &updated);
  // The lookup is exact and the control's error is recorded.
  EXPECT_EQ(helper_.ListView_UpdateItem(&list_, "a", Row({{"name", "x"}})), -1);
  EXPECT_EQ(helper_.GetLastError(), "Element not found(ERR#: 35601)");
  EXPECT_EQ(helper_.ListView_UpdateItem(&list_, "", Row({{"name", "x"}})), -1);
  EXPECT_EQ(helper_.GetLastError(), "Specified item not found in the list.");
  EXPECT_EQ(helper_.ListView_UpdateItem(&list_, "A", "not xml"), -1);
  EXPECT_EQ(helper_.GetLastError(), "Faield to load data item xml.");
}

// --- sorting ---

class ListViewSortTest : public ListViewHelperTest {
 protected:
  void Load(const std::string& spec, const std::vector<std::string>& rows) {
    ASSERT_TRUE(helper_.ListView_InitializeColumns(&list_, spec));
    ASSERT_TRUE(helper_.LoadXml(Data(rows)));
    ASSERT_TRUE(helper_.ListView_LoadData(&list_, "id"));
  }
};

const char kSortSpec[] =
    "<cols><col name=\"N\" field=\"n\" type=\"text\"/><col name=\"I\" field=\"i\" "
    "type=\"integer\"/>"
    "<col name=\"D\" field=\"d\" type=\"date\"/><col name=\"X\" field=\"x\" type=\"double\" "
    "format=\"#,##0.00\"/></cols>";

TEST_F(ListViewSortTest, SameColumnTwiceFlipsTheDirection) {
  Load(kSortSpec,
       {Row({{"id", "1"}, {"n", "b"}, {"i", "9"}}), Row({{"id", "2"}, {"n", "a"}, {"i", "100"}}),
        Row({{"id", "3"}, {"n", "c"}, {"i", "10"}})});
  helper_.ListView_SortData(&list_, 2);
  EXPECT_EQ(Column(2), (std::vector<std::string>{"9", "10", "100"}));
  EXPECT_EQ(list_.SortOrder(), 0);
  helper_.ListView_SortData(&list_, 2);
  EXPECT_EQ(Column(2), (std::vector<std::string>{"100", "10", "9"}));
  EXPECT_EQ(list_.SortOrder(), 1);
  helper_.ListView_SortData(&list_, 1);
  EXPECT_EQ(Column(1), (std::vector<std::string>{"a", "b", "c"}));
  EXPECT_EQ(list_.SortKey(), 0);
  EXPECT_EQ(list_.SortOrder(), 0);
  EXPECT_TRUE(list_.Sorted());
  EXPECT_EQ(helper_.GetLastError(), "");
}

TEST_F(ListViewSortTest, DatesSortChronologicallyInEveryLocale) {
  for (const char* locale : {"en-US", "de-DE", "en-GB"}) {
    testing::ScopedLocale scoped(locale);
    // A fresh sort state, so that each locale's sort is an ascending one.
    list_.SetSorted(false);
    list_.SetSortKey(0);
    list_.SetSortOrder(0);
    Load(kSortSpec,
         {Row({{"id", "1"}, {"d", "2011-01-05"}}), Row({{"id", "2"}, {"d", "2009-12-31"}}),
          Row({{"id", "3"}, {"d", "2010-06-15"}})});
    helper_.ListView_SortData(&list_, 3);
    std::vector<std::string> ids;
    for (int32_t i = 1; i <= 3; ++i) ids.push_back(list_.ListItems().Item(Variant(i)).Key());
    EXPECT_EQ(ids, (std::vector<std::string>{"K2", "K3", "K1"})) << locale;
    EXPECT_EQ(Column(3)[0], KvoDataCtrlHelper::ListView_FormatColumnData("2009-12-31", "d"))
        << locale;
  }
}

TEST_F(ListViewSortTest, TenDigitIntegersSortAsText) {
  Load(kSortSpec, {Row({{"id", "1"}, {"i", "1234567890"}}), Row({{"id", "2"}, {"i", "5"}}),
                   Row({{"id", "3"}, {"i", "200000000"}})});
  // "+1234567890" sorts as text between "+000000005" and "+200000000".
  helper_.ListView_SortData(&list_, 2);
  EXPECT_EQ(Column(2), (std::vector<std::string>{"5", "1234567890", "200000000"}));
}

TEST_F(ListViewSortTest, NumberColumnsSortByValueAndKeepTheirPattern) {
  Load(kSortSpec, {Row({{"id", "1"}, {"x", "1234.5"}}), Row({{"id", "2"}, {"x", "99.999"}}),
                   Row({{"id", "3"}, {"x", "-3"}})});
  helper_.ListView_SortData(&list_, 4);
  EXPECT_EQ(Column(4)[1], "100.00");
  EXPECT_EQ(Column(4)[2], "1,234.50");
}

TEST_F(ListViewSortTest, BlankCellsStayBlank) {
  Load(kSortSpec,
       {Row({{"id", "1"}, {"i", "7"}}), Row({{"id", "2"}}), Row({{"id", "3"}, {"i", "3"}})});
  helper_.ListView_SortData(&list_, 2);
  EXPECT_EQ(Column(2), (std::vector<std::string>{" ", "3", "7"}));
}

TEST_F(ListViewSortTest, WordsInADateColumnKeepTheirText) {
  Load(kSortSpec, {Row({{"id", "1"}, {"d", "2010-01-01"}}), Row({{"id", "2"}, {"d", "soon"}})});
  list_.ListItems().Item(Variant(int32_t{2})).SetSubItems(2, "soon");
  helper_.ListView_SortData(&list_, 3);
  EXPECT_EQ(Column(3), (std::vector<std::string>{"1/1/2010", "soon"}));
}

TEST_F(ListViewSortTest, IconColumnSortsByIconKeyAndShowsBlanks) {
  Load(
      "<cols><col name=\"P\" field=\"p\" type=\"icon\"/><col name=\"N\" field=\"n\" "
      "type=\"text\"/></cols>",
      {Row({{"id", "1"}, {"p", "zeta"}, {"n", "1"}}),
       Row({{"id", "2"}, {"p", "alpha"}, {"n", "2"}}), Row({{"id", "3"}, {"p", ""}, {"n", "3"}})});
  // A new list's sort key is column 1 already, so its first sort there
  // flips the direction: descending.
  helper_.ListView_SortData(&list_, 1);
  EXPECT_EQ(list_.SortOrder(), 1);
  EXPECT_EQ(Column(2), (std::vector<std::string>{"1", "2", "3"}));
  EXPECT_EQ(Column(1), (std::vector<std::string>{" ", " ", " "}));
  helper_.ListView_SortData(&list_, 1);
  EXPECT_EQ(Column(2), (std::vector<std::string>{"3", "2", "1"}));
}

TEST_F(ListViewSortTest, ColumnPastTheLastDoesNothing) {
  Load(kSortSpec, {Row({{"id", "1"}, {"n", "b"}})});
  helper_.ListView_SortData(&list_, 5);
  EXPECT_FALSE(list_.Sorted());
  EXPECT_EQ(helper_.GetLastError(), "");
  helper_.ListView_SortData(&list_, -1);
  EXPECT_FALSE(list_.Sorted());
  helper_.ListView_SortData(&list_, 0);
  EXPECT_EQ(helper_.GetLastError(), "Index out of bounds(ERR#: 35600)");
  EXPECT_FALSE(list_.Sorted());
}

TEST_F(ListViewSortTest, SortingAnEmptyListSetsTheKeyOnly) {
  ASSERT_TRUE(helper_.ListView_InitializeColumns(&list_, kSortSpec));
  helper_.ListView_SortData(&list_, 3);
  EXPECT_EQ(list_.SortKey(), 2);
  EXPECT_TRUE(list_.Sorted());
}

// --- item access ---

TEST_F(ListViewHelperTest, SelectByIdIgnoresCase) {
  ASSERT_TRUE(helper_.ListView_InitializeColumns(&list_, kSpec));
  list_.ListItems().Add(Variant::Missing(), Variant("KABC"));
  list_.ListItems().Add(Variant::Missing(), Variant::Missing());
  EXPECT_TRUE(helper_.ListView_SelectItemByIDString(&list_, "abc"));
  EXPECT_EQ(list_.SelectedItem()->Key(), "KABC");
  EXPECT_EQ(list_.VisibleItem(), list_.SelectedItem());
  EXPECT_TRUE(helper_.ListView_SelectItemByIDString(&list_, "", false));
  EXPECT_EQ(list_.SelectedItem()->Index(), 2);
  EXPECT_EQ(list_.VisibleItem()->Index(), 1);
  EXPECT_FALSE(helper_.ListView_SelectItemByIDString(&list_, "xyz"));
  EXPECT_EQ(helper_.GetLastError(), "Specified item can't be found.");
}

TEST_F(ListViewHelperTest, SelectedItemIdAndTag) {
  std::string out = "kept";
  EXPECT_FALSE(helper_.ListView_GetSelectedItemIDString(&list_, out));
  EXPECT_EQ(helper_.GetLastError(), "No item selected.");
  EXPECT_FALSE(helper_.ListView_GetSelectedItemTag(&list_, out));
  EXPECT_EQ(out, "kept");
  ListItem& item = list_.ListItems().Add(Variant::Missing(), Variant("Kid7"));
  item.SetTag("tag7");
  item.SetSelected(true);
  EXPECT_TRUE(helper_.ListView_GetSelectedItemIDString(&list_, out));
  EXPECT_EQ(out, "id7");
  EXPECT_TRUE(helper_.ListView_GetSelectedItemTag(&list_, out));
  EXPECT_EQ(out, "tag7");
  item.SetKey("");
  EXPECT_TRUE(helper_.ListView_GetSelectedItemIDString(&list_, out));
  EXPECT_EQ(out, "");
}

TEST_F(ListViewHelperTest, RowColumnData) {
  ASSERT_TRUE(helper_.ListView_InitializeColumns(&list_, kSpec));
  ASSERT_TRUE(helper_.LoadXml(Data({Row({{"_guid_", "A"}, {"name", "a"}, {"ok", "0"}}),
                                    Row({{"_guid_", "B"}, {"name", "b"}, {"ok", "1"}})})));
  ASSERT_TRUE(helper_.ListView_LoadData(&list_));
  std::string data = "kept";
  EXPECT_FALSE(helper_.ListView_GetRowColumnData(&list_, 3, 1, data));
  EXPECT_EQ(helper_.GetLastError(), "Invalid Row/Col specified.");
  EXPECT_FALSE(helper_.ListView_GetRowColumnData(&list_, 1, 5, data));
  EXPECT_EQ(helper_.GetLastError(), "Invalid Row/Col specified.");
  EXPECT_EQ(data, "kept");
  EXPECT_FALSE(helper_.ListView_GetRowColumnData(&list_, 0, 1, data));
  EXPECT_EQ(helper_.GetLastError(), "Index out of bounds(ERR#: 35600)");
  EXPECT_FALSE(helper_.ListView_GetRowColumnData(&list_, 1, 0, data));
  EXPECT_EQ(helper_.GetLastError(), "Index out of bounds(ERR#: 35600)");
  EXPECT_TRUE(helper_.ListView_GetRowColumnData(&list_, 2, 4, data));
  EXPECT_EQ(data, "Y");
  EXPECT_TRUE(helper_.ListView_GetRowColumnData(&list_, 1, 1, data));
  EXPECT_EQ(data, "a");
  EXPECT_TRUE(helper_.ListView_SetRowColumnData(&list_, 1, 2, Variant("raw text")));
  EXPECT_TRUE(helper_.ListView_GetRowColumnData(&list_, 1, 2, data));
  EXPECT_EQ(data, "raw text");
  EXPECT_TRUE(helper_.ListView_SetRowColumnData(&list_, 2, 1, Variant(12.5)));
  EXPECT_EQ(list_.ListItems().Item(Variant(int32_t{2})).Text(), "12.5");
  EXPECT_TRUE(helper_.ListView_SetRowColumnData(&list_, 2, 1));
  EXPECT_FALSE(helper_.ListView_SetRowColumnData(&list_, 3, 1, Variant("x")));
  EXPECT_EQ(helper_.GetLastError(), "Invalid Row/Col specified.");
  EXPECT_FALSE(helper_.ListView_SetRowColumnData(&list_, 1, 1, Variant::Missing(), Variant("red")));
  EXPECT_EQ(helper_.GetLastError(), "Type mismatch(ERR#: 13)");
}

TEST_F(ListViewHelperTest, ForeColors) {
  ASSERT_TRUE(helper_.ListView_InitializeColumns(&list_, kSpec));
  ListItem& item = list_.ListItems().Add(Variant::Missing(), Variant("KA"), Variant("a"));
  EXPECT_TRUE(helper_.ListView_SetRowColumnForeColor(&list_, 1, 1, Variant(int32_t{255})));
  EXPECT_EQ(item.ForeColor(), 255);
  EXPECT_EQ(item.ListSubItems(2).ForeColor(), 0);
  EXPECT_TRUE(helper_.ListView_SetRowColumnForeColor(&list_, 1, 3, Variant("65280")));
  EXPECT_EQ(item.ListSubItems(2).ForeColor(), 65280);
  EXPECT_EQ(item.ListSubItems(1).ForeColor(), 0);
  EXPECT_EQ(item.ForeColor(), 255);
}

TEST_F(ListViewHelperTest, ColumnIndexByKey) {
  EXPECT_EQ(helper_.ListView_GetColumnIndex(&list_, "name"), -1);
  EXPECT_EQ(helper_.GetLastError(), "No column defined for the list view.");
  ASSERT_TRUE(helper_.ListView_InitializeColumns(&list_, kSpec));
  EXPECT_EQ(helper_.ListView_GetColumnIndex(&list_, "  PRICE "), 3);
  EXPECT_EQ(helper_.ListView_GetColumnIndex(&list_, "nothing"), -1);
  EXPECT_EQ(helper_.GetLastError(), "");
}

}  // namespace
}  // namespace veld
