// UTF-8 text to and from the UTF-16 of Win32's wide calls. Ill-formed input
// becomes U+FFFD, as MultiByteToWideChar and WideCharToMultiByte make it.
#ifndef VELD_RUNTIME_WINDOWS_WIDE_TEXT_H_
#define VELD_RUNTIME_WINDOWS_WIDE_TEXT_H_

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <string>
#include <string_view>

#include <windows.h>

namespace veld {

inline std::wstring Widen(std::string_view utf8) {
  if (utf8.empty()) return std::wstring();
  const int length =
      ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), nullptr, 0);
  std::wstring wide(static_cast<size_t>(length), L'\0');
  ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), wide.data(),
                        length);
  return wide;
}

inline std::string Narrow(std::wstring_view wide) {
  if (wide.empty()) return std::string();
  const int length = ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), static_cast<int>(wide.size()),
                                           nullptr, 0, nullptr, nullptr);
  std::string utf8(static_cast<size_t>(length), '\0');
  ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), static_cast<int>(wide.size()), utf8.data(), length,
                        nullptr, nullptr);
  return utf8;
}

}  // namespace veld

#endif  // VELD_RUNTIME_WINDOWS_WIDE_TEXT_H_
