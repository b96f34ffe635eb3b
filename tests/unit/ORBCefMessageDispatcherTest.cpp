#include "ORBCefMessageDispatcher.h"

#include <gtest/gtest.h>

#include "engine_doubles/HostDoubles.h"
#include "engine_doubles/ViewDoubles.h"

namespace {

using engine_doubles::BrowserDouble;
using engine_doubles::Calls;
using engine_doubles::HostEvents;
using Lines = std::vector<std::string>;

class ORBCefMessageDispatcherTest : public testing::Test {
 protected:
  bool Dispatch(const char* name) {
    return ORBCefMessageDispatcher::Dispatch(
        name, {_browser, _sender, _arguments, _events, _settings, _request});
  }

  HostEvents _host;
  ORBCefBrowserEvents _events{_host.Table()};
  ORBCefViewSettings _settings;
  CefRefPtr<BrowserDouble> _browser = new BrowserDouble();
  CefRefPtr<CefFrame> _sender;
  CefRefPtr<CefListValue> _arguments = CefListValue::Create();
  std::unique_ptr<ORBCefPreferenceRequest> _request;
};

TEST_F(ORBCefMessageDispatcherTest, V8ContextTellsTheFlag) {
  _arguments->SetBool(0, true);
  EXPECT_TRUE(Dispatch("V8Context"));
  _arguments->SetBool(0, false);
  EXPECT_TRUE(Dispatch("V8Context"));
  EXPECT_EQ(_host.lines, (Lines{"v8 1", "v8 0"}));
}

TEST_F(ORBCefMessageDispatcherTest, TheDocumentsStatesAreToldAsTwoAndThree) {
  EXPECT_TRUE(Dispatch("OnDOMContentLoaded"));
  EXPECT_TRUE(Dispatch("OnUnload"));
  EXPECT_EQ(_host.lines, (Lines{"state 2", "state 3"}));
}

TEST_F(ORBCefMessageDispatcherTest, AZoomStepIsScaledAppliedAndTold) {
  _browser->host->zoom_level = 1;
  _arguments->SetDouble(0, 50);
  EXPECT_TRUE(Dispatch("OnZoomChanged"));
  EXPECT_DOUBLE_EQ(_browser->host->zoom_level, 1.5);
  EXPECT_EQ(_host.lines, Lines{"zoom 0.500000"});
}

TEST_F(ORBCefMessageDispatcherTest, AZoomStepOfAForbiddenPageIsToldAllTheSame) {
  _settings.zoom_by_page_enabled = false;
  _arguments->SetDouble(0, -50);
  EXPECT_TRUE(Dispatch("OnZoomChanged"));
  EXPECT_TRUE(_browser->calls.empty());
  EXPECT_EQ(_host.lines, Lines{"zoom -0.500000"});
}

TEST_F(ORBCefMessageDispatcherTest, AZoomResetWorksWhateverThePageMay) {
  _settings.zoom_by_page_enabled = false;
  _browser->host->zoom_level = 3;
  EXPECT_TRUE(Dispatch("OnZoomReset"));
  EXPECT_DOUBLE_EQ(_browser->host->zoom_level, 0);
  EXPECT_EQ(_host.lines, Lines{"zoom 0.000000"});
}

TEST_F(ORBCefMessageDispatcherTest, DocumentSizeTellsBothValues) {
  _arguments->SetInt(0, 640);
  _arguments->SetInt(1, 480);
  EXPECT_TRUE(Dispatch("DocumentSize"));
  EXPECT_EQ(_host.lines, Lines{"size 640x480"});
}

TEST_F(ORBCefMessageDispatcherTest, AMissingArgumentReadsAsZero) {
  EXPECT_TRUE(Dispatch("DocumentSize"));
  EXPECT_TRUE(Dispatch("V8Context"));
  EXPECT_TRUE(Dispatch("OnZoomChanged"));
  EXPECT_EQ(_host.lines, (Lines{"size 0x0", "v8 0", "zoom 0.000000"}));
}

TEST_F(ORBCefMessageDispatcherTest, FocusedNodeChangedIsOnlyStored) {
  _arguments->SetBool(0, true);
  EXPECT_TRUE(Dispatch("FocusedNodeChanged"));
  EXPECT_TRUE(_settings.focused_form_control);
  _arguments->SetBool(0, false);
  EXPECT_TRUE(Dispatch("FocusedNodeChanged"));
  EXPECT_FALSE(_settings.focused_form_control);
  EXPECT_TRUE(_host.lines.empty());
}

TEST_F(ORBCefMessageDispatcherTest, SendStringTellsEachItemAsText) {
  const CefRefPtr<CefListValue> list = CefListValue::Create();
  list->SetString(0, "a");
  list->SetString(1, "");
  list->SetInt(2, 5);
  list->SetString(3, "\xE2\x82\xAC");
  _arguments->SetList(0, list);
  EXPECT_TRUE(Dispatch("SendString"));
  EXPECT_EQ(_host.lines, Lines{"strings 4|a|||\xE2\x82\xAC"});
}

TEST_F(ORBCefMessageDispatcherTest, SendStringWithoutAListIsRefused) {
  EXPECT_FALSE(Dispatch("SendString"));
  _arguments->SetString(0, "no list");
  EXPECT_FALSE(Dispatch("SendString"));
  EXPECT_TRUE(_host.lines.empty());
}

TEST_F(ORBCefMessageDispatcherTest, SendStringWithAnEmptyListCallsNothingAndCounts) {
  _arguments->SetList(0, CefListValue::Create());
  EXPECT_TRUE(Dispatch("SendString"));
  EXPECT_TRUE(_host.lines.empty());
}

TEST_F(ORBCefMessageDispatcherTest, LoadHomeLoadsTheHomePage) {
  _settings.home_url.Set("http://home.test/");
  EXPECT_TRUE(Dispatch("LoadHome"));
  EXPECT_EQ(_browser->calls, Calls{"LoadURL http://home.test/"});
}

TEST_F(ORBCefMessageDispatcherTest, LoadHomeNeedsAMainFrame) {
  _browser->main_frame = nullptr;
  EXPECT_FALSE(Dispatch("LoadHome"));
}

TEST_F(ORBCefMessageDispatcherTest, OpensAndClosesTheDeveloperTools) {
  EXPECT_TRUE(Dispatch("OpenDevTools"));
  EXPECT_TRUE(Dispatch("CloseDevTools"));
  EXPECT_EQ(_browser->calls, (Calls{"ShowDevTools Developer Tools", "CloseDevTools"}));
}

TEST_F(ORBCefMessageDispatcherTest, AValueRequestIsKeptForTheCallerToStart) {
  _arguments->SetInt(0, 3);
  _arguments->SetString(1, "repository");
  _arguments->SetString(2, "key");
  EXPECT_TRUE(Dispatch("LoadValue"));
  ASSERT_TRUE(_request);
  EXPECT_TRUE(_request->is_read);
  EXPECT_EQ(3, _request->promise_id);

  _arguments->SetString(3, "value");
  EXPECT_TRUE(Dispatch("SaveValue"));
  ASSERT_TRUE(_request);
  EXPECT_FALSE(_request->is_read);
  EXPECT_EQ("value", _request->value);
  EXPECT_TRUE(_browser->calls.empty());
}

TEST_F(ORBCefMessageDispatcherTest, AValueRequestIsAnsweredWhereItCameFrom) {
  _arguments->SetSize(4);
  _sender = new engine_doubles::FrameDouble(_browser->calls, "http://next.test/");
  for (const char* name : {"LoadValue", "SaveValue"}) {
    EXPECT_TRUE(Dispatch(name));
    ASSERT_TRUE(_request);
    EXPECT_EQ(_sender.get(), _request->frame.get()) << name;
  }
}

TEST_F(ORBCefMessageDispatcherTest, AValueRequestWithTooFewArgumentsIsUnhandled) {
  EXPECT_FALSE(Dispatch("LoadValue"));
  EXPECT_FALSE(Dispatch("SaveValue"));
  _arguments->SetSize(2);
  EXPECT_FALSE(Dispatch("LoadValue"));
  _arguments->SetSize(3);
  EXPECT_FALSE(Dispatch("SaveValue"));
  EXPECT_FALSE(_request);
}

TEST_F(ORBCefMessageDispatcherTest, AValueRequestNeedsAMainFrame) {
  _arguments->SetSize(4);
  _browser->main_frame = nullptr;
  EXPECT_FALSE(Dispatch("SaveValue"));
  EXPECT_FALSE(Dispatch("LoadValue"));
  EXPECT_FALSE(_request);
}

TEST_F(ORBCefMessageDispatcherTest, MessagesThatNobodyReadsAreLeftUnhandled) {
  for (const char* name : {"OnLoad", "DeferAddEventListeners", "RecordableDoc", "", "v8context",
                           "V8Context ", "subprocess:created"}) {
    EXPECT_FALSE(Dispatch(name)) << name;
  }
  EXPECT_TRUE(_host.lines.empty());
  EXPECT_TRUE(_browser->calls.empty());
}

TEST_F(ORBCefMessageDispatcherTest, NothingActsWithoutABrowserOrArguments) {
  const auto browser = _browser;
  _browser = nullptr;
  EXPECT_FALSE(Dispatch("OnZoomReset"));
  _browser = browser;
  _arguments = nullptr;
  EXPECT_FALSE(Dispatch("OnUnload"));
  EXPECT_TRUE(_host.lines.empty());
}

TEST_F(ORBCefMessageDispatcherTest, ABrowserWithoutItsHostStillTellsTheZoom) {
  _browser->host = nullptr;
  _arguments->SetDouble(0, 100);
  EXPECT_TRUE(Dispatch("OnZoomChanged"));
  EXPECT_TRUE(Dispatch("OnZoomReset"));
  EXPECT_TRUE(Dispatch("CloseDevTools"));
  EXPECT_EQ(_host.lines, (Lines{"zoom 1.000000", "zoom 0.000000"}));
}

}  // namespace
