// veld-viewer [--screenshots DIR] [DATASET [COLUMNS]]
//
// Shows a dataset file (default: catalog.xml of the examples) with a column
// spec (default: catalog-columns.xml). With --screenshots it writes
// list.png, tree.png and combo.png of the three views to DIR and exits.
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QHeaderView>
#include <QPainter>
#include <QPixmap>
#include <QTreeView>
#include <cstdio>

#include "veld/qt/qt_image_combo.h"
#include "veld/qt/qt_list_view.h"
#include "veld/qt/qt_tree_view.h"

#include "dataset_viewer.h"

#ifndef VELD_EXAMPLES_DIR
#define VELD_EXAMPLES_DIR "examples"
#endif

namespace {

bool Save(const QPixmap& picture, const QString& path) {
  if (picture.save(path)) {
    std::printf("%s\n", qPrintable(path));
    return true;
  }
  std::fprintf(stderr, "veld-viewer: cannot write %s\n", qPrintable(path));
  return false;
}

// The list sorted by its date column, the tree opened, the combo dropped
// down: one picture each.
int Screenshots(veld::DatasetViewer& viewer, const QString& dir) {
  QDir().mkpath(dir);
  viewer.show();
  viewer.List().View()->header()->sectionClicked(2);
  viewer.List().ListItems().Item(veld::Variant(int32_t{3})).SetSelected(true);
  viewer.List().Sync();
  bool ok = Save(viewer.grab(), dir + "/list.png");
  viewer.ShowView(1);
  veld::NodeCollection& nodes = viewer.Tree().Nodes();
  for (int32_t i = 1; i <= nodes.Count(); ++i) nodes.Item(veld::Variant(i)).SetExpanded(true);
  viewer.Tree().Sync();
  QApplication::processEvents();
  ok = Save(viewer.grab(), dir + "/tree.png") && ok;
  viewer.ShowView(2);
  QApplication::processEvents();
  QComboBox* combo = viewer.Combo().View();
  combo->showPopup();
  QApplication::processEvents();
  // The drop-down is a window of its own: it is painted over the viewer.
  QPixmap picture = viewer.grab();
  {
    QPainter painter(&picture);
    QWidget* popup = combo->view()->window();
    painter.drawPixmap(viewer.mapFromGlobal(popup->mapToGlobal(QPoint(0, 0))), popup->grab());
  }
  combo->hidePopup();
  ok = Save(picture, dir + "/combo.png") && ok;
  return ok ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  QStringList args = QApplication::arguments().mid(1);
  QString screenshots;
  const int flag = args.indexOf("--screenshots");
  if (flag >= 0 && flag + 1 < args.size()) {
    screenshots = args[flag + 1];
    args.remove(flag, 2);
  }
  const QString examples = VELD_EXAMPLES_DIR;
  const QString dataset = args.size() > 0 ? args[0] : examples + "/catalog.xml";
  const QString columns = args.size() > 1 ? args[1] : examples + "/catalog-columns.xml";

  veld::DatasetViewer viewer;
  if (!viewer.Open(dataset, columns)) {
    std::fprintf(stderr, "veld-viewer: %s\n", qPrintable(viewer.Status()));
    if (!screenshots.isEmpty()) return 1;
  }
  if (!screenshots.isEmpty()) return Screenshots(viewer, screenshots);
  viewer.show();
  return QApplication::exec();
}
