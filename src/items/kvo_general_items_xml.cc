// The XML form of the item collection: Save, SaveFile, Parse, ParseFile.
#include <new>
#include <string_view>
#include <vector>

#include <libxml/tree.h>

#include "items/items_element.h"
#include "runtime/text.h"
#include "veld/items/kvo_general_items.h"
#include "veld/runtime/automation_error.h"
#include "veld/xml/xml_document.h"
#include "xml/xml_errors.h"
#include "xml/xml_handles.h"
#include "xml/xml_internal.h"
#include "xml/xml_tree.h"

namespace veld {

namespace {

// The failures of the XML members carry their message to the caller's
// message argument and go no further.
struct XmlMemberFailure {
  std::string message;
};

[[noreturn]] void FailWith(std::string message) { throw XmlMemberFailure{std::move(message)}; }

// Runs one XML member: true when `body` completes, otherwise false with the
// failure's text in `message` (when given). Nothing is raised; the thread's
// current error is cleared as a handled error leaves it.
template <class Body>
bool RunXmlMember(std::string* message, Body&& body) {
  std::string text;
  try {
    body();
    return true;
  } catch (const XmlMemberFailure& failure) {
    text = failure.message;
  } catch (const AutomationError& error) {
    text = error.Description();
    Err().Clear();
  } catch (const std::bad_alloc&) {
    text = ErrorText(errnum::kOutOfMemory);
  }
  if (message != nullptr) *message = std::move(text);
  return false;
}

bool IsNcName(std::string_view name) {
  return name.find(':') == std::string_view::npos && xml_internal::IsValidName(std::string(name));
}

// Root tags named "xmlns" or "xmlns:prefix" (as Parse reads namespace
// declarations) become declarations again rather than plain attributes, so
// that the saved text declares the prefixes it uses. False for other names.
bool DeclareNamespace(const XmlNode& root, const std::string& name, const std::string& uri) {
  if (name != "xmlns" && !name.starts_with("xmlns:")) return false;
  const std::string prefix = name == "xmlns" ? "" : name.substr(6);
  if (!prefix.empty() && (!IsNcName(prefix) || uri.empty())) {
    xml_internal::RaiseXmlFailure("'" + name + "' cannot declare the namespace '" + uri + "'.");
  }
  xmlNodePtr element = xml_internal::LibxmlNode(root);
  const xmlChar* wanted = prefix.empty() ? nullptr : BAD_CAST prefix.c_str();
  for (xmlNsPtr ns = element->nsDef; ns != nullptr; ns = ns->next) {
    if (xmlStrEqual(ns->prefix, wanted)) {
      xmlFree(const_cast<xmlChar*>(ns->href));
      ns->href = xmlStrdup(BAD_CAST uri.c_str());
      return true;
    }
  }
  // libxml2 refuses the reserved prefixes "xml" and "xmlns" here.
  if (xmlNewNs(element, BAD_CAST uri.c_str(), wanted) == nullptr) {
    xml_internal::RaiseXmlFailure("'" + name + "' cannot declare the namespace '" + uri + "'.");
  }
  return true;
}

XmlDocument BuildDocument(const KvoGeneralItems& items, const std::string& root_key,
                          const std::string& item_tag) {
  XmlDocument doc;
  doc.AppendChild(doc.CreateElement(root_key));
  XmlNode root = doc.DocumentElement();
  if (!root) FailWith("Failed to create xml root element.");
  // A later tag of the same name overwrites the earlier attribute value.
  for (int32_t i = 1; i <= items.RootTagCount(); ++i) {
    const KvoGeneralItems::ItemPtr tag = items.RootTagItem(i);
    if (!DeclareNamespace(root, tag->Name, tag->Value)) root.SetAttribute(tag->Name, tag->Value);
  }
  if (items.Count() == 0) return doc;
  // The XML layer makes (and checks the name of) one item element; the
  // others are shallow copies of it, linked and given their attributes
  // directly, which keeps large collections cheap.
  const XmlNode model = doc.CreateElement(item_tag);
  xmlNodePtr raw_root = xml_internal::LibxmlNode(root);
  for (const KvoGeneralItems::ItemPtr& item : items) {
    xmlNodePtr element = xmlDocCopyNode(xml_internal::LibxmlNode(model), raw_root->doc, 2);
    if (element == nullptr) throw std::bad_alloc();
    xml_internal::LinkChild(raw_root, element, nullptr);
    auto add = [element](const char* name, const std::string& value) {
      if (xmlNewProp(element, BAD_CAST name, BAD_CAST value.c_str()) == nullptr) {
        throw std::bad_alloc();
      }
    };
    add("name", item->Name);
    add("value", item->Value);
    if (!item->TypeString.empty()) add("type", item->TypeString);
    if (!item->ExtraValue.empty()) add("extra", item->ExtraValue);
  }
  return doc;
}

// True when `element` passes "[@name!='']": it has a "name" attribute (no
// namespace) whose value is not empty.
bool HasNonEmptyName(const xmlNode* element) {
  const xmlAttr* attr = xml_internal::FindAttribute(element, "name");
  if (attr == nullptr) return false;
  for (const xmlNode* child = attr->children; child != nullptr; child = child->next) {
    if (child->content != nullptr && child->content[0] != '\0') return true;
    if (child->type == XML_ENTITY_REF_NODE) return !xml_internal::DomText(child).empty();
  }
  return false;
}

// The item elements: what "/*/" + tag + "[@name!='']" selects. Element names
// and "*" are matched on the tree directly; any other caller text goes through
// XPath, errors and all. The DOM names of text, comment and CDATA nodes
// ("#text", ...) match no element and select nothing.
struct ItemElements {
  std::vector<xmlNodePtr> nodes;
  // Keeps a document made for the selection alive while its nodes are read.
  XmlDocument keep;
};

ItemElements SelectItemElements(const XmlNode& root, const std::string& tag) {
  ItemElements selected;
  xmlNodePtr raw_root = xml_internal::LibxmlNode(root);
  if (tag.starts_with('#')) return selected;
  if (tag == "*" || IsNcName(tag)) {
    const bool any = tag == "*";
    for (xmlNodePtr child = raw_root->children; child != nullptr; child = child->next) {
      if (child->type != XML_ELEMENT_NODE) continue;
      if (!any && (child->ns != nullptr || tag != reinterpret_cast<const char*>(child->name))) {
        continue;
      }
      if (HasNonEmptyName(child)) selected.nodes.push_back(child);
    }
    return selected;
  }
  // The expression starts at the document, so an element that is not its
  // document's root is looked at in a document of its own.
  XmlDocument doc = root.OwnerDocument();
  if (xml_internal::LibxmlNode(doc.DocumentElement()) != raw_root) {
    doc = XmlDocument();
    doc.AppendChild(root.CloneNode(true));
  }
  XmlNodeList nodes = doc.SelectNodes("/*/" + tag + "[@name!='']");
  for (const XmlNode& node : nodes) {
    if (node.NodeType() == NODE_ELEMENT) selected.nodes.push_back(xml_internal::LibxmlNode(node));
  }
  selected.keep = doc;
  return selected;
}

// The attribute's value, or failing the attribute the element's first text
// child (CDATA does not count), or "".
std::string AttributeOrText(const xmlNode* element, std::string_view name) {
  if (const xmlAttr* attr = xml_internal::FindAttribute(element, name)) {
    return xml_internal::DomNodeValue(reinterpret_cast<const xmlNode*>(attr));
  }
  for (const xmlNode* child = element->children; child != nullptr; child = child->next) {
    if (child->type == XML_TEXT_NODE) return xml_internal::DomNodeValue(child);
  }
  return "";
}

std::string ItemTagFor(const XmlNode& root, const std::string& item_tag) {
  if (!item_tag.empty()) return item_tag;
  // Whatever the first child is: a leading comment or text node names no
  // element, and the document then yields no items.
  if (XmlNode first = root.FirstChild()) return first.NodeName();
  return "*";
}

}  // namespace

bool KvoGeneralItems::Save(std::string& sItemsXml, const std::string& sRootKey,
                           const std::string& sItemTag, std::string* sSaveErrMsg) const {
  return RunXmlMember(sSaveErrMsg,
                      [&] { sItemsXml = BuildDocument(*this, sRootKey, sItemTag).Xml(); });
}

bool KvoGeneralItems::SaveFile(const std::string& sFilename, const std::string& sRootKey,
                               const std::string& sItemTag, std::string* sSaveErrMsg) const {
  return RunXmlMember(sSaveErrMsg,
                      [&] { BuildDocument(*this, sRootKey, sItemTag).Save(sFilename); });
}

bool KvoGeneralItems::Parse(const std::string& sItemsXml, bool bNameAsKey,
                            const std::string& sItemTag, std::string* sParseErrMsg) {
  const bool parsed = RunXmlMember(sParseErrMsg, [&] {
    Reset();
    if (Trim(sItemsXml).empty()) return;
    XmlDocument doc;
    if (!doc.LoadXml(sItemsXml)) FailWith("Failed to load items Xml.");
    Fill(doc.DocumentElement(), bNameAsKey, sItemTag);
  });
  if (!parsed) Reset();
  return parsed;
}

bool KvoGeneralItems::ParseFile(const std::string& sFilename, bool bNameAsKey,
                                const std::string& sItemTag, std::string* sParseErrMsg) {
  const bool parsed = RunXmlMember(sParseErrMsg, [&] {
    Reset();
    XmlDocument doc;
    if (!doc.Load(sFilename)) FailWith("Failed to load items Xml.");
    Fill(doc.DocumentElement(), bNameAsKey, sItemTag);
  });
  if (!parsed) Reset();
  return parsed;
}

void KvoGeneralItems::Fill(const XmlNode& root, bool bNameAsKey, const std::string& sItemTag) {
  Reset();
  // Namespace declarations are attributes of the root too, so that a saved
  // collection declares the prefixes its other root tags use. The parser
  // keeps them apart from the attributes; they come first.
  for (const xmlNs* ns = xml_internal::LibxmlNode(root)->nsDef; ns != nullptr; ns = ns->next) {
    const std::string prefix =
        ns->prefix != nullptr ? reinterpret_cast<const char*>(ns->prefix) : "";
    SetRootTag(prefix.empty() ? "xmlns" : "xmlns:" + prefix,
               ns->href != nullptr ? reinterpret_cast<const char*>(ns->href) : "");
  }
  for (const XmlNode& attribute : root.Attributes()) {
    SetRootTag(attribute.NodeName(), attribute.NodeValue());
  }
  const ItemElements elements = SelectItemElements(root, ItemTagFor(root, sItemTag));
  for (xmlNodePtr element : elements.nodes) {
    std::string name = Trim(AttributeOrText(element, "name"));
    std::string value = Trim(AttributeOrText(element, "value"));
    std::string type = Trim(AttributeOrText(element, "type"));
    std::string extra = Trim(AttributeOrText(element, "extra"));
    // With names as keys, a second name equal ignoring case raises the
    // duplicate-key error, which fails the whole parse.
    if (Add(name, value, type, extra, bNameAsKey ? name : std::string()) == nullptr) {
      FailWith("Failed to add new item.");
    }
  }
}

namespace items_internal {

bool ParseElement(KvoGeneralItems& items, const XmlNode& root, bool bNameAsKey,
                  const std::string& sItemTag, std::string* sParseErrMsg) {
  const bool parsed = RunXmlMember(sParseErrMsg, [&] { items.Fill(root, bNameAsKey, sItemTag); });
  if (!parsed) items.Reset();
  return parsed;
}

namespace {

bool IsBlankContent(const xmlChar* text) {
  if (text == nullptr) return true;
  for (; *text != 0; ++text) {
    if (*text != ' ' && *text != '\t' && *text != '\n' && *text != '\r') return false;
  }
  return true;
}

bool IsPlainContent(const xmlNode* first);

// True when an attribute reads the same in place as from written-out text:
// no namespace, a value of plain text (no entity references).
bool IsPlainAttribute(const xmlAttr* attr) {
  if (attr->ns != nullptr) return false;
  for (const xmlNode* part = attr->children; part != nullptr; part = part->next) {
    if (part->type != XML_TEXT_NODE) return false;
  }
  return true;
}

// The same for an element and everything below it: no namespaces, plain
// attributes, no entity references or other special nodes, and no
// whitespace-only text (which a fresh parse would drop).
bool IsPlainElement(const xmlNode* element) {
  if (element->ns != nullptr || element->nsDef != nullptr) return false;
  for (const xmlAttr* attr = element->properties; attr != nullptr; attr = attr->next) {
    if (!IsPlainAttribute(attr)) return false;
  }
  return IsPlainContent(element->children);
}

// The same for one node (an element with its subtree).
bool IsPlainNode(const xmlNode* node) {
  switch (node->type) {
    case XML_ELEMENT_NODE:
      return IsPlainElement(node);
    case XML_TEXT_NODE:
      return !IsBlankContent(node->content);
    case XML_CDATA_SECTION_NODE:
    case XML_COMMENT_NODE:
    case XML_PI_NODE:
      return true;
    default:
      return false;
  }
}

// The same for the siblings from `first` on.
bool IsPlainContent(const xmlNode* first) {
  for (const xmlNode* child = first; child != nullptr; child = child->next) {
    if (!IsPlainNode(child)) return false;
  }
  return true;
}

// `out` = the text of `parts` (an attribute's text children, or one text
// node when `single`), trimmed of spaces; reuses the buffer of `out`.
void AssignTrimmed(std::string& out, const xmlNode* parts, bool single) {
  std::string_view text;
  if (parts != nullptr && (single || parts->next == nullptr)) {
    text = xml_internal::TextView(parts->content);
  } else {
    out.clear();
    for (const xmlNode* part = parts; part != nullptr; part = part->next) {
      out += xml_internal::TextView(part->content);
    }
    text = out;
  }
  size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) {
    out.clear();
    return;
  }
  size_t last = text.find_last_not_of(' ');
  if (text.data() == out.data()) {
    out.erase(last + 1);
    out.erase(0, first);
  } else {
    out.assign(text.substr(first, last - first + 1));
  }
}

// AttributeOrText for a plain element whose attribute is `attr` (or null).
void AssignAttributeOrText(std::string& out, const xmlNode* element, const xmlAttr* attr) {
  if (attr != nullptr) {
    AssignTrimmed(out, attr->children, false);
    return;
  }
  for (const xmlNode* child = element->children; child != nullptr; child = child->next) {
    if (child->type == XML_TEXT_NODE) {
      AssignTrimmed(out, child, true);
      return;
    }
  }
  out.clear();
}

// "[@name!='']" for a plain attribute.
bool IsNonEmpty(const xmlAttr* attr) {
  if (attr == nullptr) return false;
  for (const xmlNode* part = attr->children; part != nullptr; part = part->next) {
    if (part->content != nullptr && part->content[0] != '\0') return true;
  }
  return false;
}

// Checks that `child`, an element child of the item root, reads the same in
// place, and reads its item when it has the item tag and a name. False when
// it is not plain.
bool ReadPlainItem(const xmlNode* child, const xmlChar* tag, size_t& count,
                   std::vector<std::string>& names, std::vector<std::string>& values) {
  if (child->ns != nullptr || child->nsDef != nullptr) return false;
  const xmlAttr* name = nullptr;
  const xmlAttr* value = nullptr;
  for (const xmlAttr* attr = child->properties; attr != nullptr; attr = attr->next) {
    if (!IsPlainAttribute(attr)) return false;
    if (name == nullptr && xmlStrEqual(attr->name, BAD_CAST "name")) {
      name = attr;
    } else if (value == nullptr && xmlStrEqual(attr->name, BAD_CAST "value")) {
      value = attr;
    }
  }
  if (!IsPlainContent(child->children)) return false;
  if (tag == nullptr || !xmlStrEqual(child->name, tag) || !IsNonEmpty(name)) return true;
  if (count == names.size()) {
    names.emplace_back();
    values.emplace_back();
  }
  AssignAttributeOrText(names[count], child, name);
  AssignAttributeOrText(values[count], child, value);
  ++count;
  return true;
}

}  // namespace

bool ReadPlainNamesAndValues(const xmlNode* root, std::vector<std::string>& names,
                             std::vector<std::string>& values) {
  if (root == nullptr || root->type != XML_ELEMENT_NODE) return false;
  if (root->ns != nullptr || root->nsDef != nullptr) return false;
  for (const xmlAttr* attr = root->properties; attr != nullptr; attr = attr->next) {
    if (!IsPlainAttribute(attr)) return false;
  }
  // The item tag is the first child's name; a first child that is text, a
  // comment or CDATA names no element, so there are no items then.
  const xmlNode* first = root->children;
  const xmlChar* tag = nullptr;
  if (first != nullptr && first->type == XML_PI_NODE) return false;
  if (first != nullptr && first->type == XML_ELEMENT_NODE) {
    // Parse matches other names through XPath (a colon without a namespace,
    // characters the name check does not take).
    if (!IsNcName(reinterpret_cast<const char*>(first->name))) return false;
    tag = first->name;
  }
  size_t count = 0;
  for (const xmlNode* child = first; child != nullptr; child = child->next) {
    if (child->type != XML_ELEMENT_NODE) {
      if (!IsPlainNode(child)) return false;
      continue;
    }
    if (!ReadPlainItem(child, tag, count, names, values)) return false;
  }
  names.resize(count);
  values.resize(count);
  return true;
}

bool ReadPlainColsOf(const xmlNode* row, std::vector<std::string>& names,
                     std::vector<std::string>& values) {
  // The copy holds only the cols, so its item tag is "col" when it has any.
  size_t count = 0;
  for (const xmlNode* child = row->children; child != nullptr; child = child->next) {
    if (child->type != XML_ELEMENT_NODE || child->ns != nullptr ||
        !xmlStrEqual(child->name, BAD_CAST "col")) {
      continue;
    }
    if (!ReadPlainItem(child, child->name, count, names, values)) return false;
  }
  names.resize(count);
  values.resize(count);
  return true;
}

}  // namespace items_internal

}  // namespace veld
