// Runs the backend conformance suite against the SQLite store, each test on a
// fresh store file.
#include <memory>

#include "registry/sqlite/sqlite_registry.h"

#include "registry_conformance.h"
#include "support/testing.h"

namespace veld::conformance {

namespace {

std::unique_ptr<testing::TempDir> g_dir;
std::unique_ptr<SqliteRegistry> g_store;

}  // namespace

RegistryBackend& StartBackend() {
  g_dir = std::make_unique<testing::TempDir>();
  g_store = std::make_unique<SqliteRegistry>(g_dir->File("registry.db"));
  return *g_store;
}

void StopBackend() {
  g_store.reset();
  g_dir.reset();
}

bool RunningOnWine() { return false; }

}  // namespace veld::conformance
