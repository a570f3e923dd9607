#include "veld/platform/platform.h"

#include <atomic>

#include "veld/tablestore/table_store.h"

namespace veld {

namespace {

std::atomic<Platform*> g_installed{nullptr};

}  // namespace

Platform::~Platform() = default;

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
