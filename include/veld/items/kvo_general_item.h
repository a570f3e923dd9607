// KvoGeneralItem: one name/value pair with a type text and an extra value.
//
// A plain record: four public strings and no behaviour. Items live in a
// KvoGeneralItems and are handed out as std::shared_ptr, so setting a field on
// an item that a collection returned changes the stored item.
#ifndef VELD_ITEMS_KVO_GENERAL_ITEM_H_
#define VELD_ITEMS_KVO_GENERAL_ITEM_H_

#include <string>

#include "veld/export.h"

namespace veld {

class VELD_EXPORT KvoGeneralItem {
 public:
  KvoGeneralItem() = default;
  KvoGeneralItem(const KvoGeneralItem&) = delete;
  KvoGeneralItem& operator=(const KvoGeneralItem&) = delete;

  // The lookup key of the by-name operations of KvoGeneralItems.
  std::string Name;
  std::string Value;
  // Free text naming the value's type; empty when not needed.
  std::string TypeString;
  // A second free value; empty when not needed.
  std::string ExtraValue;
};

}  // namespace veld

#endif  // VELD_ITEMS_KVO_GENERAL_ITEM_H_
