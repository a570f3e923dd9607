// Parsing an items element that is already in a document, for the library's
// own classes: the same result as Parse of the element's text, without
// serialising and parsing it again.
#ifndef VELD_ITEMS_ITEMS_ELEMENT_H_
#define VELD_ITEMS_ITEMS_ELEMENT_H_

#include <string>

#include "veld/items/kvo_general_items.h"
#include "veld/xml/xml_node.h"

namespace veld::items_internal {

// As KvoGeneralItems::Parse of root.Xml(): replaces the content of `items`
// with the root tags and items of `root` (an element), or empties it and
// returns false with the message in `sParseErrMsg`.
bool ParseElement(KvoGeneralItems& items, const XmlNode& root, bool bNameAsKey,
                  const std::string& sItemTag, std::string* sParseErrMsg);

}  // namespace veld::items_internal

#endif  // VELD_ITEMS_ITEMS_ELEMENT_H_
