#define NOMINMAX
#define WIN32_LEAN_AND_MEAN
// shellapi.h needs the types of windows.h.
// clang-format off
#include <windows.h>
#include <shellapi.h>
// clang-format on
#include <cstdio>

#include <fcntl.h>
#include <io.h>

#include "terminal.h"

namespace veld::cli {

bool StderrIsTerminal() { return _isatty(_fileno(stderr)) != 0; }

std::vector<std::string> CommandWords(int /*argc*/, char** /*argv*/) {
  int count = 0;
  LPWSTR* wide = ::CommandLineToArgvW(::GetCommandLineW(), &count);
  std::vector<std::string> words;
  for (int i = 1; wide != nullptr && i < count; ++i) {
    const int length = ::WideCharToMultiByte(CP_UTF8, 0, wide[i], -1, nullptr, 0, nullptr, nullptr);
    std::string word(static_cast<size_t>(length > 0 ? length - 1 : 0), '\0');
    if (length > 1) {
      ::WideCharToMultiByte(CP_UTF8, 0, wide[i], -1, word.data(), length, nullptr, nullptr);
    }
    words.push_back(std::move(word));
  }
  ::LocalFree(wide);
  return words;
}

void UseBinaryStandardStreams() {
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
}

}  // namespace veld::cli
