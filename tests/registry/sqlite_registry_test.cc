// Behaviour of the SQLite store beyond the backend interface: where it lives,
// what it keeps in the file, and several processes sharing it.
#include "registry/sqlite/sqlite_registry.h"

#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <spawn.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include "veld/platform/platform.h"
#include "veld/registry/kvo_registry.h"

#include "support/testing.h"

extern char** environ;

namespace veld {
namespace {

class EnvironmentVariable {
 public:
  EnvironmentVariable(const char* name, const char* value) : name_(name) {
    const char* previous = std::getenv(name);
    had_ = previous != nullptr;
    if (had_) previous_ = previous;
    if (value != nullptr) {
      ::setenv(name, value, 1);
    } else {
      ::unsetenv(name);
    }
  }
  ~EnvironmentVariable() {
    if (had_) {
      ::setenv(name_, previous_.c_str(), 1);
    } else {
      ::unsetenv(name_);
    }
  }

 private:
  const char* name_;
  std::string previous_;
  bool had_ = false;
};

// Runs `sql` on the file and returns the first column of the first row.
std::string QueryFile(const std::string& path, const std::string& sql) {
  sqlite3* db = nullptr;
  std::string result;
  if (sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(db, sql.c_str(), -1, &statement, nullptr) == SQLITE_OK &&
        sqlite3_step(statement) == SQLITE_ROW) {
      const unsigned char* text = sqlite3_column_text(statement, 0);
      if (text != nullptr) result = reinterpret_cast<const char*>(text);
    }
    sqlite3_finalize(statement);
  }
  sqlite3_close(db);
  return result;
}

pid_t Spawn(std::vector<std::string> args) {
  std::vector<char*> argv;
  for (std::string& arg : args) argv.push_back(arg.data());
  argv.push_back(nullptr);
  pid_t pid = 0;
  int code = posix_spawn(&pid, argv[0], nullptr, nullptr, argv.data(), environ);
  EXPECT_EQ(code, 0) << "cannot start " << args[0];
  return code == 0 ? pid : -1;
}

int WaitFor(pid_t pid) {
  int status = 0;
  if (::waitpid(pid, &status, 0) != pid) return -1;
  return status;
}

std::string ReadString(RegistryBackend& reg, RegistryHandle key, const std::string& name) {
  char buffer[256];
  uint32_t size = sizeof buffer;
  if (reg.QueryValue(key, name.c_str(), nullptr, reinterpret_cast<uint8_t*>(buffer), &size) != 0) {
    return "<missing>";
  }
  return std::string(buffer, size);
}

TEST(SqliteRegistryTest, StoreFileComesFromVeldRegistryFile) {
  EnvironmentVariable file("VELD_REGISTRY_FILE", "/somewhere/registry.db");
  EXPECT_EQ(DefaultRegistryFile(), "/somewhere/registry.db");
}

TEST(SqliteRegistryTest, StoreFileFallsBackToXdgDataHomeThenHome) {
  EnvironmentVariable file("VELD_REGISTRY_FILE", nullptr);
  EnvironmentVariable home("HOME", "/home/someone");
  {
    EnvironmentVariable data_home("XDG_DATA_HOME", "/data");
    EXPECT_EQ(DefaultRegistryFile(), "/data/veld/registry.db");
  }
  EnvironmentVariable data_home("XDG_DATA_HOME", nullptr);
  EXPECT_EQ(DefaultRegistryFile(), "/home/someone/.local/share/veld/registry.db");
}

TEST(SqliteRegistryTest, DefaultStoreFollowsTheVariableAndCreatesDirectories) {
  testing::TempDir dir;
  EnvironmentVariable file("VELD_REGISTRY_FILE", nullptr);
  EnvironmentVariable data_home("XDG_DATA_HOME", dir.Path().c_str());
  RegistryBackend& reg = DefaultSqliteRegistry();
  RegistryHandle key = 0;
  ASSERT_EQ(reg.CreateKey(kHkeyCurrentUser, "Software\\Followed", &key), 0);
  EXPECT_EQ(reg.CloseKey(key), 0);
  EXPECT_EQ(QueryFile(dir.Path() + "/veld/registry.db",
                      "SELECT CAST(name AS TEXT) FROM keys WHERE fold = 'followed'"),
            "Followed");
}

TEST(SqliteRegistryTest, KeyKeepsTheSpellingOfItsFirstCreation) {
  testing::TempDir dir;
  std::string path = dir.File("registry.db");
  {
    SqliteRegistry reg(path);
    RegistryHandle key = 0;
    ASSERT_EQ(reg.CreateKey(kHkeyCurrentUser, "Software\\MixedCase", &key), 0);
    ASSERT_EQ(reg.CreateKey(kHkeyCurrentUser, "SOFTWARE\\MIXEDCASE\\Child", &key), 0);
  }
  EXPECT_EQ(QueryFile(path, "SELECT count(*) FROM keys WHERE fold = 'mixedcase'"), "1");
  EXPECT_EQ(QueryFile(path, "SELECT CAST(name AS TEXT) FROM keys WHERE fold = 'mixedcase'"),
            "MixedCase");
  EXPECT_EQ(QueryFile(path, "SELECT CAST(name AS TEXT) FROM keys WHERE fold = 'software'"),
            "Software");
}

TEST(SqliteRegistryTest, NonAsciiNamesCompareIgnoringCase) {
  testing::TempDir dir;
  SqliteRegistry reg(dir.File("registry.db"));
  RegistryHandle key = 0;
  // "Ärger" and "ärger" in windows-1252.
  ASSERT_EQ(reg.CreateKey(kHkeyCurrentUser, "\xC4rger", &key), 0);
  ASSERT_EQ(reg.SetValue(key, "\xC9t\xE9", kRegDword, reinterpret_cast<const uint8_t*>("1234"), 4),
            0);
  RegistryHandle again = 0;
  ASSERT_EQ(reg.OpenKey(kHkeyCurrentUser, "\xE4RGER", kKeyRead, &again), 0);
  EXPECT_EQ(ReadString(reg, again, "\xE9T\xC9"), "1234");
}

TEST(SqliteRegistryTest, UnopenableFileGivesIoError) {
  testing::TempDir dir;
  SqliteRegistry reg(dir.File("missing-dir/registry.db"));
  RegistryHandle key = 0;
  EXPECT_EQ(reg.CreateKey(kHkeyCurrentUser, "Software", &key), regerr::kIoFailed);
  EXPECT_EQ(key, 0u);
}

TEST(SqliteRegistryTest, FileThatIsNotAStoreGivesCorruptDatabase) {
  testing::TempDir dir;
  std::string path = dir.Write("registry.db", std::string(4096, 'x'));
  SqliteRegistry reg(path);
  RegistryHandle key = 0;
  EXPECT_EQ(reg.CreateKey(kHkeyCurrentUser, "Software", &key), regerr::kBadDb);
}

TEST(SqliteRegistryTest, HandlesDoNotOutliveClose) {
  testing::TempDir dir;
  SqliteRegistry reg(dir.File("registry.db"));
  RegistryHandle key = 0;
  ASSERT_EQ(reg.CreateKey(kHkeyCurrentUser, "Software", &key), 0);
  reg.Close();
  uint32_t size = 0;
  EXPECT_EQ(reg.QueryValue(key, "v", nullptr, nullptr, &size), regerr::kInvalidHandle);
  EXPECT_EQ(reg.OpenKey(kHkeyCurrentUser, "Software", kKeyRead, &key), 0);
}

TEST(SqliteRegistryTest, ConcurrentProcessesLoseNoWrites) {
  testing::TempDir dir;
  std::string path = dir.File("registry.db");
  constexpr int kWriters = 4;
  constexpr int kCount = 150;
  std::vector<pid_t> children;
  for (int id = 0; id < kWriters; ++id) {
    children.push_back(
        Spawn({VELD_REGISTRY_HELPER, "write", path, std::to_string(id), std::to_string(kCount)}));
  }
  for (pid_t child : children) {
    ASSERT_GT(child, 0);
    int status = WaitFor(child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "status " << status;
  }
  EXPECT_EQ(QueryFile(path, "PRAGMA integrity_check"), "ok");
  SqliteRegistry reg(path);
  RegistryHandle shared = 0;
  ASSERT_EQ(reg.OpenKey(kHkeyCurrentUser, "Software\\Shared", kKeyRead, &shared), 0);
  for (int id = 0; id < kWriters; ++id) {
    RegistryHandle own = 0;
    ASSERT_EQ(reg.OpenKey(kHkeyCurrentUser, ("Software\\Writer" + std::to_string(id)).c_str(),
                          kKeyRead, &own),
              0);
    for (int i = 0; i < kCount; ++i) {
      std::string name = "w" + std::to_string(id) + "_" + std::to_string(i);
      std::string expected = "value " + std::to_string(id) + " " + std::to_string(i);
      expected.push_back('\0');
      ASSERT_EQ(ReadString(reg, shared, name), expected);
      ASSERT_EQ(ReadString(reg, own, name), expected);
    }
  }
  EXPECT_EQ(QueryFile(path, "SELECT count(*) FROM vals"), std::to_string(2 * kWriters * kCount));
  EXPECT_EQ(QueryFile(path, "SELECT count(*) FROM keys WHERE fold = 'shared'"), "1");
}

TEST(SqliteRegistryTest, ProcessKilledInsideWriteLeavesStoreConsistent) {
  testing::TempDir dir;
  std::string path = dir.File("registry.db");
  int fds[2];
  ASSERT_EQ(::pipe(fds), 0);
  pid_t child = Spawn({VELD_REGISTRY_HELPER, "hang", path, std::to_string(fds[1])});
  ::close(fds[1]);
  ASSERT_GT(child, 0);
  char byte = 0;
  ASSERT_EQ(::read(fds[0], &byte, 1), 1) << "the child did not reach its write";
  ::close(fds[0]);
  ASSERT_EQ(::kill(child, SIGKILL), 0);
  int status = WaitFor(child);
  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);

  EXPECT_EQ(QueryFile(path, "PRAGMA integrity_check"), "ok");
  SqliteRegistry reg(path);
  RegistryHandle key = 0;
  ASSERT_EQ(reg.OpenKey(kHkeyCurrentUser, "Software\\Killed", kKeyAllAccess, &key), 0);
  EXPECT_EQ(ReadString(reg, key, "before"), std::string("1\0", 2));
  uint32_t size = 0;
  EXPECT_EQ(reg.QueryValue(key, "inflight", nullptr, nullptr, &size), regerr::kFileNotFound);
  // The killed writer's lock is gone: the store takes writes again.
  EXPECT_EQ(reg.SetValue(key, "after", kRegSz, reinterpret_cast<const uint8_t*>("3"), 1), 0);
  EXPECT_EQ(ReadString(reg, key, "after"), std::string("3\0", 2));
}

TEST(SqliteRegistryTest, ValueLongerThanTheStoreTakesFailsAndKeepsTheOldValue) {
  testing::TempDir dir;
  SqliteRegistry reg(dir.File("registry.db"));
  reg.SetValueLimitForTesting(100000);
  RegistryHandle key = 0;
  ASSERT_EQ(reg.CreateKey(kHkeyCurrentUser, "Software\\Big", &key), 0);
  const std::string small = "small";
  ASSERT_EQ(reg.SetValue(key, "v", kRegSz, reinterpret_cast<const uint8_t*>(small.data()),
                         static_cast<uint32_t>(small.size())),
            0);
  const std::string big(150000, 'x');

  EXPECT_EQ(reg.SetValue(key, "v", kRegSz, reinterpret_cast<const uint8_t*>(big.data()),
                         static_cast<uint32_t>(big.size())),
            regerr::kCantWrite);

  uint32_t type = 0;
  uint32_t size = 0;
  ASSERT_EQ(reg.QueryValue(key, "v", &type, nullptr, &size), 0);
  EXPECT_EQ(size, small.size() + 1);
  reg.CloseKey(key);
}

// The library's store, limited, for KvoRegistry.
class LimitedRegistryPlatform : public ForwardingPlatform {
 public:
  explicit LimitedRegistryPlatform(const std::string& path) : store(path) {
    store.SetValueLimitForTesting(100000);
  }
  RegistryBackend& Registry() override { return store; }
  SqliteRegistry store;
};

TEST(SqliteRegistryTest, LoadingAValueLongerThanTheStoreTakesFailsWithAMessage) {
  testing::TempDir dir;
  LimitedRegistryPlatform platform(dir.File("registry.db"));
  ScopedPlatform installed(platform);
  KvoRegistry registry;
  const std::string key = "HKEY_CURRENT_USER\\Software\\Big";
  const std::string values = "<options><option name='a' value='1'/><option name='big' value='" +
                             std::string(150000, 'x') + "'/></options>";

  EXPECT_FALSE(registry.SetKeyValuesFromXml(key, values));

  EXPECT_EQ(registry.GetLastError(), "Failed to set specified key value.");
  std::string value;
  registry.GetStringValue(key, "a", value);
  EXPECT_EQ(value, "1");
  // The value that did not fit was not written at all.
  value = "unchanged";
  registry.GetStringValue(key, "big", value);
  EXPECT_NE(registry.GetLastError(), "");
}

}  // namespace
}  // namespace veld
