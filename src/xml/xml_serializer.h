// Serialisation as the library's callers expect it: no XML declaration, no
// indentation, nothing between top-level nodes, UTF-8 throughout.
#ifndef VELD_XML_XML_SERIALIZER_H_
#define VELD_XML_XML_SERIALIZER_H_

#include <string>

#include <libxml/tree.h>

namespace veld::xml_internal {

// `node` and its subtree as XML text. A document gives its top-level nodes
// one after the other; an attribute gives name="value".
std::string SerializeNode(xmlNodePtr node);

}  // namespace veld::xml_internal

#endif  // VELD_XML_XML_SERIALIZER_H_
