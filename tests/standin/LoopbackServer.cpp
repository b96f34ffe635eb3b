#include "LoopbackServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <utility>

LoopbackServer::LoopbackServer(std::vector<std::string> answers) : _answers(std::move(answers)) {
  _socket = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
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
  shutdown(_socket, SHUT_RDWR);
  _thread.join();
  close(_socket);
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
    const int connection = accept(_socket, nullptr, nullptr);
    if (connection < 0)
      return;
    const std::string request = Receive(connection);
    {
      const std::lock_guard<std::mutex> guard(_lock);
      _requests.push_back(request);
    }
    send(connection, answer.data(), answer.size(), MSG_NOSIGNAL);
    close(connection);
  }
}

std::string LoopbackServer::Receive(int connection) {
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
    const ssize_t count = recv(connection, block, sizeof(block), 0);
    if (count <= 0)
      return text;
    text.append(block, static_cast<size_t>(count));
  }
}
