// The conformance suite of the registry backends: every behaviour of the real
// registry that the library can observe, checked through RegistryBackend
// alone. It depends only on GoogleTest and the backend header, so that it
// also builds with mingw-w64 and runs against the Windows registry (or Wine's).
//
// The program that runs it defines these three functions for its backend.
#ifndef VELD_TESTS_REGISTRY_REGISTRY_CONFORMANCE_H_
#define VELD_TESTS_REGISTRY_REGISTRY_CONFORMANCE_H_

#include "veld/registry/registry_backend.h"

namespace veld::conformance {

// Called before each test; returns the backend that test uses.
RegistryBackend& StartBackend();
// Called after each test.
void StopBackend();
// True when the backend is Wine's registry, whose behaviour differs from
// Windows in a few documented places; those checks are skipped there.
bool RunningOnWine();

}  // namespace veld::conformance

#endif  // VELD_TESTS_REGISTRY_REGISTRY_CONFORMANCE_H_
