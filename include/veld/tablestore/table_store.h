// TableStore: the database behind the export of a data element to a table.
//
// The export opens a store from a connection string, begins a transaction,
// optionally deletes every record of the table, opens the table, appends one
// record per row setting fields by position from text, and commits; on any
// failure the transaction is rolled back, so the table is left as it was.
//
// Providers, chosen by the connection string's "Data Source":
//   - "odbc:" + a DSN name, or "odbc:" + a whole ODBC connection string
//     (anything holding "="), with "User ID" and "Password" as the user and
//     password: any unixODBC / Windows ODBC driver. Values go to the driver
//     as text and the database converts them.
//   - a file whose name ends in ".mdb" or ".accdb", or that starts like an
//     Access database, fails: no Access driver is available on this platform.
//   - any other text names an existing SQLite database file. Text values are
//     converted to the declared type of their column (see README).
//
// Failures raise AutomationError: connection failures -2147467259 with the
// provider's message, statement failures -2147217900, an unknown table
// -2147217865, a value the field rejects -2147217913.
#ifndef VELD_TABLESTORE_TABLE_STORE_H_
#define VELD_TABLESTORE_TABLE_STORE_H_

#include <cstdint>
#include <memory>
#include <string>

#include "veld/export.h"

namespace veld {

// One open table, positioned for appending records.
class VELD_EXPORT TableCursor {
 public:
  TableCursor() = default;
  TableCursor(const TableCursor&) = delete;
  TableCursor& operator=(const TableCursor&) = delete;
  virtual ~TableCursor();

  // The table's fields, in table order; positions start at 0.
  virtual int32_t FieldCount() const = 0;
  virtual const std::string& FieldName(int32_t index) const = 0;

  // Starts a new record with every field unset (the database's default or
  // NULL stands for fields that are not set).
  virtual void AddNew() = 0;
  // Sets a field of the new record from text, converting it to the field's
  // type. Raises -2147217913 when the text does not convert.
  virtual void SetFieldValue(int32_t index, const std::string& text) = 0;
  // Writes the new record (inside the store's transaction).
  virtual void Update() = 0;
};

// A connection to one database.
class VELD_EXPORT TableStore {
 public:
  TableStore() = default;
  TableStore(const TableStore&) = delete;
  TableStore& operator=(const TableStore&) = delete;
  // Rolls back a transaction that was begun and not committed.
  virtual ~TableStore();

  virtual void BeginTrans() = 0;
  virtual void CommitTrans() = 0;
  virtual void RollbackTrans() = 0;

  // Deletes every record of a table. Raises -2147217865 for an unknown table.
  virtual void DeleteAllRecords(const std::string& table) = 0;
  // Opens a table for appending. Raises -2147217865 for an unknown table and
  // -2147217900 for a name the provider cannot quote safely.
  virtual std::unique_ptr<TableCursor> OpenTable(const std::string& table) = 0;
};

// Opens the store that an OLE DB style connection string names
// ("Data Source=...;User ID=...;Password=..."): the current platform's
// store when it opens one (Platform::OpenTableStore), otherwise one of the
// providers above. Raises -2147467259 when it cannot be opened.
VELD_EXPORT std::unique_ptr<TableStore> OpenTableStore(const std::string& connection_string);

}  // namespace veld

#endif  // VELD_TABLESTORE_TABLE_STORE_H_
