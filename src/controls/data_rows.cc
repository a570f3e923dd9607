#include "controls/data_rows.h"

#include <vector>

#include <libxml/tree.h>

#include "foundation/xml_utils.h"
#include "runtime/text.h"
#include "veld/xml/xml_node_list.h"
#include "xml/xml_internal.h"

namespace veld::controls_internal {

namespace {

// The string value XPath gives an attribute.
std::string AttributeValue(xmlAttrPtr attribute) {
  const xmlNode* child = attribute->children;
  if (child == nullptr) return {};
  if (child->next == nullptr && child->type == XML_TEXT_NODE && child->content != nullptr)
    return reinterpret_cast<const char*>(child->content);
  xmlChar* content = xmlNodeGetContent(reinterpret_cast<xmlNodePtr>(attribute));
  std::string value = content != nullptr ? reinterpret_cast<const char*>(content) : "";
  xmlFree(content);
  return value;
}

bool AttributeEquals(xmlAttrPtr attribute, const std::string& text) {
  const xmlNode* child = attribute->children;
  if (child != nullptr && child->next == nullptr && child->type == XML_TEXT_NODE &&
      child->content != nullptr)
    return text == reinterpret_cast<const char*>(child->content);
  if (child == nullptr) return text.empty();
  return AttributeValue(attribute) == text;
}

// The attribute `name` in no namespace, as XPath's @name sees it.
xmlAttrPtr FindAttribute(xmlNodePtr element, const char* name) {
  for (xmlAttrPtr attribute = element->properties; attribute != nullptr;
       attribute = attribute->next) {
    if (attribute->ns == nullptr && xmlStrEqual(attribute->name, BAD_CAST name)) return attribute;
  }
  return nullptr;
}

// A field the XPath could read differently from a plain comparison: an
// apostrophe ends its literal (and fails it), a NUL ends the expression.
bool NeedsXPath(const std::string& field) {
  return field.find('\'') != std::string::npos || field.find('\0') != std::string::npos;
}

// The first "col" child in no namespace whose "name" is `field` (and that
// has a "value", when `with_value` is set): what "col[@name='field']" and
// "col[@name='field']/@value" select first.
xmlNodePtr FindCol(xmlNodePtr row, const std::string& field, bool with_value) {
  for (xmlNodePtr child = row->children; child != nullptr; child = child->next) {
    if (child->type != XML_ELEMENT_NODE || child->ns != nullptr ||
        !xmlStrEqual(child->name, BAD_CAST "col"))
      continue;
    const xmlAttrPtr name = FindAttribute(child, "name");
    if (name == nullptr || !AttributeEquals(name, field)) continue;
    if (with_value && FindAttribute(child, "value") == nullptr) continue;
    return child;
  }
  return nullptr;
}

}  // namespace

std::string ColumnMatch(const std::string& field, const std::string& op, const std::string& value) {
  return " and col[@name='" + field + "' and @value" + op + "'" + EscapeXmlText(Trim(value)) + "']";
}

void MatchFieldNamesUpper(const XmlDocument& data, std::initializer_list<std::string*> names) {
  XmlNodeList cols = data.SelectNodes("//data[1]/row[1]/col");
  const int32_t count = cols.Length();
  for (int32_t i = 0; i < count; ++i) {
    const XmlNode col = cols.Item(i);
    const std::string spelt = GetNodeAttribute(col, "name", "");
    const std::string wanted = UCase(Trim(spelt));
    for (std::string* name : names) {
      if (UCase(Trim(*name)) == wanted) *name = spelt;
    }
  }
}

bool ReadCol(const XmlNode& row, const std::string& field, std::string& value) {
  if (NeedsXPath(field)) {
    const XmlNode col = row.SelectSingleNode("col[@name='" + field + "']");
    value = GetNodeAttribute(col, "value", "");
    return !col.IsNull();
  }
  const xmlNodePtr col = FindCol(xml_internal::LibxmlNode(row), field, false);
  const xmlAttrPtr attribute = col == nullptr ? nullptr : FindAttribute(col, "value");
  value = attribute == nullptr ? std::string() : AttributeValue(attribute);
  return col != nullptr;
}

void MatchFieldNamesLower(const XmlNode& sample_row, const std::vector<std::string*>& names) {
  if (sample_row.IsNull()) return;
  XmlNodeList cols = sample_row.SelectNodes("col[@name!='']");
  const int32_t count = cols.Length();
  std::vector<bool> matched(names.size(), false);
  for (int32_t i = 0; i < count; ++i) {
    const std::string spelt = Trim(GetNodeAttribute(cols.Item(i), "name", ""));
    const std::string wanted = LCase(spelt);
    size_t k = 0;
    for (std::string* name : names) {
      if (!matched[k] && LCase(Trim(*name)) == wanted) {
        *name = spelt;
        matched[k] = true;
      }
      ++k;
    }
  }
}

bool ReadColValue(const XmlNode& row, const std::string& field, std::string& value) {
  if (NeedsXPath(field)) {
    const XmlNode attribute = row.SelectSingleNode("col[@name='" + field + "']/@value");
    value = attribute.IsNull() ? std::string() : attribute.NodeValue();
    return !attribute.IsNull();
  }
  const xmlNodePtr col = FindCol(xml_internal::LibxmlNode(row), field, true);
  value = col == nullptr ? std::string() : AttributeValue(FindAttribute(col, "value"));
  return col != nullptr;
}

}  // namespace veld::controls_internal
