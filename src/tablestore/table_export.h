// The export of a data element's rows to a database table, shared by both
// dataset classes (their SaveDataToMDBTable). The steps, their order and the
// field matching are the classic ones:
//   1. "Invalid parameter." when the data id, file or table is blank;
//   2. the connection string from the Jet template, the caller's texts put
//      in as they are;
//   3. open the store, begin the transaction;
//   4. with bClearFirst, delete every record of the table;
//   5. open the table;
//   6. for each row: fetch its cols, add a record, set every field whose name
//      equals a col's name (first col wins, upper case compared) to the col's
//      value when that is not empty, write the record;
//   7. commit.
// Failures raise (the dataset's frame records them); a row that cannot be
// fetched rolls back and returns false. Nothing is committed on any failure.
#ifndef VELD_TABLESTORE_TABLE_EXPORT_H_
#define VELD_TABLESTORE_TABLE_EXPORT_H_

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "veld/items/kvo_general_items.h"
#include "veld/tablestore/table_store.h"

namespace veld {

struct TableExportRequest {
  std::string sDataID;
  std::string sMDBFile;
  std::string sTableName;
  std::string sUID;
  std::string sPWD;
  bool bClearFirst = false;
};

// The cols of one row, in order: what Parse of the row's text gives, names
// and values only. Reused from row to row.
struct RowCols {
  std::vector<std::string> names;
  std::vector<std::string> values;

  // Takes the names and values of a parsed collection.
  void Assign(const KvoGeneralItems& items);
};

// Fills `cols` with row `index` (1-based) of the data element. Returns false
// when the row cannot be fetched, after recording why; raises with the parse
// error's message when the row's cols cannot be read.
using FetchRowCols = std::function<bool(int32_t index, RowCols& cols)>;

// Told (total, current, status) now and then during the export; at most a
// few hundred times per call.
using ExportProgress =
    std::function<void(int32_t total, int32_t current, const std::string& status)>;

// The connection string of the classic export: "PROVIDER=Microsoft.Jet.OLEDB.4.0;
// Data Source=%DBN%;User ID=%UID%;Password=%PWD%" with each placeholder
// replaced by its value, quoted where the value would otherwise change the
// string's meaning (see QuoteConnectionValue).
std::string ExportConnectionString(const std::string& sMDBFile, const std::string& sUID,
                                   const std::string& sPWD);

// The number of rows to export, asked once the table is open.
using CountRows = std::function<int32_t()>;

// One export fed a row at a time, for callers that cannot fetch rows by
// position. The constructor does steps 1 to 5 and raises as they do; Write
// is step 6 for one row; Commit is step 7. Destroying an export that was not
// committed rolls it back.
class TableExport {
 public:
  explicit TableExport(const TableExportRequest& request);
  TableExport(const TableExport&) = delete;
  TableExport& operator=(const TableExport&) = delete;
  ~TableExport();

  void Write(const RowCols& cols);
  void Commit();
  void Rollback();

 private:
  class RowWriter;
  std::unique_ptr<TableStore> store_;
  std::unique_ptr<TableCursor> cursor_;
  std::unique_ptr<RowWriter> writer_;
};

// Runs the export. True when every row was written and committed.
bool ExportRowsToTable(const TableExportRequest& request, const CountRows& count_rows,
                       const FetchRowCols& fetch_row, const ExportProgress& progress = nullptr);

}  // namespace veld

#endif  // VELD_TABLESTORE_TABLE_EXPORT_H_
