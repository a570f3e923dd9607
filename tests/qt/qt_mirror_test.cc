// What the Qt adapters show: after a change and a sync (or a turn of the
// event loop) the model and the widget hold what the control holds, and what
// the user does in the widget is done to the control.
#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QSignalSpy>
#include <QStyle>
#include <QTreeView>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "controls/dataset_text.h"
#include "veld/controls/kvo_data_ctrl_helper.h"
#include "veld/qt/qt_image_combo.h"
#include "veld/qt/qt_list_view.h"
#include "veld/qt/qt_tree_view.h"

#include "support/locale_platform.h"

namespace veld {
namespace {

using testing::Data;
using testing::Row;

std::string Shown(const QAbstractItemModel& model, int row, int column,
                  const QModelIndex& parent = {}) {
  return model.data(model.index(row, column, parent), Qt::DisplayRole).toString().toStdString();
}

// --- list view ---

// Every cell, caption, width and alignment of `list` as its model and view
// show them.
void ExpectListShown(QtListView& list) {
  const QAbstractItemModel& model = *list.Model();
  ASSERT_EQ(model.rowCount({}), list.ListItems().Count());
  ASSERT_EQ(model.columnCount({}), list.ColumnHeaders().Count());
  for (int32_t c = 1; c <= list.ColumnHeaders().Count(); ++c) {
    ColumnHeader& column = list.ColumnHeaders().Item(Variant(c));
    EXPECT_EQ(model.headerData(c - 1, Qt::Horizontal).toString().toStdString(), column.Text());
    EXPECT_EQ(list.View()->columnWidth(c - 1), static_cast<int>(column.Width() / 15)) << c;
    const auto alignment =
        model.data(model.index(0, c - 1), Qt::TextAlignmentRole).value<Qt::Alignment>();
    if (list.ListItems().Count() > 0) {
      const Qt::Alignment expected[] = {Qt::AlignLeft, Qt::AlignRight, Qt::AlignHCenter};
      EXPECT_TRUE(alignment & expected[column.Alignment()]) << c;
    }
  }
  for (int32_t i = 1; i <= list.ListItems().Count(); ++i) {
    ListItem& item = list.ListItems().Item(Variant(i));
    for (int32_t c = 0; c < list.ColumnHeaders().Count(); ++c)
      EXPECT_EQ(Shown(model, i - 1, c), item.SubItems(c)) << i << "," << c;
  }
  ListItem* selected = list.SelectedItem();
  const QModelIndex current = list.View()->selectionModel()->currentIndex();
  if (selected == nullptr) {
    EXPECT_FALSE(list.View()->selectionModel()->hasSelection());
  } else {
    EXPECT_EQ(current.row(), selected->Index() - 1);
    EXPECT_TRUE(list.View()->selectionModel()->isRowSelected(current.row(), {}));
  }
}

TEST(QtListViewTest, ModelAndViewShowEveryCellCaptionWidthAlignmentAndTheSelection) {
  QtListView list;
  list.ColumnHeaders().Add(Variant::Missing(), Variant("a"), Variant("Name"), Variant(1500.0));
  list.ColumnHeaders().Add(Variant::Missing(), Variant("b"), Variant("Size"), Variant(900.0),
                           Variant(int32_t{1}));
  list.ColumnHeaders().Add(Variant::Missing(), Variant("c"), Variant("Note"), Variant(600.0),
                           Variant(int32_t{2}));
  std::mt19937 random(7);
  for (int i = 0; i < 200; ++i) {
    ListItem& item = list.ListItems().Add(Variant::Missing(), Variant("K" + std::to_string(i)),
                                          Variant("item " + std::to_string(random() % 1000)));
    item.SetSubItems(1, std::to_string(random() % 100));
    if (i % 3 == 0) item.SetSubItems(2, "note " + std::to_string(i));
  }
  list.ListItems().Item(Variant(int32_t{17})).SetSelected(true);
  list.Sync();
  ExpectListShown(list);

  // More changes of every kind, then one more sync.
  list.ListItems().Remove(Variant(int32_t{3}));
  list.ListItems().Add(Variant(int32_t{1}), Variant("first"), Variant("First"));
  list.ListItems().Item(Variant(int32_t{50})).SetSubItems(2, "changed");
  list.ColumnHeaders().Item(Variant(int32_t{2})).SetWidth(3000);
  list.ListItems().Item(Variant(int32_t{5})).SetSelected(true);
  list.Sync();
  ExpectListShown(list);

  list.ListItems().Item(Variant(int32_t{5})).SetSelected(false);
  list.Sync();
  ExpectListShown(list);
}

TEST(QtListViewTest, ChangesReachTheViewAtTheNextTurnOfTheEventLoopInOneReset) {
  QtListView list;
  list.ColumnHeaders().Add(Variant::Missing(), Variant("a"), Variant("A"));
  QCoreApplication::processEvents();
  QSignalSpy resets(list.Model(), &QAbstractItemModel::modelReset);
  for (int i = 0; i < 1000; ++i)
    list.ListItems().Add(Variant::Missing(), Variant::Missing(), Variant("x"));
  EXPECT_EQ(list.Model()->rowCount({}), 0);  // not yet published
  QCoreApplication::processEvents();
  EXPECT_EQ(list.Model()->rowCount({}), 1000);
  EXPECT_EQ(resets.count(), 1);
}

TEST(QtListViewTest, ColoursAndIconsShowAndUnknownIconKeysShowNothing) {
  QtListView list;
  list.ColumnHeaders().Add(Variant::Missing(), Variant("a"), Variant("A"));
  list.ColumnHeaders().Add(Variant::Missing(), Variant("b"), Variant("B"));
  const QIcon folder = QApplication::style()->standardIcon(QStyle::SP_DirIcon);
  list.SetIcons({{"folder", folder}});
  ListItem& known = list.ListItems().Add(Variant::Missing(), Variant::Missing(), Variant("k"),
                                         Variant("big"), Variant("folder"));
  ListItem& unknown = list.ListItems().Add(Variant::Missing(), Variant::Missing(), Variant("u"),
                                           Variant("nope"), Variant("missing"));
  known.SetForeColor(0x0000FF);  // red as 0x00BBGGRR
  unknown.SetSubItems(1, "x");
  unknown.ListSubItems(1).SetForeColor(0xFF0000);  // blue
  list.Sync();
  const QAbstractItemModel& model = *list.Model();
  EXPECT_FALSE(model.data(model.index(0, 0), Qt::DecorationRole).value<QIcon>().isNull());
  EXPECT_FALSE(model.data(model.index(1, 0), Qt::DecorationRole).isValid());
  EXPECT_EQ(model.data(model.index(0, 0), Qt::ForegroundRole).value<QBrush>().color(),
            QColor(255, 0, 0));
  EXPECT_EQ(model.data(model.index(1, 1), Qt::ForegroundRole).value<QBrush>().color(),
            QColor(0, 0, 255));
  EXPECT_FALSE(model.data(model.index(1, 0), Qt::ForegroundRole).isValid());  // 0: the palette's
}

TEST(QtListViewTest, ChoosingARowInTheViewSelectsTheItem) {
  QtListView list;
  list.ColumnHeaders().Add(Variant::Missing(), Variant("a"), Variant("A"));
  for (int i = 0; i < 5; ++i)
    list.ListItems().Add(Variant::Missing(), Variant::Missing(), Variant("x"));
  list.Sync();
  list.View()->selectionModel()->setCurrentIndex(list.Model()->index(3, 0),
                                                 QItemSelectionModel::ClearAndSelect);
  ASSERT_NE(list.SelectedItem(), nullptr);
  EXPECT_EQ(list.SelectedItem()->Index(), 4);
}

constexpr const char* kSpec =
    "<cols><col name=\"Name\" field=\"name\" type=\"text\"/>"
    "<col name=\"Day\" field=\"day\" type=\"date\"/>"
    "<col name=\"Qty\" field=\"qty\" type=\"integer\"/></cols>";

std::string ThreeRows() {
  return Data({Row({{"_guid_", "a"}, {"name", "pear"}, {"day", "2010-12-19"}, {"qty", "10"}}),
               Row({{"_guid_", "b"}, {"name", "Apple"}, {"day", "2009-01-02"}, {"qty", "9"}}),
               Row({{"_guid_", "c"}, {"name", "fig"}, {"day", "2011-06-30"}, {"qty", "100"}})});
}

std::vector<std::string> ShownColumn(QtListView& list, int column) {
  std::vector<std::string> out;
  for (int row = 0; row < list.Model()->rowCount({}); ++row)
    out.push_back(Shown(*list.Model(), row, column));
  return out;
}

TEST(QtListViewTest, HeaderClicksSortThroughTheHelperOnlyWhenAsked) {
  testing::ScopedLocale locale{"en-US"};
  KvoDataCtrlHelper helper;
  QtListView list;
  ASSERT_TRUE(helper.ListView_InitializeColumns(&list, kSpec)) << helper.GetLastError();
  ASSERT_TRUE(helper.LoadXml(ThreeRows()));
  ASSERT_TRUE(helper.ListView_LoadData(&list)) << helper.GetLastError();
  list.Sync();
  emit list.View()->header()->sectionClicked(2);
  EXPECT_FALSE(list.Sorted());  // not asked to
  EXPECT_EQ(ShownColumn(list, 2), (std::vector<std::string>{"10", "9", "100"}));

  list.SortOnHeaderClick(&helper);
  emit list.View()->header()->sectionClicked(2);  // numbers, the typed way
  EXPECT_EQ(ShownColumn(list, 2), (std::vector<std::string>{"9", "10", "100"}));
  EXPECT_TRUE(list.View()->header()->isSortIndicatorShown());
  EXPECT_EQ(list.View()->header()->sortIndicatorSection(), 2);
  EXPECT_EQ(list.View()->header()->sortIndicatorOrder(), Qt::AscendingOrder);
  emit list.View()->header()->sectionClicked(2);
  EXPECT_EQ(ShownColumn(list, 2), (std::vector<std::string>{"100", "10", "9"}));
  EXPECT_EQ(list.View()->header()->sortIndicatorOrder(), Qt::DescendingOrder);
  emit list.View()->header()->sectionClicked(1);  // dates, the typed way
  EXPECT_EQ(ShownColumn(list, 1),
            (std::vector<std::string>{"1/2/2009", "12/19/2010", "6/30/2011"}));
  ExpectListShown(list);
}

TEST(QtListViewTest, ASortRequestedWhileItemsAreAddedSortsThoseAddedSoFar) {
  testing::ScopedLocale locale{"en-US"};
  KvoDataCtrlHelper helper;
  QtListView list;
  list.SortOnHeaderClick(&helper);
  list.ColumnHeaders().Add(Variant::Missing(), Variant("a"), Variant("A"));
  for (const char* text : {"c", "a", "b"})
    list.ListItems().Add(Variant::Missing(), Variant::Missing(), Variant(text));
  emit list.View()->header()->sectionClicked(0);
  list.ListItems().Add(Variant::Missing(), Variant::Missing(), Variant("0"));
  list.Sync();
  // A new list's sort key is already column 1, so its first click flips the
  // order to descending.
  EXPECT_EQ(ShownColumn(list, 0), (std::vector<std::string>{"c", "b", "a", "0"}));
}

TEST(QtListViewTest, AViewDestroyedFirstLeavesAWorkingHeadlessList) {
  auto* view = new QTreeView;
  QtListView list(view);
  list.ColumnHeaders().Add(Variant::Missing(), Variant("a"), Variant("A"));
  list.Sync();
  delete view;
  EXPECT_EQ(list.View(), nullptr);
  list.ListItems().Add(Variant::Missing(), Variant("k1"), Variant("x")).SetSelected(true);
  list.Sync();
  QCoreApplication::processEvents();
  EXPECT_EQ(list.Model()->rowCount({}), 1);
  EXPECT_EQ(list.SelectedItem()->Key(), "k1");
}

TEST(QtListViewTest, AnAdapterDestroyedFirstLeavesTheViewEmpty) {
  QTreeView view;
  {
    QtListView list(&view);
    list.ColumnHeaders().Add(Variant::Missing(), Variant("a"), Variant("A"));
    list.ListItems().Add(Variant::Missing(), Variant::Missing(), Variant("x"));
    list.Sync();
    EXPECT_EQ(view.model()->rowCount({}), 1);
  }
  QCoreApplication::processEvents();   // a queued publication must not run
  EXPECT_EQ(view.model(), nullptr);    // Qt's view drops a model that is destroyed
  EXPECT_FALSE(view.grab().isNull());  // and still paints
}

// --- tree view ---

// The tree as the control holds it and as the model shows it, one line per
// node: depth, text.
void Walk(Node* node, int depth, std::vector<std::string>& out) {
  for (; node != nullptr; node = node->Next()) {
    out.push_back(std::to_string(depth) + " " + node->Text());
    Walk(node->Child(), depth + 1, out);
  }
}

void WalkModel(const QAbstractItemModel& model, const QModelIndex& parent, int depth,
               std::vector<std::string>& out) {
  for (int row = 0; row < model.rowCount(parent); ++row) {
    const QModelIndex index = model.index(row, 0, parent);
    EXPECT_EQ(model.parent(index), parent);
    out.push_back(std::to_string(depth) + " " + Shown(model, row, 0, parent));
    WalkModel(model, index, depth + 1, out);
  }
}

void ExpectTreeShown(QtTreeView& tree) {
  std::vector<std::string> held;
  Node* first = nullptr;
  for (int32_t i = 1; i <= tree.Nodes().Count(); ++i) {
    Node& node = tree.Nodes().Item(Variant(i));
    if (node.Parent() != nullptr) continue;
    // The first root is the one before which no root comes.
    bool follows = false;
    for (int32_t j = 1; j <= tree.Nodes().Count(); ++j) {
      Node& other = tree.Nodes().Item(Variant(j));
      if (other.Parent() == nullptr && other.Next() == &node) follows = true;
    }
    if (!follows) first = &node;
  }
  Walk(first, 0, held);
  std::vector<std::string> shown;
  WalkModel(*tree.Model(), {}, 0, shown);
  EXPECT_EQ(shown, held);
}

QModelIndex FindShown(const QAbstractItemModel& model, const std::string& text,
                      const QModelIndex& parent = {}) {
  for (int row = 0; row < model.rowCount(parent); ++row) {
    const QModelIndex index = model.index(row, 0, parent);
    if (model.data(index).toString().toStdString() == text) return index;
    const QModelIndex below = FindShown(model, text, index);
    if (below.isValid()) return below;
  }
  return {};
}

TEST(QtTreeViewTest, NodesShowUnderTheirParentsInSiblingOrder) {
  QtTreeView tree;
  NodeCollection& nodes = tree.Nodes();
  nodes.Add(Variant::Missing(), Variant::Missing(), Variant("r1"), Variant("root one"));
  nodes.Add(Variant("r1"), Variant(int32_t{tvwChild}), Variant("c1"), Variant("child one"));
  nodes.Add(Variant("c1"), Variant(int32_t{tvwPrevious}), Variant("c0"), Variant("child zero"));
  nodes.Add(Variant("r1"), Variant(int32_t{tvwFirst}), Variant("r0"), Variant("root zero"));
  nodes.Add(Variant("c1"), Variant(int32_t{tvwChild}), Variant("g"), Variant("grandchild"));
  nodes.Add(Variant("r0"), Variant(int32_t{tvwLast}), Variant("r2"), Variant("root two"));
  tree.Sync();
  ExpectTreeShown(tree);

  std::mt19937 random(3);
  for (int i = 0; i < 300; ++i) {
    const int32_t count = nodes.Count();
    const int action = static_cast<int>(random() % 10);
    if (action == 0 && count > 0) {
      nodes.Remove(Variant(static_cast<int32_t>(random() % count + 1)));
    } else {
      const Variant relative = count == 0 || random() % 5 == 0
                                   ? Variant::Missing()
                                   : Variant(static_cast<int32_t>(random() % count + 1));
      nodes.Add(relative, Variant(static_cast<int32_t>(random() % 5)), Variant::Missing(),
                Variant("n" + std::to_string(i)));
    }
    if (i % 37 == 0) {
      tree.Sync();
      ExpectTreeShown(tree);
    }
  }
  tree.Sync();
  ExpectTreeShown(tree);
}

TEST(QtTreeViewTest, ExpansionAndSelectionGoBothWays) {
  QtTreeView tree;
  NodeCollection& nodes = tree.Nodes();
  nodes.Add(Variant::Missing(), Variant::Missing(), Variant("r"), Variant("root"));
  nodes.Add(Variant("r"), Variant(int32_t{tvwChild}), Variant("a"), Variant("a"));
  nodes.Add(Variant("a"), Variant(int32_t{tvwChild}), Variant("b"), Variant("b"));
  nodes.Item(Variant("b")).EnsureVisible();
  nodes.Item(Variant("b")).SetSelected(true);
  tree.Sync();
  const QAbstractItemModel& model = *tree.Model();
  EXPECT_TRUE(tree.View()->isExpanded(FindShown(model, "root")));
  EXPECT_TRUE(tree.View()->isExpanded(FindShown(model, "a")));
  EXPECT_EQ(tree.View()->selectionModel()->currentIndex(), FindShown(model, "b"));

  tree.View()->collapse(FindShown(model, "a"));
  EXPECT_FALSE(nodes.Item(Variant("a")).Expanded());
  tree.View()->selectionModel()->setCurrentIndex(FindShown(model, "root"),
                                                 QItemSelectionModel::ClearAndSelect);
  EXPECT_TRUE(nodes.Item(Variant("r")).Selected());
}

TEST(QtTreeViewTest, ImagesFollowTheSelectionAndUnknownKeysShowNothing) {
  QtTreeView tree;
  tree.SetIcons({{"closed", QApplication::style()->standardIcon(QStyle::SP_DirClosedIcon)},
                 {"open", QApplication::style()->standardIcon(QStyle::SP_DirOpenIcon)}});
  tree.Nodes().Add(Variant::Missing(), Variant::Missing(), Variant("a"), Variant("a"),
                   Variant("closed"), Variant("open"));
  tree.Nodes().Add(Variant::Missing(), Variant::Missing(), Variant("b"), Variant("b"),
                   Variant("unknown"));
  tree.Sync();
  const QAbstractItemModel& model = *tree.Model();
  const QIcon closed = model.data(FindShown(model, "a"), Qt::DecorationRole).value<QIcon>();
  EXPECT_FALSE(closed.isNull());
  EXPECT_FALSE(model.data(FindShown(model, "b"), Qt::DecorationRole).isValid());
  tree.Nodes().Item(Variant("a")).SetSelected(true);
  tree.Sync();
  const QIcon open = model.data(FindShown(model, "a"), Qt::DecorationRole).value<QIcon>();
  EXPECT_NE(open.cacheKey(), closed.cacheKey());
}

TEST(QtTreeViewTest, ARemovedNodeIsNotReadBeforeTheChangeIsPublished) {
  QtTreeView tree;
  tree.Nodes().Add(Variant::Missing(), Variant::Missing(), Variant("a"), Variant("a"));
  tree.Nodes().Add(Variant("a"), Variant(int32_t{tvwChild}), Variant("b"), Variant("b"));
  tree.Sync();
  const QModelIndex child = FindShown(*tree.Model(), "b");
  ASSERT_TRUE(child.isValid());
  tree.Nodes().Remove(Variant("a"));
  EXPECT_FALSE(tree.Model()->data(child, Qt::DisplayRole).isValid());
  tree.Sync();
  EXPECT_EQ(tree.Model()->rowCount({}), 0);
}

// --- image combo ---

TEST(QtImageComboTest, ItemsShowTextImageAndIndentationAndTheFieldShowsTheText) {
  QtImageCombo combo;
  combo.SetIcons({{"img", QApplication::style()->standardIcon(QStyle::SP_FileIcon)}});
  ComboItemCollection& items = combo.ComboItems();
  items.Add(Variant::Missing(), Variant("a"), Variant("Alpha"), Variant("img"));
  items.Add(Variant::Missing(), Variant("b"), Variant("Beta"), Variant("gone"), Variant::Missing(),
            Variant(int16_t{2}));
  items.Item(Variant("b")).SetSelected(true);
  combo.Sync();
  const QAbstractItemModel& model = *combo.Model();
  ASSERT_EQ(model.rowCount({}), 2);
  EXPECT_EQ(Shown(model, 0, 0), "Alpha");
  EXPECT_EQ(Shown(model, 1, 0), "Beta");
  EXPECT_FALSE(model.data(model.index(0, 0), Qt::DecorationRole).value<QIcon>().isNull());
  EXPECT_FALSE(model.data(model.index(1, 0), Qt::DecorationRole).isValid());
  EXPECT_EQ(model.data(model.index(1, 0), QtImageCombo::IndentationRole).toInt(), 2);
  EXPECT_EQ(combo.View()->currentIndex(), 1);
  EXPECT_EQ(combo.View()->currentText().toStdString(), "Beta");

  // The delegate makes room for the indentation: 10 pixels a level.
  QStyleOptionViewItem option;
  const int indented = combo.View()->itemDelegate()->sizeHint(option, model.index(1, 0)).width();
  items.Item(Variant("b")).SetIndentation(0);
  combo.Sync();
  EXPECT_EQ(indented - combo.View()->itemDelegate()->sizeHint(option, model.index(1, 0)).width(),
            20);

  combo.SetText("typed");  // the field may show a text of no item
  combo.Sync();
  EXPECT_EQ(combo.View()->currentText().toStdString(), "typed");
  EXPECT_EQ(combo.SelectedItem()->Key(), "b");
}

TEST(QtImageComboTest, ChoosingAnItemOrTypingChangesTheControl) {
  QtImageCombo combo;
  combo.ComboItems().Add(Variant::Missing(), Variant("a"), Variant("Alpha"));
  combo.ComboItems().Add(Variant::Missing(), Variant("b"), Variant("Beta"));
  combo.Sync();
  emit combo.View()->activated(1);
  ASSERT_NE(combo.SelectedItem(), nullptr);
  EXPECT_EQ(combo.SelectedItem()->Key(), "b");
  EXPECT_EQ(combo.Text(), "Beta");
  combo.View()->setEditText("hand typed");
  EXPECT_EQ(combo.Text(), "hand typed");
}

TEST(QtImageComboTest, AComboDestroyedFirstLeavesAWorkingHeadlessCombo) {
  auto* box = new QComboBox;
  QtImageCombo combo(box);
  delete box;
  combo.ComboItems().Add(Variant::Missing(), Variant("a"), Variant("Alpha")).SetSelected(true);
  combo.Sync();
  EXPECT_EQ(combo.View(), nullptr);
  EXPECT_EQ(combo.Text(), "Alpha");
}

}  // namespace
}  // namespace veld
