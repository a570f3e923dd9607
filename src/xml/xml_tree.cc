#include "xml/xml_tree.h"

#include <new>
#include <string>
#include <unordered_map>
#include <vector>

#include <libxml/entities.h>

#include "xml/xml_errors.h"
#include "xml/xml_handles.h"

namespace veld::xml_internal {
namespace {

// Appends the text below the sibling list starting at `first`. Iterative, so
// that deep trees cannot exhaust the stack; entity references are followed
// into their entity's content.
void AppendTextOf(const xmlNode* first, std::string& out) {
  std::vector<const xmlNode*> resume;
  const xmlNode* cur = first;
  while (cur != nullptr || !resume.empty()) {
    if (cur == nullptr) {
      cur = resume.back();
      resume.pop_back();
      continue;
    }
    const xmlNode* down = nullptr;
    switch (cur->type) {
      case XML_TEXT_NODE:
      case XML_CDATA_SECTION_NODE:
        if (cur->content != nullptr) out += reinterpret_cast<const char*>(cur->content);
        break;
      case XML_ELEMENT_NODE:
      case XML_DOCUMENT_FRAG_NODE:
        down = cur->children;
        break;
      case XML_ENTITY_REF_NODE: {
        const xmlEntity* entity = xmlGetDocEntity(cur->doc, cur->name);
        if (entity != nullptr) down = entity->children;
        break;
      }
      default:
        break;
    }
    if (down != nullptr) {
      if (cur->next != nullptr) resume.push_back(cur->next);
      cur = down;
    } else {
      cur = cur->next;
    }
  }
}

bool UsesNamespaces(xmlNodePtr root) {
  xmlNodePtr cur = root;
  while (cur != nullptr) {
    if (cur->type == XML_ELEMENT_NODE) {
      if (cur->ns != nullptr) return true;
      for (xmlAttrPtr attr = cur->properties; attr != nullptr; attr = attr->next) {
        if (attr->ns != nullptr) return true;
      }
      if (cur->children != nullptr) {
        cur = cur->children;
        continue;
      }
    }
    while (cur != root && cur->next == nullptr) cur = cur->parent;
    if (cur == root) break;
    cur = cur->next;
  }
  return false;
}

}  // namespace

int32_t DomNodeType(const xmlNode* node) {
  switch (node->type) {
    case XML_ELEMENT_NODE:
      return 1;
    case XML_ATTRIBUTE_NODE:
      return 2;
    case XML_TEXT_NODE:
      return 3;
    case XML_CDATA_SECTION_NODE:
      return 4;
    case XML_ENTITY_REF_NODE:
      return 5;
    case XML_ENTITY_NODE:
    case XML_ENTITY_DECL:
      return 6;
    case XML_PI_NODE:
      return 7;
    case XML_COMMENT_NODE:
      return 8;
    case XML_DOCUMENT_NODE:
    case XML_HTML_DOCUMENT_NODE:
      return 9;
    case XML_DOCUMENT_TYPE_NODE:
    case XML_DTD_NODE:
      return 10;
    case XML_DOCUMENT_FRAG_NODE:
      return 11;
    case XML_NOTATION_NODE:
      return 12;
    default:
      return 0;
  }
}

std::string DomNodeName(const xmlNode* node) {
  switch (node->type) {
    case XML_ELEMENT_NODE:
    case XML_ATTRIBUTE_NODE:
      if (node->ns != nullptr && node->ns->prefix != nullptr) {
        return StdText(node->ns->prefix) + ":" + StdText(node->name);
      }
      return StdText(node->name);
    case XML_TEXT_NODE:
      return "#text";
    case XML_CDATA_SECTION_NODE:
      return "#cdata-section";
    case XML_COMMENT_NODE:
      return "#comment";
    case XML_DOCUMENT_NODE:
    case XML_HTML_DOCUMENT_NODE:
      return "#document";
    case XML_DOCUMENT_FRAG_NODE:
      return "#document-fragment";
    default:
      return StdText(node->name);
  }
}

std::string DomNodeValue(const xmlNode* node) {
  switch (node->type) {
    case XML_TEXT_NODE:
    case XML_CDATA_SECTION_NODE:
    case XML_COMMENT_NODE:
    case XML_PI_NODE:
      return StdText(node->content);
    case XML_ATTRIBUTE_NODE: {
      std::string value;
      AppendTextOf(node->children, value);
      return value;
    }
    default:
      return "";
  }
}

std::string DomText(const xmlNode* node) {
  switch (node->type) {
    case XML_ELEMENT_NODE:
    case XML_ATTRIBUTE_NODE:
    case XML_DOCUMENT_NODE:
    case XML_HTML_DOCUMENT_NODE:
    case XML_DOCUMENT_FRAG_NODE: {
      std::string text;
      AppendTextOf(node->children, text);
      return text;
    }
    case XML_ENTITY_REF_NODE: {
      std::string text;
      const xmlEntity* entity = xmlGetDocEntity(node->doc, node->name);
      if (entity != nullptr) AppendTextOf(entity->children, text);
      return text;
    }
    default:
      return DomNodeValue(node);
  }
}

bool HasQualifiedName(const xmlNode* node, std::string_view name) {
  std::string_view local = TextView(node->name);
  if (node->ns == nullptr || node->ns->prefix == nullptr) return name == local;
  std::string_view prefix = TextView(node->ns->prefix);
  return name.size() == prefix.size() + 1 + local.size() && name.starts_with(prefix) &&
         name[prefix.size()] == ':' && name.ends_with(local);
}

xmlAttrPtr FindAttribute(const xmlNode* element, std::string_view name) {
  for (xmlAttrPtr attr = element->properties; attr != nullptr; attr = attr->next) {
    if (HasQualifiedName(reinterpret_cast<const xmlNode*>(attr), name)) return attr;
  }
  return nullptr;
}

void LinkChild(xmlNodePtr parent, xmlNodePtr child, xmlNodePtr ref) {
  child->parent = parent;
  if (ref == nullptr) {
    child->prev = parent->last;
    child->next = nullptr;
    if (parent->last != nullptr) {
      parent->last->next = child;
    } else {
      parent->children = child;
    }
    parent->last = child;
  } else {
    child->next = ref;
    child->prev = ref->prev;
    if (ref->prev != nullptr) {
      ref->prev->next = child;
    } else {
      parent->children = child;
    }
    ref->prev = child;
  }
}

namespace {

// The length of the text `entity` stands for, nested references included;
// remembered per entity, so that each is measured once.
size_t EntityTextSize(const xmlEntity* entity, std::unordered_map<const xmlEntity*, size_t>& sizes,
                      int depth) {
  if (entity == nullptr) return 0;
  auto known = sizes.find(entity);
  if (known != sizes.end()) return known->second;
  size_t size = 0;
  if (entity->children == nullptr) {
    size = entity->content != nullptr ? xmlStrlen(entity->content) : 0;
  } else if (depth < 64) {
    for (const xmlNode* child = entity->children; child != nullptr; child = child->next) {
      std::vector<const xmlNode*> pending{child};
      while (!pending.empty()) {
        const xmlNode* node = pending.back();
        pending.pop_back();
        if (node->type == XML_ENTITY_REF_NODE) {
          size += EntityTextSize(xmlGetDocEntity(node->doc, node->name), sizes, depth + 1);
          continue;
        }
        if (node->content != nullptr) size += xmlStrlen(node->content);
        for (const xmlNode* inner = node->children; inner != nullptr; inner = inner->next) {
          pending.push_back(inner);
        }
      }
    }
  }
  sizes.emplace(entity, size);
  return size;
}

}  // namespace

size_t EntityExpansionSize(const xmlDoc* doc, size_t limit) {
  std::unordered_map<const xmlEntity*, size_t> sizes;
  size_t total = 0;
  std::vector<const xmlNode*> pending;
  for (const xmlNode* child = doc->children; child != nullptr; child = child->next) {
    pending.push_back(child);
  }
  while (!pending.empty() && total <= limit) {
    const xmlNode* node = pending.back();
    pending.pop_back();
    if (node->type == XML_ENTITY_REF_NODE) {
      total += EntityTextSize(xmlGetDocEntity(node->doc, node->name), sizes, 0);
      continue;
    }
    if (node->type != XML_ELEMENT_NODE) continue;
    for (const xmlAttr* attr = node->properties; attr != nullptr; attr = attr->next) {
      for (const xmlNode* value = attr->children; value != nullptr; value = value->next) {
        if (value->type == XML_ENTITY_REF_NODE) pending.push_back(value);
      }
    }
    for (const xmlNode* child = node->children; child != nullptr; child = child->next) {
      pending.push_back(child);
    }
  }
  return total;
}

void ExpandForeignEntityReferences(xmlNodePtr top, const xmlDoc* source) {
  // The text an expansion may add, in all: enough for any honest option or
  // dataset document, far below what would exhaust memory.
  size_t budget = size_t{64} << 20;
  auto charge = [&budget](size_t size) {
    if (size > budget) RaiseXmlFailure("The entities of the document expand beyond the limit.");
    budget -= size;
  };
  auto entity_of = [source](const xmlNode* ref) {
    return xmlGetDocEntity(const_cast<xmlDoc*>(source), ref->name);
  };
  xmlDocPtr target = top->doc;
  auto foreign = [target](const xmlNode* node) {
    return node->type == XML_ENTITY_REF_NODE && xmlGetDocEntity(target, node->name) == nullptr;
  };
  std::vector<xmlNodePtr> elements{top};
  while (!elements.empty()) {
    xmlNodePtr element = elements.back();
    elements.pop_back();
    if (element->type != XML_ELEMENT_NODE) continue;
    for (xmlAttrPtr attr = element->properties; attr != nullptr; attr = attr->next) {
      for (xmlNodePtr child = attr->children; child != nullptr;) {
        xmlNodePtr next = child->next;
        if (foreign(child)) {
          std::string text;
          if (const xmlEntity* entity = entity_of(child)) AppendTextOf(entity->children, text);
          charge(text.size());
          xmlNodePtr replacement = xmlNewDocText(target, XmlText(text));
          if (replacement == nullptr) throw std::bad_alloc();
          LinkChild(reinterpret_cast<xmlNodePtr>(attr), replacement, child);
          xmlUnlinkNode(child);
          xmlFreeNode(child);
        }
        child = next;
      }
    }
    for (xmlNodePtr child = element->children; child != nullptr;) {
      if (!foreign(child)) {
        if (child->type == XML_ELEMENT_NODE) elements.push_back(child);
        child = child->next;
        continue;
      }
      // The entity's nodes go in its place and are looked at in turn: they
      // may hold references themselves.
      xmlNodePtr first = child->next;
      const xmlEntity* entity = entity_of(child);
      if (entity != nullptr && entity->children != nullptr) {
        std::string text;
        AppendTextOf(entity->children, text);
        charge(text.size() + 1);
        xmlNodePtr copies = xmlDocCopyNodeList(target, entity->children);
        if (copies == nullptr) throw std::bad_alloc();
        first = copies;
        while (copies != nullptr) {
          xmlNodePtr next = copies->next;
          copies->next = copies->prev = nullptr;
          LinkChild(element, copies, child);
          copies = next;
        }
      }
      xmlUnlinkNode(child);
      xmlFreeNode(child);
      child = first;
    }
  }
}

void ReconcileNamespaces(xmlNodePtr element) {
  // Most documents use no namespaces at all; then there is nothing to fix.
  if (!UsesNamespaces(element)) return;
  xmlDOMWrapReconcileNamespaces(nullptr, element, 0);
}

bool IsValidName(const std::string& name) {
  return !name.empty() && xmlValidateName(XmlText(name), 0) == 0;
}

}  // namespace veld::xml_internal
