// The system's loopback sockets with faults at chosen steps, and with a view of what happens on a
// listener's thread.
//
// The module calls it from the test's thread and from a listener's thread. It must outlive the
// listener: wait for the step "Stop".
#ifndef ORBCEF_TESTS_LOOPBACK_DOUBLE_H
#define ORBCEF_TESTS_LOOPBACK_DOUBLE_H

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "platform/Loopback.h"

class LoopbackDouble : public platform::Loopback {
 public:
  static constexpr int kError = 4711;

  // Makes all calls of a step fail with kError; "Receive" fails only when the peer has sent all.
  void Fail(const std::string& step) { _faults.insert(step); }

  // Waits until a step was done `count` times; false after ten seconds.
  bool WaitFor(const std::string& step, int count = 1) {
    std::unique_lock<std::mutex> lock(_mutex);
    return _changed.wait_for(lock, std::chrono::seconds(10),
                             [&] { return CountUnderLock(step) >= count; });
  }
  int Count(const std::string& step) {
    std::lock_guard<std::mutex> lock(_mutex);
    return CountUnderLock(step);
  }

  int Start() override {
    return Fails("Start") ? Done("Start", kError) : Done("Start", System().Start());
  }
  void Stop() override {
    System().Stop();
    Done("Stop", 0);
  }
  int LastError() override { return kError; }
  Socket Open() override {
    return Fails("Open") ? Done("Open", kNoSocket) : Done("Open", System().Open());
  }
  bool Bind(Socket socket) override {
    return Done("Bind", !Fails("Bind") && System().Bind(socket));
  }
  int BoundPort(Socket socket) override {
    return Fails("BoundPort") ? Done("BoundPort", -1)
                              : Done("BoundPort", System().BoundPort(socket));
  }
  bool Listen(Socket socket) override {
    return Done("Listen", !Fails("Listen") && System().Listen(socket));
  }
  Socket Accept(Socket socket) override {
    return Fails("Accept") ? Done("Accept", kNoSocket) : Done("Accept", System().Accept(socket));
  }
  bool Connect(Socket socket, int port) override {
    return Done("Connect", !Fails("Connect") && System().Connect(socket, port));
  }
  int Receive(Socket socket, char* buffer, std::size_t size) override {
    const int received = System().Receive(socket, buffer, size);
    return Done("Receive", received == 0 && Fails("Receive") ? -1 : received);
  }
  int Send(Socket socket, const char* data, std::size_t size) override {
    return Fails("Send") ? Done("Send", -1) : Done("Send", System().Send(socket, data, size));
  }
  bool ShutdownBoth(Socket socket) override {
    const bool done = System().ShutdownBoth(socket);
    return Done("ShutdownBoth", !Fails("ShutdownBoth") && done);
  }
  bool Close(Socket socket) override {
    const bool done = System().Close(socket);
    return Done("Close", !Fails("Close") && done);
  }

 private:
  bool Fails(const std::string& step) const { return _faults.count(step) > 0; }

  int CountUnderLock(const std::string& step) const {
    return static_cast<int>(std::count(_steps.begin(), _steps.end(), step));
  }

  template <class Result>
  Result Done(const char* step, Result result) {
    std::lock_guard<std::mutex> lock(_mutex);
    _steps.push_back(step);
    _changed.notify_all();
    return result;
  }

  // Written only before the module gets the object.
  std::set<std::string> _faults;

  std::mutex _mutex;
  std::condition_variable _changed;
  // Guarded by _mutex.
  std::vector<std::string> _steps;
};

#endif  // ORBCEF_TESTS_LOOPBACK_DOUBLE_H
