// A render process: the natives of the page's object, without a script engine. The process is
// started as one of the engine's own, by its command line, and enters through the module's table.
#include <gtest/gtest.h>

#include <cstdlib>
#include <thread>

#include "Control.h"
#include "Environment.h"
#include "Host.h"
#include "RendererProcess.h"

namespace {

using control::Callback;
using renderer_process::Part;
using renderer_process::RunInRenderer;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using Lines = std::vector<std::string>;

constexpr int kRenderer = TID_RENDERER;

Lines Messages() {
  return control::Texts("message");
}

const Part kNatives("natives", [] {
  EXPECT_TRUE(control::Native("__notifyDOMReady"));
  EXPECT_TRUE(control::Native("__notifyZoomChange", {"double:2.5"}));
  EXPECT_TRUE(control::Native("__notifyZoomChange", {"undefined:"}));
  EXPECT_TRUE(control::Native("__notifyZoomChange"));
  EXPECT_TRUE(control::Native("__sendString", {"strings:a|b", "object:", "object:"}));
  EXPECT_TRUE(control::Native("__sendString", {"string:a", "object:", "object:"}));
  EXPECT_TRUE(control::Native("__unknown"));
  EXPECT_THAT(Messages(),
              ElementsAre("browser V8Context(true)", "browser OnDOMContentLoaded()",
                          "browser OnZoomChanged(2.5)",
                          "browser SendString(a|b|column=0;line=0;url=;|captureAll=true;"
                          "recordable=false;)"));
  EXPECT_THAT(control::Texts("native"), Contains("__unknown is unknown"));
});

TEST(StandinRendererTest, NativesSendTheirMessages) {
  RunInRenderer(kNatives);
}

const Part kAnswers("answers", [] {
  SetEnvironment("ORBCEF_STANDIN_VALUE", "value");
  EXPECT_TRUE(control::Native("__getEnv", {"string:ORBCEF_STANDIN_VALUE"}));
  EXPECT_EQ(control::Last("native"), "__getEnv = \"value\"");
  EXPECT_TRUE(control::Native("__getEnv", {"null:"}));
  EXPECT_EQ(control::Last("native"), "__getEnv is unknown");
  control::Fail("v8_value");
  EXPECT_TRUE(control::Native("__getEnv", {"string:ORBCEF_STANDIN_VALUE"}));
  EXPECT_EQ(control::Last("native"), "__getEnv = nothing");
});

TEST(StandinRendererTest, AnAnswerThatCannotBeMadeIsNone) {
  RunInRenderer(kAnswers);
}

constexpr char kExecutor[] = "object:resolve=function:yes;reject=function:no";

const Part kPromises("promises", [] {
  EXPECT_TRUE(control::Native("__registerPromise", {kExecutor}));
  EXPECT_EQ(control::Last("native"), "__registerPromise = 1");
  EXPECT_TRUE(control::Native("__registerPromise", {kExecutor}));
  EXPECT_EQ(control::Last("native"), "__registerPromise = 2");
  EXPECT_TRUE(control::Native("__resolvePromise", {"int:1", "string:value"}));
  EXPECT_TRUE(control::Native("__resolvePromise", {"int:1", "string:again"}));
  EXPECT_TRUE(control::Native("__rejectPromise", {"int:2", "string:reason"}));
  EXPECT_THAT(control::Texts("function"), ElementsAre("yes 1", "no 1"));
});

TEST(StandinRendererTest, APromiseIsSettledOnce) {
  RunInRenderer(kPromises);
}

const Part kPendingPromise("pending_promise", [] {
  EXPECT_TRUE(control::Native("__registerPromise", {kExecutor}));
  EXPECT_EQ(control::Last("native"), "__registerPromise = 1");
});

// The end of the process proves that nothing of it is left.
TEST(StandinRendererTest, APendingPromiseGoesWithItsProcess) {
  RunInRenderer(kPendingPromise);
}

const Part kPromiseFaults("promise_faults", [] {
  EXPECT_TRUE(control::Native("__registerPromise", {"object:resolve=function:yes"}));
  EXPECT_EQ(control::Last("native"),
            "__registerPromise ! Failed to instantiate native promise proxy");
  control::Fail("v8_value");
  EXPECT_TRUE(control::Native("__registerPromise", {kExecutor}));
  EXPECT_EQ(control::Last("native"), "__registerPromise = nothing");
  EXPECT_TRUE(control::Native("__resolvePromise", {"string:1", "string:value"}));
  EXPECT_EQ(control::Last("native"),
            "__resolvePromise ! xocef._internals.resolvePromise: 1st arg should be an integer");
  EXPECT_TRUE(control::Native("__saveValue", {"int:0", "object:"}));
  EXPECT_EQ(control::Last("native"), "__saveValue ! Invalid key for native promise executor");
  const size_t before = Messages().size();
  control::Fail("process_message");
  EXPECT_TRUE(control::Native("__loadValue", {"int:1", "object:"}));
  EXPECT_EQ(Messages().size(), before);
  EXPECT_TRUE(control::Native("__saveValue",
                              {"int:1", "object:origin=string:o;name=string:n;value=string:v"}));
  EXPECT_THAT(Messages(), Contains("browser SaveValue(1|o|n|v)"));
});

TEST(StandinRendererTest, APromiseWithoutItsPartsIsRefused) {
  RunInRenderer(kPromiseFaults);
}

const Part kNoContext("no_context", [] {
  const size_t before = Messages().size();
  control::Fail("v8_context");
  EXPECT_TRUE(control::Native("__notifyLoad"));
  EXPECT_EQ(control::Last("native"), "__notifyLoad is unknown");
  EXPECT_EQ(Messages().size(), before);
});

TEST(StandinRendererTest, WithoutACurrentContextANativeDoesNothing) {
  RunInRenderer(kNoContext);
}

const Part kOtherThread("other_thread", [] {
  const size_t before = Messages().size();
  std::thread([] { EXPECT_TRUE(control::Native("__notifyLoad")); }).join();
  EXPECT_EQ(control::Last("native"), "__notifyLoad is unknown");
  EXPECT_EQ(Messages().size(), before);
});

TEST(StandinRendererTest, ANativeOnAnotherThreadDoesNothing) {
  RunInRenderer(kOtherThread);
}

const Part kFaults("faults", [] {
  const size_t before = Messages().size();
  control::Fail("process_message");
  EXPECT_TRUE(control::Native("__notifyLoad"));
  control::Fail("main_frame");
  EXPECT_TRUE(control::Native("__notifyLoad"));
  control::Fail("eval");
  EXPECT_TRUE(control::Native("__sendDocumentSize"));
  EXPECT_EQ(control::Last("native"), "__sendDocumentSize is unknown");
  EXPECT_EQ(Messages().size(), before);
});

TEST(StandinRendererTest, AFailedMessageFrameOrScriptSendsNothing) {
  RunInRenderer(kFaults,
                HasSubstr("Exception on the getDocumentSize snippet:\n\tthe script failed"));
}

const Part kNulls("nulls", [] {
  const Lines before = Messages();
  for (const int argument : {0, 1, 2}) {
    EXPECT_TRUE(
        Callback("CefRenderProcessHandler::OnContextCreated", kRenderer).Null(argument).Play());
    EXPECT_TRUE(
        Callback("CefRenderProcessHandler::OnContextReleased", kRenderer).Null(argument).Play());
  }
  EXPECT_TRUE(Callback("CefRenderProcessHandler::OnBrowserCreated", kRenderer).Null(0).Play());
  EXPECT_TRUE(Callback("CefRenderProcessHandler::OnBrowserDestroyed", kRenderer).Null(0).Play());
  for (const int argument : {0, 3, 4}) {
    EXPECT_TRUE(
        Callback("CefRenderProcessHandler::OnUncaughtException", kRenderer).Null(argument).Play());
  }
  Callback message("CefRenderProcessHandler::OnProcessMessageReceived", kRenderer);
  EXPECT_TRUE(message.Text(0, "SendString").Null(0).Null(1).Null(2).Play());
  EXPECT_EQ(message.result, 0);
  EXPECT_EQ(Messages(), before);
});

TEST(StandinRendererTest, NullArgumentsAreGivenBack) {
  RunInRenderer(kNulls, Not(HasSubstr("Uncaught exception")));
}

const Part kWrongThreads("wrong_threads", [] {
  const Lines before = Messages();
  const Lines scripts = control::Texts("eval");
  for (const char* callback :
       {"CefRenderProcessHandler::OnContextCreated", "CefRenderProcessHandler::OnContextReleased",
        "CefRenderProcessHandler::OnBrowserCreated",
        "CefRenderProcessHandler::OnUncaughtException"}) {
    EXPECT_TRUE(Callback(callback, ORBCEF_STANDIN_STRANGER).Text(0, "stranger").Play());
  }
  EXPECT_EQ(Messages(), before);
  EXPECT_EQ(control::Texts("eval"), scripts);
});

TEST(StandinRendererTest, CallbacksOnOtherThreadsDoNothing) {
  RunInRenderer(kWrongThreads, Not(HasSubstr("stranger")));
}

const Part kException("exception", [] {
  EXPECT_TRUE(Callback("CefRenderProcessHandler::OnUncaughtException", kRenderer)
                  .Text(0, "x is not defined")
                  .Play());
});

TEST(StandinRendererTest, AnUncaughtExceptionIsLoggedWithTheFramesThatThereAre) {
  RunInRenderer(kException,
                HasSubstr("[Renderer Process] Browser #1 - Uncaught exception.\n\tx is not "
                          "defined\n\tStack trace:\n\t\tplay @stand-in.js:7\n"));
}

const Part kExtensions("extensions", [] {
  EXPECT_THAT(control::Texts("extension"), ElementsAre("v8/cef_bindings"));
  EXPECT_THAT(control::Texts("extension.code"), ElementsAre("var xocef;"));
  EXPECT_THAT(control::Texts("eval"), Not(IsEmpty()));
});

TEST(StandinRendererTest, TheBindingsAreRegisteredFromTheInstallation) {
  RunInRenderer(kExtensions);
}

}  // namespace
