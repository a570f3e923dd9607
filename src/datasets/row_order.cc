#include "datasets/row_order.h"

#include <utility>

namespace veld::datasets_internal {

void RowOrder::Assign(std::vector<xmlNodePtr> rows) {
  Clear();
  slots_ = std::move(rows);
}

void RowOrder::Clear() {
  slots_.clear();
  gaps_ = 0;
  tree_.clear();
  slot_of_.clear();
  mapped_ = false;
  last_row_ = nullptr;
}

xmlNodePtr RowOrder::At(size_t i) {
  size_t slot = i;
  if (gaps_ > 0) {
    // The smallest slot whose prefix count is i + 1.
    size_t position = 0;
    size_t remaining = i + 1;
    size_t step = 1;
    while (step * 2 <= tree_.size() - 1) step *= 2;
    for (; step > 0; step /= 2) {
      const size_t next = position + step;
      if (next < tree_.size() && static_cast<size_t>(tree_[next]) < remaining) {
        position = next;
        remaining -= static_cast<size_t>(tree_[next]);
      }
    }
    slot = position;  // 1-based position + 1 - 1
  }
  last_slot_ = slot;
  last_row_ = slots_[slot];
  return last_row_;
}

const std::vector<xmlNodePtr>& RowOrder::All() {
  if (gaps_ > 0) Pack();
  return slots_;
}

void RowOrder::PushBack(xmlNodePtr row) {
  slots_.push_back(row);
  if (mapped_) slot_of_[row] = slots_.size() - 1;
  if (gaps_ > 0) {
    // Slot k's node covers slots (k - lowbit(k), k]: the new one's count is
    // its own row plus the nodes it covers below it.
    const size_t k = slots_.size();
    int32_t count = 1;
    for (size_t child = k - 1, stop = k - (k & (~k + 1)); child > stop;
         child -= child & (~child + 1)) {
      count += tree_[child];
    }
    tree_.push_back(count);
  }
}

int64_t RowOrder::SlotOf(xmlNodePtr row) {
  if (row == nullptr || slots_.empty()) return -1;
  if (last_row_ == row && last_slot_ < slots_.size() && slots_[last_slot_] == row) {
    return static_cast<int64_t>(last_slot_);
  }
  if (slots_.back() == row) return static_cast<int64_t>(slots_.size()) - 1;
  if (!mapped_) {
    slot_of_.reserve(slots_.size());
    for (size_t slot = 0; slot < slots_.size(); ++slot) {
      if (slots_[slot] != nullptr) slot_of_[slots_[slot]] = slot;
    }
    mapped_ = true;
  }
  const auto found = slot_of_.find(row);
  return found == slot_of_.end() ? -1 : static_cast<int64_t>(found->second);
}

bool RowOrder::Remove(xmlNodePtr row) {
  const int64_t found = SlotOf(row);
  if (found < 0) return false;
  const auto slot = static_cast<size_t>(found);
  if (mapped_) slot_of_.erase(row);
  if (row == last_row_) last_row_ = nullptr;
  if (slot + 1 == slots_.size() && gaps_ == 0) {
    slots_.pop_back();
    return true;
  }
  if (gaps_ == 0) BuildTree();
  slots_[slot] = nullptr;
  ++gaps_;
  AddToTree(slot, -1);
  // Gaps are packed away once they outnumber the rows, which keeps the
  // packing's cost linear in the removals.
  if (gaps_ > 64 && gaps_ > size()) Pack();
  return true;
}

bool RowOrder::Replace(xmlNodePtr row, xmlNodePtr node) {
  const int64_t found = SlotOf(row);
  if (found < 0) return false;
  const auto slot = static_cast<size_t>(found);
  slots_[slot] = node;
  if (mapped_) {
    slot_of_.erase(row);
    slot_of_[node] = slot;
  }
  if (row == last_row_) last_row_ = node;
  return true;
}

void RowOrder::Pack() {
  std::vector<xmlNodePtr> rows;
  rows.reserve(size());
  for (xmlNodePtr row : slots_) {
    if (row != nullptr) rows.push_back(row);
  }
  Assign(std::move(rows));
}

void RowOrder::BuildTree() {
  // Linear construction: each node passes its count on to its parent.
  tree_.assign(slots_.size() + 1, 0);
  for (size_t k = 1; k <= slots_.size(); ++k) {
    tree_[k] += slots_[k - 1] != nullptr ? 1 : 0;
    const size_t parent = k + (k & (~k + 1));
    if (parent <= slots_.size()) tree_[parent] += tree_[k];
  }
}

void RowOrder::AddToTree(size_t slot, int32_t delta) {
  for (size_t k = slot + 1; k < tree_.size(); k += k & (~k + 1)) tree_[k] += delta;
}

}  // namespace veld::datasets_internal
