// SaveDataToMDBTable of both dataset classes, into SQLite files made here.
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "veld/datasets/kvo_dataset.h"
#include "veld/datasets/kvo_dataset_o.h"

#include "support/sqlite_file.h"
#include "support/testing.h"

namespace veld {
namespace {

using Rows = testing::SqliteRowList;

const char kOrders[] =
    "<dataset><data guid=\"D1\">"
    "<row guid=\"R1\"><col name=\"id\" value=\"1\"/><col name=\"amount\" value=\"2.5\"/>"
    "<col name=\"AMOUNT\" value=\"9\"/><col name=\"qty\" value=\"\"/></row>"
    "<row guid=\"R2\"><col name=\"ID\" value=\"2\"/><col name=\"note\" value=\"x\"/>"
    "<col name=\"other\" value=\"ignored\"/></row>"
    "</data><data guid=\"EMPTY\"/></dataset>";

template <class Dataset>
class DatasetExportTest : public ::testing::Test {
 protected:
  void SetUp() override {
    path_ = dir_.File("shop.db");
    Exec(
        "CREATE TABLE orders (id INTEGER, Amount NUMERIC(10,2), qty INTEGER DEFAULT 1, "
        "note TEXT)");
    ASSERT_TRUE(dataset_.Parse(kOrders)) << dataset_.GetLastError();
  }

  void Exec(const std::string& sql) { testing::SqliteExec(path_, sql); }

  Rows Orders() {
    return testing::SqliteRows(path_, "SELECT id, Amount, qty, note FROM orders ORDER BY id");
  }

  testing::TempDir dir_;
  std::string path_;
  Dataset dataset_;
};

using DatasetClasses = ::testing::Types<KvoDatasetO, KvoDataset>;
TYPED_TEST_SUITE(DatasetExportTest, DatasetClasses);

TYPED_TEST(DatasetExportTest, RowsBecomeRecordsWithFieldsMatchedIgnoringCase) {
  EXPECT_TRUE(this->dataset_.SaveDataToMDBTable("d1", this->path_, "orders"))
      << this->dataset_.GetLastError();
  // The first of two cols named alike wins; an empty col leaves the default;
  // cols without a field are ignored.
  EXPECT_EQ(this->Orders(), (Rows{{"1", "2.5", "1", "<null>"}, {"2", "<null>", "1", "x"}}));
  EXPECT_EQ(this->dataset_.GetLastError(), "");
}

TYPED_TEST(DatasetExportTest, EmptyDataElementWithClearFirstEmptiesTheTable) {
  this->Exec("INSERT INTO orders (id) VALUES (7)");
  EXPECT_TRUE(this->dataset_.SaveDataToMDBTable("EMPTY", this->path_, "orders", "", "", true));
  EXPECT_TRUE(this->Orders().empty());
}

TYPED_TEST(DatasetExportTest, MissingDataIdExportsNothingAndSucceeds) {
  this->Exec("INSERT INTO orders (id) VALUES (7)");
  EXPECT_TRUE(this->dataset_.SaveDataToMDBTable("NOSUCH", this->path_, "orders"));
  EXPECT_EQ(this->Orders().size(), 1u);
}

TYPED_TEST(DatasetExportTest, TableNameWithClosingBracketFails) {
  EXPECT_FALSE(this->dataset_.SaveDataToMDBTable("D1", this->path_, "ord]ers"));
  EXPECT_EQ(this->dataset_.GetLastError(), "Syntax error in FROM clause.(ERR#: -2147217900)");
}

TYPED_TEST(DatasetExportTest, BlankArgumentsAreInvalid) {
  EXPECT_FALSE(this->dataset_.SaveDataToMDBTable(" ", this->path_, "orders"));
  EXPECT_EQ(this->dataset_.GetLastError(), "Invalid parameter.");
  EXPECT_FALSE(this->dataset_.SaveDataToMDBTable("D1", "", "orders"));
  EXPECT_EQ(this->dataset_.GetLastError(), "Invalid parameter.");
  EXPECT_FALSE(this->dataset_.SaveDataToMDBTable("D1", this->path_, ""));
  EXPECT_EQ(this->dataset_.GetLastError(), "Invalid parameter.");
}

TYPED_TEST(DatasetExportTest, UnknownTableIsRecordedWithTheProvidersMessage) {
  EXPECT_FALSE(this->dataset_.SaveDataToMDBTable("D1", this->path_, "nosuch"));
  EXPECT_EQ(this->dataset_.GetLastError(), "no such table: nosuch(ERR#: -2147217865)");
}

TYPED_TEST(DatasetExportTest, MissingDatabaseFileIsRecorded) {
  const std::string missing = this->dir_.File("missing.db");
  EXPECT_FALSE(this->dataset_.SaveDataToMDBTable("D1", missing, "orders"));
  EXPECT_EQ(this->dataset_.GetLastError(), "Cannot open the database file '" + missing +
                                               "': unable to open database file(ERR#: "
                                               "-2147467259)");
}

TYPED_TEST(DatasetExportTest, UnknownDsnIsRecordedWithTheDriverManagersMessage) {
  std::ofstream(this->dir_.File("odbc.ini")) << "";
  testing::SetEnv("ODBCINI", this->dir_.File("odbc.ini"));
  EXPECT_FALSE(this->dataset_.SaveDataToMDBTable("D1", "odbc:no_such_dsn_veld", "orders"));
  EXPECT_NE(this->dataset_.GetLastError().find("Data source name not found"), std::string::npos)
      << this->dataset_.GetLastError();
}

TYPED_TEST(DatasetExportTest, ValueFailingConversionInLastRowLeavesTheTableAsItWas) {
  this->Exec("INSERT INTO orders (id, note) VALUES (9, 'kept')");
  ASSERT_TRUE(this->dataset_.Parse(
      "<dataset><data guid=\"D1\"><row guid=\"a\"><col name=\"id\" value=\"1\"/></row>"
      "<row guid=\"b\"><col name=\"id\" value=\"2\"/><col name=\"qty\" value=\"lots\"/></row>"
      "</data></dataset>"));
  for (bool clear_first : {false, true}) {
    EXPECT_FALSE(
        this->dataset_.SaveDataToMDBTable("D1", this->path_, "orders", "", "", clear_first));
    EXPECT_EQ(this->dataset_.GetLastError(),
              "The value 'lots' cannot be converted to the type INTEGER of field 'qty'.(ERR#: "
              "-2147217913)");
    EXPECT_EQ(this->Orders(), (Rows{{"9", "<null>", "1", "kept"}}));
  }
}

// Caller values never change what the connection string says, whatever
// characters they hold.
TYPED_TEST(DatasetExportTest, PasswordNamingAnotherDatabaseDoesNotRedirectTheRows) {
  const std::string other = this->dir_.File("other.db");
  testing::SqliteExec(other,
                      "CREATE TABLE orders (id INTEGER, Amount NUMERIC, qty INTEGER, note TEXT)");

  for (const std::string& password :
       {"p;Data Source=" + other, "\"x\";Data Source=" + other, " ;Data Source=" + other + "; "}) {
    this->Exec("DELETE FROM orders");
    EXPECT_TRUE(this->dataset_.SaveDataToMDBTable("D1", this->path_, "orders",
                                                  "user;Data Source=" + other, password))
        << this->dataset_.GetLastError();
    EXPECT_EQ(this->Orders().size(), 2u) << password;
  }
  EXPECT_TRUE(testing::SqliteRows(other, "SELECT id FROM orders").empty());
}

TYPED_TEST(DatasetExportTest, FileNameWithSeparatorsQuotesBracesAndBlanksIsUsedAsItIs) {
#ifdef _WIN32
  // Windows file names cannot hold quotation marks.
  const char* const names[] = {"a;b=c.db", "{x}.db", "it's q.db", " lead.db", "==.db"};
#else
  const char* const names[] = {"a;b=c.db", "{x}.db", "it's \"q\".db", " lead.db", "==.db"};
#endif
  for (const std::string name : names) {
    const std::string path = this->dir_.File(name);
    testing::SqliteExec(path,
                        "CREATE TABLE orders (id INTEGER, Amount NUMERIC, qty INTEGER, note TEXT)");
    EXPECT_TRUE(this->dataset_.SaveDataToMDBTable("D1", path, "orders", "u=1", "p{}"))
        << name << ": " << this->dataset_.GetLastError();
    EXPECT_EQ(testing::SqliteRows(path, "SELECT id FROM orders ORDER BY id"), (Rows{{"1"}, {"2"}}))
        << name;
  }
}

#ifndef _WIN32  // the SQLite ODBC driver; see tests/WindowsExclusions.cmake
TYPED_TEST(DatasetExportTest, OdbcDataSourceTakesUserAndPasswordAsArguments) {
  std::ofstream(this->dir_.File("odbc.ini"))
      << "[veld_inject]\nDriver=SQLite3\nDatabase=" << this->path_ << "\n";
  testing::SetEnv("ODBCINI", this->dir_.File("odbc.ini"));
  const std::string other = this->dir_.File("other.db");

  EXPECT_TRUE(this->dataset_.SaveDataToMDBTable("D1", "odbc:veld_inject", "orders",
                                                "u;Database=" + other, "p};Database={" + other))
      << this->dataset_.GetLastError();

  EXPECT_EQ(this->Orders().size(), 2u);
  EXPECT_FALSE(std::ifstream(other).good());
}
#endif

#ifndef _WIN32  // the SQLite ODBC driver; see tests/WindowsExclusions.cmake
TYPED_TEST(DatasetExportTest, OdbcConnectionStringRefusesCredentialsItCannotCarry) {
  const std::string target = "odbc:Driver={SQLite3};Database=" + this->path_;
  for (const std::string& password :
       {std::string("p;Database=x.db"), std::string("{p}"), std::string(" p")}) {
    EXPECT_FALSE(this->dataset_.SaveDataToMDBTable("D1", target, "orders", "", password));
    EXPECT_EQ(this->dataset_.GetLastError(),
              "The user name or password holds \";\", a brace or blanks at its ends, which an "
              "ODBC connection string cannot carry; give them in the data source instead.(ERR#: "
              "-2147467259)");
  }
  EXPECT_TRUE(this->Orders().empty());
  // Plain ones go in.
  EXPECT_TRUE(this->dataset_.SaveDataToMDBTable("D1", target, "orders", "user", "pass"))
      << this->dataset_.GetLastError();
  EXPECT_EQ(this->Orders().size(), 2u);
}
#endif

}  // namespace
}  // namespace veld
