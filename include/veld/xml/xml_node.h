// XmlNode: a handle to one node of an XML document (element, attribute, text,
// CDATA section, comment, processing instruction, document, ...), with the
// operations of the classic DOM node that the library uses.
//
// A node handle is cheap to copy; copies refer to the same node, and two
// handles compare equal when they refer to the same node. A default-made
// handle is null: it converts to false, and every operation on it other than
// IsNull, the conversion and the comparison raises error 91 ("Object
// variable or With block variable not set").
//
// Lifetime: a handle keeps its node usable for as long as the handle exists,
// even after the node was removed from its tree or its document was replaced
// (the XmlDocument assigned another document or loaded new text). A node that
// belongs to no tree (just created, cloned, removed or replaced) is kept by
// its document until no handle to any node of that document is left.
//
// Handles are not synchronised: a document and its nodes may be used by one
// thread at a time.
//
// Failures of DOM operations raise AutomationError number
// errnum::kXmlFailure (-2147467259) with a description of what went wrong.
#ifndef VELD_XML_XML_NODE_H_
#define VELD_XML_XML_NODE_H_

#include <cstdint>
#include <memory>
#include <string>

#include "veld/export.h"

namespace veld {

namespace xml_internal {
class DocumentCore;
struct RawNode;
struct Access;
}  // namespace xml_internal

class XmlDocument;
class XmlNodeList;

// The DOM's node type numbers.
enum XmlNodeType : int32_t {
  NODE_INVALID = 0,
  NODE_ELEMENT = 1,
  NODE_ATTRIBUTE = 2,
  NODE_TEXT = 3,
  NODE_CDATA_SECTION = 4,
  NODE_ENTITY_REFERENCE = 5,
  NODE_ENTITY = 6,
  NODE_PROCESSING_INSTRUCTION = 7,
  NODE_COMMENT = 8,
  NODE_DOCUMENT = 9,
  NODE_DOCUMENT_TYPE = 10,
  NODE_DOCUMENT_FRAGMENT = 11,
  NODE_NOTATION = 12,
};

class VELD_EXPORT XmlNode {
 public:
  // A null handle.
  XmlNode() noexcept;
  XmlNode(const XmlNode& other) noexcept;
  XmlNode(XmlNode&& other) noexcept;
  XmlNode& operator=(const XmlNode& other) noexcept;
  XmlNode& operator=(XmlNode&& other) noexcept;
  ~XmlNode();

  bool IsNull() const noexcept { return node_ == nullptr; }
  explicit operator bool() const noexcept { return node_ != nullptr; }
  // True when both handles refer to the same node (or both are null).
  bool operator==(const XmlNode& other) const noexcept { return node_ == other.node_; }

  // --- What the node is ---

  // The DOM type number (XmlNodeType).
  int32_t NodeType() const;
  // Qualified name of an element, attribute or entity reference, target of a
  // processing instruction, root name of a document type; "#text",
  // "#cdata-section", "#comment", "#document", "#document-fragment" for the
  // others.
  std::string NodeName() const;
  // Value of a text, CDATA, comment, processing instruction or attribute
  // node; "" for all other types.
  std::string NodeValue() const;
  // Sets the value of a node that has one (see NodeValue). Raises
  // kXmlFailure for the other types.
  void SetNodeValue(const std::string& value) const;
  // The text of the node: for elements, documents and attributes the text of
  // all text and CDATA descendants concatenated in document order; for the
  // other types their value.
  std::string Text() const;
  // Replaces the children of an element with one text node holding `text`
  // (none when it is empty); other types take it as their value.
  void SetText(const std::string& text) const;
  // The node serialised as XML text: no declaration, no indentation,
  // non-ASCII characters as UTF-8. An attribute gives name="value".
  std::string Xml() const;

  // --- Relatives ---

  // The parent; null for a document, an attribute, and a node that is in no
  // tree (removed, or created and not yet inserted).
  XmlNode ParentNode() const;
  // The document the node belongs to. For a document node, that document.
  // Needs veld/xml/xml_document.h.
  XmlDocument OwnerDocument() const;
  // A snapshot of the node's children in order (an empty list for node types
  // without children). Later changes to the tree do not change the list.
  XmlNodeList ChildNodes() const;
  XmlNode FirstChild() const;
  XmlNode LastChild() const;
  XmlNode NextSibling() const;
  XmlNode PreviousSibling() const;
  bool HasChildNodes() const;

  // --- Attributes (elements only; other types raise error 438) ---

  // The element's attribute nodes in document order. For any other node type
  // the list is unset (IsNull).
  XmlNodeList Attributes() const;
  // The attribute named `name` (its qualified name as written), or null when
  // the element has none. Use it to tell an absent attribute from an empty one.
  XmlNode GetAttributeNode(const std::string& name) const;
  // The attribute's value; "" when the element has no such attribute.
  std::string GetAttribute(const std::string& name) const;
  bool HasAttribute(const std::string& name) const;
  // Sets the attribute, creating it after the existing ones when absent.
  // Raises kXmlFailure for an invalid name.
  void SetAttribute(const std::string& name, const std::string& value) const;
  // Removes the attribute when present; does nothing otherwise. A handle to
  // the removed attribute node stays usable.
  void RemoveAttribute(const std::string& name) const;

  // --- Changing the tree ---
  //
  // The inserting operations take `new_child` out of wherever it is and put
  // it in its new place. When `new_child` belongs to ANOTHER document, a deep
  // copy of it is inserted instead (the argument stays where it was) and the
  // copy is returned. They raise kXmlFailure when this node cannot have
  // children, when `new_child` cannot go here (a document, an attribute, a
  // second root element), and when `new_child` is this node or one of its
  // ancestors.

  // Appends `new_child` as the last child. Returns the inserted node.
  XmlNode AppendChild(const XmlNode& new_child) const;
  // Inserts `new_child` before `ref_child` (a child of this node); a null
  // `ref_child` appends. Returns the inserted node.
  XmlNode InsertBefore(const XmlNode& new_child, const XmlNode& ref_child) const;
  // Puts `new_child` in the place of `old_child` (a child of this node) and
  // returns `old_child`, now in no tree.
  XmlNode ReplaceChild(const XmlNode& new_child, const XmlNode& old_child) const;
  // Takes `child` out of this node's children and returns it; raises
  // kXmlFailure "The node is not a child of this node." when it is not one.
  XmlNode RemoveChild(const XmlNode& child) const;
  // A copy of the node in the same document, in no tree; with `deep` its
  // whole subtree, otherwise the node with its attributes. Cloning a
  // document node gives the document node of a new document.
  XmlNode CloneNode(bool deep) const;

  // --- XPath 1.0 with this node as the context ---

  // Nodes selected by `xpath`, in document order. Raises kXmlFailure with the
  // XPath engine's message for an invalid expression or one that does not
  // give a node set.
  XmlNodeList SelectNodes(const std::string& xpath) const;
  // The first node of SelectNodes(xpath) in document order, or null.
  XmlNode SelectSingleNode(const std::string& xpath) const;

 private:
  friend struct xml_internal::Access;
  XmlNode(std::shared_ptr<xml_internal::DocumentCore> core, xml_internal::RawNode* node) noexcept;

  std::shared_ptr<xml_internal::DocumentCore> core_;
  xml_internal::RawNode* node_ = nullptr;
};

}  // namespace veld

#endif  // VELD_XML_XML_NODE_H_
