// The rows of one data element in document order, addressed by position.
//
// Reading by position is O(1) while nothing was removed and O(log n) after
// removals, which leave a gap behind (counted by a Fenwick tree) until gaps
// outnumber rows and the order is packed again. A removed or replaced row is
// found by a map from row to place, made the first time it is needed, so
// that deleting rows anywhere and reading by position can alternate without
// either becoming linear. Only inserting before a row is not supported here:
// the owner rebuilds the order then.
#ifndef VELD_DATASETS_ROW_ORDER_H_
#define VELD_DATASETS_ROW_ORDER_H_

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include <libxml/tree.h>

namespace veld::datasets_internal {

class RowOrder {
 public:
  // Replaces the content with `rows`, in order.
  void Assign(std::vector<xmlNodePtr> rows);
  void Clear();

  size_t size() const { return slots_.size() - gaps_; }
  bool empty() const { return size() == 0; }

  // The row at 0-based position `i` (< size()).
  xmlNodePtr At(size_t i);
  // Every row, in order.
  const std::vector<xmlNodePtr>& All();

  void PushBack(xmlNodePtr row);
  // Takes `row` out; false when it is not held.
  bool Remove(xmlNodePtr row);
  // Puts `node` in the place of `row`; false when `row` is not held.
  bool Replace(xmlNodePtr row, xmlNodePtr node);

 private:
  // The slot of `row`, or -1.
  int64_t SlotOf(xmlNodePtr row);
  void Pack();
  void BuildTree();
  // Adds `delta` to the count of slot `slot` (0-based).
  void AddToTree(size_t slot, int32_t delta);

  // Rows in order; null where a row was removed.
  std::vector<xmlNodePtr> slots_;
  size_t gaps_ = 0;
  // Fenwick tree of the rows per slot (1-based), kept while there are gaps.
  std::vector<int32_t> tree_;
  // Row to slot, kept once made.
  std::unordered_map<xmlNodePtr, size_t> slot_of_;
  bool mapped_ = false;
  // The slot of the row At() gave last, so that removing or replacing the
  // row just read by position needs no map.
  size_t last_slot_ = 0;
  xmlNodePtr last_row_ = nullptr;
};

}  // namespace veld::datasets_internal

#endif  // VELD_DATASETS_ROW_ORDER_H_
