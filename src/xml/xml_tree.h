// Reading and linking libxml2 nodes the way the DOM sees them. No function
// here frees a node: nodes leave a tree only through DocumentCore::Orphan.
#ifndef VELD_XML_XML_TREE_H_
#define VELD_XML_XML_TREE_H_

#include <cstdint>
#include <string>
#include <string_view>

#include <libxml/tree.h>

namespace veld::xml_internal {

// The DOM's node type number of `node` (0 for kinds the DOM has no number for).
int32_t DomNodeType(const xmlNode* node);
// nodeName as the DOM gives it ("#text", "#comment", qualified names, ...).
std::string DomNodeName(const xmlNode* node);
// nodeValue: the value of text, CDATA, comment, processing instruction and
// attribute nodes, "" for the others.
std::string DomNodeValue(const xmlNode* node);
// The concatenated text and CDATA content below `node`, following internal
// entity references; the value for value-holding nodes.
std::string DomText(const xmlNode* node);

// True when the qualified name of element or attribute `node` is `name`.
bool HasQualifiedName(const xmlNode* node, std::string_view name);
// The attribute of element `element` whose qualified name is `name`, or null.
xmlAttrPtr FindAttribute(const xmlNode* element, std::string_view name);

// Links `child`, which must be in no tree, into `parent`'s children before
// `ref` (a child of `parent`), or at the end when `ref` is null. Unlike
// libxml2's own insertion functions it never merges adjacent text nodes, so
// no node a caller holds is freed or changed.
void LinkChild(xmlNodePtr parent, xmlNodePtr child, xmlNodePtr ref);

// Makes the namespace references of element `element` and its subtree point
// at declarations in scope at its current place, declaring what is missing.
void ReconcileNamespaces(xmlNodePtr element);

// Replaces, in the subtree `top` (a copy just made into another document),
// every reference to an entity that its new document does not declare by
// what the entity of `source` holds: its nodes in element content, its text
// in attribute values. The copy then reads and saves as it did. Raises when
// the expansion would grow beyond a limit (a few references to a large
// entity can make a copy thousands of times its size).
void ExpandForeignEntityReferences(xmlNodePtr top, const xmlDoc* source);

// The text that the entity references of `doc` stand for, in all, each
// reference counted where it stands (in element content and attribute
// values). Counting stops once it passes `limit`; the result is then some
// number above `limit`.
size_t EntityExpansionSize(const xmlDoc* doc, size_t limit);

// True when `name` is a valid XML name.
bool IsValidName(const std::string& name);

}  // namespace veld::xml_internal

#endif  // VELD_XML_XML_TREE_H_
