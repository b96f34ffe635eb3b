#include "ORBCefNativePromiseProxy.h"

#include "v8_doubles/RendererFixture.h"

namespace {

using v8_doubles::Array;
using v8_doubles::Function;
using v8_doubles::Int;
using v8_doubles::Null;
using v8_doubles::Object;
using v8_doubles::String;
using v8_doubles::Undefined;
using v8_doubles::V8ValueDouble;
using State = ORBCefNativePromiseProxy::State;

class ORBCefNativePromiseProxyTest : public v8_doubles::RendererTest {
 protected:
  CefRefPtr<ORBCefNativePromiseProxy> Make() {
    return ORBCefNativePromiseProxy::Create(context,
                                            Object({{"resolve", resolve}, {"reject", reject}}));
  }

  CefRefPtr<V8ValueDouble> resolve = Function();
  CefRefPtr<V8ValueDouble> reject = Function();
};

TEST_F(ORBCefNativePromiseProxyTest, ResolvesOnceInItsContextWithTheValueAndNoThis) {
  const auto proxy = Make();
  ASSERT_TRUE(proxy);
  EXPECT_EQ(State::kPending, proxy->GetState());
  int depth = 0;
  resolve->function = [&](const CefV8ValueList&) {
    depth = context->depth;
    return Undefined();
  };
  const CefRefPtr<CefV8Value> value = String("answer");
  EXPECT_TRUE(proxy->Resolve(value));
  EXPECT_EQ(State::kResolved, proxy->GetState());
  EXPECT_EQ(1, depth);
  EXPECT_EQ(0, context->depth);
  ASSERT_EQ(1u, resolve->last_arguments.size());
  EXPECT_EQ(value.get(), resolve->last_arguments[0].get());
  EXPECT_FALSE(resolve->last_object);

  EXPECT_FALSE(proxy->Resolve(value));
  EXPECT_FALSE(proxy->Reject(value));
  EXPECT_EQ(1, resolve->calls);
  EXPECT_EQ(0, reject->calls);
  EXPECT_EQ(State::kResolved, proxy->GetState());
}

TEST_F(ORBCefNativePromiseProxyTest, RejectsOnce) {
  const auto proxy = Make();
  EXPECT_TRUE(proxy->Reject(String("why")));
  EXPECT_EQ(State::kRejected, proxy->GetState());
  EXPECT_FALSE(proxy->Reject(String("why")));
  EXPECT_FALSE(proxy->Resolve(String("answer")));
  EXPECT_EQ(1, reject->calls);
  EXPECT_EQ(0, resolve->calls);
}

TEST_F(ORBCefNativePromiseProxyTest, UndefinedIsAValueAndANullHandleIsNone) {
  const auto proxy = Make();
  EXPECT_FALSE(proxy->Resolve(nullptr));
  EXPECT_EQ(State::kPending, proxy->GetState());
  EXPECT_TRUE(proxy->Resolve(Undefined()));
  EXPECT_TRUE(resolve->last_arguments.at(0)->IsUndefined());
}

TEST_F(ORBCefNativePromiseProxyTest, NothingIsCalledOnceTheContextIsReleased) {
  const auto proxy = Make();
  context->valid = false;
  EXPECT_FALSE(proxy->Resolve(Int(1)));
  EXPECT_FALSE(proxy->Reject(Int(1)));
  EXPECT_EQ(0, resolve->calls + reject->calls);
  EXPECT_EQ(0, context->exits);
  EXPECT_EQ(State::kPending, proxy->GetState());
}

TEST_F(ORBCefNativePromiseProxyTest, AFunctionThatIsNoneAnyMoreIsNotCalled) {
  const auto proxy = Make();
  resolve->valid = false;
  EXPECT_FALSE(proxy->Resolve(Int(1)));
  EXPECT_EQ(0, resolve->calls);
  EXPECT_EQ(State::kPending, proxy->GetState());
  EXPECT_EQ(0, context->depth);
  EXPECT_EQ(1, context->exits);
}

TEST_F(ORBCefNativePromiseProxyTest, AContextThatLetsNobodyEnterIsNotLeft) {
  const auto proxy = Make();
  context->lets_enter = false;
  EXPECT_TRUE(proxy->Resolve(Int(1)));
  EXPECT_EQ(1, resolve->calls);
  EXPECT_EQ(0, context->exits);
}

TEST_F(ORBCefNativePromiseProxyTest, NeedsAValidContext) {
  context->valid = false;
  EXPECT_FALSE(Make());
  EXPECT_FALSE(ORBCefNativePromiseProxy::Create(
      nullptr, Object({{"resolve", resolve}, {"reject", reject}})));
}

TEST_F(ORBCefNativePromiseProxyTest, NeedsAnObjectWithTwoFunctions) {
  for (const auto& wrong : std::vector<CefRefPtr<CefV8Value>>{
           nullptr, Null(), Undefined(), Int(1), String("resolve"), Array({}), Function(),
           Object({}), Object({{"resolve", resolve}}), Object({{"reject", reject}}),
           Object({{"resolve", nullptr}, {"reject", reject}}),
           Object({{"resolve", resolve}, {"reject", nullptr}}),
           Object({{"resolve", resolve}, {"reject", Int(1)}}),
           Object({{"resolve", Object({})}, {"reject", reject}})}) {
    EXPECT_FALSE(ORBCefNativePromiseProxy::Create(context, wrong));
  }
}

TEST_F(ORBCefNativePromiseProxyTest, WhatThePagesFunctionGivesBackIsDropped) {
  const auto proxy = Make();
  // A function that throws has no result.
  resolve->function = [](const CefV8ValueList&) { return CefRefPtr<CefV8Value>(); };
  EXPECT_TRUE(proxy->Resolve(Int(1)));
  EXPECT_EQ(State::kResolved, proxy->GetState());
}

}  // namespace
