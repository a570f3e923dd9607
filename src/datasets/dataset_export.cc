// SaveDataToMDBTable of both dataset classes: the shared export run with each
// class's own way of fetching a row by position.
#include <string>

#include "datasets/dataset_common.h"
#include "datasets/dataset_file_export.h"
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
            di::ParseRowCols(di::NodeText(row), cols);
          }
          return true;
        }
        if (!fetch_text(index, row_xml)) return false;
        di::ParseRowCols(row_xml, cols);
        return true;
      },
      TellTo(updater));
}

// The streamed export of a file; false with `needs_document` set when the
// file must be loaded whole instead.
bool ExportFile(const di::FileExportRequest& request, bool* pbDataFound, bool& needs_document) {
  if (pbDataFound != nullptr) *pbDataFound = true;
  switch (di::ExportDatasetFile(request)) {
    case di::FileExportOutcome::kExported:
      return true;
    case di::FileExportOutcome::kDataMissing:
      *pbDataFound = false;
      di::Check(di::kDataIdNotFound);
    case di::FileExportOutcome::kNeedsDocument:
      break;
  }
  needs_document = true;
  return false;
}

// ParseFile then SaveDataToMDBTable on a dataset of the class, for the
// files the stream does not take. Raises the failure either records.
template <class Dataset, class ParseFile>
bool ExportLoaded(Dataset& loaded, ParseFile parse, const std::string& sDataID,
                  const std::string& sMDBFile, const std::string& sTableName,
                  const std::string& sUID, const std::string& sPWD, bool bClearFirst,
                  bool* pbDataFound) {
  if (!parse()) loaded.RaiseLastError();
  if (pbDataFound != nullptr) {
    *pbDataFound = loaded.ExistData(sDataID);
    if (!*pbDataFound) di::Check(di::kDataIdNotFound);
  }
  if (!loaded.SaveDataToMDBTable(sDataID, sMDBFile, sTableName, sUID, sPWD, bClearFirst)) {
    loaded.RaiseLastError();
  }
  return true;
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

namespace veld {

bool KvoDatasetO::ExportFileToMDBTable(const std::string& sDatasetFile, const std::string& sDataID,
                                       const std::string& sMDBFile, const std::string& sTableName,
                                       const std::string& sUID, const std::string& sPWD,
                                       bool bClearFirst, const std::string& sDataXPath,
                                       bool* pbDataFound) {
  bool result = false;
  Recorded([&] {
    Reset();
    bool needs_document = false;
    result = ExportFile({sDatasetFile,
                         sDataXPath,
                         {sDataID, sMDBFile, sTableName, sUID, sPWD, bClearFirst},
                         di::HeldRow::kCols,
                         progress_.get(),
                         pbDataFound != nullptr},
                        pbDataFound, needs_document);
    if (!needs_document) return;
    KvoDatasetO loaded;
    loaded.SetProgressUpdater(progress_);
    result = ExportLoaded(
        loaded, [&] { return loaded.ParseFile(sDatasetFile, "", sDataXPath); }, sDataID, sMDBFile,
        sTableName, sUID, sPWD, bClearFirst, pbDataFound);
  });
  return result;
}

bool KvoDataset::ExportFileToMDBTable(const std::string& sDatasetFile, const std::string& sDataID,
                                      const std::string& sMDBFile, const std::string& sTableName,
                                      const std::string& sUID, const std::string& sPWD,
                                      bool bClearFirst, const std::string& sDataXPath,
                                      bool* pbDataFound) {
  bool result = false;
  Recorded([&] {
    Reset();
    bool needs_document = false;
    result = ExportFile({sDatasetFile,
                         sDataXPath,
                         {sDataID, sMDBFile, sTableName, sUID, sPWD, bClearFirst},
                         di::HeldRow::kWhole,
                         progress_.get(),
                         pbDataFound != nullptr},
                        pbDataFound, needs_document);
    if (!needs_document) return;
    KvoDataset loaded;
    loaded.SetProgressUpdater(progress_);
    result = ExportLoaded(
        loaded, [&] { return loaded.ParseFile(sDatasetFile, sDataXPath); }, sDataID, sMDBFile,
        sTableName, sUID, sPWD, bClearFirst, pbDataFound);
  });
  return result;
}

}  // namespace veld
