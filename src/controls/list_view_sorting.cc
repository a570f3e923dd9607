// The control helper's list view sorting: the sorted column's cells are
// rewritten into forms that sort as text in the order of their values, the
// control sorts, and the cells are written back in display form.
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

// The sortable form; raises when the value does not convert, which leaves
// the cell as it is.
std::string SortableForm(const std::string& code, const std::string& text) {
  // Date cells are read as dates first: a German "19.12.2010" would
  // otherwise read as the number 19122010.
  if (code == "d" || code == "dt") return FormatText(CDate(Variant(text)), "yyyy/mm/dd hh:nn:ss");
  if (code == "t") return FormatText(CDate(Variant(text)), "hh:nn:ss");
  if (code == "i") return FormatText(Variant(text), "+000000000;-000000000");
  return FormatText(Variant(text), "+000000000.0000;-000000000.0000");
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

}  // namespace

void KvoDataCtrlHelper::ListView_SortData(Control* cListViewCtrl, int32_t nColIndex) {
  Recorded([&] {
    ListView& list = controls_internal::RequireListView(cListViewCtrl);
    if (nColIndex > list.ColumnHeaders().Count() || nColIndex < 0) return;
    const std::string code = LCase(list.ColumnHeaders().Item(Variant(nColIndex)).Tag());
    const bool icons = code == "p" && nColIndex == 1;

    // From here on every failure is ignored and the next step runs.
    ListItemCollection& items = list.ListItems();
    const int32_t count = items.Count();
    for (int32_t i = 1; i <= count; ++i) {
      try {
        ListItem& item = items.Item(Variant(i));
        if (icons) {
          const std::string small = item.SmallIcon();
          const std::string icon = item.Icon();
          if (!small.empty()) {
            item.SetText(small);
          } else if (!icon.empty()) {
            item.SetText(icon);
          }
          continue;
        }
        const std::string text = Cell(item, nColIndex);
        if (Trim(text).empty() || IsPlain(code)) continue;
        SetCell(item, nColIndex, SortableForm(code, text));
      } catch (...) {
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
    for (int32_t i = 1; i <= count; ++i) {
      try {
        ListItem& item = items.Item(Variant(i));
        if (icons) {
          item.SetText(" ");
          continue;
        }
        const std::string text = Cell(item, nColIndex);
        if (Trim(text).empty() || IsPlain(code)) continue;
        SetCell(item, nColIndex, DisplayForm(code, text));
      } catch (...) {
      }
    }
  });
}

}  // namespace veld
