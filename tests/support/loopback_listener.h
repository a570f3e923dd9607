// A TCP socket listening on 127.0.0.1 at a port the system picks, for tests
// that prove the library does not connect anywhere.
#ifndef VELD_TESTS_SUPPORT_LOOPBACK_LISTENER_H_
#define VELD_TESTS_SUPPORT_LOOPBACK_LISTENER_H_

#include <cstdint>
#include <string>

namespace veld::testing {

class LoopbackListener {
 public:
  LoopbackListener();
  ~LoopbackListener();
  LoopbackListener(const LoopbackListener&) = delete;
  LoopbackListener& operator=(const LoopbackListener&) = delete;

  bool Ready() const { return port_ != 0; }
  int Port() const { return port_; }
  // "http://127.0.0.1:PORT" + `path`.
  std::string Url(const std::string& path) const;
  // True when a client has connected (the system completes connections to a
  // listening socket even before they are accepted).
  bool WasContacted();

 private:
  std::intptr_t socket_ = -1;
  int port_ = 0;
};

}  // namespace veld::testing

#endif  // VELD_TESTS_SUPPORT_LOOPBACK_LISTENER_H_
