#include "platform/Loopback.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>

namespace platform {

namespace {

sockaddr_in LoopbackAddress(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  return address;
}

// Repeats a call that a signal has interrupted.
template <class Call>
auto Retry(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

class SystemLoopback : public Loopback {
 public:
  int Start() override { return 0; }
  void Stop() override {}
  int LastError() override { return errno; }

  Socket Open() override { return socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, IPPROTO_TCP); }

  bool Bind(Socket socket) override {
    const sockaddr_in address = LoopbackAddress(0);
    return bind(Fd(socket), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0;
  }

  int BoundPort(Socket socket) override {
    sockaddr_in address{};
    socklen_t length = sizeof(address);
    if (getsockname(Fd(socket), reinterpret_cast<sockaddr*>(&address), &length) != 0)
      return -1;
    return ntohs(address.sin_port);
  }

  bool Listen(Socket socket) override { return listen(Fd(socket), SOMAXCONN) == 0; }

  Socket Accept(Socket socket) override {
    return Retry([&] { return accept4(Fd(socket), nullptr, nullptr, SOCK_CLOEXEC); });
  }

  bool Connect(Socket socket, int port) override {
    const sockaddr_in address = LoopbackAddress(port);
    return Retry([&] {
             return connect(Fd(socket), reinterpret_cast<const sockaddr*>(&address),
                            sizeof(address));
           }) == 0;
  }

  int Receive(Socket socket, char* buffer, std::size_t size) override {
    return static_cast<int>(Retry([&] { return recv(Fd(socket), buffer, size, 0); }));
  }

  int Send(Socket socket, const char* data, std::size_t size) override {
    return static_cast<int>(Retry([&] { return send(Fd(socket), data, size, MSG_NOSIGNAL); }));
  }

  bool ShutdownBoth(Socket socket) override { return shutdown(Fd(socket), SHUT_RDWR) == 0; }

  bool Close(Socket socket) override { return close(Fd(socket)) == 0; }

 private:
  static int Fd(Socket socket) { return static_cast<int>(socket); }
};

}  // namespace

Loopback& Loopback::System() {
  static SystemLoopback loopback;
  return loopback;
}

}  // namespace platform
