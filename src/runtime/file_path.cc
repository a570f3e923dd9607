#include "runtime/file_path.h"

#include <string_view>

namespace veld {

std::filesystem::path FilePath(const std::string& name) {
  return std::filesystem::path(std::u8string(name.begin(), name.end()));
}

std::string PathText(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return std::string(text.begin(), text.end());
}

std::FILE* OpenFile(const std::string& name, const char* mode) {
#ifdef _WIN32
  const std::string_view mode_text(mode);
  return ::_wfopen(FilePath(name).c_str(),
                   std::wstring(mode_text.begin(), mode_text.end()).c_str());
#else
  return std::fopen(name.c_str(), mode);
#endif
}

}  // namespace veld
