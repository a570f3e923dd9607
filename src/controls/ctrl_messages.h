// The control helper's own messages, exactly as callers match them.
#ifndef VELD_CONTROLS_CTRL_MESSAGES_H_
#define VELD_CONTROLS_CTRL_MESSAGES_H_

namespace veld::ctrl_messages {

inline constexpr char kLoadXmlFailed[] = "Failed to load xml data.";
inline constexpr char kLoadFileFailed[] = "Failed to load data from file - ";
inline constexpr char kTreeViewRequired[] = "TreeView object required.";
inline constexpr char kImageComboRequired[] = "ImageCombo object required.";
inline constexpr char kNoItemSelected[] = "No item selected.";
inline constexpr char kListViewRequired[] = "ListView object required.";
inline constexpr char kNoColumns[] = "No column defined for the list view.";
inline constexpr char kInvalidColumnSpec[] = "Invalid column spec xml.";
// Misspelt in the original and kept: callers match it.
inline constexpr char kLoadItemXmlFailed[] = "Faield to load data item xml.";
inline constexpr char kNoDataElement[] = "No data element found.";
inline constexpr char kItemCannotBeFound[] = "Specified item can't be found.";
inline constexpr char kInvalidRowCol[] = "Invalid Row/Col specified.";
inline constexpr char kItemNotFound[] = "Specified item not found in the list.";

}  // namespace veld::ctrl_messages

#endif  // VELD_CONTROLS_CTRL_MESSAGES_H_
