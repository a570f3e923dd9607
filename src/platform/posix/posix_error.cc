#include "platform/posix/posix_error.h"

#include <errno.h>

#include "veld/runtime/automation_error.h"

namespace veld {

int PosixErrorNumber(int error_number) {
  switch (error_number) {
    case ENOENT:
      return errnum::kFileNotFound;
    case ENOTDIR:
    case ENAMETOOLONG:
    case ELOOP:
      return errnum::kPathNotFound;
    case EACCES:
    case EPERM:
    case EROFS:
    case ETXTBSY:
    case EBUSY:
      return errnum::kPermissionDenied;
    case EEXIST:
      return errnum::kFileAlreadyExists;
    case ENOSPC:
    case EDQUOT:
      return 61;  // Disk full
    case EMFILE:
    case ENFILE:
      return 67;  // Too many files
    case EIO:
      return 57;  // Device I/O error
    default:
      return errnum::kPathFileAccessError;
  }
}

void RaisePosixError(int error_number, const std::string& path) {
  (void)path;  // the classic texts do not name the file
  RaiseError(PosixErrorNumber(error_number));
}

}  // namespace veld
