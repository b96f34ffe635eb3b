#include "ORBCefBrowserProcessHandler.h"

#include <algorithm>
#include <chrono>
#include <future>

#if !defined(_WIN32)
#include <sys/resource.h>
#endif

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CapturedLog.h"
#include "CommandLineDouble.h"
#include "FakeTools.h"
#include "FreshProcess.h"
#include "ORBCefLog.h"
#include "ORBCefTestStubUtils.h"
#include "platform/Files.h"
#include "platform/Process.h"

namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr char kUniversal[] = "allow-universal-access-from-files";
constexpr char kFiles[] = "allow-file-access-from-files";
constexpr char kRenderer[] = "renderer-startup-dialog";
constexpr char kGpu[] = "gpu-startup-dialog";
constexpr char kUtility[] = "utility-startup-dialog";

constexpr char kDpiAware[] = "dpi-aware";

// A child is told when this process is DPI-aware, which not every system makes it.
std::vector<std::string> WithoutDpiAware(std::vector<std::string> names) {
  const auto found = std::find(names.begin(), names.end(), kDpiAware);
  EXPECT_EQ(platform::IsDpiAware(), found != names.end());
  if (found != names.end())
    names.erase(found);
  return names;
}

class ORBCefBrowserProcessHandlerTest : public testing::Test {
 protected:
  // The switches that a child gets from a new handler, but for that of the system's own setting.
  std::vector<std::string> Launch(orbceftypes_recordmode mode = ORBCEF_RECORDMODE_NONE) {
    const CefRefPtr<ORBCefBrowserProcessHandler> handler = new ORBCefBrowserProcessHandler();
    handler->SetRecordMode(mode);
    const CefRefPtr<CommandLineDouble> line = new CommandLineDouble();
    log = CapturedLog([&] { handler->OnBeforeChildProcessLaunch(line); });
    return WithoutDpiAware(line->Names());
  }

  FakeTools tools;
  std::string log;
};

TEST_F(ORBCefBrowserProcessHandlerTest, AChildGetsTheFileAccessSwitches) {
  EXPECT_THAT(Launch(), ElementsAre(kUniversal, kFiles));
}

TEST_F(ORBCefBrowserProcessHandlerTest, TheWholeCommandLineIsLogged) {
  Launch();
  EXPECT_THAT(log, HasSubstr("[Browser Process] Creating child process with command line:\n\t"
                             "program --allow-universal-access-from-files "
                             "--allow-file-access-from-files" +
                             std::string(platform::IsDpiAware() ? " --dpi-aware\n" : "\n")));
}

TEST_F(ORBCefBrowserProcessHandlerTest, ANamedChildShowsItsStartupDialog) {
  tools.Set("ORBCEF_DEBUG_WAIT", "renderer");
  EXPECT_THAT(Launch(), ElementsAre(kUniversal, kFiles, kRenderer));
  tools.Set("ORBCEF_DEBUG_WAIT", "gpu");
  EXPECT_THAT(Launch(), ElementsAre(kUniversal, kFiles, kGpu));
  tools.Set("ORBCEF_DEBUG_WAIT", "utility");
  EXPECT_THAT(Launch(), ElementsAre(kUniversal, kFiles, kUtility));
}

TEST_F(ORBCefBrowserProcessHandlerTest, AnEmptyDebugWaitShowsNoDialog) {
  tools.Set("ORBCEF_DEBUG_WAIT", "");
  EXPECT_THAT(Launch(), ElementsAre(kUniversal, kFiles));
}

TEST_F(ORBCefBrowserProcessHandlerTest, EveryUnknownDebugWaitShowsAllDialogs) {
  for (const char* value : {"all", "Renderer", "gpu ", "0"}) {
    tools.Set("ORBCEF_DEBUG_WAIT", value);
    EXPECT_THAT(Launch(), ElementsAre(kUniversal, kFiles, kRenderer, kGpu, kUtility)) << value;
  }
}

TEST_F(ORBCefBrowserProcessHandlerTest, TheRecordModeIsCarriedByASwitch) {
  EXPECT_THAT(Launch(ORBCEF_RECORDMODE_CAPTURE), ElementsAre(kUniversal, kFiles, "xo-record"));
  EXPECT_THAT(Launch(ORBCEF_RECORDMODE_REPLAY), ElementsAre(kUniversal, kFiles, "xo-replay"));
  EXPECT_THAT(Launch(static_cast<orbceftypes_recordmode>(1)), ElementsAre(kUniversal, kFiles));
}

TEST_F(ORBCefBrowserProcessHandlerTest, TheDialogsComeBeforeTheRecordMode) {
  tools.Set("ORBCEF_DEBUG_WAIT", "gpu");
  EXPECT_THAT(Launch(ORBCEF_RECORDMODE_REPLAY), ElementsAre(kUniversal, kFiles, kGpu, "xo-replay"));
}

TEST_F(ORBCefBrowserProcessHandlerTest, ANullCommandLineIsIgnored) {
  const CefRefPtr<ORBCefBrowserProcessHandler> handler = new ORBCefBrowserProcessHandler();
  EXPECT_EQ("", CapturedLog([&] { handler->OnBeforeChildProcessLaunch(nullptr); }));
}

TEST_F(ORBCefBrowserProcessHandlerTest, ThereIsNoDefaultClientAndNoMessagePump) {
  const CefRefPtr<ORBCefBrowserProcessHandler> handler = new ORBCefBrowserProcessHandler();
  EXPECT_FALSE(handler->GetDefaultClient());
  EXPECT_EQ("", CapturedLog([&] { handler->OnScheduleMessagePumpWork(10); }));
}

TEST_F(ORBCefBrowserProcessHandlerTest, TheContextIsAnnounced) {
  const CefRefPtr<ORBCefBrowserProcessHandler> handler = new ORBCefBrowserProcessHandler();
  EXPECT_THAT(CapturedLog([&] { handler->OnContextInitialized(); }),
              HasSubstr("[Browser Process] CEF context initialized.\n"));
}

TEST(ORBCefBrowserProcessHandlerThreadTest, OnAnotherThreadTheContextIsNotAnnounced) {
  fresh_process::Run(
      [] {
        FakeTools tools;
        tools.Unset("ORBCEF_NO_TID_CHECK");
        const CefRefPtr<ORBCefBrowserProcessHandler> handler = new ORBCefBrowserProcessHandler();
        handler->OnContextInitialized();
      },
      Not(HasSubstr("CEF context initialized.")));
}

// PATH with the stub directory between two others, in the system's own form.
std::string PathOf(std::initializer_list<const char*> entries) {
  std::string path;
  for (const char* entry : entries)
    path += (path.empty() ? "" : std::string(1, platform::kPathListSeparator)) + entry;
  return path;
}

TEST(ORBCefBrowserProcessHandlerStubTest, AnInstrumentedRunHidesTheStubsUntilTheChildReports) {
  fresh_process::Run([] {
    FakeTools tools;
    const std::string whole = PathOf({"/a", "/stubs", "/b"});
    tools.Set("ReplayPurify", "1");
    tools.Set("PATH_TEST", "/stubs");
    tools.Set("PATH", whole);
    const CefRefPtr<ORBCefBrowserProcessHandler> handler = new ORBCefBrowserProcessHandler();
    const CefRefPtr<CommandLineDouble> line = new CommandLineDouble();
    handler->OnBeforeChildProcessLaunch(line);
    ASSERT_THAT(WithoutDpiAware(line->Names()), ElementsAre(kUniversal, kFiles, "mc-stub-port"));
    EXPECT_EQ(PathOf({"/a", "/b"}), tools.Get("PATH"));

    std::promise<void> restored;
    tools.on_put_env = [&](const std::string&) { restored.set_value(); };
    const int port = std::stoi(line->switches.back().second);
    EXPECT_EQ(std::to_string(port), line->switches.back().second);
    // The port is told before the listener's thread listens.
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!ORBCefTestStubUtils::SendStubMessage(port, "subprocess:created")) {
      ASSERT_LT(std::chrono::steady_clock::now(), limit);
    }
    ASSERT_EQ(std::future_status::ready, restored.get_future().wait_for(std::chrono::seconds(10)));
    EXPECT_EQ(whole, tools.Get("PATH"));
  });
}

#if !defined(_WIN32)
TEST(ORBCefBrowserProcessHandlerStubTest, WithoutASocketTheChildIsLaunchedWithoutAPort) {
  fresh_process::Run(
      [] {
        FakeTools tools;
        tools.Set("ReplayPurcov", "");
        tools.Set("PATH_TEST", "/stubs");
        tools.Set("PATH", PathOf({"/a", "/stubs"}));
        const CefRefPtr<ORBCefBrowserProcessHandler> handler = new ORBCefBrowserProcessHandler();
        const CefRefPtr<CommandLineDouble> line = new CommandLineDouble();
        // The engine's library must be open before no file can be opened any more.
        ASSERT_TRUE(ORBCefLog::IsAdmitted(ORBCefLog::kInfo));
        rlimit none{};
        ASSERT_EQ(0, setrlimit(RLIMIT_NOFILE, &none));
        handler->OnBeforeChildProcessLaunch(line);
        EXPECT_THAT(line->Names(), ElementsAre(kUniversal, kFiles));
        // Nobody will report: PATH stays without the directory.
        EXPECT_EQ(PathOf({"/a"}), tools.Get("PATH"));
      },
      AllOf(HasSubstr("[Browser Process] socket failed: "),
            HasSubstr("[Browser Process] Failed to create a listening socket\n"),
            HasSubstr("[Browser Process] Creating child process with command line:\n\t")));
}
#endif

}  // namespace
