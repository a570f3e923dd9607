// Runs the backend conformance suite against the Windows registry through the
// Windows backend. Under Wine, the checks of the few behaviours where Wine
// differs from Windows are skipped.
#define NOMINMAX
#define WIN32_LEAN_AND_MEAN
#include <gtest/gtest.h>
#include <windows.h>

#include "registry/windows/windows_registry.h"

#include "registry_conformance.h"

namespace veld::conformance {

RegistryBackend& StartBackend() { return WindowsRegistry(); }

void StopBackend() {}

bool RunningOnWine() {
  HMODULE ntdll = ::GetModuleHandleA("ntdll.dll");
  return ntdll != nullptr && ::GetProcAddress(ntdll, "wine_get_version") != nullptr;
}

}  // namespace veld::conformance

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
