#include "tablestore/table_export.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <vector>

#include "items/name_match.h"
#include "runtime/text.h"
#include "veld/runtime/automation_error.h"
#include "veld/tablestore/table_store.h"

#include "tablestore/connection_string.h"

namespace veld {

namespace {

// The classic statements put the table name between "[" and "]", where a
// name holding "]" cannot be written; such a name fails as those statements
// did.
void CheckBracketedName(const std::string& table) {
  if (table.find(']') != std::string::npos) {
    RaiseError(errnum::kDbCommandError, "Syntax error in FROM clause.");
  }
}

}  // namespace

// Writes rows as records: each field is set from the first col whose name
// equals the field's ignoring case (GetItemValueByName(field name, "")) when
// that col's value is not empty.
class TableExport::RowWriter {
 public:
  explicit RowWriter(TableCursor& cursor) : cursor_(cursor) {
    fields_.reserve(static_cast<size_t>(cursor.FieldCount()));
    for (int32_t f = 0; f < cursor.FieldCount(); ++f) fields_.emplace_back(cursor.FieldName(f));
    source_.assign(fields_.size(), -1);
  }

  void Write(const RowCols& cols) {
    // Rows of one data element mostly have the same cols, so the fields are
    // matched again only when the names change.
    if (!matched_ || cols.names != matched_names_) Match(cols.names);
    cursor_.AddNew();
    for (size_t f = 0; f < fields_.size(); ++f) {
      if (source_[f] < 0) continue;
      const std::string& value = cols.values[static_cast<size_t>(source_[f])];
      if (!value.empty()) cursor_.SetFieldValue(static_cast<int32_t>(f), value);
    }
    cursor_.Update();
  }

 private:
  void Match(const std::vector<std::string>& names) {
    for (size_t f = 0; f < fields_.size(); ++f) {
      const NameMatch& field = fields_[f];
      const auto found = std::find_if(names.begin(), names.end(),
                                      [&field](const std::string& name) { return field(name); });
      source_[f] = found == names.end() ? -1 : static_cast<int32_t>(found - names.begin());
    }
    matched_names_ = names;
    matched_ = true;
  }

  TableCursor& cursor_;
  std::vector<NameMatch> fields_;
  // The col each field takes its value from, or -1.
  std::vector<int32_t> source_;
  std::vector<std::string> matched_names_;
  bool matched_ = false;
};

std::string ExportConnectionString(const std::string& sMDBFile, const std::string& sUID,
                                   const std::string& sPWD) {
  // Each value is quoted where it holds what the grammar reads (";", a
  // quote, blanks at its ends), so that a password such as
  // "p;Data Source=other.db" cannot name another database; and each goes in
  // once, so that a placeholder inside one value is not filled in turn.
  return "PROVIDER=Microsoft.Jet.OLEDB.4.0;Data Source=" + QuoteConnectionValue(sMDBFile) +
         ";User ID=" + QuoteConnectionValue(sUID) + ";Password=" + QuoteConnectionValue(sPWD);
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

TableExport::TableExport(const TableExportRequest& request) {
  if (Trim(request.sDataID).empty() || Trim(request.sMDBFile).empty() ||
      Trim(request.sTableName).empty()) {
    RaiseError(errnum::kCheckFailed, "Invalid parameter.");
  }
  store_ = OpenTableStore(ExportConnectionString(request.sMDBFile, request.sUID, request.sPWD));
  store_->BeginTrans();
  if (request.bClearFirst) {
    CheckBracketedName(request.sTableName);
    store_->DeleteAllRecords(request.sTableName);
  }
  CheckBracketedName(request.sTableName);
  cursor_ = store_->OpenTable(request.sTableName);
  writer_ = std::make_unique<RowWriter>(*cursor_);
}

TableExport::~TableExport() {
  // The cursor goes before its store; a store destroyed inside a
  // transaction rolls it back.
  writer_.reset();
  cursor_.reset();
}

void TableExport::Write(const RowCols& cols) { writer_->Write(cols); }

void TableExport::Commit() {
  writer_.reset();
  cursor_.reset();
  store_->CommitTrans();
}

void TableExport::Rollback() {
  writer_.reset();
  cursor_.reset();
  store_->RollbackTrans();
}

bool ExportRowsToTable(const TableExportRequest& request, const CountRows& count_rows,
                       const FetchRowCols& fetch_row, const ExportProgress& progress) {
  TableExport table(request);
  const int32_t row_count = std::max<int32_t>(0, count_rows());
  const int32_t step = std::max<int32_t>(1, row_count / 200);
  // Rows are read a batch at a time and then written: reading many rows on
  // end runs at the memory's streaming speed, where alternating each read
  // with the database's work would wait for memory on every row. The outcome
  // is that of reading and writing row by row: a failed read takes effect
  // only after the rows before it were written, and a batch ends wherever
  // the progress listener is told, so the listener sees the same rows done.
  constexpr int32_t kBatchRows = 64;
  std::vector<RowCols> batch(kBatchRows);
  for (int32_t first = 1; first <= row_count;) {
    int32_t last = std::min(row_count, first + kBatchRows - 1);
    if (progress) last = std::min(last, ((first - 1) / step + 1) * step);
    int32_t read = 0;
    bool fetched = true;
    std::exception_ptr raised;
    for (int32_t i = first; i <= last; ++i) {
      try {
        fetched = fetch_row(i, batch[static_cast<size_t>(i - first)]);
      } catch (...) {
        raised = std::current_exception();
      }
      if (!fetched || raised) break;
      ++read;
    }
    for (int32_t k = 0; k < read; ++k) table.Write(batch[static_cast<size_t>(k)]);
    if (raised) std::rethrow_exception(raised);
    if (!fetched) {
      table.Rollback();
      return false;
    }
    if (progress && (last % step == 0 || last == row_count)) {
      progress(row_count, last, "Exporting rows to " + request.sTableName);
    }
    first = last + 1;
  }
  table.Commit();
  return true;
}

}  // namespace veld
