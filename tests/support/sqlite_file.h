// SQLite database files made and read by tests.
#ifndef VELD_TESTS_SUPPORT_SQLITE_FILE_H_
#define VELD_TESTS_SUPPORT_SQLITE_FILE_H_

#include <string>
#include <vector>

namespace veld::testing {

using SqliteRowList = std::vector<std::vector<std::string>>;

// Runs `sql` (one or more statements) on the database file `path`, creating
// the file if needed; a failure fails the test.
void SqliteExec(const std::string& path, const std::string& sql);

// The rows `select` gives on the database file `path`, each value as text
// and "<null>" for NULL; a failure fails the test.
SqliteRowList SqliteRows(const std::string& path, const std::string& select);

}  // namespace veld::testing

#endif  // VELD_TESTS_SUPPORT_SQLITE_FILE_H_
