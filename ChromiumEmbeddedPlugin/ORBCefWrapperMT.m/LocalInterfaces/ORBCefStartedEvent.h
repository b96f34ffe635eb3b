// Says once in a process that the engine has come up: only now may it be stopped. Set on the
// engine's UI thread, awaited on the host's main thread.
#ifndef ORBCEF_STARTED_EVENT_H
#define ORBCEF_STARTED_EVENT_H

#include <chrono>
#include <mutex>

#include "platform/HostWait.h"

class ORBCefStartedEvent {
 public:
  static ORBCefStartedEvent& Instance();

  void Set();
  // False if the event did not come within `limit`.
  bool WaitFor(std::chrono::milliseconds limit);

 private:
  std::mutex _lock;
  platform::HostCondition _changed;
  // Guarded by _lock.
  bool _is_set = false;
};

#endif  // ORBCEF_STARTED_EVENT_H
