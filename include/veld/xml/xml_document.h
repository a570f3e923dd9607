// XmlDocument: an XML document in memory with the operations of the classic
// DOM document that the library uses: load from text or a file, save,
// serialise, create nodes, and select with XPath 1.0.
//
// XmlDocument is a handle, like a reference to a COM document object: copies
// refer to the SAME document, so a document handed to a caller, or passed in
// to be filled, is shared, and a LoadXml through one copy is seen through all.
// Assigning another XmlDocument (for example `doc = XmlDocument();`) makes the
// handle refer to that document instead and leaves the others alone.
// The document's own changing operations are non-const; nodes taken from a
// const document can still be changed through their handles.
//
// Nodes and node lists handed out keep what they refer to alive: they stay
// usable after the document is loaded again or the handle reassigned.
//
// Loading rules, which the library's classes rely on:
//  - whitespace-only text nodes are dropped everywhere, except inside an
//    element with xml:space="preserve" (and its descendants, until one says
//    xml:space="default"), and directly inside an XSLT xsl:text element;
//  - CDATA sections stay CDATA section nodes; internal entity references
//    stay entity reference nodes;
//  - the network is never touched, no external DTD is loaded and no external
//    entity is expanded; entity expansion stays within the parser's limits.
//
// Serialisation (Xml, Save) writes no XML declaration, no indentation and
// nothing between top-level nodes; non-ASCII characters are written as
// UTF-8, never as character references.
//
// Failures raise AutomationError: errnum::kXmlFailure for DOM and XPath
// failures, errnum::kXmlPathNotFound / errnum::kXmlAccessDenied for file
// errors of Save. Loading never raises; it returns false and sets ParseError.
#ifndef VELD_XML_XML_DOCUMENT_H_
#define VELD_XML_XML_DOCUMENT_H_

#include <memory>
#include <string>

#include "veld/export.h"
#include "veld/xml/xml_node.h"
#include "veld/xml/xml_node_list.h"
#include "veld/xml/xml_parse_error.h"

namespace veld {

namespace xml_internal {
class DocumentState;
}  // namespace xml_internal

class VELD_EXPORT XmlDocument {
 public:
  // A new, empty document (no root element).
  XmlDocument();
  // Copies refer to the same document.
  XmlDocument(const XmlDocument& other) = default;
  XmlDocument(XmlDocument&& other) noexcept = default;
  XmlDocument& operator=(const XmlDocument& other) = default;
  XmlDocument& operator=(XmlDocument&& other) noexcept = default;
  ~XmlDocument();

  // True when both handles refer to the same document.
  bool operator==(const XmlDocument& other) const noexcept { return state_ == other.state_; }

  // --- Loading and saving ---

  // Replaces the content with the document parsed from `text`, which is
  // always read as UTF-8 whatever its XML declaration says. Returns true on
  // success. On malformed text returns false, leaves the document empty and
  // sets ParseError.
  bool LoadXml(const std::string& text);
  // Replaces the content with the document read from the file at `path`
  // (UTF-8 path). The file's own encoding declaration (or byte order mark) is
  // honoured. Returns false when the file cannot be read or is malformed,
  // leaving the document empty and ParseError saying why.
  bool Load(const std::string& path);
  // Why the last load failed; all zero/empty after a successful one.
  const XmlParseError& ParseError() const;

  // Writes Xml() to the file at `path`, replacing it: UTF-8, no declaration.
  // Raises kXmlPathNotFound "The system cannot find the path specified." when
  // the directory does not exist, kXmlAccessDenied "Access is denied." when
  // the file cannot be written, kXmlFailure for other write failures.
  void Save(const std::string& path) const;
  // The document serialised: each top-level node in order, nothing between
  // them. "" for an empty document.
  std::string Xml() const;

  // --- Content ---

  // The root element, or null when there is none.
  XmlNode DocumentElement() const;
  // The document node itself (node type 9).
  XmlNode AsNode() const;
  XmlNodeList ChildNodes() const;
  bool HasChildNodes() const;
  // True when the document has no child nodes at all.
  bool IsEmpty() const { return !HasChildNodes(); }

  // New nodes of this document, in no tree until inserted. CreateElement,
  // CreateProcessingInstruction raise kXmlFailure for an invalid name.
  XmlNode CreateElement(const std::string& name);
  XmlNode CreateTextNode(const std::string& text);
  XmlNode CreateComment(const std::string& text);
  XmlNode CreateCDataSection(const std::string& text);
  XmlNode CreateProcessingInstruction(const std::string& target, const std::string& data);

  // The node operations of XmlNode applied to the document node. The
  // document takes one element (its root), comments and processing
  // instructions; a second element raises kXmlFailure. A node of another
  // document is copied in, and the copy returned.
  XmlNode AppendChild(const XmlNode& new_child);
  XmlNode InsertBefore(const XmlNode& new_child, const XmlNode& ref_child);
  XmlNode ReplaceChild(const XmlNode& new_child, const XmlNode& old_child);
  XmlNode RemoveChild(const XmlNode& child);

  // XPath 1.0 with the document node as the context; see XmlNode.
  XmlNodeList SelectNodes(const std::string& xpath) const;
  XmlNode SelectSingleNode(const std::string& xpath) const;

 private:
  friend struct xml_internal::Access;
  explicit XmlDocument(std::shared_ptr<xml_internal::DocumentState> state) noexcept;

  std::shared_ptr<xml_internal::DocumentState> state_;
};

}  // namespace veld

#endif  // VELD_XML_XML_DOCUMENT_H_
