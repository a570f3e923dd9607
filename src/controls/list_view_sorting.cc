// The control helper's list view sorting: the sorted column's cells are
// rewritten into forms that sort as text in the order of their values, the
// control sorts, and the cells are written back in display form.
#include <algorithm>
#include <functional>
#include <vector>

#include "controls/list_view_columns.h"
#include "runtime/locale_number.h"
#include "runtime/numeric.h"
#include "runtime/text.h"
#include "veld/controls/kvo_data_ctrl_helper.h"
#include "veld/platform/platform.h"
#include "veld/platform/regional_settings.h"
#include "veld/runtime/format.h"

namespace veld {

namespace {

std::string Cell(ListItem& item, int32_t column) {
  return column == 1 ? item.Text() : item.SubItems(column - 1);
}

void SetCell(ListItem& item, int32_t column, const std::string& text) {
  if (column == 1) {
    item.SetText(text);
  } else {
    item.SetSubItems(column - 1, text);
  }
}

bool IsPlain(const std::string& code) { return code == "s" || code == "b" || code.empty(); }

// Whether the cell holds spaces only, or nothing: such cells keep their text.
bool IsBlank(const std::string& text) { return text.find_first_not_of(' ') == std::string::npos; }

// The sortable form; raises when the value does not convert, which leaves
// the cell as it is.
std::string SortableForm(const std::string& code, std::string text) {
  // Date cells are read as dates first: a German "19.12.2010" would
  // otherwise read as the number 19122010.
  Variant value(std::move(text));
  if (code == "d" || code == "dt") return FormatText(CDate(value), "yyyy/mm/dd hh:nn:ss");
  if (code == "t") return FormatText(CDate(value), "hh:nn:ss");
  if (code == "i") return FormatText(value, "+000000000;-000000000");
  return FormatText(value, "+000000000.0000;-000000000.0000");
}

std::string DisplayForm(const std::string& code, const std::string& text) {
  if (code == "d") return FormatText(CDate(Variant(text)), "Short Date");
  if (code == "dt") return FormatText(CDate(Variant(text)), "General Date");
  if (code == "t") return FormatText(CDate(Variant(text)), "Long Time");
  if (code == "i") {
    const auto number = ParseNumberInLocale(text, *CurrentPlatform().Regional());
    return std::to_string(number ? DoubleToLong(*number) : 0);
  }
  return FormatText(Variant(text), code, 1, 1);
}

// The list's items in the order they lie in memory. Each cell is rewritten
// on its own, so the order of the rewrites does not matter; after a sort,
// memory order is many times faster than list order, which jumps across
// the heap.
std::vector<ListItem*> ItemsInMemoryOrder(ListItemCollection& items) {
  std::vector<ListItem*> found;
  const int32_t count = items.Count();
  found.reserve(static_cast<size_t>(count));
  for (int32_t i = 1; i <= count; ++i) {
    try {
      found.push_back(&items.Item(Variant(i)));
    } catch (...) {
    }
  }
  std::sort(found.begin(), found.end(), std::less<ListItem*>());
  return found;
}

}  // namespace

void KvoDataCtrlHelper::ListView_SortData(Control* cListViewCtrl, int32_t nColIndex) {
  Recorded([&] {
    ListView& list = controls_internal::RequireListView(cListViewCtrl);
    if (nColIndex > list.ColumnHeaders().Count() || nColIndex < 0) return;
    const std::string code = LCase(list.ColumnHeaders().Item(Variant(nColIndex)).Tag());
    const bool icons = code == "p" && nColIndex == 1;
    // Text and boolean columns sort as they stand.
    const bool rewrites = icons || !IsPlain(code);

    // From here on every failure is ignored and the next step runs.
    if (rewrites) {
      for (ListItem* item : ItemsInMemoryOrder(list.ListItems())) {
        try {
          if (icons) {
            const std::string small = item->SmallIcon();
            const std::string icon = item->Icon();
            if (!small.empty()) {
              item->SetText(small);
            } else if (!icon.empty()) {
              item->SetText(icon);
            }
            continue;
          }
          std::string text = Cell(*item, nColIndex);
          if (IsBlank(text)) continue;
          SetCell(*item, nColIndex, SortableForm(code, std::move(text)));
        } catch (...) {
        }
      }
    }
    try {
      const auto key = static_cast<int16_t>(nColIndex - 1);
      if (list.SortKey() == key) {
        list.SetSortOrder(list.SortOrder() == 0 ? 1 : 0);
      } else {
        list.SetSortKey(key);
        list.SetSortOrder(0);
      }
    } catch (...) {
    }
    try {
      if (!list.Sorted()) list.SetSorted(true);
    } catch (...) {
    }
    if (rewrites) {
      // Gathered again: a control may hand out other item objects once sorted.
      for (ListItem* item : ItemsInMemoryOrder(list.ListItems())) {
        try {
          if (icons) {
            item->SetText(" ");
            continue;
          }
          const std::string text = Cell(*item, nColIndex);
          if (IsBlank(text)) continue;
          SetCell(*item, nColIndex, DisplayForm(code, text));
        } catch (...) {
        }
      }
    }
  });
}

}  // namespace veld
