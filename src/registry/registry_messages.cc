#include "registry/registry_messages.h"

namespace veld {

std::string RegistryErrorText(int32_t code) {
  switch (code) {
    case 0:
      return "";
    case 2:
      return "Invalid parameter.";
    case 5:
      return "Access denied.";
    case 14:
      return "Out of memory.";
    case 87:
      return "Invalid parameter.";
    case 234:
      return "Buffer size too small to hold value.";
    case 259:
      return "The buffer is too small to hold all data.";
    case 1009:
      return "The registry database was corrupted.";
    case 1010:
      return "Bad registry key name.";
    case 1011:
      return "Specified key name can't be open.";
    case 1012:
      return "Failed to read specified key value.";
    case 1013:
      return "Failed to set specified key value.";
    case 1015:
      return "The registry database was corrupted.";
    case 1016:
      return "Registry database I/O error.";
    case 1018:
      return "Specified key has been deleted.";
    case 1019:
      return "Failed to allocate space for registry log.";
    default:
      return "Unexpected error occurs(Err#: " + std::to_string(code) + ").";
  }
}

}  // namespace veld
