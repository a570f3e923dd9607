// Parsing an items element that is already in a document, for the library's
// own classes: the same result as Parse of the element's text, without
// serialising and parsing it again.
#ifndef VELD_ITEMS_ITEMS_ELEMENT_H_
#define VELD_ITEMS_ITEMS_ELEMENT_H_

#include <string>
#include <vector>

#include <libxml/tree.h>

#include "veld/items/kvo_general_items.h"
#include "veld/xml/xml_node.h"

namespace veld::items_internal {

// As KvoGeneralItems::Parse of root.Xml(): replaces the content of `items`
// with the root tags and items of `root` (an element), or empties it and
// returns false with the message in `sParseErrMsg`.
bool ParseElement(KvoGeneralItems& items, const XmlNode& root, bool bNameAsKey,
                  const std::string& sItemTag, std::string* sParseErrMsg);

// The names and values of the items Parse of the element's text with an empty
// item tag and no keys would give, in order, read in place without building
// the collection, for an element whose subtree reads the same in place as
// from its text: no namespaces, entity references or whitespace-only text.
// False for any other element (nothing is read then; the caller parses the
// element's text instead). `names` and `values` get one string per item;
// their strings keep their buffers from call to call.
bool ReadPlainNamesAndValues(const xmlNode* root, std::vector<std::string>& names,
                             std::vector<std::string>& values);

// The same for a copy of `row` that holds only its "col" children (no
// namespace), as a dataset row keeps them: `row` itself and its other
// children are not looked at. False when a col is not plain.
bool ReadPlainColsOf(const xmlNode* row, std::vector<std::string>& names,
                     std::vector<std::string>& values);

}  // namespace veld::items_internal

#endif  // VELD_ITEMS_ITEMS_ELEMENT_H_
