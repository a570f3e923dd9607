// For the library's own hot paths: the libxml2 objects behind the XML
// handles, and wrapping libxml2 nodes back into handles.
//
// Rules for code that works on the raw tree:
//  - never free a node or a document, and never call a libxml2 function that
//    frees nodes (xmlAddChild and xmlAddNextSibling/PrevSibling merge and free
//    text nodes, xmlNodeSetContent on elements, xmlSetProp on an existing
//    attribute, xmlRemoveProp, xmlFreeNode, ...): a caller may hold them;
//  - to take a node out of the tree, call OrphanNode (it stays valid for its
//    holders and is freed with its document);
//  - a node made with libxml2 and not linked into the tree must be handed to
//    AdoptNewNode, or it leaks;
//  - a raw pointer to a node that is in no tree is only safe while some
//    XmlNode or XmlNodeList of its document exists (see DocumentCore).
#ifndef VELD_XML_XML_INTERNAL_H_
#define VELD_XML_XML_INTERNAL_H_

#include <memory>
#include <vector>

#include <libxml/tree.h>

#include "veld/xml/xml_document.h"
#include "veld/xml/xml_node.h"
#include "veld/xml/xml_node_list.h"
#include "xml/xml_parser.h"

namespace veld::xml_internal {

class DocumentCore;
class DocumentState;

// Friend of the public handle classes: builds and opens them.
struct Access {
  static XmlNode MakeNode(const std::shared_ptr<DocumentCore>& core, xmlNodePtr node) {
    return XmlNode(core, reinterpret_cast<RawNode*>(node));
  }
  static XmlNodeList MakeList(const std::shared_ptr<DocumentCore>& core,
                              const std::vector<xmlNodePtr>& nodes) {
    auto raw = std::make_shared<std::vector<RawNode*>>();
    raw->reserve(nodes.size());
    for (xmlNodePtr node : nodes) raw->push_back(reinterpret_cast<RawNode*>(node));
    return XmlNodeList(core, std::move(raw));
  }
  static XmlDocument MakeDocument(std::shared_ptr<DocumentState> state) {
    return XmlDocument(std::move(state));
  }
  static xmlNodePtr Raw(const XmlNode& node) { return reinterpret_cast<xmlNodePtr>(node.node_); }
  static const std::shared_ptr<DocumentCore>& Core(const XmlNode& node) { return node.core_; }
  static const std::shared_ptr<DocumentCore>& Core(const XmlNodeList& list) { return list.core_; }
  static const std::shared_ptr<DocumentState>& State(const XmlDocument& doc) { return doc.state_; }
};

// The document object a core belongs to now, or a new one around it when the
// document it came from has moved on to other content.
XmlDocument DocumentFor(const std::shared_ptr<DocumentCore>& core);

// The libxml2 node of a handle (null for a null handle).
inline xmlNodePtr LibxmlNode(const XmlNode& node) { return Access::Raw(node); }
// The libxml2 document of a handle (null for a null handle).
xmlDocPtr LibxmlDoc(const XmlNode& node);
xmlDocPtr LibxmlDoc(const XmlDocument& doc);
// What the parser noted about `doc`'s current document when it was loaded
// (ParseFacts::Unknown() for one that was not loaded). Ask right after the
// load: changes made since are not reflected.
ParseFacts LoadFacts(const XmlDocument& doc);

// A handle to `node`, a node of the same libxml2 document as `anchor`.
XmlNode WrapNode(const XmlNode& anchor, xmlNodePtr node);
// A handle to `node`, a node of `doc`'s current document.
XmlNode WrapNode(const XmlDocument& doc, xmlNodePtr node);
// A list of nodes of `doc`'s current document.
XmlNodeList WrapNodes(const XmlDocument& doc, const std::vector<xmlNodePtr>& nodes);

// Takes `node` (of `doc`'s current document) out of its tree, keeping it
// valid for holders.
void OrphanNode(const XmlDocument& doc, xmlNodePtr node);
// Hands a node made outside any tree to `doc`'s current document to keep.
void AdoptNewNode(const XmlDocument& doc, xmlNodePtr node);

}  // namespace veld::xml_internal

#endif  // VELD_XML_XML_INTERNAL_H_
