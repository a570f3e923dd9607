// One suite for every table-store provider the machine has: SQLite files
// directly, SQLite through its ODBC driver, and PostgreSQL through its ODBC
// driver. The PostgreSQL instances run only when a server was started for
// them (scripts/with-postgres.sh sets VELD_TEST_PG_*); CTest runs them that
// way as the test tablestore.postgresql.
#include <cstdlib>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/stat.h>
#ifdef _WIN32
// The ODBC headers of Windows use its basic types without including them.
// clang-format off
#include <windows.h>
// clang-format on
#endif
#include <sql.h>
#include <sqlext.h>

#include "veld/runtime/automation_error.h"
#include "veld/tablestore/table_store.h"

#ifndef _WIN32
#include "support/child_process.h"
#endif
#include "support/testing.h"

namespace veld {
namespace {

using Rows = std::vector<std::vector<std::string>>;
constexpr const char* kNull = "<null>";

// --- Direct access to the databases, for setting up and checking ---

class Database {
 public:
  virtual ~Database() = default;
  virtual void Exec(const std::string& sql) = 0;
  virtual Rows Query(const std::string& sql) = 0;
};

class SqliteDatabase : public Database {
 public:
  explicit SqliteDatabase(const std::string& path) {
    if (sqlite3_open(path.c_str(), &db_) != SQLITE_OK) ADD_FAILURE() << sqlite3_errmsg(db_);
  }
  ~SqliteDatabase() override { sqlite3_close(db_); }

  void Exec(const std::string& sql) override {
    char* error = nullptr;
    if (sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, &error) != SQLITE_OK) {
      ADD_FAILURE() << sql << ": " << error;
      sqlite3_free(error);
    }
  }

  Rows Query(const std::string& sql) override {
    Rows rows;
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(db_, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
      ADD_FAILURE() << sql << ": " << sqlite3_errmsg(db_);
      return rows;
    }
    while (sqlite3_step(statement) == SQLITE_ROW) {
      std::vector<std::string> row;
      for (int i = 0; i < sqlite3_column_count(statement); ++i) {
        const unsigned char* text = sqlite3_column_text(statement, i);
        row.push_back(text != nullptr ? reinterpret_cast<const char*>(text) : kNull);
      }
      rows.push_back(std::move(row));
    }
    sqlite3_finalize(statement);
    return rows;
  }

 private:
  sqlite3* db_ = nullptr;
};

class OdbcDatabase : public Database {
 public:
  explicit OdbcDatabase(const std::string& connection) {
    SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &env_);
    SQLSetEnvAttr(env_, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
    SQLAllocHandle(SQL_HANDLE_DBC, env_, &dbc_);
    const SQLRETURN rc = SQLDriverConnect(dbc_, nullptr, Text(connection), SQL_NTS, nullptr, 0,
                                          nullptr, SQL_DRIVER_NOPROMPT);
    if (!SQL_SUCCEEDED(rc))
      ADD_FAILURE() << "cannot connect: " << Diagnostics(SQL_HANDLE_DBC, dbc_);
  }
  ~OdbcDatabase() override {
    SQLDisconnect(dbc_);
    SQLFreeHandle(SQL_HANDLE_DBC, dbc_);
    SQLFreeHandle(SQL_HANDLE_ENV, env_);
  }

  void Exec(const std::string& sql) override {
    SQLHSTMT statement = nullptr;
    SQLAllocHandle(SQL_HANDLE_STMT, dbc_, &statement);
    const SQLRETURN rc = SQLExecDirect(statement, Text(sql), SQL_NTS);
    if (!SQL_SUCCEEDED(rc) && rc != SQL_NO_DATA) {
      ADD_FAILURE() << sql << ": " << Diagnostics(SQL_HANDLE_STMT, statement);
    }
    SQLFreeHandle(SQL_HANDLE_STMT, statement);
  }

  Rows Query(const std::string& sql) override {
    Rows rows;
    SQLHSTMT statement = nullptr;
    SQLAllocHandle(SQL_HANDLE_STMT, dbc_, &statement);
    if (!SQL_SUCCEEDED(SQLExecDirect(statement, Text(sql), SQL_NTS))) {
      ADD_FAILURE() << sql << ": " << Diagnostics(SQL_HANDLE_STMT, statement);
      SQLFreeHandle(SQL_HANDLE_STMT, statement);
      return rows;
    }
    SQLSMALLINT columns = 0;
    SQLNumResultCols(statement, &columns);
    while (SQL_SUCCEEDED(SQLFetch(statement))) {
      std::vector<std::string> row;
      for (SQLUSMALLINT i = 1; i <= static_cast<SQLUSMALLINT>(columns); ++i) {
        char buffer[4096];
        SQLLEN indicator = 0;
        SQLGetData(statement, i, SQL_C_CHAR, buffer, sizeof buffer, &indicator);
        row.push_back(indicator == SQL_NULL_DATA ? kNull : buffer);
      }
      rows.push_back(std::move(row));
    }
    SQLFreeHandle(SQL_HANDLE_STMT, statement);
    return rows;
  }

 private:
  static SQLCHAR* Text(const std::string& text) {
    return reinterpret_cast<SQLCHAR*>(const_cast<char*>(text.c_str()));
  }
  static std::string Diagnostics(SQLSMALLINT type, SQLHANDLE handle) {
    SQLCHAR state[6] = {};
    SQLCHAR text[1024] = {};
    SQLINTEGER native = 0;
    SQLSMALLINT length = 0;
    SQLGetDiagRec(type, handle, 1, state, &native, text, sizeof text, &length);
    return reinterpret_cast<char*>(text);
  }

  SQLHENV env_ = nullptr;
  SQLHDBC dbc_ = nullptr;
};

// --- The providers under test ---

struct Backend {
  std::string name;
  // Typed checks at assignment (SQLite files, PostgreSQL); the SQLite ODBC
  // driver stores what it is given.
  bool strict_types;
  bool has_files;
};

void PrintTo(const Backend& backend, std::ostream* out) { *out << backend.name; }

std::string Env(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

class TableStoreTest : public ::testing::TestWithParam<Backend> {
 protected:
  void SetUp() override {
    const std::string& name = GetParam().name;
    db_path_ = dir_.File("orders.db");
    if (name == "Sqlite") {
      connection_ = "Data Source=" + db_path_;
      database_ = std::make_unique<SqliteDatabase>(db_path_);
    } else if (name == "OdbcSqlite") {
      // A user DSN in a private odbc.ini, as a caller would configure one.
      std::ofstream(dir_.File("odbc.ini"))
          << "[veld_sqlite]\nDriver=SQLite3\nDatabase=" << db_path_ << "\nTimeout=5000\n";
      testing::SetEnv("ODBCINI", dir_.File("odbc.ini"));
      connection_ = "Data Source=odbc:veld_sqlite;User ID=;Password=";
      database_ = std::make_unique<OdbcDatabase>("Driver={SQLite3};Database=" + db_path_ + ";");
    } else {
      std::ofstream(dir_.File("odbc.ini"))
          << "[veld_pg]\nDriver=PostgreSQL Unicode\nServername=127.0.0.1\nPort="
          << Env("VELD_TEST_PG_PORT") << "\nDatabase=" << Env("VELD_TEST_PG_DATABASE") << "\n";
      testing::SetEnv("ODBCINI", dir_.File("odbc.ini"));
      connection_ = "Data Source=odbc:veld_pg;User ID=" + Env("VELD_TEST_PG_USER") +
                    ";Password=" + Env("VELD_TEST_PG_PASSWORD");
      database_ = std::make_unique<OdbcDatabase>(
          "Driver={PostgreSQL Unicode};Server=127.0.0.1;Port=" + Env("VELD_TEST_PG_PORT") +
          ";Database=" + Env("VELD_TEST_PG_DATABASE") + ";Uid=" + Env("VELD_TEST_PG_USER") +
          ";Pwd=" + Env("VELD_TEST_PG_PASSWORD") + ";");
    }
    database_->Exec("DROP TABLE IF EXISTS orders");
    database_->Exec(
        "CREATE TABLE orders (id INTEGER, code VARCHAR(10), qty INTEGER DEFAULT 7, "
        "price NUMERIC(10,2), shipped DATE, note TEXT)");
  }

  void TearDown() override {
    if (database_) database_->Exec("DROP TABLE IF EXISTS orders");
  }

  std::unique_ptr<TableStore> Open() { return OpenTableStore(connection_); }

  Rows Orders() { return database_->Query("SELECT id, code, qty, note FROM orders ORDER BY id"); }

  // Appends rows of (id, code, note) in one committed export.
  void Append(TableStore& store, const std::vector<std::vector<std::string>>& rows) {
    auto cursor = store.OpenTable("orders");
    for (const auto& row : rows) {
      cursor->AddNew();
      cursor->SetFieldValue(0, row[0]);
      cursor->SetFieldValue(1, row[1]);
      cursor->SetFieldValue(5, row[2]);
      cursor->Update();
    }
  }

  testing::TempDir dir_;
  std::string db_path_;
  std::string connection_;
  std::unique_ptr<Database> database_;
};

TEST_P(TableStoreTest, FieldsAreListedInTableOrder) {
  auto store = Open();
  auto cursor = store->OpenTable("orders");
  ASSERT_EQ(cursor->FieldCount(), 6);
  const char* expected[] = {"id", "code", "qty", "price", "shipped", "note"};
  for (int i = 0; i < 6; ++i) EXPECT_EQ(cursor->FieldName(i), expected[i]);
}

TEST_P(TableStoreTest, TableNamesMatchIgnoringCase) {
  auto store = Open();
  EXPECT_EQ(store->OpenTable("ORDERS")->FieldCount(), 6);
}

TEST_P(TableStoreTest, CommittedRecordsAreStoredWithDefaultsForUnsetFields) {
  auto store = Open();
  store->BeginTrans();
  Append(*store, {{"1", "A-1", "first"}, {"2", "B-2", "zweite Zeile äö"}});
  store->CommitTrans();
  store.reset();
  EXPECT_EQ(Orders(), (Rows{{"1", "A-1", "7", "first"}, {"2", "B-2", "7", "zweite Zeile äö"}}));
}

TEST_P(TableStoreTest, RecordWithNoFieldSetTakesAllDefaults) {
  auto store = Open();
  store->BeginTrans();
  auto cursor = store->OpenTable("orders");
  cursor->AddNew();
  cursor->Update();
  store->CommitTrans();
  EXPECT_EQ(Orders(), (Rows{{kNull, kNull, "7", kNull}}));
}

TEST_P(TableStoreTest, ValuesAreConvertedToTheColumnTypes) {
  auto store = Open();
  store->BeginTrans();
  auto cursor = store->OpenTable("orders");
  cursor->AddNew();
  cursor->SetFieldValue(0, "5");
  cursor->SetFieldValue(2, "12");
  cursor->SetFieldValue(3, "12.5");
  cursor->SetFieldValue(4, "2026-11-21");
  cursor->Update();
  store->CommitTrans();
  Rows rows = database_->Query("SELECT qty, price, shipped FROM orders");
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_EQ(rows[0][0], "12");
  EXPECT_DOUBLE_EQ(std::stod(rows[0][1]), 12.5);
  EXPECT_EQ(rows[0][2], "2026-11-21");
}

TEST_P(TableStoreTest, RolledBackRecordsAndDeletionLeaveTheTableAsItWas) {
  database_->Exec("INSERT INTO orders (id, code, note) VALUES (9, 'OLD', 'kept')");
  auto store = Open();
  store->BeginTrans();
  store->DeleteAllRecords("orders");
  Append(*store, {{"1", "A", "new"}});
  store->RollbackTrans();
  store.reset();
  EXPECT_EQ(Orders(), (Rows{{"9", "OLD", "7", "kept"}}));
}

TEST_P(TableStoreTest, StoreClosedWithoutCommitRollsBack) {
  database_->Exec("INSERT INTO orders (id, code, note) VALUES (9, 'OLD', 'kept')");
  {
    auto store = Open();
    store->BeginTrans();
    store->DeleteAllRecords("orders");
    Append(*store, {{"1", "A", "new"}});
  }
  EXPECT_EQ(Orders(), (Rows{{"9", "OLD", "7", "kept"}}));
}

TEST_P(TableStoreTest, DeleteAndAppendCommitTogether) {
  database_->Exec("INSERT INTO orders (id, code, note) VALUES (9, 'OLD', 'gone')");
  auto store = Open();
  store->BeginTrans();
  store->DeleteAllRecords("orders");
  Append(*store, {{"1", "A", "new"}});
  store->CommitTrans();
  EXPECT_EQ(Orders(), (Rows{{"1", "A", "7", "new"}}));
}

TEST_P(TableStoreTest, DeletingFromAnEmptyTableSucceeds) {
  auto store = Open();
  store->BeginTrans();
  store->DeleteAllRecords("orders");
  store->CommitTrans();
  EXPECT_TRUE(Orders().empty());
}

TEST_P(TableStoreTest, UnknownTableRaises) {
  auto store = Open();
  store->BeginTrans();
  EXPECT_RAISES(store->OpenTable("nosuch"), -2147217865, "no such table: nosuch");
  EXPECT_RAISES(store->DeleteAllRecords("nosuch"), -2147217865, "no such table: nosuch");
}

// Setting field `index` of a new record to `text` and writing the record
// fails with -2147217913 (at the assignment or at the write, as the provider
// checks).
void ExpectValueRejected(TableCursor& cursor, int32_t index, const std::string& text) {
  bool raised = false;
  try {
    cursor.SetFieldValue(index, text);
    cursor.Update();
  } catch (const AutomationError& error) {
    raised = true;
    EXPECT_EQ(error.Number(), -2147217913) << error.Description();
  }
  EXPECT_TRUE(raised) << text;
}

TEST_P(TableStoreTest, TextThatDoesNotConvertFailsAndChangesNothing) {
  if (!GetParam().strict_types) GTEST_SKIP() << "the driver stores any text in any column";
  auto store = Open();
  store->BeginTrans();
  Append(*store, {{"1", "A", "first"}});
  auto cursor = store->OpenTable("orders");
  cursor->AddNew();
  ExpectValueRejected(*cursor, 2, "many");
  store.reset();
  EXPECT_TRUE(Orders().empty());
}

TEST_P(TableStoreTest, TextLongerThanTheColumnFails) {
  if (!GetParam().strict_types) GTEST_SKIP() << "the driver stores any text in any column";
  auto store = Open();
  store->BeginTrans();
  auto cursor = store->OpenTable("orders");
  cursor->AddNew();
  ExpectValueRejected(*cursor, 1, "ABCDEFGHIJK");
}

TEST_P(TableStoreTest, OutOfRangeIntegerFails) {
  if (!GetParam().strict_types) GTEST_SKIP() << "the driver stores any text in any column";
  auto store = Open();
  store->BeginTrans();
  auto cursor = store->OpenTable("orders");
  cursor->AddNew();
  ExpectValueRejected(*cursor, 2, "99999999999");
}

#ifndef _WIN32  // fork and SIGKILL; see tests/WindowsExclusions.cmake
TEST_P(TableStoreTest, ProcessKilledDuringAnExportLeavesTheTableAsItWas) {
  database_->Exec("INSERT INTO orders (id, code, note) VALUES (9, 'OLD', 'kept')");
  const bool killed = testing::KillChildWhenReady([&](const std::function<void()>& ready) {
    auto store = Open();
    store->BeginTrans();
    store->DeleteAllRecords("orders");
    auto cursor = store->OpenTable("orders");
    for (int i = 0; i < 500; ++i) {
      cursor->AddNew();
      cursor->SetFieldValue(0, std::to_string(i));
      cursor->Update();
    }
    ready();
  });
  ASSERT_TRUE(killed) << "the child ended before it was in the middle of the export";
  // A new connection sees the table as it was (SQLite rolls the journal back;
  // the server drops the dead connection's transaction).
  auto store = Open();
  store->BeginTrans();
  store->CommitTrans();
  store.reset();
  EXPECT_EQ(Orders(), (Rows{{"9", "OLD", "7", "kept"}}));
}
#endif

TEST_P(TableStoreTest, UnsafeTableNameIsRefused) {
  if (GetParam().name == "Sqlite") {
    // SQLite quotes every name except one holding a NUL character.
    auto store = Open();
    EXPECT_RAISES(store->OpenTable(std::string("ord\0ers", 7)), -2147217900,
                  "The name cannot be quoted: it holds a NUL character.");
    return;
  }
  // Through ODBC a name holding the driver's quote character is refused,
  // even for a table that exists.
  database_->Exec("CREATE TABLE \"we\"\"ird\" (a INTEGER)");
  auto store = Open();
  EXPECT_RAISES(store->OpenTable("we\"ird"), -2147217900,
                "The name 'we\"ird' cannot be quoted safely for this database.");
  store.reset();
  database_->Exec("DROP TABLE \"we\"\"ird\"");
}

// --- Opening ---

TEST(TableStoreOpenTest, MissingSqliteFileIsAnErrorNotANewDatabase) {
  testing::TempDir dir;
  const std::string path = dir.File("missing.db");
  EXPECT_RAISES(OpenTableStore("Data Source=" + path), -2147467259,
                "Cannot open the database file '" + path + "': unable to open database file");
  struct stat info {};
  EXPECT_NE(stat(path.c_str(), &info), 0);
}

TEST(TableStoreOpenTest, FileThatIsNotADatabaseFails) {
  testing::TempDir dir;
  const std::string path = dir.Write("notes.txt", "just some text, long enough to be read\n");
  EXPECT_RAISES(OpenTableStore("Data Source=" + path), -2147467259,
                "Cannot open the database file '" + path + "': file is not a database");
}

TEST(TableStoreOpenTest, AccessDatabaseFailsWithAClearMessage) {
  testing::TempDir dir;
  std::string header(4, '\0');
  header += "Standard Jet DB";
  header += std::string(100, '\0');
  const std::string by_content = dir.Write("data.bin", header);
  EXPECT_RAISES(OpenTableStore("Data Source=" + by_content), -2147467259,
                "Cannot open '" + by_content +
                    "': it is a Microsoft Access database, and no Access driver is available on "
                    "this platform. Export to an SQLite file or through ODBC instead.");
  const std::string by_name = dir.File("orders.mdb");
  EXPECT_RAISES(OpenTableStore("PROVIDER=Microsoft.Jet.OLEDB.4.0;Data Source=" + by_name +
                               ";User ID=;Password="),
                -2147467259,
                "Cannot open '" + by_name +
                    "': it is a Microsoft Access database, and no Access driver is available on "
                    "this platform. Export to an SQLite file or through ODBC instead.");
}

TEST(TableStoreOpenTest, ReadOnlyFileIsLeftUnchanged) {
  testing::TempDir dir;
  const std::string path = dir.File("ro.db");
  {
    SqliteDatabase db(path);
    db.Exec("CREATE TABLE t (a INTEGER); INSERT INTO t VALUES (1)");
  }
  ASSERT_EQ(chmod(path.c_str(), 0444), 0);
  auto store = OpenTableStore("Data Source=" + path);
  bool raised = false;
  try {
    store->BeginTrans();
    store->DeleteAllRecords("t");
    store->CommitTrans();
  } catch (const AutomationError& error) {
    raised = true;
    EXPECT_EQ(error.Description(), "attempt to write a readonly database");
  }
  EXPECT_TRUE(raised);
  store.reset();
  ASSERT_EQ(chmod(path.c_str(), 0644), 0);
  EXPECT_EQ(SqliteDatabase(path).Query("SELECT a FROM t"), (Rows{{"1"}}));
}

TEST(TableStoreOpenTest, UnknownDsnFailsWithTheDriverManagersMessage) {
  testing::TempDir dir;
  std::ofstream(dir.File("odbc.ini")) << "";
  testing::SetEnv("ODBCINI", dir.File("odbc.ini"));
  bool raised = false;
  try {
    OpenTableStore("Data Source=odbc:no_such_dsn_veld");
  } catch (const AutomationError& error) {
    raised = true;
    EXPECT_EQ(error.Number(), -2147467259);
    EXPECT_NE(error.Description().find("Data source name not found"), std::string::npos)
        << error.Description();
  }
  EXPECT_TRUE(raised);
}

#ifndef _WIN32  // the SQLite ODBC driver; see tests/WindowsExclusions.cmake
TEST(TableStoreOpenTest, DsnLessOdbcConnectionStringWorksWhenQuoted) {
  testing::TempDir dir;
  const std::string path = dir.File("q.db");
  SqliteDatabase(path).Exec("CREATE TABLE t (a INTEGER)");
  auto store =
      OpenTableStore("Data Source=\"odbc:Driver={SQLite3};Database=" + path + ";NoCreat=1\"");
  EXPECT_EQ(store->OpenTable("t")->FieldCount(), 1);
}
#endif

// --- PostgreSQL only ---

TEST(PostgreSqlServer, IsConfigured) {
  // Run through scripts/with-postgres.sh; fails when the server is missing so
  // that the PostgreSQL run cannot pass by running nothing.
  EXPECT_FALSE(Env("VELD_TEST_PG_PORT").empty());
}

TEST(PostgreSqlServer, WrongPasswordFailsWithTheServersMessage) {
  bool raised = false;
  try {
    OpenTableStore("Data Source=\"odbc:Driver={PostgreSQL Unicode};Server=127.0.0.1;Port=" +
                   Env("VELD_TEST_PG_PORT") + ";Database=" + Env("VELD_TEST_PG_DATABASE") +
                   "\";User ID=" + Env("VELD_TEST_PG_USER") + ";Password=wrong");
  } catch (const AutomationError& error) {
    raised = true;
    EXPECT_EQ(error.Number(), -2147467259);
    EXPECT_NE(error.Description().find("password authentication failed"), std::string::npos)
        << error.Description();
  }
  EXPECT_TRUE(raised);
}

std::vector<Backend> Backends() {
  std::vector<Backend> backends = {{"Sqlite", true, true}};
#ifndef _WIN32  // no SQLite ODBC driver for Windows; see tests/WindowsExclusions.cmake
  backends.push_back({"OdbcSqlite", false, true});
#endif
  if (!Env("VELD_TEST_PG_PORT").empty()) backends.push_back({"OdbcPostgreSql", true, false});
  return backends;
}

INSTANTIATE_TEST_SUITE_P(Providers, TableStoreTest, ::testing::ValuesIn(Backends()),
                         [](const ::testing::TestParamInfo<Backend>& info) {
                           return info.param.name;
                         });

}  // namespace
}  // namespace veld
