// Platform: everything that differs by operating system or host application.
//
// The library reaches files, GUIDs, the message box, the message loop, the
// "ANSI" code page, regional settings and screen metrics only through the process's current
// Platform. A default for the operating system is installed at start; a host
// application (to show its own message boxes and pump its own events) or a
// test (to make the file system fail on cue) installs its own with
// InstallPlatform or ScopedPlatform, usually deriving from ForwardingPlatform
// so that it overrides only what it needs.
#ifndef VELD_PLATFORM_PLATFORM_H_
#define VELD_PLATFORM_PLATFORM_H_

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "veld/export.h"

namespace veld {

class RegistryBackend;
struct RegionalSettings;
class TableStore;

// A 128-bit GUID in its classic field layout.
struct Guid {
  uint32_t Data1 = 0;
  uint16_t Data2 = 0;
  uint16_t Data3 = 0;
  uint8_t Data4[8] = {};
};

// Message box style bits used by the library.
inline constexpr int32_t kMsgBoxOkOnly = 0;
inline constexpr int32_t kMsgBoxCritical = 16;

class VELD_EXPORT Platform {
 public:
  Platform() = default;
  Platform(const Platform&) = delete;
  Platform& operator=(const Platform&) = delete;
  virtual ~Platform();

  // True when `path` names an existing ordinary file: not a directory, not a
  // hidden or system file. Never fails: a malformed path gives false.
  virtual bool FileExists(const std::string& path) = 0;
  // Copies a file, replacing `to` when it exists. Raises AutomationError with
  // the classic file error numbers (53 file not found, 70 permission denied,
  // 76 path not found, ...) on failure. (The file and message-box members
  // avoid the names CopyFile, DeleteFile and MessageBox, which <windows.h>
  // redefines as macros.)
  virtual void FileCopy(const std::string& from, const std::string& to) = 0;
  // Deletes a file. Raises as FileCopy does (53 when it does not exist).
  virtual void RemoveFile(const std::string& path) = 0;

  // The members below let a file be replaced so that its name always holds
  // either the whole old content or the whole new one. Each has a portable
  // default; the POSIX platform adds flushing to disk and refuses to follow
  // links it did not ask for. They raise as FileCopy does.

  // Writes `bytes` to a new file, created next to `path` under a fresh name,
  // flushes it to disk and returns its name. Never opens an existing file or
  // follows a link; on failure nothing of the new file is left behind.
  virtual std::string WriteFileBeside(const std::string& path, std::string_view bytes);
  // Makes `to` a second name of the file `from` (a durable copy where the file
  // system has no links). `to` must not exist.
  virtual void LinkFile(const std::string& from, const std::string& to);
  // Renames `from` to `to`, replacing `to` in one step, durably.
  virtual void RenameFile(const std::string& from, const std::string& to);
  // True when `path` names an existing file that is marked read-only.
  virtual bool IsReadOnlyFile(const std::string& path);
  // `path` with the links it names followed to the file they lead to; `path`
  // itself when it is not a link. Raises 76 for a link that leads nowhere.
  virtual std::string FinalPath(const std::string& path);

  // Makes a new GUID. Returns 0 on success and a failure code otherwise.
  virtual int32_t CreateGuid(Guid& guid) = 0;

  // The product name of the library's version information.
  virtual std::string ProductName() = 0;

  // Shows a modal message box and returns the button pressed (1 for OK).
  // `style` holds the classic button and icon bits; an empty title means the
  // host's default title.
  virtual int32_t ShowMessageBox(const std::string& text, int32_t style,
                                 const std::string& title) = 0;

  // One pass of the host's message loop (lets pending events run).
  virtual void DoEvents() = 0;

  // The name of the single-byte "ANSI" code page, as ICU knows it
  // ("windows-1252" by default on POSIX).
  virtual std::string AnsiCodePage() = 0;

  // Screen twips per pixel (15 at 96 dots per inch).
  virtual int32_t TwipsPerPixelX() = 0;
  virtual int32_t TwipsPerPixelY() = 0;

  // Whether XSL transforms may read local documents other than the style
  // sheet itself through document(). Off by default; a host that trusts its
  // style sheets turns it on by overriding this.
  virtual bool XslDocumentReadAllowed() { return false; }

  // The regional settings that display formats, dates read from text and
  // list sorting follow (veld/platform/regional_settings.h). The default is
  // the process's locale (ProcessLocaleId on POSIX, the user's locale on
  // Windows); a host or test that wants another overrides this, for example
  // with RegionalSettingsForLocale("de-DE").
  virtual std::shared_ptr<const RegionalSettings> Regional();

  // The registry KvoRegistry reads and writes (veld/registry/registry_backend.h):
  // the Windows registry on Windows, elsewhere a store in an SQLite file
  // ($VELD_REGISTRY_FILE, else $XDG_DATA_HOME/veld/registry.db, else
  // ~/.local/share/veld/registry.db). Lives at least as long as the platform.
  virtual RegistryBackend& Registry() = 0;

  // Opens the database that a connection string names, for the export of
  // data elements (veld/tablestore/table_store.h). nullptr, the default,
  // leaves it to the library's own providers (SQLite files, ODBC); a host
  // adds its own providers here, a test a store that fails on cue.
  virtual std::unique_ptr<TableStore> OpenTableStore(const std::string& connection_string);

  // The default platform of this operating system. Lives for the process.
  static Platform& Default();
};

// A platform that passes every call on to another one (by default the
// operating system's). Derive from it to override single operations.
class VELD_EXPORT ForwardingPlatform : public Platform {
 public:
  ForwardingPlatform();
  // `target` must outlive this platform.
  explicit ForwardingPlatform(Platform* target);

  bool FileExists(const std::string& path) override;
  void FileCopy(const std::string& from, const std::string& to) override;
  void RemoveFile(const std::string& path) override;
  std::string WriteFileBeside(const std::string& path, std::string_view bytes) override;
  void LinkFile(const std::string& from, const std::string& to) override;
  void RenameFile(const std::string& from, const std::string& to) override;
  bool IsReadOnlyFile(const std::string& path) override;
  std::string FinalPath(const std::string& path) override;
  int32_t CreateGuid(Guid& guid) override;
  std::string ProductName() override;
  int32_t ShowMessageBox(const std::string& text, int32_t style, const std::string& title) override;
  void DoEvents() override;
  std::string AnsiCodePage() override;
  int32_t TwipsPerPixelX() override;
  int32_t TwipsPerPixelY() override;
  bool XslDocumentReadAllowed() override;
  std::shared_ptr<const RegionalSettings> Regional() override;
  RegistryBackend& Registry() override;
  std::unique_ptr<TableStore> OpenTableStore(const std::string& connection_string) override;

  Platform& Target() const { return target_; }

 private:
  Platform& target_;
};

// The process's current platform.
VELD_EXPORT Platform& CurrentPlatform();

// Makes `platform` the process's current platform and returns the previous
// one; nullptr restores the default. The caller keeps ownership and must keep
// the platform alive while it is installed.
VELD_EXPORT Platform* InstallPlatform(Platform* platform);

// Installs a platform for the lifetime of the scope and restores the previous
// one afterwards.
class VELD_EXPORT ScopedPlatform {
 public:
  explicit ScopedPlatform(Platform& platform);
  ~ScopedPlatform();
  ScopedPlatform(const ScopedPlatform&) = delete;
  ScopedPlatform& operator=(const ScopedPlatform&) = delete;

 private:
  Platform* previous_;
};

}  // namespace veld

#endif  // VELD_PLATFORM_PLATFORM_H_
