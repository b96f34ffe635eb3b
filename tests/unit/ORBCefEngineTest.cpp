#include "ORBCefEngine.h"

#include <future>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CapturedLog.h"
#include "FakeTools.h"
#include "FreshProcess.h"

namespace {

using testing::HasSubstr;

// What the module asked of the engine, and what the engine answers.
struct EngineRecord {
  bool answer = true;
  int starts = 0;
  int stops = 0;
  CefRefPtr<CefApp> app;
  std::string locale;
  bool lock_was_free_at_stop = true;
  bool app_was_gone_at_stop = false;
  int main_args_count = -1;
};
EngineRecord g_record;

bool TryLockOnAnotherThread() {
  return std::async(std::launch::async,
                    [] {
                      if (!ORBCefEngine::Lock().TryEnter())
                        return false;
                      ORBCefEngine::Lock().Leave();
                      return true;
                    })
      .get();
}

bool Initialize(const CefMainArgs& args, const CefSettings& settings, CefRefPtr<CefApp> app) {
  ++g_record.starts;
  g_record.app = app;
  g_record.locale = CefString(&settings.locale).ToString();
#if !defined(OS_WIN)
  g_record.main_args_count = args.argc;
#endif
  return g_record.answer;
}

void Shutdown() {
  ++g_record.stops;
  g_record.lock_was_free_at_stop = TryLockOnAnotherThread();
  g_record.app_was_gone_at_stop = ORBCefEngine::App() == nullptr;
}

const ORBCefEngine::Calls kCalls{&Initialize, &Shutdown};

// The engine's state is one for a process, so each test has a process of its own.
TEST(ORBCefEngineTest, InitEngineTwiceInitialisesOnce) {
  fresh_process::Run([] {
    FakeTools tools;
    EXPECT_FALSE(ORBCefEngine::IsInitialized());
    EXPECT_FALSE(ORBCefEngine::App());
    ORBCefEngine::InitializeEngine(kCalls);
    ORBCefEngine::InitializeEngine(kCalls);
    EXPECT_EQ(1, g_record.starts);
    EXPECT_TRUE(ORBCefEngine::IsInitialized());
    EXPECT_EQ(g_record.app.get(), ORBCefEngine::App().get());
  });
}

TEST(ORBCefEngineTest, TheStartPassesSettingsAndTheBrowserApplicationWithoutArguments) {
  fresh_process::Run([] {
    FakeTools tools;
    tools.language = "Japanese";
    ORBCefEngine::InitializeEngine(kCalls);
    EXPECT_EQ("ja", g_record.locale);
    EXPECT_EQ("ja", ORBCefEngine::Language().ToString());
    EXPECT_TRUE(g_record.app->GetBrowserProcessHandler());
    EXPECT_FALSE(g_record.app->GetRenderProcessHandler());
#if !defined(OS_WIN)
    EXPECT_EQ(0, g_record.main_args_count);
#endif
  });
}

TEST(ORBCefEngineTest, OffTheMainThreadTheLanguageIsEmpty) {
  fresh_process::Run([] {
    FakeTools tools;
    tools.language = "Japanese";
    tools.on_main_thread = false;
    ORBCefEngine::InitializeEngine(kCalls);
    EXPECT_EQ("", g_record.locale);
    EXPECT_TRUE(ORBCefEngine::Language().empty());
  });
}

TEST(ORBCefEngineTest, AFailedStartIsTriedAgainWithTheSameApplication) {
  fresh_process::Run([] {
    FakeTools tools;
    g_record.answer = false;
    ORBCefEngine::InitializeEngine(kCalls);
    EXPECT_FALSE(ORBCefEngine::IsInitialized());
    const CefRefPtr<CefApp> first = g_record.app;
    EXPECT_EQ(first.get(), ORBCefEngine::App().get());

    g_record.answer = true;
    tools.language = "German";
    ORBCefEngine::InitializeEngine(kCalls);
    EXPECT_EQ(2, g_record.starts);
    EXPECT_TRUE(ORBCefEngine::IsInitialized());
    EXPECT_EQ(first.get(), g_record.app.get());
    EXPECT_EQ("de", g_record.locale);
  });
}

TEST(ORBCefEngineTest, TheRecordModeReachesTheApplicationAfterGoodAndBadStarts) {
  for (const bool answer : {true, false}) {
    fresh_process::Run([&] {
      FakeTools tools;
      tools.record_mode = ORBCEF_RECORDMODE_REPLAY;
      g_record.answer = answer;
      ORBCefEngine::InitializeEngine(kCalls);
      EXPECT_EQ(ORBCEF_RECORDMODE_REPLAY, ORBCefEngine::App()->RecordMode());
    });
  }
}

TEST(ORBCefEngineTest, ShutdownBeforeInitDoesNothing) {
  fresh_process::Run([] {
    FakeTools tools;
    ORBCefEngine::ShutdownEngine(kCalls);
    EXPECT_EQ(0, g_record.stops);
    // Nor does it keep a later start from happening.
    ORBCefEngine::InitializeEngine(kCalls);
    EXPECT_TRUE(ORBCefEngine::IsInitialized());
  });
}

TEST(ORBCefEngineTest, ShutdownAfterAFailedStartDoesNothing) {
  fresh_process::Run([] {
    FakeTools tools;
    g_record.answer = false;
    ORBCefEngine::InitializeEngine(kCalls);
    ORBCefEngine::ShutdownEngine(kCalls);
    EXPECT_EQ(0, g_record.stops);
    EXPECT_TRUE(ORBCefEngine::App());
  });
}

TEST(ORBCefEngineTest, ShutdownReleasesTheApplicationAndHoldsTheLockMeanwhile) {
  fresh_process::Run([] {
    FakeTools tools;
    ORBCefEngine::InitializeEngine(kCalls);
    EXPECT_TRUE(TryLockOnAnotherThread());
    ORBCefEngine::ShutdownEngine(kCalls);
    EXPECT_EQ(1, g_record.stops);
    EXPECT_FALSE(g_record.lock_was_free_at_stop);
    EXPECT_TRUE(g_record.app_was_gone_at_stop);
    EXPECT_TRUE(g_record.app->HasOneRef());
    EXPECT_FALSE(ORBCefEngine::IsInitialized());
    EXPECT_TRUE(TryLockOnAnotherThread());
  });
}

TEST(ORBCefEngineTest, ShutdownTwiceStopsOnce) {
  fresh_process::Run([] {
    FakeTools tools;
    ORBCefEngine::InitializeEngine(kCalls);
    ORBCefEngine::ShutdownEngine(kCalls);
    ORBCefEngine::ShutdownEngine(kCalls);
    EXPECT_EQ(1, g_record.stops);
  });
}

TEST(ORBCefEngineTest, TheLanguageOutlivesTheStop) {
  fresh_process::Run([] {
    FakeTools tools;
    tools.language = "German";
    ORBCefEngine::InitializeEngine(kCalls);
    ORBCefEngine::ShutdownEngine(kCalls);
    EXPECT_EQ("de", ORBCefEngine::Language().ToString());
  });
}

TEST(ORBCefEngineTest, AStartAfterTheStopIsRefusedWithALogLine) {
  fresh_process::Run(
      [] {
        FakeTools tools;
        ORBCefEngine::InitializeEngine(kCalls);
        ORBCefEngine::ShutdownEngine(kCalls);
        ORBCefEngine::InitializeEngine(kCalls);
        EXPECT_EQ(1, g_record.starts);
        EXPECT_FALSE(ORBCefEngine::IsInitialized());
        EXPECT_FALSE(ORBCefEngine::App());
      },
      HasSubstr("[Browser Process] The engine was shut down and cannot be started again in this "
                "process.\n"));
}

}  // namespace
