// A renderer's messages to a view: which of them it takes.
#include <gtest/gtest.h>

#include "FakeTools.h"
#include "ORBCefClientHandler.h"
#include "engine_doubles/HostDoubles.h"
#include "engine_doubles/ViewDoubles.h"
#include "include/cef_process_message.h"

namespace {

using engine_doubles::BrowserDouble;
using engine_doubles::HostEvents;
using Lines = std::vector<std::string>;

class ORBCefClientHandlerMessageTest : public testing::Test {
 protected:
  void SetUp() override { _client = Make(); }
  void TearDown() override {
    _client = nullptr;
    EXPECT_EQ(FakeTools::LiveRecords(), 0);
  }

  CefRefPtr<ORBCefClientHandler> Make() {
    return new ORBCefClientHandler(_host.Table(), nullptr, "https://home.test/start");
  }

  bool Receive(const char* name, CefProcessId source = PID_RENDERER) {
    return _client->OnProcessMessageReceived(_browser, nullptr, source,
                                             CefProcessMessage::Create(name));
  }

  FakeTools _tools;
  HostEvents _host;
  CefRefPtr<BrowserDouble> _browser = new BrowserDouble(11);
  CefRefPtr<ORBCefClientHandler> _client;
};

TEST_F(ORBCefClientHandlerMessageTest, ActsOnARenderersMessage) {
  EXPECT_TRUE(Receive("OnUnload"));
  EXPECT_EQ(_host.lines, Lines{"state 3"});
}

TEST_F(ORBCefClientHandlerMessageTest, IgnoresOtherSources) {
  EXPECT_FALSE(Receive("OnUnload", PID_BROWSER));
  EXPECT_TRUE(_host.lines.empty());
}

TEST_F(ORBCefClientHandlerMessageTest, ADetachedViewIgnoresAllMessages) {
  _client->Detach();
  EXPECT_FALSE(Receive("OnUnload"));
  EXPECT_FALSE(Receive("LoadHome"));
  EXPECT_TRUE(_browser->calls.empty());
}

TEST_F(ORBCefClientHandlerMessageTest, NullArgumentsAreRefused) {
  EXPECT_FALSE(_client->OnProcessMessageReceived(_browser, nullptr, PID_RENDERER, nullptr));
  EXPECT_FALSE(_client->OnProcessMessageReceived(nullptr, nullptr, PID_RENDERER,
                                                 CefProcessMessage::Create("OnUnload")));
}

// Record and replay messages have no place in an ordinary run.
TEST_F(ORBCefClientHandlerMessageTest, RecordAndReplayMessagesAreUnhandled) {
  for (const orbceftypes_recordmode mode :
       {ORBCEF_RECORDMODE_NONE, ORBCEF_RECORDMODE_CAPTURE, ORBCEF_RECORDMODE_REPLAY}) {
    _tools.record_mode = mode;
    _client = Make();
    for (const char* name :
         {"RecordData", "ReplayResult", "ReplayQuery", "OnInterpreterLoaded", "ReplayAbort"}) {
      EXPECT_FALSE(Receive(name)) << name << " in mode " << mode;
    }
  }
  EXPECT_TRUE(_host.lines.empty() && _browser->calls.empty());
}

}  // namespace
