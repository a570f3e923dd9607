// Whole-file reads and writes for Load and Save, with file errors turned into
// the DOM's error numbers and texts in one place.
#ifndef VELD_XML_XML_FILE_H_
#define VELD_XML_XML_FILE_H_

#include <cstdint>
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

// Writes `bytes` to `path`, replacing the file. Raises errnum::kXmlPathNotFound,
// errnum::kXmlAccessDenied or errnum::kXmlFailure on failure.
void WriteFileBytes(const std::string& path, std::string_view bytes);

}  // namespace veld::xml_internal

#endif  // VELD_XML_XML_FILE_H_
