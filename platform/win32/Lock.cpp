#include "platform/Lock.h"

#include <windows.h>

namespace platform {

// A critical section is recursive, and on a single processor the system ignores its spin count.
struct Lock::State {
  explicit State(std::uint32_t spin_count) {
    InitializeCriticalSectionAndSpinCount(&section, spin_count);
  }
  ~State() { DeleteCriticalSection(&section); }
  State(const State&) = delete;
  State& operator=(const State&) = delete;

  CRITICAL_SECTION section;
};

Lock::Lock(std::uint32_t spin_count) : _state(std::make_unique<State>(spin_count)) {}

Lock::~Lock() = default;

void Lock::Enter() {
  EnterCriticalSection(&_state->section);
}

bool Lock::TryEnter() {
  return TryEnterCriticalSection(&_state->section) != FALSE;
}

void Lock::Leave() {
  LeaveCriticalSection(&_state->section);
}

}  // namespace platform
