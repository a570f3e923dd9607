#include "tablestore/sqlite_table_store.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include <sqlite3.h>

#include "runtime/file_path.h"
#include "veld/runtime/automation_error.h"

#include "tablestore/field_type.h"

namespace veld {

namespace {

struct StatementDeleter {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, StatementDeleter>;

[[noreturn]] void RaiseSqlite(int32_t number, sqlite3* db, const std::string& context = "") {
  std::string message = db != nullptr ? sqlite3_errmsg(db) : "out of memory";
  if (!context.empty()) message = context + ": " + message;
  RaiseError(number, message);
}

// "name" with inner quotes doubled. Names holding a NUL cannot be written.
std::string QuoteIdentifier(const std::string& name) {
  if (name.find('\0') != std::string::npos) {
    RaiseError(errnum::kDbCommandError, "The name cannot be quoted: it holds a NUL character.");
  }
  std::string quoted = "\"";
  for (char c : name) {
    quoted += c;
    if (c == '"') quoted += '"';
  }
  quoted += '"';
  return quoted;
}

Statement Prepare(sqlite3* db, const std::string& sql, int32_t number = errnum::kDbCommandError) {
  sqlite3_stmt* statement = nullptr;
  if (sqlite3_prepare_v2(db, sql.c_str(), static_cast<int>(sql.size()), &statement, nullptr) !=
      SQLITE_OK) {
    RaiseSqlite(number, db);
  }
  return Statement(statement);
}

void Execute(sqlite3* db, const std::string& sql) {
  Statement statement = Prepare(db, sql);
  if (sqlite3_step(statement.get()) != SQLITE_DONE) RaiseSqlite(errnum::kDbCommandError, db);
}

struct Column {
  std::string name;
  std::string declared;
  FieldType type;
};

class SqliteCursor final : public TableCursor {
 public:
  SqliteCursor(sqlite3* db, std::string quoted_table, std::vector<Column> columns)
      : db_(db), table_(std::move(quoted_table)), columns_(std::move(columns)) {}

  int32_t FieldCount() const override { return static_cast<int32_t>(columns_.size()); }
  const std::string& FieldName(int32_t index) const override { return columns_.at(index).name; }

  void AddNew() override {
    // The values keep their text buffers from row to row; only the flags reset.
    values_.resize(columns_.size());
    set_.assign(columns_.size(), false);
  }

  void SetFieldValue(int32_t index, const std::string& text) override {
    const Column& column = columns_.at(static_cast<size_t>(index));
    if (set_.size() != columns_.size()) AddNew();
    const auto slot = static_cast<size_t>(index);
    if (!ConvertTextInto(column.type, text, values_[slot])) {
      set_[slot] = false;
      RaiseError(errnum::kDbValueNotConvertible,
                 "The value '" + text + "' cannot be converted to the type " +
                     (column.declared.empty() ? std::string("of the field") : column.declared) +
                     " of field '" + column.name + "'.");
    }
    set_[slot] = true;
  }

  void Update() override {
    if (set_.size() != columns_.size()) AddNew();
    const std::vector<bool>& set = set_;
    // Each statement has one parameter per field it sets, and every one is
    // bound below; statements are reset after each step.
    sqlite3_stmt* statement = InsertFor(set);
    int parameter = 0;
    for (size_t i = 0; i < values_.size(); ++i) {
      if (!set[i]) continue;
      ++parameter;
      const FieldValue& value = values_[i];
      if (const auto* whole = std::get_if<int64_t>(&value)) {
        sqlite3_bind_int64(statement, parameter, *whole);
      } else if (const auto* real = std::get_if<double>(&value)) {
        sqlite3_bind_double(statement, parameter, *real);
      } else {
        const auto& text = std::get<std::string>(value);
        sqlite3_bind_text(statement, parameter, text.data(), static_cast<int>(text.size()),
                          SQLITE_STATIC);
      }
    }
    const int rc = sqlite3_step(statement);
    sqlite3_reset(statement);
    set_.assign(columns_.size(), false);
    if (rc != SQLITE_DONE) RaiseSqlite(errnum::kDbCommandError, db_);
  }

 private:
  // One prepared INSERT per set of assigned fields, so that unassigned fields
  // keep the column's default.
  sqlite3_stmt* InsertFor(const std::vector<bool>& set) {
    // Rows usually set the same fields, so the last statement is tried first.
    if (last_insert_ != nullptr && set == last_set_) return last_insert_;
    last_set_ = set;
    last_insert_ = Lookup(set);
    return last_insert_;
  }

  sqlite3_stmt* Lookup(const std::vector<bool>& set) {
    auto found = inserts_.find(set);
    if (found != inserts_.end()) return found->second.get();
    std::string names;
    std::string marks;
    for (size_t i = 0; i < columns_.size(); ++i) {
      if (!set[i]) continue;
      if (!names.empty()) {
        names += ", ";
        marks += ", ";
      }
      names += QuoteIdentifier(columns_[i].name);
      marks += "?";
    }
    const std::string sql =
        names.empty() ? "INSERT INTO " + table_ + " DEFAULT VALUES"
                      : "INSERT INTO " + table_ + " (" + names + ") VALUES (" + marks + ")";
    Statement statement = Prepare(db_, sql);
    sqlite3_stmt* raw = statement.get();
    inserts_.emplace(set, std::move(statement));
    return raw;
  }

  sqlite3* db_;
  std::string table_;
  std::vector<Column> columns_;
  std::vector<FieldValue> values_;
  std::vector<bool> set_;
  std::map<std::vector<bool>, Statement> inserts_;
  std::vector<bool> last_set_;
  sqlite3_stmt* last_insert_ = nullptr;
};

class SqliteTableStore final : public TableStore {
 public:
  explicit SqliteTableStore(sqlite3* db) : db_(db) {}

  ~SqliteTableStore() override {
    if (in_transaction_) sqlite3_exec(db_, "ROLLBACK", nullptr, nullptr, nullptr);
    sqlite3_close_v2(db_);
  }

  void BeginTrans() override {
    // Take the write lock now, so that a busy database fails here and not
    // halfway through the rows.
    Execute(db_, "BEGIN IMMEDIATE");
    in_transaction_ = true;
  }

  void CommitTrans() override {
    Execute(db_, "COMMIT");
    in_transaction_ = false;
  }

  void RollbackTrans() override {
    if (!in_transaction_) return;
    in_transaction_ = false;
    Execute(db_, "ROLLBACK");
  }

  void DeleteAllRecords(const std::string& table) override {
    Execute(db_, "DELETE FROM " + QuoteIdentifier(CheckTable(table)));
  }

  std::unique_ptr<TableCursor> OpenTable(const std::string& table) override {
    const std::string name = CheckTable(table);
    Statement info = Prepare(db_, "SELECT name, type FROM pragma_table_info(?1)");
    sqlite3_bind_text(info.get(), 1, name.c_str(), -1, SQLITE_TRANSIENT);
    std::vector<Column> columns;
    int rc;
    while ((rc = sqlite3_step(info.get())) == SQLITE_ROW) {
      Column column;
      column.name = reinterpret_cast<const char*>(sqlite3_column_text(info.get(), 0));
      const unsigned char* declared = sqlite3_column_text(info.get(), 1);
      column.declared = declared != nullptr ? reinterpret_cast<const char*>(declared) : "";
      column.type = ClassifyDeclaredType(column.declared);
      columns.push_back(std::move(column));
    }
    if (rc != SQLITE_DONE) RaiseSqlite(errnum::kDbCommandError, db_);
    return std::make_unique<SqliteCursor>(db_, QuoteIdentifier(name), std::move(columns));
  }

 private:
  // The stored name of an existing table (names compare ignoring ASCII case,
  // as SQLite's do). Raises -2147217865 for an unknown table.
  std::string CheckTable(const std::string& table) {
    QuoteIdentifier(table);
    Statement find = Prepare(
        db_, "SELECT name FROM sqlite_schema WHERE type = 'table' AND name = ?1 COLLATE NOCASE");
    sqlite3_bind_text(find.get(), 1, table.data(), static_cast<int>(table.size()),
                      SQLITE_TRANSIENT);
    const int rc = sqlite3_step(find.get());
    if (rc == SQLITE_ROW) return reinterpret_cast<const char*>(sqlite3_column_text(find.get(), 0));
    if (rc != SQLITE_DONE) RaiseSqlite(errnum::kDbCommandError, db_);
    RaiseError(errnum::kDbUnknownTable, "no such table: " + table);
  }

  sqlite3* db_;
  bool in_transaction_ = false;
};

}  // namespace

std::unique_ptr<TableStore> OpenSqliteTableStore(const std::string& path) {
  // Honour the file's read-only mark even for a user whom the file system
  // would let write (root here, as the read-only attribute binds
  // administrators on Windows).
  int flags = SQLITE_OPEN_READWRITE;
  namespace fs = std::filesystem;
  std::error_code error;
  const fs::perms perms = fs::status(FilePath(path), error).permissions();
  const fs::perms write = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
  if (!error && perms != fs::perms::unknown && (perms & write) == fs::perms::none) {
    flags = SQLITE_OPEN_READONLY;
  }
  sqlite3* db = nullptr;
  const int rc = sqlite3_open_v2(path.c_str(), &db, flags, nullptr);
  auto fail = [&](sqlite3* handle) {
    std::string message = handle != nullptr ? sqlite3_errmsg(handle) : "out of memory";
    sqlite3_close_v2(handle);
    RaiseError(errnum::kDbFailure, "Cannot open the database file '" + path + "': " + message);
  };
  if (rc != SQLITE_OK) fail(db);
  sqlite3_busy_timeout(db, 5000);
  // Opening is lazy: reading the schema tells a database from another file.
  if (sqlite3_exec(db, "SELECT count(*) FROM sqlite_schema", nullptr, nullptr, nullptr) !=
      SQLITE_OK) {
    fail(db);
  }
  return std::make_unique<SqliteTableStore>(db);
}

}  // namespace veld
