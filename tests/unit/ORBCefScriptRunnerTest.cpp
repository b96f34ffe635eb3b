#include "ORBCefScriptRunner.h"

#include "v8_doubles/RendererFixture.h"

namespace {

using testing::HasSubstr;

constexpr char kScript[] = "webapps/ORBCefBindings/snippets/some.js";

class ORBCefScriptRunnerTest : public v8_doubles::RendererTest {
 protected:
  bool Run() { return ORBCefScriptRunner::RunScriptFile(kScript, context, value, exception); }

  CefRefPtr<CefV8Value> value;
  CefRefPtr<CefV8Exception> exception;
  TempDirectory first;
  TempDirectory second;
};

TEST_F(ORBCefScriptRunnerTest, OfTwoRootsWithTheFileTheFirstIsUsed) {
  first.Write(kScript, "one");
  second.Write(kScript, "two");
  EXPECT_EQ("one",
            ORBCefScriptRunner::ReadScriptFileFrom(kScript, first.Path() + ";" + second.Path()));
  EXPECT_EQ("two",
            ORBCefScriptRunner::ReadScriptFileFrom(kScript, second.Path() + ";" + first.Path()));
}

TEST_F(ORBCefScriptRunnerTest, ARootWithoutTheFileIsPassedOver) {
  second.Write(kScript, "two");
  EXPECT_EQ("two",
            ORBCefScriptRunner::ReadScriptFileFrom(kScript, first.Path() + ";" + second.Path()));
}

TEST_F(ORBCefScriptRunnerTest, AFileIsReadWholeAndUnchanged) {
  const std::string content(
      "line\r\n\x1a"
      "after\n\n\xc3\xa9\0end",
      19);
  first.Write(kScript, content);
  EXPECT_EQ(content, ORBCefScriptRunner::ReadScriptFileFrom(kScript, first.Path()));
}

TEST_F(ORBCefScriptRunnerTest, AFileIsReadAgainOnEachRun) {
  first.Write(kScript, "old");
  EXPECT_EQ("old", ORBCefScriptRunner::ReadScriptFileFrom(kScript, first.Path()));
  first.Write(kScript, "new");
  EXPECT_EQ("new", ORBCefScriptRunner::ReadScriptFileFrom(kScript, first.Path()));
}

TEST_F(ORBCefScriptRunnerTest, AMissingFileOrNoRootGivesAnEmptyText) {
  EXPECT_EQ("", ORBCefScriptRunner::ReadScriptFileFrom(kScript, first.Path()));
  EXPECT_EQ("", ORBCefScriptRunner::ReadScriptFileFrom(kScript, ""));
}

TEST_F(ORBCefScriptRunnerTest, AMissingFileIsEvaluatedAsAnEmptyScriptUnderItsPath) {
  EXPECT_TRUE(Run());
  ASSERT_EQ(1u, context->evaluations.size());
  EXPECT_EQ("", context->evaluations[0].code);
  EXPECT_EQ(kScript, context->evaluations[0].script_name);
  EXPECT_EQ(1, context->evaluations[0].start_line);
}

TEST_F(ORBCefScriptRunnerTest, TheResultIsWhatTheEngineSays) {
  context->outcomes[kScript].result = false;
  EXPECT_FALSE(Run());
}

TEST_F(ORBCefScriptRunnerTest, ValueAndExceptionReachTheCaller) {
  const CefRefPtr<CefV8Value> left = v8_doubles::Int(3);
  const CefRefPtr<CefV8Exception> thrown = new v8_doubles::V8ExceptionDouble("broken");
  context->outcomes[kScript] = {false, left, thrown};
  EXPECT_FALSE(Run());
  EXPECT_EQ(left.get(), value.get());
  EXPECT_EQ(thrown.get(), exception.get());
}

TEST_F(ORBCefScriptRunnerTest, TheContextIsEnteredForTheScriptAndLeftAfterIt) {
  EXPECT_TRUE(Run());
  ASSERT_EQ(1u, context->evaluations.size());
  EXPECT_TRUE(context->evaluations[0].entered);
  EXPECT_EQ(0, context->depth);
  EXPECT_EQ(1, context->exits);
}

TEST_F(ORBCefScriptRunnerTest, AContextThatCannotBeEnteredIsNotLeft) {
  context->lets_enter = false;
  EXPECT_TRUE(Run());
  EXPECT_EQ(1u, context->evaluations.size());
  EXPECT_EQ(0, context->exits);
}

TEST_F(ORBCefScriptRunnerTest, WithoutAContextNothingRuns) {
  EXPECT_FALSE(ORBCefScriptRunner::RunScriptFile(kScript, nullptr, value, exception));
}

TEST_F(ORBCefScriptRunnerTest, TheDevToolsAreKnownByTheSchemeOfTheFrame) {
  main_frame->url = "chrome-devtools://devtools/bundled/inspector.html";
  EXPECT_TRUE(ORBCefScriptRunner::IsDevToolsContext(context));
}

TEST_F(ORBCefScriptRunnerTest, AnyOtherUrlIsNoDevToolsContext) {
  for (const char* url : {"xortv://webapps/chrome-devtools", "devtools://devtools/inspector.html",
                          "https://host/?chrome-devtools://", "chrome-devtools", ""}) {
    main_frame->url = url;
    EXPECT_FALSE(ORBCefScriptRunner::IsDevToolsContext(context)) << url;
  }
}

TEST_F(ORBCefScriptRunnerTest, NoContextOrFrameIsNoDevToolsContext) {
  EXPECT_FALSE(ORBCefScriptRunner::IsDevToolsContext(nullptr));
  context->frame = nullptr;
  EXPECT_FALSE(ORBCefScriptRunner::IsDevToolsContext(context));
}

struct SnippetCase {
  void (*run)(const CefRefPtr<CefV8Context>&, const CefString&);
  const char* path;
  const char* success;
  const char* failure;
};

class ORBCefListenerSnippetTest : public v8_doubles::RendererTest,
                                  public testing::WithParamInterface<SnippetCase> {};

TEST_P(ORBCefListenerSnippetTest, SuccessIsLoggedAsInformation) {
  const std::string log = CapturedLog([this] { GetParam().run(context, "top"); });
  EXPECT_THAT(context->ScriptNames(), testing::ElementsAre(GetParam().path));
  EXPECT_THAT(log, HasSubstr(GetParam().success + std::string("top")));
  EXPECT_THAT(log, HasSubstr("INFO"));
  EXPECT_THAT(log, testing::Not(HasSubstr("Failed")));
}

TEST_P(ORBCefListenerSnippetTest, FailureIsLoggedAsAWarningWithoutTheMessage) {
  context->outcomes[GetParam().path] = {false, nullptr,
                                        new v8_doubles::V8ExceptionDouble("secret words")};
  const std::string log = CapturedLog([this] { GetParam().run(context, "top"); });
  EXPECT_THAT(log, HasSubstr(GetParam().failure + std::string("top")));
  EXPECT_THAT(log, HasSubstr("WARNING"));
  EXPECT_THAT(log, testing::Not(HasSubstr("secret words")));
}

TEST_P(ORBCefListenerSnippetTest, AMissingContextIsAFailure) {
  const std::string log = CapturedLog([] { GetParam().run(nullptr, "top"); });
  EXPECT_THAT(log, HasSubstr(GetParam().failure + std::string("top")));
}

INSTANTIATE_TEST_SUITE_P(
    All, ORBCefListenerSnippetTest,
    testing::Values(SnippetCase{ORBCefScriptRunner::AddGlobalListeners,
                                "webapps/ORBCefBindings/snippets/addGlobalEventListeners.js",
                                "Added custom global event listeners to frame ",
                                "Failed to add custom global event listeners to frame "},
                    SnippetCase{ORBCefScriptRunner::AddRootDocumentListeners,
                                "webapps/ORBCefBindings/snippets/addRootDocumentEventListeners.js",
                                "Added custom event listeners on root document, frame ",
                                "Failed to add custom event listeners on root document, frame "},
                    SnippetCase{ORBCefScriptRunner::LoadEventInspector,
                                "webapps/WebRecordClient/Record/EventInspector.js",
                                "Loaded EventInspector.js for WebRecord in frame ",
                                "Failed to load EventInspector.js for WebRecord in frame "}));

TEST_F(ORBCefScriptRunnerTest, OffTheRendererThreadNothingRuns) {
  fresh_process::Run([this] {
    tools.Unset("ORBCEF_NO_TID_CHECK");
    main_frame->url = "chrome-devtools://devtools/inspector.html";
    EXPECT_FALSE(Run());
    EXPECT_FALSE(ORBCefScriptRunner::IsDevToolsContext(context));
    EXPECT_TRUE(context->evaluations.empty());
    EXPECT_EQ(0, context->exits);
  });
}

TEST_F(ORBCefScriptRunnerTest, TheInstallationRootsAreReadOncePerProcess) {
  fresh_process::Run([this] {
    first.Write(kScript, "one");
    second.Write(kScript, "two");
    tools.Set("ORBInstallPath", first.Path());
    EXPECT_TRUE(Run());
    tools.Set("ORBInstallPath", second.Path());
    EXPECT_TRUE(Run());
    ASSERT_EQ(2u, context->evaluations.size());
    EXPECT_EQ("one", context->evaluations[0].code);
    EXPECT_EQ("one", context->evaluations[1].code);
  });
}

}  // namespace
