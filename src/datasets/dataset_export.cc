// SaveDataToMDBTable of both dataset classes: the shared export run with each
// class's own way of fetching a row by position.
#include <string>

#include "veld/datasets/kvo_dataset.h"
#include "veld/datasets/kvo_dataset_o.h"
#include "veld/items/kvo_general_items.h"

#include "tablestore/table_export.h"

namespace veld {

namespace {

// Reads a fetched row's text into cols; a row that does not parse fails the
// export with the parser's message.
void ParseRow(const std::string& row_xml, KvoGeneralItems& cols) {
  std::string message;
  if (!cols.Parse(row_xml, false, "", &message)) RaiseError(errnum::kCheckFailed, message);
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
        [&](int32_t index, KvoGeneralItems& cols) {
          std::string row_xml;
          // A failed fetch has recorded why; the export rolls back.
          if (!GetDataRowByIndex(sDataID, index, row_xml)) return false;
          ParseRow(row_xml, cols);
          return true;
        });
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
        [&](int32_t index, KvoGeneralItems& cols) {
          std::string row_xml;
          if (!GetDataRow(sDataID, index, row_xml)) return false;
          ParseRow(row_xml, cols);
          return true;
        });
  });
  return result;
}

}  // namespace veld
