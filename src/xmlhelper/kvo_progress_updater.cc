#include "veld/xmlhelper/kvo_progress_updater.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "veld/platform/platform.h"
#include "veld/runtime/automation_error.h"

namespace veld {

namespace event_internal {

class ProgressListeners;

class ProgressSlot final : public ListenerSlot {
 public:
  ProgressSlot(std::weak_ptr<ProgressListeners> owner, KvoProgressUpdater::ProgressChanged handler)
      : owner_(std::move(owner)), handler_(std::move(handler)) {}

  void Disconnect() noexcept override;
  bool Connected() const noexcept override { return connected_; }

  const KvoProgressUpdater::ProgressChanged& handler() const { return handler_; }
  void MarkDisconnected() noexcept { connected_ = false; }

 private:
  std::weak_ptr<ProgressListeners> owner_;
  KvoProgressUpdater::ProgressChanged handler_;
  bool connected_ = true;
};

// The connected listeners in connection order. A notification walks a copy of
// the list and holds each slot while its handler runs, so that handlers may
// connect and disconnect (themselves included) without disturbing the walk or
// destroying a handler that is running.
class ProgressListeners {
 public:
  void Add(std::shared_ptr<ProgressSlot> slot) { slots_.push_back(std::move(slot)); }

  void Remove(const ProgressSlot* slot) noexcept {
    slots_.erase(std::remove_if(slots_.begin(), slots_.end(),
                                [slot](const std::shared_ptr<ProgressSlot>& held) {
                                  return held.get() == slot;
                                }),
                 slots_.end());
  }

  void DisconnectAll() noexcept {
    for (const std::shared_ptr<ProgressSlot>& slot : slots_) slot->MarkDisconnected();
    slots_.clear();
  }

  std::vector<std::shared_ptr<ProgressSlot>> Snapshot() const { return slots_; }

 private:
  std::vector<std::shared_ptr<ProgressSlot>> slots_;
};

void ProgressSlot::Disconnect() noexcept {
  if (!connected_) return;
  connected_ = false;
  if (std::shared_ptr<ProgressListeners> owner = owner_.lock()) owner->Remove(this);
}

}  // namespace event_internal

KvoProgressUpdater::KvoProgressUpdater()
    : listeners_(std::make_shared<event_internal::ProgressListeners>()) {}

KvoProgressUpdater::~KvoProgressUpdater() { listeners_->DisconnectAll(); }

Connection KvoProgressUpdater::Connect(ProgressChanged handler) {
  if (!handler) RaiseError(errnum::kInvalidProcedureCall);
  auto slot = std::make_shared<event_internal::ProgressSlot>(listeners_, std::move(handler));
  listeners_->Add(slot);
  return Connection(slot);
}

void KvoProgressUpdater::ProgressChangeNotify(int32_t nTotal, int32_t nCurrent,
                                              const std::string& sStatus) {
  // Only the snapshot is used once the handlers start to run, so a handler
  // may even destroy this object.
  std::vector<std::shared_ptr<event_internal::ProgressSlot>> slots = listeners_->Snapshot();
  for (const std::shared_ptr<event_internal::ProgressSlot>& slot : slots) {
    if (slot->Connected()) slot->handler()(nTotal, nCurrent, sStatus);
  }
  CurrentPlatform().DoEvents();
}

}  // namespace veld
