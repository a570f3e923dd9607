#include "veld/controls/headless_list_view.h"

#include <algorithm>
#include <functional>
#include <numeric>
#include <vector>

#include "controls/collation.h"
#include "controls/element_list.h"
#include "runtime/text.h"
#include "veld/controls/control_observer.h"
#include "veld/platform/platform.h"
#include "veld/platform/regional_settings.h"
#include "veld/runtime/automation_error.h"

namespace veld {

ColumnHeader::~ColumnHeader() = default;
ColumnHeaderCollection::~ColumnHeaderCollection() = default;
ListSubItem::~ListSubItem() = default;
ListItem::~ListItem() = default;

bool ListItem::KeyEqualsUpper(std::string_view upper_key) const {
  return UCase(Key()) == upper_key;
}
ListItemCollection::~ListItemCollection() = default;

namespace controls_internal {

// A new column's width when none is given: 1440 twips, an inch.
constexpr double kDefaultColumnWidth = 1440;

class HeadlessColumn;
class HeadlessListItem;

struct ListCore {
  ElementList<HeadlessColumn> columns;
  ElementList<HeadlessListItem> items;
  HeadlessListItem* selected = nullptr;
  HeadlessListItem* visible = nullptr;
  bool sorted = false;
  int16_t sort_key = 0;
  int32_t sort_order = 0;
  ControlObserver* observer = nullptr;

  void Sort();
  void Notify(int32_t changes) const {
    if (observer != nullptr) observer->ControlChanged(changes);
  }
};

void CheckAlignment(int32_t alignment) {
  if (alignment < 0 || alignment > 2) RaiseControlError(ctlerr::kInvalidPropertyValue);
}

class HeadlessColumn final : public ColumnHeader {
 public:
  HeadlessColumn(ListCore& core, std::string key) : key_(std::move(key)), core_(core) {}

  int32_t Index() const override { return index_; }
  std::string Key() const override { return key_; }
  void SetKey(const std::string& key) override { core_.columns.Rekey(*this, key); }
  std::string Text() const override { return text_; }
  void SetText(const std::string& text) override {
    text_ = text;
    core_.Notify(ControlObserver::kStructure);
  }
  double Width() const override { return width_; }
  void SetWidth(double twips) override {
    width_ = twips;
    core_.Notify(ControlObserver::kStructure);
  }
  int32_t Alignment() const override { return alignment_; }
  void SetAlignment(int32_t alignment) override {
    CheckAlignment(alignment);
    alignment_ = alignment;
    core_.Notify(ControlObserver::kStructure);
  }
  std::string Tag() const override { return tag_; }
  void SetTag(const std::string& tag) override { tag_ = tag; }

  int32_t index_ = 0;
  std::string key_;

 private:
  ListCore& core_;
  std::string text_;
  double width_ = kDefaultColumnWidth;
  int32_t alignment_ = 0;
  std::string tag_;
};

class HeadlessSubItem final : public ListSubItem {
 public:
  HeadlessSubItem(const ListCore& core, int32_t index) : index_(index), core_(core) {}
  int32_t Index() const override { return index_; }
  std::string Text() const override { return text_; }
  void SetText(const std::string& text) override {
    text_ = text;
    core_.Notify(ControlObserver::kContent);
  }
  int32_t ForeColor() const override { return fore_color_; }
  void SetForeColor(int32_t color) override {
    fore_color_ = color;
    core_.Notify(ControlObserver::kContent);
  }

  const std::string& TextRef() const { return text_; }

 private:
  int32_t index_;
  const ListCore& core_;
  std::string text_;
  int32_t fore_color_ = 0;
};

class HeadlessListItem final : public ListItem {
 public:
  HeadlessListItem(ListCore& core, std::string key, std::string text)
      : key_(std::move(key)), core_(core), text_(std::move(text)) {}

  int32_t Index() const override { return index_; }
  std::string Key() const override { return key_; }
  void SetKey(const std::string& key) override { core_.items.Rekey(*this, key); }
  std::string Text() const override { return text_; }
  void SetText(const std::string& text) override {
    text_ = text;
    core_.Notify(ControlObserver::kContent);
  }
  std::string Icon() const override { return icon_; }
  void SetIcon(const std::string& key) override {
    icon_ = key;
    core_.Notify(ControlObserver::kContent);
  }
  std::string SmallIcon() const override { return small_icon_; }
  void SetSmallIcon(const std::string& key) override {
    small_icon_ = key;
    core_.Notify(ControlObserver::kContent);
  }
  std::string Tag() const override { return tag_; }
  void SetTag(const std::string& tag) override { tag_ = tag; }
  bool Selected() const override { return core_.selected == this; }
  void SetSelected(bool selected) override {
    if (selected) {
      core_.selected = this;
    } else if (core_.selected == this) {
      core_.selected = nullptr;
    }
    core_.Notify(ControlObserver::kState);
  }
  int32_t ForeColor() const override { return fore_color_; }
  void SetForeColor(int32_t color) override {
    fore_color_ = color;
    core_.Notify(ControlObserver::kContent);
  }
  void EnsureVisible() override {
    core_.visible = this;
    core_.Notify(ControlObserver::kState);
  }

  bool KeyEqualsUpper(std::string_view upper_key) const override {
    // Keys are mostly ASCII: compare them in place, without a copy.
    if (key_.size() == upper_key.size()) {
      bool ascii = true;
      for (size_t i = 0; i < key_.size() && ascii; ++i) {
        const auto c = static_cast<unsigned char>(key_[i]);
        if (c >= 0x80) {
          ascii = false;
        } else if ((c >= 'a' && c <= 'z' ? c - 32 : c) !=
                   static_cast<unsigned char>(upper_key[i])) {
          return false;
        }
      }
      if (ascii) return true;
    } else if (std::all_of(key_.begin(), key_.end(),
                           [](char c) { return static_cast<unsigned char>(c) < 0x80; })) {
      return false;  // an ASCII key keeps its length when upper-cased
    }
    return UCase(key_) == upper_key;
  }

  std::string SubItems(int32_t n) const override {
    if (n == 0) return text_;
    CheckSubItem(n);
    return static_cast<size_t>(n) <= subitems_.size() ? subitems_[n - 1]->Text() : std::string();
  }
  void SetSubItems(int32_t n, const std::string& text) override {
    if (n == 0) {
      SetText(text);
      return;
    }
    ListSubItems(n).SetText(text);
  }
  ListSubItem& ListSubItems(int32_t n) override {
    CheckSubItem(n);
    while (subitems_.size() < static_cast<size_t>(n))
      subitems_.push_back(
          std::make_unique<HeadlessSubItem>(core_, static_cast<int32_t>(subitems_.size()) + 1));
    return *subitems_[n - 1];
  }

  // The sort text of column k (0: the text), without raising.
  const std::string& ColumnText(int32_t k) const {
    static const std::string kEmpty;
    if (k == 0) return text_;
    if (k < 0 || static_cast<size_t>(k) > subitems_.size()) return kEmpty;
    return subitems_[k - 1]->TextRef();
  }

  int32_t index_ = 0;
  std::string key_;

 private:
  void CheckSubItem(int32_t n) const {
    if (n < 1 || n >= core_.columns.Count()) RaiseControlError(ctlerr::kIndexOutOfBounds);
  }

  ListCore& core_;
  std::string text_;
  std::string icon_;
  std::string small_icon_;
  std::string tag_;
  int32_t fore_color_ = 0;
  std::vector<std::unique_ptr<HeadlessSubItem>> subitems_;
};

void ListCore::Sort() {
  // Each item's collation key is built once, into one buffer; the sort
  // compares keys and moves small records, and the items move once. Keys
  // are built in the order the items lie in memory: after an earlier sort,
  // list order jumps across the heap and is several times slower.
  TextCollator collator(CurrentPlatform().Regional()->locale_id);
  auto& elements = items.Elements();
  struct Keyed {
    size_t offset;
    size_t length;
    HeadlessListItem* item;
  };
  std::vector<Keyed> keyed(elements.size());
  std::vector<size_t> by_address(elements.size());
  std::iota(by_address.begin(), by_address.end(), size_t{0});
  std::sort(by_address.begin(), by_address.end(), [&elements](size_t a, size_t b) {
    return std::less<HeadlessListItem*>()(elements[a].get(), elements[b].get());
  });
  std::string keys;
  keys.reserve(elements.size() * 24);
  for (const size_t position : by_address) {
    HeadlessListItem* item = elements[position].get();
    const size_t offset = keys.size();
    collator.AppendSortKey(item->ColumnText(sort_key), keys);
    keyed[position] = {offset, keys.size() - offset, item};
  }
  const auto key_of = [&keys](const Keyed& k) {
    return std::string_view(keys.data() + k.offset, k.length);
  };
  const bool descending = sort_order == 1;
  std::stable_sort(keyed.begin(), keyed.end(), [&](const Keyed& a, const Keyed& b) {
    return descending ? key_of(b) < key_of(a) : key_of(a) < key_of(b);
  });
  // Nothing below throws: the items change hands without being lost.
  for (auto& item : elements) static_cast<void>(item.release());
  for (size_t i = 0; i < keyed.size(); ++i) elements[i].reset(keyed[i].item);
  items.Renumber(0);
}

class HeadlessColumnCollection final : public ColumnHeaderCollection {
 public:
  explicit HeadlessColumnCollection(ListCore& core) : core_(core) {}

  int32_t Count() const override { return core_.columns.Count(); }
  ColumnHeader& Item(const Variant& vIndexKey) override { return core_.columns.Item(vIndexKey); }

  ColumnHeader& Add(const Variant& Index, const Variant& Key, const Variant& Text,
                    const Variant& Width, const Variant& Alignment, const Variant&) override {
    const int32_t position = core_.columns.InsertPosition(Index);
    const std::string key = KeyArgument(Key);
    core_.columns.CheckKey(key, nullptr);
    int32_t alignment = 0;
    if (!Alignment.IsMissing() && !Alignment.IsEmpty()) alignment = Alignment.ToLong();
    CheckAlignment(alignment);
    double width = kDefaultColumnWidth;
    if (!Width.IsMissing() && !Width.IsEmpty()) width = Width.ToDouble();
    auto column = std::make_unique<HeadlessColumn>(core_, key);
    column->SetText(TextArgument(Text));
    column->SetWidth(width);
    column->SetAlignment(alignment);
    ColumnHeader& added = core_.columns.Insert(position, std::move(column));
    core_.Notify(ControlObserver::kStructure);
    return added;
  }

  void Remove(const Variant& vIndexKey) override {
    HeadlessColumn* doomed = &core_.columns.Item(vIndexKey);
    core_.columns.EraseIf([doomed](const HeadlessColumn& c) { return &c == doomed; });
    core_.Notify(ControlObserver::kStructure);
  }

  void Clear() override {
    core_.columns.Clear();
    core_.Notify(ControlObserver::kStructure);
  }

 private:
  ListCore& core_;
};

class HeadlessListItemCollection final : public ListItemCollection {
 public:
  explicit HeadlessListItemCollection(ListCore& core) : core_(core) {}

  int32_t Count() const override { return core_.items.Count(); }
  ListItem& Item(const Variant& vIndexKey) override { return core_.items.Item(vIndexKey); }

  ListItem& Add(const Variant& Index, const Variant& Key, const Variant& Text, const Variant& Icon,
                const Variant& SmallIcon) override {
    const int32_t position = core_.items.InsertPosition(Index);
    const std::string key = KeyArgument(Key);
    core_.items.CheckKey(key, nullptr);
    auto item = std::make_unique<HeadlessListItem>(core_, key, TextArgument(Text));
    item->SetIcon(TextArgument(Icon));
    item->SetSmallIcon(TextArgument(SmallIcon));
    ListItem& added = core_.items.Insert(position, std::move(item));
    core_.Notify(ControlObserver::kStructure);
    return added;
  }

  void Remove(const Variant& vIndexKey) override {
    HeadlessListItem* doomed = &core_.items.Item(vIndexKey);
    if (core_.selected == doomed) core_.selected = nullptr;
    if (core_.visible == doomed) core_.visible = nullptr;
    core_.items.EraseIf([doomed](const HeadlessListItem& item) { return &item == doomed; });
    core_.Notify(ControlObserver::kStructure | ControlObserver::kState);
  }

  void Clear() override {
    core_.selected = nullptr;
    core_.visible = nullptr;
    core_.items.Clear();
    core_.Notify(ControlObserver::kStructure | ControlObserver::kState);
  }

 private:
  ListCore& core_;
};

}  // namespace controls_internal

struct HeadlessListView::State {
  controls_internal::ListCore core;
  controls_internal::HeadlessColumnCollection columns{core};
  controls_internal::HeadlessListItemCollection items{core};
};

HeadlessListView::HeadlessListView() : state_(std::make_unique<State>()) {}
HeadlessListView::~HeadlessListView() = default;

ColumnHeaderCollection& HeadlessListView::ColumnHeaders() { return state_->columns; }
ListItemCollection& HeadlessListView::ListItems() { return state_->items; }
ListItem* HeadlessListView::SelectedItem() { return state_->core.selected; }
ListItem* HeadlessListView::VisibleItem() { return state_->core.visible; }

bool HeadlessListView::Sorted() const { return state_->core.sorted; }
void HeadlessListView::SetSorted(bool sorted) {
  state_->core.sorted = sorted;
  if (sorted) state_->core.Sort();
  state_->core.Notify(ControlObserver::kState | (sorted ? ControlObserver::kStructure : 0));
}

int16_t HeadlessListView::SortKey() const { return state_->core.sort_key; }
void HeadlessListView::SetSortKey(int16_t column) {
  state_->core.sort_key = column;
  if (state_->core.sorted) state_->core.Sort();
  state_->core.Notify(ControlObserver::kState |
                      (state_->core.sorted ? ControlObserver::kStructure : 0));
}

int32_t HeadlessListView::SortOrder() const { return state_->core.sort_order; }
void HeadlessListView::SetSortOrder(int32_t order) {
  if (order < 0 || order > 1) controls_internal::RaiseControlError(ctlerr::kInvalidPropertyValue);
  state_->core.sort_order = order;
  if (state_->core.sorted) state_->core.Sort();
  state_->core.Notify(ControlObserver::kState |
                      (state_->core.sorted ? ControlObserver::kStructure : 0));
}

void HeadlessListView::SetObserver(ControlObserver* observer) { state_->core.observer = observer; }

}  // namespace veld
