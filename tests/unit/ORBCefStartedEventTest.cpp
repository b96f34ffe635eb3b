#include "ORBCefStartedEvent.h"

#include <gtest/gtest.h>

#include <future>

namespace {

using std::chrono::milliseconds;

TEST(ORBCefStartedEventTest, AWaitEndsWithItsLimitWhenNothingCame) {
  ORBCefStartedEvent event;
  EXPECT_FALSE(event.WaitFor(milliseconds(1)));
}

TEST(ORBCefStartedEventTest, AnEventThatCameBeforeTheWaitEndsItAtOnce) {
  ORBCefStartedEvent event;
  event.Set();
  EXPECT_TRUE(event.WaitFor(milliseconds(0)));
  EXPECT_TRUE(event.WaitFor(milliseconds(0)));
}

TEST(ORBCefStartedEventTest, AWaitingThreadIsWoken) {
  ORBCefStartedEvent event;
  std::future<bool> woken =
      std::async(std::launch::async, [&event] { return event.WaitFor(milliseconds(30000)); });
  event.Set();
  EXPECT_TRUE(woken.get());
}

}  // namespace
