// KvoDataCtrlHelper's image combo members over a HeadlessImageCombo.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "veld/controls/headless_image_combo.h"
#include "veld/controls/headless_tree_view.h"
#include "veld/controls/kvo_data_ctrl_helper.h"

#include "dataset_text.h"
#include "support/testing.h"

namespace veld {
namespace {

using testing::Data;
using testing::Row;

class ImageComboHelperTest : public ::testing::Test {
 protected:
  std::vector<std::string> Texts() {
    std::vector<std::string> out;
    for (int32_t i = 1; i <= combo_.ComboItems().Count(); ++i)
      out.push_back(combo_.ComboItems().Item(Variant(i)).Text());
    return out;
  }
  std::vector<int> Indentations() {
    std::vector<int> out;
    for (int32_t i = 1; i <= combo_.ComboItems().Count(); ++i)
      out.push_back(combo_.ComboItems().Item(Variant(i)).Indentation());
    return out;
  }

  KvoDataCtrlHelper helper_;
  HeadlessImageCombo combo_;
};

TEST_F(ImageComboHelperTest, InactiveRowsAndRowsWithoutKeyOrTextGiveNoItem) {
  ASSERT_TRUE(helper_.LoadXml(Data({Row({{"id", "1"}, {"name", "one"}, {"tag", "t1"}}),
                                    Row({{"id", "2"}, {"name", "two"}}, " index=\"0\""),
                                    Row({{"name", "no key"}}), Row({{"id", "4"}, {"name", ""}}),
                                    Row({{"id", "5"}}), Row({{"id", "6"}, {"name", "six"}})})));
  ASSERT_TRUE(helper_.ImageCombo_LoadData(&combo_, "id", "name"));
  EXPECT_EQ(Texts(), (std::vector<std::string>{"one", "six"}));
  EXPECT_EQ(combo_.ComboItems().Item(Variant(int32_t{1})).Key(), "K1");
  EXPECT_EQ(combo_.ComboItems().Item(Variant(int32_t{1})).Tag(), "t1");
  EXPECT_EQ(combo_.ComboItems().Item(Variant(int32_t{2})).Tag(), "");
  // The first item is selected and the combo refreshed once.
  EXPECT_EQ(combo_.SelectedItem()->Key(), "K1");
  EXPECT_EQ(combo_.Text(), "one");
  EXPECT_EQ(combo_.RefreshCount(), 1);
}

TEST_F(ImageComboHelperTest, SecondTextIsJoinedWithACarriageReturn) {
  ASSERT_TRUE(helper_.LoadXml(
      Data({Row({{"id", "1"}, {"n", "Sales "}, {"d", " Dept 1"}}),
            Row({{"id", "2"}, {"n", ""}, {"d", "Dept 2"}}), Row({{"id", "3"}, {"n", "Solo"}})})));
  ASSERT_TRUE(helper_.ImageCombo_LoadData(&combo_, "id", "n", "d"));
  EXPECT_EQ(Texts(), (std::vector<std::string>{"Sales \r  Dept 1", "\rDept 2", "Solo"}));
  Variant text1, text2;
  ASSERT_TRUE(helper_.ImageCombo_GetSelectedItemText(&combo_, &text1, &text2));
  EXPECT_EQ(text1, Variant("Sales"));
  EXPECT_EQ(text2, Variant("Dept 1"));
  ASSERT_TRUE(helper_.ImageCombo_SelectItemByIDString(&combo_, "3"));
  ASSERT_TRUE(helper_.ImageCombo_GetSelectedItemText(&combo_, &text1, &text2));
  EXPECT_EQ(text1, Variant("Solo"));
  EXPECT_EQ(text2, Variant(""));
  // Either part may be left out.
  ASSERT_TRUE(helper_.ImageCombo_SelectItemByIDString(&combo_, "2"));
  ASSERT_TRUE(helper_.ImageCombo_GetSelectedItemText(&combo_, nullptr, &text2));
  EXPECT_EQ(text2, Variant("Dept 2"));
  ASSERT_TRUE(helper_.ImageCombo_GetSelectedItemText(&combo_));
}

TEST_F(ImageComboHelperTest, TextWithACarriageReturnOfItsOwnSplitsAtTheFirst) {
  ASSERT_TRUE(helper_.LoadXml(Data({Row({{"id", "1"}, {"n", "a&#13;b"}, {"d", "c"}})})));
  ASSERT_TRUE(helper_.ImageCombo_LoadData(&combo_, "id", "n", "d"));
  EXPECT_EQ(Texts(), (std::vector<std::string>{"a\rb\r c"}));
  Variant text1, text2;
  ASSERT_TRUE(helper_.ImageCombo_GetSelectedItemText(&combo_, &text1, &text2));
  EXPECT_EQ(text1, Variant("a"));
  EXPECT_EQ(text2, Variant("b\r c"));
}

TEST_F(ImageComboHelperTest, HierarchyIndentsUnderParentsAddedEarlier) {
  ASSERT_TRUE(helper_.LoadXml(Data(
      {Row({{"id", "A"}, {"p", ""}, {"n", "a"}}), Row({{"id", "B"}, {"p", "A"}, {"n", "b"}}),
       Row({{"id", "C"}, {"p", "B"}, {"n", "c"}}), Row({{"id", "D"}, {"p", "X"}, {"n", "d"}})})));
  ASSERT_TRUE(helper_.ImageCombo_LoadHierData(&combo_, "id", "p", "n"));
  EXPECT_EQ(Indentations(), (std::vector<int>{0, 1, 2, 0}));
  // No refresh after the hierarchical load.
  EXPECT_EQ(combo_.RefreshCount(), 0);
  EXPECT_EQ(combo_.SelectedItem()->Key(), "KA");
}

TEST_F(ImageComboHelperTest, ChildBeforeItsParentIsNotIndented) {
  ASSERT_TRUE(helper_.LoadXml(
      Data({Row({{"id", "B"}, {"p", "A"}, {"n", "b"}}), Row({{"id", "A"}, {"p", ""}, {"n", "a"}}),
            Row({{"id", "S"}, {"p", "S"}, {"n", "self"}}),
            Row({{"id", "F"}, {"p", ""}, {"n", "f"}, {"g", "out"}}),
            Row({{"id", "G"}, {"p", "F"}, {"n", "g"}, {"g", "in"}})})));
  ASSERT_TRUE(helper_.ImageCombo_LoadHierData(&combo_, "id", "p", "n"));
  EXPECT_EQ(Indentations(), (std::vector<int>{0, 0, 0, 0, 1}));
  // A parent filtered out leaves its child at 0.
  ASSERT_TRUE(helper_.ImageCombo_LoadHierData(&combo_, "id", "p", "n", "", "tag",
                                              Variant::Missing(), "g", " in "));
  EXPECT_EQ(Texts(), (std::vector<std::string>{"g"}));
  EXPECT_EQ(Indentations(), (std::vector<int>{0}));
}

TEST_F(ImageComboHelperTest, DuplicateKeyStopsTheLoadKeepingEarlierItems) {
  ASSERT_TRUE(
      helper_.LoadXml(Data({Row({{"id", "1"}, {"n", "a"}}), Row({{"id", "2"}, {"n", "b"}}),
                            Row({{"id", "1"}, {"n", "again"}}), Row({{"id", "3"}, {"n", "c"}})})));
  EXPECT_FALSE(helper_.ImageCombo_LoadData(&combo_, "id", "n"));
  EXPECT_EQ(helper_.GetLastError(), "Key is not unique in collection(ERR#: 35602)");
  EXPECT_EQ(Texts(), (std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(combo_.SelectedItem(), nullptr);
  EXPECT_EQ(combo_.RefreshCount(), 0);
  EXPECT_FALSE(helper_.ImageCombo_LoadHierData(&combo_, "id", "p", "n"));
  EXPECT_EQ(helper_.GetLastError(), "Key is not unique in collection(ERR#: 35602)");
}

TEST_F(ImageComboHelperTest, FlatFilterTakesTheOperator) {
  ASSERT_TRUE(helper_.LoadXml(
      Data({Row({{"id", "1"}, {"n", "a"}, {"q", "5"}}), Row({{"id", "2"}, {"n", "b"}, {"q", "12"}}),
            Row({{"id", "3"}, {"n", "c"}, {"q", "7"}})})));
  ASSERT_TRUE(helper_.ImageCombo_LoadData(&combo_, "id", "n", "", "tag", Variant::Missing(), "Q",
                                          " 6 ", ">"));
  EXPECT_EQ(Texts(), (std::vector<std::string>{"b", "c"}));
  ASSERT_TRUE(
      helper_.ImageCombo_LoadData(&combo_, "id", "n", "", "tag", Variant::Missing(), "q", "7"));
  EXPECT_EQ(Texts(), (std::vector<std::string>{"c"}));
}

TEST_F(ImageComboHelperTest, BadOperatorFailsWithTheXmlLibrarysText) {
  ASSERT_TRUE(helper_.LoadXml(Data({Row({{"id", "1"}, {"n", "a"}, {"q", "5"}})})));
  combo_.SetText("old");
  EXPECT_FALSE(helper_.ImageCombo_LoadData(&combo_, "id", "n", "", "tag", Variant::Missing(), "q",
                                           "5", "=="));
  EXPECT_EQ(helper_.GetLastError(), "Invalid expression(ERR#: -2147467259)");
  EXPECT_EQ(combo_.ComboItems().Count(), 0);
  EXPECT_EQ(combo_.Text(), "");
}

TEST_F(ImageComboHelperTest, SelectionAfterLoad) {
  ASSERT_TRUE(
      helper_.LoadXml(Data({Row({{"id", "1"}, {"n", "a"}}), Row({{"id", "2"}, {"n", "b"}})})));
  ASSERT_TRUE(helper_.ImageCombo_LoadData(&combo_, "id", "n", "", "tag", Variant("K2")));
  EXPECT_EQ(combo_.Text(), "b");
  ASSERT_TRUE(helper_.ImageCombo_LoadData(&combo_, "id", "n", "", "tag", Variant(int32_t{2})));
  EXPECT_EQ(combo_.Text(), "b");
  ASSERT_TRUE(helper_.ImageCombo_LoadData(&combo_, "id", "n", "", "tag", Variant("K9")));
  EXPECT_EQ(combo_.Text(), "a");
}

TEST_F(ImageComboHelperTest, EmptyDataLoadsNothing) {
  combo_.ComboItems().Add(Variant::Missing(), Variant("Kold"), Variant("old"));
  combo_.SetText("old");
  ASSERT_TRUE(helper_.LoadXml("<dataset/>"));
  ASSERT_TRUE(helper_.ImageCombo_LoadData(&combo_, "id", "n"));
  EXPECT_EQ(combo_.ComboItems().Count(), 0);
  EXPECT_EQ(combo_.Text(), "");
  EXPECT_EQ(combo_.RefreshCount(), 0);
  ASSERT_TRUE(helper_.LoadXml("<dataset><data/><data>" + Row({{"id", "1"}, {"n", "a"}}) +
                              "</data></dataset>"));
  ASSERT_TRUE(helper_.ImageCombo_LoadHierData(&combo_, "id", "p", "n"));
  EXPECT_EQ(combo_.ComboItems().Count(), 0);
}

TEST_F(ImageComboHelperTest, KeysThatLookLikeNumbersGetTheirK) {
  ASSERT_TRUE(helper_.LoadXml(Data({Row({{"ID", "123"}, {"Name", "n"}})})));
  ASSERT_TRUE(helper_.ImageCombo_LoadData(&combo_, " id ", "NAME"));
  EXPECT_EQ(combo_.ComboItems().Item(Variant(int32_t{1})).Key(), "K123");
  Variant id;
  ASSERT_TRUE(helper_.ImageCombo_GetSelectedItemIDString(&combo_, id));
  EXPECT_EQ(id, Variant("123"));
}

TEST_F(ImageComboHelperTest, SelectByIdUnknownClearsTheText) {
  ASSERT_TRUE(
      helper_.LoadXml(Data({Row({{"id", "1"}, {"n", "a"}}), Row({{"id", "2"}, {"n", "b"}})})));
  ASSERT_TRUE(helper_.ImageCombo_LoadData(&combo_, "id", "n"));
  EXPECT_FALSE(helper_.ImageCombo_SelectItemByIDString(&combo_, "9"));
  EXPECT_EQ(helper_.GetLastError(), "Specified item not found in the list.");
  EXPECT_EQ(combo_.Text(), "");
}

TEST_F(ImageComboHelperTest, SelectByIdOfTheSelectedItemChangesNothing) {
  ASSERT_TRUE(
      helper_.LoadXml(Data({Row({{"id", "1"}, {"n", "a"}}), Row({{"id", "2"}, {"n", "b"}})})));
  ASSERT_TRUE(helper_.ImageCombo_LoadData(&combo_, "id", "n"));
  const int32_t refreshes = combo_.RefreshCount();
  combo_.SetText("typed");
  EXPECT_TRUE(helper_.ImageCombo_SelectItemByIDString(&combo_, "1"));
  EXPECT_EQ(combo_.RefreshCount(), refreshes);
  EXPECT_EQ(combo_.Text(), "typed");
  EXPECT_TRUE(helper_.ImageCombo_SelectItemByIDString(&combo_, "2"));
  EXPECT_EQ(combo_.RefreshCount(), refreshes + 1);
  EXPECT_EQ(combo_.Text(), "b");
  // The lookup is exact.
  EXPECT_FALSE(helper_.ImageCombo_SelectItemByIDString(&combo_, "B"));
}

TEST_F(ImageComboHelperTest, SelectByEmptyIdTakesTheFirstItemWithoutAKey) {
  ComboItemCollection& items = combo_.ComboItems();
  items.Add(Variant::Missing(), Variant("Ka"), Variant("a"));
  items.Add(Variant::Missing(), Variant::Missing(), Variant("no key"));
  items.Add(Variant::Missing(), Variant::Missing(), Variant("no key either"));
  items.Item(Variant("Ka")).SetSelected(true);
  EXPECT_TRUE(helper_.ImageCombo_SelectItemByIDString(&combo_, ""));
  EXPECT_EQ(combo_.SelectedItem()->Text(), "no key");
  EXPECT_EQ(combo_.RefreshCount(), 1);
  // Without such an item nothing is selected, and the call still succeeds.
  HeadlessImageCombo keyed;
  keyed.ComboItems().Add(Variant::Missing(), Variant("Ka"), Variant("a"));
  keyed.ComboItems().Item(Variant("Ka")).SetSelected(true);
  EXPECT_TRUE(helper_.ImageCombo_SelectItemByIDString(&keyed, ""));
  EXPECT_EQ(keyed.SelectedItem()->Key(), "Ka");
}

TEST_F(ImageComboHelperTest, SelectByTextAndTag) {
  ASSERT_TRUE(helper_.LoadXml(Data({Row({{"id", "1"}, {"n", "Alpha"}, {"tag", "First"}}),
                                    Row({{"id", "2"}, {"n", " Beta "}, {"tag", "Second"}})})));
  ASSERT_TRUE(helper_.ImageCombo_LoadData(&combo_, "id", "n"));
  EXPECT_TRUE(helper_.ImageCombo_SelectItemByText(&combo_, "  beta"));
  EXPECT_EQ(combo_.SelectedItem()->Key(), "K2");
  EXPECT_TRUE(helper_.ImageCombo_SelectItemByTag(&combo_, "FIRST "));
  EXPECT_EQ(combo_.SelectedItem()->Key(), "K1");
  Variant tag;
  ASSERT_TRUE(helper_.ImageCombo_GetSelectedItemTag(&combo_, tag));
  EXPECT_EQ(tag, Variant("First"));
}

TEST_F(ImageComboHelperTest, SelectByTextWithoutAMatchSelectsNothing) {
  ASSERT_TRUE(helper_.LoadXml(Data({Row({{"id", "1"}, {"n", "Alpha"}})})));
  ASSERT_TRUE(helper_.ImageCombo_LoadData(&combo_, "id", "n"));
  const int32_t refreshes = combo_.RefreshCount();
  EXPECT_FALSE(helper_.ImageCombo_SelectItemByText(&combo_, "Gamma"));
  EXPECT_EQ(combo_.SelectedItem(), nullptr);
  EXPECT_EQ(helper_.GetLastError(), "");
  EXPECT_EQ(combo_.RefreshCount(), refreshes);
  EXPECT_FALSE(helper_.ImageCombo_SelectItemByTag(&combo_, "nothing"));
  EXPECT_EQ(helper_.GetLastError(), "");
}

TEST_F(ImageComboHelperTest, NothingSelected) {
  Variant id = Variant("kept");
  EXPECT_FALSE(helper_.ImageCombo_GetSelectedItemIDString(&combo_, id));
  EXPECT_EQ(helper_.GetLastError(), "No item selected.");
  EXPECT_FALSE(helper_.ImageCombo_GetSelectedItemTag(&combo_, id));
  EXPECT_EQ(helper_.GetLastError(), "No item selected.");
  Variant text1 = Variant("x"), text2 = Variant("y");
  EXPECT_FALSE(helper_.ImageCombo_GetSelectedItemText(&combo_, &text1, &text2));
  EXPECT_EQ(helper_.GetLastError(), "No item selected.");
  EXPECT_EQ(text1, Variant(""));
  EXPECT_EQ(text2, Variant(""));
}

TEST_F(ImageComboHelperTest, TypeChecks) {
  HeadlessTreeView tree;
  EXPECT_FALSE(helper_.ImageCombo_LoadData(&tree, "id", "n"));
  EXPECT_EQ(helper_.GetLastError(), "ImageCombo object required.");
  EXPECT_FALSE(helper_.ImageCombo_LoadHierData(nullptr, "id", "p", "n"));
  EXPECT_EQ(helper_.GetLastError(), "ImageCombo object required.");
  EXPECT_FALSE(helper_.ImageCombo_SelectItemByText(&tree, "x"));
  EXPECT_EQ(helper_.GetLastError(), "ImageCombo object required.");
  EXPECT_FALSE(helper_.ImageCombo_SelectItemByIDString(&tree, "x"));
  EXPECT_EQ(helper_.GetLastError(), "ImageCombo object required.");
  Variant text1 = Variant("x");
  EXPECT_FALSE(helper_.ImageCombo_GetSelectedItemText(&tree, &text1));
  EXPECT_EQ(helper_.GetLastError(), "ImageCombo object required.");
  EXPECT_EQ(text1, Variant(""));
}

}  // namespace
}  // namespace veld
