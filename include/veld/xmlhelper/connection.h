// Connection: the link between an event source and one listener, handed out
// by the source's Connect (KvoProgressUpdater::Connect).
//
// A connection is move-only. The listener stays connected while the
// Connection (or the one it was moved into) exists; destroying it or calling
// Disconnect disconnects the listener. Disconnecting is safe at any time: from
// inside a handler of the same source, twice, and after the source itself is
// gone. A default-made Connection is not connected to anything.
#ifndef VELD_XMLHELPER_CONNECTION_H_
#define VELD_XMLHELPER_CONNECTION_H_

#include <memory>
#include <utility>

#include "veld/export.h"

namespace veld {

namespace event_internal {
// What an event source keeps of one listener; disconnecting marks it.
class VELD_EXPORT ListenerSlot {
 public:
  virtual ~ListenerSlot();
  // Stops the listener from receiving further events and lets the source
  // drop it. Harmless when already disconnected.
  virtual void Disconnect() noexcept = 0;
  virtual bool Connected() const noexcept = 0;
};
}  // namespace event_internal

class VELD_EXPORT Connection {
 public:
  // Not connected.
  Connection() noexcept = default;
  explicit Connection(std::weak_ptr<event_internal::ListenerSlot> slot) noexcept
      : slot_(std::move(slot)) {}
  Connection(Connection&& other) noexcept = default;
  // Disconnects the listener this connection held, then takes over `other`'s.
  Connection& operator=(Connection&& other) noexcept;
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  // Disconnects.
  ~Connection();

  // Disconnects the listener; it receives no further events, not even the
  // rest of a notification that is being delivered right now.
  void Disconnect() noexcept;
  // True while the listener is connected (false after Disconnect, and once
  // the source is gone).
  bool Connected() const noexcept;

 private:
  std::weak_ptr<event_internal::ListenerSlot> slot_;
};

}  // namespace veld

#endif  // VELD_XMLHELPER_CONNECTION_H_
