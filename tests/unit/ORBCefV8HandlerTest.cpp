#include "ORBCefV8Handler.h"

#include "v8_doubles/RendererFixture.h"

namespace {

using testing::HasSubstr;
using testing::Not;
using v8_doubles::Array;
using v8_doubles::Int;
using v8_doubles::Object;
using v8_doubles::String;

class ORBCefV8HandlerTest : public v8_doubles::RendererTest {
 protected:
  bool Call(const std::string& name, const CefV8ValueList& arguments = {}) {
    return handler->ExecuteIn(context, name, arguments, retval, exception);
  }

  CefRefPtr<ORBCefV8Handler> handler = new ORBCefV8Handler(ORBCEF_RECORDMODE_NONE);
  CefRefPtr<CefV8Value> retval;
  CefString exception;
};

struct PlainNative {
  const char* name;
  const char* message;
};

class ORBCefPlainNativeTest : public ORBCefV8HandlerTest,
                              public testing::WithParamInterface<PlainNative> {};

TEST_P(ORBCefPlainNativeTest, SendsItsMessageWithoutArguments) {
  EXPECT_TRUE(Call(GetParam().name));
  ASSERT_THAT(SentNames(), testing::ElementsAre(GetParam().message));
  EXPECT_EQ(0u, main_frame->sent[0].Arguments()->GetSize());
  EXPECT_FALSE(retval);
  EXPECT_TRUE(exception.empty());
}

TEST_P(ORBCefPlainNativeTest, IgnoresArgumentsOfThePage) {
  EXPECT_TRUE(Call(GetParam().name, {String("a"), Int(1)}));
  ASSERT_THAT(SentNames(), testing::ElementsAre(GetParam().message));
  EXPECT_EQ(0u, main_frame->sent[0].Arguments()->GetSize());
}

TEST_P(ORBCefPlainNativeTest, GoesThroughTheMainFrameFromASubFrameToo) {
  context->frame = sub_frame;
  EXPECT_TRUE(Call(GetParam().name));
  EXPECT_EQ(1u, main_frame->sent.size());
  EXPECT_TRUE(sub_frame->sent.empty());
}

INSTANTIATE_TEST_SUITE_P(All, ORBCefPlainNativeTest,
                         testing::Values(PlainNative{"__notifyDOMReady", "OnDOMContentLoaded"},
                                         PlainNative{"__notifyLoad", "OnLoad"},
                                         PlainNative{"__notifyUnload", "OnUnload"},
                                         PlainNative{"__notifyZoomReset", "OnZoomReset"},
                                         PlainNative{"__loadHomepage", "LoadHome"},
                                         PlainNative{"__openDevTools", "OpenDevTools"},
                                         PlainNative{"__closeDevTools", "CloseDevTools"}));

TEST_F(ORBCefV8HandlerTest, DomReadyIsSentInEveryRecordMode) {
  for (const orbceftypes_recordmode mode :
       {ORBCEF_RECORDMODE_NONE, ORBCEF_RECORDMODE_CAPTURE, ORBCEF_RECORDMODE_REPLAY}) {
    main_frame->sent.clear();
    handler = new ORBCefV8Handler(mode);
    EXPECT_TRUE(Call("__notifyDOMReady"));
    ASSERT_THAT(SentNames(), testing::ElementsAre("OnDOMContentLoaded"));
  }
}

TEST_F(ORBCefV8HandlerTest, ZoomChangeSendsItsStep) {
  EXPECT_TRUE(Call("__notifyZoomChange", {Int(4)}));
  ASSERT_THAT(SentNames(), testing::ElementsAre("OnZoomChanged"));
  EXPECT_EQ(4.0, main_frame->sent[0].Arguments()->GetDouble(0));
}

TEST_F(ORBCefV8HandlerTest, ZoomChangeOfZeroIsNotHandled) {
  EXPECT_FALSE(Call("__notifyZoomChange", {Int(0)}));
  EXPECT_TRUE(main_frame->sent.empty());
}

TEST_F(ORBCefV8HandlerTest, SendStringSendsItsThreeArguments) {
  EXPECT_TRUE(Call("__sendString", {Array({String("hello")}), Object({}), Object({})}));
  ASSERT_THAT(SentNames(), testing::ElementsAre("SendString"));
  EXPECT_EQ("hello", main_frame->sent[0].Arguments()->GetList(0)->GetString(0).ToString());
}

TEST_F(ORBCefV8HandlerTest, DocumentSizeIsMeasuredInTheCallersContext) {
  context->outcomes["webapps/ORBCefBindings/snippets/getDocumentSize.js"].value =
      Object({{"width", Int(3)}, {"height", Int(4)}});
  EXPECT_TRUE(Call("__sendDocumentSize"));
  ASSERT_THAT(SentNames(), testing::ElementsAre("DocumentSize"));
}

TEST_F(ORBCefV8HandlerTest, TooFewArgumentsAreNotHandledAndSetNoException) {
  EXPECT_FALSE(Call("__notifyZoomChange"));
  EXPECT_FALSE(Call("__sendString"));
  EXPECT_FALSE(Call("__sendString", {Array({})}));
  EXPECT_FALSE(Call("__sendString", {Array({}), Object({})}));
  EXPECT_FALSE(Call("__getEnv"));
  EXPECT_TRUE(main_frame->sent.empty());
  EXPECT_FALSE(retval);
  EXPECT_TRUE(exception.empty());
}

TEST_F(ORBCefV8HandlerTest, NamesAreComparedExactly) {
  for (const char* name :
       {"", "__", "__notifyLoa", "__notifyLoad ", "__notifyload", "notifyLoad", "__notifyLoadX",
        "__notifyL\xc3\xb6"
        "ad"}) {
    EXPECT_FALSE(Call(name)) << name;
  }
  EXPECT_TRUE(main_frame->sent.empty());
}

TEST_F(ORBCefV8HandlerTest, ANameDiffersInItsHighByteToo) {
  // U+6C5F ends in the byte of "_": comparing bytes instead of code units would take it for one.
  EXPECT_FALSE(Call("\xe6\xb1\x9f_notifyLoad"));
  EXPECT_TRUE(main_frame->sent.empty());
}

TEST_F(ORBCefV8HandlerTest, TheRecordNativesAreNotHandledWithoutARecordMode) {
  for (const char* name : {"__capture", "__isRecording", "__startRecordManager", "__abort"}) {
    EXPECT_FALSE(Call(name, {String("data"), String("text")})) << name;
  }
  EXPECT_TRUE(main_frame->sent.empty());
  EXPECT_FALSE(retval);
}

TEST_F(ORBCefV8HandlerTest, TheReservedCoverageNamesAreNeverHandled) {
  for (const orbceftypes_recordmode mode : {ORBCEF_RECORDMODE_NONE, ORBCEF_RECORDMODE_CAPTURE}) {
    handler = new ORBCefV8Handler(mode);
    EXPECT_FALSE(Call("__coverageEnabled"));
    EXPECT_FALSE(Call("__collectCoverage"));
  }
}

TEST_F(ORBCefV8HandlerTest, WithoutAUsableContextNothingIsHandled) {
  EXPECT_FALSE(handler->ExecuteIn(nullptr, "__notifyLoad", {}, retval, exception));
  context->valid = false;
  EXPECT_FALSE(Call("__notifyLoad"));
  context->valid = true;
  context->browser = nullptr;
  EXPECT_FALSE(Call("__notifyLoad"));
  EXPECT_TRUE(main_frame->sent.empty());
}

TEST_F(ORBCefV8HandlerTest, WithoutABindingNothingIsHandled) {
  handler = new ORBCefV8Handler(ORBCEF_RECORDMODE_NONE, nullptr);
  EXPECT_FALSE(Call("__notifyLoad"));
  EXPECT_FALSE(Call("__getEnv", {String("PATH")}));
  EXPECT_TRUE(main_frame->sent.empty());
}

TEST_F(ORBCefV8HandlerTest, ABindingExecutionIsLogged) {
  const std::string log = CapturedLog([this] { Call("__notifyLoad"); });
  EXPECT_THAT(log, HasSubstr("[Renderer Process] Browser #7 - Binding execution: __notifyLoad"));
}

TEST_F(ORBCefV8HandlerTest, AnUnknownNameIsLoggedAsWell) {
  const std::string log = CapturedLog([this] { Call("__unknown"); });
  EXPECT_THAT(log, HasSubstr("Binding execution: __unknown"));
}

TEST_F(ORBCefV8HandlerTest, AnEnvironmentReadIsHandledAndNeverLogged) {
  bool handled = false;
  const std::string log = CapturedLog([&] { handled = Call("__getEnv", {String("PATH")}); });
  EXPECT_TRUE(handled);
  EXPECT_THAT(log, Not(HasSubstr("Binding execution")));
  EXPECT_THAT(log, Not(HasSubstr("__getEnv")));
}

TEST_F(ORBCefV8HandlerTest, WithoutAUsableContextNothingIsLogged) {
  context->valid = false;
  const std::string log = CapturedLog([this] { Call("__notifyLoad"); });
  EXPECT_THAT(log, Not(HasSubstr("Binding execution")));
}

TEST_F(ORBCefV8HandlerTest, TheEnginesCallNeedsACurrentContext) {
  EXPECT_FALSE(handler->Execute("__notifyLoad", nullptr, {}, retval, exception));
  EXPECT_TRUE(main_frame->sent.empty());
}

}  // namespace
