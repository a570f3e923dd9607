// The export of one data element of a dataset file to a table, read from the
// file as a stream: ParseFile followed by SaveDataToMDBTable, without holding
// the document. The file is parsed once (twice with a progress notifier,
// whose first reports need the totals), and only the row being read is in
// memory.
//
// The outcome is the held-document path's: the same rows in the same order,
// the same failure recorded, nothing committed unless everything succeeded
// (commit waits for the end of the file, so a malformed tail rolls back),
// the same progress reports. Two rules of ParseFile need care:
//   - data elements whose ids differ only by case are one data element,
//     kept where the first stood but holding the last one's rows: the
//     export starts over (rollback, begin again) at each later one;
//   - the file must be well-formed before anything counts: a failure of the
//     export is held back until the end of the file shows that ParseFile
//     would have succeeded;
//   - ParseFile loads the text of each data element on its own, and in
//     KvoDatasetO that of each data row too; a namespace prefix declared
//     outside that text does not load there, and ParseFile fails ("Failed
//     to load data xml.", "Failed to load data row xml.") on the first such
//     data element. So does the export, with ParseFile's progress reports
//     up to there. KvoDataset keeps such a row whole, with the
//     declarations it needs.
// Files whose shape gives rows that are not simply the rows read need the
// whole document; for them ExportDatasetFile reports kNeedsDocument, having
// written nothing, and the caller takes the held-document path:
//   - a document type declaration (entity references);
//   - a data element inside another data element;
//   - a data id with blanks at either end or holding an apostrophe;
//   - a data path other than "//data", "/*/data" and "".
// Files of more than 2 GiB, which the held-document path refuses to load,
// are exported.
#ifndef VELD_DATASETS_DATASET_FILE_EXPORT_H_
#define VELD_DATASETS_DATASET_FILE_EXPORT_H_

#include <string>

#include <libxml/tree.h>

#include "veld/xmlhelper/kvo_progress_updater.h"

#include "tablestore/table_export.h"

namespace veld::datasets_internal {

// What a held data element keeps of a row read from text.
enum class HeldRow {
  kCols,   // KvoDatasetO: a new row holding the row's cols
  kWhole,  // KvoDataset: the row element itself
};

struct FileExportRequest {
  std::string file;
  std::string data_xpath;
  TableExportRequest table;
  HeldRow held = HeldRow::kCols;
  KvoProgressUpdater* updater = nullptr;
  // A file without the data element is then kDataMissing, with nothing
  // written, instead of an export of no rows.
  bool require_data = false;
};

enum class FileExportOutcome { kExported, kDataMissing, kNeedsDocument };

// Runs the export. Raises what ParseFile or SaveDataToMDBTable would have
// recorded.
FileExportOutcome ExportDatasetFile(const FileExportRequest& request);

// The cols of a row's text, as the export reads them: Parse of the text
// into items; raises with the parse error's message.
void ParseRowCols(const std::string& row_xml, RowCols& cols);

}  // namespace veld::datasets_internal

#endif  // VELD_DATASETS_DATASET_FILE_EXPORT_H_
