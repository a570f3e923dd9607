// KvoDataCtrlHelper: fills a caller's list, combo and tree controls from
// dataset-shaped XML (a root of "data" elements holding "row" elements of
// "col" elements with "name" and "value"), reading the rows of the first data
// element.
//
// It is a worker class (see WorkerFrame): no member raises. Members clear
// the last error on entry (except LoadXml and LoadFile, which keep it when
// they succeed), record a failure — with number -1 and a fixed message for
// the class's own checks, with the control's error for an add the control
// refuses, with the XML library's number and text for an XPath that does not
// parse — and return false. Read it with GetLastError or raise it with
// RaiseLastError.
//
// Rows whose "index" attribute is "0" are never shown and never removed.
// Controls are passed as Control*; a pointer to a control of another kind,
// or nullptr, fails the member's type check ("ListView object required.",
// "ImageCombo object required.", "TreeView object required.").
//
// Items are keyed "K" + the row's identifier (GenerateKeyFromIDString),
// because controls refuse keys that look like numbers.
#ifndef VELD_CONTROLS_KVO_DATA_CTRL_HELPER_H_
#define VELD_CONTROLS_KVO_DATA_CTRL_HELPER_H_

#include <string>

#include "veld/controls/control.h"
#include "veld/export.h"
#include "veld/foundation/worker_frame.h"
#include "veld/runtime/variant.h"

namespace veld {

class VELD_EXPORT KvoDataCtrlHelper : public DocumentFrame {
 public:
  KvoDataCtrlHelper();
  ~KvoDataCtrlHelper();

  // RaiseLastError, GetLastError and Reset come from the frame; Reset
  // replaces the data with an empty document and leaves the record alone.

  // --- the data source ---

  // Loads the data from XML text. On failure the data is empty and the
  // record reads "Failed to load xml data.".
  bool LoadXml(const std::string& sDataXml);
  // Loads the data from a file (the name is used as given). On failure:
  // "Failed to load data from file - " + name + ".".
  bool LoadFile(const std::string& sXmlFile);

  // Removes the active rows of the first data element that have a col named
  // sFilterColName whose value compares with the trimmed sFilterColValue by
  // sFilterOperator (an XPath comparison: "=", "!=", "<", ">", "<=", ">=").
  // The name and the operator go into the XPath as given; the value is
  // trimmed and escaped (so a value holding & " > < or ' matches only its
  // escaped form).
  bool RemoveDataRow(const std::string& sFilterColName, const std::string& sFilterColValue,
                     const std::string& sFilterOperator = "=");
  // Removes the active rows of the first data element for which the XPath
  // expression sFilterXPath holds: on the col named sFilterColName when that
  // is not "", else on the row itself.
  bool RemoveDataRowEx(const std::string& sFilterXPath, const std::string& sFilterColName = "");

  // --- item keys ---

  // "" for ""; "K" + the text otherwise.
  static std::string GenerateKeyFromIDString(const std::string& sIDString);
  // The key without its leading "K"; "" when it does not start with "K".
  static std::string GetIDStringFromKey(const std::string& sKey);

  // --- list views ---

  // Defines the columns of a report-style ListView from a column spec: any
  // root whose "col" children with a non-empty "name" are the columns, in
  // order, with the attributes "name" (caption), "field" (the data col shown),
  // "type" (icon, boolean/bool, date, time, datetime, integer, double, text;
  // anything else repeats the previous column's type), "format" (the display
  // pattern of a double column), "align" (left, center, right) and "width"
  // (pixels; 15 when not numeric). The columns are cleared first, so a spec
  // that is not XML ("Invalid column spec xml.") leaves none. Each column's
  // Tag holds its type code ("p", "b", "d", "t", "dt", "i", "s", the double
  // column's format, or "").
  bool ListView_InitializeColumns(Control* cListViewCtrl, const std::string& sColsSpec);
  // Fills the list with one item per active row of the first data element:
  // keyed "K" + the trimmed sKeyFieldName col, each cell the formatted value
  // of its column's field (ListView_FormatColumnData), the Tag the
  // sTagFieldName col. Turns Sorted off first. An item whose fill fails
  // (a duplicate key) is removed and ends the load. Then selects the item
  // vtSelectedItem names, else the first, and scrolls it into view.
  bool ListView_LoadData(Control* cListViewCtrl, const std::string& sKeyFieldName = "_guid_",
                         const Variant& vtSelectedItem = Variant::Missing(),
                         const std::string& sTagFieldName = "");
  // Adds one item at the end from the first "row" of sDataItemXml; its index,
  // or -1 ("Faield to load data item xml.", "No data element found.").
  int32_t ListView_AddItem(Control* cListViewCtrl, const std::string& sDataItemXml,
                           const std::string& sKeyFieldName = "_guid_", bool bSelectIt = true,
                           const std::string& sTagFieldName = "");
  // Refills the item keyed "K" + sDataID (exact) from the first "row" of
  // sDataItemXml, its key included; its index, or -1.
  int32_t ListView_UpdateItem(Control* cListViewCtrl, const std::string& sDataID,
                              const std::string& sDataItemXml,
                              const std::string& sKeyFieldName = "_guid_", bool bSelectIt = true,
                              const std::string& sTagFieldName = "");
  // The text a cell shows for a raw value and a column's type code: " " for
  // an empty value or result; "p" ""; "b" "Y"/"N" for numbers, else the
  // trimmed text; "s" the text; "i" the whole number (half to even) or " ";
  // "d", "t", "dt" the date as short date, long time or general date (" "
  // when it is no date); any other code a display pattern for Format. Never
  // fails, records nothing.
  static std::string ListView_FormatColumnData(const std::string& sRawData,
                                               const std::string& sFmtStr);
  // Sorts by a column (1-based) by its type: dates, times and numbers in
  // order of value, other columns as text; the same column again reverses
  // the order. Cells are rewritten to a sortable form and back, so a grouped
  // number or a date shows afterwards in the form the column's code gives.
  // A column past the last does nothing.
  void ListView_SortData(Control* cListViewCtrl, int32_t nColIndex = 1);
  // Selects the first item whose key equals "K" + sIDString without regard
  // to case ("Specified item can't be found.").
  bool ListView_SelectItemByIDString(Control* cListViewCtrl, const std::string& sIDString,
                                     bool bEnsureVisible = true);
  bool ListView_GetSelectedItemIDString(Control* cListViewCtrl, std::string& sIDString);
  bool ListView_GetSelectedItemTag(Control* cListViewCtrl, std::string& sTag);
  // Cell text of a 1-based row and column ("Invalid Row/Col specified." past
  // the last row or column).
  bool ListView_GetRowColumnData(Control* cListViewCtrl, int32_t nRow, int32_t nCol,
                                 std::string& sData);
  // Writes a cell's text and/or colour (0x00BBGGRR), each when given.
  bool ListView_SetRowColumnData(Control* cListViewCtrl, int32_t nRow, int32_t nCol,
                                 const Variant& sData = Variant::Missing(),
                                 const Variant& nForeColor = Variant::Missing());
  bool ListView_SetRowColumnForeColor(Control* cListViewCtrl, int32_t nRow, int32_t nCol,
                                      const Variant& nForeColor);
  // The 1-based position of the column whose key equals sColKey (trimmed)
  // without regard to case; -1 when none does.
  int32_t ListView_GetColumnIndex(Control* cListViewCtrl, const std::string& sColKey);

  // --- image combos ---

  // Fills an ImageCombo with one item per active row that has a key and a
  // text (of the rows whose sFilterFieldName col compares with the trimmed
  // sFilterValue by sFilterOperator, when a filter field is named), in data
  // order. The text is the text col, or, with a second text field the row
  // has, text + "\r" + (" " when the text is not blank) + the second text.
  // The combo's text is cleared first. An add the combo refuses ends the
  // load with the combo's error; the items added so far stay. Then selects
  // the item vtSelectedItem names (index or key), else item 1, and calls
  // Refresh.
  bool ImageCombo_LoadData(
      Control* cImgComboCtrl, const std::string& sKeyFieldName, const std::string& sTextFieldName,
      const std::string& sTextFieldName2 = "", const std::string& sTagFieldName = "tag",
      const Variant& vtSelectedItem = Variant::Missing(), const std::string& sFilterFieldName = "",
      const std::string& sFilterValue = "", const std::string& sFilterOperator = "=");
  // As ImageCombo_LoadData, indenting each item one level deeper than the
  // item of its parent key when that item was added earlier (0 otherwise:
  // a parent that comes later, is missing, was filtered out or is the row
  // itself). The filter is an equality; Refresh is not called.
  bool ImageCombo_LoadHierData(Control* cImgComboCtrl, const std::string& sKeyFieldName,
                               const std::string& sParentKeyFieldName,
                               const std::string& sTextFieldName,
                               const std::string& sTextFieldName2 = "",
                               const std::string& sTagFieldName = "tag",
                               const Variant& vtSelectedItem = Variant::Missing(),
                               const std::string& sFilterFieldName = "",
                               const std::string& sFilterValue = "");
  // Select the first item whose text (tag), trimmed, equals sText (sTag)
  // trimmed, without regard to case, and refresh. False without a match:
  // nothing is then selected and no error is recorded.
  bool ImageCombo_SelectItemByText(Control* cImgComboCtrl, const std::string& sText);
  bool ImageCombo_SelectItemByTag(Control* cImgComboCtrl, const std::string& sTag);
  // Selects the item of an identifier (exact): nothing changes when it is
  // already selected; an empty identifier selects the first item without a
  // key. An unknown identifier clears the combo's text and fails with
  // "Specified item not found in the list.".
  bool ImageCombo_SelectItemByIDString(Control* cImgComboCtrl, const std::string& sIDString);
  // The identifier / tag of the selected item; "No item selected." without.
  bool ImageCombo_GetSelectedItemIDString(Control* cImgComboCtrl, Variant& sIDString);
  bool ImageCombo_GetSelectedItemTag(Control* cImgComboCtrl, Variant& sTag);
  // The selected item's text: split at its first carriage return into two
  // trimmed parts, else whole (untrimmed) into sText1. Either may be left
  // out; those given are set to "" first.
  bool ImageCombo_GetSelectedItemText(Control* cImgComboCtrl, Variant* sText1 = nullptr,
                                      Variant* sText2 = nullptr);

  // --- tree views ---

  // Fills a TreeView with one node per active row (of the rows whose
  // sFilterFieldName col equals the trimmed sFilterValue, when a filter field
  // is named) that has a key and a text, in data order: under the node of
  // its parent key, or as a root when the parent key is empty. Field names
  // are matched to the first row's col names without regard to case or
  // surrounding blanks. The text is the text col, or, with a second text
  // field the row has, "[" + text + "]   " (when the text is not blank) +
  // the second text. A node the tree refuses (a duplicate key, a parent
  // that is missing or comes later) ends the load with the tree's error;
  // the nodes added so far stay. Then selects the node vtSelectedItem
  // names (index or key), else node 1, and gives nodes with children the
  // image sFolderImg and the others sItemImg (each when not "").
  bool TreeView_LoadData(Control* cTreeViewCtrl, const std::string& sKeyFieldName,
                         const std::string& sParentKeyFieldName, const std::string& sTextFieldName,
                         const std::string& sTextFieldName2 = "",
                         const std::string& sTagFieldName = "tag",
                         const std::string& sFolderImg = "", const std::string& sItemImg = "",
                         const Variant& vtSelectedItem = Variant::Missing(),
                         const std::string& sFilterFieldName = "",
                         const std::string& sFilterValue = "");
  // The identifier of the selected node; "No item selected." without one.
  bool TreeView_GetSelectedItemIDString(Control* cTreeViewCtrl, std::string& sIDString);
  // The tag of the selected node (into sIDString, as the interface names it).
  bool TreeView_GetSelectedItemTag(Control* cTreeViewCtrl, std::string& sIDString);
  // Selects the node of an identifier (exact) and expands its ancestors;
  // "Specified item not found in the list." when there is none.
  bool TreeView_SelectItemByIDString(Control* cTreeViewCtrl, const std::string& sIDString);
};

}  // namespace veld

#endif  // VELD_CONTROLS_KVO_DATA_CTRL_HELPER_H_
