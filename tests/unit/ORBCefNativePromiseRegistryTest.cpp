#include "ORBCefNativePromiseRegistry.h"

#include <limits>

#include "v8_doubles/RendererFixture.h"

namespace {

using v8_doubles::Function;
using v8_doubles::Int;
using v8_doubles::Object;
using v8_doubles::String;
using v8_doubles::Undefined;
using v8_doubles::V8ValueDouble;

constexpr std::int32_t kLargestKey = std::numeric_limits<std::int32_t>::max();

struct Promise {
  CefRefPtr<V8ValueDouble> resolve = Function();
  CefRefPtr<V8ValueDouble> reject = Function();

  CefRefPtr<CefV8Value> Executor() const {
    return Object({{"resolve", resolve}, {"reject", reject}});
  }
  int Calls() const { return resolve->calls + reject->calls; }
};

class ORBCefNativePromiseRegistryTest : public v8_doubles::RendererTest {
 protected:
  std::int32_t Register(const Promise& promise) {
    return registry->Register(context, promise.Executor());
  }

  std::int32_t next_key = 1;
  CefRefPtr<ORBCefNativePromiseRegistry> registry = new ORBCefNativePromiseRegistry(next_key);
};

TEST_F(ORBCefNativePromiseRegistryTest, KeysCountFromOne) {
  const Promise promise;
  EXPECT_EQ(1, Register(promise));
  EXPECT_EQ(2, Register(promise));
  EXPECT_EQ(2u, registry->Size());
}

TEST_F(ORBCefNativePromiseRegistryTest, TheProcessHasOneCounter) {
  fresh_process::Run([&] {
    const CefRefPtr<ORBCefNativePromiseRegistry> first = new ORBCefNativePromiseRegistry;
    const CefRefPtr<ORBCefNativePromiseRegistry> second = new ORBCefNativePromiseRegistry;
    EXPECT_EQ(1, first->Register(context, Promise().Executor()));
    EXPECT_EQ(2, second->Register(context, Promise().Executor()));
    EXPECT_EQ(3, first->Register(context, Promise().Executor()));
  });
}

TEST_F(ORBCefNativePromiseRegistryTest, AfterTheLargestKeyComesOne) {
  next_key = kLargestKey;
  EXPECT_EQ(kLargestKey, Register({}));
  EXPECT_EQ(1, Register({}));
  EXPECT_EQ(2, Register({}));
}

TEST_F(ORBCefNativePromiseRegistryTest, AKeyThatStillWaitsKeepsItsFirstPromise) {
  const Promise first;
  const Promise second;
  ASSERT_EQ(1, Register(first));
  next_key = 1;
  EXPECT_EQ(1, Register(second));
  EXPECT_EQ(1u, registry->Size());
  EXPECT_EQ(2, next_key);
  EXPECT_TRUE(registry->Resolve(1, Int(0)));
  EXPECT_EQ(1, first.resolve->calls);
  EXPECT_EQ(0, second.Calls());
}

TEST_F(ORBCefNativePromiseRegistryTest, AFailedRegistrationUsesUpNoKey) {
  EXPECT_EQ(ORBCefNativePromiseRegistry::kNoKey, registry->Register(context, String("no")));
  EXPECT_EQ(ORBCefNativePromiseRegistry::kNoKey, registry->Register(nullptr, Promise().Executor()));
  EXPECT_EQ(0u, registry->Size());
  EXPECT_EQ(1, Register({}));
}

TEST_F(ORBCefNativePromiseRegistryTest, EachKeySettlesItsOwnPromise) {
  const Promise first;
  const Promise second;
  const std::int32_t first_key = Register(first);
  const std::int32_t second_key = Register(second);
  EXPECT_TRUE(registry->Reject(second_key, String("why")));
  EXPECT_EQ(0, first.Calls());
  EXPECT_EQ(1, second.reject->calls);
  EXPECT_TRUE(registry->Resolve(first_key, Undefined()));
  EXPECT_EQ(1, first.resolve->calls);
  EXPECT_EQ(0u, registry->Size());
}

TEST_F(ORBCefNativePromiseRegistryTest, ASecondSettlementIsIgnored) {
  const Promise promise;
  const std::int32_t key = Register(promise);
  EXPECT_TRUE(registry->Resolve(key, Int(1)));
  EXPECT_FALSE(registry->Resolve(key, Int(2)));
  EXPECT_FALSE(registry->Reject(key, Int(3)));
  EXPECT_EQ(1, promise.Calls());
}

TEST_F(ORBCefNativePromiseRegistryTest, AKeyOfNoOneIsIgnored) {
  for (const std::int32_t key : {0, -1, 1, 77, kLargestKey, std::numeric_limits<int>::min()}) {
    EXPECT_FALSE(registry->Resolve(key, Int(1))) << key;
    EXPECT_FALSE(registry->Reject(key, Int(1))) << key;
  }
}

TEST_F(ORBCefNativePromiseRegistryTest, ALateSettlementRemovesTheEntryAndCallsNothing) {
  const Promise promise;
  const std::int32_t key = Register(promise);
  context->valid = false;
  EXPECT_FALSE(registry->Resolve(key, Int(1)));
  EXPECT_EQ(0, promise.Calls());
  EXPECT_EQ(0u, registry->Size());
}

TEST_F(ORBCefNativePromiseRegistryTest, ANullValueRemovesTheEntryToo) {
  const Promise promise;
  const std::int32_t key = Register(promise);
  EXPECT_FALSE(registry->Resolve(key, nullptr));
  EXPECT_FALSE(registry->Resolve(key, Int(1)));
  EXPECT_EQ(0, promise.Calls());
}

TEST_F(ORBCefNativePromiseRegistryTest, AFunctionThatSettlesItsOwnKeyAgainFindsItGone) {
  const Promise promise;
  const std::int32_t key = Register(promise);
  bool again = true;
  promise.resolve->function = [&](const CefV8ValueList&) {
    again = registry->Resolve(key, Int(2));
    return Undefined();
  };
  EXPECT_TRUE(registry->Resolve(key, Int(1)));
  EXPECT_FALSE(again);
  EXPECT_EQ(1, promise.Calls());
}

TEST_F(ORBCefNativePromiseRegistryTest, AFunctionMayRegisterAPromise) {
  const Promise promise;
  const Promise next;
  const std::int32_t key = Register(promise);
  std::int32_t next_promise = 0;
  promise.resolve->function = [&](const CefV8ValueList&) {
    next_promise = Register(next);
    return Undefined();
  };
  EXPECT_TRUE(registry->Resolve(key, Int(1)));
  EXPECT_EQ(key + 1, next_promise);
  EXPECT_TRUE(registry->Resolve(next_promise, Int(1)));
}

TEST_F(ORBCefNativePromiseRegistryTest, NothingSweepsPromisesOfAReleasedContext) {
  std::vector<std::int32_t> keys;
  for (int i = 0; i < 10000; ++i) {
    keys.push_back(Register({}));
  }
  context->valid = false;
  EXPECT_EQ(10000u, registry->Size());

  // The next page's promises are not disturbed by the answers that come for the old one.
  context = new v8_doubles::V8ContextDouble(browser, main_frame);
  const Promise promise;
  const std::int32_t key = Register(promise);
  for (const std::int32_t old : keys) {
    EXPECT_FALSE(registry->Resolve(old, Int(1)));
  }
  EXPECT_EQ(1u, registry->Size());
  EXPECT_EQ(0, promise.Calls());
  EXPECT_TRUE(registry->Resolve(key, Int(1)));
}

TEST_F(ORBCefNativePromiseRegistryTest, ASettledPromiseHoldsItsPageNoLonger) {
  Promise promise;
  const std::int32_t key = Register(promise);
  EXPECT_FALSE(promise.resolve->HasOneRef());
  EXPECT_TRUE(registry->Resolve(key, Int(1)));
  EXPECT_TRUE(promise.resolve->HasOneRef());
  EXPECT_TRUE(promise.reject->HasOneRef());
  EXPECT_TRUE(context->HasOneRef());
}

}  // namespace
