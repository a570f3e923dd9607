// XPath 1.0 selection over libxml2 trees.
#ifndef VELD_XML_XML_XPATH_H_
#define VELD_XML_XML_XPATH_H_

#include <string>
#include <vector>

#include <libxml/tree.h>

namespace veld::xml_internal {

// The nodes `xpath` selects with `context` as the context node, in document
// order. Namespace nodes are left out: they are not part of the tree. Raises
// kXmlFailure with the XPath engine's message when the expression is invalid
// or does not give a node set. Prints nothing.
std::vector<xmlNodePtr> SelectRaw(xmlNodePtr context, const std::string& xpath);

}  // namespace veld::xml_internal

#endif  // VELD_XML_XML_XPATH_H_
