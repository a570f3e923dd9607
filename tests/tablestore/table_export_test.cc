#include "tablestore/table_export.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "veld/platform/platform.h"
#include "veld/runtime/automation_error.h"
#include "veld/tablestore/table_store.h"

#include "support/sqlite_file.h"
#include "support/testing.h"
#include "tablestore/connection_string.h"

namespace veld {
namespace {

using Rows = testing::SqliteRowList;

class TableExportTest : public ::testing::Test {
 protected:
  void SetUp() override {
    path_ = dir_.File("shop.db");
    Exec(
        "CREATE TABLE orders (id INTEGER, Amount NUMERIC(10,2), qty INTEGER DEFAULT 1, "
        "note TEXT)");
  }

  void Exec(const std::string& sql) { testing::SqliteExec(path_, sql); }

  Rows Query(const std::string& sql) { return testing::SqliteRows(path_, sql); }

  // Exports row texts (items XML), parsing each the way the export does.
  bool Export(const std::vector<std::string>& rows, bool clear_first = false,
              const std::string& table = "orders") {
    TableExportRequest request{"D1", path_, table, "", "", clear_first};
    return ExportRowsToTable(
        request, [&] { return static_cast<int32_t>(rows.size()); },
        [&](int32_t index, RowCols& cols) {
          KvoGeneralItems items;
          std::string message;
          if (!items.Parse(rows[static_cast<size_t>(index - 1)], false, "", &message)) {
            RaiseError(-1, message);
          }
          cols.Assign(items);
          return true;
        });
  }

  Rows Orders() { return Query("SELECT id, Amount, qty, note FROM orders ORDER BY id"); }

  testing::TempDir dir_;
  std::string path_;
};

TEST(ExportConnectionStringTest, PlainValuesGoInAsTheyAre) {
  EXPECT_EQ(ExportConnectionString("a.db", "u", "p"),
            "PROVIDER=Microsoft.Jet.OLEDB.4.0;Data Source=a.db;User ID=u;Password=p");
  EXPECT_EQ(ExportConnectionString("dir/my file.db", "", "a=b{c}"),
            "PROVIDER=Microsoft.Jet.OLEDB.4.0;Data Source=dir/my file.db;User ID=;Password=a=b{c}");
}

TEST(ExportConnectionStringTest, ValueThatWouldChangeTheStringIsQuoted) {
  EXPECT_EQ(ExportConnectionString("x;Mode=Read", "%PWD%", "p;Data Source=other.db"),
            "PROVIDER=Microsoft.Jet.OLEDB.4.0;Data Source=\"x;Mode=Read\";User ID=%PWD%;"
            "Password=\"p;Data Source=other.db\"");
  EXPECT_EQ(ExportConnectionString(" a.db ", "\"u", "=p"),
            "PROVIDER=Microsoft.Jet.OLEDB.4.0;Data Source=\" a.db \";User ID=\"\"\"u\";"
            "Password=\"=p\"");
}

TEST(ExportConnectionStringTest, ValueQuotedByTheCallerIsKept) {
  EXPECT_EQ(ExportConnectionString("\"odbc:Driver={SQLite3};Database=a.db\"", "u", "p"),
            "PROVIDER=Microsoft.Jet.OLEDB.4.0;Data Source=\"odbc:Driver={SQLite3};Database=a.db\";"
            "User ID=u;Password=p");
}

// Whatever the file name, user and password hold, the string reads back as
// exactly those three values (a caller's own complete quoting aside).
TEST(ExportConnectionStringTest, EveryValueReadsBackExactly) {
  const std::vector<std::string> values = {"",          "plain",
                                           "a;b",       "a=b",
                                           "==",        "{a}",
                                           "}{",        "a}}b;",
                                           "'quoted'x", "\"q",
                                           "it's",      " lead",
                                           "trail ",    " ",
                                           "x\"y\"z",   "p;Data Source=other.db",
                                           "%DBN%",     "a;User ID=admin",
                                           "\t",        "'",
                                           "\"\"x"};
  for (const std::string& file : values) {
    for (const std::string& user : values) {
      for (const std::string& password : values) {
        const ConnectionString parsed =
            ConnectionString::Parse(ExportConnectionString(file, user, password));
        EXPECT_EQ(parsed.Get("Data Source"), file) << file;
        EXPECT_EQ(parsed.Get("User ID"), user) << user;
        EXPECT_EQ(parsed.Get("Password"), password) << password;
        EXPECT_EQ(parsed.Pairs().size(), 4u);
      }
    }
  }
}

TEST_F(TableExportTest, EmptyDataElementWithClearFirstEmptiesTheTable) {
  Exec("INSERT INTO orders (id) VALUES (1), (2)");
  EXPECT_TRUE(Export({}, true));
  EXPECT_TRUE(Orders().empty());
}

TEST_F(TableExportTest, NoRowsWithoutClearFirstChangesNothing) {
  Exec("INSERT INTO orders (id) VALUES (1)");
  EXPECT_TRUE(Export({}));
  EXPECT_EQ(Orders().size(), 1u);
}

TEST_F(TableExportTest, EmptyColValueLeavesTheFieldNullOrDefault) {
  EXPECT_TRUE(
      Export({"<row><col name='id' value='1'/><col name='Amount' value=''/>"
              "<col name='qty' value=''/></row>"}));
  EXPECT_EQ(Orders(), (Rows{{"1", "<null>", "1", "<null>"}}));
}

TEST_F(TableExportTest, FieldsMatchColsIgnoringCaseAndFirstColWins) {
  EXPECT_TRUE(
      Export({"<row><col name='ID' value='7'/><col name='amount' value='2.5'/>"
              "<col name='AMOUNT' value='9'/><col name='unknown' value='x'/></row>"}));
  EXPECT_EQ(Orders(), (Rows{{"7", "2.5", "1", "<null>"}}));
}

TEST_F(TableExportTest, ColsWithoutFieldsAreIgnored) {
  EXPECT_TRUE(Export({"<row><col name='id' value='1'/><col name='extra' value='x'/></row>"}));
  EXPECT_EQ(Orders().size(), 1u);
}

TEST_F(TableExportTest, TableNameHoldingClosingBracketFails) {
  Exec("CREATE TABLE \"a]b\" (id INTEGER)");
  EXPECT_RAISES(Export({"<row><col name='id' value='1'/></row>"}, false, "a]b"), -2147217900,
                "Syntax error in FROM clause.");
  EXPECT_TRUE(Query("SELECT * FROM \"a]b\"").empty());
}

TEST_F(TableExportTest, BlankArgumentsAreInvalid) {
  TableExportRequest request{" ", path_, "orders", "", "", false};
  EXPECT_RAISES(ExportRowsToTable(request, nullptr, nullptr), -1, "Invalid parameter.");
  request = {"D", "", "orders", "", "", false};
  EXPECT_RAISES(ExportRowsToTable(request, nullptr, nullptr), -1, "Invalid parameter.");
  request = {"D", path_, "  ", "", "", false};
  EXPECT_RAISES(ExportRowsToTable(request, nullptr, nullptr), -1, "Invalid parameter.");
}

TEST_F(TableExportTest, ValueFailingConversionInLastRowLeavesTableAsItWas) {
  Exec("INSERT INTO orders (id, note) VALUES (9, 'kept')");
  for (bool clear_first : {false, true}) {
    bool raised = false;
    try {
      Export({"<row><col name='id' value='1'/></row>", "<row><col name='id' value='2'/></row>",
              "<row><col name='id' value='3'/><col name='qty' value='lots'/></row>"},
             clear_first);
    } catch (const AutomationError& error) {
      raised = true;
      EXPECT_EQ(error.Number(), -2147217913);
      EXPECT_EQ(error.Description(),
                "The value 'lots' cannot be converted to the type INTEGER of field 'qty'.");
    }
    EXPECT_TRUE(raised);
    EXPECT_EQ(Orders(), (Rows{{"9", "<null>", "1", "kept"}}));
  }
}

TEST_F(TableExportTest, RowThatCannotBeFetchedRollsBackAndReturnsFalse) {
  Exec("INSERT INTO orders (id) VALUES (9)");
  TableExportRequest request{"D", path_, "orders", "", "", true};
  EXPECT_FALSE(ExportRowsToTable(
      request, [] { return 3; },
      [](int32_t index, RowCols& cols) {
        cols.names = {"id"};
        cols.values = {std::to_string(index)};
        return index < 3;
      }));
  EXPECT_EQ(Orders(), (Rows{{"9", "<null>", "1", "<null>"}}));
}

TEST_F(TableExportTest, RowThatCannotBeParsedRaisesItsMessage) {
  EXPECT_RAISES(Export({"<row>"}), -1, "Failed to load items Xml.");
  EXPECT_TRUE(Orders().empty());
}

TEST_F(TableExportTest, UnknownTableRaisesTheProvidersError) {
  EXPECT_RAISES(Export({}, false, "nosuch"), -2147217865, "no such table: nosuch");
}

TEST_F(TableExportTest, ProgressIsToldAtMostAFewHundredTimesAndReachesTheEnd) {
  std::vector<std::string> rows(1000, "<row><col name='qty' value='3'/></row>");
  int32_t calls = 0;
  int32_t last = 0;
  TableExportRequest request{"D", path_, "orders", "", "", false};
  EXPECT_TRUE(ExportRowsToTable(
      request, [] { return 1000; },
      [&](int32_t index, RowCols& cols) {
        KvoGeneralItems items;
        const bool parsed = items.Parse(rows[static_cast<size_t>(index - 1)]);
        cols.Assign(items);
        return parsed;
      },
      [&](int32_t total, int32_t current, const std::string& status) {
        ++calls;
        EXPECT_EQ(total, 1000);
        EXPECT_GT(current, last);
        last = current;
        EXPECT_EQ(status, "Exporting rows to orders");
      }));
  EXPECT_LE(calls, 300);
  EXPECT_GE(calls, 10);
  EXPECT_EQ(last, 1000);
  EXPECT_EQ(Query("SELECT count(*) FROM orders WHERE qty = 3"), (Rows{{"1000"}}));
}

// A store kept in memory, which a host platform hands out; a commit puts
// the rows into `committed`, which outlives the store.
class MemoryStore : public TableStore {
 public:
  explicit MemoryStore(Rows* committed) : committed_(committed) {}

  struct Cursor : TableCursor {
    explicit Cursor(MemoryStore& store) : store_(store) {}
    int32_t FieldCount() const override { return 2; }
    const std::string& FieldName(int32_t index) const override { return names_[index]; }
    void AddNew() override { record_.assign(2, "<unset>"); }
    void SetFieldValue(int32_t index, const std::string& text) override { record_[index] = text; }
    void Update() override { store_.pending_.push_back(record_); }

    MemoryStore& store_;
    std::vector<std::string> names_ = {"code", "qty"};
    std::vector<std::string> record_;
  };

  void BeginTrans() override { pending_.clear(); }
  void CommitTrans() override { *committed_ = pending_; }
  void RollbackTrans() override { pending_.clear(); }
  void DeleteAllRecords(const std::string&) override {}
  std::unique_ptr<TableCursor> OpenTable(const std::string&) override {
    return std::make_unique<Cursor>(*this);
  }

  Rows pending_;
  Rows* committed_;
};

class HostPlatform : public ForwardingPlatform {
 public:
  std::unique_ptr<TableStore> OpenTableStore(const std::string& connection) override {
    connection_ = connection;
    return std::make_unique<MemoryStore>(&committed_);
  }
  std::string connection_;
  Rows committed_;
};

TEST(TableExportHostTest, HostPlatformSuppliesTheStore) {
  HostPlatform host;
  ScopedPlatform installed(host);
  TableExportRequest request{"D", "host:orders", "t", "me", "pw", false};
  std::vector<std::string> rows = {"<r><col name='CODE' value='A'/></r>",
                                   "<r><col name='qty' value='2'/></r>"};
  EXPECT_TRUE(ExportRowsToTable(
      request, [] { return 2; },
      [&](int32_t index, RowCols& cols) {
        KvoGeneralItems items;
        const bool parsed = items.Parse(rows[static_cast<size_t>(index - 1)]);
        cols.Assign(items);
        return parsed;
      }));
  EXPECT_EQ(host.connection_,
            "PROVIDER=Microsoft.Jet.OLEDB.4.0;Data Source=host:orders;User ID=me;Password=pw");
  EXPECT_EQ(host.committed_, (Rows{{"A", "<unset>"}, {"<unset>", "2"}}));
}

}  // namespace
}  // namespace veld
