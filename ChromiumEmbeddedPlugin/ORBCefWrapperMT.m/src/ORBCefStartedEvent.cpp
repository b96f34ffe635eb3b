#include "ORBCefStartedEvent.h"

ORBCefStartedEvent& ORBCefStartedEvent::Instance() {
  // Never destroyed: the engine's threads may still come here while the process ends.
  static ORBCefStartedEvent* const event = new ORBCefStartedEvent();
  return *event;
}

void ORBCefStartedEvent::Set() {
  const std::lock_guard<std::mutex> guard(_lock);
  _is_set = true;
  _changed.Notify();
}

bool ORBCefStartedEvent::WaitFor(std::chrono::milliseconds limit) {
  std::unique_lock<std::mutex> guard(_lock);
  return _changed.WaitUntil(guard, std::chrono::steady_clock::now() + limit,
                            [this] { return _is_set; });
}
