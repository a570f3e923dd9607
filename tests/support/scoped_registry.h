// A registry of the test's own for its duration.
#ifndef VELD_TESTS_SUPPORT_SCOPED_REGISTRY_H_
#define VELD_TESTS_SUPPORT_SCOPED_REGISTRY_H_

#include <string>

#include "support/testing.h"

namespace veld::testing {

// On POSIX the process's registry store becomes a file in a temporary
// directory (VELD_REGISTRY_FILE, for tools the test starts too), and the
// variable is restored afterwards. On Windows the registry is the system's:
// the keys tests write under, HKEY_CURRENT_USER\Software\VeldTest and
// \Software\VeldCli, are removed before and after.
class ScopedTestRegistry {
 public:
  ScopedTestRegistry();
  ~ScopedTestRegistry();
  ScopedTestRegistry(const ScopedTestRegistry&) = delete;
  ScopedTestRegistry& operator=(const ScopedTestRegistry&) = delete;

 private:
  TempDir dir_;
  std::string previous_;
  bool had_previous_ = false;
};

}  // namespace veld::testing

#endif  // VELD_TESTS_SUPPORT_SCOPED_REGISTRY_H_
