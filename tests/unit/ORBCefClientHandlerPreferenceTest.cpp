// Preference requests of a page on their way through the client handler.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <memory>

#include "FakeTools.h"
#include "ORBCefClientHandler.h"
#include "engine_doubles/HostDoubles.h"
#include "engine_doubles/ViewDoubles.h"

namespace {

using engine_doubles::BrowserDouble;
using engine_doubles::Calls;
using engine_doubles::FrameDouble;
using engine_doubles::HostEvents;
using testing::ElementsAre;
using testing::IsEmpty;

// Tells whether another thread gets the view's lock while the promise is being settled.
class LockProbe : public FrameDouble {
 public:
  explicit LockProbe(Calls& calls) : FrameDouble(calls, "http://page.test/") {}

  void ExecuteJavaScript(const CefString&, const CefString&, int) override {
    settled = true;
    std::promise<void> entered;
    std::future<void> future = entered.get_future();
    other = std::async(std::launch::async, [this, entered = std::move(entered)]() mutable {
      client->GetWindow();
      entered.set_value();
    });
    is_free = future.wait_for(std::chrono::seconds(10)) == std::future_status::ready;
  }

  ORBCefClientHandler* client = nullptr;
  bool settled = false;
  bool is_free = false;
  std::future<void> other;
};

class ORBCefClientHandlerPreferenceTest : public testing::Test {
 protected:
  bool Receive(const char* name, size_t arguments) {
    const CefRefPtr<CefProcessMessage> message = CefProcessMessage::Create(name);
    message->GetArgumentList()->SetSize(arguments);
    message->GetArgumentList()->SetInt(0, 4);
    return _client->OnProcessMessageReceived(_browser, nullptr, PID_RENDERER, message);
  }

  FakeTools _tools;
  HostEvents _host;
  CefRefPtr<BrowserDouble> _browser = new BrowserDouble();
  CefRefPtr<ORBCefClientHandler> _client =
      new ORBCefClientHandler(_host.Table(), nullptr, "xortv://webapps/a/index.html");
};

TEST_F(ORBCefClientHandlerPreferenceTest, ARequestIsRunAndCountsAsHandled) {
  EXPECT_TRUE(Receive("SaveValue", 4));
  EXPECT_THAT(_tools.Calls(), ElementsAre("save_in_preference ORBCefStore_  "));
  EXPECT_EQ(1u, _browser->calls.size());
  EXPECT_TRUE(Receive("LoadValue", 3));
  EXPECT_EQ(2u, _browser->calls.size());
}

TEST_F(ORBCefClientHandlerPreferenceTest, ASaveOfThreeArgumentsIsNeverAnswered) {
  EXPECT_FALSE(Receive("SaveValue", 3));
  EXPECT_FALSE(Receive("LoadValue", 2));
  EXPECT_THAT(_tools.Calls(), IsEmpty());
  EXPECT_THAT(_browser->calls, IsEmpty());
}

TEST_F(ORBCefClientHandlerPreferenceTest, TheStoreIsAskedWithoutTheViewsLock) {
  const CefRefPtr<LockProbe> frame = new LockProbe(_browser->calls);
  frame->client = _client.get();
  _browser->main_frame = frame;
  EXPECT_TRUE(Receive("SaveValue", 4));
  EXPECT_TRUE(frame->settled);
  EXPECT_TRUE(frame->is_free);
}

TEST_F(ORBCefClientHandlerPreferenceTest, ADetachedViewAsksNoStore) {
  _client->Detach();
  EXPECT_FALSE(Receive("SaveValue", 4));
  EXPECT_FALSE(Receive("LoadValue", 3));
  EXPECT_THAT(_tools.Calls(), IsEmpty());
}

}  // namespace
