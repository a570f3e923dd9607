#include "registry/sqlite/sqlite_registry.h"

#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>
#include <string_view>
#include <utility>
#include <vector>

#include <errno.h>
#include <sqlite3.h>
#include <sys/stat.h>
#ifdef _WIN32
#include <direct.h>
#endif

#include "runtime/code_page.h"
#include "veld/runtime/case_folding.h"

namespace veld {

namespace {

// How long a call waits for another process's write transaction before it
// gives up with an I/O error.
constexpr int kBusyTimeoutMs = 60000;

// Root key rows: the id of a usable root is its offset from
// HKEY_CLASSES_ROOT plus one. HKEY_PERFORMANCE_DATA and HKEY_DYN_DATA have
// no rows; they are answered without the store.
constexpr char kSchema[] =
    "CREATE TABLE IF NOT EXISTS keys("
    "  id INTEGER PRIMARY KEY AUTOINCREMENT,"
    "  parent INTEGER NOT NULL,"
    "  name BLOB NOT NULL,"
    "  fold TEXT NOT NULL,"
    "  UNIQUE(parent, fold));"
    "CREATE TABLE IF NOT EXISTS vals("
    "  seq INTEGER PRIMARY KEY AUTOINCREMENT,"
    "  key INTEGER NOT NULL,"
    "  name BLOB NOT NULL,"
    "  fold TEXT NOT NULL,"
    "  type INTEGER NOT NULL,"
    "  data BLOB NOT NULL,"
    "  UNIQUE(key, fold));"
    "INSERT OR IGNORE INTO keys(id, parent, name, fold) VALUES"
    "  (1, 0, 'HKEY_CLASSES_ROOT', 'hkey_classes_root'),"
    "  (2, 0, 'HKEY_CURRENT_USER', 'hkey_current_user'),"
    "  (3, 0, 'HKEY_LOCAL_MACHINE', 'hkey_local_machine'),"
    "  (4, 0, 'HKEY_USERS', 'hkey_users'),"
    "  (6, 0, 'HKEY_CURRENT_CONFIG', 'hkey_current_config');";

int32_t SqliteToRegistryError(int code) {
  switch (code & 0xFF) {
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
      return regerr::kBadDb;
    case SQLITE_NOMEM:
      return regerr::kOutOfMemory;
    case SQLITE_TOOBIG:
      // A value longer than the store takes.
      return regerr::kCantWrite;
    default:
      return regerr::kIoFailed;
  }
}

// Raised inside a call to leave it with a result code.
struct RegistryFailure {
  int32_t code;
};

[[noreturn]] void FailWith(int32_t code) { throw RegistryFailure{code}; }

void Check(int sqlite_code) {
  if (sqlite_code != SQLITE_OK && sqlite_code != SQLITE_DONE && sqlite_code != SQLITE_ROW) {
    FailWith(SqliteToRegistryError(sqlite_code));
  }
}

struct StatementDeleter {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};

class Statement {
 public:
  Statement(sqlite3* db, const char* sql) {
    sqlite3_stmt* raw = nullptr;
    Check(sqlite3_prepare_v2(db, sql, -1, &raw, nullptr));
    statement_.reset(raw);
  }
  Statement& Bind(int index, int64_t value) {
    Check(sqlite3_bind_int64(statement_.get(), index, value));
    return *this;
  }
  Statement& Bind(int index, std::string_view text) {
    Check(sqlite3_bind_text(statement_.get(), index, text.data(), static_cast<int>(text.size()),
                            SQLITE_TRANSIENT));
    return *this;
  }
  Statement& BindBlob(int index, std::string_view bytes) {
    Check(sqlite3_bind_blob(statement_.get(), index, bytes.empty() ? "" : bytes.data(),
                            static_cast<int>(bytes.size()), SQLITE_TRANSIENT));
    return *this;
  }
  // Steps once; true when a row is available.
  bool Step() {
    int code = sqlite3_step(statement_.get());
    Check(code);
    return code == SQLITE_ROW;
  }
  int64_t Int(int column) { return sqlite3_column_int64(statement_.get(), column); }
  std::string Blob(int column) {
    const void* data = sqlite3_column_blob(statement_.get(), column);
    int size = sqlite3_column_bytes(statement_.get(), column);
    return data == nullptr ? std::string() : std::string(static_cast<const char*>(data), size);
  }

 private:
  std::unique_ptr<sqlite3_stmt, StatementDeleter> statement_;
};

void Execute(sqlite3* db, const char* sql) {
  char* message = nullptr;
  int code = sqlite3_exec(db, sql, nullptr, nullptr, &message);
  sqlite3_free(message);
  Check(code);
}

// The case-insensitive form of a name: ANSI bytes decoded with the
// platform's code page and case-folded; plain ASCII folding when the code
// page is unusable.
std::string Fold(std::string_view ansi) {
  try {
    return FoldCase(FromAnsiBytes(ansi));
  } catch (const std::bad_alloc&) {
    throw;
  } catch (...) {
    std::string folded(ansi);
    for (char& c : folded) {
      if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return folded;
  }
}

// Splits a subkey path into its names. A leading separator is a bad path;
// doubled and trailing separators are ignored.
int32_t SplitSubKey(const char* sub_key, std::vector<std::string>& parts) {
  parts.clear();
  if (sub_key == nullptr || *sub_key == '\0') return regerr::kSuccess;
  if (*sub_key == '\\') return regerr::kBadPathName;
  std::string_view rest(sub_key);
  while (!rest.empty()) {
    size_t end = rest.find('\\');
    std::string_view part = rest.substr(0, end);
    if (part.size() > kMaxKeyNameLength) return regerr::kInvalidParameter;
    if (!part.empty()) parts.emplace_back(part);
    if (end == std::string_view::npos) break;
    rest.remove_prefix(end + 1);
  }
  return regerr::kSuccess;
}

bool IsStringType(uint32_t type) {
  return type == kRegSz || type == kRegExpandSz || type == kRegMultiSz;
}

int64_t RootId(RegistryHandle key) { return static_cast<int64_t>(key - kHkeyClassesRoot) + 1; }

bool IsUsableRoot(RegistryHandle key) {
  return key >= kHkeyClassesRoot && key <= kHkeyCurrentConfig && key != kHkeyPerformanceData;
}

bool KeyExists(sqlite3* db, int64_t id) {
  Statement select(db, "SELECT 1 FROM keys WHERE id = ?");
  return select.Bind(1, id).Step();
}

// The id of `name` under `parent`, or 0.
int64_t FindChild(sqlite3* db, int64_t parent, const std::string& name) {
  Statement select(db, "SELECT id FROM keys WHERE parent = ? AND fold = ?");
  select.Bind(1, parent).Bind(2, Fold(name));
  return select.Step() ? select.Int(0) : 0;
}

// Runs `body` and turns what it throws into a result code.
template <class Body>
int32_t Guarded(Body&& body) noexcept {
  try {
    return body();
  } catch (const RegistryFailure& failure) {
    return failure.code;
  } catch (const std::bad_alloc&) {
    return regerr::kOutOfMemory;
  } catch (...) {
    return regerr::kIoFailed;
  }
}

}  // namespace

// What a handle stands for.
struct SqliteRegistry::Target {
  enum Kind { kKey, kPerformanceData, kDynData } kind = kKey;
  bool is_root = false;
  int64_t key_id = 0;
  uint32_t access = kKeyAllAccess;
};

// One transaction per call: a write transaction takes the store's write lock
// at once, so that no other process slips in between its reads and writes.
// Rolled back unless committed.
class SqliteRegistry::Transaction {
 public:
  Transaction(SqliteRegistry& registry, bool write) : registry_(registry), write_(write) {
    Execute(registry_.db_, write ? "BEGIN IMMEDIATE" : "BEGIN");
  }
  ~Transaction() {
    if (open_) sqlite3_exec(registry_.db_, "ROLLBACK", nullptr, nullptr, nullptr);
  }
  void Commit() {
    if (write_ && registry_.write_hook_) registry_.write_hook_();
    Execute(registry_.db_, "COMMIT");
    open_ = false;
  }

 private:
  SqliteRegistry& registry_;
  bool write_;
  bool open_ = true;
};

SqliteRegistry::SqliteRegistry(std::string path) : path_(std::move(path)) {}

SqliteRegistry::~SqliteRegistry() {
  if (db_ != nullptr) sqlite3_close_v2(db_);
}

void SqliteRegistry::Close() {
  std::lock_guard<std::mutex> lock(mutex_);
  handles_.clear();
  if (db_ != nullptr) sqlite3_close_v2(db_);
  db_ = nullptr;
}

void SqliteRegistry::SetValueLimitForTesting(int bytes) {
  std::lock_guard<std::mutex> lock(mutex_);
  value_limit_ = bytes;
  if (db_ != nullptr) sqlite3_limit(db_, SQLITE_LIMIT_LENGTH, bytes);
}

void SqliteRegistry::SetWriteHookForTesting(std::function<void()> hook) {
  std::lock_guard<std::mutex> lock(mutex_);
  write_hook_ = std::move(hook);
}

int32_t SqliteRegistry::Open() {
  if (db_ != nullptr) return regerr::kSuccess;
  sqlite3* db = nullptr;
  int code =
      sqlite3_open_v2(path_.c_str(), &db,
                      SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
  if (code != SQLITE_OK) {
    sqlite3_close_v2(db);
    return SqliteToRegistryError(code);
  }
  sqlite3_busy_timeout(db, kBusyTimeoutMs);
  if (value_limit_ > 0) sqlite3_limit(db, SQLITE_LIMIT_LENGTH, value_limit_);
  // Write-ahead logging lets readers go on while another process writes; a
  // store that cannot switch (another process holds it) keeps its journal,
  // which is just as safe.
  sqlite3_exec(db, "PRAGMA journal_mode=WAL", nullptr, nullptr, nullptr);
  sqlite3_exec(db, "PRAGMA synchronous=NORMAL", nullptr, nullptr, nullptr);
  int32_t result = Guarded([&] {
    Execute(db, "BEGIN IMMEDIATE");
    try {
      Execute(db, kSchema);
      Execute(db, "COMMIT");
    } catch (...) {
      sqlite3_exec(db, "ROLLBACK", nullptr, nullptr, nullptr);
      throw;
    }
    return regerr::kSuccess;
  });
  if (result != regerr::kSuccess) {
    sqlite3_close_v2(db);
    return result;
  }
  db_ = db;
  return regerr::kSuccess;
}

int32_t SqliteRegistry::Resolve(RegistryHandle key, Target& target) {
  if (key == kHkeyDynData) return regerr::kInvalidHandle;
  if (key == kHkeyPerformanceData) {
    target.kind = Target::kPerformanceData;
    target.is_root = true;
    return regerr::kSuccess;
  }
  if (IsUsableRoot(key)) {
    target.is_root = true;
    target.key_id = RootId(key);
    target.access = kKeyAllAccess;
  } else {
    auto found = handles_.find(key);
    if (found == handles_.end()) return regerr::kInvalidHandle;
    target.key_id = found->second.key_id;
    target.access = found->second.access;
  }
  return Open();
}

RegistryHandle SqliteRegistry::NewHandle(int64_t key_id, uint32_t access) {
  RegistryHandle handle = next_handle_;
  next_handle_ += 4;
  handles_[handle] = OpenHandle{key_id, access};
  return handle;
}

int32_t SqliteRegistry::OpenKey(RegistryHandle key, const char* sub_key, uint32_t sam_desired,
                                RegistryHandle* result) {
  if (result == nullptr) return regerr::kInvalidParameter;
  *result = 0;
  std::lock_guard<std::mutex> lock(mutex_);
  return Guarded([&] {
    Target target;
    if (int32_t code = Resolve(key, target)) return code;
    std::vector<std::string> parts;
    if (target.kind == Target::kPerformanceData) {
      if (sub_key != nullptr && *sub_key != '\0') return regerr::kInvalidHandle;
      *result = key;
      return regerr::kSuccess;
    }
    if (int32_t code = SplitSubKey(sub_key, parts)) return code;
    Transaction transaction(*this, false);
    if (!KeyExists(db_, target.key_id)) return regerr::kKeyDeleted;
    int64_t id = target.key_id;
    for (const std::string& part : parts) {
      id = FindChild(db_, id, part);
      if (id == 0) return regerr::kFileNotFound;
    }
    transaction.Commit();
    *result = parts.empty() && target.is_root ? key : NewHandle(id, sam_desired);
    return regerr::kSuccess;
  });
}

int32_t SqliteRegistry::CreateKey(RegistryHandle key, const char* sub_key, RegistryHandle* result) {
  if (result == nullptr) return regerr::kInvalidParameter;
  *result = 0;
  std::lock_guard<std::mutex> lock(mutex_);
  return Guarded([&] {
    Target target;
    if (int32_t code = Resolve(key, target)) return code;
    if (target.kind == Target::kPerformanceData) return regerr::kInvalidHandle;
    std::vector<std::string> parts;
    if (int32_t code = SplitSubKey(sub_key, parts)) return code;
    Transaction transaction(*this, true);
    if (!KeyExists(db_, target.key_id)) return regerr::kKeyDeleted;
    int64_t id = target.key_id;
    for (const std::string& part : parts) {
      int64_t child = FindChild(db_, id, part);
      if (child == 0) {
        if ((target.access & 0x4u) == 0) return regerr::kAccessDenied;
        Statement insert(db_, "INSERT INTO keys(parent, name, fold) VALUES (?, ?, ?)");
        insert.Bind(1, id).BindBlob(2, part).Bind(3, Fold(part)).Step();
        child = sqlite3_last_insert_rowid(db_);
      }
      id = child;
    }
    transaction.Commit();
    *result = parts.empty() && target.is_root ? key : NewHandle(id, kKeyAllAccess);
    return regerr::kSuccess;
  });
}

int32_t SqliteRegistry::DeleteKey(RegistryHandle key, const char* sub_key) {
  std::lock_guard<std::mutex> lock(mutex_);
  return Guarded([&] {
    Target target;
    if (int32_t code = Resolve(key, target)) return code;
    if (target.kind == Target::kPerformanceData) return regerr::kInvalidHandle;
    std::vector<std::string> parts;
    if (int32_t code = SplitSubKey(sub_key, parts)) return code;
    if (parts.empty() && target.is_root) return regerr::kAccessDenied;
    Transaction transaction(*this, true);
    if (!KeyExists(db_, target.key_id)) return regerr::kKeyDeleted;
    int64_t id = target.key_id;
    for (const std::string& part : parts) {
      id = FindChild(db_, id, part);
      if (id == 0) return regerr::kFileNotFound;
    }
    Statement children(db_, "SELECT 1 FROM keys WHERE parent = ? LIMIT 1");
    if (children.Bind(1, id).Step()) return regerr::kAccessDenied;
    Statement(db_, "DELETE FROM vals WHERE key = ?").Bind(1, id).Step();
    Statement(db_, "DELETE FROM keys WHERE id = ?").Bind(1, id).Step();
    transaction.Commit();
    return regerr::kSuccess;
  });
}

int32_t SqliteRegistry::QueryValue(RegistryHandle key, const char* value_name, uint32_t* type,
                                   uint8_t* data, uint32_t* data_size) {
  std::lock_guard<std::mutex> lock(mutex_);
  return Guarded([&] {
    Target target;
    if (int32_t code = Resolve(key, target)) return code;
    if (target.kind == Target::kPerformanceData) {
      if (type != nullptr) *type = kRegNone;
      return regerr::kFileNotFound;
    }
    if ((target.access & 0x1u) == 0) return regerr::kAccessDenied;
    if (data != nullptr && data_size == nullptr) return regerr::kInvalidParameter;
    Transaction transaction(*this, false);
    if (!KeyExists(db_, target.key_id)) return regerr::kKeyDeleted;
    Statement select(db_, "SELECT type, data FROM vals WHERE key = ? AND fold = ?");
    select.Bind(1, target.key_id).Bind(2, Fold(value_name == nullptr ? "" : value_name));
    if (!select.Step()) {
      if (type != nullptr) *type = kRegNone;
      return regerr::kFileNotFound;
    }
    auto stored_type = static_cast<uint32_t>(select.Int(0));
    std::string bytes = select.Blob(1);
    transaction.Commit();
    auto size = static_cast<uint32_t>(bytes.size());
    if (type != nullptr) *type = stored_type;
    if (data == nullptr) {
      if (data_size != nullptr) *data_size = size;
      return regerr::kSuccess;
    }
    if (*data_size < size) {
      *data_size = size;
      return regerr::kMoreData;
    }
    if (size > 0) std::memcpy(data, bytes.data(), size);
    *data_size = size;
    return regerr::kSuccess;
  });
}

int32_t SqliteRegistry::SetValue(RegistryHandle key, const char* value_name, uint32_t type,
                                 const uint8_t* data, uint32_t data_size) {
  std::lock_guard<std::mutex> lock(mutex_);
  return Guarded([&] {
    Target target;
    if (int32_t code = Resolve(key, target)) return code;
    if (target.kind == Target::kPerformanceData) return regerr::kInvalidHandle;
    if ((target.access & 0x2u) == 0) return regerr::kAccessDenied;
    std::string_view name = value_name == nullptr ? "" : value_name;
    if (name.size() > kMaxValueNameLength) return regerr::kInvalidParameter;
    if (data == nullptr && data_size > 0) return regerr::kInvalidParameter;
    std::string bytes;
    if (data != nullptr) bytes.assign(reinterpret_cast<const char*>(data), data_size);
    // The ANSI call stores strings with a terminating zero even when the
    // caller passes none; callers that count only the characters rely on it.
    if (IsStringType(type) && !bytes.empty() && bytes.back() != '\0') bytes.push_back('\0');
    std::string fold = Fold(name);
    Transaction transaction(*this, true);
    if (!KeyExists(db_, target.key_id)) return regerr::kKeyDeleted;
    Statement update(db_, "UPDATE vals SET type = ?, data = ? WHERE key = ? AND fold = ?");
    update.Bind(1, type).BindBlob(2, bytes).Bind(3, target.key_id).Bind(4, fold).Step();
    if (sqlite3_changes(db_) == 0) {
      Statement insert(db_, "INSERT INTO vals(key, name, fold, type, data) VALUES (?, ?, ?, ?, ?)");
      insert.Bind(1, target.key_id).BindBlob(2, name).Bind(3, fold).Bind(4, type);
      insert.BindBlob(5, bytes).Step();
    }
    transaction.Commit();
    return regerr::kSuccess;
  });
}

int32_t SqliteRegistry::DeleteValue(RegistryHandle key, const char* value_name) {
  std::lock_guard<std::mutex> lock(mutex_);
  return Guarded([&] {
    Target target;
    if (int32_t code = Resolve(key, target)) return code;
    if (target.kind == Target::kPerformanceData) return regerr::kInvalidHandle;
    if ((target.access & 0x2u) == 0) return regerr::kAccessDenied;
    std::string fold = Fold(value_name == nullptr ? "" : value_name);
    Transaction transaction(*this, true);
    if (!KeyExists(db_, target.key_id)) return regerr::kKeyDeleted;
    Statement(db_, "DELETE FROM vals WHERE key = ? AND fold = ?")
        .Bind(1, target.key_id)
        .Bind(2, fold)
        .Step();
    if (sqlite3_changes(db_) == 0) return regerr::kFileNotFound;
    transaction.Commit();
    return regerr::kSuccess;
  });
}

int32_t SqliteRegistry::EnumValue(RegistryHandle key, uint32_t index, char* name,
                                  uint32_t* name_size, uint32_t* type, uint8_t* data,
                                  uint32_t* data_size) {
  std::lock_guard<std::mutex> lock(mutex_);
  return Guarded([&] {
    Target target;
    if (int32_t code = Resolve(key, target)) return code;
    if (target.kind == Target::kPerformanceData) return regerr::kNoMoreItems;
    if ((target.access & 0x1u) == 0) return regerr::kAccessDenied;
    if (name == nullptr || name_size == nullptr) return regerr::kInvalidParameter;
    if (data != nullptr && data_size == nullptr) return regerr::kInvalidParameter;
    Transaction transaction(*this, false);
    if (!KeyExists(db_, target.key_id)) return regerr::kKeyDeleted;
    Statement select(
        db_, "SELECT name, type, data FROM vals WHERE key = ? ORDER BY seq LIMIT 1 OFFSET ?");
    select.Bind(1, target.key_id).Bind(2, static_cast<int64_t>(index));
    if (!select.Step()) return regerr::kNoMoreItems;
    std::string value_name = select.Blob(0);
    auto stored_type = static_cast<uint32_t>(select.Int(1));
    std::string bytes = select.Blob(2);
    transaction.Commit();
    if (*name_size <= value_name.size()) {
      if (*name_size > 0) name[0] = '\0';
      return regerr::kMoreData;
    }
    auto size = static_cast<uint32_t>(bytes.size());
    if (data != nullptr) {
      if (*data_size < size) {
        *data_size = size;
        return regerr::kMoreData;
      }
      if (size > 0) std::memcpy(data, bytes.data(), size);
    }
    std::memcpy(name, value_name.c_str(), value_name.size() + 1);
    *name_size = static_cast<uint32_t>(value_name.size());
    if (type != nullptr) *type = stored_type;
    if (data_size != nullptr) *data_size = size;
    return regerr::kSuccess;
  });
}

int32_t SqliteRegistry::CloseKey(RegistryHandle key) {
  std::lock_guard<std::mutex> lock(mutex_);
  if (key == kHkeyDynData) return regerr::kInvalidHandle;
  if (key >= kHkeyClassesRoot && key <= kHkeyCurrentConfig) return regerr::kSuccess;
  return handles_.erase(key) == 1 ? regerr::kSuccess : regerr::kInvalidHandle;
}

std::string DefaultRegistryFile() {
  const char* file = std::getenv("VELD_REGISTRY_FILE");
  if (file != nullptr && *file != '\0') return file;
  const char* data_home = std::getenv("XDG_DATA_HOME");
  if (data_home != nullptr && *data_home == '/')
    return std::string(data_home) + "/veld/registry.db";
  const char* home = std::getenv("HOME");
  return std::string(home != nullptr ? home : "") + "/.local/share/veld/registry.db";
}

namespace {

// Creates the directories above `path` that are missing.
void CreateParentDirectories(const std::string& path) {
  for (size_t slash = path.find('/', 1); slash != std::string::npos;
       slash = path.find('/', slash + 1)) {
    std::string directory = path.substr(0, slash);
#ifdef _WIN32
    // Not the registry of Windows, but it may be used there (tests, tools).
    if (::_mkdir(directory.c_str()) != 0 && errno != EEXIST) return;
#else
    if (::mkdir(directory.c_str(), 0700) != 0 && errno != EEXIST) return;
#endif
  }
}

// Passes every call to the store of the file DefaultRegistryFile() names at
// the time of the call.
class FollowingRegistry final : public RegistryBackend {
 public:
  int32_t OpenKey(RegistryHandle key, const char* sub_key, uint32_t sam_desired,
                  RegistryHandle* result) override {
    return Current().OpenKey(key, sub_key, sam_desired, result);
  }
  int32_t CreateKey(RegistryHandle key, const char* sub_key, RegistryHandle* result) override {
    return Current().CreateKey(key, sub_key, result);
  }
  int32_t DeleteKey(RegistryHandle key, const char* sub_key) override {
    return Current().DeleteKey(key, sub_key);
  }
  int32_t QueryValue(RegistryHandle key, const char* value_name, uint32_t* type, uint8_t* data,
                     uint32_t* data_size) override {
    return Current().QueryValue(key, value_name, type, data, data_size);
  }
  int32_t SetValue(RegistryHandle key, const char* value_name, uint32_t type, const uint8_t* data,
                   uint32_t data_size) override {
    return Current().SetValue(key, value_name, type, data, data_size);
  }
  int32_t DeleteValue(RegistryHandle key, const char* value_name) override {
    return Current().DeleteValue(key, value_name);
  }
  int32_t EnumValue(RegistryHandle key, uint32_t index, char* name, uint32_t* name_size,
                    uint32_t* type, uint8_t* data, uint32_t* data_size) override {
    return Current().EnumValue(key, index, name, name_size, type, data, data_size);
  }
  int32_t CloseKey(RegistryHandle key) override { return Current().CloseKey(key); }

 private:
  SqliteRegistry& Current() {
    std::string path = DefaultRegistryFile();
    std::lock_guard<std::mutex> lock(mutex_);
    if (store_ == nullptr || store_->Path() != path) {
      CreateParentDirectories(path);
      // The previous store object stays alive for the process, closed: a
      // caller on another thread may still hold it.
      if (store_ != nullptr) {
        store_->Close();
        retired_.push_back(std::move(store_));
      }
      store_ = std::make_unique<SqliteRegistry>(path);
    }
    return *store_;
  }

  std::mutex mutex_;
  std::unique_ptr<SqliteRegistry> store_;
  std::vector<std::unique_ptr<SqliteRegistry>> retired_;
};

}  // namespace

RegistryBackend& DefaultSqliteRegistry() {
  static FollowingRegistry* registry = new FollowingRegistry();  // lives for the process
  return *registry;
}

}  // namespace veld
