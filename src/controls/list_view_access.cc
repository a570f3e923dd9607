// The control helper's list view item access: selection by id, the selected
// item's id and tag, cell texts and colours, column positions.
#include "controls/ctrl_messages.h"
#include "controls/list_view_columns.h"
#include "runtime/text.h"
#include "veld/controls/kvo_data_ctrl_helper.h"
#include "veld/runtime/automation_error.h"

namespace veld {

namespace messages = ctrl_messages;
using controls_internal::RequireListView;

namespace {

void CheckRowColumn(ListView& list, int32_t row, int32_t column) {
  // Indexes of 0 or below are left to the control, which refuses them.
  if (row > list.ListItems().Count() || column > list.ColumnHeaders().Count())
    RaiseError(errnum::kCheckFailed, messages::kInvalidRowCol);
}

}  // namespace

bool KvoDataCtrlHelper::ListView_SelectItemByIDString(Control* cListViewCtrl,
                                                      const std::string& sIDString,
                                                      bool bEnsureVisible) {
  bool result = false;
  Recorded([&] {
    ListView& list = RequireListView(cListViewCtrl);
    // A scan without regard to case, not a keyed lookup, so that ids that
    // differ only in case are found.
    const std::string wanted = UCase(GenerateKeyFromIDString(sIDString));
    ListItemCollection& items = list.ListItems();
    const int32_t count = items.Count();
    ListItem* found = nullptr;
    for (int32_t i = 1; i <= count && found == nullptr; ++i) {
      ListItem& item = items.Item(Variant(i));
      if (item.KeyEqualsUpper(wanted)) found = &item;
    }
    if (found == nullptr) Fail(messages::kItemCannotBeFound);
    found->SetSelected(true);
    if (bEnsureVisible) found->EnsureVisible();
    result = true;
  });
  return result;
}

bool KvoDataCtrlHelper::ListView_GetSelectedItemIDString(Control* cListViewCtrl,
                                                         std::string& sIDString) {
  bool result = false;
  Recorded([&] {
    ListItem* selected = RequireListView(cListViewCtrl).SelectedItem();
    if (selected == nullptr) Fail(messages::kNoItemSelected);
    sIDString = GetIDStringFromKey(selected->Key());
    result = true;
  });
  return result;
}

bool KvoDataCtrlHelper::ListView_GetSelectedItemTag(Control* cListViewCtrl, std::string& sTag) {
  bool result = false;
  Recorded([&] {
    ListItem* selected = RequireListView(cListViewCtrl).SelectedItem();
    if (selected == nullptr) Fail(messages::kNoItemSelected);
    sTag = selected->Tag();
    result = true;
  });
  return result;
}

bool KvoDataCtrlHelper::ListView_GetRowColumnData(Control* cListViewCtrl, int32_t nRow,
                                                  int32_t nCol, std::string& sData) {
  bool result = false;
  Recorded([&] {
    ListView& list = RequireListView(cListViewCtrl);
    CheckRowColumn(list, nRow, nCol);
    ListItem& item = list.ListItems().Item(Variant(nRow));
    // Both are read, whatever the column: a column below 1 fails here.
    std::string text = item.Text();
    std::string subitem = item.SubItems(nCol - 1);
    sData = nCol == 1 ? std::move(text) : std::move(subitem);
    result = true;
  });
  return result;
}

bool KvoDataCtrlHelper::ListView_SetRowColumnData(Control* cListViewCtrl, int32_t nRow,
                                                  int32_t nCol, const Variant& sData,
                                                  const Variant& nForeColor) {
  bool result = false;
  Recorded([&] {
    ListView& list = RequireListView(cListViewCtrl);
    CheckRowColumn(list, nRow, nCol);
    ListItem& item = list.ListItems().Item(Variant(nRow));
    if (!sData.IsMissing()) {
      const std::string text = sData.ToString();
      if (nCol == 1) {
        item.SetText(text);
      } else {
        item.SetSubItems(nCol - 1, text);
      }
    }
    if (!nForeColor.IsMissing()) {
      const int32_t color = nForeColor.ToLong();
      if (nCol == 1) {
        item.SetForeColor(color);
      } else {
        item.ListSubItems(nCol - 1).SetForeColor(color);
      }
    }
    result = true;
  });
  return result;
}

bool KvoDataCtrlHelper::ListView_SetRowColumnForeColor(Control* cListViewCtrl, int32_t nRow,
                                                       int32_t nCol, const Variant& nForeColor) {
  return ListView_SetRowColumnData(cListViewCtrl, nRow, nCol, Variant::Missing(), nForeColor);
}

int32_t KvoDataCtrlHelper::ListView_GetColumnIndex(Control* cListViewCtrl,
                                                   const std::string& sColKey) {
  int32_t result = -1;
  Recorded([&] {
    ListView& list = RequireListView(cListViewCtrl);
    ColumnHeaderCollection& headers = list.ColumnHeaders();
    const int32_t count = headers.Count();
    if (count == 0) Fail(messages::kNoColumns);
    const std::string wanted = LCase(Trim(sColKey));
    for (int32_t i = 1; i <= count; ++i) {
      if (LCase(headers.Item(Variant(i)).Key()) == wanted) {
        result = i;
        return;
      }
    }
  });
  return result;
}

}  // namespace veld
