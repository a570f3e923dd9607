// The conformance suite of the control interfaces over the headless
// controls, and what only the headless controls promise.
#include <memory>

#include "veld/controls/headless_image_combo.h"
#include "veld/controls/headless_list_view.h"
#include "veld/controls/headless_tree_view.h"

#include "control_conformance.h"

namespace veld::testing {
namespace {

ControlFactory Headless() {
  return {"Headless", [] { return std::make_unique<HeadlessListView>(); },
          [] { return std::make_unique<HeadlessImageCombo>(); },
          [] { return std::make_unique<HeadlessTreeView>(); }};
}

INSTANTIATE_TEST_SUITE_P(Headless, ListViewConformance, ::testing::Values(Headless()), FactoryName);
INSTANTIATE_TEST_SUITE_P(Headless, ImageComboConformance, ::testing::Values(Headless()),
                         FactoryName);
INSTANTIATE_TEST_SUITE_P(Headless, TreeViewConformance, ::testing::Values(Headless()), FactoryName);

TEST(HeadlessImageComboTest, RefreshIsCounted) {
  HeadlessImageCombo combo;
  EXPECT_EQ(combo.RefreshCount(), 0);
  combo.Refresh();
  combo.Refresh();
  EXPECT_EQ(combo.RefreshCount(), 2);
}

TEST(HeadlessListViewTest, EnsureVisibleIsRemembered) {
  HeadlessListView list;
  EXPECT_EQ(list.VisibleItem(), nullptr);
  ListItem& item = list.ListItems().Add(Variant::Missing(), Variant("Ka"));
  item.EnsureVisible();
  EXPECT_EQ(list.VisibleItem(), &item);
  list.ListItems().Clear();
  EXPECT_EQ(list.VisibleItem(), nullptr);
}

TEST(HeadlessListViewTest, NewColumnsAreAnInchWideAndLeftAligned) {
  HeadlessListView list;
  ColumnHeader& column = list.ColumnHeaders().Add();
  EXPECT_EQ(column.Width(), 1440.0);
  EXPECT_EQ(column.Alignment(), 0);
}

}  // namespace
}  // namespace veld::testing
