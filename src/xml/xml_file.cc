#include "xml/xml_file.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <memory>

#include <sys/stat.h>

#include "runtime/file_path.h"
#include "veld/runtime/automation_error.h"

namespace veld::xml_internal {
namespace {

struct FileClose {
  void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};
using FilePtr = std::unique_ptr<std::FILE, FileClose>;

FileError DescribeFileError(int error_number, bool reading) {
  switch (error_number) {
    case ENOENT:
      // Reading: the file is missing (its directory may be too, but the DOM
      // reports a missing file). Writing: the directory is missing.
      if (reading) return {kXmlFileNotFound, "The system cannot find the file specified."};
      return {errnum::kXmlPathNotFound, "The system cannot find the path specified."};
    case ENOTDIR:
    case ENAMETOOLONG:
    case ELOOP:
      return {errnum::kXmlPathNotFound, "The system cannot find the path specified."};
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
    case ETXTBSY:
      return {errnum::kXmlAccessDenied, "Access is denied."};
    case ENOSPC:
      return {errnum::kXmlFailure, "There is not enough space on the disk."};
    case EFBIG:
      return {errnum::kXmlFailure,
              "The input is larger than the 64 MiB read from a pipe or device."};
    default:
      return {errnum::kXmlFailure, std::strerror(error_number)};
  }
}

// What an open file is: a directory, a regular file and its size, or
// something else (a pipe, a device), which is read in chunks as it comes.
struct FileKind {
  bool directory = false;
  bool regular = false;
  size_t size = 0;
};

FileKind Examine(std::FILE* file) {
  FileKind kind;
#ifdef _WIN32
  struct _stat64 status;
  if (_fstat64(_fileno(file), &status) != 0) return kind;
  kind.directory = (status.st_mode & _S_IFMT) == _S_IFDIR;
  kind.regular = (status.st_mode & _S_IFMT) == _S_IFREG;
#else
  struct stat status;
  if (fstat(fileno(file), &status) != 0) return kind;
  kind.directory = S_ISDIR(status.st_mode);
  kind.regular = S_ISREG(status.st_mode);
#endif
  if (kind.regular && status.st_size > 0) kind.size = static_cast<size_t>(status.st_size);
  return kind;
}

}  // namespace

bool ReadFileBytes(const std::string& path, std::string& bytes, FileError& error) {
  bytes.clear();
  InputFile input;
  if (!input.Open(path, error)) return false;
  // Read straight into a buffer of the file's size; a file that grows
  // meanwhile is read on in chunks, one that shrinks is cut to what came.
  bytes.resize(input.size());
  size_t got = 0;
  while (got < bytes.size()) {
    const size_t want = std::min<size_t>(bytes.size() - got, INT_MAX);
    const int n = input.Read(bytes.data() + got, static_cast<int>(want));
    if (n <= 0) break;
    got += static_cast<size_t>(n);
  }
  const bool complete = got == bytes.size();
  bytes.resize(got);
  if (complete) {
    char chunk[64 * 1024];
    int n;
    while ((n = input.Read(chunk, sizeof chunk)) > 0) bytes.append(chunk, static_cast<size_t>(n));
  }
  if (input.failed()) {
    error = input.error();
    bytes.clear();
    return false;
  }
  return true;
}

InputFile::~InputFile() {
  if (file_ != nullptr) std::fclose(file_);
}

bool InputFile::Open(const std::string& path, FileError& error) {
  if (path.empty()) {
    error = {errnum::kXmlPathNotFound, "The system cannot find the path specified."};
    return false;
  }
  errno = 0;
  FilePtr file(OpenFile(path, "rb"));
  if (!file) {
    error = DescribeFileError(errno, true);
    return false;
  }
  const FileKind kind = Examine(file.get());
  // A directory opens but cannot be read.
  if (kind.directory) {
    error = DescribeFileError(EISDIR, true);
    return false;
  }
  regular_ = kind.regular;
  size_ = kind.size;
  file_ = file.release();
  return true;
}

int InputFile::Read(char* buffer, int length) {
  if (file_ == nullptr || length <= 0) return 0;
  const size_t got = std::fread(buffer, 1, static_cast<size_t>(length), file_);
  if (got == 0 && std::ferror(file_)) {
    read_errno_ = errno != 0 ? errno : EIO;
    return -1;
  }
  // A pipe or device may never end (/dev/zero): it is read up to a limit.
  if (!regular_ && (streamed_ += got) > kMaxStreamedInput) {
    read_errno_ = EFBIG;
    return -1;
  }
  return static_cast<int>(got);
}

FileError InputFile::error() const { return DescribeFileError(read_errno_, true); }

FileError DescribeSaveError(int32_t number, const std::string& description) {
  switch (number) {
    case errnum::kFileNotFound:
    case errnum::kPathNotFound:
      return DescribeFileError(ENOENT, false);
    case errnum::kPermissionDenied:
      return DescribeFileError(EACCES, false);
    case 61:  // Disk full
      return DescribeFileError(ENOSPC, false);
    default:
      return {errnum::kXmlFailure, description};
  }
}

void WriteFileBytes(const std::string& path, std::string_view bytes) {
  auto fail = [](int error_number) {
    FileError error = DescribeFileError(error_number, false);
    RaiseError(error.number, error.reason);
  };
  if (path.empty()) fail(ENOENT);
  errno = 0;
  FilePtr file(OpenFile(path, "wb"));
  if (!file) fail(errno);
  if (!bytes.empty() && std::fwrite(bytes.data(), 1, bytes.size(), file.get()) != bytes.size()) {
    fail(errno != 0 ? errno : EIO);
  }
  if (std::fclose(file.release()) != 0) fail(errno != 0 ? errno : EIO);
}

}  // namespace veld::xml_internal
