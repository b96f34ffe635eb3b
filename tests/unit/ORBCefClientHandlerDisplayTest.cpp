// What a view tells of its page, and where it is.
#include <gmock/gmock.h>

#include <thread>

#include "CapturedLog.h"
#include "FakeTools.h"
#include "ORBCefClientHandler.h"
#include "engine_doubles/HostDoubles.h"
#include "engine_doubles/ViewDoubles.h"

namespace {

using engine_doubles::BrowserDouble;
using engine_doubles::Calls;
using engine_doubles::FrameDouble;
using engine_doubles::HostEvents;
using testing::HasSubstr;
using testing::Not;
using Lines = std::vector<std::string>;

class DownloadDouble : public CefBeforeDownloadCallback {
 public:
  void Continue(const CefString& path, bool show_dialog) override {
    answers.push_back(path.ToString() + (show_dialog ? " ask" : " direct"));
  }
  std::vector<std::string> answers;

 private:
  IMPLEMENT_REFCOUNTING(DownloadDouble);
};

class ORBCefClientHandlerDisplayTest : public testing::Test {
 protected:
  void MakeWindow(uintptr_t window) {
    _browser->host->window = platform::FromWindowHandle<CefWindowHandle>(window);
    _client->OnAfterCreated(_browser);
    _host.lines.clear();
  }
  void TearDown() override { _client->DoClose(_browser); }

  FakeTools _tools;
  HostEvents _host;
  CefRefPtr<BrowserDouble> _browser = new BrowserDouble(11);
  CefRefPtr<ORBCefClientHandler> _client = new ORBCefClientHandler(_host.Table(), nullptr, "");
};

TEST_F(ORBCefClientHandlerDisplayTest, TheMainFramesAddressGoesToTheObserverThenToTheHost) {
  _client->SetURLObserver(
      [this](const CefString& url) { _host.lines.push_back("observed " + url.ToString()); });
  const std::string log = CapturedLog(
      [this] { _client->OnAddressChange(_browser, _browser->main_frame, "http://a.test/"); });
  EXPECT_EQ(_host.lines, (Lines{"observed http://a.test/", "address http://a.test/"}));
  EXPECT_THAT(log, HasSubstr("[Browser Process] Browser #0 - URL changed: http://a.test/"));
}

TEST_F(ORBCefClientHandlerDisplayTest, OtherFramesHaveNoAddress) {
  _browser->main_frame->is_main = false;
  _client->OnAddressChange(_browser, _browser->main_frame, "http://a.test/");
  _client->OnAddressChange(_browser, nullptr, "http://a.test/");
  EXPECT_TRUE(_host.lines.empty());
}

TEST_F(ORBCefClientHandlerDisplayTest, TheObserverIsCalledWithoutTheViewsLock) {
  _client->SetURLObserver([this](const CefString&) {
    std::thread([this] { _client->SetURL("http://b.test/"); }).join();
  });
  _client->OnAddressChange(_browser, _browser->main_frame, "http://a.test/");
  EXPECT_EQ(_client->Settings().home_url.Get().ToString(), "http://b.test/");
}

TEST_F(ORBCefClientHandlerDisplayTest, TheTitleIsToldAndLogged) {
  const std::string log = CapturedLog([this] { _client->OnTitleChange(_browser, "A Title"); });
  EXPECT_EQ(_host.lines, Lines{"title A Title"});
  EXPECT_THAT(log, HasSubstr("Title changed: A Title"));
}

TEST_F(ORBCefClientHandlerDisplayTest, TheStatusIsOnlyLogged) {
  const std::string log =
      CapturedLog([this] { _client->OnStatusMessage(_browser, "over a link"); });
  EXPECT_TRUE(_host.lines.empty());
  EXPECT_THAT(log, HasSubstr("Status message: over a link"));
}

TEST_F(ORBCefClientHandlerDisplayTest, ConsoleLinesNeedTheirFlag) {
  EXPECT_FALSE(_client->OnConsoleMessage(_browser, LOGSEVERITY_INFO, "text", "source", 3));
  EXPECT_TRUE(_host.lines.empty());
  _client->Settings().forward_console = true;
  EXPECT_FALSE(_client->OnConsoleMessage(_browser, LOGSEVERITY_INFO, "text", "source", 3));
  EXPECT_EQ(_host.lines, Lines{"console text source:3"});
}

TEST_F(ORBCefClientHandlerDisplayTest, LoadingIsToldWithTheFocusedFramesURL) {
  _browser->focused_frame = new FrameDouble(_browser->calls, "http://frame.test/");
  const std::string log = CapturedLog([this] {
    _client->OnLoadingStateChange(_browser, true, false, false);
    _client->OnLoadingStateChange(_browser, false, false, false);
  });
  EXPECT_EQ(_host.lines, (Lines{"loading 1 http://frame.test/", "loading 0 http://frame.test/"}));
  EXPECT_THAT(log, HasSubstr("Loading state change: start."));
  EXPECT_THAT(log, HasSubstr("Loading state change: stop."));
}

TEST_F(ORBCefClientHandlerDisplayTest, WithoutAFocusedFrameScriptsWaitForTheNextEndOfLoading) {
  MakeWindow(0);
  _browser->is_loading = true;
  _client->ExecuteJavaScript("a()", "", 1);
  _browser->focused_frame = nullptr;
  _client->OnLoadingStateChange(_browser, false, false, false);
  EXPECT_TRUE(_browser->calls.empty());
  EXPECT_TRUE(_host.lines.empty());
  _browser->focused_frame = _browser->main_frame;
  _client->OnLoadingStateChange(_browser, true, false, false);
  EXPECT_TRUE(_browser->calls.empty());
  _client->OnLoadingStateChange(_browser, false, false, false);
  EXPECT_EQ(_browser->calls.size(), 1u);
}

// Meant: nothing bounds the wait, neither in time nor in number.
TEST_F(ORBCefClientHandlerDisplayTest, AReloadThatNeverEndsKeepsAllScriptsWaiting) {
  MakeWindow(0);
  _browser->is_loading = true;
  constexpr int kScripts = 1000;
  for (int i = 0; i < kScripts; ++i) {
    _client->ExecuteJavaScript(std::to_string(i), "", 1);
    _client->OnLoadingStateChange(_browser, true, false, false);
    _client->OnAddressChange(_browser, _browser->main_frame, "http://page.test/");
    _client->OnTitleChange(_browser, "reloading");
  }
  EXPECT_TRUE(_browser->calls.empty());
  _client->OnLoadingStateChange(_browser, false, false, false);
  ASSERT_EQ(_browser->calls.size(), static_cast<size_t>(kScripts));
  for (int i = 0; i < kScripts; ++i) {
    ASSERT_THAT(_browser->calls[i], HasSubstr("Execute " + std::to_string(i) + " @ "));
  }
}

class ORBCefClientHandlerLoadErrorTest : public ORBCefClientHandlerDisplayTest {
 protected:
  void SetUp() override { _client->Settings().error_url.Set("http://error.test/"); }
  Calls Fail(int code) {
    _browser->calls.clear();
    _client->OnLoadError(_browser, _browser->main_frame, static_cast<cef_errorcode_t>(code), "text",
                         "http://failed.test/");
    return _browser->calls;
  }
};

TEST_F(ORBCefClientHandlerLoadErrorTest, ConnectionErrorsOfTheMainFrameLoadTheErrorPage) {
  const Calls loaded{"LoadURL http://error.test/"};
  EXPECT_EQ(Fail(-105), loaded);
  EXPECT_EQ(Fail(-100), loaded);
  EXPECT_EQ(Fail(-199), loaded);
  EXPECT_EQ(Fail(-3), Calls{});
  EXPECT_EQ(Fail(-99), Calls{});
  EXPECT_EQ(Fail(-200), Calls{});
}

TEST_F(ORBCefClientHandlerLoadErrorTest, NoErrorPageLoadsWithoutItsURL) {
  _client->Settings().error_url.Set("");
  EXPECT_EQ(Fail(-105), Calls{});
}

TEST_F(ORBCefClientHandlerLoadErrorTest, AFailedSubframeIsOnlyLogged) {
  _browser->main_frame->is_main = false;
  const std::string log = CapturedLog([this] { EXPECT_EQ(Fail(-105), Calls{}); });
  EXPECT_THAT(log, HasSubstr("Load error.\n\tCode: NAME_NOT_RESOLVED (-105)\n\tDescription: text\n"
                             "\tURL: http://failed.test/"));
  _client->OnLoadError(_browser, nullptr, ERR_NAME_NOT_RESOLVED, "", "");
  EXPECT_TRUE(_browser->calls.empty());
}

TEST_F(ORBCefClientHandlerDisplayTest, ARenderProcessThatDiedIsOnlyLogged) {
  const std::string log =
      CapturedLog([this] { _client->OnRenderProcessTerminated(_browser, TS_PROCESS_CRASHED); });
  EXPECT_THAT(log, HasSubstr("A render process has been abnormally terminated.\n\tStatus: "
                             "PROCESS_CRASHED"));
  EXPECT_TRUE(_host.lines.empty());
  EXPECT_TRUE(_browser->calls.empty());
}

class ORBCefClientHandlerJSDialogTest : public ORBCefClientHandlerDisplayTest {
 protected:
  std::string Show(cef_jsdialog_type_t type) {
    return CapturedLog([this, type] {
      // Starts as the opposite of what is expected.
      _suppressed = _client->Settings().js_dialogs_allowed;
      EXPECT_FALSE(_client->OnJSDialog(_browser, "http://a.test", type, "text", "prompt", nullptr,
                                       _suppressed));
    });
  }
  bool _suppressed = false;
};

TEST_F(ORBCefClientHandlerJSDialogTest, DialogsAreSuppressedAndLoggedByTheirKind) {
  EXPECT_THAT(Show(JSDIALOGTYPE_ALERT),
              HasSubstr("Suppressed JS alert dialog\nOrigin: http://a.test\nText: text"));
  EXPECT_TRUE(_suppressed);
  EXPECT_THAT(Show(JSDIALOGTYPE_CONFIRM), HasSubstr("Suppressed JS confirm dialog\nOrigin: "));
  EXPECT_THAT(Show(JSDIALOGTYPE_PROMPT), HasSubstr("Suppressed JS prompt dialog\nOrigin: "));
}

TEST_F(ORBCefClientHandlerJSDialogTest, AnUnknownKindHasNoFirstLineAndNoLinePrefix) {
  const std::string log = Show(static_cast<cef_jsdialog_type_t>(3));
  EXPECT_THAT(log, HasSubstr("] Origin: http://a.test\nText: text"));
  EXPECT_THAT(log, Not(HasSubstr("Suppressed")));
  EXPECT_THAT(log, Not(HasSubstr("[Browser Process]")));
}

TEST_F(ORBCefClientHandlerJSDialogTest, AllowedDialogsAreShownAndNotLogged) {
  _client->Settings().js_dialogs_allowed = true;
  EXPECT_EQ(Show(JSDIALOGTYPE_ALERT), "");
  EXPECT_FALSE(_suppressed);
}

TEST_F(ORBCefClientHandlerDisplayTest, ADownloadGoesToItsDirectoryOrAsks) {
  const CefRefPtr<DownloadDouble> callback = new DownloadDouble();
  _client->OnBeforeDownload(_browser, nullptr, "name.txt", callback);
  _client->Settings().download_dir.Set("/down/");
  _client->OnBeforeDownload(_browser, nullptr, "name.txt", callback);
  _client->OnBeforeDownload(_browser, nullptr, "name.txt", nullptr);
  EXPECT_EQ(callback->answers, (Lines{"name.txt ask", "/down/name.txt direct"}));
  EXPECT_TRUE(static_cast<CefDownloadHandler&>(*_client).CanDownload(_browser, "", "GET"));
}

TEST_F(ORBCefClientHandlerDisplayTest, AWindowlessViewHasTheSizeThatItsHostGave) {
  _client->SetOSRSize(640, 480);
  CefRect rect(9, 9, 9, 9);
  _client->GetViewRect(_browser, rect);
  EXPECT_EQ(rect, CefRect(0, 0, 640, 480));
}

TEST_F(ORBCefClientHandlerDisplayTest, AClosingViewLeavesTheRectangle) {
  _client->SetOSRSize(640, 480);
  _client->DoClose(_browser);
  CefRect rect(9, 9, 9, 9);
  _client->GetViewRect(_browser, rect);
  EXPECT_EQ(rect, CefRect(9, 9, 9, 9));
}

TEST_F(ORBCefClientHandlerDisplayTest, ADeadWindowLeavesTheRectangles) {
  MakeWindow(0x7FFFFFF0);
  CefRect rect(9, 9, 9, 9);
  _client->GetViewRect(_browser, rect);
  EXPECT_EQ(rect, CefRect(9, 9, 9, 9));
  EXPECT_FALSE(_client->GetRootScreenRect(_browser, rect));
  EXPECT_EQ(rect, CefRect(9, 9, 9, 9));
}

TEST_F(ORBCefClientHandlerDisplayTest, WithoutAWindowTheScreenIsTheRoot) {
  platform::Rect desktop;
  const bool has_screen = platform::DesktopRect(desktop);
  CefRect rect(9, 9, 9, 9);
  EXPECT_EQ(_client->GetRootScreenRect(_browser, rect), has_screen);
  EXPECT_EQ(rect, CefRect(desktop.x, desktop.y, desktop.width, desktop.height));
}

TEST_F(ORBCefClientHandlerDisplayTest, OnlyAWindowHasScreenPoints) {
  int x = 1;
  int y = 2;
  EXPECT_FALSE(_client->GetScreenPoint(_browser, 5, 6, x, y));
  EXPECT_EQ(x, 1);
  EXPECT_EQ(y, 2);
  // A dead window keeps the point and still answers yes.
  MakeWindow(0x7FFFFFF0);
  EXPECT_TRUE(_client->GetScreenPoint(_browser, 5, 6, x, y));
  EXPECT_EQ(x, 5);
  EXPECT_EQ(y, 6);
}

}  // namespace
