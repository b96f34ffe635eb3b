#include "platform/HostWait.h"

#include <windows.h>

#include <algorithm>

namespace platform {

namespace {

using std::chrono::milliseconds;

// A lock tells nobody when it is left.
constexpr DWORD kLockInterval = 5;
constexpr milliseconds kLongestWait{60'000};

// Waits for the event, if there is one, and for messages that another thread sends. Looking for a
// message is what serves those; it takes none of the posted ones.
void WaitAndServe(HANDLE event, DWORD limit) {
  const DWORD count = event ? 1 : 0;
  if (MsgWaitForMultipleObjectsEx(count, &event, limit, QS_SENDMESSAGE, 0) ==
      WAIT_OBJECT_0 + count) {
    MSG message;
    PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
  }
}

}  // namespace

struct HostCondition::State {
  State() : event(CreateEventW(nullptr, FALSE, FALSE, nullptr)) {}
  ~State() { CloseHandle(event); }
  State(const State&) = delete;
  State& operator=(const State&) = delete;

  // Stays set until the waiting thread has seen it, so that no notice is lost.
  const HANDLE event;
};

HostCondition::HostCondition() : _state(std::make_unique<State>()) {}

HostCondition::~HostCondition() = default;

void HostCondition::Notify() {
  SetEvent(_state->event);
}

bool HostCondition::WaitUntil(std::unique_lock<std::mutex>& lock, Clock::time_point deadline,
                              const std::function<bool()>& done) {
  while (!done()) {
    const auto left = std::chrono::ceil<milliseconds>(deadline - Clock::now());
    if (left <= milliseconds(0))
      return false;
    lock.unlock();
    WaitAndServe(_state->event, static_cast<DWORD>(std::min(left, kLongestWait).count()));
    lock.lock();
  }
  return true;
}

void EnterServing(Lock& lock) {
  while (!lock.TryEnter()) WaitAndServe(nullptr, kLockInterval);
}

}  // namespace platform
