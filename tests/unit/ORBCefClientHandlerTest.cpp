// Construction, state and life cycle of a view.
#include "ORBCefClientHandler.h"

#include <gmock/gmock.h>

#include <thread>

#include "CapturedLog.h"
#include "FakeTools.h"
#include "FreshProcess.h"
#include "ORBCefClientRegistry.h"
#include "ORBCefLivingBrowsers.h"
#include "engine_doubles/HostDoubles.h"
#include "engine_doubles/ViewDoubles.h"
#include "include/cef_process_message.h"
#include "platform/Windowing.h"

namespace {

using engine_doubles::BrowserDouble;
using engine_doubles::Calls;
using engine_doubles::HostAuthDelegate;
using engine_doubles::HostEvents;
using testing::HasSubstr;
using Lines = std::vector<std::string>;
constexpr char kHome[] = "https://home.test/start";
constexpr char kService[] = "https://sso.test/";

class ORBCefClientHandlerTest : public testing::Test {
 protected:
  FakeTools _tools;
  void TearDown() override { EXPECT_EQ(FakeTools::LiveRecords(), 0); }

  CefRefPtr<ORBCefClientHandler> Make(const char* url = kHome, bool with_delegate = false) {
    return new ORBCefClientHandler(_host.Table(), with_delegate ? _delegate.Table() : nullptr, url);
  }

  CefRefPtr<ORBCefClientHandler> MakeCreated(const char* url = kHome) {
    const auto client = Make(url);
    client->OnAfterCreated(_browser);
    return client;
  }

  void ConfigureService() {
    _tools.sys_settings[{"7DAstrolabeAccess", "7DTurnstile_URL"}] = "https://sso.test";
  }

  HostEvents _host;
  HostAuthDelegate _delegate;
  CefRefPtr<BrowserDouble> _browser = new BrowserDouble(11);
};

TEST_F(ORBCefClientHandlerTest, AnswersAsEveryHandlerThatItImplements) {
  const CefRefPtr<ORBCefClientHandler> handler = Make();
  CefClient& client = *handler;
  EXPECT_TRUE(client.GetContextMenuHandler());
  EXPECT_TRUE(client.GetDisplayHandler());
  EXPECT_TRUE(client.GetDownloadHandler());
  EXPECT_TRUE(client.GetDragHandler());
  EXPECT_TRUE(client.GetFocusHandler());
  EXPECT_TRUE(client.GetJSDialogHandler());
  EXPECT_TRUE(client.GetKeyboardHandler());
  EXPECT_TRUE(client.GetLifeSpanHandler());
  EXPECT_TRUE(client.GetLoadHandler());
  EXPECT_TRUE(client.GetRenderHandler());
  EXPECT_TRUE(client.GetRequestHandler());
  EXPECT_FALSE(client.GetAudioHandler());
  EXPECT_FALSE(client.GetCommandHandler());
  EXPECT_FALSE(client.GetDialogHandler());
  EXPECT_FALSE(client.GetFindHandler());
  EXPECT_FALSE(client.GetFrameHandler());
  EXPECT_FALSE(client.GetPrintHandler());
  bool disable_default_handling = true;
  EXPECT_TRUE(handler->GetResourceRequestHandler(nullptr, nullptr, nullptr, false, false, "",
                                                 disable_default_handling));
  EXPECT_TRUE(disable_default_handling);
}

TEST_F(ORBCefClientHandlerTest, StartsWithItsDefaults) {
  const auto client = Make("");
  ORBCefViewSettings& settings = client->Settings();
  EXPECT_TRUE(settings.reload_enabled);
  EXPECT_TRUE(settings.history_enabled);
  EXPECT_TRUE(settings.zoom_by_page_enabled);
  EXPECT_FALSE(settings.forward_console);
  EXPECT_FALSE(settings.local_files_allowed);
  EXPECT_TRUE(settings.external_navigation_allowed);
  EXPECT_FALSE(settings.js_dialogs_allowed);
  EXPECT_FALSE(settings.focused_form_control);
  EXPECT_EQ(settings.popup_mode, 1);
  EXPECT_FALSE(client->IsClosing());
  EXPECT_FALSE(client->IsLoginPending());
  EXPECT_FALSE(client->GetBrowser());
  EXPECT_EQ(client->GetBrowserId(), 0);
  EXPECT_EQ(client->GetWindow(), 0u);
}

TEST_F(ORBCefClientHandlerTest, HoldsBothTablesUntilItIsDestroyed) {
  _delegate.ticket_url = kHome;
  auto client = Make(kHome, true);
  EXPECT_EQ(_host.references, 1);
  EXPECT_EQ(_delegate.references, 1);
  client = nullptr;
  EXPECT_EQ(_host.references, 0);
  EXPECT_EQ(_delegate.references, 0);
}

TEST_F(ORBCefClientHandlerTest, KeepsTheCanonicalFormOfItsStartURL) {
  EXPECT_EQ(Make("HTTPS://Home.Test")->Settings().home_url.Get().ToString(), "https://home.test/");
}

TEST_F(ORBCefClientHandlerTest, AnUnparsableStartURLAsksForNoTicket) {
  const auto client = Make("no url at all", true);
  EXPECT_TRUE(client->Settings().home_url.Get().empty());
  EXPECT_TRUE(_delegate.asked_for.empty());
}

TEST_F(ORBCefClientHandlerTest, ATicketRedirectsTheFirstLoadOfTheStartURL) {
  _delegate.ticket_url = "https://home.test/start?ticket=1";
  _delegate.turnstile_url = "https://sso.test";
  const auto client = Make(kHome, true);
  EXPECT_EQ(_delegate.asked_for, Lines{kHome});
  EXPECT_EQ(client->TakeRedirect(kHome).ToString(), "https://home.test/start?ticket=1");
  EXPECT_TRUE(client->TakeRedirect(kHome).empty());
  EXPECT_FALSE(client->IsLoginPending());
  EXPECT_EQ(client->GetTurnstileURL(), kService);
}

TEST_F(ORBCefClientHandlerTest, ARefusedTicketDropsTheDelegateAndTakesTheLogInPath) {
  ConfigureService();
  CefRefPtr<ORBCefClientHandler> client;
  EXPECT_THAT(CapturedLog([&] { client = Make(kHome, true); }),
              HasSubstr("LEDGERWebAuthDelegate failed to get transient ticket for URL: "
                        "https://home.test/start"));
  EXPECT_EQ(_delegate.references, 0);
  EXPECT_TRUE(client->IsLoginPending());
  EXPECT_EQ(client->GetTurnstileURL(), kService);
}

TEST_F(ORBCefClientHandlerTest, ARefusedTicketWithoutAServiceLeavesNothingPending) {
  CefRefPtr<ORBCefClientHandler> client;
  EXPECT_THAT(CapturedLog([&] { client = Make(kHome, true); }),
              HasSubstr("The current session is not authenticated with a CAS."));
  EXPECT_FALSE(client->IsLoginPending());
}

TEST_F(ORBCefClientHandlerTest, AViewWithoutADelegateIsNotAuthenticatedWhateverIsConfigured) {
  ConfigureService();
  CefRefPtr<ORBCefClientHandler> client;
  EXPECT_THAT(CapturedLog([&] { client = Make(); }),
              HasSubstr("The current session is not authenticated with a CAS."));
  EXPECT_FALSE(client->IsLoginPending());
  EXPECT_EQ(client->GetTurnstileURL(), kService);
}

TEST_F(ORBCefClientHandlerTest, ADelegateWithoutASessionIsKeptButNotAsked) {
  _delegate.is_authenticated = false;
  const auto client = Make(kHome, true);
  EXPECT_TRUE(_delegate.asked_for.empty());
  EXPECT_EQ(_delegate.references, 1);
}

TEST_F(ORBCefClientHandlerTest, OnlyWebPagesOnTheMainThreadAskForATicket) {
  Make("file:///tmp/a.html", true);
  Make("xortv://webapps/a.html", true);
  _tools.on_main_thread = false;
  Make(kHome, true);
  EXPECT_TRUE(_delegate.asked_for.empty());
}

TEST_F(ORBCefClientHandlerTest, ATestApplicationGetsNeitherTicketNorService) {
  fresh_process::Run([&] {
    _tools.Set("ORBCEF_TESTAPP", "");
    ConfigureService();
    _delegate.ticket_url = kHome;
    const auto client = Make(kHome, true);
    EXPECT_TRUE(_delegate.asked_for.empty());
    EXPECT_EQ(client->GetTurnstileURL(), "");
  });
}

TEST_F(ORBCefClientHandlerTest, SetURLStoresTheCanonicalFormOrNothing) {
  const auto client = Make();
  client->SetURL("HTTP://A.Test/b c");
  EXPECT_EQ(client->Settings().home_url.Get().ToString(), "http://a.test/b%20c");
  client->SetURL("no url");
  EXPECT_TRUE(client->Settings().home_url.Get().empty());
  client->SetURL("");
  EXPECT_TRUE(client->Settings().home_url.Get().empty());
}

TEST_F(ORBCefClientHandlerTest, ADownloadDirectoryEndsInASeparator) {
  const auto client = Make();
  const auto directory = [&client] { return client->Settings().download_dir.Get().ToString(); };
#if defined(OS_WIN)
  client->SetDownloadDirectory("C:/a/b");
  EXPECT_EQ(directory(), "C:\\a\\b\\");
  client->SetDownloadDirectory("C:\\a\\");
  EXPECT_EQ(directory(), "C:\\a\\");
#else
  client->SetDownloadDirectory("/a/b");
  EXPECT_EQ(directory(), "/a/b/");
  client->SetDownloadDirectory("/a/");
  EXPECT_EQ(directory(), "/a/");
#endif
  client->SetDownloadDirectory("");
  EXPECT_EQ(directory(), "");
}

TEST_F(ORBCefClientHandlerTest, TheFirstBrowserBecomesTheViews) {
  _browser->host->window = platform::FromWindowHandle<CefWindowHandle>(77);
  const auto client = MakeCreated();
  EXPECT_EQ(client->GetBrowser().get(), _browser.get());
  EXPECT_EQ(client->GetBrowserId(), 11);
  EXPECT_EQ(client->GetWindow(), 77u);
  EXPECT_EQ(_host.lines, Lines{"state 1"});
  client->DoClose(_browser);
}

TEST_F(ORBCefClientHandlerTest, APopupIsToldAgainAndChangesNothing) {
  const auto client = MakeCreated();
  const CefRefPtr<BrowserDouble> popup = new BrowserDouble(12);
  client->OnAfterCreated(popup);
  EXPECT_EQ(client->GetBrowser().get(), _browser.get());
  EXPECT_EQ(client->GetBrowserId(), 11);
  EXPECT_EQ(_host.lines, (Lines{"state 1", "state 1"}));
  client->DoClose(_browser);
}

TEST_F(ORBCefClientHandlerTest, ANullBrowserIsNotCreated) {
  const auto client = Make();
  client->OnAfterCreated(nullptr);
  EXPECT_TRUE(_host.lines.empty());
}

TEST_F(ORBCefClientHandlerTest, TheRegistryKeepsAViewAliveWhileItsBrowserLives) {
  const size_t before = ORBCefClientRegistry::Instance().Size();
  ORBCefClientHandler* const client = MakeCreated().get();
  EXPECT_EQ(ORBCefClientRegistry::Instance().Size(), before + 1);
  EXPECT_EQ(_host.references, 1);
  const CefRefPtr<ORBCefClientHandler> engines_reference(client);
  EXPECT_FALSE(client->DoClose(_browser));
  EXPECT_EQ(ORBCefClientRegistry::Instance().Size(), before);
  EXPECT_TRUE(client->HasOneRef());
}

// Meant: the view counts as closing although its own browser lives on.
TEST_F(ORBCefClientHandlerTest, APopupThatClosesMarksTheView) {
  const auto client = MakeCreated();
  const CefRefPtr<BrowserDouble> popup = new BrowserDouble(12);
  client->OnAfterCreated(popup);
  client->DoClose(popup);
  EXPECT_TRUE(client->IsClosing());
  client->OnBeforeClose(popup);
  EXPECT_FALSE(client->GetBrowser());
  client->OnBeforeClose(_browser);
}

TEST_F(ORBCefClientHandlerTest, ABrowserThatArrivesAfterItsHostLeftIsClosed) {
  const auto client = Make();
  client->Detach();
  EXPECT_TRUE(client->IsDetached());
  client->OnAfterCreated(_browser);
  EXPECT_EQ(_browser->calls, Calls{"CloseBrowser force"});
  client->DoClose(_browser);
  client->OnBeforeClose(_browser);
}

TEST_F(ORBCefClientHandlerTest, EveryBrowserIsCountedWhileItLives) {
  ORBCefLivingBrowsers& living = ORBCefLivingBrowsers::Instance();
  const size_t before = living.Size();
  const auto client = Make();
  const CefRefPtr<BrowserDouble> view = new BrowserDouble(1001);
  const CefRefPtr<BrowserDouble> popup = new BrowserDouble(1002);
  client->OnAfterCreated(view);
  client->OnAfterCreated(popup);
  EXPECT_EQ(living.Size(), before + 2);
  client->DoClose(popup);
  client->OnBeforeClose(popup);
  client->DoClose(view);
  client->OnBeforeClose(view);
  EXPECT_EQ(living.Size(), before);
}

TEST_F(ORBCefClientHandlerTest, ClosingStopsALoadAndMarksTheView) {
  const auto client = MakeCreated();
  _browser->is_loading = true;
  EXPECT_FALSE(client->DoClose(_browser));
  EXPECT_TRUE(client->IsClosing());
  EXPECT_EQ(_browser->calls, Calls{"StopLoad"});
  EXPECT_TRUE(client->GetBrowser());
  client->OnBeforeClose(_browser);
  EXPECT_FALSE(client->GetBrowser());
}

TEST_F(ORBCefClientHandlerTest, ClosingAnIdlePageStopsNothing) {
  const auto client = MakeCreated();
  client->DoClose(_browser);
  EXPECT_TRUE(_browser->calls.empty());
}

TEST_F(ORBCefClientHandlerTest, TheLifeOfAViewIsLogged) {
  const std::string log = CapturedLog([this] {
    const auto client = MakeCreated();
    client->DoClose(_browser);
    client->OnBeforeClose(_browser);
  });
  for (const char* line : {"Created.", "Destruction requested.", "Closing.",
                           "Browser shutdown is done. Now destroying the client handler."}) {
    EXPECT_THAT(log, HasSubstr(std::string("[Browser Process] Browser #11 - ") + line));
  }
}

TEST_F(ORBCefClientHandlerTest, TheObserverGoesWithTheBrowser) {
  const auto client = MakeCreated();
  const auto held = std::make_shared<int>(0);
  client->SetURLObserver([held](const CefString&) {});
  EXPECT_EQ(held.use_count(), 2);
  client->DoClose(_browser);
  client->OnBeforeClose(_browser);
  EXPECT_EQ(held.use_count(), 1);
}

TEST_F(ORBCefClientHandlerTest, DetachTakesTheHostsTablesAway) {
  _browser->host->window = platform::FromWindowHandle<CefWindowHandle>(77);
  const auto client = Make(kHome, true);
  client->SetParentWindow(5);
  client->OnAfterCreated(_browser);
  const auto held = std::make_shared<int>(0);
  client->SetURLObserver([held](const CefString&) {});
  client->Detach();
  EXPECT_EQ(_host.references, 0);
  EXPECT_EQ(_delegate.references, 0);
  EXPECT_EQ(held.use_count(), 1);
  EXPECT_EQ(client->GetWindow(), 0u);
  EXPECT_EQ(client->GetParentWindow(), 0u);
  // The browser stays the view's.
  EXPECT_TRUE(client->GetBrowser());
  _host.lines.clear();
  client->OnTitleChange(_browser, "unheard");
  client->OnAddressChange(_browser, _browser->main_frame, "unheard");
  EXPECT_TRUE(_host.lines.empty());
  client->Detach();
  EXPECT_EQ(_host.references, 0);
  client->DoClose(_browser);
}

TEST_F(ORBCefClientHandlerTest, DetachFromAnotherThreadIsRefused) {
  _delegate.ticket_url = kHome;
  const auto client = Make(kHome, true);
  _tools.on_main_thread = false;
  EXPECT_THAT(CapturedLog([&] { client->Detach(); }),
              HasSubstr("This method should be called on the main thread"));
  EXPECT_EQ(_host.references, 1);
  EXPECT_EQ(_delegate.references, 1);
}

TEST_F(ORBCefClientHandlerTest, ScriptsGivenBeforeTheBrowserRunAfterTheFirstLoad) {
  const auto client = Make();
  client->ExecuteJavaScript("a()", "", 1);
  client->OnAfterCreated(_browser);
  client->ExecuteJavaScript("b()", "", 1);
  EXPECT_EQ(_browser->calls.size(), 1u) << "An idle page takes a script at once.";
  client->OnLoadingStateChange(_browser, false, false, false);
  ASSERT_EQ(_browser->calls.size(), 2u);
  EXPECT_THAT(_browser->calls[1], HasSubstr("Execute a() @ ChromiumEmbeddedPlugin"));
  client->DoClose(_browser);
}

TEST_F(ORBCefClientHandlerTest, ScriptsStillQueuedAtCloseAreDropped) {
  auto client = MakeCreated();
  _browser->is_loading = true;
  client->ExecuteJavaScript("a()", "", 1);
  client->DoClose(_browser);
  client->OnBeforeClose(_browser);
  client = nullptr;
  EXPECT_EQ(_browser->calls, Calls{"StopLoad"});
}

TEST_F(ORBCefClientHandlerTest, AHostMayCallBackIntoTheViewFromItsCallbacks) {
  const auto client = MakeCreated();
  _host.on_event = [&client] {
    client->SetURL("http://other.test/");
    client->ExecuteJavaScript("a()", "", 1);
  };
  client->OnTitleChange(_browser, "x");
  EXPECT_EQ(client->Settings().home_url.Get().ToString(), "http://other.test/");
  EXPECT_EQ(_browser->calls.size(), 1u);
  _host.on_event = nullptr;
  client->DoClose(_browser);
}

TEST_F(ORBCefClientHandlerTest, AReplayFailsInWords) {
  const auto client = Make();
  const ReplayDelegateResult result = client->ReplayInteraction("{}").get();
  EXPECT_EQ(result.code, 200);
  EXPECT_EQ(result.message.ToString(), "No valid instance for ORBCefReplayDelegate.");
}

TEST_F(ORBCefClientHandlerTest, OffTheEnginesThreadsEveryCallbackGivesItsFixedAnswer) {
  fresh_process::Run([&] {
    _tools.Unset("ORBCEF_NO_TID_CHECK");
    const auto client = Make();
    client->OnAfterCreated(_browser);
    EXPECT_FALSE(client->GetBrowser());
    EXPECT_TRUE(client->DoClose(_browser));
    EXPECT_FALSE(client->IsClosing());
    client->OnBeforeClose(_browser);
    client->OnTitleChange(_browser, "x");
    client->OnAddressChange(_browser, _browser->main_frame, "x");
    client->OnStatusMessage(_browser, "x");
    client->OnLoadingStateChange(_browser, false, false, false);
    client->Settings().error_url.Set("http://error.test/");
    client->OnLoadError(_browser, _browser->main_frame, ERR_NAME_NOT_RESOLVED, "", "");
    client->Settings().forward_console = true;
    EXPECT_FALSE(client->OnConsoleMessage(_browser, LOGSEVERITY_INFO, "", "", 1));
    bool suppress = false;
    EXPECT_FALSE(client->OnJSDialog(_browser, "", JSDIALOGTYPE_ALERT, "", "", nullptr, suppress));
    EXPECT_FALSE(suppress);
    CefRect rect(1, 2, 3, 4);
    EXPECT_FALSE(client->GetRootScreenRect(_browser, rect));
    client->GetViewRect(_browser, rect);
    EXPECT_EQ(rect, CefRect(1, 2, 3, 4));
    int x = 1;
    int y = 2;
    EXPECT_FALSE(client->GetScreenPoint(_browser, 5, 6, x, y));
    const CefRefPtr<CefRequest> request = CefRequest::Create();
    request->SetURL("http://a.test/");
    EXPECT_TRUE(client->OnBeforeBrowse(_browser, _browser->main_frame, request, false, false));
    EXPECT_EQ(client->OnBeforeResourceLoad(_browser, nullptr, request, nullptr), RV_CANCEL);
    bool allowed = true;
    client->OnProtocolExecution(_browser, nullptr, request, allowed);
    EXPECT_TRUE(allowed);
    EXPECT_FALSE(client->OnProcessMessageReceived(_browser, nullptr, PID_RENDERER,
                                                  CefProcessMessage::Create("OnUnload")));
    EXPECT_TRUE(_host.lines.empty());
    EXPECT_TRUE(_browser->calls.empty());
  });
}

}  // namespace
