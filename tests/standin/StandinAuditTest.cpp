// The audit of the stand-in itself: a process that leaves an object alive fails and names it.
#include <gtest/gtest.h>

#include "Control.h"
#include "Host.h"
#include "include/cef_request.h"
#include "include/cef_task.h"
#include "include/cef_values.h"

namespace {

using standin_host::Host;
using standin_host::InOwnProcess;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr int kLeakStatus = 77;

// Never released; still reachable, so that only the audit speaks of them.
CefRequest* g_leaked_request = nullptr;
CefListValue* g_leaked_list = nullptr;

void LeakRequest() {
  g_leaked_request = CefRequest::Create().release();
}

TEST(StandinAuditTest, AProcessThatLeavesNothingEndsWell) {
  InOwnProcess([] { EXPECT_TRUE(CefRequest::Create()); }, Not(HasSubstr("[stand-in]")));
}

TEST(StandinAuditTest, WithoutAStartALeakedObjectIsNamedAtTheEndOfTheProcess) {
  InOwnProcess(&LeakRequest,
               HasSubstr("[stand-in] at the end of the process: 1 StandinRequest alive"),
               kLeakStatus);
}

TEST(StandinAuditTest, AfterAShutdownEachClassIsNamedWithItsCount) {
  InOwnProcess(
      [] {
        Host host;
        host.Init();
        LeakRequest();
        g_leaked_list = CefListValue::Create().release();
        host.Shutdown();
      },
      AllOf(HasSubstr("[stand-in] after the shutdown: 1 StandinList alive"),
            HasSubstr("[stand-in] after the shutdown: 1 StandinRequest alive")),
      kLeakStatus);
}

class HoldingTask : public CefTask {
 public:
  void Execute() override {}

 private:
  IMPLEMENT_REFCOUNTING(HoldingTask);
};

TEST(StandinAuditTest, WhatTheStandinHoldsOfItsClientIsCounted) {
  InOwnProcess([] {
    Host host;
    host.Init();
    control::SettleAll();
    EXPECT_EQ(control::Living("client CefTask"), 0);
    control::Hold(TID_IO);
    EXPECT_TRUE(CefPostTask(TID_IO, new HoldingTask()));
    EXPECT_EQ(control::Living("client CefTask"), 1);
    control::Resume(TID_IO);
    EXPECT_TRUE(control::Settle(TID_IO));
    EXPECT_EQ(control::Living("client CefTask"), 0);
  });
}

TEST(StandinAuditTest, ADelayedTaskThatIsNotDueGoesWithTheShutdown) {
  InOwnProcess([] {
    Host host;
    host.Init();
    const CefRefPtr<HoldingTask> task = new HoldingTask();
    EXPECT_TRUE(CefPostDelayedTask(TID_UI, task, 3'600'000));
    EXPECT_FALSE(task->HasOneRef());
    host.Shutdown();
    EXPECT_TRUE(task->HasOneRef());
  });
}

TEST(StandinAuditTest, AFailedExpectationFailsTheProcess) {
  InOwnProcess([] { EXPECT_EQ(control::Count("nothing"), 1); }, testing::_, 1);
}

}  // namespace
