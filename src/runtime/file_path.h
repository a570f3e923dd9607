// File names as the library takes them - UTF-8 text - turned into what the
// system's calls take: the bytes themselves on POSIX, UTF-16 on Windows, so
// that a name with characters outside the ANSI code page opens there too.
#ifndef VELD_RUNTIME_FILE_PATH_H_
#define VELD_RUNTIME_FILE_PATH_H_

#include <cstdio>
#include <filesystem>
#include <string>

namespace veld {

// The path named by UTF-8 `name`.
std::filesystem::path FilePath(const std::string& name);

// The UTF-8 text of `path`.
std::string PathText(const std::filesystem::path& path);

// std::fopen of the file named by UTF-8 `name`; null with errno set when it
// fails.
std::FILE* OpenFile(const std::string& name, const char* mode);

}  // namespace veld

#endif  // VELD_RUNTIME_FILE_PATH_H_
