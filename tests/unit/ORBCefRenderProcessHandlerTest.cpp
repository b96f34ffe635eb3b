#include "ORBCefRenderProcessHandler.h"

#include "v8_doubles/RendererFixture.h"
#include "v8_doubles/V8StackDoubles.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using v8_doubles::DomNodeDouble;
using v8_doubles::V8ExceptionDouble;
using v8_doubles::V8StackFrameDouble;
using v8_doubles::V8StackTraceDouble;

constexpr char kRootListeners[] =
    "webapps/ORBCefBindings/snippets/addRootDocumentEventListeners.js";
constexpr char kGlobalListeners[] = "webapps/ORBCefBindings/snippets/addGlobalEventListeners.js";
constexpr char kInjection[] = "__injectWebRecordModules.js";
constexpr char kInspector[] = "webapps/WebRecordClient/Record/EventInspector.js";

struct Extension {
  std::string name;
  std::string text;
  CefRefPtr<CefV8Handler> handler;
};

// Keeps the extensions, which the engine takes in a running renderer only.
class Handler : public ORBCefRenderProcessHandler {
 public:
  std::vector<Extension> extensions;

 protected:
  void RegisterExtension(const CefString& name, const CefString& text,
                         CefRefPtr<CefV8Handler> handler) override {
    extensions.push_back({name.ToString(), text.ToString(), handler});
  }
};

class ORBCefRenderProcessHandlerTest : public v8_doubles::RendererTest {
 protected:
  void Create() { handler->OnContextCreated(browser, main_frame, context); }

  CefRefPtr<Handler> handler = new Handler;
};

TEST_F(ORBCefRenderProcessHandlerTest, WithoutARecordModeOnlyTheBindingsAreRegistered) {
  handler->OnWebKitInitialized();
  ASSERT_EQ(1u, handler->extensions.size());
  EXPECT_EQ("v8/cef_bindings", handler->extensions[0].name);
  EXPECT_TRUE(handler->extensions[0].handler);
}

TEST_F(ORBCefRenderProcessHandlerTest, ARecordModeAddsTheRecordBindingsWithTheSameHandler) {
  for (const orbceftypes_recordmode mode : {ORBCEF_RECORDMODE_CAPTURE, ORBCEF_RECORDMODE_REPLAY}) {
    handler = new Handler;
    handler->SetRecordMode(mode);
    handler->OnWebKitInitialized();
    ASSERT_EQ(2u, handler->extensions.size());
    EXPECT_EQ("v8/cef_bindings", handler->extensions[0].name);
    EXPECT_EQ("v8/cef_record_bindings", handler->extensions[1].name);
    EXPECT_EQ(handler->extensions[0].handler.get(), handler->extensions[1].handler.get());
  }
}

TEST_F(ORBCefRenderProcessHandlerTest, AnUnreadableExtensionIsRegisteredWithAnEmptyText) {
  handler->SetRecordMode(ORBCEF_RECORDMODE_CAPTURE);
  handler->OnWebKitInitialized();
  ASSERT_EQ(2u, handler->extensions.size());
  EXPECT_EQ("", handler->extensions[0].text);
  EXPECT_EQ("", handler->extensions[1].text);
}

TEST_F(ORBCefRenderProcessHandlerTest, TheStartOfTheEngineIsLogged) {
  const std::string log = CapturedLog([this] { handler->OnWebKitInitialized(); });
  EXPECT_THAT(log, HasSubstr("[Renderer Process] WebKit initialized: registering v8 extensions."));
}

TEST_F(ORBCefRenderProcessHandlerTest, BrowsersAreLoggedAsTheyComeAndGo) {
  EXPECT_THAT(CapturedLog([this] { handler->OnBrowserCreated(browser, nullptr); }),
              HasSubstr("[Renderer Process] Browser #7 - Created."));
  EXPECT_THAT(CapturedLog([this] { handler->OnBrowserDestroyed(browser); }),
              HasSubstr("[Renderer Process] Browser #7 - Destroyed."));
  EXPECT_EQ("", CapturedLog([this] {
              handler->OnBrowserCreated(nullptr, nullptr);
              handler->OnBrowserDestroyed(nullptr);
            }));
}

TEST_F(ORBCefRenderProcessHandlerTest, NothingComesFromTheBrowserProcess) {
  EXPECT_FALSE(handler->GetLoadHandler());
  const CefRefPtr<CefProcessMessage> message = CefProcessMessage::Create("SendString");
  EXPECT_FALSE(handler->OnProcessMessageReceived(browser, main_frame, PID_BROWSER, message));
}

TEST_F(ORBCefRenderProcessHandlerTest, AMainFrameGetsItsListenersAndIsAnnounced) {
  Create();
  EXPECT_THAT(context->ScriptNames(), ElementsAre(kRootListeners, kGlobalListeners));
  ASSERT_THAT(SentNames(), ElementsAre("V8Context"));
  EXPECT_TRUE(main_frame->sent[0].Arguments()->GetBool(0));
}

TEST_F(ORBCefRenderProcessHandlerTest, AMainFrameWithoutAUrlDefersTheRootListenersOnly) {
  main_frame->url = "";
  Create();
  EXPECT_THAT(context->ScriptNames(), ElementsAre(kGlobalListeners));
  ASSERT_THAT(SentNames(), ElementsAre("DeferAddEventListeners", "V8Context"));
  EXPECT_EQ(0u, main_frame->sent[0].Arguments()->GetSize());
  EXPECT_TRUE(main_frame->sent[1].Arguments()->GetBool(0));
}

TEST_F(ORBCefRenderProcessHandlerTest, AFailingSnippetStopsNothing) {
  context->outcomes[kRootListeners].result = false;
  context->outcomes[kGlobalListeners].result = false;
  const std::string log = CapturedLog([this] { Create(); });
  EXPECT_THAT(context->ScriptNames(), ElementsAre(kRootListeners, kGlobalListeners));
  ASSERT_THAT(SentNames(), ElementsAre("V8Context"));
  EXPECT_THAT(log, HasSubstr("Failed to add custom event listeners on root document, frame top"));
  EXPECT_THAT(log, HasSubstr("Failed to add custom global event listeners to frame top"));
}

TEST_F(ORBCefRenderProcessHandlerTest, ASubFrameGetsNoListenersAndNoMessage) {
  context->frame = sub_frame;
  handler->OnContextCreated(browser, sub_frame, context);
  EXPECT_THAT(context->ScriptNames(), IsEmpty());
  EXPECT_TRUE(main_frame->sent.empty());
}

TEST_F(ORBCefRenderProcessHandlerTest, NullArgumentsEndTheContextCallbacksSilently) {
  const std::string log = CapturedLog([this] {
    handler->OnContextCreated(nullptr, main_frame, context);
    handler->OnContextCreated(browser, nullptr, context);
    handler->OnContextCreated(browser, main_frame, nullptr);
    handler->OnContextReleased(nullptr, main_frame, context);
    handler->OnContextReleased(browser, nullptr, context);
    handler->OnContextReleased(browser, main_frame, nullptr);
  });
  EXPECT_EQ("", log);
  EXPECT_THAT(context->ScriptNames(), IsEmpty());
  EXPECT_TRUE(main_frame->sent.empty());
}

TEST_F(ORBCefRenderProcessHandlerTest, ArgumentsAreGivenBackOnEveryPath) {
  handler->OnContextCreated(browser, main_frame, nullptr);
  handler->OnContextReleased(nullptr, main_frame, context);
  Create();
  handler->OnContextReleased(browser, main_frame, context);
  EXPECT_TRUE(context->HasOneRef());
}

TEST_F(ORBCefRenderProcessHandlerTest, TheReleaseOfAMainFramesContextIsAnnounced) {
  handler->OnContextReleased(browser, main_frame, context);
  ASSERT_THAT(SentNames(), ElementsAre("V8Context"));
  EXPECT_FALSE(main_frame->sent[0].Arguments()->GetBool(0));
}

TEST_F(ORBCefRenderProcessHandlerTest, TheReleaseOfASubFramesContextIsOnlyLogged) {
  const std::string log =
      CapturedLog([this] { handler->OnContextReleased(browser, sub_frame, context); });
  EXPECT_TRUE(main_frame->sent.empty());
  EXPECT_THAT(log, HasSubstr("v8 context released."));
}

TEST_F(ORBCefRenderProcessHandlerTest, TheFrameLogOfAMainFrameNamesNoParent) {
  EXPECT_THAT(CapturedLog([this] { Create(); }),
              HasSubstr("[Renderer Process] Browser #7 - v8 context created.\n\tFrame ID: "
                        "4294967297\n\tFrame name: top\n\tFrame URL: xortv://webapps/a\n\tFrame "
                        "parent: <none>"));
}

TEST_F(ORBCefRenderProcessHandlerTest, TheFrameLogOfASubFrameNamesItsParent) {
  EXPECT_THAT(CapturedLog([this] { handler->OnContextReleased(browser, sub_frame, context); }),
              HasSubstr("[Renderer Process] Browser #7 - v8 context released.\n\tFrame ID: "
                        "42\n\tFrame name: inner\n\tFrame URL: xortv://webapps/b\n\tFrame parent: "
                        "4294967297"));
}

class ORBCefWebRecordContextTest : public ORBCefRenderProcessHandlerTest {
 protected:
  void SetUp() override {
    ORBCefRenderProcessHandlerTest::SetUp();
    handler->SetRecordMode(ORBCEF_RECORDMODE_REPLAY);
  }
};

TEST_F(ORBCefWebRecordContextTest, TheModuleMapIsInjectedAheadOfTheInspector) {
  Create();
  EXPECT_THAT(context->ScriptNames(),
              ElementsAre(kRootListeners, kGlobalListeners, kInjection, kInspector));
  EXPECT_EQ("window.XOWebRecord.WRmodules = JSON.parse('{\"a\":[1]}');",
            context->evaluations[2].code);
  EXPECT_EQ(1, context->evaluations[2].start_line);
}

TEST_F(ORBCefWebRecordContextTest, ASubFrameGetsModuleMapAndInspectorToo) {
  context->frame = sub_frame;
  handler->OnContextCreated(browser, sub_frame, context);
  EXPECT_THAT(context->ScriptNames(), ElementsAre(kInjection, kInspector));
  EXPECT_TRUE(main_frame->sent.empty());
}

TEST_F(ORBCefWebRecordContextTest, TheModuleMapIsFetchedOncePerProcess) {
  fresh_process::Run([this] {
    tools.module_map = "\"first\"";
    Create();
    tools.module_map = "\"second\"";
    Create();
    ASSERT_EQ(8u, context->evaluations.size());
    EXPECT_EQ("window.XOWebRecord.WRmodules = JSON.parse('\"first\"');",
              context->evaluations[2].code);
    EXPECT_EQ(context->evaluations[2].code, context->evaluations[6].code);
  });
}

TEST_F(ORBCefWebRecordContextTest, TheModuleMapOfTheFirstContextIsKeptEvenIfThatIsInvalid) {
  fresh_process::Run([this] {
    tools.module_map = "\"first\"";
    context->valid = false;
    Create();
    tools.module_map = "\"second\"";
    context->valid = true;
    Create();
    ASSERT_EQ(6u, context->evaluations.size());
    EXPECT_EQ("window.XOWebRecord.WRmodules = JSON.parse('\"first\"');",
              context->evaluations[4].code);
  });
}

TEST_F(ORBCefWebRecordContextTest, WithoutAModuleMapTheScriptIsInjectedAllTheSame) {
  fresh_process::Run([this] {
    tools.module_map.reset();
    Create();
    ASSERT_EQ(4u, context->evaluations.size());
    EXPECT_EQ("window.XOWebRecord.WRmodules = JSON.parse('');", context->evaluations[2].code);
  });
}

TEST_F(ORBCefWebRecordContextTest, TheDevToolsGetNeitherModuleMapNorInspector) {
  main_frame->url = "chrome-devtools://devtools/inspector.html";
  Create();
  EXPECT_THAT(context->ScriptNames(), ElementsAre(kRootListeners, kGlobalListeners));
}

TEST_F(ORBCefWebRecordContextTest, AnInvalidContextGetsNeitherModuleMapNorInspector) {
  context->valid = false;
  Create();
  EXPECT_THAT(context->ScriptNames(), ElementsAre(kRootListeners, kGlobalListeners));
}

TEST_F(ORBCefWebRecordContextTest, AFailedInjectionIsLoggedAndTheInspectorStillRuns) {
  context->outcomes[kInjection] = {false, nullptr, new V8ExceptionDouble("Unexpected end")};
  const std::string log = CapturedLog([this] { Create(); });
  EXPECT_THAT(log, HasSubstr("[Renderer Process] Browser #7 - [WebRecord] Failed to inject module "
                             "map on XOWebRecord.modules and XOWebRecord.WRmodules\nUnexpected "
                             "end"));
  EXPECT_THAT(log, HasSubstr("ERROR"));
  EXPECT_THAT(context->ScriptNames(),
              ElementsAre(kRootListeners, kGlobalListeners, kInjection, kInspector));
}

TEST_F(ORBCefWebRecordContextTest, AFailedInjectionWithoutAnExceptionIsLoggedToo) {
  context->outcomes[kInjection].result = false;
  const std::string log = CapturedLog([this] { Create(); });
  EXPECT_THAT(log, HasSubstr("Failed to inject module map on XOWebRecord.modules and "
                             "XOWebRecord.WRmodules\n"));
  EXPECT_THAT(log, HasSubstr("Loaded EventInspector.js for WebRecord in frame top"));
}

TEST_F(ORBCefWebRecordContextTest, TheMapStandsInTheScriptWithoutEscaping) {
  EXPECT_EQ("window.XOWebRecord.WRmodules = JSON.parse('{\"a\":\"it's\"}');",
            ORBCefRenderProcessHandler::BuildModuleMapScript("{\"a\":\"it's\"}"));
  EXPECT_EQ("window.XOWebRecord.WRmodules = JSON.parse('');",
            ORBCefRenderProcessHandler::BuildModuleMapScript(""));
}

class ORBCefUncaughtExceptionTest : public ORBCefRenderProcessHandlerTest {
 protected:
  std::string Log(CefRefPtr<CefV8StackTrace> trace) {
    return CapturedLog(
        [&] { handler->OnUncaughtException(browser, main_frame, context, exception, trace); });
  }

  CefRefPtr<CefV8Exception> exception = new V8ExceptionDouble("x is not defined");
};

TEST_F(ORBCefUncaughtExceptionTest, MessageAndStackTraceAreLoggedAsAWarning) {
  const CefRefPtr<V8StackFrameDouble> inner = new V8StackFrameDouble("inner", "a.js", 3);
  const CefRefPtr<V8StackFrameDouble> outer = new V8StackFrameDouble("", "b.js", 14);
  const std::string log = Log(new V8StackTraceDouble({inner, outer}));
  EXPECT_THAT(log, HasSubstr("[Renderer Process] Browser #7 - Uncaught exception.\n\tx is not "
                             "defined\n\tStack trace:\n\t\tinner @a.js:3\n\t\t @b.js:14\n"));
  EXPECT_THAT(log, HasSubstr("WARNING"));
}

TEST_F(ORBCefUncaughtExceptionTest, AnEvalIsAnnouncedAheadOfItsLineWithoutTabs) {
  const CefRefPtr<V8StackFrameDouble> evaluated = new V8StackFrameDouble("f", "a.js", -1);
  evaluated->eval = true;
  EXPECT_EQ("Called from eval()\n\t\tf @a.js:-1\n",
            ORBCefRenderProcessHandler::FormatStackTrace(new V8StackTraceDouble({evaluated})));
}

TEST_F(ORBCefUncaughtExceptionTest, MissingAndInvalidStackFramesAreSkipped) {
  const CefRefPtr<V8StackFrameDouble> invalid = new V8StackFrameDouble("gone", "a.js", 1);
  invalid->valid = false;
  const CefRefPtr<V8StackFrameDouble> kept = new V8StackFrameDouble("kept", "b.js", 2);
  EXPECT_EQ("\t\tkept @b.js:2\n", ORBCefRenderProcessHandler::FormatStackTrace(
                                      new V8StackTraceDouble({nullptr, invalid, kept})));
}

TEST_F(ORBCefUncaughtExceptionTest, AStackTraceOfNoFramesLogsTheHeader) {
  EXPECT_THAT(Log(new V8StackTraceDouble({})),
              HasSubstr("Uncaught exception.\n\tx is not defined\n\tStack trace:\n"));
  EXPECT_EQ("", ORBCefRenderProcessHandler::FormatStackTrace(new V8StackTraceDouble({})));
}

TEST_F(ORBCefUncaughtExceptionTest, WithoutAUsableTraceExceptionOrBrowserNothingIsLogged) {
  const CefRefPtr<V8StackTraceDouble> trace = new V8StackTraceDouble({});
  EXPECT_EQ("", Log(nullptr));
  trace->valid = false;
  EXPECT_EQ("", Log(trace));
  trace->valid = true;
  exception = nullptr;
  EXPECT_EQ("", Log(trace));
  exception = new V8ExceptionDouble("x");
  browser = nullptr;
  EXPECT_EQ("", Log(trace));
}

TEST_F(ORBCefUncaughtExceptionTest, FrameAndContextMayBeMissing) {
  EXPECT_THAT(CapturedLog([this] {
                handler->OnUncaughtException(browser, nullptr, nullptr, exception,
                                             new V8StackTraceDouble({}));
              }),
              HasSubstr("Uncaught exception."));
}

TEST_F(ORBCefRenderProcessHandlerTest, AFocusedNodeTellsWhetherItIsAFormControl) {
  handler->OnFocusedNodeChanged(browser, sub_frame, new DomNodeDouble(true));
  handler->OnFocusedNodeChanged(browser, nullptr, new DomNodeDouble(false));
  ASSERT_THAT(SentNames(), ElementsAre("FocusedNodeChanged", "FocusedNodeChanged"));
  EXPECT_TRUE(main_frame->sent[0].Arguments()->GetBool(0));
  EXPECT_FALSE(main_frame->sent[1].Arguments()->GetBool(0));
}

TEST_F(ORBCefRenderProcessHandlerTest, LostFocusSendsNothing) {
  handler->OnFocusedNodeChanged(browser, main_frame, nullptr);
  handler->OnFocusedNodeChanged(nullptr, main_frame, new DomNodeDouble(true));
  EXPECT_TRUE(main_frame->sent.empty());
}

TEST_F(ORBCefRenderProcessHandlerTest, TheExtensionsAreFilesOfTheInstallation) {
  fresh_process::Run([this] {
    const TempDirectory root;
    root.Write("webapps/ORBCefBindings/cef_extensions.js", "var xocef;\r\n");
    root.Write("webapps/ORBCefBindings/cef_record_extensions.js", "xocef.Record = {};");
    tools.Set("ORBInstallPath", root.Path());
    handler->SetRecordMode(ORBCEF_RECORDMODE_CAPTURE);
    handler->OnWebKitInitialized();
    ASSERT_EQ(2u, handler->extensions.size());
    EXPECT_EQ("var xocef;\r\n", handler->extensions[0].text);
    EXPECT_EQ("xocef.Record = {};", handler->extensions[1].text);
  });
}

TEST_F(ORBCefRenderProcessHandlerTest, OffTheRendererThreadNothingHappens) {
  fresh_process::Run(
      [this] {
        tools.Unset("ORBCEF_NO_TID_CHECK");
        handler->OnWebKitInitialized();
        handler->OnBrowserCreated(browser, nullptr);
        handler->OnBrowserDestroyed(browser);
        Create();
        handler->OnContextReleased(browser, main_frame, context);
        handler->OnUncaughtException(browser, main_frame, context, new V8ExceptionDouble("x"),
                                     new V8StackTraceDouble({}));
        handler->OnFocusedNodeChanged(browser, main_frame, new DomNodeDouble(true));
        EXPECT_TRUE(handler->extensions.empty());
        EXPECT_TRUE(main_frame->sent.empty());
        EXPECT_THAT(context->ScriptNames(), IsEmpty());
      },
      Not(HasSubstr("[Renderer Process]")));
}

}  // namespace
