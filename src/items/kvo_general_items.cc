#include "veld/items/kvo_general_items.h"

#include <new>
#include <utility>

#include "items/name_match.h"
#include "runtime/text.h"
#include "veld/runtime/automation_error.h"

namespace veld {

namespace {

// Runs `lookup` and gives its result, or `fallback` when the keyed list
// refuses. The refusal is handled here, so the thread's current error is
// cleared as it is when a handled error leaves a procedure.
template <class Lookup, class Result>
Result Forgiving(Lookup&& lookup, Result fallback) {
  try {
    return lookup();
  } catch (const AutomationError&) {
    Err().Clear();
    return fallback;
  }
}

}  // namespace

KvoGeneralItems::ItemPtr KvoGeneralItems::Enumerator::Next() {
  if (next_ >= items_.size()) return nullptr;
  return items_[next_++];
}

KvoGeneralItems::KvoGeneralItems() = default;

KvoGeneralItems::~KvoGeneralItems() = default;

KvoGeneralItems::Enumerator KvoGeneralItems::NewEnum() const {
  std::vector<ItemPtr> items;
  items.reserve(static_cast<size_t>(items_.Count()));
  for (const ItemPtr& item : items_) items.push_back(item);
  return Enumerator(std::move(items));
}

KvoGeneralItems::ItemPtr KvoGeneralItems::Item(const Variant& vntIndexKey) const {
  return items_.Item(vntIndexKey);
}

void KvoGeneralItems::Remove(const Variant& vntIndexKey) { items_.Remove(vntIndexKey); }

KvoGeneralItems::ItemPtr KvoGeneralItems::Add(const std::string& Name, const std::string& Value,
                                              const std::string& TypeString,
                                              const std::string& ExtraValue,
                                              const std::string& sKey) {
  auto item = std::make_shared<KvoGeneralItem>();
  item->ExtraValue = ExtraValue;
  item->TypeString = TypeString;
  item->Value = Value;
  item->Name = Name;
  if (sKey.empty()) {
    items_.Add(item);
  } else {
    items_.Add(item, sKey);
  }
  return item;
}

KvoGeneralItems::ItemPtr KvoGeneralItems::AddItem(const ItemPtr& cItem, const std::string& sKey) {
  if (cItem == nullptr) RaiseError(errnum::kObjectNotSet);
  return Add(cItem->Name, cItem->Value, cItem->TypeString, cItem->ExtraValue, sKey);
}

KvoGeneralItems::ItemPtr KvoGeneralItems::GetItemByName(const std::string& sName) const {
  const NameMatch matches(sName);
  for (const ItemPtr& item : items_) {
    if (matches(item->Name)) return item;
  }
  return nullptr;
}

std::string KvoGeneralItems::GetItemValueByName(const std::string& sName,
                                                const Variant& sDefault) const {
  if (ItemPtr item = GetItemByName(sName)) return item->Value;
  return sDefault.ToString();
}

bool KvoGeneralItems::SetItemValueByName(const std::string& sName, const std::string& sValue) {
  ItemPtr item = GetItemByName(sName);
  if (item == nullptr) return false;
  item->Value = sValue;
  return true;
}

bool KvoGeneralItems::SetItemValueByNameAdd(const std::string& sName, const std::string& sValue,
                                            const Variant& TypeString,
                                            const std::string& ExtraValue,
                                            const std::string& sKey) {
  if (ItemPtr item = GetItemByName(sName)) {
    item->Value = sValue;
    return true;
  }
  return Add(sName, sValue, TypeString.ToString(), ExtraValue, sKey) != nullptr;
}

int32_t KvoGeneralItems::RemoveItemByName(const std::string& sName) {
  const NameMatch matches(sName);
  int32_t removed = 0;
  // Backwards, so a removal does not move the positions still to be visited.
  for (int32_t i = items_.Count(); i >= 1; --i) {
    if (matches(items_.Item(i)->Name)) {
      items_.Remove(i);
      ++removed;
    }
  }
  return removed;
}

std::string KvoGeneralItems::GetItemValue(const Variant& vtIndexKey) const {
  return Forgiving([&] { return items_.Item(vtIndexKey)->Value; }, std::string());
}

bool KvoGeneralItems::SetItemValue(const Variant& vtIndexKey, const std::string& sValue) {
  return Forgiving(
      [&] {
        items_.Item(vtIndexKey)->Value = sValue;
        return true;
      },
      false);
}

int32_t KvoGeneralItems::RootTagCount() const {
  return root_tags_ != nullptr ? root_tags_->Count() : 0;
}

KvoGeneralItems::ItemPtr KvoGeneralItems::RootTagItem(const Variant& vntIndexKey) const {
  if (root_tags_ == nullptr) return nullptr;
  return Forgiving([&] { return root_tags_->Item(vntIndexKey); }, ItemPtr());
}

int32_t KvoGeneralItems::GetRootTag(const std::string& sName, std::string* sValue) const {
  if (sValue != nullptr) sValue->clear();
  if (root_tags_ == nullptr) return 0;
  // Only the argument is trimmed: stored names are trimmed when set, but a
  // caller may have changed one through RootTagItem since.
  const NameMatch matches(Trim(sName));
  int32_t position = 0;
  for (const ItemPtr& tag : *root_tags_) {
    ++position;
    if (matches(tag->Name)) {
      if (sValue != nullptr) *sValue = tag->Value;
      return position;
    }
  }
  return 0;
}

bool KvoGeneralItems::SetRootTag(const std::string& sName, const std::string& sValue) {
  if (sName.empty()) return false;
  if (root_tags_ == nullptr) root_tags_ = std::make_unique<ItemList>();
  ItemPtr tag;
  if (const int32_t position = GetRootTag(sName); position > 0) {
    tag = root_tags_->Item(position);
  } else {
    tag = std::make_shared<KvoGeneralItem>();
    // The key is the name as first given, blanks and all.
    root_tags_->Add(tag, sName);
  }
  tag->Name = Trim(sName);
  tag->Value = sValue;
  return true;
}

bool KvoGeneralItems::SetRootTagItem(const ItemPtr& cItem) {
  if (cItem == nullptr) return false;
  return SetRootTag(cItem->Name, cItem->Value);
}

void KvoGeneralItems::RemoveRootTag(const Variant& vntIndexKey) {
  if (root_tags_ == nullptr) return;
  root_tags_->Remove(vntIndexKey);
}

void KvoGeneralItems::Reset() {
  if (root_tags_ != nullptr) root_tags_->Clear();
  items_.Clear();
}

bool KvoGeneralItems::CopyFrom(const std::shared_ptr<KvoGeneralItems>& cNewItem) {
  if (cNewItem == nullptr) {
    Reset();
    return false;
  }
  return CopyFrom(*cNewItem);
}

bool KvoGeneralItems::CopyFrom(const KvoGeneralItems& cNewItem) {
  Reset();
  try {
    for (const ItemPtr& item : cNewItem.items_) AddItem(item);
    if (cNewItem.root_tags_ != nullptr) {
      for (const ItemPtr& tag : *cNewItem.root_tags_) SetRootTagItem(tag);
    }
    return true;
  } catch (const AutomationError&) {
    Err().Clear();
  } catch (const std::bad_alloc&) {
  }
  return false;
}

}  // namespace veld
