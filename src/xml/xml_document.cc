#include "veld/xml/xml_document.h"

#include <new>
#include <utility>

#include "xml/document_core.h"
#include "xml/xml_errors.h"
#include "xml/xml_file.h"
#include "xml/xml_internal.h"
#include "xml/xml_parser.h"
#include "xml/xml_serializer.h"
#include "xml/xml_tree.h"

namespace veld {

using xml_internal::Access;
using xml_internal::DocumentCore;
using xml_internal::DocumentState;
using xml_internal::XmlText;

namespace {

// The node a Create... function made: kept by the core until inserted.
XmlNode Keep(const std::shared_ptr<DocumentCore>& core, xmlNodePtr node) {
  if (node == nullptr) throw std::bad_alloc();
  core->AddOrphan(node);
  return Access::MakeNode(core, node);
}

void CheckName(const std::string& name) {
  if (name.empty()) xml_internal::RaiseXmlFailure("An XML name cannot be empty.");
  if (!xml_internal::IsValidName(name)) {
    xml_internal::RaiseXmlFailure("'" + name + "' is not a valid XML name.");
  }
}

// Makes the parsed document the held one; a failed parse leaves the document
// empty with the parser's error.
bool TakeParsed(DocumentState& state, xml_internal::ParseResult parsed) {
  if (!parsed.doc) {
    state.Replace(DocumentCore::CreateEmpty());
    state.parse_error = std::move(parsed.error);
    return false;
  }
  auto core = std::make_shared<DocumentCore>(std::move(parsed.doc));
  core->set_parse_facts(parsed.facts);
  state.Replace(std::move(core));
  state.parse_error = XmlParseError();
  return true;
}

}  // namespace

XmlParseError::XmlParseError(int32_t error_code, std::string reason, int32_t line, int32_t line_pos,
                             std::string src_text, std::string url, int32_t parser_code)
    : error_code_(error_code),
      reason_(std::move(reason)),
      line_(line),
      line_pos_(line_pos),
      src_text_(std::move(src_text)),
      url_(std::move(url)),
      parser_code_(parser_code) {}

XmlDocument::XmlDocument() : state_(DocumentState::Create(DocumentCore::CreateEmpty())) {}

XmlDocument::XmlDocument(std::shared_ptr<DocumentState> state) noexcept
    : state_(std::move(state)) {}

XmlDocument::~XmlDocument() = default;

bool XmlDocument::LoadXml(const std::string& text) {
  return TakeParsed(*state_,
                    xml_internal::ParseDocument(text, xml_internal::TextEncoding::kUtf8, ""));
}

bool XmlDocument::Load(const std::string& path) {
  return TakeParsed(*state_, xml_internal::ParseFileDocument(path));
}

const XmlParseError& XmlDocument::ParseError() const { return state_->parse_error; }

void XmlDocument::Save(const std::string& path) const { xml_internal::WriteFileBytes(path, Xml()); }

std::string XmlDocument::Xml() const {
  return xml_internal::SerializeNode(state_->core()->doc_node());
}

XmlNode XmlDocument::DocumentElement() const {
  const std::shared_ptr<DocumentCore>& core = state_->core();
  return Access::MakeNode(core, xmlDocGetRootElement(core->doc()));
}

XmlNode XmlDocument::AsNode() const {
  const std::shared_ptr<DocumentCore>& core = state_->core();
  return Access::MakeNode(core, core->doc_node());
}

XmlNodeList XmlDocument::ChildNodes() const { return AsNode().ChildNodes(); }

bool XmlDocument::HasChildNodes() const { return state_->core()->doc()->children != nullptr; }

XmlNode XmlDocument::CreateElement(const std::string& name) {
  CheckName(name);
  const std::shared_ptr<DocumentCore>& core = state_->core();
  return Keep(core, xmlNewDocNode(core->doc(), nullptr, XmlText(name), nullptr));
}

XmlNode XmlDocument::CreateTextNode(const std::string& text) {
  const std::shared_ptr<DocumentCore>& core = state_->core();
  return Keep(core, xmlNewDocText(core->doc(), XmlText(text)));
}

XmlNode XmlDocument::CreateComment(const std::string& text) {
  const std::shared_ptr<DocumentCore>& core = state_->core();
  return Keep(core, xmlNewDocComment(core->doc(), XmlText(text)));
}

XmlNode XmlDocument::CreateCDataSection(const std::string& text) {
  const std::shared_ptr<DocumentCore>& core = state_->core();
  return Keep(core, xmlNewCDataBlock(core->doc(), XmlText(text), static_cast<int>(text.size())));
}

XmlNode XmlDocument::CreateProcessingInstruction(const std::string& target,
                                                 const std::string& data) {
  CheckName(target);
  const std::shared_ptr<DocumentCore>& core = state_->core();
  return Keep(core, xmlNewDocPI(core->doc(), XmlText(target), XmlText(data)));
}

XmlNode XmlDocument::AppendChild(const XmlNode& new_child) {
  return AsNode().AppendChild(new_child);
}

XmlNode XmlDocument::InsertBefore(const XmlNode& new_child, const XmlNode& ref_child) {
  return AsNode().InsertBefore(new_child, ref_child);
}

XmlNode XmlDocument::ReplaceChild(const XmlNode& new_child, const XmlNode& old_child) {
  return AsNode().ReplaceChild(new_child, old_child);
}

XmlNode XmlDocument::RemoveChild(const XmlNode& child) { return AsNode().RemoveChild(child); }

XmlNodeList XmlDocument::SelectNodes(const std::string& xpath) const {
  return AsNode().SelectNodes(xpath);
}

XmlNode XmlDocument::SelectSingleNode(const std::string& xpath) const {
  return AsNode().SelectSingleNode(xpath);
}

namespace xml_internal {

XmlDocument DocumentFor(const std::shared_ptr<DocumentCore>& core) {
  std::shared_ptr<DocumentState> owner = core->owner();
  if (owner != nullptr && owner->core() == core) return Access::MakeDocument(std::move(owner));
  return Access::MakeDocument(DocumentState::Create(core));
}

xmlDocPtr LibxmlDoc(const XmlNode& node) {
  const std::shared_ptr<DocumentCore>& core = Access::Core(node);
  return core == nullptr ? nullptr : core->doc();
}

xmlDocPtr LibxmlDoc(const XmlDocument& doc) { return Access::State(doc)->core()->doc(); }

ParseFacts LoadFacts(const XmlDocument& doc) { return Access::State(doc)->core()->parse_facts(); }

XmlNode WrapNode(const XmlNode& anchor, xmlNodePtr node) {
  return Access::MakeNode(Access::Core(anchor), node);
}

XmlNode WrapNode(const XmlDocument& doc, xmlNodePtr node) {
  return Access::MakeNode(Access::State(doc)->core(), node);
}

XmlNodeList WrapNodes(const XmlDocument& doc, const std::vector<xmlNodePtr>& nodes) {
  return Access::MakeList(Access::State(doc)->core(), nodes);
}

void OrphanNode(const XmlDocument& doc, xmlNodePtr node) {
  Access::State(doc)->core()->Orphan(node);
}

void AdoptNewNode(const XmlDocument& doc, xmlNodePtr node) {
  Access::State(doc)->core()->AddOrphan(node);
}

}  // namespace xml_internal

}  // namespace veld
