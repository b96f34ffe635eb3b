#include "ORBCefApp.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CommandLineDouble.h"
#include "FakeTools.h"
#include "ORBCefBrowserProcessHandler.h"
#include "ORBCefRenderProcessHandler.h"
#include "include/cef_scheme.h"
#include "v8_doubles/RendererFixture.h"

namespace {

CefRefPtr<CefCommandLine> CommandLine(std::initializer_list<const char*> arguments) {
  std::vector<const char*> argv{"program"};
  argv.insert(argv.end(), arguments);
  CefRefPtr<CefCommandLine> line = CefCommandLine::CreateCommandLine();
#if defined(OS_WIN)
  std::string text;
  for (const char* argument : argv) text += std::string(argument) + " ";
  line->InitFromString(text);
#else
  line->InitFromArgv(static_cast<int>(argv.size()), argv.data());
#endif
  return line;
}

class RegistrarDouble : public CefSchemeRegistrar {
 public:
  bool AddCustomScheme(const CefString& scheme_name, int options) override {
    schemes.emplace_back(scheme_name.ToString(), options);
    return true;
  }
  std::vector<std::pair<std::string, int>> schemes;
};

class ORBCefAppTest : public testing::Test {
 protected:
  FakeTools tools;
};

TEST_F(ORBCefAppTest, TheProcessKindIsThatOfTheTypeSwitch) {
  EXPECT_EQ(ProcessKind::kRenderer,
            ORBCefApp::ComputeProcessKind(CommandLine({"--type=renderer"})));
  EXPECT_EQ(ProcessKind::kGpu, ORBCefApp::ComputeProcessKind(CommandLine({"--type=gpu"})));
  EXPECT_EQ(ProcessKind::kUtility, ORBCefApp::ComputeProcessKind(CommandLine({"--type=utility"})));
}

TEST_F(ORBCefAppTest, AnyOtherTypeIsKindFour) {
  EXPECT_EQ(ProcessKind::kOther,
            ORBCefApp::ComputeProcessKind(CommandLine({"--type=crashpad-handler"})));
  // What the engine itself writes for its GPU process.
  EXPECT_EQ(ProcessKind::kOther,
            ORBCefApp::ComputeProcessKind(CommandLine({"--type=gpu-process"})));
  EXPECT_EQ(ProcessKind::kOther, ORBCefApp::ComputeProcessKind(CommandLine({"--type=Renderer"})));
  EXPECT_EQ(ProcessKind::kOther, ORBCefApp::ComputeProcessKind(CommandLine({"--type"})));
  EXPECT_EQ(ProcessKind::kOther, ORBCefApp::ComputeProcessKind(CommandLine({})));
  EXPECT_EQ(ProcessKind::kOther, ORBCefApp::ComputeProcessKind(nullptr));
  EXPECT_EQ(4, static_cast<int>(ProcessKind::kOther));
}

TEST_F(ORBCefAppTest, TheRecordModeIsThatOfTheSwitches) {
  EXPECT_EQ(ORBCEF_RECORDMODE_NONE, ORBCefApp::ComputeRecordMode(CommandLine({})));
  EXPECT_EQ(ORBCEF_RECORDMODE_CAPTURE, ORBCefApp::ComputeRecordMode(CommandLine({"--xo-record"})));
  EXPECT_EQ(ORBCEF_RECORDMODE_REPLAY, ORBCefApp::ComputeRecordMode(CommandLine({"--xo-replay"})));
}

TEST_F(ORBCefAppTest, RecordWinsOverReplayInARenderer) {
  const auto line = CommandLine({"--type=renderer", "--xo-replay", "--xo-record"});
  EXPECT_EQ(ORBCEF_RECORDMODE_CAPTURE, ORBCefApp::ComputeRecordMode(line));
}

TEST_F(ORBCefAppTest, EachKindHasOnlyItsOwnHandler) {
  const auto handlers = [](ProcessKind kind) {
    const CefRefPtr<ORBCefApp> app = new ORBCefApp(kind);
    EXPECT_FALSE(app->GetResourceBundleHandler());
    return std::make_pair(app->GetBrowserProcessHandler() != nullptr,
                          app->GetRenderProcessHandler() != nullptr);
  };
  EXPECT_EQ(std::make_pair(true, false), handlers(ProcessKind::kBrowser));
  EXPECT_EQ(std::make_pair(false, true), handlers(ProcessKind::kRenderer));
  EXPECT_EQ(std::make_pair(false, false), handlers(ProcessKind::kGpu));
  EXPECT_EQ(std::make_pair(false, false), handlers(ProcessKind::kUtility));
  EXPECT_EQ(std::make_pair(false, false), handlers(ProcessKind::kOther));
}

TEST_F(ORBCefAppTest, TheSameHandlerIsGivenEachTime) {
  const CefRefPtr<ORBCefApp> browser = new ORBCefApp(ProcessKind::kBrowser);
  EXPECT_EQ(browser->GetBrowserProcessHandler().get(), browser->GetBrowserProcessHandler().get());
  const CefRefPtr<ORBCefApp> renderer = new ORBCefApp(ProcessKind::kRenderer);
  EXPECT_EQ(renderer->GetRenderProcessHandler().get(), renderer->GetRenderProcessHandler().get());
}

TEST_F(ORBCefAppTest, EveryProcessGetsTheFileAccessSwitches) {
  for (const auto& [kind, type] :
       {std::make_pair(ProcessKind::kBrowser, ""),
        std::make_pair(ProcessKind::kRenderer, "renderer"),
        std::make_pair(ProcessKind::kGpu, "gpu"), std::make_pair(ProcessKind::kOther, "other")}) {
    const CefRefPtr<ORBCefApp> app = new ORBCefApp(kind);
    const auto line = CommandLine({});
    app->OnBeforeCommandLineProcessing(type, line);
    EXPECT_TRUE(line->HasSwitch("allow-universal-access-from-files")) << type;
    EXPECT_TRUE(line->HasSwitch("allow-file-access-from-files")) << type;
    EXPECT_FALSE(line->HasSwitch("disable-gpu")) << type;
    EXPECT_FALSE(line->HasSwitch("disable-gpu-compositing")) << type;
  }
}

TEST_F(ORBCefAppTest, AnEmptyVariableStillDisablesTheGPU) {
  tools.Set("ORBCEF_DISABLE_GPU", "");
  const CefRefPtr<ORBCefApp> app = new ORBCefApp(ProcessKind::kBrowser);
  const auto line = CommandLine({});
  app->OnBeforeCommandLineProcessing("", line);
  EXPECT_TRUE(line->HasSwitch("disable-gpu"));
  EXPECT_TRUE(line->HasSwitch("disable-gpu-compositing"));
}

TEST_F(ORBCefAppTest, OnlyARendererLooksForTheRecordMode) {
  const CefRefPtr<ORBCefApp> renderer = new ORBCefApp(ProcessKind::kRenderer);
  CefRefPtr<CommandLineDouble> line = new CommandLineDouble();
  renderer->OnBeforeCommandLineProcessing("renderer", line);
  EXPECT_THAT(line->asked, testing::ElementsAre("xo-record", "xo-replay"));

  // Neither another process type nor an application of another kind does.
  line = new CommandLineDouble();
  renderer->OnBeforeCommandLineProcessing("gpu", line);
  EXPECT_THAT(line->asked, testing::IsEmpty());
  const CefRefPtr<ORBCefApp> gpu = new ORBCefApp(ProcessKind::kGpu);
  gpu->OnBeforeCommandLineProcessing("renderer", line);
  EXPECT_THAT(line->asked, testing::IsEmpty());
}

// What a new page gets from the handler of a renderer that was started with `arguments`.
class ORBCefAppRecordModeTest : public v8_doubles::RendererTest {
 protected:
  std::vector<std::string> ScriptsOfAPage(std::initializer_list<const char*> arguments) {
    const CefRefPtr<ORBCefApp> app = new ORBCefApp(ProcessKind::kRenderer);
    app->OnBeforeCommandLineProcessing("renderer", CommandLine(arguments));
    context->evaluations.clear();
    app->GetRenderProcessHandler()->OnContextCreated(browser, main_frame, context);
    return context->ScriptNames();
  }
};

TEST_F(ORBCefAppRecordModeTest, TheModeOfTheSwitchesReachesTheHandlerOfARenderer) {
  constexpr char kInspector[] = "webapps/WebRecordClient/Record/EventInspector.js";
  EXPECT_THAT(ScriptsOfAPage({"--type=renderer"}), testing::Not(testing::Contains(kInspector)));
  EXPECT_THAT(ScriptsOfAPage({"--type=renderer", "--xo-record"}), testing::Contains(kInspector));
  EXPECT_THAT(ScriptsOfAPage({"--type=renderer", "--xo-replay"}), testing::Contains(kInspector));
  EXPECT_THAT(ScriptsOfAPage({"--type=renderer", "--xo-record", "--xo-replay"}),
              testing::Contains(kInspector));
}

TEST_F(ORBCefAppTest, TheGPUSwitchesComeBeforeTheFileAccessSwitches) {
  tools.Set("ORBCEF_DISABLE_GPU", "0");
  const CefRefPtr<ORBCefApp> app = new ORBCefApp(ProcessKind::kOther);
  const CefRefPtr<CommandLineDouble> line = new CommandLineDouble();
  app->OnBeforeCommandLineProcessing("other", line);
  EXPECT_THAT(line->Names(), testing::ElementsAre("disable-gpu", "disable-gpu-compositing",
                                                  "allow-universal-access-from-files",
                                                  "allow-file-access-from-files"));
}

TEST_F(ORBCefAppTest, OnlyTheBrowserProcessIsToldToKeepNoRendererInReserve) {
  const CefRefPtr<ORBCefApp> app = new ORBCefApp(ProcessKind::kBrowser);
  const auto browser_line = CommandLine({});
  app->OnBeforeCommandLineProcessing(CefString(), browser_line);
  EXPECT_EQ(browser_line->GetSwitchValue("disable-features").ToString(),
            "SpareRendererForSitePerProcess");

  const auto renderer_line = CommandLine({});
  app->OnBeforeCommandLineProcessing("renderer", renderer_line);
  EXPECT_FALSE(renderer_line->HasSwitch("disable-features"));
}

TEST_F(ORBCefAppTest, FeaturesThatAreAlreadyTakenAwayStayTakenAway) {
  const CefRefPtr<ORBCefApp> app = new ORBCefApp(ProcessKind::kBrowser);
  const auto line = CommandLine({"--disable-features=One,Two"});
  app->OnBeforeCommandLineProcessing(CefString(), line);
  EXPECT_EQ(line->GetSwitchValue("disable-features").ToString(),
            "One,Two,SpareRendererForSitePerProcess");
}

#if defined(OS_LINUX)
TEST_F(ORBCefAppTest, OnlyTheBrowserProcessIsToldToUseNoZygote) {
  const CefRefPtr<ORBCefApp> browser = new ORBCefApp(ProcessKind::kBrowser);
  const auto browser_line = CommandLine({});
  browser->OnBeforeCommandLineProcessing(CefString(), browser_line);
  EXPECT_TRUE(browser_line->HasSwitch("no-zygote"));

  const CefRefPtr<ORBCefApp> renderer = new ORBCefApp(ProcessKind::kRenderer);
  const auto renderer_line = CommandLine({});
  renderer->OnBeforeCommandLineProcessing("renderer", renderer_line);
  EXPECT_FALSE(renderer_line->HasSwitch("no-zygote"));
}
#endif

TEST_F(ORBCefAppTest, ANullCommandLineIsIgnored) {
  const CefRefPtr<ORBCefApp> app = new ORBCefApp(ProcessKind::kRenderer);
  tools.Set("ORBCEF_DISABLE_GPU", "1");
  app->OnBeforeCommandLineProcessing("renderer", nullptr);
  EXPECT_TRUE(app->HasOneRef());
}

TEST_F(ORBCefAppTest, TheSchemeIsRegisteredWithItsOptions) {
  const CefRefPtr<ORBCefApp> app = new ORBCefApp(ProcessKind::kOther);
  RegistrarDouble registrar;
  app->OnRegisterCustomSchemes(&registrar);
  EXPECT_THAT(registrar.schemes, testing::ElementsAre(std::make_pair("xortv", 89)));
  app->OnRegisterCustomSchemes(nullptr);
}

TEST_F(ORBCefAppTest, SetRecordModeReachesTheBrowserProcessHandler) {
  const CefRefPtr<ORBCefApp> app = new ORBCefApp(ProcessKind::kBrowser);
  EXPECT_EQ(ORBCEF_RECORDMODE_NONE, app->RecordMode());
  app->SetRecordMode(ORBCEF_RECORDMODE_CAPTURE);
  EXPECT_EQ(ORBCEF_RECORDMODE_CAPTURE, app->RecordMode());
  const auto line = CommandLine({});
  app->GetBrowserProcessHandler()->OnBeforeChildProcessLaunch(line);
  EXPECT_TRUE(line->HasSwitch("xo-record"));
}

TEST_F(ORBCefAppTest, SetRecordModeWithoutAHandlerKeepsTheMode) {
  const CefRefPtr<ORBCefApp> app = new ORBCefApp(ProcessKind::kOther);
  app->SetRecordMode(ORBCEF_RECORDMODE_REPLAY);
  EXPECT_EQ(ORBCEF_RECORDMODE_REPLAY, app->RecordMode());
}

}  // namespace
