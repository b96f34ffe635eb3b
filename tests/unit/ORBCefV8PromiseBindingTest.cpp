#include "ORBCefV8PromiseBinding.h"

#include "v8_doubles/RendererFixture.h"

namespace {

using v8_doubles::Function;
using v8_doubles::Int;
using v8_doubles::Null;
using v8_doubles::Object;
using v8_doubles::SentMessage;
using v8_doubles::String;
using v8_doubles::Undefined;
using v8_doubles::V8ValueDouble;

class ORBCefV8PromiseBindingTest : public v8_doubles::RendererTest {
 protected:
  CefRefPtr<CefV8Value> Executor() const {
    return Object({{"resolve", resolve}, {"reject", reject}});
  }
  static CefRefPtr<CefV8Value> Request() {
    return Object({{"origin", String("o")}, {"name", String("n")}, {"value", String("v")}});
  }

  std::int32_t next_key = 9;
  CefRefPtr<V8ValueDouble> resolve = Function();
  CefRefPtr<V8ValueDouble> reject = Function();
  CefRefPtr<ORBCefNativePromiseRegistry> registry = new ORBCefNativePromiseRegistry(next_key);
  CefRefPtr<ORBCefV8PromiseBinding> binding = new ORBCefV8PromiseBinding(registry);
  CefRefPtr<CefV8Value> retval;
  CefString exception;
};

TEST_F(ORBCefV8PromiseBindingTest, RegistersAndSettles) {
  EXPECT_TRUE(binding->Register(context, Executor(), retval, exception));
  EXPECT_TRUE(binding->Resolve(9, String("a"), exception));
  EXPECT_TRUE(binding->Register(context, Executor(), retval, exception));
  EXPECT_TRUE(binding->Reject(10, String("b"), exception));
  EXPECT_EQ(1, resolve->calls);
  EXPECT_EQ(1, reject->calls);
  EXPECT_TRUE(exception.empty());
}

TEST_F(ORBCefV8PromiseBindingTest, AnExecutorWithoutRejectIsRefused) {
  EXPECT_FALSE(binding->Register(context, Object({{"resolve", resolve}}), retval, exception));
  EXPECT_EQ("Failed to instantiate native promise proxy", exception.ToString());
  EXPECT_FALSE(retval);
  EXPECT_EQ(9, next_key);
}

TEST_F(ORBCefV8PromiseBindingTest, ASecondSettlementSetsNoException) {
  binding->Register(context, Executor(), retval, exception);
  EXPECT_TRUE(binding->Resolve(9, Undefined(), exception));
  EXPECT_FALSE(binding->Resolve(9, Undefined(), exception));
  EXPECT_FALSE(binding->Reject(9, Undefined(), exception));
  EXPECT_TRUE(exception.empty());
  EXPECT_EQ(1, resolve->calls);
}

TEST_F(ORBCefV8PromiseBindingTest, AKeyThatWasNeverIssuedSetsNoException) {
  EXPECT_FALSE(binding->Resolve(1234, Undefined(), exception));
  EXPECT_FALSE(binding->Reject(-1, Undefined(), exception));
  EXPECT_TRUE(exception.empty());
}

TEST_F(ORBCefV8PromiseBindingTest, AMissingValueIsAnExceptionAndLeavesThePromiseWaiting) {
  binding->Register(context, Executor(), retval, exception);
  EXPECT_FALSE(binding->Resolve(9, nullptr, exception));
  EXPECT_EQ("Native promise resolver called with null value", exception.ToString());
  EXPECT_FALSE(binding->Reject(9, nullptr, exception));
  EXPECT_EQ("Native promise rejector called with null value", exception.ToString());
  EXPECT_TRUE(binding->Resolve(9, Null(), exception));
}

TEST_F(ORBCefV8PromiseBindingTest, WithoutARegistryEverythingFails) {
  binding = new ORBCefV8PromiseBinding(nullptr);
  const auto fails = [this](bool result) {
    EXPECT_FALSE(result);
    EXPECT_EQ("Native callback handler is null", exception.ToString());
    exception.clear();
  };
  fails(binding->Register(context, Executor(), retval, exception));
  fails(binding->Resolve(1, Int(1), exception));
  // The registry is asked for before the value and the key.
  fails(binding->Resolve(1, nullptr, exception));
  fails(binding->Reject(1, Int(1), exception));
  fails(binding->SaveValue(browser, 0, Request(), exception));
  fails(binding->LoadValue(browser, 0, Request(), exception));
  EXPECT_TRUE(main_frame->sent.empty());
}

TEST_F(ORBCefV8PromiseBindingTest, SendsARequestToSave) {
  EXPECT_TRUE(binding->SaveValue(browser, 3, Request(), exception));
  ASSERT_THAT(SentNames(), testing::ElementsAre("SaveValue"));
  const CefRefPtr<CefListValue> arguments = main_frame->sent[0].Arguments();
  ASSERT_EQ(4u, arguments->GetSize());
  EXPECT_EQ(3, arguments->GetInt(0));
  EXPECT_EQ("o", arguments->GetString(1).ToString());
  EXPECT_EQ("n", arguments->GetString(2).ToString());
  EXPECT_EQ("v", arguments->GetString(3).ToString());
}

TEST_F(ORBCefV8PromiseBindingTest, SendsARequestToLoadWithoutTheValue) {
  EXPECT_TRUE(binding->LoadValue(browser, 3, Request(), exception));
  ASSERT_THAT(SentNames(), testing::ElementsAre("LoadValue"));
  const CefRefPtr<CefListValue> arguments = main_frame->sent[0].Arguments();
  ASSERT_EQ(3u, arguments->GetSize());
  EXPECT_EQ("o", arguments->GetString(1).ToString());
  EXPECT_EQ("n", arguments->GetString(2).ToString());
}

TEST_F(ORBCefV8PromiseBindingTest, APropertyThatIsNoTextIsSentAsAnEmptyOne) {
  const auto request = Object({{"origin", Int(1)}, {"name", Null()}});
  EXPECT_TRUE(binding->SaveValue(browser, 1, request, exception));
  const CefRefPtr<CefListValue> arguments = main_frame->sent.at(0).Arguments();
  for (size_t i = 1; i < 4; ++i) {
    EXPECT_EQ("", arguments->GetString(i).ToString()) << i;
  }
}

TEST_F(ORBCefV8PromiseBindingTest, APropertyThatTheEngineDoesNotGiveStopsTheRequest) {
  for (const char* name : {"origin", "name", "value"}) {
    std::map<std::string, CefRefPtr<CefV8Value>> properties = {
        {"origin", String("o")}, {"name", String("n")}, {"value", String("v")}};
    properties[name] = nullptr;
    EXPECT_FALSE(binding->SaveValue(browser, 1, Object(properties), exception)) << name;
    EXPECT_EQ(std::string(name) == "value",
              binding->LoadValue(browser, 1, Object(properties), exception))
        << name;
  }
  EXPECT_FALSE(binding->SaveValue(browser, 1, nullptr, exception));
  EXPECT_FALSE(binding->LoadValue(browser, 1, nullptr, exception));
  EXPECT_TRUE(exception.empty());
  EXPECT_THAT(SentNames(), testing::ElementsAre("LoadValue"));
}

TEST_F(ORBCefV8PromiseBindingTest, AKeyBelowOneIsInvalid) {
  for (const std::int32_t key : {0, -1}) {
    exception.clear();
    EXPECT_FALSE(binding->SaveValue(browser, key, Request(), exception));
    EXPECT_EQ("Invalid key for native promise executor", exception.ToString());
    exception.clear();
    EXPECT_FALSE(binding->LoadValue(browser, key, Request(), exception));
    EXPECT_EQ("Invalid key for native promise executor", exception.ToString());
  }
  EXPECT_TRUE(main_frame->sent.empty());
}

TEST_F(ORBCefV8PromiseBindingTest, WithoutABrowserNothingIsSentAndNothingIsSaid) {
  EXPECT_FALSE(binding->SaveValue(nullptr, 0, Request(), exception));
  EXPECT_FALSE(binding->LoadValue(nullptr, 1, Request(), exception));
  EXPECT_TRUE(exception.empty());
}

}  // namespace
