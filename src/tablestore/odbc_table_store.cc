#include "tablestore/odbc_table_store.h"

#include <map>
#include <optional>
#include <utility>
#include <vector>

#ifdef _WIN32
// The ODBC headers of Windows use its basic types without including them.
#define NOMINMAX
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#endif
#include <sql.h>
#include <sqlext.h>

#include "veld/runtime/automation_error.h"
#include "veld/runtime/case_folding.h"

namespace veld {

namespace {

SQLCHAR* Text(const std::string& text) {
  return reinterpret_cast<SQLCHAR*>(const_cast<char*>(text.c_str()));
}

// The diagnostic records of a handle as one message, and the first SQLSTATE.
std::string Diagnostics(SQLSMALLINT type, SQLHANDLE handle, std::string* state = nullptr) {
  std::string message;
  for (SQLSMALLINT record = 1;; ++record) {
    SQLCHAR sqlstate[6] = {};
    SQLINTEGER native = 0;
    SQLCHAR text[1024] = {};
    SQLSMALLINT length = 0;
    const SQLRETURN rc =
        SQLGetDiagRec(type, handle, record, sqlstate, &native, text, sizeof text, &length);
    if (!SQL_SUCCEEDED(rc)) break;
    if (record == 1 && state != nullptr) *state = reinterpret_cast<char*>(sqlstate);
    if (!message.empty()) message += " ";
    message += reinterpret_cast<char*>(text);
  }
  return message.empty() ? "The ODBC call failed." : message;
}

[[noreturn]] void RaiseOdbc(SQLSMALLINT type, SQLHANDLE handle, int32_t number) {
  std::string state;
  std::string message = Diagnostics(type, handle, &state);
  // SQLSTATE class 22 is a data exception: a value the column rejects.
  if (number == errnum::kDbCommandError && state.starts_with("22")) {
    number = errnum::kDbValueNotConvertible;
  }
  RaiseError(number, message);
}

struct Handle {
  SQLSMALLINT type = 0;
  SQLHANDLE handle = SQL_NULL_HANDLE;

  Handle() = default;
  Handle(SQLSMALLINT t, SQLHANDLE parent) : type(t) {
    if (!SQL_SUCCEEDED(SQLAllocHandle(t, parent, &handle))) {
      handle = SQL_NULL_HANDLE;
      RaiseError(errnum::kDbFailure, "Cannot allocate an ODBC handle.");
    }
  }
  Handle(Handle&& other) noexcept : type(other.type), handle(other.handle) {
    other.handle = SQL_NULL_HANDLE;
  }
  Handle& operator=(Handle&& other) noexcept {
    std::swap(type, other.type);
    std::swap(handle, other.handle);
    return *this;
  }
  ~Handle() {
    if (handle != SQL_NULL_HANDLE) SQLFreeHandle(type, handle);
  }
};

// The environment and connection, shared by the store and its cursors, so
// that statements are freed before the connection goes, whichever of them
// the caller releases first.
struct Connection {
  Handle env;
  Handle dbc;

  ~Connection() {
    if (dbc.handle != SQL_NULL_HANDLE) SQLDisconnect(dbc.handle);
  }
};

void Check(SQLRETURN rc, const Handle& on, int32_t number = errnum::kDbCommandError) {
  if (!SQL_SUCCEEDED(rc)) RaiseOdbc(on.type, on.handle, number);
}

constexpr char kUncarriedCredentials[] =
    "The user name or password holds \";\", a brace or blanks at its ends, which an ODBC "
    "connection string cannot carry; give them in the data source instead.";

struct Field {
  std::string name;
  SQLSMALLINT sql_type = SQL_VARCHAR;
  SQLULEN size = 0;
  SQLSMALLINT digits = 0;
};

class OdbcCursor final : public TableCursor {
 public:
  OdbcCursor(std::shared_ptr<Connection> connection, std::string quoted_table,
             std::vector<Field> fields, std::vector<std::string> quoted_names)
      : connection_(std::move(connection)),
        table_(std::move(quoted_table)),
        fields_(std::move(fields)),
        quoted_names_(std::move(quoted_names)) {}

  int32_t FieldCount() const override { return static_cast<int32_t>(fields_.size()); }
  const std::string& FieldName(int32_t index) const override { return fields_.at(index).name; }

  void AddNew() override { values_.assign(fields_.size(), std::nullopt); }

  void SetFieldValue(int32_t index, const std::string& text) override {
    if (values_.size() != fields_.size()) AddNew();
    values_.at(static_cast<size_t>(index)) = text;
  }

  void Update() override {
    if (values_.size() != fields_.size()) AddNew();
    std::vector<bool> set(fields_.size());
    for (size_t i = 0; i < fields_.size(); ++i) set[i] = values_[i].has_value();
    Handle& statement = InsertFor(set);
    std::vector<SQLLEN> lengths(fields_.size());
    SQLUSMALLINT parameter = 0;
    for (size_t i = 0; i < fields_.size(); ++i) {
      if (!values_[i]) continue;
      ++parameter;
      const Field& field = fields_[i];
      std::string& value = *values_[i];
      lengths[i] = static_cast<SQLLEN>(value.size());
      // Text goes to the driver as characters typed as the column, so the
      // database does the conversion.
      Check(
          SQLBindParameter(statement.handle, parameter, SQL_PARAM_INPUT, SQL_C_CHAR, field.sql_type,
                           field.size > 0 ? field.size : value.size() + 1, field.digits,
                           value.data(), static_cast<SQLLEN>(value.size()), &lengths[i]),
          statement);
    }
    const SQLRETURN rc = SQLExecute(statement.handle);
    values_.clear();
    if (!SQL_SUCCEEDED(rc) && rc != SQL_NO_DATA) {
      RaiseOdbc(statement.type, statement.handle, errnum::kDbCommandError);
    }
    SQLFreeStmt(statement.handle, SQL_RESET_PARAMS);
  }

 private:
  Handle& InsertFor(const std::vector<bool>& set) {
    auto found = inserts_.find(set);
    if (found != inserts_.end()) return found->second;
    std::string names;
    std::string marks;
    for (size_t i = 0; i < fields_.size(); ++i) {
      if (!set[i]) continue;
      if (!names.empty()) {
        names += ", ";
        marks += ", ";
      }
      names += quoted_names_[i];
      marks += "?";
    }
    const std::string sql =
        names.empty() ? "INSERT INTO " + table_ + " DEFAULT VALUES"
                      : "INSERT INTO " + table_ + " (" + names + ") VALUES (" + marks + ")";
    Handle statement(SQL_HANDLE_STMT, connection_->dbc.handle);
    Check(SQLPrepare(statement.handle, Text(sql), SQL_NTS), statement);
    return inserts_.emplace(set, std::move(statement)).first->second;
  }

  std::shared_ptr<Connection> connection_;
  std::string table_;
  std::vector<Field> fields_;
  std::vector<std::string> quoted_names_;
  std::vector<std::optional<std::string>> values_;
  // Declared last: the statements go before the connection they belong to.
  std::map<std::vector<bool>, Handle> inserts_;
};

class OdbcTableStore final : public TableStore {
 public:
  explicit OdbcTableStore(std::shared_ptr<Connection> connection)
      : connection_(std::move(connection)), dbc_(connection_->dbc) {
    SQLCHAR quote[8] = {};
    SQLSMALLINT length = 0;
    if (SQL_SUCCEEDED(
            SQLGetInfo(dbc_.handle, SQL_IDENTIFIER_QUOTE_CHAR, quote, sizeof quote, &length))) {
      quote_ = reinterpret_cast<char*>(quote);
    }
    if (quote_ == " ") quote_.clear();
  }

  ~OdbcTableStore() override {
    if (in_transaction_) SQLEndTran(SQL_HANDLE_DBC, dbc_.handle, SQL_ROLLBACK);
  }

  void BeginTrans() override {
    Check(SQLSetConnectAttr(dbc_.handle, SQL_ATTR_AUTOCOMMIT,
                            reinterpret_cast<SQLPOINTER>(SQL_AUTOCOMMIT_OFF), SQL_IS_UINTEGER),
          dbc_);
    in_transaction_ = true;
  }

  void CommitTrans() override {
    Check(SQLEndTran(SQL_HANDLE_DBC, dbc_.handle, SQL_COMMIT), dbc_);
    in_transaction_ = false;
  }

  void RollbackTrans() override {
    if (!in_transaction_) return;
    in_transaction_ = false;
    Check(SQLEndTran(SQL_HANDLE_DBC, dbc_.handle, SQL_ROLLBACK), dbc_);
  }

  void DeleteAllRecords(const std::string& table) override {
    const std::string sql = "DELETE FROM " + Quote(StoredTableName(table));
    Handle statement(SQL_HANDLE_STMT, dbc_.handle);
    const SQLRETURN rc = SQLExecDirect(statement.handle, Text(sql), SQL_NTS);
    // An empty table deletes nothing, which some drivers report as no data.
    if (!SQL_SUCCEEDED(rc) && rc != SQL_NO_DATA) {
      RaiseOdbc(statement.type, statement.handle, errnum::kDbCommandError);
    }
  }

  std::unique_ptr<TableCursor> OpenTable(const std::string& table) override {
    const std::string quoted_table = Quote(StoredTableName(table));
    Handle statement(SQL_HANDLE_STMT, dbc_.handle);
    Check(SQLExecDirect(statement.handle, Text("SELECT * FROM " + quoted_table + " WHERE 1=0"),
                        SQL_NTS),
          statement);
    SQLSMALLINT count = 0;
    Check(SQLNumResultCols(statement.handle, &count), statement);
    std::vector<Field> fields;
    std::vector<std::string> quoted_names;
    for (SQLUSMALLINT i = 1; i <= static_cast<SQLUSMALLINT>(count); ++i) {
      SQLCHAR name[512] = {};
      SQLSMALLINT name_length = 0;
      SQLSMALLINT nullable = 0;
      Field field;
      Check(SQLDescribeCol(statement.handle, i, name, sizeof name, &name_length, &field.sql_type,
                           &field.size, &field.digits, &nullable),
            statement);
      field.name = reinterpret_cast<char*>(name);
      quoted_names.push_back(Quote(field.name));
      fields.push_back(std::move(field));
    }
    return std::make_unique<OdbcCursor>(connection_, quoted_table, std::move(fields),
                                        std::move(quoted_names));
  }

 private:
  // The name quoted with the driver's own quote character. A name holding
  // that character (or, for a driver without quoting, anything but letters,
  // digits and "_") cannot be quoted safely and is refused.
  std::string Quote(const std::string& name) const {
    bool safe = !name.empty() && name.find('\0') == std::string::npos;
    if (quote_.empty()) {
      for (char c : name) {
        const bool plain =
            (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
        safe = safe && plain;
      }
    } else {
      safe = safe && name.find(quote_) == std::string::npos;
    }
    if (!safe) {
      RaiseError(errnum::kDbCommandError,
                 "The name '" + name + "' cannot be quoted safely for this database.");
    }
    return quote_ + name + quote_;
  }

  // The catalogue's spelling of a table: the exact name when it exists,
  // otherwise the only one equal ignoring case. Raises -2147217865 when there
  // is none.
  std::string StoredTableName(const std::string& table) {
    Handle statement(SQL_HANDLE_STMT, dbc_.handle);
    Check(SQLTables(statement.handle, nullptr, 0, nullptr, 0, nullptr, 0, Text("TABLE"), SQL_NTS),
          statement);
    std::string folded_match;
    SQLCHAR name[512];
    SQLLEN indicator = 0;
    Check(SQLBindCol(statement.handle, 3, SQL_C_CHAR, name, sizeof name, &indicator), statement);
    SQLRETURN rc;
    while (SQL_SUCCEEDED(rc = SQLFetch(statement.handle))) {
      if (indicator == SQL_NULL_DATA) continue;
      const std::string candidate = reinterpret_cast<char*>(name);
      if (candidate == table) return candidate;
      if (folded_match.empty() && EqualsIgnoreCase(candidate, table)) folded_match = candidate;
    }
    if (rc != SQL_NO_DATA) RaiseOdbc(statement.type, statement.handle, errnum::kDbCommandError);
    if (folded_match.empty()) RaiseError(errnum::kDbUnknownTable, "no such table: " + table);
    return folded_match;
  }

  std::shared_ptr<Connection> connection_;
  const Handle& dbc_;
  std::string quote_;
  bool in_transaction_ = false;
};

}  // namespace

std::unique_ptr<TableStore> OpenOdbcTableStore(const std::string& target, const std::string& user,
                                               const std::string& password) {
  auto connected = std::make_shared<Connection>();
  connected->env = Handle(SQL_HANDLE_ENV, SQL_NULL_HANDLE);
  SQLSetEnvAttr(connected->env.handle, SQL_ATTR_ODBC_VERSION,
                reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
  connected->dbc = Handle(SQL_HANDLE_DBC, connected->env.handle);
  const Handle& dbc = connected->dbc;
  SQLRETURN rc;
  if (target.find('=') == std::string::npos) {
    // A data source name: the name, user and password go as arguments of
    // their own, so nothing in them is read as connection-string syntax.
    rc =
        SQLConnect(dbc.handle, Text(target), SQL_NTS, Text(user), SQL_NTS, Text(password), SQL_NTS);
  } else {
    // A connection string of the caller's: drivers differ in how (and
    // whether) they read braces, so a user or password that would need them
    // is refused rather than let change the string.
    for (const std::string* value : {&user, &password}) {
      if (value->find_first_of(";{}") != std::string::npos ||
          (!value->empty() && (value->front() == ' ' || value->back() == ' '))) {
        RaiseError(errnum::kDbFailure, kUncarriedCredentials);
      }
    }
    std::string connection = target;
    if (connection.back() != ';') connection += ';';
    if (!user.empty()) connection += "UID=" + user + ";";
    if (!password.empty()) connection += "PWD=" + password + ";";
    SQLCHAR out[1024];
    SQLSMALLINT out_length = 0;
    rc = SQLDriverConnect(dbc.handle, nullptr, Text(connection), SQL_NTS, out, sizeof out,
                          &out_length, SQL_DRIVER_NOPROMPT);
  }
  if (!SQL_SUCCEEDED(rc)) {
    // Not connected: nothing to disconnect.
    std::string state;
    std::string message = Diagnostics(dbc.type, dbc.handle, &state);
    connected->dbc = Handle();
    RaiseError(errnum::kDbFailure, message);
  }
  return std::make_unique<OdbcTableStore>(std::move(connected));
}

}  // namespace veld
