#include "platform/Lock.h"

#include <future>
#include <mutex>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace {

bool TryOnAnotherThread(platform::Lock& lock) {
  return std::async(std::launch::async,
                    [&] {
                      if (!lock.TryEnter())
                        return false;
                      lock.Leave();
                      return true;
                    })
      .get();
}

TEST(PlatformLockTest, TheSameThreadEntersAgain) {
  platform::Lock lock;
  lock.Enter();
  lock.Enter();
  EXPECT_TRUE(lock.TryEnter());
  lock.Leave();
  lock.Leave();
  EXPECT_FALSE(TryOnAnotherThread(lock));
  lock.Leave();
  EXPECT_TRUE(TryOnAnotherThread(lock));
}

TEST(PlatformLockTest, ServesTheStandardGuards) {
  platform::Lock lock;
  {
    std::lock_guard<platform::Lock> guard(lock);
    EXPECT_FALSE(TryOnAnotherThread(lock));
  }
  const std::unique_lock<platform::Lock> guard(lock, std::try_to_lock);
  EXPECT_TRUE(guard.owns_lock());
}

TEST(PlatformLockTest, KeepsThreadsApartWithAndWithoutSpinning) {
  for (const std::uint32_t spin_count : {0u, platform::Lock::kDefaultSpinCount}) {
    platform::Lock lock(spin_count);
    int counter = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
      threads.emplace_back([&] {
        for (int turn = 0; turn < 5000; ++turn) {
          std::lock_guard<platform::Lock> guard(lock);
          ++counter;
        }
      });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(20000, counter);
  }
}

TEST(PlatformLockTest, AWaitingThreadEntersAfterTheLeave) {
  platform::Lock lock;
  lock.Enter();
  std::promise<void> entered;
  std::thread waiter([&] {
    std::lock_guard<platform::Lock> guard(lock);
    entered.set_value();
  });
  std::future<void> done = entered.get_future();
  EXPECT_EQ(std::future_status::timeout, done.wait_for(std::chrono::milliseconds(50)));
  lock.Leave();
  EXPECT_EQ(std::future_status::ready, done.wait_for(std::chrono::seconds(10)));
  waiter.join();
}

}  // namespace
