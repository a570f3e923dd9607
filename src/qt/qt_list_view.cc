#include "veld/qt/qt_list_view.h"

#include <QAbstractTableModel>
#include <QBrush>
#include <QColor>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QPointer>
#include <QTreeView>

#include "qt/deferred_mirror.h"
#include "veld/controls/kvo_data_ctrl_helper.h"
#include "veld/platform/platform.h"

namespace veld {

namespace {

Qt::Alignment ColumnAlignment(int32_t alignment) {
  switch (alignment) {
    case 1:
      return Qt::AlignRight | Qt::AlignVCenter;
    case 2:
      return Qt::AlignHCenter | Qt::AlignVCenter;
    default:
      return Qt::AlignLeft | Qt::AlignVCenter;
  }
}

// 0x00BBGGRR as a brush; 0, the default black, as none, so that the
// palette's text colour shows.
QVariant ForeBrush(int32_t color) {
  if (color == 0) return {};
  return QBrush(QColor(color & 0xFF, (color >> 8) & 0xFF, (color >> 16) & 0xFF));
}

QString ToQString(const std::string& text) { return QString::fromStdString(text); }

// The items as rows and the columns as columns. The counts are those last
// published, so that the view never sees more rows than it was told of.
class ListModel final : public QAbstractTableModel {
 public:
  explicit ListModel(HeadlessListView& list) : list_(list) {}

  int rowCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : rows_; }
  int columnCount(const QModelIndex& parent) const override {
    return parent.isValid() ? 0 : columns_;
  }

  QVariant data(const QModelIndex& index, int role) const override {
    try {
      return Data(index, role);
    } catch (...) {  // a view must never see the control's errors
      return {};
    }
  }

  QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
    if (orientation != Qt::Horizontal || section < 0 || section >= list_.ColumnHeaders().Count())
      return {};
    ColumnHeader& column = list_.ColumnHeaders().Item(Variant(static_cast<int32_t>(section + 1)));
    if (role == Qt::DisplayRole) return ToQString(column.Text());
    if (role == Qt::TextAlignmentRole)
      return QVariant::fromValue(ColumnAlignment(column.Alignment()));
    return {};
  }

  void Publish(int32_t changes) {
    if ((changes & ControlObserver::kStructure) != 0) {
      beginResetModel();
      rows_ = list_.ListItems().Count();
      columns_ = list_.ColumnHeaders().Count();
      endResetModel();
    } else if ((changes & ControlObserver::kContent) != 0 && rows_ > 0 && columns_ > 0) {
      emit dataChanged(index(0, 0), index(rows_ - 1, columns_ - 1));
    }
  }

  IconMap icons;

 private:
  QVariant Data(const QModelIndex& index, int role) const {
    const int column = index.column();
    if (!index.isValid() || index.row() >= list_.ListItems().Count() ||
        column >= list_.ColumnHeaders().Count())
      return {};
    ListItem& item = list_.ListItems().Item(Variant(static_cast<int32_t>(index.row() + 1)));
    switch (role) {
      case Qt::DisplayRole:
        return ToQString(column == 0 ? item.Text() : item.SubItems(column));
      case Qt::DecorationRole: {
        if (column != 0) return {};
        std::string key = item.SmallIcon();
        if (key.empty()) key = item.Icon();
        auto found = icons.find(key);
        return found == icons.end() ? QVariant() : QVariant(found->second);
      }
      case Qt::ForegroundRole:
        return ForeBrush(column == 0 ? item.ForeColor() : item.ListSubItems(column).ForeColor());
      case Qt::TextAlignmentRole:
        return QVariant::fromValue(ColumnAlignment(
            list_.ColumnHeaders().Item(Variant(static_cast<int32_t>(column + 1))).Alignment()));
      default:
        return {};
    }
  }

  HeadlessListView& list_;
  int rows_ = 0;
  int columns_ = 0;
};

}  // namespace

struct QtListView::Mirror final : qt_internal::WidgetMirror<ListModel, QTreeView> {
  Mirror(QtListView& owner, QTreeView* shown)
      : WidgetMirror(std::make_unique<ListModel>(owner), shown), list(owner) {
    view->setModel(model.get());
    view->setRootIsDecorated(false);
    view->setItemsExpandable(false);
    view->setUniformRowHeights(true);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setSelectionMode(QAbstractItemView::SingleSelection);
    view->setAllColumnsShowFocus(true);
    view->setSortingEnabled(false);
    view->header()->setSectionsClickable(true);
    view->header()->setStretchLastSection(false);
    view->header()->setMinimumSectionSize(1);  // the columns' own widths, however narrow
    QObject::connect(view->selectionModel(), &QItemSelectionModel::currentRowChanged, model.get(),
                     [this](const QModelIndex& current) { SelectFromView(current); });
    QObject::connect(view->header(), &QHeaderView::sectionClicked, model.get(),
                     [this](int section) { SortFromHeader(section); });
  }

  void Apply(int32_t changes) override {
    model->Publish(changes);
    if (view == nullptr) return;
    if ((changes & kStructure) != 0) ApplyColumns();
    if ((changes & (kStructure | kState)) != 0) ApplyState();
  }

  void ApplyColumns() {
    const int32_t twips_per_pixel = std::max(1, CurrentPlatform().TwipsPerPixelX());
    ColumnHeaderCollection& columns = list.ColumnHeaders();
    for (int32_t i = 1; i <= columns.Count(); ++i) {
      const double pixels = columns.Item(Variant(i)).Width() / twips_per_pixel;
      view->setColumnWidth(i - 1, static_cast<int>(std::clamp(pixels, 0.0, 100000.0)));
    }
  }

  void ApplyState() {
    QHeaderView* header = view->header();
    header->setSortIndicatorShown(list.Sorted());
    if (list.Sorted()) {
      header->setSortIndicator(list.SortKey(),
                               list.SortOrder() == 0 ? Qt::AscendingOrder : Qt::DescendingOrder);
    }
    QItemSelectionModel* selection = view->selectionModel();
    if (ListItem* selected = list.SelectedItem()) {
      selection->setCurrentIndex(model->index(selected->Index() - 1, 0),
                                 QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    } else {
      selection->clear();
    }
    ListItem* visible = list.VisibleItem();
    if (visible != nullptr && visible != shown_visible)
      view->scrollTo(model->index(visible->Index() - 1, 0));
    shown_visible = visible;
  }

  void SelectFromView(const QModelIndex& current) {
    if (applying || !current.isValid()) return;
    try {
      list.ListItems().Item(Variant(static_cast<int32_t>(current.row() + 1))).SetSelected(true);
    } catch (...) {  // a row the control no longer has
    }
  }

  void SortFromHeader(int section) {
    if (sorter == nullptr || sorting) return;
    sorting = true;
    sorter->ListView_SortData(&list, section + 1);
    sorting = false;
    Flush();
  }

  QtListView& list;
  KvoDataCtrlHelper* sorter = nullptr;
  bool sorting = false;
  const ListItem* shown_visible = nullptr;
};

QtListView::QtListView(QTreeView* view) : mirror_(std::make_unique<Mirror>(*this, view)) {
  mirror_->Follow(*this);
}

QtListView::~QtListView() { SetObserver(nullptr); }

QTreeView* QtListView::View() const { return mirror_->view.data(); }
QAbstractItemModel* QtListView::Model() const { return mirror_->model.get(); }

void QtListView::SetIcons(IconMap icons) { mirror_->SetIcons(std::move(icons)); }

void QtListView::SortOnHeaderClick(KvoDataCtrlHelper* helper) { mirror_->sorter = helper; }

void QtListView::Sync() { mirror_->Flush(); }

}  // namespace veld
