// What the headless controls tell their observer, change by change.
#include "veld/controls/control_observer.h"

#include <cstdint>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "veld/controls/headless_image_combo.h"
#include "veld/controls/headless_list_view.h"
#include "veld/controls/headless_tree_view.h"

namespace veld {
namespace {

constexpr int32_t kStructure = ControlObserver::kStructure;
constexpr int32_t kContent = ControlObserver::kContent;
constexpr int32_t kState = ControlObserver::kState;

class Recorder final : public ControlObserver {
 public:
  void ControlChanged(int32_t changes) override { told.push_back(changes); }
  // What was told since the last call.
  std::vector<int32_t> Take() { return std::exchange(told, {}); }
  std::vector<int32_t> told;
};

using Told = std::vector<int32_t>;

TEST(ControlObserverTest, AListTellsEachKindOfChange) {
  HeadlessListView list;
  Recorder recorder;
  list.SetObserver(&recorder);
  ColumnHeader& column = list.ColumnHeaders().Add(Variant::Missing(), Variant("a"));
  EXPECT_EQ(recorder.Take().back(), kStructure);  // told last, once the column is in
  list.ColumnHeaders().Add(Variant::Missing(), Variant("b"));
  EXPECT_EQ(recorder.Take().back(), kStructure);
  column.SetWidth(100);
  column.SetAlignment(1);
  column.SetText("A");
  EXPECT_EQ(recorder.Take(), (Told{kStructure, kStructure, kStructure}));

  ListItem& item = list.ListItems().Add(Variant::Missing(), Variant("k"));
  EXPECT_EQ(recorder.Take().back(), kStructure);
  item.SetText("x");
  item.SetSubItems(1, "y");
  item.ListSubItems(1).SetForeColor(255);
  item.SetForeColor(255);
  item.SetSmallIcon("i");
  EXPECT_EQ(recorder.Take(), (Told{kContent, kContent, kContent, kContent, kContent}));
  item.SetSelected(true);
  item.EnsureVisible();
  EXPECT_EQ(recorder.Take(), (Told{kState, kState}));
  item.SetTag("t");  // not shown: nothing to tell
  item.SetKey("k2");
  EXPECT_EQ(recorder.Take(), Told{});
  list.SetSortOrder(1);  // not sorted: the order stays
  list.SetSorted(true);
  EXPECT_EQ(recorder.Take(), (Told{kState, kState | kStructure}));
  list.ListItems().Remove(Variant("k2"));
  EXPECT_EQ(recorder.Take(), (Told{kStructure | kState}));

  list.SetObserver(nullptr);
  list.ListItems().Add();
  list.ColumnHeaders().Clear();
  EXPECT_EQ(recorder.Take(), Told{});
}

TEST(ControlObserverTest, ATreeTellsOfANewNodeOnceItIsInPlace) {
  HeadlessTreeView tree;
  struct Checker final : ControlObserver {
    explicit Checker(HeadlessTreeView& t) : tree(t) {}
    void ControlChanged(int32_t changes) override {
      if ((changes & kStructure) == 0) return;
      // Every node is reachable from its parent when the tree tells.
      for (int32_t i = 1; i <= tree.Nodes().Count(); ++i) {
        Node& node = tree.Nodes().Item(Variant(i));
        if (Node* up = node.Parent()) {
          bool found = false;
          for (Node* child = up->Child(); child != nullptr; child = child->Next())
            found = found || child == &node;
          EXPECT_TRUE(found) << node.Text();
        }
      }
      ++structures;
    }
    HeadlessTreeView& tree;
    int structures = 0;
  } checker(tree);
  tree.SetObserver(&checker);
  tree.Nodes().Add(Variant::Missing(), Variant::Missing(), Variant("r"), Variant("root"));
  tree.Nodes().Add(Variant("r"), Variant(int32_t{tvwChild}), Variant("c"), Variant("child"));
  tree.Nodes().Add(Variant("c"), Variant(int32_t{tvwPrevious}), Variant("b"), Variant("before"));
  EXPECT_EQ(checker.structures, 3);

  Recorder recorder;
  tree.SetObserver(&recorder);
  tree.Nodes().Item(Variant("c")).SetExpanded(true);
  tree.Nodes().Item(Variant("c")).SetSelected(true);
  tree.Nodes().Item(Variant("c")).SetImage("folder");
  tree.Nodes().Remove(Variant("r"));
  EXPECT_EQ(recorder.Take(), (Told{kState, kState, kContent, kStructure | kState}));
}

TEST(ControlObserverTest, AComboTellsItsTextAndItsItems) {
  HeadlessImageCombo combo;
  Recorder recorder;
  combo.SetObserver(&recorder);
  ComboItem& item = combo.ComboItems().Add(Variant::Missing(), Variant("a"), Variant("A"));
  EXPECT_EQ(recorder.Take().back(), kStructure);
  item.SetIndentation(2);
  EXPECT_EQ(recorder.Take(), (Told{kContent}));
  combo.SetText("typed");
  combo.SetSelectedItem(&item);
  combo.SetSelectedItem(nullptr);
  EXPECT_EQ(recorder.Take(), (Told{kState, kState, kState}));
  combo.ComboItems().Clear();
  EXPECT_EQ(recorder.Take(), (Told{kStructure | kState}));
}

}  // namespace
}  // namespace veld
