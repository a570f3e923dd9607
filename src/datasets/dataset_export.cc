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

namespace di = datasets_internal;

// Reads a fetched row's text into cols; a row that does not parse fails the
// export with the parser's message.
void ParseRow(const std::string& row_xml, RowCols& cols) {
  KvoGeneralItems items;
  std::string message;
  if (!items.Parse(row_xml, false, "", &message)) RaiseError(errnum::kCheckFailed, message);
  cols.Assign(items);
}

// Passes the export's progress to the attached notifier, if any.
ExportProgress TellTo(const std::shared_ptr<KvoProgressUpdater>& updater) {
  if (!updater) return nullptr;
  return [updater](int32_t total, int32_t current, const std::string& status) {
    updater->ProgressChangeNotify(total, current, status);
  };
}

// The export of one data element. Row i is the element `find_row(i)` gives,
// read in place when its content reads the same that way as from its text;
// when `find_row` gives none, `fetch_text(i, text)` fetches the row's text
// as the class's public fetch does (false: it failed and recorded why).
template <class FindRow, class FetchText>
bool ExportData(const TableExportRequest& request, const CountRows& count_rows,
                const std::shared_ptr<KvoProgressUpdater>& updater, FindRow find_row,
                FetchText fetch_text) {
  std::string row_xml;
  return ExportRowsToTable(
      request, count_rows,
      [&](int32_t index, RowCols& cols) {
        if (xmlNodePtr row = find_row(index)) {
          if (!items_internal::ReadPlainNamesAndValues(row, cols.names, cols.values)) {
            ParseRow(di::NodeText(row), cols);
          }
          return true;
        }
        if (!fetch_text(index, row_xml)) return false;
        ParseRow(row_xml, cols);
        return true;
      },
      TellTo(updater));
}

}  // namespace

bool KvoDatasetO::SaveDataToMDBTable(const std::string& sDataID, const std::string& sMDBFile,
                                     const std::string& sTableName, const std::string& sUID,
                                     const std::string& sPWD, bool bClearFirst) {
  bool result = false;
  Recorded([&] {
    result = ExportData(
        {sDataID, sMDBFile, sTableName, sUID, sPWD, bClearFirst},
        [&] { return GetDataRowCount(sDataID); }, progress_,
        // GetDataRowByIndex fetches the first row with the ID of the row at
        // that position.
        [&](int32_t index) -> xmlNodePtr {
          xmlNodePtr at = store_->IndexedRowAt(sDataID, index);
          return at != nullptr ? store_->FirstRowWithIdOf(at) : nullptr;
        },
        [&](int32_t index, std::string& row_xml) {
          return GetDataRowByIndex(sDataID, index, row_xml);
        });
  });
  return result;
}

bool KvoDataset::SaveDataToMDBTable(const std::string& sDataID, const std::string& sMDBFile,
                                    const std::string& sTableName, const std::string& sUID,
                                    const std::string& sPWD, bool bClearFirst) {
  bool result = false;
  Recorded([&] {
    result = ExportData(
        {sDataID, sMDBFile, sTableName, sUID, sPWD, bClearFirst},
        [&] { return GetDataRowCount(sDataID); }, progress_,
        [&](int32_t index) { return store_->IndexedRowAt(sDataID, index); },
        [&](int32_t index, std::string& row_xml) { return GetDataRow(sDataID, index, row_xml); });
  });
  return result;
}

}  // namespace veld
