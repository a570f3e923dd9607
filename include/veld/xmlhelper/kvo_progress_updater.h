// KvoProgressUpdater: a small event source through which a long-running caller
// reports progress to whoever listens.
//
// The caller calls ProgressChangeNotify; every connected listener receives the
// event ProgressChanged with the same three values, synchronously, in the
// order the listeners were connected. Then the host's message loop gets one
// pass (Platform::DoEvents, which does nothing on a platform without one), so
// that a user interface can repaint and react between steps of the work.
//
// Listeners connect with Connect and stay connected while the returned
// Connection lives. They may connect and disconnect at any time, also from
// inside a handler: a listener disconnected during a notification receives
// nothing more, not even the rest of that notification; a listener connected
// during a notification receives the following ones, not that one.
//
// A handler that throws ends the notification: the exception reaches the
// caller of ProgressChangeNotify, the listeners after it do not receive that
// notification and the message-loop pass is skipped. Nothing else changes:
// every listener stays connected and the next notification goes to all of them
// (a listener may use this to cancel the caller's work).
//
// The class holds no data and keeps no error record. Like every object of the
// library it belongs to the thread that uses it.
#ifndef VELD_XMLHELPER_KVO_PROGRESS_UPDATER_H_
#define VELD_XMLHELPER_KVO_PROGRESS_UPDATER_H_

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "veld/export.h"
#include "veld/xmlhelper/connection.h"

namespace veld {

namespace event_internal {
class ProgressListeners;
}  // namespace event_internal

class VELD_EXPORT KvoProgressUpdater {
 public:
  // The handler of the event ProgressChanged.
  using ProgressChanged =
      std::function<void(int32_t nTotal, int32_t nCurrent, const std::string& sStatus)>;

  KvoProgressUpdater();
  // Listeners still connected are disconnected; their Connections stay safe
  // to use and destroy.
  ~KvoProgressUpdater();
  KvoProgressUpdater(const KvoProgressUpdater&) = delete;
  KvoProgressUpdater& operator=(const KvoProgressUpdater&) = delete;

  // Connects `handler` as a listener of ProgressChanged, after the listeners
  // already connected. Raises AutomationError 5 "Invalid procedure call or
  // argument" for an empty handler.
  [[nodiscard]] Connection Connect(ProgressChanged handler);

  // Raises ProgressChanged(nTotal, nCurrent, sStatus) to every connected
  // listener, then lets the host's message loop run once. The values are
  // passed on unchecked. Whatever a handler throws reaches the caller (see
  // above).
  void ProgressChangeNotify(int32_t nTotal, int32_t nCurrent, const std::string& sStatus = "");

 private:
  std::shared_ptr<event_internal::ProgressListeners> listeners_;
};

}  // namespace veld

#endif  // VELD_XMLHELPER_KVO_PROGRESS_UPDATER_H_
