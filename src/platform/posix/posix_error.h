// Maps operating-system errors to the library's raised errors.
#ifndef VELD_PLATFORM_POSIX_POSIX_ERROR_H_
#define VELD_PLATFORM_POSIX_POSIX_ERROR_H_

#include <string>

namespace veld {

// Raises the classic file error that corresponds to `error_number` (an errno
// value) for an operation on `path`: 53 "File not found", 76 "Path not found",
// 70 "Permission denied", 75 "Path/File access error", 61 "Disk full", ...
[[noreturn]] void RaisePosixError(int error_number, const std::string& path);

// The classic error number for an errno value.
int PosixErrorNumber(int error_number);

}  // namespace veld

#endif  // VELD_PLATFORM_POSIX_POSIX_ERROR_H_
