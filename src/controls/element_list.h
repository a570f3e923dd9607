// The ordered, keyed element list behind every headless control collection:
// 1-based positions, an exact key index, and the collections' errors.
#ifndef VELD_CONTROLS_ELEMENT_LIST_H_
#define VELD_CONTROLS_ELEMENT_LIST_H_

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "controls/control_errors.h"
#include "veld/controls/control.h"
#include "veld/runtime/automation_error.h"
#include "veld/runtime/variant.h"

namespace veld::controls_internal {

// T has the members `int32_t index_` (its 1-based position, kept up to date
// here) and `std::string key_`.
template <class T>
class ElementList {
 public:
  int32_t Count() const { return static_cast<int32_t>(items_.size()); }

  T& At(int32_t position) {
    if (position < 1 || position > Count()) RaiseControlError(ctlerr::kIndexOutOfBounds);
    return *items_[static_cast<size_t>(position - 1)];
  }

  // nullptr when no element has the key.
  T* Find(const std::string& key) const {
    if (key.empty()) return nullptr;
    auto found = keys_.find(key);
    return found == keys_.end() ? nullptr : found->second;
  }

  T& Item(const Variant& index_or_key) {
    if (index_or_key.IsEmpty() || index_or_key.IsNull() || index_or_key.IsMissing())
      RaiseError(errnum::kTypeMismatch);
    if (index_or_key.IsString()) {
      T* found = Find(index_or_key.AsString());
      if (found == nullptr) RaiseControlError(ctlerr::kElementNotFound);
      return *found;
    }
    return At(index_or_key.ToLong());
  }

  // Raises 35603 or 35602 when `key` cannot be given to `self` (nullptr for
  // a new element).
  void CheckKey(const std::string& key, const T* self) const {
    CheckKeyForm(key);
    const T* holder = Find(key);
    if (holder != nullptr && holder != self) RaiseControlError(ctlerr::kKeyNotUnique);
  }

  // The 1-based position a new element goes to: Missing or Empty is last;
  // anything else must be within 1 .. Count() + 1.
  int32_t InsertPosition(const Variant& index) const {
    if (index.IsMissing() || index.IsEmpty()) return Count() + 1;
    const int32_t position = index.ToLong();
    if (position < 1 || position > Count() + 1) RaiseControlError(ctlerr::kIndexOutOfBounds);
    return position;
  }

  // Inserts at a checked position under a checked key.
  T& Insert(int32_t position, std::unique_ptr<T> element) {
    T& ref = *element;
    items_.insert(items_.begin() + (position - 1), std::move(element));
    if (!ref.key_.empty()) keys_[ref.key_] = &ref;
    Renumber(position - 1);
    return ref;
  }

  void Rekey(T& element, const std::string& key) {
    CheckKey(key, &element);
    if (!element.key_.empty()) keys_.erase(element.key_);
    element.key_ = key;
    if (!key.empty()) keys_[key] = &element;
  }

  // Removes the elements for which `doomed` is true, keeping the order of
  // the rest.
  template <class Pred>
  void EraseIf(Pred doomed) {
    size_t out = 0;
    for (size_t i = 0; i < items_.size(); ++i) {
      if (doomed(*items_[i])) {
        if (!items_[i]->key_.empty()) keys_.erase(items_[i]->key_);
        continue;
      }
      if (out != i) items_[out] = std::move(items_[i]);
      ++out;
    }
    items_.resize(out);
    Renumber(0);
  }

  void Clear() {
    items_.clear();
    keys_.clear();
  }

  std::vector<std::unique_ptr<T>>& Elements() { return items_; }
  const std::vector<std::unique_ptr<T>>& Elements() const { return items_; }

  void Renumber(size_t from) {
    for (size_t i = from; i < items_.size(); ++i) items_[i]->index_ = static_cast<int32_t>(i + 1);
  }

 private:
  std::vector<std::unique_ptr<T>> items_;
  std::unordered_map<std::string, T*> keys_;
};

}  // namespace veld::controls_internal

#endif  // VELD_CONTROLS_ELEMENT_LIST_H_
