// Sockets of the loopback interface by one set of names on every system.
#ifndef ORBCEF_STANDIN_SOCKETS_H
#define ORBCEF_STANDIN_SOCKETS_H

#if defined(_WIN32)
#include <winsock2.h>
#include <ws2tcpip.h>
#else
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>
#endif

#include <cstddef>

namespace standin {

#if defined(_WIN32)

using SocketHandle = SOCKET;
constexpr int kBothWays = SD_BOTH;

inline SocketHandle OpenSocket() {
  // Once a process, and never given back: sockets live to its end.
  static const bool is_up = [] {
    WSADATA data;
    return WSAStartup(MAKEWORD(2, 2), &data) == 0;
  }();
  return is_up ? socket(AF_INET, SOCK_STREAM, 0) : INVALID_SOCKET;
}

inline bool IsOpen(SocketHandle handle) {
  return handle != INVALID_SOCKET;
}

inline void CloseSocket(SocketHandle handle) {
  closesocket(handle);
}

inline int SendSome(SocketHandle handle, const char* data, size_t size) {
  return send(handle, data, static_cast<int>(size), 0);
}

#else

using SocketHandle = int;
constexpr int kBothWays = SHUT_RDWR;

inline SocketHandle OpenSocket() {
  return socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
}

inline bool IsOpen(SocketHandle handle) {
  return handle >= 0;
}

inline void CloseSocket(SocketHandle handle) {
  close(handle);
}

inline int SendSome(SocketHandle handle, const char* data, size_t size) {
  return static_cast<int>(send(handle, data, size, MSG_NOSIGNAL));
}

#endif

inline int ReceiveSome(SocketHandle handle, char* data, size_t size) {
  return static_cast<int>(recv(handle, data, static_cast<int>(size), 0));
}

}  // namespace standin

#endif  // ORBCEF_STANDIN_SOCKETS_H
