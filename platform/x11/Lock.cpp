#include "platform/Lock.h"

#include <mutex>
#include <thread>

namespace platform {

struct Lock::State {
  explicit State(std::uint32_t count)
      // Spinning on a single processor only keeps the owner from going on.
      : spin_count(std::thread::hardware_concurrency() > 1 ? count : 0) {}

  std::recursive_mutex mutex;
  const std::uint32_t spin_count;
};

Lock::Lock(std::uint32_t spin_count) : _state(std::make_unique<State>(spin_count)) {}

Lock::~Lock() = default;

void Lock::Enter() {
  for (std::uint32_t i = 0; i < _state->spin_count; ++i) {
    if (_state->mutex.try_lock())
      return;
  }
  _state->mutex.lock();
}

bool Lock::TryEnter() {
  return _state->mutex.try_lock();
}

void Lock::Leave() {
  _state->mutex.unlock();
}

}  // namespace platform
