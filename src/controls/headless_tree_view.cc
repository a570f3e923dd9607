#include "veld/controls/headless_tree_view.h"

#include <algorithm>
#include <vector>

#include "controls/element_list.h"
#include "veld/controls/control_observer.h"
#include "veld/runtime/automation_error.h"

namespace veld {

Node::~Node() = default;
NodeCollection::~NodeCollection() = default;

namespace controls_internal {

class HeadlessNode;

// What the nodes and the collection share.
struct TreeCore {
  ElementList<HeadlessNode> nodes;
  std::vector<HeadlessNode*> roots;
  HeadlessNode* selected = nullptr;
  ControlObserver* observer = nullptr;

  void Notify(int32_t changes) const {
    if (observer != nullptr) observer->ControlChanged(changes);
  }
};

class HeadlessNode final : public Node {
 public:
  HeadlessNode(TreeCore& state, std::string key, std::string text)
      : key_(std::move(key)), state_(state), text_(std::move(text)) {}

  int32_t Index() const override { return index_; }
  std::string Key() const override { return key_; }
  void SetKey(const std::string& key) override { state_.nodes.Rekey(*this, key); }
  std::string Text() const override { return text_; }
  void SetText(const std::string& text) override {
    text_ = text;
    state_.Notify(ControlObserver::kContent);
  }
  std::string Tag() const override { return tag_; }
  void SetTag(const std::string& tag) override { tag_ = tag; }
  std::string Image() const override { return image_; }
  void SetImage(const std::string& key) override {
    image_ = key;
    state_.Notify(ControlObserver::kContent);
  }
  std::string SelectedImage() const override { return selected_image_; }
  void SetSelectedImage(const std::string& key) override {
    selected_image_ = key;
    state_.Notify(ControlObserver::kContent);
  }
  int32_t Children() const override { return static_cast<int32_t>(children_.size()); }
  Node* Parent() override { return parent_; }
  Node* Child() override { return children_.empty() ? nullptr : children_.front(); }
  Node* Next() override {
    // The position among the siblings is remembered, so that walking a wide
    // level with Next stays linear; it is found again after an insertion.
    std::vector<HeadlessNode*>& siblings = Siblings();
    if (sibling_position_ >= siblings.size() || siblings[sibling_position_] != this) {
      for (size_t i = 0; i < siblings.size(); ++i) siblings[i]->sibling_position_ = i;
    }
    const size_t next = sibling_position_ + 1;
    return next < siblings.size() ? siblings[next] : nullptr;
  }
  bool Expanded() const override { return expanded_; }
  void SetExpanded(bool expanded) override {
    expanded_ = expanded;
    state_.Notify(ControlObserver::kState);
  }
  bool Selected() const override { return state_.selected == this; }
  void SetSelected(bool selected) override {
    if (selected) {
      state_.selected = this;
    } else if (state_.selected == this) {
      state_.selected = nullptr;
    }
    state_.Notify(ControlObserver::kState);
  }
  void EnsureVisible() override {
    for (HeadlessNode* up = parent_; up != nullptr; up = up->parent_) up->expanded_ = true;
    state_.Notify(ControlObserver::kState);
  }

  std::vector<HeadlessNode*>& Siblings() { return parent_ ? parent_->children_ : state_.roots; }

  int32_t index_ = 0;
  std::string key_;
  HeadlessNode* parent_ = nullptr;
  std::vector<HeadlessNode*> children_;
  bool doomed_ = false;
  size_t sibling_position_ = 0;

 private:
  TreeCore& state_;
  std::string text_;
  std::string tag_;
  std::string image_;
  std::string selected_image_;
  bool expanded_ = false;
};

void MarkSubtree(HeadlessNode& node) {
  // An explicit stack: trees ten thousand levels deep must not overflow.
  std::vector<HeadlessNode*> pending{&node};
  while (!pending.empty()) {
    HeadlessNode* next = pending.back();
    pending.pop_back();
    next->doomed_ = true;
    pending.insert(pending.end(), next->children_.begin(), next->children_.end());
  }
}

class HeadlessNodeCollection final : public NodeCollection {
 public:
  explicit HeadlessNodeCollection(TreeCore& state) : state_(state) {}

  int32_t Count() const override { return state_.nodes.Count(); }
  Node& Item(const Variant& vIndexKey) override { return state_.nodes.Item(vIndexKey); }

  Node& Add(const Variant& Relative, const Variant& Relationship, const Variant& Key,
            const Variant& Text, const Variant& Image, const Variant& SelectedImage) override {
    HeadlessNode* relative = nullptr;
    if (!Relative.IsMissing() && !Relative.IsEmpty()) relative = &state_.nodes.Item(Relative);
    int32_t relationship = tvwNext;
    if (!Relationship.IsMissing() && !Relationship.IsEmpty()) relationship = Relationship.ToLong();
    if (relationship < tvwFirst || relationship > tvwChild)
      RaiseError(errnum::kInvalidProcedureCall);
    const std::string key = KeyArgument(Key);
    state_.nodes.CheckKey(key, nullptr);

    auto node = std::make_unique<HeadlessNode>(state_, key, TextArgument(Text));
    node->SetImage(TextArgument(Image));
    node->SetSelectedImage(TextArgument(SelectedImage));
    HeadlessNode& added = state_.nodes.Insert(state_.nodes.Count() + 1, std::move(node));
    Link(added, relative, relationship);
    state_.Notify(ControlObserver::kStructure);
    return added;
  }

  void Remove(const Variant& vIndexKey) override {
    HeadlessNode& node = state_.nodes.Item(vIndexKey);
    std::vector<HeadlessNode*>& siblings = node.Siblings();
    siblings.erase(std::find(siblings.begin(), siblings.end(), &node));
    MarkSubtree(node);
    if (state_.selected != nullptr && state_.selected->doomed_) state_.selected = nullptr;
    state_.nodes.EraseIf([](const HeadlessNode& n) { return n.doomed_; });
    state_.Notify(ControlObserver::kStructure | ControlObserver::kState);
  }

  void Clear() override {
    state_.selected = nullptr;
    state_.roots.clear();
    state_.nodes.Clear();
    state_.Notify(ControlObserver::kStructure | ControlObserver::kState);
  }

 private:
  // Places a new node among its siblings.
  void Link(HeadlessNode& added, HeadlessNode* relative, int32_t relationship) {
    if (relative == nullptr) {
      state_.roots.push_back(&added);
      return;
    }
    if (relationship == tvwChild) {
      added.parent_ = relative;
      relative->children_.push_back(&added);
      return;
    }
    added.parent_ = relative->parent_;
    std::vector<HeadlessNode*>& siblings = relative->Siblings();
    auto at = std::find(siblings.begin(), siblings.end(), relative);
    switch (relationship) {
      case tvwFirst:
        siblings.insert(siblings.begin(), &added);
        break;
      case tvwLast:
        siblings.push_back(&added);
        break;
      case tvwPrevious:
        siblings.insert(at, &added);
        break;
      default:
        siblings.insert(at + 1, &added);
        break;
    }
  }

  TreeCore& state_;
};

}  // namespace controls_internal

using controls_internal::HeadlessNodeCollection;
using controls_internal::TreeCore;

struct HeadlessTreeView::State {
  TreeCore core;
  HeadlessNodeCollection nodes{core};
};

HeadlessTreeView::HeadlessTreeView() : state_(std::make_unique<State>()) {}
HeadlessTreeView::~HeadlessTreeView() = default;

NodeCollection& HeadlessTreeView::Nodes() { return state_->nodes; }
Node* HeadlessTreeView::SelectedItem() { return state_->core.selected; }

void HeadlessTreeView::SetObserver(ControlObserver* observer) { state_->core.observer = observer; }

}  // namespace veld
