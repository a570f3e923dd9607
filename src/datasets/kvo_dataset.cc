#include "veld/datasets/kvo_dataset.h"

#include <utility>

#include "datasets/dataset_common.h"
#include "datasets/dataset_progress.h"
#include "datasets/dataset_store.h"
#include "foundation/frame_settings.h"
#include "foundation/this_utils.h"
#include "runtime/text.h"
#include "xml/xml_internal.h"

namespace veld {

using datasets_internal::Check;
using datasets_internal::DatasetStore;
using datasets_internal::NodeText;
namespace di = datasets_internal;
namespace xi = xml_internal;

namespace {

// Whether a node taken from a text may be moved into the held document
// instead of being copied: without namespaces or entity references the two
// give the same tree.
bool Movable(xmlNodePtr node) { return !di::ScanSubtree(node, nullptr).foreign; }

// Appends the selected rows of a data text to `data`, each whole.
void AppendRows(DatasetStore& store, xmlNodePtr data, const std::vector<xmlNodePtr>& rows,
                bool nested, const XmlDocument& owner) {
  bool movable = !nested;
  for (xmlNodePtr row : rows) {
    if (movable && !Movable(row)) movable = false;
  }
  if (movable) {
    for (xmlNodePtr row : rows) store.InsertChild(data, row, nullptr);
    return;
  }
  XmlNode target = store.Wrap(data);
  for (xmlNodePtr row : rows) target.AppendChild(xi::WrapNode(owner, row));
  store.Forget();
}

// Puts the root element of a row text into `data` before `ref` (null: at the
// end), moving it when that gives the same tree, else copying it as the
// DOM's insertion does.
void PlaceRow(DatasetStore& store, xmlNodePtr data, XmlDocument& text, xmlNodePtr ref) {
  xmlNodePtr root = xmlDocGetRootElement(xi::LibxmlDoc(text));
  if ((ref == nullptr || ref->parent == data) && Movable(root)) {
    store.InsertChild(data, root, ref);
    return;
  }
  store.Wrap(data).InsertBefore(text.DocumentElement(),
                                ref == nullptr ? XmlNode() : store.Wrap(ref));
  store.Forget();
}

}  // namespace

KvoDataset::KvoDataset() : KvoDatasetBase(kDatasetFrame) {}

KvoDataset::~KvoDataset() = default;

// --- Whole documents ---

bool KvoDataset::LoadDataset(const std::string& source, bool is_file,
                             const std::string& data_xpath) {
  bool result = false;
  Recorded([&] {
    Reset();
    result = di::LoadDatasetWith(
        *store_, progress_.get(), source, is_file, data_xpath, [this] { Reset(); },
        [this](xmlNodePtr node, const di::SubtreeFacts& facts, di::ProgressSteps& progress) {
          std::vector<xmlNodePtr> rows;
          bool nested = false;
          di::CollectMarkedRowsOf(node, rows, nested, !facts.nested);
          if (nested) return di::InPlace::kNotTaken;
          // AddData with an empty ID and the element's text, read from the
          // element.
          std::string id = DatasetStore::GuidOf(node);
          if (id.empty()) id = NewGuidText(Kvo_GUID_FORMAT_PUREDATA);
          di::EnsureDataElement(*store_, id);
          std::vector<xmlNodePtr> found = store_->SelectData(id);
          if (found.empty()) Check(di::kDataElementNotFound + id);
          for (xmlNodePtr data : found) store_->RemoveElementChildren(data);
          for (xmlNodePtr row : rows) {
            store_->InsertChild(found.front(), row, nullptr);
            progress.Advance(1);
          }
          return di::InPlace::kAdded;
        },
        [this](const std::string& text) { return AddData("", text); });
  });
  return result;
}

bool KvoDataset::Parse(const std::string& sDatasetXml, const std::string& sDataXPath) {
  return LoadDataset(sDatasetXml, false, sDataXPath);
}

bool KvoDataset::ParseFile(const std::string& sDatasetFile, const std::string& sDataXPath) {
  return LoadDataset(sDatasetFile, true, sDataXPath);
}

// --- Data elements ---

bool KvoDataset::AddData(const std::string& sDataID, const std::string& sDataXml) {
  bool result = false;
  Recorded([&] {
    std::string id = Trim(sDataID);
    if (id.empty()) id = di::GetDataIDFromXml(sDataXml);
    if (id.empty()) id = NewGuidText(Kvo_GUID_FORMAT_PUREDATA);
    if (di::EnsureDataElement(*store_, id) == nullptr) return;
    if (!sDataXml.empty() && !UpdateData(id, sDataXml)) return;
    result = true;
  });
  return result;
}

bool KvoDataset::UpdateData(const std::string& sDataID, const std::string& sDataXml) {
  bool result = false;
  Recorded([&] {
    std::vector<xmlNodePtr> found = store_->SelectData(sDataID);
    if (found.empty()) Check(di::kDataElementNotFound + sDataID);
    for (xmlNodePtr data : found) store_->RemoveElementChildren(data);
    XmlDocument text;
    if (!text.LoadXml(sDataXml)) Check(di::kFailedLoadDataXml);
    std::vector<xmlNodePtr> rows;
    bool nested = false;
    di::CollectMarkedRows(xi::LibxmlDoc(text)->children, false, rows, nested);
    AppendRows(*store_, found.front(), rows, nested, text);
    result = true;
  });
  return result;
}

bool KvoDataset::UpdateDataByIndex(int32_t nDataIndex, const std::string& sDataXml) {
  bool result = false;
  Recorded([&] {
    std::string id;
    if (!GetDataID(nDataIndex, id)) {
      return;
    }
    result = UpdateData(id, sDataXml);
  });
  return result;
}

// --- Rows by position ---

bool KvoDataset::GetDataRow(const std::string& sDataID, int32_t nIndex, std::string& sDataRowXml) {
  bool result = false;
  Recorded([&] {
    sDataRowXml.clear();
    std::vector<xmlNodePtr> rows = store_->SelectRowsByPosition(sDataID, nIndex);
    if (rows.empty()) Check(di::kDataRowIdNotFound);
    sDataRowXml = NodeText(rows.front());
    result = true;
  });
  return result;
}

bool KvoDataset::AddDataRow(const std::string& sDataID, const std::string& sDataRowXml) {
  bool result = false;
  Recorded([&] {
    if (Trim(sDataID).empty()) Check(di::kInvalidRowToAdd);
    xmlNodePtr data = store_->FirstData(sDataID);
    if (data == nullptr) Check(di::InvalidDataId(sDataID));
    XmlDocument text;
    if (!text.LoadXml(sDataRowXml)) Check(di::kInvalidRowContent);
    PlaceRow(*store_, data, text, nullptr);
    result = true;
  });
  return result;
}

bool KvoDataset::InsertDataRow(const std::string& sDataID, const std::string& sDataRowXml,
                               int32_t nIndex) {
  bool result = false;
  Recorded([&] {
    if (Trim(sDataID).empty() || nIndex < 0) Check(di::kInvalidRowToInsert);
    xmlNodePtr data = store_->FirstData(sDataID);
    if (data == nullptr) Check(di::InvalidDataId(sDataID));
    XmlDocument text;
    if (!text.LoadXml(sDataRowXml)) Check(di::kInvalidRowContent);
    std::vector<xmlNodePtr> rows = store_->SelectRowsByPosition(sDataID, nIndex);
    PlaceRow(*store_, data, text, rows.empty() ? nullptr : rows.front());
    result = true;
  });
  return result;
}

bool KvoDataset::DeleteDataRow(const std::string& sDataID, int32_t nIndex) {
  bool result = false;
  Recorded([&] {
    for (xmlNodePtr row : store_->SelectRowsByPosition(sDataID, nIndex)) store_->Remove(row);
    result = true;
  });
  return result;
}

bool KvoDataset::UpdateDataRow(const std::string& sDataID, int32_t nIndex,
                               const std::string& sDataRowXml) {
  bool result = false;
  Recorded([&] {
    if (Trim(sDataID).empty() || nIndex < 0) Check(di::kInvalidRowIndexToUpdate);
    xmlNodePtr data = store_->FirstData(sDataID);
    if (data == nullptr) Check(di::InvalidDataId(sDataID));
    std::vector<xmlNodePtr> rows = store_->SelectRowsByPosition(sDataID, nIndex);
    if (rows.empty()) Check(di::kDataRowNotFound);
    XmlDocument text;
    if (!text.LoadXml(sDataRowXml)) Check(di::kInvalidRowContent);
    xmlNodePtr old = rows.front();
    xmlNodePtr root = xmlDocGetRootElement(xi::LibxmlDoc(text));
    if (old->parent == data && Movable(root)) {
      store_->Replace(data, root, old);
    } else {
      XmlNode replaced = store_->Wrap(data).ReplaceChild(text.DocumentElement(), store_->Wrap(old));
      if (!replaced) Check(di::kReplaceDataError);
      store_->Forget();
    }
    result = true;
  });
  return result;
}

int32_t KvoDataset::GetDataRowCount(const std::string& sDataID) {
  int32_t result = -1;
  Recorded(
      [&] { result = static_cast<int32_t>(store_->SelectRowsByPosition(sDataID, -1).size()); });
  return result;
}

int32_t KvoDataset::GetDataRowCountByIndex(int32_t nDataIndex) {
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

bool KvoDataset::AddDataRowByIndex(int32_t nDataIndex, const std::string& sDataRowXml) {
  bool result = false;
  Recorded([&] {
    std::string id;
    if (!GetDataID(nDataIndex, id)) {
      return;
    }
    result = AddDataRow(id, sDataRowXml);
  });
  return result;
}

// --- Rows by key column ---

int32_t KvoDataset::GetDataRowArrayByKeyCol(const std::string& sDataID,
                                            const std::string& sKeyColName,
                                            const std::string& sKeyColValue,
                                            std::vector<std::string>& sRowDataXmlArray) {
  int32_t result = -1;
  Recorded([&] {
    result = di::TextsOfRows(di::KeyColRows(*store_, sDataID, sKeyColName, sKeyColValue),
                             sRowDataXmlArray, [](xmlNodePtr row) { return NodeText(row); });
  });
  return result;
}

bool KvoDataset::GetDataRowByKeyCol(const std::string& sDataID, const std::string& sKeyColName,
                                    const std::string& sKeyColValue, std::string& sRowDataXml,
                                    int32_t nIndex) {
  bool result = false;
  Recorded([&] {
    sRowDataXml.clear();
    if (nIndex < 1) Check(di::kInvalidIndexValue);
    std::vector<std::string> texts;
    int32_t found = GetDataRowArrayByKeyCol(sDataID, sKeyColName, sKeyColValue, texts);
    if (nIndex > found) Check(di::kIndexOutOfBounds);
    sRowDataXml = texts[static_cast<size_t>(nIndex) - 1];
    result = true;
  });
  return result;
}

bool KvoDataset::DeleteDataRowByKeyCol(const std::string& sDataID, const std::string& sKeyColName,
                                       const std::string& sKeyColValue) {
  bool result = false;
  Recorded([&] {
    for (xmlNodePtr row : di::KeyColRows(*store_, sDataID, sKeyColName, sKeyColValue)) {
      store_->Remove(row);
    }
    result = true;
  });
  return result;
}

// --- Rows as item collections ---

std::shared_ptr<KvoGeneralItems> KvoDataset::GetDataRowColItems(const std::string& sDataID,
                                                                int32_t nIndex) {
  std::string text;
  if (!GetDataRow(sDataID, nIndex, text)) return nullptr;
  std::shared_ptr<KvoGeneralItems> result;
  Recorded([&] { result = di::RowXmlToItems(text); });
  return result;
}

std::shared_ptr<KvoGeneralItems> KvoDataset::GetDataRowColItemsByKeyCol(
    const std::string& sDataID, const std::string& sKeyColName, const std::string& sKeyColValue) {
  std::string text;
  if (!GetDataRowByKeyCol(sDataID, sKeyColName, sKeyColValue, text, 1)) return nullptr;
  std::shared_ptr<KvoGeneralItems> result;
  Recorded([&] { result = di::RowXmlToItems(text); });
  return result;
}

}  // namespace veld
