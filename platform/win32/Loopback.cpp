#include "platform/Loopback.h"

// Before windows.h, which would bring the sockets' first version.
#include <winsock2.h>

#include <algorithm>
#include <limits>

namespace platform {

namespace {

constexpr WORD kWinsockVersion = MAKEWORD(2, 2);

sockaddr_in LoopbackAddress(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  return address;
}

// The largest part of a buffer that one call can tell the size of.
int PartSize(std::size_t size) {
  constexpr std::size_t kMost = std::numeric_limits<int>::max();
  return static_cast<int>(std::min(size, kMost));
}

class SystemLoopback : public Loopback {
 public:
  int Start() override {
    WSADATA data;
    return WSAStartup(kWinsockVersion, &data);
  }
  void Stop() override { WSACleanup(); }
  int LastError() override { return WSAGetLastError(); }

  Socket Open() override { return NotInherited(socket(AF_INET, SOCK_STREAM, IPPROTO_TCP)); }

  bool Bind(Socket socket) override {
    const sockaddr_in address = LoopbackAddress(0);
    return bind(Native(socket), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0;
  }

  int BoundPort(Socket socket) override {
    sockaddr_in address{};
    int length = sizeof(address);
    if (getsockname(Native(socket), reinterpret_cast<sockaddr*>(&address), &length) != 0)
      return -1;
    return ntohs(address.sin_port);
  }

  bool Listen(Socket socket) override { return listen(Native(socket), SOMAXCONN) == 0; }

  Socket Accept(Socket socket) override {
    return NotInherited(accept(Native(socket), nullptr, nullptr));
  }

  bool Connect(Socket socket, int port) override {
    const sockaddr_in address = LoopbackAddress(port);
    return connect(Native(socket), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) ==
           0;
  }

  int Receive(Socket socket, char* buffer, std::size_t size) override {
    return recv(Native(socket), buffer, PartSize(size), 0);
  }

  int Send(Socket socket, const char* data, std::size_t size) override {
    return send(Native(socket), data, PartSize(size), 0);
  }

  bool ShutdownBoth(Socket socket) override { return shutdown(Native(socket), SD_BOTH) == 0; }

  bool Close(Socket socket) override { return closesocket(Native(socket)) == 0; }

 private:
  static SOCKET Native(Socket socket) { return static_cast<SOCKET>(socket); }

  // INVALID_SOCKET becomes kNoSocket. The error of the call that made the socket stays the last.
  static Socket NotInherited(SOCKET socket) {
    if (socket != INVALID_SOCKET)
      SetHandleInformation(reinterpret_cast<HANDLE>(socket), HANDLE_FLAG_INHERIT, 0);
    return static_cast<Socket>(socket);
  }
};

}  // namespace

Loopback& Loopback::System() {
  static SystemLoopback loopback;
  return loopback;
}

}  // namespace platform
