// How the host's main thread waits, and how others end its wait. One object in a process, owned by
// the `MainThread`. `Wake` may be called on any thread, all else on the main thread only.
#pragma once

#include <chrono>
#include <memory>
#include <vector>

namespace host {

class Waker {
 public:
  Waker();
  ~Waker();
  Waker(const Waker&) = delete;
  Waker& operator=(const Waker&) = delete;

  // Ends the present wait, or the next one.
  void Wake();

  // Returns at a wake, when one of the descriptors can be read or, on a system that sends messages
  // to threads, when a message has come, at the latest after `limit`.
  void Wait(const std::vector<int>& descriptors, std::chrono::milliseconds limit);

  // Makes an interrupt of the user end the waits and show in `Interrupted`.
  void CatchSignals();
  bool Interrupted() const;

 private:
  struct Native;
  const std::unique_ptr<Native> _native;
};

}  // namespace host
