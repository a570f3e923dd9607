#include "veld/xmlhelper/connection.h"

namespace veld {

namespace event_internal {
ListenerSlot::~ListenerSlot() = default;
}  // namespace event_internal

Connection& Connection::operator=(Connection&& other) noexcept {
  if (this != &other) {
    Disconnect();
    slot_ = std::move(other.slot_);
  }
  return *this;
}

Connection::~Connection() { Disconnect(); }

void Connection::Disconnect() noexcept {
  if (std::shared_ptr<event_internal::ListenerSlot> slot = slot_.lock()) slot->Disconnect();
  slot_.reset();
}

bool Connection::Connected() const noexcept {
  std::shared_ptr<event_internal::ListenerSlot> slot = slot_.lock();
  return slot != nullptr && slot->Connected();
}

}  // namespace veld
