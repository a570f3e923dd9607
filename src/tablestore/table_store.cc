#include "veld/tablestore/table_store.h"

#include <fstream>

#include "runtime/file_path.h"
#include "runtime/text.h"
#include "veld/platform/platform.h"
#include "veld/runtime/automation_error.h"

#include "tablestore/connection_string.h"
#include "tablestore/odbc_table_store.h"
#include "tablestore/sqlite_table_store.h"

namespace veld {

namespace {

bool EndsWithIgnoringCase(const std::string& text, const std::string& suffix) {
  return text.size() >= suffix.size() && LCase(text.substr(text.size() - suffix.size())) == suffix;
}

// Access files start with a page whose bytes 4 to 19 name the engine.
bool LooksLikeAccessFile(const std::string& path) {
  if (EndsWithIgnoringCase(path, ".mdb") || EndsWithIgnoringCase(path, ".accdb")) return true;
  std::ifstream file(FilePath(path), std::ios::binary);
  char header[20] = {};
  if (!file.read(header, sizeof header)) return false;
  const std::string engine(header + 4, 15);
  return engine == "Standard Jet DB" || engine == "Standard ACE DB";
}

}  // namespace

TableCursor::~TableCursor() = default;

TableStore::~TableStore() = default;

std::unique_ptr<TableStore> OpenTableStore(const std::string& connection_string) {
  if (std::unique_ptr<TableStore> hosted = CurrentPlatform().OpenTableStore(connection_string)) {
    return hosted;
  }
  const ConnectionString settings = ConnectionString::Parse(connection_string);
  const std::string source = settings.Get("Data Source").value_or("");
  const std::string user = settings.Get("User ID").value_or("");
  const std::string password = settings.Get("Password").value_or("");
  if (source.starts_with("odbc:")) return OpenOdbcTableStore(source.substr(5), user, password);
  if (Trim(source).empty()) {
    RaiseError(errnum::kDbFailure, "The connection string names no data source.");
  }
  if (LooksLikeAccessFile(source)) {
    RaiseError(errnum::kDbFailure,
               "Cannot open '" + source +
                   "': it is a Microsoft Access database, and no Access driver is available "
                   "on this platform. Export to an SQLite file or through ODBC instead.");
  }
  return OpenSqliteTableStore(source);
}

}  // namespace veld
