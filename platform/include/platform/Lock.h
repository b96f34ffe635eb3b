// A recursive lock that spins for a while before its thread sleeps. It is for sections that are
// short most of the time and that callbacks may enter again on the same thread.
//
// Any thread may call it. Whoever declares the lock owns it and must outlive all its users.
#ifndef PLATFORM_LOCK_H
#define PLATFORM_LOCK_H

#include <cstdint>
#include <memory>

namespace platform {

class Lock {
 public:
  static constexpr std::uint32_t kDefaultSpinCount = 2000;

  explicit Lock(std::uint32_t spin_count = kDefaultSpinCount);
  ~Lock();

  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;

  void Enter();
  // True if the calling thread holds the lock now; never waits and never spins.
  bool TryEnter();
  // Only on the thread that entered, once for each entry.
  void Leave();

  // The names that std::lock_guard and std::unique_lock ask for.
  void lock() { Enter(); }
  bool try_lock() { return TryEnter(); }
  void unlock() { Leave(); }

 private:
  struct State;
  std::unique_ptr<State> _state;
};

}  // namespace platform

#endif  // PLATFORM_LOCK_H
