// A small dataset viewer: the first data element of a dataset file as a
// list (typed columns from a column spec; click a header to sort), as a
// tree (key, parent and text fields chosen from the row's cols) and in an
// image combo. Built on the library's public interface only.
#ifndef VELD_EXAMPLES_QT_DATASET_VIEWER_H_
#define VELD_EXAMPLES_QT_DATASET_VIEWER_H_

#include <QMainWindow>
#include <QString>
#include <QStringList>
#include <memory>

#include "veld/controls/kvo_data_ctrl_helper.h"

class QComboBox;
class QLabel;
class QTabWidget;
class QTreeView;

namespace veld {

class QtImageCombo;
class QtListView;
class QtTreeView;

class DatasetViewer : public QMainWindow {
 public:
  DatasetViewer();
  ~DatasetViewer() override;

  // Loads the dataset and the column spec into all three views. False when
  // either cannot be read; the status bar says why.
  bool Open(const QString& dataset_file, const QString& columns_file);
  // Fills the tree and the combo again from the chosen fields.
  void ReloadTree();

  // Shows one view: 0 list, 1 tree, 2 combo.
  void ShowView(int index);
  QWidget* ViewPage(int index) const;

  QtListView& List() { return *list_; }
  QtTreeView& Tree() { return *tree_; }
  QtImageCombo& Combo() { return *combo_; }
  KvoDataCtrlHelper& Helper() { return helper_; }
  // The col names of the data element's first row.
  const QStringList& FieldNames() const { return fields_; }
  QString Status() const;

 private:
  void OpenFromMenu();
  void SetStatus(const QString& text);

  KvoDataCtrlHelper helper_;
  QTabWidget* tabs_ = nullptr;
  QTreeView* list_view_ = nullptr;
  QTreeView* tree_view_ = nullptr;
  QComboBox* combo_box_ = nullptr;
  QComboBox* key_field_ = nullptr;
  QComboBox* parent_field_ = nullptr;
  QComboBox* text_field_ = nullptr;
  QLabel* status_ = nullptr;
  std::unique_ptr<QtListView> list_;
  std::unique_ptr<QtTreeView> tree_;
  std::unique_ptr<QtImageCombo> combo_;
  QStringList fields_;
  QString columns_file_;
};

}  // namespace veld

#endif  // VELD_EXAMPLES_QT_DATASET_VIEWER_H_
