#include "LoopbackServer.h"

#include <cstdlib>
#include <utility>

LoopbackServer::LoopbackServer(std::vector<std::string> answers) : _answers(std::move(answers)) {
  _socket = standin::OpenSocket();
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof(address);
  auto* const name = reinterpret_cast<sockaddr*>(&address);
  if (bind(_socket, name, size) != 0 || listen(_socket, SOMAXCONN) != 0 ||
      getsockname(_socket, name, &size) != 0)
    std::abort();
  _port = ntohs(address.sin_port);
  _thread = std::thread([this] { Serve(); });
}

LoopbackServer::~LoopbackServer() {
  // Wakes the thread if it still waits for a request.
  shutdown(_socket, standin::kBothWays);
#if defined(_WIN32)
  // Only this ends a wait for a connection there.
  standin::CloseSocket(_socket);
  _thread.join();
#else
  _thread.join();
  standin::CloseSocket(_socket);
#endif
}

std::string LoopbackServer::Url(const std::string& path) const {
  return "http://127.0.0.1:" + std::to_string(_port) + path;
}

std::vector<std::string> LoopbackServer::Requests() const {
  const std::lock_guard<std::mutex> guard(_lock);
  return _requests;
}

std::string LoopbackServer::Page(const std::string& body) {
  return "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nX-Test: yes\r\n\r\n" + body;
}

void LoopbackServer::Serve() {
  for (const std::string& answer : _answers) {
    const standin::SocketHandle connection = accept(_socket, nullptr, nullptr);
    if (!standin::IsOpen(connection))
      return;
    const std::string request = Receive(connection);
    {
      const std::lock_guard<std::mutex> guard(_lock);
      _requests.push_back(request);
    }
    standin::SendSome(connection, answer.data(), answer.size());
    standin::CloseSocket(connection);
  }
}

std::string LoopbackServer::Receive(standin::SocketHandle connection) {
  constexpr char kLength[] = "Content-Length: ";
  std::string text;
  char block[1024];
  for (;;) {
    const size_t end = text.find("\r\n\r\n");
    const size_t length = text.find(kLength);
    const size_t body =
        length < end ? std::strtoul(text.c_str() + length + sizeof(kLength) - 1, nullptr, 10) : 0;
    if (end != std::string::npos && text.size() >= end + 4 + body)
      return text;
    const int count = standin::ReceiveSome(connection, block, sizeof(block));
    if (count <= 0)
      return text;
    text.append(block, static_cast<size_t>(count));
  }
}
