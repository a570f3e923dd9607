// SaveDataToMDBTable of both dataset classes: the shared export run with each
// class's own way of fetching a row by position.
#include <string>

#include "datasets/dataset_common.h"
#include "datasets/dataset_store.h"
#include "items/items_element.h"
#include "veld/datasets/kvo_dataset.h"
#include "veld/datasets/kvo_dataset_o.h"
#include "veld/items/kvo_general_items.h"
#include "veld/xmlhelper/kvo_progress_updater.h"

#include "tablestore/table_export.h"

namespace veld {

namespace {

// Reads a fetched row's text into cols; a row that does not parse fails the
// export with the parser's message.
void ParseRow(const std::string& row_xml, RowCols& cols) {
  KvoGeneralItems items;
  std::string message;
  if (!items.Parse(row_xml, false, "", &message)) RaiseError(errnum::kCheckFailed, message);
  cols.Assign(items);
}

// Reads a row element's cols as ParseRow reads its text, without writing the
// text out: in place, unless namespaces or entity references in the document
// (`foreign`) could make the written text read differently.
void ReadRow(datasets_internal::DatasetStore& store, xmlNodePtr row, bool foreign, RowCols& cols) {
  if (foreign) {
    ParseRow(datasets_internal::NodeText(row), cols);
    return;
  }
  items_internal::ReadNamesAndValues(store.Wrap(row), cols.names, cols.values);
}

// Whether anything in the held document could read differently once written
// out; asked once per export.
bool HasForeignContent(datasets_internal::DatasetStore& store) {
  xmlNodePtr root = store.Root();
  return root != nullptr && datasets_internal::ScanSubtree(root, "row").foreign;
}

// Passes the export's progress to the attached notifier, if any.
ExportProgress TellTo(const std::shared_ptr<KvoProgressUpdater>& updater) {
  if (!updater) return nullptr;
  return [updater](int32_t total, int32_t current, const std::string& status) {
    updater->ProgressChangeNotify(total, current, status);
  };
}

}  // namespace

bool KvoDatasetO::SaveDataToMDBTable(const std::string& sDataID, const std::string& sMDBFile,
                                     const std::string& sTableName, const std::string& sUID,
                                     const std::string& sPWD, bool bClearFirst) {
  bool result = false;
  Recorded([&] {
    const TableExportRequest request{sDataID, sMDBFile, sTableName, sUID, sPWD, bClearFirst};
    result = ExportRowsToTable(
        request, [&] { return GetDataRowCount(sDataID); },
        [&, foreign = HasForeignContent(*store_)](int32_t index, RowCols& cols) {
          // GetDataRowByIndex fetches the row whose ID the row at that
          // position has (the first row with that ID), as a node here.
          std::vector<xmlNodePtr> at = store_->SelectRowsByPosition(sDataID, index);
          if (!at.empty()) {
            const std::string guid = datasets_internal::DatasetStore::GuidOf(at.front());
            std::vector<xmlNodePtr> rows = store_->SelectRowsById(sDataID, guid);
            if (!rows.empty()) {
              ReadRow(*store_, rows.front(), foreign, cols);
              return true;
            }
          }
          std::string row_xml;
          // A failed fetch has recorded why; the export rolls back.
          if (!GetDataRowByIndex(sDataID, index, row_xml)) return false;
          ParseRow(row_xml, cols);
          return true;
        },
        TellTo(progress_));
  });
  return result;
}

bool KvoDataset::SaveDataToMDBTable(const std::string& sDataID, const std::string& sMDBFile,
                                    const std::string& sTableName, const std::string& sUID,
                                    const std::string& sPWD, bool bClearFirst) {
  bool result = false;
  Recorded([&] {
    const TableExportRequest request{sDataID, sMDBFile, sTableName, sUID, sPWD, bClearFirst};
    result = ExportRowsToTable(
        request, [&] { return GetDataRowCount(sDataID); },
        [&, foreign = HasForeignContent(*store_)](int32_t index, RowCols& cols) {
          // GetDataRow's row, read in place.
          std::vector<xmlNodePtr> at = store_->SelectRowsByPosition(sDataID, index);
          if (!at.empty()) {
            ReadRow(*store_, at.front(), foreign, cols);
            return true;
          }
          std::string row_xml;
          if (!GetDataRow(sDataID, index, row_xml)) return false;
          ParseRow(row_xml, cols);
          return true;
        },
        TellTo(progress_));
  });
  return result;
}

}  // namespace veld
