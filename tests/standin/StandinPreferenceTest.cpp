// Values that a page saves and loads, when the host serves them at its own time.
#include <gtest/gtest.h>

#include <mutex>
#include <utility>

#include "Control.h"
#include "Host.h"

namespace {

using control::Callback;
using standin_host::Events;
using standin_host::Host;
using standin_host::InOwnProcess;
using testing::ElementsAre;

// What the host was given for its main thread and has not run yet.
class MainThread {
 public:
  static uint8_t Post(void (*task)(void*), void* data) {
    const std::lock_guard<std::mutex> guard(Get()._lock);
    if (Get().is_refusing)
      return 0;
    Get()._tasks.emplace_back(task, data);
    return 1;
  }
  static uint8_t ShouldDispatch() { return 1; }
  static MainThread& Get() {
    static MainThread thread;
    return thread;
  }

  // Gives the module a table that leads here.
  static void Install(Host& host) {
    _orbceftools_c tools = FakeTools::Table();
    tools.post_task_on_main_thread = &Post;
    tools.should_dispatch_events_on_main_thread = &ShouldDispatch;
    host.table->set_tools(host.table, &tools);
  }

  size_t Run() {
    std::vector<std::pair<void (*)(void*), void*>> tasks;
    {
      const std::lock_guard<std::mutex> guard(_lock);
      tasks.swap(_tasks);
    }
    for (const auto& [task, data] : tasks) {
      task(data);
    }
    return tasks.size();
  }

  // Set while nothing is posted.
  bool is_refusing = false;

 private:
  std::mutex _lock;
  // Guarded by _lock.
  std::vector<std::pair<void (*)(void*), void*>> _tasks;
};

int32_t Load(const char* key) {
  Callback message("CefClient::OnProcessMessageReceived");
  message.Text(0, "LoadValue").Number(0, PID_RENDERER);
  EXPECT_TRUE(message.Fields({"int:7", "string:repository", key}).Play());
  return message.result;
}

void PutValue(Host& host) {
  host.tools.preferences[{"ORBCefStore_repository", "key"}] = "\"value\"";
}

TEST(StandinPreferenceTest, AValueIsServedOnTheEnginesThreadIfTheHostWantsItSo) {
  InOwnProcess([] {
    Host host;
    PutValue(host);
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    host.Open(view);
    EXPECT_EQ(Load("string:key"), 1);
    EXPECT_THAT(control::Texts("script"),
                ElementsAre("xocef._internals.resolvePromise(7, \"value\");"));
    host.CloseAndRelease(view);
  });
}

TEST(StandinPreferenceTest, AValueIsServedWhenTheHostComesToIt) {
  InOwnProcess([] {
    Host host;
    PutValue(host);
    MainThread::Install(host);
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    host.Open(view);
    EXPECT_EQ(Load("string:key"), 1);
    EXPECT_EQ(control::Count("script"), 0);
    EXPECT_EQ(MainThread::Get().Run(), 1u);
    EXPECT_EQ(control::Count("script"), 1);
    host.CloseAndRelease(view);
  });
}

TEST(StandinPreferenceTest, ATaskThatTheHostDoesNotTakeIsDropped) {
  InOwnProcess([] {
    Host host;
    MainThread::Install(host);
    MainThread::Get().is_refusing = true;
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    host.Open(view);
    EXPECT_EQ(Load("string:key"), 1);
    host.CloseAndRelease(view);
    host.Shutdown();
    EXPECT_EQ(control::Living(), 0);
  });
}

TEST(StandinPreferenceTest, WithoutAMainFrameOrEnoughArgumentsNothingIsAsked) {
  InOwnProcess([] {
    Host host;
    MainThread::Install(host);
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    host.Open(view);
    control::Fail("main_frame");
    Load("string:key");
    Callback message("CefClient::OnProcessMessageReceived");
    EXPECT_TRUE(message.Text(0, "SaveValue").Number(0, PID_RENDERER).Fields({"int:7"}).Play());
    EXPECT_EQ(MainThread::Get().Run(), 0u);
    host.CloseAndRelease(view);
  });
}

TEST(StandinPreferenceTest, AValueForAViewThatIsGoneIsNoFault) {
  InOwnProcess([] {
    Host host;
    PutValue(host);
    MainThread::Install(host);
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    host.Open(view);
    EXPECT_EQ(Load("string:key"), 1);
    host.CloseAndRelease(view);
    EXPECT_EQ(MainThread::Get().Run(), 1u);
    host.Shutdown();
    EXPECT_EQ(control::Living(), 0);
  });
}

}  // namespace
