// The SQLite provider of the table store: an existing database file, with
// text values converted to the declared types of the columns.
#ifndef VELD_TABLESTORE_SQLITE_TABLE_STORE_H_
#define VELD_TABLESTORE_SQLITE_TABLE_STORE_H_

#include <memory>
#include <string>

#include "veld/tablestore/table_store.h"

namespace veld {

// Opens an existing SQLite database file. A missing file, a file that is not
// a database, or one that cannot be opened raises -2147467259 with SQLite's
// message. A file without any write permission bit is opened read-only, so
// that a read-only file stays unchanged even for a privileged user.
std::unique_ptr<TableStore> OpenSqliteTableStore(const std::string& path);

}  // namespace veld

#endif  // VELD_TABLESTORE_SQLITE_TABLE_STORE_H_
