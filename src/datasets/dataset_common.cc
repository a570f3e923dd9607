#include "datasets/dataset_common.h"

#include <new>
#include <unordered_set>

#include "foundation/xml_utils.h"
#include "runtime/text.h"
#include "veld/runtime/automation_error.h"
#include "xml/xml_handles.h"
#include "xml/xml_internal.h"
#include "xml/xml_serializer.h"
#include "xml/xml_tree.h"
#include "xml/xml_xpath.h"

namespace veld::datasets_internal {

namespace xi = xml_internal;

void Check(const std::string& message) { RaiseError(ErrorInfo{errnum::kCheckFailed, message}); }

std::string NodeText(xmlNodePtr node) { return xi::SerializeNode(node); }

std::string GetDataIDFromXml(const std::string& data_xml) {
  if (Trim(data_xml).empty()) return "";
  XmlDocument doc;
  if (!doc.LoadXml(data_xml)) Check(kFailedLoadDataXml);
  return GetNodeAttribute(doc.DocumentElement(), "guid", "");
}

xmlNodePtr EnsureDataElement(DatasetStore& store, const std::string& id) {
  if (id.empty()) Check(kNoDataId);
  if (xmlNodePtr found = store.FirstData(id)) return found;
  return store.AppendData(id);
}

void RemoveDataChildren(DatasetStore& store, const std::string& id) {
  DatasetStore::DataRef ref = store.ResolveData(id);
  if (!ref.indexed) {
    store.RemoveSelected(ref.xpath + "/*");
    return;
  }
  for (xmlNodePtr data : ref.matches) store.RemoveElementChildren(data);
}

std::vector<xmlNodePtr> KeyColRows(DatasetStore& store, const std::string& data_id,
                                   const std::string& name, const std::string& value) {
  if (Trim(name).empty()) Check(kKeyColumnNotSpecified);
  xmlNodePtr data = store.FirstData(data_id);
  if (data == nullptr) Check(DataNotFound(data_id));
  std::string key = EscapeXmlText(Trim(name));
  std::string wanted = EscapeXmlText(Trim(value));
  if (!IsPlainLiteral(key) || !IsPlainLiteral(wanted)) {
    return xi::SelectRaw(data, "row[col[@name='" + key + "' and @value='" + wanted + "']]");
  }
  std::vector<xmlNodePtr> rows;
  for (xmlNodePtr row = data->children; row != nullptr; row = row->next) {
    if (!IsNamed(row, "row")) continue;
    for (xmlNodePtr col = row->children; col != nullptr; col = col->next) {
      if (!IsNamed(col, "col")) continue;
      if (AttributeEquals(FindPlainAttribute(col, "name"), key) &&
          AttributeEquals(FindPlainAttribute(col, "value"), wanted)) {
        rows.push_back(row);
        break;
      }
    }
  }
  return rows;
}

std::shared_ptr<KvoGeneralItems> RowXmlToItems(const std::string& row_xml) {
  auto items = std::make_shared<KvoGeneralItems>();
  std::string message;
  if (!items->Parse(row_xml, false, "", &message)) Check(message);
  return items;
}

XmlDocument* LazyDocument::Get() {
  if (!tried_) {
    tried_ = true;
    ok_ = doc_.LoadXml(text_);
  }
  return ok_ ? &doc_ : nullptr;
}

TakenSource TakeSource(DatasetStore& store, const std::string& source, bool is_file,
                       const std::string& data_xpath, const std::function<void()>& reset) {
  XmlDocument& dom = store.dom();
  bool loaded = is_file ? dom.Load(source) : dom.LoadXml(source);
  if (!loaded) {
    reset();
    Check(is_file ? kFailedLoadDatasetFile : kFailedLoadDatasetXml);
  }
  xmlDocPtr doc = xi::LibxmlDoc(dom);
  TakenSource taken;
  taken.plain = xi::LoadFacts(dom).Plain();
  try {
    taken.nodes = xi::SelectRaw(reinterpret_cast<xmlNodePtr>(doc),
                                data_xpath.empty() ? "/*/data" : data_xpath);
  } catch (...) {
    reset();
    throw;
  }
  // The source stays alive, out of the tree, while its parts are used; the
  // handle keeps the document from freeing what it holds outside the tree.
  taken.keep = xi::WrapNode(dom, xmlDocGetRootElement(doc));
  for (xmlNodePtr child = doc->children; child != nullptr;) {
    xmlNodePtr next = child->next;
    xmlUnlinkNode(child);
    xi::AdoptNewNode(dom, child);
    child = next;
  }
  xmlNodePtr root = xmlNewDocNode(doc, nullptr, xi::XmlText("dataset"), nullptr);
  if (root == nullptr) throw std::bad_alloc();
  xi::LinkChild(reinterpret_cast<xmlNodePtr>(doc), root, nullptr);
  store.Forget();

  std::unordered_set<xmlNodePtr> selected(taken.nodes.begin(), taken.nodes.end());
  for (xmlNodePtr node : taken.nodes) {
    if (node->type == XML_ATTRIBUTE_NODE) continue;
    for (xmlNodePtr up = node->parent; up != nullptr; up = up->parent) {
      if (selected.count(up) != 0) {
        taken.nested = true;
        break;
      }
    }
  }
  return taken;
}

}  // namespace veld::datasets_internal
