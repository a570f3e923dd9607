// What the list view members share: the type check, the column definitions
// read back from the control, and the filling of one item from a row.
#ifndef VELD_CONTROLS_LIST_VIEW_COLUMNS_H_
#define VELD_CONTROLS_LIST_VIEW_COLUMNS_H_

#include <string>
#include <vector>

#include "veld/controls/list_view.h"
#include "veld/xml/xml_node.h"

namespace veld::controls_internal {

// Raises "ListView object required." for anything but a list view.
ListView& RequireListView(Control* control);

// The columns' Key (the data field) and Tag (the type code), in order.
// Raises "No column defined for the list view." when there are none.
struct ColumnDefinitions {
  std::vector<std::string> fields;
  std::vector<std::string> codes;
};
ColumnDefinitions ReadColumnDefinitions(ListView& list);

// Sets the item from the row: Key, first column (icon or text), subitems,
// Tag, in that order. Raises what the control raises.
void FillItem(ListItem& item, const XmlNode& row, const ColumnDefinitions& columns,
              const std::string& key_field, const std::string& tag_field);

}  // namespace veld::controls_internal

#endif  // VELD_CONTROLS_LIST_VIEW_COLUMNS_H_
