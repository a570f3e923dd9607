#include "control_conformance.h"

#include <string>
#include <vector>

#include "support/locale_platform.h"
#include "support/testing.h"

namespace veld::testing {
namespace {

const char kOutOfBounds[] = "Index out of bounds";
const char kNotFound[] = "Element not found";
const char kNotUnique[] = "Key is not unique in collection";
const char kInvalidKey[] = "Invalid key";
const char kInvalidValue[] = "Invalid property value";

// Texts of the list's items in index order (column `k`).
std::vector<std::string> Column(ListView& list, int32_t k = 0) {
  std::vector<std::string> out;
  for (int32_t i = 1; i <= list.ListItems().Count(); ++i) {
    ListItem& item = list.ListItems().Item(Variant(i));
    EXPECT_EQ(item.Index(), i);
    out.push_back(item.SubItems(k));
  }
  return out;
}

std::vector<std::string> Keys(NodeCollection& nodes) {
  std::vector<std::string> out;
  for (int32_t i = 1; i <= nodes.Count(); ++i) {
    Node& node = nodes.Item(Variant(i));
    EXPECT_EQ(node.Index(), i);
    out.push_back(node.Key());
  }
  return out;
}

// The keys of a node's children, first to last, through Child and Next.
std::vector<std::string> ChildKeys(Node& node) {
  std::vector<std::string> out;
  for (Node* child = node.Child(); child != nullptr; child = child->Next()) {
    EXPECT_EQ(child->Parent(), &node);
    out.push_back(child->Key());
  }
  return out;
}

// --- list views ---

TEST_P(ListViewConformance, ItemTakesPositionsAndExactKeys) {
  auto list = GetParam().list_view();
  ListItemCollection& items = list->ListItems();
  ListItem& a = items.Add(Variant::Missing(), Variant("Ka"), Variant("first"));
  ListItem& b = items.Add(Variant::Missing(), Variant("Kb"), Variant("second"));
  EXPECT_EQ(&items.Item(Variant(int32_t{1})), &a);
  EXPECT_EQ(&items.Item(Variant(2.0)), &b);
  EXPECT_EQ(&items.Item(Variant("Kb")), &b);
  EXPECT_RAISES(items.Item(Variant("kb")), 35601, kNotFound);
  EXPECT_RAISES(items.Item(Variant(int32_t{3})), 35600, kOutOfBounds);
  EXPECT_RAISES(items.Item(Variant(int32_t{0})), 35600, kOutOfBounds);
  EXPECT_RAISES(items.Item(Variant(int32_t{-1})), 35600, kOutOfBounds);
  EXPECT_RAISES(items.Item(Variant()), 13, "Type mismatch");
  EXPECT_RAISES(items.Item(Variant::Null()), 13, "Type mismatch");
  EXPECT_RAISES(items.Item(Variant::Missing()), 13, "Type mismatch");
}

TEST_P(ListViewConformance, KeysAreUniqueAndNotNumeric) {
  auto list = GetParam().list_view();
  ListItemCollection& items = list->ListItems();
  items.Add(Variant::Missing(), Variant("K1"));
  EXPECT_RAISES(items.Add(Variant::Missing(), Variant("K1")), 35602, kNotUnique);
  for (const char* numeric : {"12", " 5 ", "1e3", "&H10", "-4", "(7)", "1,000"})
    EXPECT_RAISES(items.Add(Variant::Missing(), Variant(numeric)), 35603, kInvalidKey);
  EXPECT_RAISES(items.Add(Variant::Missing(), Variant(int32_t{5})), 35603, kInvalidKey);
  EXPECT_EQ(items.Count(), 1);
  // No key: any number of items.
  items.Add(Variant::Missing(), Variant(""));
  items.Add();
  EXPECT_EQ(items.Count(), 3);
  ListItem& third = items.Item(Variant(int32_t{3}));
  EXPECT_RAISES(third.SetKey("K1"), 35602, kNotUnique);
  EXPECT_RAISES(third.SetKey("42"), 35603, kInvalidKey);
  third.SetKey("K3");
  EXPECT_EQ(&items.Item(Variant("K3")), &third);
  third.SetKey("K1x");
  EXPECT_RAISES(items.Item(Variant("K3")), 35601, kNotFound);
  EXPECT_EQ(&items.Item(Variant("K1x")), &third);
  third.SetKey("K1x");  // its own key again
}

TEST_P(ListViewConformance, PositionsFollowInsertionAndRemoval) {
  auto list = GetParam().list_view();
  ListItemCollection& items = list->ListItems();
  ListItem& b = items.Add(Variant::Missing(), Variant("Kb"), Variant("b"));
  ListItem& a = items.Add(Variant(int32_t{1}), Variant("Ka"), Variant("a"));
  items.Add(Variant(int32_t{3}), Variant("Kc"), Variant("c"));
  EXPECT_EQ(Column(*list), (std::vector<std::string>{"a", "b", "c"}));
  EXPECT_EQ(a.Index(), 1);
  EXPECT_EQ(b.Index(), 2);
  EXPECT_RAISES(items.Add(Variant(int32_t{5})), 35600, kOutOfBounds);
  items.Remove(Variant("Ka"));
  EXPECT_EQ(b.Index(), 1);  // references to other items stay valid
  items.Remove(Variant(int32_t{2}));
  EXPECT_EQ(Column(*list), (std::vector<std::string>{"b"}));
  EXPECT_RAISES(items.Remove(Variant("Kz")), 35601, kNotFound);
  items.Clear();
  EXPECT_EQ(items.Count(), 0);
}

TEST_P(ListViewConformance, SubItemsExistBelowTheColumnCount) {
  auto list = GetParam().list_view();
  list->ColumnHeaders().Add(Variant::Missing(), Variant("name"), Variant("Name"));
  list->ColumnHeaders().Add(Variant::Missing(), Variant("size"), Variant("Size"));
  list->ColumnHeaders().Add(Variant::Missing(), Variant("date"), Variant("Date"));
  ListItem& item = list->ListItems().Add(Variant::Missing(), Variant("Ka"), Variant("text"));
  EXPECT_EQ(item.SubItems(0), "text");
  EXPECT_EQ(item.SubItems(1), "");
  item.SetSubItems(2, "two");
  EXPECT_EQ(item.SubItems(2), "two");
  EXPECT_EQ(item.ListSubItems(2).Text(), "two");
  EXPECT_EQ(item.ListSubItems(2).Index(), 2);
  item.ListSubItems(1).SetForeColor(0x0000FF);
  EXPECT_EQ(item.ListSubItems(1).ForeColor(), 0x0000FF);
  EXPECT_RAISES(item.SubItems(3), 35600, kOutOfBounds);
  EXPECT_RAISES(item.SetSubItems(3, "x"), 35600, kOutOfBounds);
  EXPECT_RAISES(item.ListSubItems(3), 35600, kOutOfBounds);
  EXPECT_RAISES(item.SubItems(-1), 35600, kOutOfBounds);
  item.SetSubItems(0, "new text");
  EXPECT_EQ(item.Text(), "new text");
}

TEST_P(ListViewConformance, ItemProperties) {
  auto list = GetParam().list_view();
  ListItem& item = list->ListItems().Add(Variant::Missing(), Variant("Ka"), Variant("t"),
                                         Variant("big"), Variant("small"));
  EXPECT_EQ(item.Icon(), "big");
  EXPECT_EQ(item.SmallIcon(), "small");
  item.SetTag("tag");
  item.SetForeColor(0x00FF00);
  EXPECT_EQ(item.Tag(), "tag");
  EXPECT_EQ(item.ForeColor(), 0x00FF00);
  item.EnsureVisible();
}

TEST_P(ListViewConformance, OneItemIsSelectedAtMost) {
  auto list = GetParam().list_view();
  ListItemCollection& items = list->ListItems();
  EXPECT_EQ(list->SelectedItem(), nullptr);
  ListItem& a = items.Add(Variant::Missing(), Variant("Ka"));
  ListItem& b = items.Add(Variant::Missing(), Variant("Kb"));
  a.SetSelected(true);
  EXPECT_EQ(list->SelectedItem(), &a);
  b.SetSelected(true);
  EXPECT_FALSE(a.Selected());
  EXPECT_TRUE(b.Selected());
  EXPECT_EQ(list->SelectedItem(), &b);
  a.SetSelected(false);
  EXPECT_EQ(list->SelectedItem(), &b);
  b.SetSelected(false);
  EXPECT_EQ(list->SelectedItem(), nullptr);
  b.SetSelected(true);
  items.Remove(Variant("Kb"));
  EXPECT_EQ(list->SelectedItem(), nullptr);
}

TEST_P(ListViewConformance, ColumnHeaders) {
  auto list = GetParam().list_view();
  ColumnHeaderCollection& columns = list->ColumnHeaders();
  ColumnHeader& b = columns.Add(Variant::Missing(), Variant("b"), Variant("B"), Variant(1500.0),
                                Variant(int32_t{1}));
  ColumnHeader& a = columns.Add(Variant(int32_t{1}), Variant("a"), Variant("A"));
  EXPECT_EQ(a.Index(), 1);
  EXPECT_EQ(b.Index(), 2);
  EXPECT_EQ(b.Width(), 1500.0);
  EXPECT_EQ(b.Alignment(), 1);
  EXPECT_EQ(b.Text(), "B");
  EXPECT_EQ(&columns.Item(Variant("b")), &b);
  b.SetTag("i");
  EXPECT_EQ(b.Tag(), "i");
  b.SetWidth(300);
  EXPECT_EQ(b.Width(), 300.0);
  b.SetAlignment(2);
  EXPECT_EQ(b.Alignment(), 2);
  EXPECT_RAISES(b.SetAlignment(3), 380, kInvalidValue);
  EXPECT_RAISES(b.SetAlignment(-1), 380, kInvalidValue);
  EXPECT_RAISES(columns.Add(Variant::Missing(), Variant("c"), Variant("C"), Variant::Missing(),
                            Variant(int32_t{7})),
                380, kInvalidValue);
  EXPECT_RAISES(columns.Add(Variant::Missing(), Variant("a")), 35602, kNotUnique);
  EXPECT_RAISES(columns.Add(Variant::Missing(), Variant("3")), 35603, kInvalidKey);
  EXPECT_EQ(columns.Count(), 2);
  columns.Remove(Variant(int32_t{1}));
  EXPECT_EQ(b.Index(), 1);
  columns.Clear();
  EXPECT_EQ(columns.Count(), 0);
}

TEST_P(ListViewConformance, SortingByTheKeyColumnWithoutRegardToCase) {
  ScopedLocale american("en-US");
  auto list = GetParam().list_view();
  list->ColumnHeaders().Add(Variant::Missing(), Variant("a"), Variant("A"));
  list->ColumnHeaders().Add(Variant::Missing(), Variant("b"), Variant("B"));
  ListItemCollection& items = list->ListItems();
  const char* texts[][2] = {{"b", "2"}, {"C", "3"}, {"a", "1"}, {"B", "0"}};
  for (auto& row : texts) {
    ListItem& item = items.Add(Variant::Missing(), Variant::Missing(), Variant(row[0]));
    item.SetSubItems(1, row[1]);
  }
  EXPECT_FALSE(list->Sorted());
  list->SetSorted(true);
  // Equal texts keep their order.
  EXPECT_EQ(Column(*list), (std::vector<std::string>{"a", "b", "B", "C"}));
  list->SetSortOrder(1);
  EXPECT_EQ(Column(*list), (std::vector<std::string>{"C", "b", "B", "a"}));
  list->SetSortKey(1);
  EXPECT_EQ(Column(*list, 1), (std::vector<std::string>{"3", "2", "1", "0"}));
  list->SetSortOrder(0);
  EXPECT_EQ(Column(*list, 1), (std::vector<std::string>{"0", "1", "2", "3"}));
  // Adding or changing does not re-sort until the next set.
  ListItem& late = items.Add(Variant(int32_t{1}), Variant::Missing(), Variant("z"));
  late.SetSubItems(1, "9");
  EXPECT_EQ(Column(*list, 1), (std::vector<std::string>{"9", "0", "1", "2", "3"}));
  list->SetSorted(true);
  EXPECT_EQ(Column(*list, 1), (std::vector<std::string>{"0", "1", "2", "3", "9"}));
  EXPECT_EQ(late.Index(), 5);
  EXPECT_RAISES(list->SetSortOrder(2), 380, kInvalidValue);
  EXPECT_EQ(list->SortOrder(), 0);
  list->SetSorted(false);
  EXPECT_FALSE(list->Sorted());
}

TEST_P(ListViewConformance, SortingFollowsTheLocalesCollation) {
  ScopedLocale german("de-DE");
  auto list = GetParam().list_view();
  for (const char* text : {"Zebra", "\xC3\x84pfel", "apfel", "Birne"})
    list->ListItems().Add(Variant::Missing(), Variant::Missing(), Variant(text));
  list->SetSorted(true);
  // Case is ignored, accents are not: "apfel" before "Äpfel", both before B.
  EXPECT_EQ(Column(*list), (std::vector<std::string>{"apfel", "\xC3\x84pfel", "Birne", "Zebra"}));
}

// --- image combos ---

TEST_P(ImageComboConformance, ItemsKeysAndPositions) {
  auto combo = GetParam().image_combo();
  ComboItemCollection& items = combo->ComboItems();
  ComboItem& b = items.Add(Variant::Missing(), Variant("Kb"), Variant("bee"), Variant("img"),
                           Variant("sel"), Variant(int16_t{2}));
  ComboItem& a = items.Add(Variant(int32_t{1}), Variant("Ka"), Variant("ay"));
  EXPECT_EQ(a.Index(), 1);
  EXPECT_EQ(b.Index(), 2);
  EXPECT_EQ(b.Indentation(), 2);
  EXPECT_EQ(a.Indentation(), 0);
  EXPECT_EQ(b.Image(), "img");
  EXPECT_EQ(b.SelImage(), "sel");
  EXPECT_EQ(&items.Item(Variant("Kb")), &b);
  EXPECT_RAISES(items.Item(Variant("KB")), 35601, kNotFound);
  EXPECT_RAISES(items.Item(Variant(int32_t{3})), 35600, kOutOfBounds);
  EXPECT_RAISES(items.Item(Variant()), 13, "Type mismatch");
  EXPECT_RAISES(items.Add(Variant::Missing(), Variant("Ka")), 35602, kNotUnique);
  EXPECT_RAISES(items.Add(Variant::Missing(), Variant("007")), 35603, kInvalidKey);
  EXPECT_RAISES(a.SetKey("Kb"), 35602, kNotUnique);
  a.SetTag("t");
  a.SetIndentation(4);
  EXPECT_EQ(a.Tag(), "t");
  EXPECT_EQ(a.Indentation(), 4);
  items.Remove(Variant(int32_t{1}));
  EXPECT_EQ(b.Index(), 1);
  items.Clear();
  EXPECT_EQ(items.Count(), 0);
}

TEST_P(ImageComboConformance, SelectingAnItemSetsTheText) {
  auto combo = GetParam().image_combo();
  ComboItemCollection& items = combo->ComboItems();
  ComboItem& a = items.Add(Variant::Missing(), Variant("Ka"), Variant("Alpha"));
  ComboItem& b = items.Add(Variant::Missing(), Variant("Kb"), Variant("Beta"));
  EXPECT_EQ(combo->SelectedItem(), nullptr);
  combo->SetSelectedItem(&b);
  EXPECT_EQ(combo->SelectedItem(), &b);
  EXPECT_EQ(combo->Text(), "Beta");
  a.SetSelected(true);
  EXPECT_FALSE(b.Selected());
  EXPECT_EQ(combo->Text(), "Alpha");
  combo->SetSelectedItem(nullptr);
  EXPECT_EQ(combo->SelectedItem(), nullptr);
  EXPECT_EQ(combo->Text(), "Alpha");
  combo->SetText("typed");
  EXPECT_EQ(combo->Text(), "typed");
  b.SetSelected(true);
  items.Remove(Variant("Kb"));
  EXPECT_EQ(combo->SelectedItem(), nullptr);
  combo->Refresh();
}

TEST_P(ImageComboConformance, AnItemOfAnotherComboCannotBeSelected) {
  auto combo = GetParam().image_combo();
  auto other = GetParam().image_combo();
  ComboItem& foreign = other->ComboItems().Add(Variant::Missing(), Variant("Kx"), Variant("x"));
  EXPECT_RAISES(combo->SetSelectedItem(&foreign), 5, "Invalid procedure call or argument");
  EXPECT_EQ(combo->SelectedItem(), nullptr);
}

// --- tree views ---

TEST_P(TreeViewConformance, RootsChildrenAndSiblings) {
  auto tree = GetParam().tree_view();
  NodeCollection& nodes = tree->Nodes();
  Node& a = nodes.Add(Variant::Missing(), Variant::Missing(), Variant("Ka"), Variant("A"));
  nodes.Add(Variant::Missing(), Variant::Missing(), Variant("Kb"), Variant("B"));
  nodes.Add(Variant("Ka"), Variant(tvwChild), Variant("Ka2"), Variant("A2"));
  nodes.Add(Variant("Ka2"), Variant(tvwPrevious), Variant("Ka1"), Variant("A1"));
  nodes.Add(Variant("Ka2"), Variant(tvwNext), Variant("Ka3"), Variant("A3"));
  nodes.Add(Variant("Ka2"), Variant(tvwFirst), Variant("Ka0"), Variant("A0"));
  nodes.Add(Variant(int32_t{3}), Variant(tvwLast), Variant("Ka9"), Variant("A9"));
  nodes.Add(Variant("Ka"), Variant::Missing(), Variant("Kab"), Variant("between"));
  // Nodes keeps the order of addition.
  EXPECT_EQ(Keys(nodes),
            (std::vector<std::string>{"Ka", "Kb", "Ka2", "Ka1", "Ka3", "Ka0", "Ka9", "Kab"}));
  EXPECT_EQ(ChildKeys(a), (std::vector<std::string>{"Ka0", "Ka1", "Ka2", "Ka3", "Ka9"}));
  EXPECT_EQ(a.Children(), 5);
  EXPECT_EQ(a.Parent(), nullptr);
  EXPECT_EQ(a.Next()->Key(), "Kab");
  EXPECT_EQ(a.Next()->Next()->Key(), "Kb");
  EXPECT_EQ(nodes.Item(Variant("Kb")).Next(), nullptr);
  EXPECT_EQ(nodes.Item(Variant("Kb")).Child(), nullptr);
}

TEST_P(TreeViewConformance, RefusedAdds) {
  auto tree = GetParam().tree_view();
  NodeCollection& nodes = tree->Nodes();
  nodes.Add(Variant::Missing(), Variant::Missing(), Variant("Ka"), Variant("A"));
  EXPECT_RAISES(nodes.Add(Variant("Kz"), Variant(tvwChild), Variant("Kb")), 35601, kNotFound);
  EXPECT_RAISES(nodes.Add(Variant(int32_t{9}), Variant(tvwChild), Variant("Kb")), 35600,
                kOutOfBounds);
  EXPECT_RAISES(nodes.Add(Variant::Missing(), Variant::Missing(), Variant("Ka")), 35602,
                kNotUnique);
  EXPECT_RAISES(nodes.Add(Variant::Missing(), Variant::Missing(), Variant("12")), 35603,
                kInvalidKey);
  EXPECT_RAISES(nodes.Add(Variant("Ka"), Variant(int32_t{5}), Variant("Kb")), 5,
                "Invalid procedure call or argument");
  // The relative is checked first, then the relationship, then the key.
  EXPECT_RAISES(nodes.Add(Variant("Kz"), Variant(int32_t{5}), Variant("Ka")), 35601, kNotFound);
  EXPECT_RAISES(nodes.Add(Variant("Ka"), Variant(int32_t{5}), Variant("Ka")), 5,
                "Invalid procedure call or argument");
  // A node cannot name itself as its parent: it does not exist yet.
  EXPECT_RAISES(nodes.Add(Variant("Kself"), Variant(tvwChild), Variant("Kself")), 35601, kNotFound);
  EXPECT_EQ(nodes.Count(), 1);
}

TEST_P(TreeViewConformance, RemoveTakesTheWholeSubtree) {
  auto tree = GetParam().tree_view();
  NodeCollection& nodes = tree->Nodes();
  nodes.Add(Variant::Missing(), Variant::Missing(), Variant("Ka"), Variant("A"));
  nodes.Add(Variant("Ka"), Variant(tvwChild), Variant("Kb"), Variant("B"));
  nodes.Add(Variant("Kb"), Variant(tvwChild), Variant("Kc"), Variant("C"));
  Node& d = nodes.Add(Variant::Missing(), Variant::Missing(), Variant("Kd"), Variant("D"));
  nodes.Item(Variant("Kc")).SetSelected(true);
  nodes.Remove(Variant("Kb"));
  EXPECT_EQ(Keys(nodes), (std::vector<std::string>{"Ka", "Kd"}));
  EXPECT_EQ(d.Index(), 2);
  EXPECT_EQ(tree->SelectedItem(), nullptr);
  EXPECT_EQ(nodes.Item(Variant("Ka")).Children(), 0);
  EXPECT_RAISES(nodes.Item(Variant("Kc")), 35601, kNotFound);
  // The removed keys are free again.
  nodes.Add(Variant("Ka"), Variant(tvwChild), Variant("Kc"), Variant("C again"));
  nodes.Clear();
  EXPECT_EQ(nodes.Count(), 0);
  EXPECT_EQ(tree->SelectedItem(), nullptr);
}

TEST_P(TreeViewConformance, SelectionAndEnsureVisible) {
  auto tree = GetParam().tree_view();
  NodeCollection& nodes = tree->Nodes();
  Node& a = nodes.Add(Variant::Missing(), Variant::Missing(), Variant("Ka"), Variant("A"));
  Node& b = nodes.Add(Variant("Ka"), Variant(tvwChild), Variant("Kb"), Variant("B"));
  Node& c = nodes.Add(Variant("Kb"), Variant(tvwChild), Variant("Kc"), Variant("C"));
  EXPECT_FALSE(a.Expanded());
  c.SetSelected(true);
  EXPECT_EQ(tree->SelectedItem(), &c);
  c.EnsureVisible();
  EXPECT_TRUE(a.Expanded());
  EXPECT_TRUE(b.Expanded());
  EXPECT_FALSE(c.Expanded());
  a.SetSelected(true);
  EXPECT_FALSE(c.Selected());
  EXPECT_EQ(tree->SelectedItem(), &a);
  b.SetExpanded(false);
  EXPECT_FALSE(b.Expanded());
}

TEST_P(TreeViewConformance, NodeProperties) {
  auto tree = GetParam().tree_view();
  Node& a = tree->Nodes().Add(Variant::Missing(), Variant::Missing(), Variant("Ka"), Variant("A"),
                              Variant("closed"), Variant("open"));
  EXPECT_EQ(a.Image(), "closed");
  EXPECT_EQ(a.SelectedImage(), "open");
  a.SetTag("t");
  a.SetText("text");
  a.SetImage("folder");
  EXPECT_EQ(a.Tag(), "t");
  EXPECT_EQ(a.Text(), "text");
  EXPECT_EQ(a.Image(), "folder");
  EXPECT_RAISES(a.SetKey("1"), 35603, kInvalidKey);
  a.SetKey("Knew");
  EXPECT_EQ(&tree->Nodes().Item(Variant("Knew")), &a);
}

TEST_P(TreeViewConformance, DeepTreesAddAndRemoveWithoutRecursion) {
  auto tree = GetParam().tree_view();
  NodeCollection& nodes = tree->Nodes();
  nodes.Add(Variant::Missing(), Variant::Missing(), Variant("K0"), Variant("0"));
  for (int i = 1; i < 10000; ++i) {
    nodes.Add(Variant("K" + std::to_string(i - 1)), Variant(tvwChild),
              Variant("K" + std::to_string(i)), Variant(std::to_string(i)));
  }
  nodes.Item(Variant("K9999")).EnsureVisible();
  EXPECT_TRUE(nodes.Item(Variant("K0")).Expanded());
  nodes.Remove(Variant("K1"));
  EXPECT_EQ(nodes.Count(), 1);
}

}  // namespace
}  // namespace veld::testing
