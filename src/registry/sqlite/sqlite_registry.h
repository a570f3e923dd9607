// The POSIX registry backend: a registry store in an SQLite file that behaves
// like the Windows registry in everything the library can observe (result
// codes, case-insensitive and case-preserving names, values in creation
// order, the predefined roots). Several processes may use one file at once:
// each call is one transaction, and a process killed during a write leaves
// the store as it was before that call.
#ifndef VELD_REGISTRY_SQLITE_SQLITE_REGISTRY_H_
#define VELD_REGISTRY_SQLITE_SQLITE_REGISTRY_H_

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "veld/registry/registry_backend.h"

struct sqlite3;

namespace veld {

class SqliteRegistry final : public RegistryBackend {
 public:
  // A store in the file at `path`, created on first use. Nothing is opened
  // here; a file that cannot be opened makes every call return 1016.
  explicit SqliteRegistry(std::string path);
  ~SqliteRegistry() override;

  const std::string& Path() const { return path_; }

  int32_t OpenKey(RegistryHandle key, const char* sub_key, uint32_t sam_desired,
                  RegistryHandle* result) override;
  int32_t CreateKey(RegistryHandle key, const char* sub_key, RegistryHandle* result) override;
  int32_t DeleteKey(RegistryHandle key, const char* sub_key) override;
  int32_t QueryValue(RegistryHandle key, const char* value_name, uint32_t* type, uint8_t* data,
                     uint32_t* data_size) override;
  int32_t SetValue(RegistryHandle key, const char* value_name, uint32_t type, const uint8_t* data,
                   uint32_t data_size) override;
  int32_t DeleteValue(RegistryHandle key, const char* value_name) override;
  int32_t EnumValue(RegistryHandle key, uint32_t index, char* name, uint32_t* name_size,
                    uint32_t* type, uint8_t* data, uint32_t* data_size) override;
  int32_t CloseKey(RegistryHandle key) override;

  // Closes the file and invalidates every handle. A later call opens the
  // file again.
  void Close();

  // Lowers the longest value (and statement) the store takes, which is
  // SQLite's length limit (a billion bytes) otherwise; a longer value fails
  // with 1013. Lets a test reach the limit without a billion bytes.
  void SetValueLimitForTesting(int bytes);

  // Runs `hook` inside every write transaction, after its changes and before
  // its commit. Lets a test stop a process in the middle of a write.
  void SetWriteHookForTesting(std::function<void()> hook);

 private:
  struct OpenHandle {
    int64_t key_id;
    uint32_t access;
  };
  struct Target;
  class Transaction;

  int32_t Open();
  int32_t Resolve(RegistryHandle key, Target& target);
  RegistryHandle NewHandle(int64_t key_id, uint32_t access);

  std::string path_;
  sqlite3* db_ = nullptr;
  std::mutex mutex_;
  std::map<RegistryHandle, OpenHandle> handles_;
  RegistryHandle next_handle_ = 0x1000;
  std::function<void()> write_hook_;
  int value_limit_ = 0;  // 0: SQLite's own
};

// Where the process's store lives: $VELD_REGISTRY_FILE, else
// $XDG_DATA_HOME/veld/registry.db, else ~/.local/share/veld/registry.db.
std::string DefaultRegistryFile();

// The process's store. It follows DefaultRegistryFile(): when the variables
// name another file than before, the next call uses that file and the handles
// of the previous one become invalid. Lives for the process.
RegistryBackend& DefaultSqliteRegistry();

}  // namespace veld

#endif  // VELD_REGISTRY_SQLITE_SQLITE_REGISTRY_H_
