#include "support/sqlite_file.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace veld::testing {

void SqliteExec(const std::string& path, const std::string& sql) {
  sqlite3* db = nullptr;
  if (sqlite3_open(path.c_str(), &db) != SQLITE_OK) ADD_FAILURE() << path << ": cannot open";
  char* error = nullptr;
  if (sqlite3_exec(db, sql.c_str(), nullptr, nullptr, &error) != SQLITE_OK) {
    ADD_FAILURE() << sql << ": " << (error != nullptr ? error : sqlite3_errmsg(db));
    sqlite3_free(error);
  }
  sqlite3_close(db);
}

SqliteRowList SqliteRows(const std::string& path, const std::string& select) {
  SqliteRowList rows;
  sqlite3* db = nullptr;
  sqlite3_stmt* statement = nullptr;
  if (sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK ||
      sqlite3_prepare_v2(db, select.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
    ADD_FAILURE() << select << ": " << sqlite3_errmsg(db);
  }
  int rc = SQLITE_DONE;
  while (statement != nullptr && (rc = sqlite3_step(statement)) == SQLITE_ROW) {
    std::vector<std::string> row;
    for (int i = 0; i < sqlite3_column_count(statement); ++i) {
      const unsigned char* text = sqlite3_column_text(statement, i);
      row.push_back(text != nullptr ? reinterpret_cast<const char*>(text) : "<null>");
    }
    rows.push_back(std::move(row));
  }
  if (rc != SQLITE_DONE) ADD_FAILURE() << select << ": " << sqlite3_errmsg(db);
  sqlite3_finalize(statement);
  sqlite3_close(db);
  return rows;
}

}  // namespace veld::testing
