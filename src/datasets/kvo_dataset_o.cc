#include "veld/datasets/kvo_dataset_o.h"

#include <utility>

#include "datasets/dataset_common.h"
#include "datasets/dataset_progress.h"
#include "datasets/dataset_store.h"
#include "foundation/frame_settings.h"
#include "foundation/this_utils.h"
#include "foundation/xml_utils.h"
#include "runtime/text.h"
#include "xml/xml_internal.h"
#include "xml/xml_xpath.h"

namespace veld {

using datasets_internal::Check;
using datasets_internal::DatasetStore;
using datasets_internal::NodeText;
namespace di = datasets_internal;
namespace xi = xml_internal;

namespace {

// The row with that ID, appended with that "guid" when missing.
xmlNodePtr EnsureRowElement(DatasetStore& store, const std::string& data_id,
                            const std::string& row_id) {
  if (data_id.empty() || row_id.empty()) Check(di::kNoDataOrRowId);
  std::vector<xmlNodePtr> rows = store.SelectRowsById(data_id, row_id);
  if (!rows.empty()) return rows.front();
  xmlNodePtr data = di::EnsureDataElement(store, data_id);
  return store.AppendNewRow(data, row_id);
}

// The first steps of UpdateDataRow: checks, the row, its old cols removed.
xmlNodePtr ClearRowForUpdate(DatasetStore& store, const std::string& data_id,
                             const std::string& row_id) {
  if (Trim(data_id).empty() || Trim(row_id).empty()) Check(di::kInvalidRowIdToUpdate);
  std::vector<xmlNodePtr> rows = store.SelectRowsById(data_id, row_id);
  if (rows.empty()) Check(di::kDataRowNotFound);
  for (xmlNodePtr row : rows) store.RemoveElementChildren(row);
  return rows.front();
}

// Copies into `row` the cols that "//row[1]/col" selects in `text`. A col
// taken from a document that is thrown away afterwards is moved, which
// gives the same tree as copying it.
void CopyFirstRowCols(DatasetStore& store, xmlNodePtr row, XmlDocument& text) {
  xmlDocPtr doc = xi::LibxmlDoc(text);
  std::vector<xmlNodePtr> cols;
  bool nested = false;
  di::CollectFirstRowCols(doc->children, false, cols, nested);
  bool movable = !nested;
  for (xmlNodePtr col : cols) {
    if (movable && di::ScanSubtree(col, nullptr).foreign) movable = false;
  }
  if (movable) {
    for (xmlNodePtr col : cols) di::MoveNode(col, row, nullptr);
    return;
  }
  XmlNode target = store.Wrap(row);
  for (xmlNodePtr col : cols) target.AppendChild(xi::WrapNode(text, col).CloneNode(true));
}

// The value GetRowColValue finds for column `name` in a parsed row text:
// the "value" of the first "/*/col[@name='" + escaped name + "']".
std::string RowColValueInDocument(xmlDocPtr doc, const std::string& name) {
  std::string key = EscapeXmlText(name);
  if (!di::IsPlainLiteral(key)) {
    std::vector<xmlNodePtr> found =
        xi::SelectRaw(reinterpret_cast<xmlNodePtr>(doc), "/*/col[@name='" + key + "']");
    return found.empty() ? "" : di::AttributeValue(di::FindPlainAttribute(found.front(), "value"));
  }
  xmlNodePtr root = xmlDocGetRootElement(doc);
  for (xmlNodePtr col = root->children; col != nullptr; col = col->next) {
    if (!di::IsNamed(col, "col")) continue;
    const xmlAttr* col_name = di::FindPlainAttribute(col, "name");
    if (col_name != nullptr && di::AttributeValue(col_name) == key) {
      return di::AttributeValue(di::FindPlainAttribute(col, "value"));
    }
  }
  return "";
}

// The same for a row that is not the root of its document.
std::string RowColValueOfNode(xmlNodePtr row, const std::string& name) {
  std::string key = EscapeXmlText(name);
  if (!di::IsPlainLiteral(key)) {
    XmlDocument text;
    if (!text.LoadXml(NodeText(row))) Check(di::kFailedLoadDataRowXml);
    return RowColValueInDocument(xi::LibxmlDoc(text), name);
  }
  for (xmlNodePtr col = row->children; col != nullptr; col = col->next) {
    if (!di::IsNamed(col, "col")) continue;
    const xmlAttr* col_name = di::FindPlainAttribute(col, "name");
    if (col_name != nullptr && di::AttributeValue(col_name) == key) {
      return di::AttributeValue(di::FindPlainAttribute(col, "value"));
    }
  }
  return "";
}

// A row of a data text that can be taken over without writing it out and
// reading it back: the result is the same tree.
bool IsPlainRow(xmlNodePtr row) {
  di::SubtreeFacts facts = di::ScanSubtree(row, "row");
  return !facts.foreign && !facts.blank_text && !facts.nested;
}

// AddDataRow(data ID, "", row text, guid_col) for each row, reading plain
// rows directly. False when a call fails (its failure is then recorded).
bool AddRowsFromNodes(KvoDatasetO& self, DatasetStore& store, const std::string& data_id,
                      const std::vector<xmlNodePtr>& rows, const std::string& guid_col,
                      bool known_plain = false, di::ProgressSteps* progress = nullptr) {
  for (xmlNodePtr row : rows) {
    if (progress != nullptr) progress->Advance(1);
    if (!known_plain && !IsPlainRow(row)) {
      if (!self.AddDataRow(data_id, "", NodeText(row), guid_col)) return false;
      continue;
    }
    if (Trim(data_id).empty()) Check(di::kInvalidRowToAdd);
    std::string row_id;
    if (!guid_col.empty()) row_id = RowColValueOfNode(row, guid_col);
    xmlNodePtr target = nullptr;
    xmlNodePtr data = nullptr;
    if (row_id.empty() && store.ResolveData(data_id).indexed) data = store.FirstData(data_id);
    if (row_id.empty()) row_id = NewGuidText(Kvo_GUID_FORMAT_PUREDATA);
    if (data != nullptr) {
      // A new ID is in no row yet, and the data path finds `data`: the row
      // is appended there, with nothing to look up or clear.
      target = store.AppendNewRow(data, row_id);
    } else {
      EnsureRowElement(store, data_id, row_id);
      target = ClearRowForUpdate(store, data_id, row_id);
    }
    for (xmlNodePtr col = row->children; col != nullptr;) {
      xmlNodePtr next = col->next;
      if (di::IsNamed(col, "col")) di::MoveNode(col, target, nullptr);
      col = next;
    }
  }
  return true;
}

// AddData with an empty ID and the text of `data`, read from the element,
// whose subtree holds no namespaces, entity references or blank text.
bool AddDataFromNode(KvoDatasetO& self, DatasetStore& store, xmlNodePtr data,
                     const di::SubtreeFacts& facts, di::ProgressSteps& progress) {
  std::string id = DatasetStore::GuidOf(data);
  if (id.empty()) id = NewGuidText(Kvo_GUID_FORMAT_PUREDATA);
  di::EnsureDataElement(store, id);
  di::RemoveDataChildren(store, id);
  std::vector<xmlNodePtr> rows;
  bool nested = false;
  di::CollectMarkedRowsOf(data, rows, nested, !facts.nested);
  return AddRowsFromNodes(self, store, id, rows, "", !facts.row_in_row, &progress);
}

}  // namespace

KvoDatasetO::KvoDatasetO() : KvoDatasetBase(kDatasetOFrame) {}

KvoDatasetO::~KvoDatasetO() = default;

// --- Whole documents ---

bool KvoDatasetO::LoadDataset(const std::string& source, bool is_file,
                              const std::string& data_xpath) {
  bool result = false;
  Recorded([&] {
    Reset();
    result = di::LoadDatasetWith(
        *store_, progress_.get(), source, is_file, data_xpath, [this] { Reset(); },
        [this](xmlNodePtr node, const di::SubtreeFacts& facts, di::ProgressSteps& progress) {
          return AddDataFromNode(*this, *store_, node, facts, progress) ? di::InPlace::kAdded
                                                                        : di::InPlace::kFailed;
        },
        // The row ID column of Parse is deliberately not passed on.
        [this](const std::string& text) { return AddData("", text, ""); });
  });
  return result;
}

bool KvoDatasetO::Parse(const std::string& sDatasetXml, const std::string& sRowGUIDCol,
                        const std::string& sDataXPath) {
  return LoadDataset(sDatasetXml, false, sDataXPath);
}

bool KvoDatasetO::ParseFile(const std::string& sDatasetFile, const std::string& sRowGUIDCol,
                            const std::string& sDataXPath) {
  return LoadDataset(sDatasetFile, true, sDataXPath);
}

// --- Data elements ---

bool KvoDatasetO::AddData(const std::string& sDataID, const std::string& sDataXml,
                          const std::string& sRowGUIDCol, Variant* sResultDataID) {
  bool result = false;
  Recorded([&] {
    if (sResultDataID != nullptr) *sResultDataID = Variant(std::string());
    std::string id = Trim(sDataID);
    if (id.empty()) id = di::GetDataIDFromXml(sDataXml);
    if (id.empty()) id = NewGuidText(Kvo_GUID_FORMAT_PUREDATA);
    if (di::EnsureDataElement(*store_, id) == nullptr) return;
    if (!sDataXml.empty() && !UpdateData(id, sDataXml, sRowGUIDCol)) return;
    if (sResultDataID != nullptr) *sResultDataID = Variant(id);
    result = true;
  });
  return result;
}

bool KvoDatasetO::UpdateData(const std::string& sDataID, const std::string& sDataXml,
                             const std::string& sRowGUIDCol) {
  bool result = false;
  Recorded([&] {
    di::RemoveDataChildren(*store_, sDataID);
    XmlDocument text;
    if (!text.LoadXml(sDataXml)) Check(di::kFailedLoadDataXml);
    std::vector<xmlNodePtr> rows;
    bool nested = false;
    di::CollectMarkedRows(xi::LibxmlDoc(text)->children, false, rows, nested);
    if (!AddRowsFromNodes(*this, *store_, sDataID, rows, sRowGUIDCol)) return;
    result = true;
  });
  return result;
}

bool KvoDatasetO::UpdateDataByIndex(int32_t nDataIndex, const std::string& sDataXml,
                                    const std::string& sRowGUIDCol) {
  bool result = false;
  Recorded([&] {
    std::string id;
    if (!GetDataID(nDataIndex, id)) {
      return;
    }
    result = UpdateData(id, sDataXml, sRowGUIDCol);
  });
  return result;
}

// --- Rows ---

bool KvoDatasetO::GetDataRow(const std::string& sDataID, const std::string& sRowID,
                             std::string& sDataRowXml) {
  bool result = false;
  Recorded([&] {
    sDataRowXml.clear();
    std::vector<xmlNodePtr> rows = store_->SelectRowsById(sDataID, sRowID);
    if (rows.empty()) Check(di::kDataRowIdNotFound);
    sDataRowXml = NodeText(rows.front());
    result = true;
  });
  return result;
}

bool KvoDatasetO::AddDataRow(const std::string& sDataID, const std::string& sRowID,
                             const std::string& sDataRowXml, const std::string& sGUIDColName) {
  bool result = false;
  Recorded([&] {
    if (Trim(sDataID).empty() || Trim(sDataRowXml).empty()) Check(di::kInvalidRowToAdd);
    di::LazyDocument text(sDataRowXml);
    std::string row_id = Trim(sRowID);
    if (row_id.empty() && !sGUIDColName.empty()) {
      XmlDocument* doc = text.Get();
      if (doc == nullptr) Check(di::kFailedLoadDataRowXml);
      row_id = RowColValueInDocument(xi::LibxmlDoc(*doc), sGUIDColName);
    }
    if (row_id.empty()) row_id = NewGuidText(Kvo_GUID_FORMAT_PUREDATA);
    if (EnsureRowElement(*store_, sDataID, row_id) == nullptr) return;
    // UpdateDataRow with the same text, parsed once.
    xmlNodePtr row = ClearRowForUpdate(*store_, sDataID, row_id);
    XmlDocument* doc = text.Get();
    if (doc == nullptr) Check(di::kFailedLoadDataRowXml);
    CopyFirstRowCols(*store_, row, *doc);
    result = true;
  });
  return result;
}

bool KvoDatasetO::DeleteDataRow(const std::string& sDataID, const std::string& sRowID) {
  bool result = false;
  Recorded([&] {
    for (xmlNodePtr row : store_->SelectRowsById(sDataID, sRowID)) store_->Remove(row);
    result = true;
  });
  return result;
}

bool KvoDatasetO::UpdateDataRow(const std::string& sDataID, const std::string& sRowID,
                                const std::string& sDataRowXml) {
  bool result = false;
  Recorded([&] {
    xmlNodePtr row = ClearRowForUpdate(*store_, sDataID, sRowID);
    XmlDocument text;
    if (!text.LoadXml(sDataRowXml)) Check(di::kFailedLoadDataRowXml);
    CopyFirstRowCols(*store_, row, text);
    result = true;
  });
  return result;
}

bool KvoDatasetO::GetDataRowID(const std::string& sDataID, int32_t nRowIndex, std::string& sRowID) {
  bool result = false;
  Recorded([&] {
    sRowID.clear();
    if (nRowIndex < 1) Check(di::InvalidDataIndex(nRowIndex));
    if (store_->FirstData(sDataID) == nullptr) Check(di::DataNotFound(sDataID));
    std::vector<xmlNodePtr> rows = store_->SelectRowsByPosition(sDataID, nRowIndex);
    if (rows.empty()) Check(di::DataRowIndexOutOfBoundary(nRowIndex));
    sRowID = DatasetStore::GuidOf(rows.front());
    result = true;
  });
  return result;
}

int32_t KvoDatasetO::GetDataRowCount(const std::string& sDataID) {
  int32_t result = -1;
  Recorded([&] { result = static_cast<int32_t>(store_->SelectRowsById(sDataID, "").size()); });
  return result;
}

int32_t KvoDatasetO::GetDataRowCountByIndex(int32_t nDataIndex) {
  int32_t result = -1;
  Recorded([&] {
    std::string id;
    if (!GetDataID(nDataIndex, id)) {
      result = -1;
      return;
    }
    result = GetDataRowCount(id);
  });
  return result;
}

bool KvoDatasetO::AddDataRowByIndex(int32_t nDataIndex, const std::string& sRowID,
                                    const std::string& sDataRowXml,
                                    const std::string& sGUIDColName) {
  bool result = false;
  Recorded([&] {
    std::string id;
    if (!GetDataID(nDataIndex, id)) {
      return;
    }
    result = AddDataRow(id, sRowID, sDataRowXml, sGUIDColName);
  });
  return result;
}

bool KvoDatasetO::GetDataRowByIndex(const std::string& sDataID, int32_t nRowIndex,
                                    std::string& sDataRowXml) {
  bool result = false;
  Recorded([&] {
    // The row at that position and the first row with its ID, from the
    // indexes, when they can stand in for the two lookups.
    if (xmlNodePtr at = store_->IndexedRowAt(sDataID, nRowIndex)) {
      if (xmlNodePtr row = store_->FirstRowWithIdOf(at)) {
        sDataRowXml = NodeText(row);
        result = true;
        return;
      }
    }
    std::string id;
    if (!GetDataRowID(sDataID, nRowIndex, id)) {
      sDataRowXml.clear();
      return;
    }
    result = GetDataRow(sDataID, id, sDataRowXml);
  });
  return result;
}

bool KvoDatasetO::DeleteDataRowByIndex(const std::string& sDataID, int32_t nRowIndex) {
  bool result = false;
  Recorded([&] {
    std::string id;
    if (!GetDataRowID(sDataID, nRowIndex, id)) {
      return;
    }
    result = DeleteDataRow(sDataID, id);
  });
  return result;
}

bool KvoDatasetO::UpdateDataRowByIndex(const std::string& sDataID, int32_t nRowIndex,
                                       const std::string& sDataRowXml) {
  bool result = false;
  Recorded([&] {
    std::string id;
    if (!GetDataRowID(sDataID, nRowIndex, id)) {
      return;
    }
    result = UpdateDataRow(sDataID, id, sDataRowXml);
  });
  return result;
}

// --- Rows by key column ---

int32_t KvoDatasetO::GetDataRowIDArrayByKeyCol(const std::string& sDataID,
                                               const std::string& sKeyColName,
                                               const std::string& sKeyColValue,
                                               std::vector<std::string>& sRowIDArray) {
  int32_t result = -1;
  Recorded([&] {
    result = di::TextsOfRows(di::KeyColRows(*store_, sDataID, sKeyColName, sKeyColValue),
                             sRowIDArray, [](xmlNodePtr row) { return DatasetStore::GuidOf(row); });
  });
  return result;
}

bool KvoDatasetO::GetDataRowIDByKeyCol(const std::string& sDataID, const std::string& sKeyColName,
                                       const std::string& sKeyColValue, std::string& sRowID) {
  bool result = false;
  Recorded([&] {
    sRowID.clear();
    std::vector<std::string> ids;
    int32_t found = GetDataRowIDArrayByKeyCol(sDataID, sKeyColName, sKeyColValue, ids);
    if (found == 0) Check(di::RowNotFound(sKeyColName, sKeyColValue));
    if (found < 0) return;
    sRowID = ids.front();
    result = true;
  });
  return result;
}

bool KvoDatasetO::GetDataRowByKeyCol(const std::string& sDataID, const std::string& sKeyColName,
                                     const std::string& sKeyColValue, std::string& sRowDataXml) {
  bool result = false;
  Recorded([&] {
    std::string id;
    if (!GetDataRowIDByKeyCol(sDataID, sKeyColName, sKeyColValue, id)) {
      sRowDataXml.clear();
      return;
    }
    result = GetDataRow(sDataID, id, sRowDataXml);
  });
  return result;
}

int32_t KvoDatasetO::GetDataRowArrayByKeyCol(const std::string& sDataID,
                                             const std::string& sKeyColName,
                                             const std::string& sKeyColValue,
                                             std::vector<std::string>& sRowDataXmlArray) {
  int32_t result = -1;
  Recorded([&] {
    std::vector<std::string> ids;
    int32_t found = GetDataRowIDArrayByKeyCol(sDataID, sKeyColName, sKeyColValue, ids);
    if (found <= 0) {
      result = found;
      return;
    }
    std::vector<std::string> texts(ids.size());
    for (size_t i = 0; i < ids.size(); ++i) GetDataRow(sDataID, ids[i], texts[i]);
    sRowDataXmlArray = std::move(texts);
    result = found;
  });
  return result;
}

bool KvoDatasetO::DeleteDataRowByKeyCol(const std::string& sDataID, const std::string& sKeyColName,
                                        const std::string& sKeyColValue) {
  bool result = false;
  Recorded([&] {
    std::string id;
    if (!GetDataRowIDByKeyCol(sDataID, sKeyColName, sKeyColValue, id)) {
      return;
    }
    result = DeleteDataRow(sDataID, id);
  });
  return result;
}

int32_t KvoDatasetO::DeleteDataRowArrayByKeyCol(const std::string& sDataID,
                                                const std::string& sKeyColName,
                                                const std::string& sKeyColValue) {
  int32_t result = -1;
  Recorded([&] {
    std::vector<std::string> ids;
    int32_t found = GetDataRowIDArrayByKeyCol(sDataID, sKeyColName, sKeyColValue, ids);
    if (found <= 0) {
      result = found;
      return;
    }
    for (const std::string& id : ids) {
      if (!DeleteDataRow(sDataID, id)) {
        result = -1;
        return;
      }
    }
    result = found;
  });
  return result;
}

bool KvoDatasetO::UpdateDataRowByKeyCol(const std::string& sDataID, const std::string& sKeyColName,
                                        const std::string& sKeyColValue,
                                        const std::string& sRowDataXml) {
  bool result = false;
  Recorded([&] {
    std::string id;
    if (!GetDataRowIDByKeyCol(sDataID, sKeyColName, sKeyColValue, id)) {
      return;
    }
    result = UpdateDataRow(sDataID, id, sRowDataXml);
  });
  return result;
}

// --- Rows as item collections ---

std::shared_ptr<KvoGeneralItems> KvoDatasetO::GetDataRowColItems(const std::string& sDataID,
                                                                 const std::string& sRowID) {
  std::string text;
  if (!GetDataRow(sDataID, sRowID, text)) return nullptr;
  std::shared_ptr<KvoGeneralItems> result;
  Recorded([&] { result = di::RowXmlToItems(text); });
  return result;
}

std::shared_ptr<KvoGeneralItems> KvoDatasetO::GetDataRowColItemsByIndex(const std::string& sDataID,
                                                                        int32_t nIndex) {
  std::string text;
  if (!GetDataRowByIndex(sDataID, nIndex, text)) return nullptr;
  std::shared_ptr<KvoGeneralItems> result;
  Recorded([&] { result = di::RowXmlToItems(text); });
  return result;
}

std::shared_ptr<KvoGeneralItems> KvoDatasetO::GetDataRowColItemsByKeyCol(
    const std::string& sDataID, const std::string& sKeyColName, const std::string& sKeyColValue) {
  std::string text;
  if (!GetDataRowByKeyCol(sDataID, sKeyColName, sKeyColValue, text)) return nullptr;
  std::shared_ptr<KvoGeneralItems> result;
  Recorded([&] { result = di::RowXmlToItems(text); });
  return result;
}

}  // namespace veld
