#include "ORBCefTask.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

TEST(ORBCefTaskTest, RunsItsFunctionAndHoldsWhatItNeeds) {
  const auto held = std::make_shared<int>(0);
  CefRefPtr<CefTask> task = new ORBCefFunctionTask([held] { ++*held; });
  EXPECT_EQ(held.use_count(), 2);
  task->Execute();
  EXPECT_EQ(*held, 1);
  task = nullptr;
  EXPECT_EQ(held.use_count(), 1);
}

TEST(ORBCefTaskTest, LivesWithoutAFunction) {
  const CefRefPtr<CefTask> task = new ORBCefFunctionTask(nullptr);
  task->Execute();
  EXPECT_TRUE(task->HasOneRef());
}

TEST(ORBCefTaskTest, WithoutAnEngineATaskIsDroppedAtOnce) {
  const auto held = std::make_shared<int>(0);
  EXPECT_FALSE(ORBCefPost(TID_UI, [held] { ++*held; }));
  EXPECT_FALSE(ORBCefPostDelayed(
      TID_UI, [held] { ++*held; }, 1));
  EXPECT_EQ(*held, 0);
  EXPECT_EQ(held.use_count(), 1);
}

}  // namespace
