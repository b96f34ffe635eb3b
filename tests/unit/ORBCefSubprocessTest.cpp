#include "ORBCefSubprocess.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CommandLineDouble.h"
#include "FakeTools.h"
#include "FreshProcess.h"
#include "LoopbackDouble.h"
#include "ORBCefTestStubUtils.h"
#include "platform/Process.h"

namespace {

using testing::HasSubstr;
using testing::Not;

// What the engine was asked to run.
CefRefPtr<CefApp> g_app;
int g_answer = 0;
std::vector<std::string> g_arguments;

int Execute(const CefMainArgs& args, CefRefPtr<CefApp> app) {
  g_app = app;
#if !defined(OS_WIN)
  g_arguments.assign(args.argv, args.argv + args.argc);
  EXPECT_FALSE(args.argv[args.argc]);
#endif
  return g_answer;
}

using Switches = std::vector<std::pair<std::string, std::string>>;

CefRefPtr<CefCommandLine> Line(const Switches& switches) {
  return new CommandLineDouble(switches);
}

class ORBCefSubprocessTest : public testing::Test {
 protected:
  ~ORBCefSubprocessTest() override { g_app = nullptr; }

  int Run(const Switches& switches) {
    line = new CommandLineDouble(switches);
    return ORBCefSubprocess::Execute(line, &Execute);
  }

  FakeTools tools;
  CefRefPtr<CommandLineDouble> line;
};

TEST_F(ORBCefSubprocessTest, TheEnginesAnswerIsTheExitCode) {
  for (const int answer : {0, 7, -1}) {
    g_answer = answer;
    EXPECT_EQ(answer, Run({{"type", "renderer"}}));
  }
}

TEST_F(ORBCefSubprocessTest, ARendererHasTheRenderHandler) {
  Run({{"type", "renderer"}});
  EXPECT_TRUE(g_app->GetRenderProcessHandler());
  EXPECT_FALSE(g_app->GetBrowserProcessHandler());
}

TEST_F(ORBCefSubprocessTest, AnyOtherProcessHasAnApplicationWithoutHandlers) {
  for (const char* type : {"gpu", "utility", "crashpad-handler"}) {
    Run({{"type", type}});
    EXPECT_FALSE(g_app->GetRenderProcessHandler()) << type;
    EXPECT_FALSE(g_app->GetBrowserProcessHandler()) << type;
  }
  Run({});
  EXPECT_FALSE(g_app->GetRenderProcessHandler());
}

#if !defined(OS_WIN)
TEST_F(ORBCefSubprocessTest, TheEngineGetsTheArgumentsOfTheProcess) {
  Run({{"type", "renderer"}});
  EXPECT_EQ(platform::CommandLine(), g_arguments);
  EXPECT_FALSE(g_arguments.empty());
}
#endif

TEST_F(ORBCefSubprocessTest, TheCommandLineIsThatOfTheProcess) {
  // The fresh process is started with a switch of the test framework's.
  fresh_process::Run([] {
    FakeTools fresh_tools;
    const CefRefPtr<CefCommandLine> startup = ORBCefSubprocess::StartupCommandLine();
    ASSERT_TRUE(startup);
    EXPECT_TRUE(startup->HasSwitch("gtest_internal_run_death_test"));
    EXPECT_FALSE(startup->HasSwitch("type"));
    // Read once and kept.
    EXPECT_EQ(startup.get(), ORBCefSubprocess::StartupCommandLine().get());
  });
}

TEST_F(ORBCefSubprocessTest, WithoutAnEngineTheAnswerIsAFailure) {
  g_answer = 0;
  EXPECT_EQ(1, ORBCefSubprocess::Execute(nullptr, &Execute));
  g_answer = -1;
  EXPECT_EQ(-1, ORBCefSubprocess::Execute(nullptr, &Execute));
}

TEST_F(ORBCefSubprocessTest, OutsideAnInstrumentedRunTheStubPortIsNotAskedFor) {
  Run({{"mc-stub-port", "1"}});
  EXPECT_THAT(line->asked, Not(testing::Contains("mc-stub-port")));
}

TEST_F(ORBCefSubprocessTest, AnInstrumentedChildReportsToItsPort) {
  tools.Set("ReplayPurify", "");
  LoopbackDouble sockets;
  std::atomic<int> reports{0};
  const int port = ORBCefTestStubUtils::OpenStubPort(
      "subprocess:created", [&] { ++reports; }, sockets);
  ASSERT_TRUE(sockets.WaitFor("Listen"));
  Run({{"type", "gpu"}, {"mc-stub-port", std::to_string(port)}});
  ASSERT_TRUE(sockets.WaitFor("Stop"));
  EXPECT_EQ(1, reports);
}

TEST(ORBCefSubprocessStubTest, AnInstrumentedChildWithoutAPortReportsNothing) {
  fresh_process::Run(
      [] {
        FakeTools tools;
        tools.Set("ReplayPurify", "");
        ORBCefSubprocess::Execute(Line({{"type", "gpu"}}), &Execute);
        ORBCefSubprocess::Execute(Line({{"mc-stub-port", ""}}), &Execute);
      },
      Not(HasSubstr("failed")));
}

TEST(ORBCefSubprocessStubTest, AnUnreachablePortIsLoggedAndTheProcessRunsAllTheSame) {
  fresh_process::Run(
      [] {
        FakeTools tools;
        tools.Set("ReplayPurify", "");
        g_answer = 3;
        EXPECT_EQ(3, ORBCefSubprocess::Execute(Line({{"mc-stub-port", "none"}}), &Execute));
      },
      HasSubstr("[Renderer Process] connect failed: "));
}

}  // namespace
