// A server on a port of the loopback interface that gives each request the next of its answers, and
// keeps what it was asked. It ends with its object.
#ifndef ORBCEF_TESTS_STANDIN_LOOPBACK_SERVER_H
#define ORBCEF_TESTS_STANDIN_LOOPBACK_SERVER_H

#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "orbcef_standin_sockets.h"

class LoopbackServer {
 public:
  // Answers as they go over the wire, without the length.
  explicit LoopbackServer(std::vector<std::string> answers);
  ~LoopbackServer();
  LoopbackServer(const LoopbackServer&) = delete;
  LoopbackServer& operator=(const LoopbackServer&) = delete;

  std::string Url(const std::string& path) const;
  // Head and body of each request.
  std::vector<std::string> Requests() const;

  // "HTTP/1.1 200 OK" with a type and a body.
  static std::string Page(const std::string& body);

 private:
  void Serve();
  std::string Receive(standin::SocketHandle connection);

  const std::vector<std::string> _answers;
  standin::SocketHandle _socket;
  int _port = 0;
  std::thread _thread;
  mutable std::mutex _lock;
  // Guarded by _lock.
  std::vector<std::string> _requests;
};

#endif  // ORBCEF_TESTS_STANDIN_LOOPBACK_SERVER_H
