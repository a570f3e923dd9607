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
// or nullptr, fails the member's type check ("TreeView object required.").
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
