#include "platform/HostWait.h"

#if defined(_WIN32)
#include <windows.h>
#endif

#include <atomic>
#include <thread>

#include <gtest/gtest.h>

namespace {

using platform::HostCondition;
using std::chrono::milliseconds;
using std::chrono::seconds;

class PlatformHostWaitTest : public testing::Test {
 protected:
  static HostCondition::Clock::time_point After(HostCondition::Clock::duration time) {
    return HostCondition::Clock::now() + time;
  }

  // What the waiting thread asks for.
  void Set() {
    const std::lock_guard<std::mutex> guard(mutex);
    is_set = true;
    condition.Notify();
  }
  bool WaitForSet(HostCondition::Clock::duration limit) {
    std::unique_lock<std::mutex> guard(mutex);
    return condition.WaitUntil(guard, After(limit), [this] { return is_set; });
  }

  std::mutex mutex;
  HostCondition condition;
  bool is_set = false;
};

TEST_F(PlatformHostWaitTest, WhatIsTrueAlreadyIsNotWaitedFor) {
  is_set = true;
  EXPECT_TRUE(WaitForSet(seconds(-1)));
}

TEST_F(PlatformHostWaitTest, ANoticeOfAnotherThreadEndsTheWait) {
  std::thread other([this] { Set(); });
  EXPECT_TRUE(WaitForSet(seconds(10)));
  other.join();
}

TEST_F(PlatformHostWaitTest, ANoticeWithoutAChangeDoesNot) {
  condition.Notify();
  EXPECT_FALSE(WaitForSet(milliseconds(1)));
}

TEST_F(PlatformHostWaitTest, ALockIsEnteredWhenItsOwnerLeaves) {
  platform::Lock lock;
  std::atomic<bool> left{false};
  lock.Enter();
  std::thread other([&] {
    platform::EnterServing(lock);
    EXPECT_TRUE(left);
    lock.Leave();
  });
  left = true;
  lock.Leave();
  other.join();
}

#if defined(_WIN32)

// A window of the test's thread that counts what it is sent and what is posted to it.
class PlatformHostWaitWindowTest : public PlatformHostWaitTest {
 protected:
  static constexpr UINT kMessage = WM_APP + 1;

  PlatformHostWaitWindowTest()
      : window(CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr,
                               nullptr)) {
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Procedure));
  }
  ~PlatformHostWaitWindowTest() override { DestroyWindow(window); }

  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    auto* self =
        reinterpret_cast<PlatformHostWaitWindowTest*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (message != kMessage)
      return DefWindowProcW(window, message, wparam, lparam);
    ++self->served;
    return 4711;
  }

  const HWND window;
  int served = 0;
};

TEST_F(PlatformHostWaitWindowTest, TheWaitServesWhatAnotherThreadSends) {
  std::thread engine([this] {
    EXPECT_EQ(4711, SendMessageW(window, kMessage, 0, 0));
    Set();
  });
  EXPECT_TRUE(WaitForSet(seconds(10)));
  engine.join();
  EXPECT_EQ(1, served);
}

TEST_F(PlatformHostWaitWindowTest, TheWaitLeavesWhatIsPosted) {
  PostMessageW(window, kMessage, 0, 0);
  EXPECT_FALSE(WaitForSet(milliseconds(1)));
  EXPECT_EQ(0, served);
  MSG message;
  EXPECT_TRUE(PeekMessageW(&message, window, kMessage, kMessage, PM_REMOVE));
}

TEST_F(PlatformHostWaitWindowTest, TheOwnerOfALockMaySendBeforeItLeaves) {
  platform::Lock lock;
  std::atomic<bool> owned{false};
  std::thread engine([&] {
    lock.Enter();
    owned = true;
    EXPECT_EQ(4711, SendMessageW(window, kMessage, 0, 0));
    lock.Leave();
  });
  while (!owned) {
  }
  platform::EnterServing(lock);
  lock.Leave();
  engine.join();
  EXPECT_EQ(1, served);
}

#endif

}  // namespace
