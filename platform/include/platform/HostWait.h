// Waiting on a host's thread. Where the system sends messages from thread to thread, and a sender
// waits for its answer, the thread goes on serving those to its windows: an engine's thread that
// makes or destroys a window in one of the host's would wait for ever otherwise. What was posted to
// the windows stays for the host.
//
// One thread waits on an object at a time, any thread may notify. Whoever declares an object owns
// it and outlives all its users.
#ifndef PLATFORM_HOST_WAIT_H
#define PLATFORM_HOST_WAIT_H

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>

#include "platform/Lock.h"

namespace platform {

class HostCondition {
 public:
  using Clock = std::chrono::steady_clock;

  HostCondition();
  ~HostCondition();
  HostCondition(const HostCondition&) = delete;
  HostCondition& operator=(const HostCondition&) = delete;

  // Lets the waiting thread ask again.
  void Notify();

  // Waits until `done`, asked under `lock`, answers true; what it answered last at `deadline`.
  bool WaitUntil(std::unique_lock<std::mutex>& lock, Clock::time_point deadline,
                 const std::function<bool()>& done);

 private:
  struct State;
  const std::unique_ptr<State> _state;
};

// Enters `lock`, however long that takes.
void EnterServing(Lock& lock);

}  // namespace platform

#endif  // PLATFORM_HOST_WAIT_H
