// Fills a list adapter through the helper and checks what its model shows.
#include <cstdio>

#include <QApplication>
#include <QAbstractItemModel>

#include <veld/veld.h>
#include <veld/qt/qt_list_view.h>

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  veld::KvoDataCtrlHelper helper;
  veld::QtListView list;
  const bool ok =
      helper.ListView_InitializeColumns(&list, "<cols><col name=\"Name\" field=\"n\"/></cols>") &&
      helper.LoadXml("<dataset><data><row><col name=\"n\" value=\"one\"/></row>"
                     "<row><col name=\"n\" value=\"two\"/></row></data></dataset>") &&
      helper.ListView_LoadData(&list, "n");
  list.Sync();
  const QAbstractItemModel& model = *list.Model();
  if (!ok || model.rowCount({}) != 2 || model.index(1, 0).data().toString() != "two") {
    std::fprintf(stderr, "unexpected: %s\n", helper.GetLastError().c_str());
    return 1;
  }
  std::printf("veld_qt: %d rows shown\n", model.rowCount({}));
  return 0;
}
