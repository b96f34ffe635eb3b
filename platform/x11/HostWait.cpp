#include "platform/HostWait.h"

#include <condition_variable>

namespace platform {

// Threads send each other nothing here.
struct HostCondition::State {
  std::condition_variable changed;
};

HostCondition::HostCondition() : _state(std::make_unique<State>()) {}

HostCondition::~HostCondition() = default;

void HostCondition::Notify() {
  _state->changed.notify_all();
}

bool HostCondition::WaitUntil(std::unique_lock<std::mutex>& lock, Clock::time_point deadline,
                              const std::function<bool()>& done) {
  return _state->changed.wait_until(lock, deadline, done);
}

void EnterServing(Lock& lock) {
  lock.Enter();
}

}  // namespace platform
