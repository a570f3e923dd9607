#include "veld/controls/headless_image_combo.h"

#include "controls/element_list.h"
#include "veld/controls/control_observer.h"
#include "veld/runtime/automation_error.h"

namespace veld {

ComboItem::~ComboItem() = default;
ComboItemCollection::~ComboItemCollection() = default;

namespace controls_internal {

class HeadlessComboItem;

// What the items, the collection and the control share.
struct ComboCore {
  ElementList<HeadlessComboItem> items;
  HeadlessComboItem* selected = nullptr;
  std::string text;
  int32_t refreshes = 0;
  ControlObserver* observer = nullptr;

  void Notify(int32_t changes) const {
    if (observer != nullptr) observer->ControlChanged(changes);
  }
};

class HeadlessComboItem final : public ComboItem {
 public:
  HeadlessComboItem(ComboCore& core, std::string key, std::string text)
      : key_(std::move(key)), core_(core), text_(std::move(text)) {}

  int32_t Index() const override { return index_; }
  std::string Key() const override { return key_; }
  void SetKey(const std::string& key) override { core_.items.Rekey(*this, key); }
  std::string Text() const override { return text_; }
  void SetText(const std::string& text) override {
    text_ = text;
    core_.Notify(ControlObserver::kContent);
  }
  std::string Tag() const override { return tag_; }
  void SetTag(const std::string& tag) override { tag_ = tag; }
  int16_t Indentation() const override { return indentation_; }
  void SetIndentation(int16_t level) override {
    indentation_ = level;
    core_.Notify(ControlObserver::kContent);
  }
  std::string Image() const override { return image_; }
  void SetImage(const std::string& key) override {
    image_ = key;
    core_.Notify(ControlObserver::kContent);
  }
  std::string SelImage() const override { return sel_image_; }
  void SetSelImage(const std::string& key) override {
    sel_image_ = key;
    core_.Notify(ControlObserver::kContent);
  }
  bool Selected() const override { return core_.selected == this; }
  void SetSelected(bool selected) override {
    if (selected) {
      core_.selected = this;
      core_.text = text_;
    } else if (core_.selected == this) {
      core_.selected = nullptr;
    }
    core_.Notify(ControlObserver::kState);
  }

  int32_t index_ = 0;
  std::string key_;

 private:
  ComboCore& core_;
  std::string text_;
  std::string tag_;
  std::string image_;
  std::string sel_image_;
  int16_t indentation_ = 0;
};

class HeadlessComboItemCollection final : public ComboItemCollection {
 public:
  explicit HeadlessComboItemCollection(ComboCore& core) : core_(core) {}

  int32_t Count() const override { return core_.items.Count(); }
  ComboItem& Item(const Variant& vIndexKey) override { return core_.items.Item(vIndexKey); }

  ComboItem& Add(const Variant& Index, const Variant& Key, const Variant& Text,
                 const Variant& Image, const Variant& SelImage,
                 const Variant& Indentation) override {
    const int32_t position = core_.items.InsertPosition(Index);
    const std::string key = KeyArgument(Key);
    core_.items.CheckKey(key, nullptr);
    int16_t indentation = 0;
    if (!Indentation.IsMissing() && !Indentation.IsEmpty()) indentation = Indentation.ToInteger();
    auto item = std::make_unique<HeadlessComboItem>(core_, key, TextArgument(Text));
    item->SetImage(TextArgument(Image));
    item->SetSelImage(TextArgument(SelImage));
    item->SetIndentation(indentation);
    ComboItem& added = core_.items.Insert(position, std::move(item));
    core_.Notify(ControlObserver::kStructure);
    return added;
  }

  void Remove(const Variant& vIndexKey) override {
    HeadlessComboItem* doomed = &core_.items.Item(vIndexKey);
    if (core_.selected == doomed) core_.selected = nullptr;
    core_.items.EraseIf([doomed](const HeadlessComboItem& item) { return &item == doomed; });
    core_.Notify(ControlObserver::kStructure | ControlObserver::kState);
  }

  void Clear() override {
    core_.selected = nullptr;
    core_.items.Clear();
    core_.Notify(ControlObserver::kStructure | ControlObserver::kState);
  }

 private:
  ComboCore& core_;
};

}  // namespace controls_internal

struct HeadlessImageCombo::State {
  controls_internal::ComboCore core;
  controls_internal::HeadlessComboItemCollection items{core};
};

HeadlessImageCombo::HeadlessImageCombo() : state_(std::make_unique<State>()) {}
HeadlessImageCombo::~HeadlessImageCombo() = default;

ComboItemCollection& HeadlessImageCombo::ComboItems() { return state_->items; }
std::string HeadlessImageCombo::Text() const { return state_->core.text; }
void HeadlessImageCombo::SetText(const std::string& text) {
  state_->core.text = text;
  state_->core.Notify(ControlObserver::kState);
}
ComboItem* HeadlessImageCombo::SelectedItem() { return state_->core.selected; }

void HeadlessImageCombo::SetSelectedItem(ComboItem* item) {
  if (item == nullptr) {
    state_->core.selected = nullptr;
    state_->core.Notify(ControlObserver::kState);
    return;
  }
  // Only an item of this combo can be selected in it.
  const int32_t index = item->Index();
  if (index < 1 || index > state_->core.items.Count() || &state_->core.items.At(index) != item)
    RaiseError(errnum::kInvalidProcedureCall);
  item->SetSelected(true);
}

void HeadlessImageCombo::Refresh() { ++state_->core.refreshes; }

void HeadlessImageCombo::SetObserver(ControlObserver* observer) {
  state_->core.observer = observer;
}
int32_t HeadlessImageCombo::RefreshCount() const { return state_->core.refreshes; }

}  // namespace veld
