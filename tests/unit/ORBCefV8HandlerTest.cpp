#include "ORBCefV8Handler.h"

#include "v8_doubles/RendererFixture.h"

namespace {

using testing::HasSubstr;
using testing::Not;
using v8_doubles::Array;
using v8_doubles::Double;
using v8_doubles::Int;
using v8_doubles::Null;
using v8_doubles::Object;
using v8_doubles::String;
using v8_doubles::Undefined;

class ORBCefV8HandlerTest : public v8_doubles::RendererTest {
 protected:
  bool Call(const std::string& name, const CefV8ValueList& arguments = {}) {
    return handler->ExecuteIn(context, name, arguments, retval, exception);
  }

  CefRefPtr<CefV8Value> Executor() const {
    return Object({{"resolve", resolve}, {"reject", reject}});
  }
  static CefRefPtr<CefV8Value> Request() {
    return Object({{"origin", String("o")}, {"name", String("n")}, {"value", String("v")}});
  }

  std::int32_t key = 5;
  std::int32_t next_key = key;
  CefRefPtr<ORBCefNativePromiseRegistry> registry = new ORBCefNativePromiseRegistry(next_key);
  CefRefPtr<v8_doubles::V8ValueDouble> resolve = v8_doubles::Function();
  CefRefPtr<v8_doubles::V8ValueDouble> reject = v8_doubles::Function();
  CefRefPtr<ORBCefV8Handler> handler = new ORBCefV8Handler(ORBCEF_RECORDMODE_NONE, registry);
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
  EXPECT_FALSE(Call("__registerPromise"));
  for (const char* name : {"__resolvePromise", "__rejectPromise", "__saveValue", "__loadValue"}) {
    EXPECT_FALSE(Call(name)) << name;
    EXPECT_FALSE(Call(name, {Int(0)})) << name;
  }
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

TEST_F(ORBCefV8HandlerTest, WithOneOfTheBindingsMissingNothingIsHandled) {
  const CefRefPtr<ORBCefV8BindingImpl> binding = new ORBCefV8BindingImpl;
  const CefRefPtr<ORBCefV8PromiseBinding> promises = new ORBCefV8PromiseBinding(registry);
  for (const auto& without : {CefRefPtr<ORBCefV8Handler>(new ORBCefV8Handler(
                                  ORBCEF_RECORDMODE_NONE, registry, nullptr, promises)),
                              CefRefPtr<ORBCefV8Handler>(new ORBCefV8Handler(
                                  ORBCEF_RECORDMODE_NONE, registry, binding, nullptr))}) {
    handler = without;
    EXPECT_FALSE(Call("__notifyLoad"));
    EXPECT_FALSE(Call("__getEnv", {String("PATH")}));
    EXPECT_FALSE(Call("__registerPromise", {Executor()}));
    EXPECT_FALSE(Call("__loadValue", {Int(1), Request()}));
  }
  EXPECT_TRUE(main_frame->sent.empty());
  EXPECT_TRUE(exception.empty());
  EXPECT_EQ(0u, registry->Size());
}

TEST_F(ORBCefV8HandlerTest, APromiseIsRegisteredAndSettledByItsKey) {
  EXPECT_TRUE(Call("__registerPromise", {Executor()}));
  EXPECT_EQ(1u, registry->Size());
  EXPECT_TRUE(Call("__resolvePromise", {Int(key), String("value")}));
  EXPECT_EQ(1, resolve->calls);
  EXPECT_EQ(0, reject->calls);
  EXPECT_EQ(0u, registry->Size());

  EXPECT_TRUE(Call("__registerPromise", {Executor()}));
  EXPECT_TRUE(Call("__rejectPromise", {Int(key + 1), String("value")}));
  EXPECT_EQ(1, resolve->calls);
  EXPECT_EQ(1, reject->calls);
  EXPECT_TRUE(exception.empty());
}

TEST_F(ORBCefV8HandlerTest, AKeyThatIsNoIntegerIsAnExceptionThatThePageNeverSees) {
  for (const auto& wrong : {String("1"), Double(1.5), Undefined(), Null(), Object({}), Array({}),
                            CefRefPtr<CefV8Value>()}) {
    EXPECT_FALSE(Call("__resolvePromise", {wrong, String("value")}));
    EXPECT_EQ("xocef._internals.resolvePromise: 1st arg should be an integer",
              exception.ToString());
    EXPECT_FALSE(Call("__rejectPromise", {wrong, String("value")}));
    EXPECT_EQ("xocef._internals.rejectPromise: 1st arg should be an integer", exception.ToString());
  }
}

TEST_F(ORBCefV8HandlerTest, AValueRequestCarriesItsPromisesKey) {
  EXPECT_TRUE(Call("__saveValue", {Int(key), Request()}));
  EXPECT_TRUE(Call("__loadValue", {Int(key + 1), Request()}));
  ASSERT_THAT(SentNames(), testing::ElementsAre("SaveValue", "LoadValue"));
  EXPECT_EQ(key, main_frame->sent[0].Arguments()->GetInt(0));
  EXPECT_EQ(key + 1, main_frame->sent[1].Arguments()->GetInt(0));
}

TEST_F(ORBCefV8HandlerTest, AValueRequestWhoseKeyIsNoNumberIsRefused) {
  for (const auto& wrong : {String("1"), Undefined(), Null(), CefRefPtr<CefV8Value>()}) {
    EXPECT_FALSE(Call("__saveValue", {wrong, Request()}));
    EXPECT_FALSE(Call("__loadValue", {wrong, Request()}));
    EXPECT_EQ("Invalid key for native promise executor", exception.ToString());
  }
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
