#include "veld/qt/qt_image_combo.h"

#include <QAbstractListModel>
#include <QComboBox>
#include <QLineEdit>
#include <QPointer>
#include <QStyledItemDelegate>

#include "qt/deferred_mirror.h"

namespace veld {

namespace {

// Pixels per indentation level.
constexpr int kIndentPixels = 10;

class ComboModel final : public QAbstractListModel {
 public:
  explicit ComboModel(HeadlessImageCombo& combo) : combo_(combo) {}

  int rowCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : rows_; }

  QVariant data(const QModelIndex& index, int role) const override {
    if (!index.isValid() || index.row() >= combo_.ComboItems().Count()) return {};
    try {
      ComboItem& item = combo_.ComboItems().Item(Variant(static_cast<int32_t>(index.row() + 1)));
      switch (role) {
        case Qt::DisplayRole:
        case Qt::EditRole:
          return QString::fromStdString(item.Text());
        case Qt::DecorationRole: {
          std::string key = item.Selected() ? item.SelImage() : std::string();
          if (key.empty()) key = item.Image();
          auto found = icons.find(key);
          return found == icons.end() ? QVariant() : QVariant(found->second);
        }
        case QtImageCombo::IndentationRole:
          return static_cast<int>(item.Indentation());
        default:
          return {};
      }
    } catch (...) {  // a view must never see the control's errors
      return {};
    }
  }

  void Publish(int32_t changes) {
    if ((changes & ControlObserver::kStructure) != 0) {
      beginResetModel();
      rows_ = combo_.ComboItems().Count();
      endResetModel();
    } else if ((changes & (ControlObserver::kContent | ControlObserver::kState)) != 0 &&
               rows_ > 0) {
      // A selected item may show its selected image.
      emit dataChanged(index(0), index(rows_ - 1));
    }
  }

  IconMap icons;

 private:
  HeadlessImageCombo& combo_;
  int rows_ = 0;
};

// Draws each item moved right by its indentation.
class IndentingDelegate final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    QStyleOptionViewItem moved(option);
    moved.rect.adjust(Indent(index), 0, 0, 0);
    QStyledItemDelegate::paint(painter, moved, index);
  }

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    size.rwidth() += Indent(index);
    return size;
  }

 private:
  static int Indent(const QModelIndex& index) {
    return std::max(0, index.data(QtImageCombo::IndentationRole).toInt()) * kIndentPixels;
  }
};

}  // namespace

struct QtImageCombo::Mirror final : qt_internal::WidgetMirror<ComboModel, QComboBox> {
  Mirror(QtImageCombo& owner, QComboBox* shown)
      : WidgetMirror(std::make_unique<ComboModel>(owner), shown), combo(owner) {
    view->setEditable(true);
    view->setInsertPolicy(QComboBox::NoInsert);
    view->setModel(model.get());
    view->setItemDelegate(new IndentingDelegate(view));
    QObject::connect(view, &QComboBox::activated, model.get(),
                     [this](int row) { SelectFromView(row); });
    QObject::connect(view, &QComboBox::editTextChanged, model.get(),
                     [this](const QString& text) { TextFromView(text); });
  }

  void Apply(int32_t changes) override {
    model->Publish(changes);
    if (view == nullptr) return;
    ComboItem* selected = combo.SelectedItem();
    view->setCurrentIndex(selected != nullptr ? selected->Index() - 1 : -1);
    view->setEditText(QString::fromStdString(combo.Text()));
  }

  void SelectFromView(int row) {
    if (applying || row < 0) return;
    try {
      combo.ComboItems().Item(Variant(static_cast<int32_t>(row + 1))).SetSelected(true);
    } catch (...) {  // an item the control no longer has
    }
  }

  void TextFromView(const QString& text) {
    if (!applying) combo.SetText(text.toStdString());
  }

  QtImageCombo& combo;
};

QtImageCombo::QtImageCombo(QComboBox* combo) : mirror_(std::make_unique<Mirror>(*this, combo)) {
  SetObserver(mirror_.get());
  mirror_->ControlChanged(ControlObserver::kStructure | ControlObserver::kState);
}

QtImageCombo::~QtImageCombo() { SetObserver(nullptr); }

QComboBox* QtImageCombo::View() const { return mirror_->view.data(); }
QAbstractItemModel* QtImageCombo::Model() const { return mirror_->model.get(); }

void QtImageCombo::SetIcons(IconMap icons) { mirror_->SetIcons(std::move(icons)); }

void QtImageCombo::Sync() { mirror_->Flush(); }

}  // namespace veld
