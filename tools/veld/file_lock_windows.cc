#include <string>

#include <windows.h>

#include "commands.h"
#include "file_lock.h"

namespace veld::cli {

namespace {

std::wstring Wide(const std::string& utf8) {
  const int size =
      MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), nullptr, 0);
  std::wstring wide(static_cast<size_t>(size), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), wide.data(), size);
  return wide;
}

}  // namespace

FileLock::FileLock(const std::string& file) {
  const std::string name = file + ".lock";
  HANDLE lock = CreateFileW(Wide(name).c_str(), GENERIC_READ | GENERIC_WRITE,
                            FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                            OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (lock == INVALID_HANDLE_VALUE) throw Failure("cannot open lock file " + name);
  OVERLAPPED whole = {};
  if (!LockFileEx(lock, LOCKFILE_EXCLUSIVE_LOCK, 0, MAXDWORD, MAXDWORD, &whole)) {
    CloseHandle(lock);
    throw Failure("cannot lock " + name);
  }
  handle_ = lock;
}

FileLock::~FileLock() {
  if (handle_ != nullptr) CloseHandle(static_cast<HANDLE>(handle_));
}

}  // namespace veld::cli
