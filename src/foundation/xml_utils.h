// Small XML helpers shared by all classes: escaping text for XML and for the
// library's XPath predicates, forgiving attribute and text reads, and removal
// of the nodes an expression selects.
//
// None of them records or catches anything: a failing DOM operation inside
// one reaches the calling method, whose own frame records it.
#ifndef VELD_FOUNDATION_XML_UTILS_H_
#define VELD_FOUNDATION_XML_UTILS_H_

#include <string>
#include <string_view>

#include "veld/xml/xml_document.h"

namespace veld {

// Replaces, in this order, "&" by "&amp;", '"' by "&quot;", ">" by "&gt;",
// "<" by "&lt;" and "'" by "&apos;". The result also goes between the quotes
// of XPath predicates, where XPath does not decode the entities, so a name
// holding one of these five characters never matches; callers rely on that.
std::string EscapeXmlText(std::string_view text);

// The value of attribute `name` of `element`; `default_value` when the
// element is null or has no such attribute. A present but empty attribute
// gives "".
std::string GetNodeAttribute(const XmlNode& element, const std::string& name,
                             const std::string& default_value);

// The value of the node's first text child ("" when the node is null or has
// none). Text after a child element or comment, and CDATA, do not count.
std::string GetNodeText(const XmlNode& node);

// The attribute's value when the element has attribute `name`, otherwise the
// element's first text child. The default is used only for a null element:
// an element with neither attribute nor text gives "", whatever the default.
std::string GetNodeAttributeOrText(const XmlNode& element, const std::string& name,
                                   const std::string& default_value);

// Removes every node that `xpath` (trimmed of blanks) selects from `context`,
// each from its own parent. Returns true, also when nothing was selected.
bool RemoveSelectedNodes(const XmlNode& context, const std::string& xpath);

}  // namespace veld

#endif  // VELD_FOUNDATION_XML_UTILS_H_
