#include "datasets/dataset_store.h"

#include <new>

#include "foundation/xml_utils.h"
#include "runtime/text.h"
#include "xml/xml_errors.h"
#include "xml/xml_handles.h"
#include "xml/xml_internal.h"
#include "xml/xml_tree.h"
#include "xml/xml_xpath.h"

namespace veld::datasets_internal {

namespace xi = xml_internal;

std::string InvalidDataIndex(int32_t n) {
  return "Invalid data index (" + std::to_string(n) + ").";
}

std::string DataIndexOutOfBoundary(int32_t n) {
  return "Specified data index (" + std::to_string(n) + ") out of boundary.";
}

std::string DataRowIndexOutOfBoundary(int32_t n) {
  return "Specified data row index (" + std::to_string(n) + ") out of boundary.";
}

std::string DataNotFound(const std::string& id) { return "Specified data not found(" + id + ")."; }

std::string RowNotFound(const std::string& name, const std::string& value) {
  return "Specified row cannot be found(" + name + "=" + value + ").";
}

std::string InvalidDataId(const std::string& id) { return "Invalid data ID - " + id + "."; }

bool IsPlainLiteral(std::string_view text) {
  size_t i = 0;
  while (i < text.size()) {
    auto lead = static_cast<unsigned char>(text[i]);
    if (lead < 0x80) {
      if (lead == '\'') return false;
      if (lead < 0x20 && lead != '\t' && lead != '\n' && lead != '\r') return false;
      ++i;
      continue;
    }
    size_t extra;
    uint32_t code;
    if ((lead & 0xE0) == 0xC0) {
      extra = 1;
      code = lead & 0x1F;
    } else if ((lead & 0xF0) == 0xE0) {
      extra = 2;
      code = lead & 0x0F;
    } else if ((lead & 0xF8) == 0xF0) {
      extra = 3;
      code = lead & 0x07;
    } else {
      return false;
    }
    if (text.size() - i <= extra) return false;
    for (size_t k = 1; k <= extra; ++k) {
      auto next = static_cast<unsigned char>(text[i + k]);
      if ((next & 0xC0) != 0x80) return false;
      code = (code << 6) | (next & 0x3F);
    }
    // Overlong forms, surrogates and the non-characters XML excludes.
    static constexpr uint32_t kMin[] = {0, 0x80, 0x800, 0x10000};
    if (code < kMin[extra] || code > 0x10FFFF) return false;
    if ((code >= 0xD800 && code <= 0xDFFF) || code == 0xFFFE || code == 0xFFFF) return false;
    i += extra + 1;
  }
  return true;
}

bool IsNamed(const xmlNode* node, const char* name) {
  return node != nullptr && node->type == XML_ELEMENT_NODE && node->ns == nullptr &&
         xmlStrEqual(node->name, xi::XmlText(name));
}

const xmlAttr* FindPlainAttribute(const xmlNode* element, const char* name) {
  for (const xmlAttr* attr = element->properties; attr != nullptr; attr = attr->next) {
    if (attr->ns == nullptr && xmlStrEqual(attr->name, xi::XmlText(name))) return attr;
  }
  return nullptr;
}

std::string AttributeValue(const xmlAttr* attr) {
  if (attr == nullptr) return "";
  const xmlNode* child = attr->children;
  // The common case: one text child.
  if (child != nullptr && child->next == nullptr && child->type == XML_TEXT_NODE) {
    return xi::StdText(child->content);
  }
  return xi::DomNodeValue(reinterpret_cast<const xmlNode*>(attr));
}

bool AttributeEquals(const xmlAttr* attr, std::string_view text) {
  if (attr == nullptr) return false;
  const xmlNode* child = attr->children;
  if (child == nullptr) return text.empty();
  if (child->next == nullptr && child->type == XML_TEXT_NODE) {
    return xi::TextView(child->content) == text;
  }
  return AttributeValue(attr) == text;
}

namespace {

bool IsBlankText(const xmlChar* text) {
  if (text == nullptr) return true;
  for (; *text != 0; ++text) {
    if (*text != ' ' && *text != '\t' && *text != '\n' && *text != '\r') return false;
  }
  return true;
}

void ScanInto(const xmlNode* node, const char* nested_name, bool below_top, bool in_row,
              SubtreeFacts& facts) {
  for (; node != nullptr; node = node->next) {
    switch (node->type) {
      case XML_ELEMENT_NODE: {
        if (node->ns != nullptr || node->nsDef != nullptr) facts.foreign = true;
        if (below_top && nested_name != nullptr && IsNamed(node, nested_name)) facts.nested = true;
        bool is_row = IsNamed(node, "row");
        if (is_row && in_row) facts.row_in_row = true;
        for (const xmlAttr* attr = node->properties; attr != nullptr; attr = attr->next) {
          if (attr->ns != nullptr) facts.foreign = true;
          for (const xmlNode* part = attr->children; part != nullptr; part = part->next) {
            if (part->type != XML_TEXT_NODE) facts.foreign = true;
          }
        }
        ScanInto(node->children, nested_name, true, in_row || is_row, facts);
        break;
      }
      case XML_TEXT_NODE:
        if (IsBlankText(node->content)) facts.blank_text = true;
        break;
      case XML_CDATA_SECTION_NODE:
      case XML_COMMENT_NODE:
      case XML_PI_NODE:
        break;
      default:
        facts.foreign = true;
    }
    if (!below_top) return;  // only the top node itself, not its siblings
  }
}

// Selects the children named `item` of every element named `container` that
// is the first of that name among its siblings, in document order.
template <class Filter>
void CollectFirstChildren(xmlNodePtr first, bool parent_is_first, const char* container,
                          const char* item, Filter filter, bool inside_selected,
                          std::vector<xmlNodePtr>& out, bool& nested) {
  bool seen_container = false;
  for (xmlNodePtr node = first; node != nullptr; node = node->next) {
    if (node->type != XML_ELEMENT_NODE) continue;
    bool is_first = false;
    if (IsNamed(node, container)) {
      is_first = !seen_container;
      seen_container = true;
    }
    bool selected = parent_is_first && IsNamed(node, item) && filter(node);
    if (selected) {
      if (inside_selected) nested = true;
      out.push_back(node);
    }
    if (node->children != nullptr) {
      CollectFirstChildren(node->children, is_first, container, item, filter,
                           inside_selected || selected, out, nested);
    }
  }
}

bool IsDataRow(const xmlNode* row) {
  const xmlAttr* index = FindPlainAttribute(row, "index");
  return index == nullptr || AttributeValue(index) != "0";
}

bool AnyRow(const xmlNode* /*node*/) { return true; }

}  // namespace

SubtreeFacts ScanSubtree(const xmlNode* top, const char* nested_name) {
  SubtreeFacts facts;
  ScanInto(top, nested_name, false, false, facts);
  return facts;
}

void CollectMarkedRows(xmlNodePtr first, bool parent_is_first_data, std::vector<xmlNodePtr>& out,
                       bool& nested) {
  CollectFirstChildren(first, parent_is_first_data, "data", "row", IsDataRow, false, out, nested);
}

void CollectMarkedRowsOf(xmlNodePtr top, std::vector<xmlNodePtr>& out, bool& nested, bool flat) {
  // `top` is the only child of its document node, so it is the first data
  // element there when it is one; it is never a selected row itself.
  if (flat) {
    if (!IsNamed(top, "data")) return;
    for (xmlNodePtr row = top->children; row != nullptr; row = row->next) {
      if (IsNamed(row, "row") && IsDataRow(row)) out.push_back(row);
    }
    return;
  }
  if (top->children != nullptr) {
    CollectFirstChildren(top->children, IsNamed(top, "data"), "data", "row", IsDataRow, false, out,
                         nested);
  }
}

void CollectFirstRowCols(xmlNodePtr first, bool parent_is_first_row, std::vector<xmlNodePtr>& out,
                         bool& nested) {
  CollectFirstChildren(first, parent_is_first_row, "row", "col", AnyRow, false, out, nested);
}

void MoveNode(xmlNodePtr node, xmlNodePtr parent, xmlNodePtr ref) {
  if (node->doc != parent->doc) {
    xmlDocPtr source = node->doc;
    xi::ErrorCollector errors;
    xi::ScopedErrorCapture capture(errors);
    if (xmlDOMWrapAdoptNode(nullptr, source, node, parent->doc, parent, 0) != 0) {
      xi::RaiseXmlFailure(errors.Message(), "The node cannot be moved.");
    }
  }
  xmlUnlinkNode(node);
  xi::LinkChild(parent, node, ref);
}

// --- DatasetStore ---

void DatasetStore::Forget() {
  ++data_version_;
  resolved_valid_ = false;
  data_valid_ = false;
  data_.clear();
  rows_.clear();
}

void DatasetStore::Sync() {
  xmlDocPtr current = xi::LibxmlDoc(dom_);
  if (current != synced_doc_) {
    Forget();
    synced_doc_ = current;
  }
}

xmlDocPtr DatasetStore::doc() {
  Sync();
  return synced_doc_;
}

xmlNodePtr DatasetStore::Root() { return xmlDocGetRootElement(doc()); }

xmlNodePtr DatasetStore::EnsureRoot() {
  xmlNodePtr root = Root();
  if (root != nullptr) return root;
  XmlNode created = dom_.CreateElement("dataset");
  dom_.AppendChild(created);
  data_valid_ = false;
  return xi::LibxmlNode(created);
}

void DatasetStore::EnsureDataList() {
  Sync();
  if (data_valid_) return;
  ++data_version_;
  data_.clear();
  xmlNodePtr root = xmlDocGetRootElement(synced_doc_);
  if (root != nullptr) {
    for (xmlNodePtr child = root->children; child != nullptr; child = child->next) {
      if (!IsNamed(child, "data")) continue;
      const xmlAttr* guid = FindPlainAttribute(child, "guid");
      DataInfo info{child, guid != nullptr, AttributeValue(guid), ""};
      info.lower = LCase(info.guid);
      data_.push_back(std::move(info));
    }
  }
  data_valid_ = true;
}

int32_t DatasetStore::DataCount() {
  EnsureDataList();
  return static_cast<int32_t>(data_.size());
}

xmlNodePtr DatasetStore::DataAt(int32_t n) {
  EnsureDataList();
  if (n < 1 || static_cast<size_t>(n) > data_.size()) return nullptr;
  return data_[static_cast<size_t>(n) - 1].node;
}

std::string DatasetStore::GuidOf(const xmlNode* element) {
  return AttributeValue(FindPlainAttribute(element, "guid"));
}

std::string DatasetStore::ExactDataId(const std::string& id) {
  if (id.empty()) return "";
  EnsureDataList();
  std::string lower = LCase(id);
  for (const DataInfo& info : data_) {
    if (info.lower == lower) return info.guid;
  }
  return "";
}

bool DatasetStore::HasDataId(const std::string& id) {
  EnsureDataList();
  std::string lower = LCase(id);
  for (const DataInfo& info : data_) {
    if (info.lower == lower) return true;
  }
  return false;
}

const DatasetStore::DataRef& DatasetStore::ResolveData(const std::string& id) {
  EnsureDataList();
  // Row operations resolve the same data ID several times in a row; the
  // answer holds while the data elements stay as they are.
  if (resolved_valid_ && resolved_version_ == data_version_ && resolved_id_ == id) {
    return resolved_;
  }
  resolved_ = Resolve(id);
  resolved_id_ = id;
  resolved_version_ = data_version_;
  resolved_valid_ = true;
  return resolved_;
}

DatasetStore::DataRef DatasetStore::Resolve(const std::string& id) {
  DataRef ref;
  if (id.empty()) {
    ref.xpath = "/*/data";
    for (const DataInfo& info : data_) ref.matches.push_back(info.node);
    return ref;
  }
  std::string exact = ExactDataId(id);
  std::string trimmed = Trim(exact.empty() ? id : exact);
  ref.xpath = "/*/data[@guid='" + trimmed + "']";
  if (!IsPlainLiteral(trimmed)) {
    ref.indexed = false;
    return ref;
  }
  for (const DataInfo& info : data_) {
    if (info.has_guid && info.guid == trimmed) ref.matches.push_back(info.node);
  }
  return ref;
}

std::vector<xmlNodePtr> DatasetStore::SelectData(const std::string& id) {
  const DataRef& ref = ResolveData(id);
  if (ref.indexed) return ref.matches;
  return xi::SelectRaw(reinterpret_cast<xmlNodePtr>(doc()), ref.xpath);
}

xmlNodePtr DatasetStore::FirstData(const std::string& id) {
  const DataRef& ref = ResolveData(id);
  if (ref.indexed) return ref.matches.empty() ? nullptr : ref.matches.front();
  std::vector<xmlNodePtr> found = SelectData(id);
  return found.empty() ? nullptr : found.front();
}

DatasetStore::RowIndex& DatasetStore::IndexOf(xmlNodePtr data) {
  Sync();
  return rows_[data];
}

RowOrder& DatasetStore::OrderOf(xmlNodePtr data) {
  RowIndex& index = IndexOf(data);
  if (!index.order_valid) {
    std::vector<xmlNodePtr> rows;
    for (xmlNodePtr child = data->children; child != nullptr; child = child->next) {
      if (IsNamed(child, "row")) rows.push_back(child);
    }
    index.order.Assign(std::move(rows));
    index.order_valid = true;
  }
  return index.order;
}

const std::vector<xmlNodePtr>& DatasetStore::RowsOf(xmlNodePtr data) { return OrderOf(data).All(); }

DatasetStore::RowIndex& DatasetStore::GuidIndexOf(xmlNodePtr data) {
  RowIndex& index = IndexOf(data);
  if (!index.guid_valid) {
    index.by_guid.clear();
    index.repeated = 0;
    for (xmlNodePtr child = data->children; child != nullptr; child = child->next) {
      if (!IsNamed(child, "row")) continue;
      const xmlAttr* attr = FindPlainAttribute(child, "guid");
      if (attr == nullptr) continue;
      GuidSlot& slot = index.by_guid[AttributeValue(attr)];
      if (slot.count++ == 0) {
        slot.first = child;
      } else {
        ++index.repeated;
      }
    }
    index.guid_valid = true;
  }
  return index;
}

xmlNodePtr DatasetStore::RowByGuid(xmlNodePtr data, const std::string& guid, int32_t& count) {
  RowIndex& index = GuidIndexOf(data);
  auto found = index.by_guid.find(guid);
  if (found == index.by_guid.end()) {
    count = 0;
    return nullptr;
  }
  count = found->second.count;
  return found->second.first;
}

std::string DatasetStore::RowXPathById(const std::string& data_id, const std::string& row_id) {
  std::string xpath = ResolveData(data_id).xpath + "/row";
  if (!row_id.empty()) xpath += "[@guid='" + Trim(row_id) + "']";
  return xpath;
}

std::vector<xmlNodePtr> DatasetStore::SelectRowsById(const std::string& data_id,
                                                     const std::string& row_id) {
  const DataRef& ref = ResolveData(data_id);
  std::string trimmed = Trim(row_id);
  bool plain = ref.indexed && (row_id.empty() || IsPlainLiteral(trimmed));
  if (plain && ref.matches.size() <= 1) {
    std::vector<xmlNodePtr> rows;
    if (ref.matches.empty()) return rows;
    xmlNodePtr data = ref.matches.front();
    if (row_id.empty()) return RowsOf(data);
    int32_t count = 0;
    xmlNodePtr row = RowByGuid(data, trimmed, count);
    if (count == 1) {
      rows.push_back(row);
      return rows;
    }
    if (count == 0) return rows;
  }
  std::string xpath = ref.xpath + "/row";
  if (!row_id.empty()) xpath += "[@guid='" + trimmed + "']";
  return xi::SelectRaw(reinterpret_cast<xmlNodePtr>(doc()), xpath);
}

std::string DatasetStore::RowXPathByPosition(const std::string& data_id, int32_t n) {
  std::string xpath = ResolveData(data_id).xpath + "/row";
  if (n >= 0) xpath += "[" + std::to_string(n) + "]";
  return xpath;
}

std::vector<xmlNodePtr> DatasetStore::SelectRowsByPosition(const std::string& data_id, int32_t n) {
  const DataRef& ref = ResolveData(data_id);
  if (ref.indexed) {
    std::vector<xmlNodePtr> rows;
    for (xmlNodePtr data : ref.matches) {
      if (n < 0) {
        const std::vector<xmlNodePtr>& all = RowsOf(data);
        rows.insert(rows.end(), all.begin(), all.end());
        continue;
      }
      RowOrder& order = OrderOf(data);
      if (n >= 1 && static_cast<size_t>(n) <= order.size()) {
        rows.push_back(order.At(static_cast<size_t>(n) - 1));
      }
    }
    return rows;
  }
  std::string xpath = ref.xpath + "/row";
  if (n >= 0) xpath += "[" + std::to_string(n) + "]";
  return xi::SelectRaw(reinterpret_cast<xmlNodePtr>(doc()), xpath);
}

xmlNodePtr DatasetStore::IndexedRowAt(const std::string& data_id, int32_t n) {
  const DataRef& ref = ResolveData(data_id);
  if (!ref.indexed || ref.matches.size() != 1 || n < 1) return nullptr;
  RowOrder& order = OrderOf(ref.matches.front());
  if (static_cast<size_t>(n) > order.size()) return nullptr;
  return order.At(static_cast<size_t>(n) - 1);
}

xmlNodePtr DatasetStore::FirstRowWithIdOf(xmlNodePtr row) {
  const xmlAttr* attr = FindPlainAttribute(row, "guid");
  if (attr == nullptr || row->parent == nullptr) return nullptr;
  const xmlNode* child = attr->children;
  if (child == nullptr || child->next != nullptr || child->type != XML_TEXT_NODE) return nullptr;
  const std::string_view guid = xi::TextView(child->content);
  if (guid.empty() || guid.front() == ' ' || guid.back() == ' ' || !IsPlainLiteral(guid)) {
    return nullptr;
  }
  // With every ID of the data element used once, the row is its own first.
  if (GuidIndexOf(row->parent).repeated == 0) return row;
  guid_scratch_.assign(guid);
  int32_t count = 0;
  return RowByGuid(row->parent, guid_scratch_, count);
}

xmlNodePtr DatasetStore::AppendData(const std::string& guid) {
  xmlNodePtr root = EnsureRoot();
  XmlNode data = dom_.CreateElement("data");
  data.SetAttribute("guid", guid);
  Wrap(root).AppendChild(data);
  xmlNodePtr raw = xi::LibxmlNode(data);
  ++data_version_;
  if (data_valid_) {
    DataInfo info{raw, true, guid, LCase(guid)};
    data_.push_back(std::move(info));
  }
  return raw;
}

xmlNodePtr DatasetStore::AppendNewRow(xmlNodePtr data, const std::string& guid) {
  Sync();
  // Made and linked directly: a new element needs none of the DOM's
  // insertion checks, and nobody can hold it before it is linked.
  xmlNodePtr raw = xmlNewDocNode(synced_doc_, nullptr, xi::XmlText("row"), nullptr);
  if (raw == nullptr) throw std::bad_alloc();
  if (xmlNewNsProp(raw, nullptr, xi::XmlText("guid"), xi::XmlText(guid)) == nullptr) {
    xi::NodePtr unused(raw);
    throw std::bad_alloc();
  }
  xi::LinkChild(data, raw, nullptr);
  RowIndex& index = IndexOf(data);
  if (index.order_valid) index.order.PushBack(raw);
  if (index.guid_valid) {
    GuidSlot& slot = index.by_guid[guid];
    if (slot.count++ == 0) {
      slot.first = raw;
    } else {
      ++index.repeated;
    }
  }
  return raw;
}

void DatasetStore::InsertChild(xmlNodePtr data, xmlNodePtr node, xmlNodePtr ref) {
  Sync();
  MoveNode(node, data, ref);
  if (!IsNamed(node, "row")) return;
  RowIndex& index = IndexOf(data);
  if (ref == nullptr) {
    if (index.order_valid) index.order.PushBack(node);
  } else {
    index.order_valid = false;
  }
  index.guid_valid = false;
}

void DatasetStore::NoteRemoval(xmlNodePtr node) {
  Sync();
  if (node->type != XML_ELEMENT_NODE) return;
  xmlNodePtr parent = node->parent;
  if (IsNamed(node, "data") || (parent != nullptr && parent->type == XML_DOCUMENT_NODE)) {
    data_valid_ = false;
    ++data_version_;
    if (parent != nullptr && parent->type == XML_DOCUMENT_NODE) {
      rows_.clear();
    } else {
      rows_.erase(node);
    }
    return;
  }
  if (parent == nullptr || !IsNamed(node, "row")) return;
  auto found = rows_.find(parent);
  if (found == rows_.end()) return;
  RowIndex& index = found->second;
  if (index.order_valid && !index.order.Remove(node)) index.order_valid = false;
  if (index.guid_valid) {
    const xmlAttr* attr = FindPlainAttribute(node, "guid");
    if (attr != nullptr) {
      auto slot = index.by_guid.find(AttributeValue(attr));
      if (slot != index.by_guid.end()) {
        if (slot->second.count == 1) {
          index.by_guid.erase(slot);
        } else {
          index.guid_valid = false;
        }
      }
    }
  }
}

void DatasetStore::Remove(xmlNodePtr node) {
  NoteRemoval(node);
  xi::OrphanNode(dom_, node);
}

void DatasetStore::RemoveElementChildren(xmlNodePtr parent) {
  Sync();
  xmlNodePtr child = parent->children;
  while (child != nullptr) {
    xmlNodePtr next = child->next;
    if (child->type == XML_ELEMENT_NODE) xi::OrphanNode(dom_, child);
    child = next;
  }
  auto found = rows_.find(parent);
  if (found != rows_.end()) {
    found->second.order.Clear();
    found->second.order_valid = true;
    found->second.by_guid.clear();
    found->second.repeated = 0;
    found->second.guid_valid = true;
  }
  if (parent->type == XML_ELEMENT_NODE && parent->parent != nullptr &&
      parent->parent->type == XML_DOCUMENT_NODE) {
    Forget();
  }
}

void DatasetStore::RemoveSelected(const std::string& xpath) {
  RemoveSelectedNodes(dom_.AsNode(), xpath);
  Forget();
}

void DatasetStore::Replace(xmlNodePtr data, xmlNodePtr node, xmlNodePtr old) {
  Sync();
  RowIndex& index = IndexOf(data);
  const bool old_row = IsNamed(old, "row");
  const bool new_row = IsNamed(node, "row");
  MoveNode(node, data, old);
  xi::OrphanNode(dom_, old);
  index.guid_valid = false;
  if (!old_row && !new_row) return;
  if (old_row && index.order_valid &&
      (new_row ? index.order.Replace(old, node) : index.order.Remove(old))) {
    return;
  }
  index.order_valid = false;
}

XmlNode DatasetStore::Wrap(xmlNodePtr node) { return xi::WrapNode(dom_, node); }

}  // namespace veld::datasets_internal
