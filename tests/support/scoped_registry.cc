#include "support/scoped_registry.h"

#include <cstdlib>

#ifdef _WIN32
#define NOMINMAX
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#endif

namespace veld::testing {

namespace {

#ifdef _WIN32
void RemoveTestKeys() {
  for (const wchar_t* key : {L"Software\\VeldTest", L"Software\\VeldCli"}) {
    ::RegDeleteTreeW(HKEY_CURRENT_USER, key);
    ::RegDeleteKeyW(HKEY_CURRENT_USER, key);
  }
}
#endif

}  // namespace

ScopedTestRegistry::ScopedTestRegistry() {
  const char* previous = std::getenv("VELD_REGISTRY_FILE");
  if (previous != nullptr) previous_ = previous, had_previous_ = true;
  SetEnv("VELD_REGISTRY_FILE", dir_.File("registry.db"));
#ifdef _WIN32
  RemoveTestKeys();
#endif
}

ScopedTestRegistry::~ScopedTestRegistry() {
#ifdef _WIN32
  RemoveTestKeys();
#endif
  if (had_previous_) {
    SetEnv("VELD_REGISTRY_FILE", previous_);
  } else {
    UnsetEnv("VELD_REGISTRY_FILE");
  }
}

}  // namespace veld::testing
