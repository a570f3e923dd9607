#include "veld/qt/qt_tree_view.h"

#include <QAbstractItemModel>
#include <QItemSelectionModel>
#include <QPointer>
#include <QTreeView>
#include <vector>

#include "qt/deferred_mirror.h"

namespace veld {

namespace {

// The nodes by their Index (1-based; 0 stands for the invisible root) in a
// snapshot of the tree's shape taken when a change is published: parents,
// rows among siblings and each node's children in order. Indexes carry a
// node's Index, never a pointer, so a view holding an index of a removed
// node reads nothing.
class TreeModel final : public QAbstractItemModel {
 public:
  explicit TreeModel(HeadlessTreeView& tree) : tree_(tree) {}

  QModelIndex index(int row, int column, const QModelIndex& parent) const override {
    const int32_t up = parent.isValid() ? static_cast<int32_t>(parent.internalId()) : 0;
    if (column != 0 || up >= Size() || row < 0 || row >= ChildCount(up)) return {};
    return createIndex(row, 0, static_cast<quintptr>(children_[first_[up] + row]));
  }

  QModelIndex parent(const QModelIndex& child) const override {
    if (!child.isValid()) return {};
    const auto id = static_cast<int32_t>(child.internalId());
    if (id <= 0 || id >= Size() || parent_[id] == 0) return {};
    return IndexOf(parent_[id]);
  }

  int rowCount(const QModelIndex& parent) const override {
    if (parent.column() > 0) return 0;
    const int32_t up = parent.isValid() ? static_cast<int32_t>(parent.internalId()) : 0;
    return up < Size() ? ChildCount(up) : 0;
  }

  int columnCount(const QModelIndex&) const override { return 1; }

  QVariant data(const QModelIndex& index, int role) const override {
    if (stale_ || !index.isValid()) return {};
    try {
      Node& node = tree_.Nodes().Item(Variant(static_cast<int32_t>(index.internalId())));
      if (role == Qt::DisplayRole) return QString::fromStdString(node.Text());
      if (role == Qt::DecorationRole) {
        std::string key = node.Selected() ? node.SelectedImage() : std::string();
        if (key.empty()) key = node.Image();
        auto found = icons.find(key);
        return found == icons.end() ? QVariant() : QVariant(found->second);
      }
    } catch (...) {  // a view must never see the control's errors
    }
    return {};
  }

  // The index of node `id` in the published snapshot.
  QModelIndex IndexOf(int32_t id) const {
    if (id <= 0 || id >= Size()) return {};
    return createIndex(row_[id], 0, static_cast<quintptr>(id));
  }

  // Until the next publication the snapshot no longer matches the nodes.
  void MarkStale() { stale_ = true; }
  bool Stale() const { return stale_; }

  void Publish(int32_t changes) {
    if ((changes & ControlObserver::kStructure) != 0) {
      beginResetModel();
      Rebuild();
      stale_ = false;
      endResetModel();
    } else if ((changes & ControlObserver::kContent) != 0 && ChildCount(0) > 0) {
      emit dataChanged(index(0, 0, {}), index(ChildCount(0) - 1, 0, {}));
    }
  }

  IconMap icons;

 private:
  int32_t Size() const { return static_cast<int32_t>(parent_.size()); }
  int32_t ChildCount(int32_t id) const { return first_[id + 1] - first_[id]; }

  void Rebuild() {
    NodeCollection& nodes = tree_.Nodes();
    const int32_t count = nodes.Count();
    std::vector<Node*> by_id(static_cast<size_t>(count) + 1, nullptr);
    parent_.assign(static_cast<size_t>(count) + 1, 0);
    row_.assign(static_cast<size_t>(count) + 1, 0);
    std::vector<bool> follows(static_cast<size_t>(count) + 1, false);
    for (int32_t id = 1; id <= count; ++id) {
      Node* node = &nodes.Item(Variant(id));
      by_id[id] = node;
      if (Node* up = node->Parent()) parent_[id] = up->Index();
    }
    // The first root is the one that is no other root's next sibling.
    Node* first_root = nullptr;
    for (int32_t id = 1; id <= count; ++id) {
      if (parent_[id] != 0) continue;
      if (Node* next = by_id[id]->Next()) follows[next->Index()] = true;
    }
    for (int32_t id = 1; id <= count && first_root == nullptr; ++id) {
      if (parent_[id] == 0 && !follows[id]) first_root = by_id[id];
    }
    first_.assign(static_cast<size_t>(count) + 2, 0);
    children_.clear();
    children_.reserve(static_cast<size_t>(count));
    for (int32_t id = 0; id <= count; ++id) {
      first_[id] = static_cast<int32_t>(children_.size());
      Node* child = id == 0 ? first_root : by_id[id]->Child();
      for (int32_t row = 0; child != nullptr; child = child->Next(), ++row) {
        row_[child->Index()] = row;
        children_.push_back(child->Index());
      }
    }
    first_[count + 1] = static_cast<int32_t>(children_.size());
  }

  HeadlessTreeView& tree_;
  std::vector<int32_t> parent_{0};
  std::vector<int32_t> row_{0};
  std::vector<int32_t> first_{0, 0};
  std::vector<int32_t> children_;
  bool stale_ = false;
};

}  // namespace

struct QtTreeView::Mirror final : qt_internal::WidgetMirror<TreeModel, QTreeView> {
  Mirror(QtTreeView& owner, QTreeView* shown)
      : WidgetMirror(std::make_unique<TreeModel>(owner), shown), tree(owner) {
    view->setModel(model.get());
    view->setHeaderHidden(true);
    view->setSelectionMode(QAbstractItemView::SingleSelection);
    QObject::connect(view->selectionModel(), &QItemSelectionModel::currentChanged, model.get(),
                     [this](const QModelIndex& current) { SelectFromView(current); });
    QObject::connect(view, &QTreeView::expanded, model.get(),
                     [this](const QModelIndex& index) { ExpandFromView(index, true); });
    QObject::connect(view, &QTreeView::collapsed, model.get(),
                     [this](const QModelIndex& index) { ExpandFromView(index, false); });
  }

  void ChangedNow(int32_t changes) override {
    if ((changes & kStructure) != 0) model->MarkStale();
  }

  void Apply(int32_t changes) override {
    model->Publish(changes);
    // Expansion and selection are applied after the model. A content change
    // keeps both in the view, so only structure and state changes walk the
    // nodes.
    if (view == nullptr || (changes & (kStructure | kState)) == 0) return;
    NodeCollection& nodes = tree.Nodes();
    for (int32_t id = 1; id <= nodes.Count(); ++id) {
      Node& node = nodes.Item(Variant(id));
      if (node.Children() == 0) continue;
      const QModelIndex index = model->IndexOf(id);
      if (view->isExpanded(index) != node.Expanded()) view->setExpanded(index, node.Expanded());
    }
    QItemSelectionModel* selection = view->selectionModel();
    if (Node* selected = tree.SelectedItem()) {
      selection->setCurrentIndex(model->IndexOf(selected->Index()),
                                 QItemSelectionModel::ClearAndSelect);
    } else {
      selection->clear();
    }
  }

  Node* NodeAt(const QModelIndex& index) {
    if (!index.isValid() || model->Stale()) return nullptr;
    try {
      return &tree.Nodes().Item(Variant(static_cast<int32_t>(index.internalId())));
    } catch (...) {  // a node the control no longer has
      return nullptr;
    }
  }

  void SelectFromView(const QModelIndex& current) {
    if (applying) return;
    if (Node* node = NodeAt(current)) node->SetSelected(true);
  }

  void ExpandFromView(const QModelIndex& index, bool expanded) {
    if (applying) return;
    if (Node* node = NodeAt(index)) node->SetExpanded(expanded);
  }

  QtTreeView& tree;
};

QtTreeView::QtTreeView(QTreeView* view) : mirror_(std::make_unique<Mirror>(*this, view)) {
  mirror_->Follow(*this);
}

QtTreeView::~QtTreeView() { SetObserver(nullptr); }

QTreeView* QtTreeView::View() const { return mirror_->view.data(); }
QAbstractItemModel* QtTreeView::Model() const { return mirror_->model.get(); }

void QtTreeView::SetIcons(IconMap icons) { mirror_->SetIcons(std::move(icons)); }

void QtTreeView::Sync() { mirror_->Flush(); }

}  // namespace veld
