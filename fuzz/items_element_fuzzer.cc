// Reading an element's items in place against parsing the element's text:
// for every element of an arbitrary document, either the in-place read
// refuses the element, or it gives exactly the names and values that
// KvoGeneralItems::Parse of the element's text gives.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include <libxml/tree.h>

#include "items/items_element.h"
#include "veld/items/kvo_general_items.h"
#include "veld/xml/xml_document.h"
#include "xml/xml_internal.h"

namespace {

void Check(bool condition) {
  if (!condition) std::abort();
}

void CompareBelow(const veld::XmlDocument& doc, xmlNodePtr parent, int depth,
                  std::vector<std::string>& names, std::vector<std::string>& values) {
  if (depth > 64) return;
  for (xmlNodePtr node = parent->children; node != nullptr; node = node->next) {
    if (node->type != XML_ELEMENT_NODE) continue;
    if (veld::items_internal::ReadPlainNamesAndValues(node, names, values)) {
      veld::KvoGeneralItems items;
      std::string message;
      const std::string text = veld::xml_internal::WrapNode(doc, node).Xml();
      Check(items.Parse(text, false, "", &message));
      Check(items.Count() == static_cast<int32_t>(names.size()));
      Check(names.size() == values.size());
      size_t i = 0;
      for (const auto& item : items) {
        Check(item->Name == names[i] && item->Value == values[i]);
        ++i;
      }
    }
    CompareBelow(doc, node, depth + 1, names, values);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  veld::XmlDocument doc;
  if (!doc.LoadXml(std::string(reinterpret_cast<const char*>(data), size))) return 0;
  std::vector<std::string> names;
  std::vector<std::string> values;
  CompareBelow(doc, reinterpret_cast<xmlNodePtr>(veld::xml_internal::LibxmlDoc(doc)), 0, names,
               values);
  return 0;
}
