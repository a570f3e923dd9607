// The dataset viewer of examples/qt, offscreen, over the example files:
// loads, sorts by header clicks, and its pictures show what its models hold.
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QHeaderView>
#include <QImage>
#include <QTest>
#include <QTreeView>
#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "veld/qt/qt_image_combo.h"
#include "veld/qt/qt_list_view.h"
#include "veld/qt/qt_tree_view.h"
#include "veld/runtime/format.h"

#include "dataset_viewer.h"
#include "support/locale_platform.h"
#include "support/testing.h"

namespace veld {
namespace {

const QString kExamples = VELD_EXAMPLES_DIR;

class ViewerTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(viewer_.Open(kExamples + "/catalog.xml", kExamples + "/catalog-columns.xml"))
        << viewer_.Status().toStdString();
    viewer_.resize(760, 480);
    viewer_.show();
    QApplication::processEvents();
  }

  void ClickHeader(int section) {
    QHeaderView* header = viewer_.List().View()->header();
    const QPoint at(header->sectionViewportPosition(section) + header->sectionSize(section) / 2,
                    header->height() / 2);
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, at);
    QApplication::processEvents();
  }

  std::vector<std::string> ShownColumn(int column) {
    const QAbstractItemModel& model = *viewer_.List().Model();
    std::vector<std::string> out;
    for (int row = 0; row < model.rowCount({}); ++row)
      out.push_back(model.data(model.index(row, column)).toString().toStdString());
    return out;
  }

  // Saves a picture where a failing run can be looked at, and returns it.
  QImage Keep(const QImage& picture, const QString& name) {
    picture.save(QString::fromStdString(dir_.Path()) + "/" + name);
    return picture;
  }

  testing::ScopedLocale locale_{"en-US"};
  testing::TempDir dir_;
  DatasetViewer viewer_;
};

int DistinctColours(const QImage& picture) {
  std::set<QRgb> colours;
  for (int y = 0; y < picture.height(); y += 2)
    for (int x = 0; x < picture.width(); x += 2) colours.insert(picture.pixel(x, y));
  return static_cast<int>(colours.size());
}

// Whether two colours are the same but for a style's shading.
bool Near(const QColor& a, const QColor& b, int tolerance = 24) {
  return std::abs(a.red() - b.red()) <= tolerance && std::abs(a.green() - b.green()) <= tolerance &&
         std::abs(a.blue() - b.blue()) <= tolerance;
}

// The rows down a line of a list's picture, from `top` to `bottom`: runs of
// the base colour, the alternate base colour or the highlight (shaded).
int Bands(const QImage& picture, const QPalette& palette, int x, int top, int bottom) {
  auto kind = [&](QRgb pixel) {
    const QColor colour(pixel);
    if (Near(colour, palette.color(QPalette::Active, QPalette::Base), 2)) return 0;
    if (Near(colour, palette.color(QPalette::Active, QPalette::AlternateBase), 2)) return 1;
    if (Near(colour, palette.color(QPalette::Active, QPalette::Highlight))) return 2;
    return 3;
  };
  int bands = 0;
  int last = -1;
  for (int y = top; y < bottom; ++y) {
    const int here = kind(picture.pixel(x, y));
    if (here != last) ++bands;
    last = here;
  }
  return bands;
}

TEST_F(ViewerTest, LoadsTheExamplesIntoAllThreeViews) {
  EXPECT_EQ(viewer_.List().ListItems().Count(), 40);
  EXPECT_EQ(viewer_.List().ColumnHeaders().Count(), 6);
  EXPECT_EQ(viewer_.Tree().Nodes().Count(), 40);
  EXPECT_EQ(viewer_.Combo().ComboItems().Count(), 40);
  EXPECT_EQ(viewer_.Tree().Model()->rowCount({}), 4);  // the four top categories
  EXPECT_TRUE(viewer_.FieldNames().contains("parent"));
}

TEST_F(ViewerTest, HeaderClicksSortADateAndANumberColumnTheTypedWay) {
  ClickHeader(2);  // Added: dates
  std::vector<std::string> dates = ShownColumn(2);
  std::vector<double> serials;
  for (const std::string& text : dates) {
    if (text != " ") serials.push_back(CDate(Variant(text)).ToDouble());
  }
  ASSERT_EQ(serials.size(), 31u);
  EXPECT_TRUE(std::is_sorted(serials.begin(), serials.end()));
  EXPECT_EQ(dates.front(), " ");  // the categories have no date

  ClickHeader(3);  // Price: numbers
  ClickHeader(3);  // again: descending
  std::vector<double> prices;
  for (const std::string& text : ShownColumn(3)) {
    if (text != " ") prices.push_back(QString::fromStdString(text).remove(',').toDouble());
  }
  ASSERT_EQ(prices.size(), 31u);
  EXPECT_TRUE(std::is_sorted(prices.rbegin(), prices.rend()));
  EXPECT_EQ(prices.front(), 263.5);
  EXPECT_EQ(viewer_.List().View()->header()->sortIndicatorSection(), 3);
  EXPECT_EQ(viewer_.List().View()->header()->sortIndicatorOrder(), Qt::DescendingOrder);
}

TEST_F(ViewerTest, TheListPictureShowsItsRowsAndTheSelection) {
  ClickHeader(2);
  viewer_.List().ListItems().Item(Variant(int32_t{5})).SetSelected(true);
  viewer_.List().Sync();
  QApplication::processEvents();
  QTreeView* view = viewer_.List().View();
  const QImage picture = Keep(view->viewport()->grab().toImage(), "list.png");
  EXPECT_GT(DistinctColours(picture), 10);

  // Rows alternate in colour and the selected one is highlighted: down the
  // left edge every row shown is a band of its own.
  int shown = 0;
  int bottom = 0;
  for (int row = 0; row < view->model()->rowCount({}); ++row) {
    const QRect rect = view->visualRect(view->model()->index(row, 0));
    if (rect.bottom() < 0 || rect.top() >= picture.height()) continue;
    ++shown;
    bottom = std::min(picture.height(), rect.bottom() + 1);
  }
  EXPECT_GT(shown, 10);
  // Down the left edge of the second column, where no text reaches.
  const int x = view->header()->sectionViewportPosition(1) + 1;
  EXPECT_EQ(Bands(picture, view->palette(), x, 0, bottom), shown);

  const QRect selected = view->visualRect(view->model()->index(4, 0));
  const QColor highlight = view->palette().color(QPalette::Active, QPalette::Highlight);
  EXPECT_TRUE(Near(QColor(picture.pixel(x, selected.center().y())), highlight));
  EXPECT_FALSE(
      Near(QColor(picture.pixel(x, view->visualRect(view->model()->index(3, 0)).center().y())),
           highlight));
}

TEST_F(ViewerTest, TheTreePictureShowsTheSelectedNode) {
  viewer_.ShowView(1);
  viewer_.Tree().Nodes().Item(Variant("KCAT-11")).EnsureVisible();
  viewer_.Tree().Nodes().Item(Variant("KCAT-11")).SetSelected(true);
  viewer_.Tree().Sync();
  QApplication::processEvents();
  QTreeView* view = viewer_.Tree().View();
  const QImage picture = Keep(view->viewport()->grab().toImage(), "tree.png");
  EXPECT_GT(DistinctColours(picture), 10);
  const QModelIndex current = view->selectionModel()->currentIndex();
  ASSERT_TRUE(current.isValid());
  EXPECT_EQ(current.data().toString(), "Soft drinks");
  EXPECT_TRUE(view->isExpanded(current.parent()));
  const QRect rect = view->visualRect(current);
  const QColor highlight = view->palette().color(QPalette::Active, QPalette::Highlight);
  EXPECT_TRUE(Near(QColor(picture.pixel(rect.right() - 2, rect.center().y())), highlight));
  // Beverages, its two children, the first child's six products, then the
  // other top categories: a picture of rows that are not all one colour.
  EXPECT_GT(Bands(picture, view->palette(), rect.right() - 2, 0, picture.height()), 2);
}

TEST_F(ViewerTest, TheComboPictureShowsItsItemsIndentedAndTheSelection) {
  viewer_.ShowView(2);
  QComboBox* combo = viewer_.Combo().View();
  combo->showPopup();
  QApplication::processEvents();
  QAbstractItemView* list = combo->view();
  const QImage picture = Keep(list->viewport()->grab().toImage(), "combo.png");
  combo->hidePopup();
  EXPECT_GT(DistinctColours(picture), 10);
  ASSERT_NE(viewer_.Combo().SelectedItem(), nullptr);
  const int selected = viewer_.Combo().SelectedItem()->Index() - 1;
  EXPECT_EQ(combo->currentIndex(), selected);
  const QRect rect = list->visualRect(list->model()->index(selected, 0));
  const QColor highlight = list->palette().color(QPalette::Active, QPalette::Highlight);
  EXPECT_TRUE(Near(QColor(picture.pixel(rect.right() - 2, rect.center().y())), highlight));
  // "Chai" is a level deeper than "Soft drinks": its text starts 10 pixels
  // further right (give or take the letters' own margins).
  ASSERT_EQ(selected, 0);
  auto first_ink = [&](int row) {
    const QRect rect = list->visualRect(list->model()->index(row, 0));
    const QRgb background = picture.pixel(rect.right() - 2, rect.center().y());
    for (int x = rect.left(); x < rect.right(); ++x) {
      for (int y = rect.top(); y <= rect.bottom(); ++y)
        if (picture.pixel(x, y) != background) return x;
    }
    return -1;
  };
  EXPECT_EQ(list->model()->index(1, 0).data().toString(), "Soft drinks");
  EXPECT_EQ(list->model()->index(2, 0).data().toString(), "Chai");
  EXPECT_NEAR(first_ink(2) - first_ink(1), 10, 2);
}

}  // namespace
}  // namespace veld
