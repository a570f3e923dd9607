#include "tablestore/table_export.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "items/name_match.h"
#include "runtime/text.h"
#include "veld/runtime/automation_error.h"
#include "veld/tablestore/table_store.h"

namespace veld {

namespace {

void ReplaceAll(std::string& text, const std::string& from, const std::string& to) {
  for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
}

// The classic statements put the table name between "[" and "]", where a
// name holding "]" cannot be written; such a name fails as those statements
// did.
void CheckBracketedName(const std::string& table) {
  if (table.find(']') != std::string::npos) {
    RaiseError(errnum::kDbCommandError, "Syntax error in FROM clause.");
  }
}

}  // namespace

std::string ExportConnectionString(const std::string& sMDBFile, const std::string& sUID,
                                   const std::string& sPWD) {
  std::string connection =
      "PROVIDER=Microsoft.Jet.OLEDB.4.0;Data Source=%DBN%;User ID=%UID%;Password=%PWD%";
  ReplaceAll(connection, "%DBN%", sMDBFile);
  ReplaceAll(connection, "%UID%", sUID);
  ReplaceAll(connection, "%PWD%", sPWD);
  return connection;
}

void RowCols::Assign(const KvoGeneralItems& items) {
  names.resize(static_cast<size_t>(items.Count()));
  values.resize(names.size());
  size_t i = 0;
  for (const auto& item : items) {
    names[i] = item->Name;
    values[i] = item->Value;
    ++i;
  }
}

bool ExportRowsToTable(const TableExportRequest& request, const CountRows& count_rows,
                       const FetchRowCols& fetch_row, const ExportProgress& progress) {
  if (Trim(request.sDataID).empty() || Trim(request.sMDBFile).empty() ||
      Trim(request.sTableName).empty()) {
    RaiseError(errnum::kCheckFailed, "Invalid parameter.");
  }
  std::unique_ptr<TableStore> store =
      OpenTableStore(ExportConnectionString(request.sMDBFile, request.sUID, request.sPWD));
  store->BeginTrans();
  if (request.bClearFirst) {
    CheckBracketedName(request.sTableName);
    store->DeleteAllRecords(request.sTableName);
  }
  CheckBracketedName(request.sTableName);
  std::unique_ptr<TableCursor> cursor = store->OpenTable(request.sTableName);

  // Each field's name compared the by-name way, prepared once for all rows.
  std::vector<NameMatch> fields;
  fields.reserve(static_cast<size_t>(cursor->FieldCount()));
  for (int32_t f = 0; f < cursor->FieldCount(); ++f) fields.emplace_back(cursor->FieldName(f));

  const int32_t row_count = std::max<int32_t>(0, count_rows());
  const int32_t step = std::max<int32_t>(1, row_count / 200);
  RowCols cols;
  for (int32_t i = 1; i <= row_count; ++i) {
    if (!fetch_row(i, cols)) {
      store->RollbackTrans();
      return false;
    }
    cursor->AddNew();
    for (size_t f = 0; f < fields.size(); ++f) {
      // GetItemValueByName(field name, ""): the first col of that name.
      for (size_t c = 0; c < cols.names.size(); ++c) {
        if (!fields[f](cols.names[c])) continue;
        if (!cols.values[c].empty()) {
          cursor->SetFieldValue(static_cast<int32_t>(f), cols.values[c]);
        }
        break;
      }
    }
    cursor->Update();
    if (progress && (i % step == 0 || i == row_count)) {
      progress(row_count, i, "Exporting rows to " + request.sTableName);
    }
  }
  cursor.reset();
  store->CommitTrans();
  return true;
}

}  // namespace veld
