// The registry backend of Windows: the ANSI calls of advapi32.
#ifndef VELD_REGISTRY_WINDOWS_WINDOWS_REGISTRY_H_
#define VELD_REGISTRY_WINDOWS_WINDOWS_REGISTRY_H_

#include "veld/registry/registry_backend.h"

namespace veld {

// The process's Windows registry. Lives for the process.
RegistryBackend& WindowsRegistry();

}  // namespace veld

#endif  // VELD_REGISTRY_WINDOWS_WINDOWS_REGISTRY_H_
