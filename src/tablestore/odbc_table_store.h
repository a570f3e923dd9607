// The ODBC provider of the table store: any ODBC driver, values handed over
// as text and converted by the database.
#ifndef VELD_TABLESTORE_ODBC_TABLE_STORE_H_
#define VELD_TABLESTORE_ODBC_TABLE_STORE_H_

#include <memory>
#include <string>

#include "veld/tablestore/table_store.h"

namespace veld {

// Connects to `target`: a DSN name, or a whole ODBC connection string when
// it holds "=". A non-empty user or password is added as UID / PWD. Raises
// -2147467259 with the driver manager's or driver's message when the
// connection fails.
std::unique_ptr<TableStore> OpenOdbcTableStore(const std::string& target, const std::string& user,
                                               const std::string& password);

}  // namespace veld

#endif  // VELD_TABLESTORE_ODBC_TABLE_STORE_H_
