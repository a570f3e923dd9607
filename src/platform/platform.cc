#include "veld/platform/platform.h"

#include <atomic>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "runtime/file_path.h"
#include "veld/platform/regional_settings.h"
#include "veld/runtime/automation_error.h"
#include "veld/tablestore/table_store.h"

namespace veld {

namespace {

std::atomic<Platform*> g_installed{nullptr};

namespace fs = std::filesystem;

[[noreturn]] void RaiseFileError(const std::error_code& error) {
  if (error == std::errc::no_such_file_or_directory) RaiseError(errnum::kFileNotFound);
  if (error == std::errc::file_exists) RaiseError(errnum::kFileAlreadyExists);
  if (error == std::errc::no_space_on_device) RaiseError(61);  // Disk full
  RaiseError(errnum::kPermissionDenied);
}

}  // namespace

Platform::~Platform() = default;

std::shared_ptr<const RegionalSettings> Platform::Regional() {
  return RegionalSettingsForLocale(ProcessLocaleId());
}

std::string Platform::WriteFileBeside(const std::string& path, std::string_view bytes) {
  for (int attempt = 0;; ++attempt) {
    Guid guid;
    if (CreateGuid(guid) != 0) RaiseError(errnum::kOutOfMemory);
    std::string name = path + ".~" + std::to_string(guid.Data1) + ".tmp";
    std::error_code error;
    if (fs::exists(fs::symlink_status(FilePath(name), error))) {
      if (attempt < 8) continue;
      RaiseError(errnum::kFileAlreadyExists);
    }
    {
      std::ofstream out(FilePath(name), std::ios::binary | std::ios::trunc);
      if (!out) RaiseError(errnum::kPermissionDenied);
      out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
      out.flush();
      if (out) return name;
    }
    fs::remove(FilePath(name), error);
    RaiseError(61);  // Disk full: the usual reason a write stops short
  }
}

void Platform::LinkFile(const std::string& from, const std::string& to) {
  std::error_code error;
  fs::create_hard_link(FilePath(from), FilePath(to), error);
  if (!error) return;
  if (fs::exists(fs::symlink_status(FilePath(to), error))) RaiseError(errnum::kFileAlreadyExists);
  fs::copy_file(FilePath(from), FilePath(to), fs::copy_options::none, error);
  if (error) RaiseFileError(error);
}

void Platform::RenameFile(const std::string& from, const std::string& to) {
  std::error_code error;
  fs::rename(FilePath(from), FilePath(to), error);
  if (error) RaiseFileError(error);
}

bool Platform::IsReadOnlyFile(const std::string& path) {
  std::error_code error;
  fs::file_status status = fs::status(FilePath(path), error);
  if (error || !fs::is_regular_file(status)) return false;
  constexpr fs::perms kWrite =
      fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
  return (status.permissions() & kWrite) == fs::perms::none;
}

std::string Platform::FinalPath(const std::string& path) {
  std::error_code error;
  if (!fs::is_symlink(fs::symlink_status(FilePath(path), error))) return path;
  fs::path final_path = fs::canonical(FilePath(path), error);
  if (error) RaiseError(errnum::kPathNotFound);
  return PathText(final_path);
}

std::unique_ptr<TableStore> Platform::OpenTableStore(const std::string& /*connection_string*/) {
  return nullptr;
}

ForwardingPlatform::ForwardingPlatform() : target_(Platform::Default()) {}
ForwardingPlatform::ForwardingPlatform(Platform* target) : target_(*target) {}

bool ForwardingPlatform::FileExists(const std::string& path) { return target_.FileExists(path); }
void ForwardingPlatform::FileCopy(const std::string& from, const std::string& to) {
  target_.FileCopy(from, to);
}
void ForwardingPlatform::RemoveFile(const std::string& path) { target_.RemoveFile(path); }
std::string ForwardingPlatform::WriteFileBeside(const std::string& path, std::string_view bytes) {
  return target_.WriteFileBeside(path, bytes);
}
void ForwardingPlatform::LinkFile(const std::string& from, const std::string& to) {
  target_.LinkFile(from, to);
}
void ForwardingPlatform::RenameFile(const std::string& from, const std::string& to) {
  target_.RenameFile(from, to);
}
bool ForwardingPlatform::IsReadOnlyFile(const std::string& path) {
  return target_.IsReadOnlyFile(path);
}
std::string ForwardingPlatform::FinalPath(const std::string& path) {
  return target_.FinalPath(path);
}
int32_t ForwardingPlatform::CreateGuid(Guid& guid) { return target_.CreateGuid(guid); }
std::string ForwardingPlatform::ProductName() { return target_.ProductName(); }
int32_t ForwardingPlatform::ShowMessageBox(const std::string& text, int32_t style,
                                           const std::string& title) {
  return target_.ShowMessageBox(text, style, title);
}
void ForwardingPlatform::DoEvents() { target_.DoEvents(); }
std::string ForwardingPlatform::AnsiCodePage() { return target_.AnsiCodePage(); }
int32_t ForwardingPlatform::TwipsPerPixelX() { return target_.TwipsPerPixelX(); }
int32_t ForwardingPlatform::TwipsPerPixelY() { return target_.TwipsPerPixelY(); }
bool ForwardingPlatform::XslDocumentReadAllowed() { return target_.XslDocumentReadAllowed(); }
std::shared_ptr<const RegionalSettings> ForwardingPlatform::Regional() {
  return target_.Regional();
}
RegistryBackend& ForwardingPlatform::Registry() { return target_.Registry(); }
std::unique_ptr<TableStore> ForwardingPlatform::OpenTableStore(
    const std::string& connection_string) {
  return target_.OpenTableStore(connection_string);
}

Platform& CurrentPlatform() {
  Platform* installed = g_installed.load(std::memory_order_acquire);
  return installed != nullptr ? *installed : Platform::Default();
}

Platform* InstallPlatform(Platform* platform) {
  Platform* previous = g_installed.exchange(platform, std::memory_order_acq_rel);
  return previous != nullptr ? previous : &Platform::Default();
}

ScopedPlatform::ScopedPlatform(Platform& platform) : previous_(InstallPlatform(&platform)) {}

ScopedPlatform::~ScopedPlatform() {
  InstallPlatform(previous_ == &Platform::Default() ? nullptr : previous_);
}

}  // namespace veld
