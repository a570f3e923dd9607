// ListView: a report-style list control (column headers, items, subitems).
// See control.h for the rules every implementation keeps; in addition:
//   - SubItems(n) and ListSubItems(n) exist for 1 <= n < the column count,
//     else 35600; SubItems(0) reads the item's text and never raises.
//   - At most one item is selected; selecting one deselects the others.
//   - While Sorted is true the items are kept sorted by the SortKey column's
//     text (column 0 is Text, k is SubItems(k)) in SortOrder (0 ascending,
//     1 descending), compared case-insensitively by the regional settings'
//     locale. Setting Sorted, SortKey or SortOrder re-sorts at once and Index
//     follows; adding or changing items does not re-sort until the next set.
#ifndef VELD_CONTROLS_LIST_VIEW_H_
#define VELD_CONTROLS_LIST_VIEW_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "veld/controls/control.h"
#include "veld/export.h"
#include "veld/runtime/variant.h"

namespace veld {

class VELD_EXPORT ColumnHeader {
 public:
  virtual ~ColumnHeader();
  virtual int32_t Index() const = 0;
  virtual std::string Key() const = 0;
  virtual void SetKey(const std::string& key) = 0;
  virtual std::string Text() const = 0;
  virtual void SetText(const std::string& text) = 0;
  // In twips.
  virtual double Width() const = 0;
  virtual void SetWidth(double twips) = 0;
  // 0 left, 1 right, 2 centre.
  virtual int32_t Alignment() const = 0;
  virtual void SetAlignment(int32_t alignment) = 0;
  virtual std::string Tag() const = 0;
  virtual void SetTag(const std::string& tag) = 0;
};

class VELD_EXPORT ColumnHeaderCollection {
 public:
  virtual ~ColumnHeaderCollection();
  virtual int32_t Count() const = 0;
  virtual ColumnHeader& Item(const Variant& vIndexKey) = 0;
  // Index: the 1-based position of the new column (Missing: last).
  virtual ColumnHeader& Add(const Variant& Index = Variant::Missing(),
                            const Variant& Key = Variant::Missing(),
                            const Variant& Text = Variant::Missing(),
                            const Variant& Width = Variant::Missing(),
                            const Variant& Alignment = Variant::Missing(),
                            const Variant& Icon = Variant::Missing()) = 0;
  virtual void Remove(const Variant& vIndexKey) = 0;
  virtual void Clear() = 0;
};

class VELD_EXPORT ListSubItem {
 public:
  virtual ~ListSubItem();
  virtual int32_t Index() const = 0;
  virtual std::string Text() const = 0;
  virtual void SetText(const std::string& text) = 0;
  // 0x00BBGGRR.
  virtual int32_t ForeColor() const = 0;
  virtual void SetForeColor(int32_t color) = 0;
};

class VELD_EXPORT ListItem {
 public:
  virtual ~ListItem();
  virtual int32_t Index() const = 0;
  virtual std::string Key() const = 0;
  virtual void SetKey(const std::string& key) = 0;
  virtual std::string Text() const = 0;
  virtual void SetText(const std::string& text) = 0;
  // Image keys.
  virtual std::string Icon() const = 0;
  virtual void SetIcon(const std::string& key) = 0;
  virtual std::string SmallIcon() const = 0;
  virtual void SetSmallIcon(const std::string& key) = 0;
  virtual std::string Tag() const = 0;
  virtual void SetTag(const std::string& tag) = 0;
  virtual bool Selected() const = 0;
  virtual void SetSelected(bool selected) = 0;
  virtual int32_t ForeColor() const = 0;
  virtual void SetForeColor(int32_t color) = 0;
  virtual void EnsureVisible() = 0;
  // True when Key(), upper-cased, equals `upper_key` (an upper-cased key).
  // The default reads Key(); an implementation may compare in place.
  virtual bool KeyEqualsUpper(std::string_view upper_key) const;
  virtual std::string SubItems(int32_t n) const = 0;
  virtual void SetSubItems(int32_t n, const std::string& text) = 0;
  virtual ListSubItem& ListSubItems(int32_t n) = 0;
};

class VELD_EXPORT ListItemCollection {
 public:
  virtual ~ListItemCollection();
  virtual int32_t Count() const = 0;
  virtual ListItem& Item(const Variant& vIndexKey) = 0;
  virtual ListItem& Add(const Variant& Index = Variant::Missing(),
                        const Variant& Key = Variant::Missing(),
                        const Variant& Text = Variant::Missing(),
                        const Variant& Icon = Variant::Missing(),
                        const Variant& SmallIcon = Variant::Missing()) = 0;
  virtual void Remove(const Variant& vIndexKey) = 0;
  virtual void Clear() = 0;
};

class VELD_EXPORT ListView : public Control {
 public:
  virtual ColumnHeaderCollection& ColumnHeaders() = 0;
  virtual ListItemCollection& ListItems() = 0;
  // nullptr when nothing is selected.
  virtual ListItem* SelectedItem() = 0;
  virtual bool Sorted() const = 0;
  virtual void SetSorted(bool sorted) = 0;
  virtual int16_t SortKey() const = 0;
  virtual void SetSortKey(int16_t column) = 0;
  virtual int32_t SortOrder() const = 0;
  virtual void SetSortOrder(int32_t order) = 0;
};

}  // namespace veld

#endif  // VELD_CONTROLS_LIST_VIEW_H_
