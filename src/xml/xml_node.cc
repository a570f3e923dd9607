#include "veld/xml/xml_node.h"

#include <new>
#include <utility>

#include "veld/runtime/automation_error.h"
#include "veld/xml/xml_document.h"
#include "veld/xml/xml_node_list.h"
#include "xml/document_core.h"
#include "xml/xml_errors.h"
#include "xml/xml_internal.h"
#include "xml/xml_serializer.h"
#include "xml/xml_tree.h"
#include "xml/xml_xpath.h"

namespace veld {

using xml_internal::Access;
using xml_internal::DocumentCore;
using xml_internal::RaiseXmlFailure;

namespace {

constexpr int32_t kObjectNotSet = 91;
constexpr int32_t kNotSupported = 438;

constexpr const char* kNotAChild = "The node is not a child of this node.";
constexpr const char* kRefNotAChild = "The reference node is not a child of this node.";
constexpr const char* kCycle = "Inserting the node would create a cycle.";
constexpr const char* kNoChildren = "A node of this type cannot have children.";
constexpr const char* kCannotInsert = "A node of this type cannot be inserted here.";
constexpr const char* kSecondRoot = "Only one top level element is allowed in an XML document.";
constexpr const char* kNewChildNotSet = "The node to insert is not set.";
constexpr const char* kNoValue = "The value of a node of this type cannot be set.";
constexpr const char* kDocumentType = "The document type node cannot be moved or removed.";
constexpr const char* kCannotClone = "A node of this type cannot be cloned.";

xmlNodePtr Checked(const XmlNode& node) {
  xmlNodePtr raw = Access::Raw(node);
  if (raw == nullptr) RaiseError(kObjectNotSet);
  return raw;
}

xmlNodePtr CheckedElement(const XmlNode& node) {
  xmlNodePtr raw = Checked(node);
  // Attribute access exists on elements only, as on the DOM's element
  // interface; through a late-bound node anything else does not support it.
  if (raw->type != XML_ELEMENT_NODE) RaiseError(kNotSupported);
  return raw;
}

bool IsDocument(const xmlNode* node) {
  return node->type == XML_DOCUMENT_NODE || node->type == XML_HTML_DOCUMENT_NODE;
}

// Node types whose libxml2 children are DOM children (an entity reference's
// "child" is its declaration, a DTD's are declarations).
bool HasDomChildren(const xmlNode* node) {
  switch (node->type) {
    case XML_ELEMENT_NODE:
    case XML_ATTRIBUTE_NODE:
    case XML_DOCUMENT_NODE:
    case XML_HTML_DOCUMENT_NODE:
    case XML_DOCUMENT_FRAG_NODE:
      return true;
    default:
      return false;
  }
}

bool IsDocumentType(const xmlNode* node) {
  return node->type == XML_DTD_NODE || node->type == XML_DOCUMENT_TYPE_NODE;
}

void RaiseInvalidName(const std::string& name) {
  if (name.empty()) RaiseXmlFailure("An XML name cannot be empty.");
  RaiseXmlFailure("'" + name + "' is not a valid XML name.");
}

// Sets an attribute's value. The text child is changed in place when there
// is exactly one, so no node is dropped on the common path; otherwise the old
// children become orphans (a caller may hold them).
void SetAttributeValue(DocumentCore& core, xmlAttrPtr attr, const std::string& value) {
  xmlDocPtr doc = attr->doc;
  const bool is_id = doc != nullptr && attr->atype == XML_ATTRIBUTE_ID;
  xml_internal::ErrorCollector errors;
  xml_internal::ScopedErrorCapture capture(errors);
  // The ID table is keyed by value: take the entry out before the value
  // changes, or it would point at this attribute under a stale key.
  if (is_id) xmlRemoveID(doc, attr);
  xmlNodePtr first = attr->children;
  if (first != nullptr && first == attr->last && first->type == XML_TEXT_NODE) {
    xmlNodeSetContent(first, xml_internal::XmlText(value));
  } else {
    while (attr->children != nullptr) core.Orphan(attr->children);
    xmlNodePtr text = xmlNewDocText(doc, xml_internal::XmlText(value));
    if (text == nullptr) throw std::bad_alloc();
    xml_internal::LinkChild(reinterpret_cast<xmlNodePtr>(attr), text, nullptr);
  }
  if (is_id) xmlAddID(nullptr, doc, xml_internal::XmlText(value), attr);
}

// Replaces the children of `parent` with one text node (none for "").
void ReplaceChildrenWithText(DocumentCore& core, xmlNodePtr parent, const std::string& text) {
  xmlNodePtr first = parent->children;
  if (!text.empty() && first != nullptr && first == parent->last && first->type == XML_TEXT_NODE) {
    xmlNodeSetContent(first, xml_internal::XmlText(text));
    return;
  }
  while (parent->children != nullptr) core.Orphan(parent->children);
  if (text.empty()) return;
  xmlNodePtr node = xmlNewDocText(parent->doc, xml_internal::XmlText(text));
  if (node == nullptr) throw std::bad_alloc();
  xml_internal::LinkChild(parent, node, nullptr);
}

// Checks that `child` may become a child of `parent` (next to `replaced`,
// which is going, when replacing) and returns the node to link: `child`
// itself, or a copy of it when it belongs to another document.
xmlNodePtr PrepareChild(xmlNodePtr parent, xmlNodePtr child, xmlNodePtr replaced) {
  if (child == nullptr) RaiseXmlFailure(kNewChildNotSet);
  if (parent->type != XML_ELEMENT_NODE && !IsDocument(parent) &&
      parent->type != XML_DOCUMENT_FRAG_NODE) {
    RaiseXmlFailure(kNoChildren);
  }
  switch (child->type) {
    case XML_ELEMENT_NODE:
    case XML_PI_NODE:
    case XML_COMMENT_NODE:
      break;
    case XML_TEXT_NODE:
    case XML_CDATA_SECTION_NODE:
    case XML_ENTITY_REF_NODE:
      if (IsDocument(parent)) RaiseXmlFailure(kCannotInsert);
      break;
    default:
      if (IsDocumentType(child)) RaiseXmlFailure(kDocumentType);
      RaiseXmlFailure(kCannotInsert);
  }
  if (IsDocument(parent) && child->type == XML_ELEMENT_NODE) {
    xmlNodePtr root = xmlDocGetRootElement(parent->doc);
    if (root != nullptr && root != child && root != replaced) RaiseXmlFailure(kSecondRoot);
  }
  if (child->doc != parent->doc) {
    xml_internal::ErrorCollector errors;
    xml_internal::ScopedErrorCapture capture(errors);
    xmlNodePtr copy = xmlDocCopyNode(child, parent->doc, 1);
    if (copy == nullptr) RaiseXmlFailure(errors.Message(), "The node cannot be copied.");
    // References to entities only the other document declares would read as
    // nothing here and save as text that does not load: take their content.
    if (child->doc != nullptr && child->doc->intSubset != nullptr) {
      try {
        xml_internal::ExpandForeignEntityReferences(copy, child->doc);
      } catch (...) {
        xmlFreeNode(copy);
        throw;
      }
    }
    return copy;
  }
  for (xmlNodePtr up = parent; up != nullptr; up = up->parent) {
    if (up == child) RaiseXmlFailure(kCycle);
  }
  return child;
}

// Links `node` (from PrepareChild) into `parent` before `ref` (null: at the
// end), taking it out of its old place first.
void LinkPrepared(DocumentCore& core, xmlNodePtr parent, xmlNodePtr node, xmlNodePtr ref) {
  xmlUnlinkNode(node);
  core.Adopt(node);
  xml_internal::LinkChild(parent, node, ref);
  if (node->type == XML_ELEMENT_NODE) xml_internal::ReconcileNamespaces(node);
}

void ReleaseHandle(std::shared_ptr<DocumentCore>& core, xml_internal::RawNode*& node) noexcept {
  if (node == nullptr) return;
  node = nullptr;
  std::shared_ptr<DocumentCore> released = std::move(core);
  released->DropHandle();
}

}  // namespace

XmlNode::XmlNode() noexcept = default;

XmlNode::XmlNode(std::shared_ptr<DocumentCore> core, xml_internal::RawNode* node) noexcept
    : node_(node) {
  if (node_ != nullptr) {
    core_ = std::move(core);
    core_->AddHandle();
  }
}

XmlNode::XmlNode(const XmlNode& other) noexcept : core_(other.core_), node_(other.node_) {
  if (node_ != nullptr) core_->AddHandle();
}

XmlNode::XmlNode(XmlNode&& other) noexcept
    : core_(std::move(other.core_)), node_(std::exchange(other.node_, nullptr)) {}

XmlNode& XmlNode::operator=(const XmlNode& other) noexcept {
  if (this != &other) {
    XmlNode copy(other);
    *this = std::move(copy);
  }
  return *this;
}

XmlNode& XmlNode::operator=(XmlNode&& other) noexcept {
  if (this != &other) {
    ReleaseHandle(core_, node_);
    core_ = std::move(other.core_);
    node_ = std::exchange(other.node_, nullptr);
  }
  return *this;
}

XmlNode::~XmlNode() { ReleaseHandle(core_, node_); }

int32_t XmlNode::NodeType() const { return xml_internal::DomNodeType(Checked(*this)); }

std::string XmlNode::NodeName() const { return xml_internal::DomNodeName(Checked(*this)); }

std::string XmlNode::NodeValue() const { return xml_internal::DomNodeValue(Checked(*this)); }

void XmlNode::SetNodeValue(const std::string& value) const {
  xmlNodePtr node = Checked(*this);
  switch (node->type) {
    case XML_TEXT_NODE:
    case XML_CDATA_SECTION_NODE:
    case XML_COMMENT_NODE:
    case XML_PI_NODE:
      xmlNodeSetContent(node, xml_internal::XmlText(value));
      break;
    case XML_ATTRIBUTE_NODE:
      SetAttributeValue(*core_, reinterpret_cast<xmlAttrPtr>(node), value);
      break;
    default:
      RaiseXmlFailure(kNoValue);
  }
}

std::string XmlNode::Text() const { return xml_internal::DomText(Checked(*this)); }

void XmlNode::SetText(const std::string& text) const {
  xmlNodePtr node = Checked(*this);
  if (node->type == XML_ELEMENT_NODE || node->type == XML_DOCUMENT_FRAG_NODE) {
    ReplaceChildrenWithText(*core_, node, text);
  } else {
    SetNodeValue(text);
  }
}

std::string XmlNode::Xml() const { return xml_internal::SerializeNode(Checked(*this)); }

XmlNode XmlNode::ParentNode() const {
  xmlNodePtr node = Checked(*this);
  if (node->type == XML_ATTRIBUTE_NODE || IsDocument(node) || node->parent == nullptr) {
    return XmlNode();
  }
  return XmlNode(core_, reinterpret_cast<xml_internal::RawNode*>(node->parent));
}

XmlDocument XmlNode::OwnerDocument() const {
  Checked(*this);
  return xml_internal::DocumentFor(core_);
}

XmlNodeList XmlNode::ChildNodes() const {
  xmlNodePtr node = Checked(*this);
  std::vector<xmlNodePtr> children;
  if (HasDomChildren(node)) {
    for (xmlNodePtr child = node->children; child != nullptr; child = child->next) {
      children.push_back(child);
    }
  }
  return Access::MakeList(core_, children);
}

XmlNode XmlNode::FirstChild() const {
  xmlNodePtr node = Checked(*this);
  if (!HasDomChildren(node)) return XmlNode();
  return Access::MakeNode(core_, node->children);
}

XmlNode XmlNode::LastChild() const {
  xmlNodePtr node = Checked(*this);
  if (!HasDomChildren(node)) return XmlNode();
  return Access::MakeNode(core_, node->last);
}

XmlNode XmlNode::NextSibling() const {
  xmlNodePtr node = Checked(*this);
  if (node->type == XML_ATTRIBUTE_NODE || IsDocument(node)) return XmlNode();
  return Access::MakeNode(core_, node->next);
}

XmlNode XmlNode::PreviousSibling() const {
  xmlNodePtr node = Checked(*this);
  if (node->type == XML_ATTRIBUTE_NODE || IsDocument(node)) return XmlNode();
  return Access::MakeNode(core_, node->prev);
}

bool XmlNode::HasChildNodes() const {
  xmlNodePtr node = Checked(*this);
  return HasDomChildren(node) && node->children != nullptr;
}

XmlNodeList XmlNode::Attributes() const {
  xmlNodePtr node = Checked(*this);
  if (node->type != XML_ELEMENT_NODE) return XmlNodeList();
  std::vector<xmlNodePtr> attributes;
  for (xmlAttrPtr attr = node->properties; attr != nullptr; attr = attr->next) {
    attributes.push_back(reinterpret_cast<xmlNodePtr>(attr));
  }
  return Access::MakeList(core_, attributes);
}

XmlNode XmlNode::GetAttributeNode(const std::string& name) const {
  xmlAttrPtr attr = xml_internal::FindAttribute(CheckedElement(*this), name);
  return Access::MakeNode(core_, reinterpret_cast<xmlNodePtr>(attr));
}

std::string XmlNode::GetAttribute(const std::string& name) const {
  xmlAttrPtr attr = xml_internal::FindAttribute(CheckedElement(*this), name);
  if (attr == nullptr) return "";
  return xml_internal::DomNodeValue(reinterpret_cast<xmlNodePtr>(attr));
}

bool XmlNode::HasAttribute(const std::string& name) const {
  return xml_internal::FindAttribute(CheckedElement(*this), name) != nullptr;
}

void XmlNode::SetAttribute(const std::string& name, const std::string& value) const {
  xmlNodePtr element = CheckedElement(*this);
  if (!xml_internal::IsValidName(name)) RaiseInvalidName(name);
  if (xmlAttrPtr attr = xml_internal::FindAttribute(element, name)) {
    SetAttributeValue(*core_, attr, value);
    return;
  }
  // A prefix bound in scope puts the attribute in that namespace; otherwise
  // the qualified name is kept as it is, as libxml2's own xmlSetProp does.
  xmlNsPtr ns = nullptr;
  std::string local = name;
  size_t colon = name.find(':');
  if (colon != std::string::npos && colon > 0 && name.compare(0, colon, "xmlns") != 0) {
    ns = xmlSearchNs(element->doc, element, xml_internal::XmlText(name.substr(0, colon)));
    if (ns != nullptr) local = name.substr(colon + 1);
  }
  xml_internal::ErrorCollector errors;
  xml_internal::ScopedErrorCapture capture(errors);
  if (xmlNewNsProp(element, ns, xml_internal::XmlText(local), xml_internal::XmlText(value)) ==
      nullptr) {
    throw std::bad_alloc();
  }
}

void XmlNode::RemoveAttribute(const std::string& name) const {
  xmlAttrPtr attr = xml_internal::FindAttribute(CheckedElement(*this), name);
  if (attr != nullptr) core_->Orphan(reinterpret_cast<xmlNodePtr>(attr));
}

XmlNode XmlNode::AppendChild(const XmlNode& new_child) const {
  return InsertBefore(new_child, XmlNode());
}

XmlNode XmlNode::InsertBefore(const XmlNode& new_child, const XmlNode& ref_child) const {
  xmlNodePtr parent = Checked(*this);
  xmlNodePtr ref = Access::Raw(ref_child);
  if (ref != nullptr && (ref->parent != parent || ref->type == XML_ATTRIBUTE_NODE)) {
    RaiseXmlFailure(kRefNotAChild);
  }
  xmlNodePtr node = PrepareChild(parent, Access::Raw(new_child), nullptr);
  if (node == ref) return new_child;
  LinkPrepared(*core_, parent, node, ref);
  return Access::MakeNode(core_, node);
}

XmlNode XmlNode::ReplaceChild(const XmlNode& new_child, const XmlNode& old_child) const {
  xmlNodePtr parent = Checked(*this);
  xmlNodePtr old = Access::Raw(old_child);
  if (old == nullptr || old->parent != parent || old->type == XML_ATTRIBUTE_NODE) {
    RaiseXmlFailure(kNotAChild);
  }
  if (IsDocumentType(old)) RaiseXmlFailure(kDocumentType);
  xmlNodePtr node = PrepareChild(parent, Access::Raw(new_child), old);
  if (node == old) return old_child;
  LinkPrepared(*core_, parent, node, old);
  core_->Orphan(old);
  return old_child;
}

XmlNode XmlNode::RemoveChild(const XmlNode& child) const {
  xmlNodePtr parent = Checked(*this);
  xmlNodePtr node = Access::Raw(child);
  if (node == nullptr || node->parent != parent || node->type == XML_ATTRIBUTE_NODE) {
    RaiseXmlFailure(kNotAChild);
  }
  // Entity references point into the DTD's declarations; it stays put.
  if (IsDocumentType(node)) RaiseXmlFailure(kDocumentType);
  core_->Orphan(node);
  return child;
}

XmlNode XmlNode::CloneNode(bool deep) const {
  xmlNodePtr node = Checked(*this);
  xml_internal::ErrorCollector errors;
  xml_internal::ScopedErrorCapture capture(errors);
  if (IsDocument(node)) {
    xml_internal::DocPtr copy(xmlCopyDoc(node->doc, deep ? 1 : 0));
    if (!copy) throw std::bad_alloc();
    xml_internal::MarkUtf8(copy.get());
    auto core = std::make_shared<DocumentCore>(std::move(copy));
    return Access::MakeNode(core, core->doc_node());
  }
  switch (node->type) {
    case XML_ELEMENT_NODE:
    case XML_ATTRIBUTE_NODE:
    case XML_TEXT_NODE:
    case XML_CDATA_SECTION_NODE:
    case XML_ENTITY_REF_NODE:
    case XML_PI_NODE:
    case XML_COMMENT_NODE:
      break;
    default:
      RaiseXmlFailure(kCannotClone);
  }
  // 2 = the node with its attributes and namespace declarations.
  xmlNodePtr copy = xmlDocCopyNode(node, node->doc, deep ? 1 : 2);
  if (copy == nullptr) RaiseXmlFailure(errors.Message(), "The node cannot be copied.");
  if (copy->type == XML_ATTRIBUTE_NODE && node->ns != nullptr && copy->ns == nullptr) {
    copy->ns = node->ns == node->doc->oldNs ? node->ns : core_->StableNs(node->ns);
  }
  core_->AddOrphan(copy);
  return Access::MakeNode(core_, copy);
}

XmlNodeList XmlNode::SelectNodes(const std::string& xpath) const {
  return Access::MakeList(core_, xml_internal::SelectRaw(Checked(*this), xpath));
}

XmlNode XmlNode::SelectSingleNode(const std::string& xpath) const {
  std::vector<xmlNodePtr> nodes = xml_internal::SelectRaw(Checked(*this), xpath);
  if (nodes.empty()) return XmlNode();
  return Access::MakeNode(core_, nodes.front());
}

}  // namespace veld
