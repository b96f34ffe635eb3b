// The module's start and stop, and what it tells the engine at both.
#include <gtest/gtest.h>

#include <thread>

#include "Control.h"
#include "Environment.h"
#include "Host.h"
#include "include/cef_version.h"
#include "platform/Process.h"

namespace {

using control::Callback;
using standin_host::Events;
using standin_host::Host;
using standin_host::InOwnProcess;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

#if CEF_VERSION_MAJOR == 104
constexpr char kVersionLine[] =
    "[info] orbcefglobal_c(1,0) Cef: 104.0.0+g79855c0+chromium-104.0.5112.81\n";
constexpr char kMajorLine[] = "CEF_VERSION_MAJOR 104\n";
constexpr char kProduct[] = "Chrome/104.0.5112.81 7XO/";
#else
constexpr char kVersionLine[] =
    "[info] orbcefglobal_c(1,0) Cef: 108.4.13+ga98cd4c+chromium-108.0.5359.125\n";
constexpr char kMajorLine[] = "CEF_VERSION_MAJOR 108\n";
constexpr char kProduct[] = "Chrome/108.0.5359.125 7XO/";
#endif

// Only where processes are forked.
#if defined(OS_WIN)
constexpr char kNoZygote[] = "";
#else
constexpr char kNoZygote[] = " --no-zygote";
#endif

std::string DpiAware() {
  return platform::IsDpiAware() ? " --dpi-aware" : "";
}

std::string OutputOf(uint32_t major, int32_t minor, const char* name, void** table = nullptr) {
  testing::internal::CaptureStdout();
  void* const found = orbcef_pluginfactory(major, minor, name);
  if (table)
    *table = found;
  return testing::internal::GetCapturedStdout();
}

TEST(StandinFactoryTest, TheLinesOfTheFirstLookUpAreExact) {
  InOwnProcess([] {
    SetEnvironment("ORBCEF_LOG", "1");
    EXPECT_EQ(OutputOf(1, 0, "orbcefglobal_c "), "");
    EXPECT_EQ(OutputOf(1, -5, "orbcefglobal_c"),
              std::string(kVersionLine) +
                  "[info] Please check if content of code\\CEF\\cef.txt actually includes :\n" +
                  kMajorLine + "PLUGIN_INSTALLED 1 0 ORBCefWrapperMT\n");
    EXPECT_EQ(OutputOf(1, 0, "orbcefglobal_c"), "");
  });
}

TEST(StandinFactoryTest, RefusalsHaveTheirLines) {
  InOwnProcess([] {
    void* table = &table;
    EXPECT_EQ(OutputOf(2, 0, "orbcefglobal_c", &table),
              "[error] acces to CEF plugin refused due to different plugin major version : 1 vs "
              "2\n");
    EXPECT_EQ(table, nullptr);
    EXPECT_EQ(OutputOf(1, 1, "orbcefglobal_c", &table),
              "[error] acces to CEF plugin refused due to higher plugin minor version : 0 vs 1\n");
    EXPECT_EQ(table, nullptr);
  });
}

TEST(StandinStartTest, TheSettingsReachTheEngine) {
  InOwnProcess([] {
    Host host;
    host.tools.release_level = 425;
    host.tools.language = "German";
    host.tools.Set("ORBCEF_DEVTOOLS_PORT", "1024");
    host.Init();
    EXPECT_EQ(control::Last("settings.user_agent_product"), std::string(kProduct) + "425");
    EXPECT_EQ(control::Last("settings.locale"), "de");
    EXPECT_EQ(control::Last("settings.remote_debugging_port"), "1024");
    EXPECT_EQ(control::Last("settings.multi_threaded_message_loop"), "1");
    EXPECT_EQ(control::Last("settings.log_severity"), "99");
    EXPECT_EQ(control::Last("settings.log_file"), "");
    EXPECT_EQ(control::Last("settings.browser_subprocess_path"), host.helper);
    EXPECT_EQ(control::Last("settings.cache_path"), host.root.Join("cache"));
  });
}

TEST(StandinStartTest, WithoutAReleaseLevelTheProductIsOnePointZero) {
  InOwnProcess([] {
    Host host;
    host.Init();
    EXPECT_EQ(control::Last("settings.user_agent_product"), std::string(kProduct) + "1.0");
  });
}

TEST(StandinStartTest, InitEngineTwiceInitialisesOnce) {
  InOwnProcess([] {
    Host host;
    host.Init();
    host.Init();
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    EXPECT_THAT(control::Texts("initialize"), ElementsAre("1"));
    view->release(view);
  });
}

TEST(StandinStartTest, ShutdownBeforeInitDoesNothing) {
  InOwnProcess([] {
    Host host;
    host.Shutdown();
    EXPECT_EQ(control::Count("shutdown"), 0);
    host.Init();
    host.Shutdown();
    host.Shutdown();
    EXPECT_THAT(control::Texts("shutdown"), ElementsAre("on the thread of the start"));
  });
}

TEST(StandinStartTest, AFailedStartIsTriedAgain) {
  InOwnProcess([] {
    Host host;
    control::Fail("initialize");
    host.Init();
    EXPECT_THAT(control::Texts("initialize"), ElementsAre("0"));
    host.Shutdown();
    EXPECT_EQ(control::Count("shutdown"), 0);
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    EXPECT_THAT(control::Texts("initialize"), ElementsAre("0", "1"));
    host.Open(view);
    host.CloseAndRelease(view);
  });
}

TEST(StandinStartTest, AViewOfAnEngineThatDoesNotStartAnswersNeutralValues) {
  InOwnProcess([] {
    Host host;
    control::Fail("initialize", -1);
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    const int32_t rect[4] = {0, 0, 10, 10};
    view->create(view, nullptr, rect, standin_host::Text("about:blank"));
    EXPECT_EQ(view->can_go_back(view), 0);
    EXPECT_EQ(view->get_window(view), nullptr);
    view->reload(view);
    view->set_zoom_level(view, 1);
    view->close(view, 1);
    view->release(view);
    EXPECT_THAT(events.Lines(), IsEmpty());
    EXPECT_EQ(events.References(), 0);
  });
}

TEST(StandinStartTest, ASecondStartIsRefusedWithALogLine) {
  InOwnProcess(
      [] {
        Host host;
        host.EnableLog();
        host.Init();
        host.Shutdown();
        host.Init();
        EXPECT_EQ(control::Count("initialize"), 1);
        EXPECT_THAT(host.Log(),
                    HasSubstr("[Browser Process] The engine was shut down and cannot be started "
                              "again in this process.\n"));
      },
      HasSubstr("[Info] CEF logging is enabled and should be written in "));
}

TEST(StandinStartTest, WithoutItsHelperTheEngineIsNotStarted) {
  InOwnProcess(
      [] {
        Host host;
        host.tools.Set("ORBInstallPath", "/nowhere");
        host.Init();
        EXPECT_EQ(control::Count("initialize"), 0);
      },
      HasSubstr("[Browser Process] The engine is not started: the helper executable is below no "
                "root of ORBInstallPath.\n"));
}

TEST(StandinStartTest, TheSchemeAndBothItsFactoriesAreRegistered) {
  InOwnProcess([] {
    Host host;
    host.Init();
    EXPECT_TRUE(control::Wait("context_initialized"));
    EXPECT_THAT(control::Texts("scheme"), ElementsAre("xortv 89"));
    EXPECT_THAT(control::Texts("scheme_factory"),
                ElementsAre("xortv://webapps", "xortv://resources"));
  });
}

TEST(StandinStartTest, ContextInitialisationOnAWrongThreadRegistersNothing) {
  InOwnProcess([] {
    Host host;
    host.Init();
    EXPECT_TRUE(control::Wait("context_initialized"));
    for (const int thread : {static_cast<int>(TID_IO), ORBCEF_STANDIN_STRANGER}) {
      Callback call("CefBrowserProcessHandler::OnContextInitialized", thread);
      EXPECT_TRUE(call.Play());
    }
    EXPECT_EQ(control::Count("scheme_factory"), 2);
  });
}

TEST(StandinStartTest, WithoutThreadChecksAWrongThreadCarriesOn) {
  InOwnProcess([] {
    Host host;
    host.tools.Set("ORBCEF_NO_TID_CHECK", "");
    host.Init();
    EXPECT_TRUE(control::Wait("context_initialized"));
    Callback call("CefBrowserProcessHandler::OnContextInitialized", ORBCEF_STANDIN_STRANGER);
    EXPECT_TRUE(call.Play());
    EXPECT_EQ(control::Count("scheme_factory"), 4);
  });
}

TEST(StandinStartTest, AnEngineThatTakesNoFactoryRunsAllTheSame) {
  InOwnProcess([] {
    Host host;
    control::Fail("register_scheme", -1);
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    host.Open(view, "xortv://webapps/m/a.html");
    EXPECT_EQ(control::Count("scheme_factory"), 0);
    host.CloseAndRelease(view);
  });
}

TEST(StandinStartTest, WithoutAnAnswerOfTheCookieStoreTheShutdownComesAllTheSame) {
  for (const char* fault : {"cookie_manager", "flush_store"}) {
    InOwnProcess([fault] {
      Host host;
      control::Fail(fault, -1);
      host.Init();
      EXPECT_TRUE(control::Wait("context_initialized"));
      host.Shutdown();
      EXPECT_EQ(control::Count("shutdown"), 1);
    });
  }
}

TEST(StandinStartTest, AStoreThatNeverAnswersDelaysTheShutdownAndIsLogged) {
  InOwnProcess([] {
    Host host;
    host.EnableLog();
    control::Fail("flush_store_answer", -1);
    host.Init();
    host.Shutdown();
    EXPECT_EQ(control::Count("shutdown"), 1);
    EXPECT_THAT(host.Log(), HasSubstr("The engine is shut down before it has come up.\n"));
  });
}

TEST(StandinStartTest, AShutdownWaitsForAnEngineThatIsStillComingUp) {
  InOwnProcess([] {
    Host host;
    control::Hold(TID_UI);
    host.Init();
    std::thread engine([] { control::Resume(TID_UI); });
    host.Shutdown();
    engine.join();
    EXPECT_EQ(control::Count("context_initialized"), 1);
  });
}

TEST(StandinStartTest, AProcessThatIsNoSubprocessIsRefused) {
  InOwnProcess([] {
    Host host;
    EXPECT_EQ(host.table->execute_subprocess(host.table, 0, nullptr), -1);
    EXPECT_EQ(control::Count("sub_process"), 0);
  });
}

TEST(StandinStartTest, WithoutACommandLineASubprocessFails) {
  InOwnProcess([] {
    Host host;
    control::Fail("command_line", -1);
    EXPECT_NE(host.table->execute_subprocess(host.table, 0, nullptr), 0);
  });
}

TEST(StandinCommandLineTest, TheBrowserProcessGetsItsSwitches) {
  InOwnProcess([] {
    Host host;
    host.tools.Set("ORBCEF_DISABLE_GPU", "");
    host.Init();
    EXPECT_EQ(control::Last("command_line"),
              "program --disable-gpu --disable-gpu-compositing "
              "--allow-universal-access-from-files --allow-file-access-from-files "
              "--disable-features=SpareRendererForSitePerProcess" +
                  std::string(kNoZygote));
    Callback null_line("CefApp::OnBeforeCommandLineProcessing");
    EXPECT_TRUE(null_line.Null(0).Play());
    EXPECT_STREQ(null_line.text, "helper");
  });
}

TEST(StandinCommandLineTest, EveryChildGetsFileAccessAndNothingIsAddedToNoLine) {
  InOwnProcess([] {
    Host host;
    host.Init();
    EXPECT_TRUE(control::Wait("child_process"));
    EXPECT_EQ(control::Last("child_process"),
              "helper --type=gpu-process --allow-universal-access-from-files "
              "--allow-file-access-from-files" +
                  DpiAware());
    Callback null_line("CefBrowserProcessHandler::OnBeforeChildProcessLaunch", TID_IO);
    EXPECT_TRUE(null_line.Text(0, "utility").Null(0).Play());
    EXPECT_STREQ(null_line.text, "helper --type=utility");
  });
}

TEST(StandinCommandLineTest, UnknownDebugTargetsStopEveryKindOfChild) {
  for (const char* value : {"all", "Renderer"}) {
    InOwnProcess([value] {
      Host host;
      host.tools.Set("ORBCEF_DEBUG_WAIT", value);
      host.Init();
      Callback call("CefBrowserProcessHandler::OnBeforeChildProcessLaunch", TID_UI);
      EXPECT_TRUE(call.Text(0, "renderer").Play());
      EXPECT_EQ(call.text,
                "helper --type=renderer --allow-universal-access-from-files "
                "--allow-file-access-from-files --renderer-startup-dialog --gpu-startup-dialog "
                "--utility-startup-dialog" +
                    DpiAware());
    });
  }
}

TEST(StandinCommandLineTest, AChildLearnsTheRecordModeOnceTheStartHasReturned) {
  InOwnProcess([] {
    Host host;
    host.tools.record_mode = ORBCEF_RECORDMODE_CAPTURE;
    host.Init();
    Callback call("CefBrowserProcessHandler::OnBeforeChildProcessLaunch", TID_UI);
    EXPECT_TRUE(call.Text(0, "renderer").Play());
    EXPECT_THAT(call.text, HasSubstr(" --xo-record"));
    EXPECT_THAT(call.text, Not(HasSubstr(" --xo-replay")));
  });
}

}  // namespace
