#include "dataset_viewer.h"

#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QStatusBar>
#include <QStyle>
#include <QTabWidget>
#include <QTreeView>
#include <QVBoxLayout>

#include "veld/qt/qt_image_combo.h"
#include "veld/qt/qt_list_view.h"
#include "veld/qt/qt_tree_view.h"
#include "veld/xml/xml_document.h"
#include "veld/xml/xml_node.h"
#include "veld/xml/xml_node_list.h"

namespace veld {

namespace {

IconMap Icons() {
  QStyle* style = QApplication::style();
  return {{"folder", style->standardIcon(QStyle::SP_DirClosedIcon)},
          {"folder-open", style->standardIcon(QStyle::SP_DirOpenIcon)},
          {"item", style->standardIcon(QStyle::SP_FileIcon)}};
}

// Picks `wanted` when the row has it, else the field at `fallback`.
void ChooseField(QComboBox* box, const QStringList& fields, const QString& wanted, int fallback) {
  box->clear();
  box->addItems(fields);
  const int at = fields.indexOf(wanted);
  box->setCurrentIndex(at >= 0 ? at : std::min(fallback, static_cast<int>(fields.size()) - 1));
}

}  // namespace

DatasetViewer::DatasetViewer() {
  setWindowTitle("Dataset viewer");
  tabs_ = new QTabWidget;

  list_view_ = new QTreeView;
  list_view_->setAlternatingRowColors(true);
  tabs_->addTab(list_view_, "List");

  auto* tree_page = new QWidget;
  auto* tree_layout = new QVBoxLayout(tree_page);
  auto* fields = new QFormLayout;
  key_field_ = new QComboBox;
  parent_field_ = new QComboBox;
  text_field_ = new QComboBox;
  fields->addRow("Key field", key_field_);
  fields->addRow("Parent field", parent_field_);
  fields->addRow("Text field", text_field_);
  auto* reload = new QPushButton("Show");
  fields->addRow(reload);
  tree_layout->addLayout(fields);
  tree_view_ = new QTreeView;
  tree_layout->addWidget(tree_view_, 1);
  tabs_->addTab(tree_page, "Tree");

  auto* combo_page = new QWidget;
  auto* combo_layout = new QVBoxLayout(combo_page);
  combo_box_ = new QComboBox;
  combo_layout->addWidget(combo_box_);
  combo_layout->addStretch(1);
  tabs_->addTab(combo_page, "Combo");

  setCentralWidget(tabs_);
  status_ = new QLabel;
  statusBar()->addWidget(status_, 1);
  QMenu* file = menuBar()->addMenu("&File");
  file->addAction("&Open dataset...", this, [this] { OpenFromMenu(); });
  file->addAction("&Quit", this, [this] { close(); });

  list_ = std::make_unique<QtListView>(list_view_);
  tree_ = std::make_unique<QtTreeView>(tree_view_);
  combo_ = std::make_unique<QtImageCombo>(combo_box_);
  list_->SetIcons(Icons());
  tree_->SetIcons(Icons());
  combo_->SetIcons(Icons());
  list_->SortOnHeaderClick(&helper_);
  connect(reload, &QPushButton::clicked, this, [this] { ReloadTree(); });
  resize(760, 480);
}

DatasetViewer::~DatasetViewer() = default;

bool DatasetViewer::Open(const QString& dataset_file, const QString& columns_file) {
  QFile spec(columns_file);
  if (!spec.open(QIODevice::ReadOnly)) {
    SetStatus("Cannot read " + columns_file);
    return false;
  }
  const std::string columns = spec.readAll().toStdString();
  if (!helper_.LoadFile(dataset_file.toStdString())) {
    SetStatus(QString::fromStdString(helper_.GetLastError()));
    return false;
  }
  columns_file_ = columns_file;

  // The fields to choose from: the cols of the first row of the first data
  // element.
  XmlDocument document;
  fields_.clear();
  if (document.Load(dataset_file.toStdString())) {
    XmlNodeList cols = document.SelectNodes("/*/*[1]/*[1]/col");
    for (int32_t i = 0; i < cols.Length(); ++i)
      fields_.append(QString::fromStdString(cols.Item(i).GetAttribute("name")));
  }
  ChooseField(key_field_, fields_, "id", 0);
  ChooseField(parent_field_, fields_, "parent", 1);
  ChooseField(text_field_, fields_, "name", 2);

  bool ok = helper_.ListView_InitializeColumns(list_.get(), columns) &&
            helper_.ListView_LoadData(list_.get(), key_field_->currentText().toStdString());
  if (!ok) {
    SetStatus(QString::fromStdString(helper_.GetLastError()));
    return false;
  }
  list_->Sync();
  ReloadTree();
  setWindowTitle("Dataset viewer - " + dataset_file);
  return true;
}

void DatasetViewer::ReloadTree() {
  const std::string key = key_field_->currentText().toStdString();
  const std::string parent = parent_field_->currentText().toStdString();
  const std::string text = text_field_->currentText().toStdString();
  const bool tree_ok =
      helper_.TreeView_LoadData(tree_.get(), key, parent, text, "", "tag", "folder", "item");
  const std::string tree_error = helper_.GetLastError();
  const bool combo_ok = helper_.ImageCombo_LoadHierData(combo_.get(), key, parent, text);
  tree_->Sync();
  combo_->Sync();
  if (!tree_ok) {
    SetStatus(QString::fromStdString(tree_error));
  } else if (!combo_ok) {
    SetStatus(QString::fromStdString(helper_.GetLastError()));
  } else {
    SetStatus(QString("%1 rows").arg(list_->ListItems().Count()));
  }
}

void DatasetViewer::ShowView(int index) { tabs_->setCurrentIndex(index); }
QWidget* DatasetViewer::ViewPage(int index) const { return tabs_->widget(index); }
QString DatasetViewer::Status() const { return status_->text(); }
void DatasetViewer::SetStatus(const QString& text) { status_->setText(text); }

void DatasetViewer::OpenFromMenu() {
  const QString dataset =
      QFileDialog::getOpenFileName(this, "Open a dataset", {}, "Dataset files (*.xml)");
  if (dataset.isEmpty()) return;
  QString columns =
      QFileDialog::getOpenFileName(this, "Open a column spec", {}, "Column specs (*.xml)");
  if (columns.isEmpty()) columns = columns_file_;
  Open(dataset, columns);
}

}  // namespace veld
