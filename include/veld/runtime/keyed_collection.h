// KeyedCollection: the classic runtime's Collection object.
//
// An insertion-ordered list addressed by 1-based position, where each element
// may also carry a unique string key. Keys compare case-insensitively by full
// Unicode case folding (veld::FoldCase): "ÄPFEL" and "äpfel" are the same key.
// Failures raise AutomationError exactly as the classic collection does:
//   5   "Invalid procedure call or argument"  unknown key; Add with both a
//                                             before and an after argument
//   9   "Subscript out of range"              position 0, negative or > Count
//   457 "This key is already associated with an element of this collection"
//   13  "Type mismatch"                       an index that is Null or Missing
// A failed call leaves the collection unchanged.
//
// Index-or-key arguments (a Variant): a String is a key; Byte, Integer, Long,
// Double, Date and Boolean are positions after the classic conversion to a
// Long (halves to even, 6 "Overflow" beyond 32 bits, True is -1); Empty
// converts to position 0. So Item(1) and Item("1") may differ.
//
// Cost (n = Count): Add at the end, Item and Find by key O(1) on average (plus
// the key's length for folding); Item by position O(1), or O(log n) while
// removed elements await compaction; Remove O(log n) amortised; Add with a
// before/after argument that is not the last element O(n); iteration O(1) per
// step. Storage is a vector of stable nodes with holes left by removals, a
// Fenwick tree counting live slots while holes exist, compaction once holes
// outnumber the elements, and a hash map from folded key to node.
//
// References returned by Item stay valid until that element is removed or the
// collection is cleared or destroyed. Any Add, Remove or Clear invalidates
// iterators. Not thread-safe.
#ifndef VELD_RUNTIME_KEYED_COLLECTION_H_
#define VELD_RUNTIME_KEYED_COLLECTION_H_

#include <bit>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

#include "veld/runtime/automation_error.h"
#include "veld/runtime/case_folding.h"
#include "veld/runtime/variant.h"

namespace veld {

template <class T>
class KeyedCollection {
  struct Node;
  using Slots = std::vector<std::unique_ptr<Node>>;

 public:
  template <bool kConst>
  class Iterator;
  using iterator = Iterator<false>;
  using const_iterator = Iterator<true>;

  KeyedCollection() = default;
  KeyedCollection(const KeyedCollection&) = delete;
  KeyedCollection& operator=(const KeyedCollection&) = delete;
  KeyedCollection(KeyedCollection&&) noexcept = default;
  KeyedCollection& operator=(KeyedCollection&&) noexcept = default;

  // The number of elements.
  int32_t Count() const { return static_cast<int32_t>(live_); }

  // Adds `item`, with `key` when it is not null, at the end or, when given,
  // just before the element `before` or just after the element `after`
  // (index or key, see above). Returns the stored item. Raises 5 when both
  // before and after are given, 457 when the key is in use, 9 / 5 when before
  // or after names no element.
  T& Add(T item, const std::string* key = nullptr, const Variant& before = Variant::Missing(),
         const Variant& after = Variant::Missing());
  T& Add(T item, const std::string& key, const Variant& before = Variant::Missing(),
         const Variant& after = Variant::Missing()) {
    return Add(std::move(item), &key, before, after);
  }

  // The element at a 1-based position (raises 9), with a key (raises 5), or
  // at an index-or-key.
  T& Item(int32_t position) { return slots_[SlotAt(position)]->item; }
  const T& Item(int32_t position) const { return slots_[SlotAt(position)]->item; }
  T& Item(const std::string& key) { return NodeWithKey(key).item; }
  const T& Item(const std::string& key) const { return NodeWithKey(key).item; }
  T& Item(const char* key) { return NodeWithKey(key).item; }
  const T& Item(const char* key) const { return NodeWithKey(key).item; }
  T& Item(const Variant& index_or_key) { return NodeAt(index_or_key).item; }
  const T& Item(const Variant& index_or_key) const { return NodeAt(index_or_key).item; }

  // Removes an element; later elements move down one position. Raises as Item.
  void Remove(int32_t position) { RemoveSlot(SlotAt(position)); }
  void Remove(const std::string& key) { RemoveSlot(NodeWithKey(key).slot); }
  void Remove(const char* key) { RemoveSlot(NodeWithKey(key).slot); }
  void Remove(const Variant& index_or_key) { RemoveSlot(NodeAt(index_or_key).slot); }

  // The element with a key, or nullptr when no element has it. Never raises.
  T* Find(std::string_view key) {
    const auto it = keys_.find(FoldCase(key));
    return it == keys_.end() ? nullptr : &it->second->item;
  }
  const T* Find(std::string_view key) const {
    return const_cast<KeyedCollection*>(this)->Find(key);
  }
  bool ContainsKey(std::string_view key) const { return Find(key) != nullptr; }

  // The key of the element at a position as it was given to Add, or nullptr
  // when the element has none. Raises 9 for a bad position.
  const std::string* KeyAt(int32_t position) const {
    const Node& node = *slots_[SlotAt(position)];
    return node.folded_key != nullptr ? &node.key : nullptr;
  }

  // Removes every element.
  void Clear() {
    keys_.clear();
    slots_.clear();
    tree_.clear();
    live_ = 0;
  }

  iterator begin() { return iterator(slots_.begin(), slots_.end()); }
  iterator end() { return iterator(slots_.end(), slots_.end()); }
  const_iterator begin() const { return const_iterator(slots_.begin(), slots_.end()); }
  const_iterator end() const { return const_iterator(slots_.end(), slots_.end()); }
  const_iterator cbegin() const { return begin(); }
  const_iterator cend() const { return end(); }

  template <bool kConst>
  class Iterator {
   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = T;
    using difference_type = std::ptrdiff_t;
    using pointer = std::conditional_t<kConst, const T*, T*>;
    using reference = std::conditional_t<kConst, const T&, T&>;

    Iterator() = default;
    // A mutable iterator converts to a const one.
    template <bool kOther>
    requires(kOther && !kConst) operator Iterator<kOther>() const {
      return Iterator<kOther>(current_, end_);
    }

    reference operator*() const { return (*current_)->item; }
    pointer operator->() const { return &(*current_)->item; }
    Iterator& operator++() {
      ++current_;
      SkipHoles();
      return *this;
    }
    Iterator operator++(int) {
      Iterator previous = *this;
      ++*this;
      return previous;
    }
    friend bool operator==(const Iterator& a, const Iterator& b) {
      return a.current_ == b.current_;
    }

   private:
    friend class KeyedCollection;
    friend class Iterator<!kConst>;
    using SlotIterator = typename Slots::const_iterator;
    Iterator(SlotIterator current, SlotIterator end) : current_(current), end_(end) { SkipHoles(); }
    void SkipHoles() {
      while (current_ != end_ && *current_ == nullptr) ++current_;
    }
    SlotIterator current_{};
    SlotIterator end_{};
  };

 private:
  struct Node {
    T item;
    std::string key;                // As given to Add.
    const std::string* folded_key;  // The key in keys_; null without a key.
    size_t slot;                    // Index in slots_.
  };

  bool HasHoles() const { return slots_.size() != live_; }
  bool TreeActive() const { return !tree_.empty(); }

  // The slot of a 1-based position.
  size_t SlotAt(int32_t position) const {
    if (position < 1 || static_cast<size_t>(position) > live_) {
      RaiseError(errnum::kSubscriptOutOfRange);
    }
    if (!HasHoles()) return static_cast<size_t>(position) - 1;
    return FindLive(static_cast<size_t>(position));
  }

  Node& NodeWithKey(std::string_view key) const {
    const auto it = keys_.find(FoldCase(key));
    if (it == keys_.end()) RaiseError(errnum::kInvalidProcedureCall);
    return *it->second;
  }

  Node& NodeAt(const Variant& index_or_key) const {
    switch (index_or_key.Type()) {
      case VarType::kString:
        return NodeWithKey(index_or_key.AsString());
      case VarType::kNull:
      case VarType::kError:
        RaiseError(errnum::kTypeMismatch);
      default:
        return *slots_[SlotAt(index_or_key.ToLong())];
    }
  }

  // Fenwick tree over slots_ (1-based, 1 for a live slot), kept while holes
  // exist so that positions map to slots in O(log n).
  int32_t Prefix(size_t index) const {
    int32_t sum = 0;
    for (; index > 0; index &= index - 1) sum += tree_[index];
    return sum;
  }
  void AddToTree(size_t index, int32_t delta) {
    for (; index < tree_.size(); index += index & (~index + 1)) tree_[index] += delta;
  }
  void BuildTree() {
    std::vector<int32_t> tree(slots_.size() + 1, 0);
    for (size_t i = 1; i < tree.size(); ++i) {
      tree[i] += slots_[i - 1] != nullptr ? 1 : 0;
      const size_t parent = i + (i & (~i + 1));
      if (parent < tree.size()) tree[parent] += tree[i];
    }
    tree_ = std::move(tree);
  }
  // The value a new last tree entry needs when slot `slots_.size()` is appended.
  int32_t TreeValueForAppend() const {
    const size_t index = slots_.size() + 1;
    return 1 + Prefix(index - 1) - Prefix(index - (index & (~index + 1)));
  }
  // The slot of the k-th live element (k >= 1).
  size_t FindLive(size_t k) const {
    size_t index = 0;
    auto remaining = static_cast<int32_t>(k);
    for (size_t step = std::bit_floor(slots_.size()); step != 0; step >>= 1) {
      if (index + step < tree_.size() && tree_[index + step] < remaining) {
        index += step;
        remaining -= tree_[index];
      }
    }
    return index;  // 1-based index + 1, minus 1 for the slot.
  }

  // Moves live nodes down over the holes.
  void Compact() {
    size_t out = 0;
    for (size_t i = 0; i < slots_.size(); ++i) {
      if (slots_[i] == nullptr) continue;
      slots_[i]->slot = out;
      if (i != out) slots_[out] = std::move(slots_[i]);
      ++out;
    }
    slots_.resize(out);
    tree_.clear();
  }

  void RemoveSlot(size_t slot) {
    const bool last = slot + 1 == slots_.size();
    if (!last && !TreeActive()) BuildTree();  // May throw; nothing changed yet.
    Node& node = *slots_[slot];
    if (node.folded_key != nullptr) keys_.erase(keys_.find(*node.folded_key));
    --live_;
    if (last) {
      slots_.pop_back();
      if (TreeActive()) tree_.pop_back();
      while (!slots_.empty() && slots_.back() == nullptr) {
        slots_.pop_back();
        if (TreeActive()) tree_.pop_back();
      }
    } else {
      slots_[slot].reset();
      AddToTree(slot + 1, -1);
    }
    if (slots_.size() - live_ > live_) Compact();
  }

  Slots slots_;
  std::unordered_map<std::string, Node*> keys_;
  std::vector<int32_t> tree_;
  size_t live_ = 0;
};

template <class T>
T& KeyedCollection<T>::Add(T item, const std::string* key, const Variant& before,
                           const Variant& after) {
  const bool has_before = !before.IsMissing();
  const bool has_after = !after.IsMissing();
  if (has_before && has_after) RaiseError(errnum::kInvalidProcedureCall);
  std::string folded;
  if (key != nullptr) {
    folded = FoldCase(*key);
    if (keys_.find(folded) != keys_.end()) RaiseError(errnum::kDuplicateKey);
  }
  Node* anchor = nullptr;
  if (has_before) anchor = &NodeAt(before);
  if (has_after) anchor = &NodeAt(after);

  std::unique_ptr<Node> node(
      new Node{std::move(item), key != nullptr ? *key : std::string(), nullptr, 0});
  Node* raw = node.get();
  typename std::unordered_map<std::string, Node*>::iterator key_entry;
  if (key != nullptr) {
    key_entry = keys_.emplace(std::move(folded), raw).first;
    raw->folded_key = &key_entry->first;
  }
  try {
    if (anchor == nullptr || (has_after && anchor == slots_.back().get())) {
      raw->slot = slots_.size();
      if (TreeActive()) {
        tree_.push_back(TreeValueForAppend());
        try {
          slots_.push_back(std::move(node));
        } catch (...) {
          tree_.pop_back();
          throw;
        }
      } else {
        slots_.push_back(std::move(node));
      }
    } else {
      if (HasHoles()) Compact();
      const size_t slot = anchor->slot + (has_after ? 1 : 0);
      slots_.insert(slots_.begin() + static_cast<std::ptrdiff_t>(slot), std::move(node));
      for (size_t i = slot; i < slots_.size(); ++i) slots_[i]->slot = i;
      tree_.clear();
    }
  } catch (...) {
    if (key != nullptr) keys_.erase(key_entry);
    throw;
  }
  ++live_;
  return raw->item;
}

}  // namespace veld

#endif  // VELD_RUNTIME_KEYED_COLLECTION_H_
