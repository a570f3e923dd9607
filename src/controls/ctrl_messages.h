// The control helper's own messages, exactly as callers match them.
#ifndef VELD_CONTROLS_CTRL_MESSAGES_H_
#define VELD_CONTROLS_CTRL_MESSAGES_H_

namespace veld::ctrl_messages {

inline constexpr char kLoadXmlFailed[] = "Failed to load xml data.";
inline constexpr char kLoadFileFailed[] = "Failed to load data from file - ";
inline constexpr char kTreeViewRequired[] = "TreeView object required.";
inline constexpr char kNoItemSelected[] = "No item selected.";
inline constexpr char kItemNotFound[] = "Specified item not found in the list.";

}  // namespace veld::ctrl_messages

#endif  // VELD_CONTROLS_CTRL_MESSAGES_H_
