// A child process for the multi-process tests of the SQLite store.
//
//   registry_store_helper write FILE ID COUNT
//     writes COUNT string values into Software\Shared and Software\WriterID,
//     reading each back at once; exits 1 on any failure.
//   registry_store_helper hang FILE FD
//     writes Software\Killed "before", then starts writing "inflight" and,
//     inside that write transaction, writes one byte to FD and waits to be
//     killed.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <unistd.h>

#include "registry/sqlite/sqlite_registry.h"

namespace {

using veld::RegistryHandle;

bool WriteAndCheck(veld::RegistryBackend& reg, RegistryHandle key, const std::string& name,
                   const std::string& value) {
  if (reg.SetValue(key, name.c_str(), veld::kRegSz, reinterpret_cast<const uint8_t*>(value.data()),
                   static_cast<uint32_t>(value.size())) != 0) {
    return false;
  }
  char buffer[256];
  uint32_t size = sizeof buffer;
  if (reg.QueryValue(key, name.c_str(), nullptr, reinterpret_cast<uint8_t*>(buffer), &size) != 0) {
    return false;
  }
  return std::string(buffer, size) == value + std::string(1, '\0');
}

int Write(const char* file, const std::string& id, int count) {
  veld::SqliteRegistry reg(file);
  RegistryHandle shared = 0;
  RegistryHandle own = 0;
  if (reg.CreateKey(veld::kHkeyCurrentUser, "Software\\Shared", &shared) != 0) return 1;
  if (reg.CreateKey(veld::kHkeyCurrentUser, ("Software\\Writer" + id).c_str(), &own) != 0) {
    return 1;
  }
  for (int i = 0; i < count; ++i) {
    std::string name = "w" + id + "_" + std::to_string(i);
    std::string value = "value " + id + " " + std::to_string(i);
    if (!WriteAndCheck(reg, shared, name, value) || !WriteAndCheck(reg, own, name, value)) {
      std::fprintf(stderr, "writer %s failed at %d\n", id.c_str(), i);
      return 1;
    }
  }
  return 0;
}

int Hang(const char* file, int fd) {
  veld::SqliteRegistry reg(file);
  RegistryHandle key = 0;
  if (reg.CreateKey(veld::kHkeyCurrentUser, "Software\\Killed", &key) != 0) return 1;
  if (reg.SetValue(key, "before", veld::kRegSz, reinterpret_cast<const uint8_t*>("1"), 1) != 0) {
    return 1;
  }
  reg.SetWriteHookForTesting([fd] {
    char byte = 'w';
    if (::write(fd, &byte, 1) != 1) std::_Exit(2);
    for (;;) ::pause();
  });
  reg.SetValue(key, "inflight", veld::kRegSz, reinterpret_cast<const uint8_t*>("2"), 1);
  return 3;  // not reached: the parent kills the process inside the write
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 5 && std::string(argv[1]) == "write") {
    return Write(argv[2], argv[3], std::atoi(argv[4]));
  }
  if (argc == 4 && std::string(argv[1]) == "hang") return Hang(argv[2], std::atoi(argv[3]));
  std::fprintf(stderr, "usage: registry_store_helper write FILE ID COUNT | hang FILE FD\n");
  return 64;
}
