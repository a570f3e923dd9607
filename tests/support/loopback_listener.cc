#include "support/loopback_listener.h"

#include <cerrno>

#include <gtest/gtest.h>

#ifdef _WIN32
#include <winsock2.h>
#else
#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>
#endif

namespace veld::testing {

namespace {

#ifdef _WIN32
using Socket = SOCKET;
using AddressLength = int;
constexpr Socket kNoSocket = INVALID_SOCKET;
void CloseSocket(Socket s) { ::closesocket(s); }
void SetNonBlocking(Socket s) {
  u_long on = 1;
  ::ioctlsocket(s, FIONBIO, &on);
}
#else
using Socket = int;
using AddressLength = socklen_t;
constexpr Socket kNoSocket = -1;
void CloseSocket(Socket s) { ::close(s); }
void SetNonBlocking(Socket s) { ::fcntl(s, F_SETFL, ::fcntl(s, F_GETFL) | O_NONBLOCK); }
#endif

}  // namespace

LoopbackListener::LoopbackListener() {
#ifdef _WIN32
  WSADATA data;
  if (::WSAStartup(MAKEWORD(2, 2), &data) != 0) return;
#endif
  const Socket s = ::socket(AF_INET, SOCK_STREAM, 0);
  if (s == kNoSocket) return;
  socket_ = static_cast<std::intptr_t>(s);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = 0;
  AddressLength length = sizeof address;
  if (::bind(s, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
      ::listen(s, 8) == 0 &&
      ::getsockname(s, reinterpret_cast<sockaddr*>(&address), &length) == 0) {
    port_ = ntohs(address.sin_port);
  }
  SetNonBlocking(s);
}

LoopbackListener::~LoopbackListener() {
  if (socket_ != -1) CloseSocket(static_cast<Socket>(socket_));
#ifdef _WIN32
  ::WSACleanup();
#endif
}

std::string LoopbackListener::Url(const std::string& path) const {
  return "http://127.0.0.1:" + std::to_string(port_) + path;
}

bool LoopbackListener::WasContacted() {
  if (socket_ == -1) return false;
  const Socket client = ::accept(static_cast<Socket>(socket_), nullptr, nullptr);
  if (client == kNoSocket) {
    // Nothing waiting is the only expected reason.
#ifdef _WIN32
    EXPECT_EQ(::WSAGetLastError(), WSAEWOULDBLOCK);
#else
    EXPECT_TRUE(errno == EAGAIN || errno == EWOULDBLOCK) << errno;
#endif
    return false;
  }
  CloseSocket(client);
  return true;
}

}  // namespace veld::testing
