// Whole-file reads and writes for Load and Save, with file errors turned into
// the DOM's error numbers and texts in one place.
#ifndef VELD_XML_XML_FILE_H_
#define VELD_XML_XML_FILE_H_

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

namespace veld::xml_internal {

// "The system cannot find the file specified." (0x80070002).
inline constexpr int32_t kXmlFileNotFound = -2147024894;

struct FileError {
  int32_t number = 0;
  std::string reason;
};

// Reads the whole file at `path` into `bytes`. On failure returns false with
// `error` saying why (file not found, path not found, access denied, ...).
bool ReadFileBytes(const std::string& path, std::string& bytes, FileError& error);

// A file open for reading in pieces, as the parser reads a document.
// What is read from an input that is not a regular file (a pipe, a device)
// before the read fails as too large.
inline constexpr size_t kMaxStreamedInput = size_t{64} << 20;

class InputFile {
 public:
  InputFile() = default;
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;
  ~InputFile();

  // Opens `path`. On failure returns false with `error` saying why, as
  // ReadFileBytes would (a directory is "Access is denied.").
  bool Open(const std::string& path, FileError& error);
  // The size of the file when it was opened (0 for what is not a regular
  // file).
  size_t size() const { return size_; }
  bool regular() const { return regular_; }
  // Reads up to `length` bytes into `buffer`: the number read, 0 at the end,
  // -1 on a failure, which error() then describes.
  int Read(char* buffer, int length);
  bool failed() const { return read_errno_ != 0; }
  FileError error() const;

 private:
  std::FILE* file_ = nullptr;
  size_t size_ = 0;
  bool regular_ = false;
  size_t streamed_ = 0;  // bytes read so far when not regular
  int read_errno_ = 0;
};

// The error the DOM's save reports for a file operation that failed with the
// classic file error `number` (53 or 76 path not found, 70 access denied,
// 61 disk full); other numbers keep `description`.
FileError DescribeSaveError(int32_t number, const std::string& description);

// Writes `bytes` to `path`, replacing the file. Raises errnum::kXmlPathNotFound,
// errnum::kXmlAccessDenied or errnum::kXmlFailure on failure.
void WriteFileBytes(const std::string& path, std::string_view bytes);

}  // namespace veld::xml_internal

#endif  // VELD_XML_XML_FILE_H_
