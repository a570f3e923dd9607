// The Windows platform: files and GUIDs through the Win32 API, the user32
// message box, one PeekMessage pass, the system's ANSI code page and the
// screen's logical resolution.
#define NOMINMAX
#define WIN32_LEAN_AND_MEAN
#include <algorithm>
#include <string>
#include <string_view>

#include <objbase.h>
#include <windows.h>

#include "registry/windows/windows_registry.h"
#include "runtime/windows/wide_text.h"
#include "veld/platform/platform.h"
#include "veld/runtime/automation_error.h"

namespace veld {

namespace {

// The classic file error for a Win32 error code.
int32_t WindowsErrorNumber(DWORD code) {
  switch (code) {
    case ERROR_FILE_NOT_FOUND:
      return errnum::kFileNotFound;
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
      return errnum::kPathNotFound;
    case ERROR_ACCESS_DENIED:
    case ERROR_WRITE_PROTECT:
      return errnum::kPermissionDenied;
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
      return errnum::kFileAlreadyOpen;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
      return errnum::kFileAlreadyExists;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
      return 61;  // Disk full
    case ERROR_TOO_MANY_OPEN_FILES:
      return 67;  // Too many files
    default:
      return errnum::kPathFileAccessError;
  }
}

[[noreturn]] void RaiseWindowsError(DWORD code) { RaiseError(WindowsErrorNumber(code)); }

class WindowsPlatform final : public Platform {
 public:
  bool FileExists(const std::string& path) override {
    if (path.empty()) return false;
    DWORD attributes = ::GetFileAttributesW(Widen(path).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) return false;
    const DWORD excluded = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
    return (attributes & excluded) == 0;
  }

  void FileCopy(const std::string& from, const std::string& to) override {
    if (!::CopyFileW(Widen(from).c_str(), Widen(to).c_str(), FALSE)) {
      RaiseWindowsError(::GetLastError());
    }
  }

  void RemoveFile(const std::string& path) override {
    if (!::DeleteFileW(Widen(path).c_str())) RaiseWindowsError(::GetLastError());
  }

  std::string WriteFileBeside(const std::string& path, std::string_view bytes) override {
    for (int attempt = 0;; ++attempt) {
      Guid guid;
      if (CreateGuid(guid) != 0) RaiseError(errnum::kOutOfMemory);
      const std::string name = path + ".~" + std::to_string(guid.Data1) + ".tmp";
      // CREATE_NEW never opens an existing file, nor one a link names.
      HANDLE file = ::CreateFileW(Widen(name).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
      if (file == INVALID_HANDLE_VALUE) {
        const DWORD code = ::GetLastError();
        if ((code == ERROR_FILE_EXISTS || code == ERROR_ALREADY_EXISTS) && attempt < 8) continue;
        RaiseWindowsError(code);
      }
      DWORD failure = 0;
      for (size_t done = 0; failure == 0 && done < bytes.size();) {
        const DWORD chunk = static_cast<DWORD>(std::min<size_t>(bytes.size() - done, 1 << 30));
        DWORD written = 0;
        if (!::WriteFile(file, bytes.data() + done, chunk, &written, nullptr)) {
          failure = ::GetLastError();
        }
        done += written;
      }
      if (failure == 0 && !::FlushFileBuffers(file)) failure = ::GetLastError();
      if (!::CloseHandle(file) && failure == 0) failure = ::GetLastError();
      if (failure == 0) return name;
      ::DeleteFileW(Widen(name).c_str());
      RaiseWindowsError(failure);
    }
  }

  int32_t CreateGuid(Guid& guid) override {
    GUID raw;
    HRESULT result = ::CoCreateGuid(&raw);
    if (FAILED(result)) return static_cast<int32_t>(result);
    guid.Data1 = raw.Data1;
    guid.Data2 = raw.Data2;
    guid.Data3 = raw.Data3;
    for (int i = 0; i < 8; ++i) guid.Data4[i] = raw.Data4[i];
    return 0;
  }

  std::string ProductName() override { return "Veld Common Utility Library"; }

  int32_t ShowMessageBox(const std::string& text, int32_t style,
                         const std::string& title) override {
    std::wstring caption = Widen(title.empty() ? ProductName() : title);
    return ::MessageBoxW(nullptr, Widen(text).c_str(), caption.c_str(),
                         static_cast<UINT>(style) | MB_TASKMODAL);
  }

  void DoEvents() override {
    MSG message;
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      ::TranslateMessage(&message);
      ::DispatchMessageW(&message);
    }
  }

  std::string AnsiCodePage() override { return "windows-" + std::to_string(::GetACP()); }

  int32_t TwipsPerPixelX() override { return TwipsPerPixel(LOGPIXELSX); }
  int32_t TwipsPerPixelY() override { return TwipsPerPixel(LOGPIXELSY); }

  RegistryBackend& Registry() override { return WindowsRegistry(); }

 private:
  static int32_t TwipsPerPixel(int axis) {
    HDC screen = ::GetDC(nullptr);
    int dpi = screen != nullptr ? ::GetDeviceCaps(screen, axis) : 96;
    if (screen != nullptr) ::ReleaseDC(nullptr, screen);
    return dpi > 0 ? 1440 / dpi : 15;
  }
};

}  // namespace

Platform& Platform::Default() {
  static WindowsPlatform* platform = new WindowsPlatform();  // lives for the process
  return *platform;
}

}  // namespace veld
