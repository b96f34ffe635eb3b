// The adapter behind the browser table.
#include "ORBCefPluginClient.h"

#include <gmock/gmock.h>

#include "CapturedLog.h"
#include "FakeTools.h"
#include "FreshProcess.h"
#include "ORBCefEngine.h"
#include "TempDirectory.h"
#include "engine_doubles/HostDoubles.h"
#include "engine_doubles/ViewDoubles.h"
#include "platform/Files.h"

namespace {

using engine_doubles::BrowserDouble;
using engine_doubles::Calls;
using engine_doubles::HostEvents;
using Rect = ORBCefPluginClient::Rect;
using Lines = std::vector<std::string>;

// What is done to windows, in its order.
Lines g_window_calls;

constexpr ORBCefPluginClient::WindowOperations kWindows = {
    [](platform::WindowHandle window, int x, int y, int width, int height) {
      g_window_calls.push_back("move " + std::to_string(window) + ": " + std::to_string(x) + "," +
                               std::to_string(y) + " " + std::to_string(width) + "x" +
                               std::to_string(height));
      return true;
    },
    [](platform::WindowHandle window) {
      g_window_calls.push_back("invalidate " + std::to_string(window));
      return true;
    },
    [](platform::WindowHandle window) {
      g_window_calls.push_back("shrink " + std::to_string(window));
      return true;
    }};

class ORBCefPluginClientTest : public testing::Test {
 protected:
  void SetUp() override { g_window_calls.clear(); }
  void TearDown() override { _handler->DoClose(_browser); }

  // The browser of the view arrives, in window 77 of parent 5.
  void Arrive() {
    _browser->host->window = platform::FromWindowHandle<CefWindowHandle>(77);
    _handler->SetParentWindow(5);
    _handler->OnAfterCreated(_browser);
  }

  FakeTools _tools;
  HostEvents _host;
  CefRefPtr<BrowserDouble> _browser = new BrowserDouble();
  CefRefPtr<ORBCefClientHandler> _handler = new ORBCefClientHandler(_host.Table(), nullptr, "");
  CefRefPtr<ORBCefPluginClient> _client =
      new ORBCefPluginClient(_handler, "http://home.test/", kWindows);
};

TEST_F(ORBCefPluginClientTest, StartsWithItsDefaults) {
  const ORBCefPluginClient::Flags& flags = _client->GetFlags();
  EXPECT_FALSE(flags.flag0);
  EXPECT_TRUE(flags.flag1);
  EXPECT_TRUE(flags.javascript_enabled);
  EXPECT_TRUE(flags.flag3);
  EXPECT_TRUE(flags.history_enabled);
  EXPECT_TRUE(flags.reload_enabled);
  EXPECT_TRUE(flags.zoom_by_page_enabled);
  EXPECT_FALSE(flags.forward_console);
  EXPECT_FALSE(flags.local_files_allowed);
  EXPECT_TRUE(flags.external_navigation_allowed);
  EXPECT_EQ(_client->HomeURL().ToString(), "http://home.test/");
  EXPECT_TRUE(_client->ErrorURL().empty());
  EXPECT_TRUE(_client->DownloadDirectory().empty());
  EXPECT_TRUE(_client->CurrentURL().empty());
}

TEST_F(ORBCefPluginClientTest, MirrorsAreUpdatedInTheHandlerAtOnce) {
  ORBCefViewSettings& settings = _handler->Settings();
  _client->SetHistoryEnabled(false);
  EXPECT_FALSE(settings.history_enabled);
  _client->SetReloadEnabled(false);
  EXPECT_FALSE(settings.reload_enabled);
  _client->SetZoomByPageEnabled(false);
  EXPECT_FALSE(settings.zoom_by_page_enabled);
  _client->SetForwardConsole(true);
  EXPECT_TRUE(settings.forward_console);
  _client->SetLocalFilesAllowed(true);
  EXPECT_TRUE(settings.local_files_allowed);
  _client->SetExternalNavigationAllowed(false);
  EXPECT_FALSE(settings.external_navigation_allowed);
  _client->SetErrorURL("http://error.test/");
  EXPECT_EQ(settings.error_url.Get().ToString(), "http://error.test/");
  EXPECT_EQ(_client->ErrorURL().ToString(), "http://error.test/");
  _client->SetHomeURL("HTTP://Other.test");
  EXPECT_EQ(settings.home_url.Get().ToString(), "http://other.test/");
  EXPECT_EQ(_client->HomeURL().ToString(), "HTTP://Other.test");
}

TEST_F(ORBCefPluginClientTest, OnlyAnExistingAbsoluteDirectoryTakesDownloads) {
  const TempDirectory directory;
  const std::string file = directory.Write("file.txt", "x");
  _client->SetDownloadDirectory(directory.Path());
  const std::string kept = _handler->Settings().download_dir.Get().ToString();
  EXPECT_EQ(kept, directory.Path() + platform::kSeparator);
  for (const std::string& refused : {std::string("relative\\dir"), std::string("relative/dir"),
                                     file, directory.Join("missing")}) {
    _client->SetDownloadDirectory(refused);
    EXPECT_EQ(_client->DownloadDirectory().ToString(), directory.Path()) << refused;
    EXPECT_EQ(_handler->Settings().download_dir.Get().ToString(), kept) << refused;
  }
  _client->SetDownloadDirectory("");
  EXPECT_TRUE(_client->DownloadDirectory().empty());
  EXPECT_TRUE(_handler->Settings().download_dir.Get().empty());
}

// Meant: the extents of a new view are its right and bottom edge.
TEST_F(ORBCefPluginClientTest, TheWindowsExtentsAreItsRightAndBottomEdge) {
  CefWindowInfo info;
  ORBCefPluginClient::FillWindowInfo(reinterpret_cast<void*>(5), {10, 20, 300, 400}, info);
  EXPECT_EQ(platform::ToWindowHandle(info.parent_window), 5u);
  EXPECT_EQ(info.bounds.x, 10);
  EXPECT_EQ(info.bounds.y, 20);
  EXPECT_EQ(info.bounds.width, 310);
  EXPECT_EQ(info.bounds.height, 420);
  EXPECT_EQ(info.windowless_rendering_enabled, 0);
#if defined(OS_WIN)
  EXPECT_EQ(info.style, 0x56010000u);
#endif
}

TEST_F(ORBCefPluginClientTest, BadRectanglesWrapAround) {
  CefWindowInfo info;
  ORBCefPluginClient::FillWindowInfo(nullptr, {INT32_MAX, INT32_MIN, 1, -1}, info);
  EXPECT_EQ(info.bounds.width, INT32_MIN);
  EXPECT_EQ(info.bounds.height, INT32_MAX);
}

#if !defined(OS_WIN)
TEST_F(ORBCefPluginClientTest, AnEmptyWindowIsOnePixelLargeOnX11) {
  CefWindowInfo info;
  ORBCefPluginClient::FillWindowInfo(nullptr, {0, 7, 0, -7}, info);
  EXPECT_EQ(info.bounds.width, 1);
  EXPECT_EQ(info.bounds.height, 1);
}
#endif

TEST_F(ORBCefPluginClientTest, TheSettingsOfABrowserAreFixedButForJavaScript) {
  CefBrowserSettings settings;
  _client->FillBrowserSettings(settings);
  EXPECT_EQ(settings.windowless_frame_rate, 60);
  EXPECT_EQ(settings.background_color, 0xFFFFFFFFu);
  EXPECT_EQ(settings.javascript, STATE_ENABLED);
  EXPECT_EQ(settings.javascript_close_windows, STATE_DISABLED);
  for (const cef_state_t state :
       {settings.remote_fonts, settings.javascript_access_clipboard, settings.javascript_dom_paste,
        settings.image_loading, settings.image_shrink_standalone_to_fit, settings.text_area_resize,
        settings.tab_to_links, settings.local_storage, settings.databases}) {
    EXPECT_EQ(state, STATE_ENABLED);
  }
  EXPECT_EQ(settings.webgl, STATE_DEFAULT);
  EXPECT_EQ(settings.chrome_status_bubble, STATE_DEFAULT);
  EXPECT_EQ(settings.default_font_size, 0);
  EXPECT_EQ(settings.default_encoding.length, 0u);
  _client->SetJavaScriptEnabled(false);
  _client->FillBrowserSettings(settings);
  EXPECT_EQ(settings.javascript, STATE_DISABLED);
}

TEST_F(ORBCefPluginClientTest, ValuesKeptBeforeTheBrowserAreGivenAtItsCreation) {
  _client->SetHistoryEnabled(false);
  _handler->Settings().history_enabled = true;
  _handler->Settings().forward_console = true;
  _client->Create(reinterpret_cast<void*>(5), {1, 2, 3, 4}, "http://first.test/");
  EXPECT_FALSE(_handler->Settings().history_enabled);
  EXPECT_FALSE(_handler->Settings().forward_console);
  EXPECT_EQ(_handler->GetParentWindow(), 5u);
  EXPECT_EQ(_client->CurrentURL().ToString(), "http://first.test/");
}

TEST_F(ORBCefPluginClientTest, AWindowlessViewTakesItsSizeInsteadOfAWindow) {
  fresh_process::Run([&] {
    _tools.Set("ORBCEF_ENABLE_OSR", "1");
    _client->Create(reinterpret_cast<void*>(5), {1, 2, 30, 40}, "");
    CefRect rect;
    _handler->GetViewRect(nullptr, rect);
    EXPECT_EQ(rect, CefRect(0, 0, 30, 40));
    _client->SetBounds({5, 6, 70, 80});
    _handler->GetViewRect(nullptr, rect);
    EXPECT_EQ(rect, CefRect(0, 0, 70, 80));
    _handler->OnAfterCreated(_browser);
    _client->ApplyBounds({5, 6, 71, 81});
    EXPECT_TRUE(_browser->calls.empty());
    EXPECT_TRUE(g_window_calls.empty());
  });
}

TEST_F(ORBCefPluginClientTest, BoundsMoveAndRepaintTheWindow) {
  Arrive();
  _client->ApplyBounds({1, 2, 30, 40});
  EXPECT_EQ(_browser->calls, Calls{"NotifyMoveOrResizeStarted"});
  EXPECT_EQ(g_window_calls, (Lines{"move 77: 1,2 30x40", "invalidate 77"}));
}

TEST_F(ORBCefPluginClientTest, BoundsWithoutAWindowAreNotKept) {
  _client->ApplyBounds({1, 2, 30, 40});
  Arrive();
  _client->ApplyVisible(false);
  _client->ApplyVisible(true);
  EXPECT_EQ(g_window_calls, (Lines{"shrink 77", "move 77: 0,0 0x0", "invalidate 77"}));
}

TEST_F(ORBCefPluginClientTest, HidingShrinksAndShowingBringsTheLastBoundsBack) {
  Arrive();
  _client->ApplyBounds({1, 2, 30, 40});
  g_window_calls.clear();
  _client->ApplyVisible(false);
  _client->ApplyVisible(true);
  EXPECT_EQ(g_window_calls, (Lines{"shrink 77", "move 77: 1,2 30x40", "invalidate 77"}));
}

TEST_F(ORBCefPluginClientTest, ShowingOrHidingTwiceRunsTheWindowWorkOnce) {
  Arrive();
  _client->ApplyVisible(true);
  EXPECT_TRUE(g_window_calls.empty()) << "A view starts visible.";
  _client->ApplyVisible(false);
  _client->ApplyVisible(false);
  EXPECT_EQ(g_window_calls, Lines{"shrink 77"});
  _client->ApplyVisible(true);
  _client->ApplyVisible(true);
  EXPECT_EQ(g_window_calls.size(), 3u);
}

TEST_F(ORBCefPluginClientTest, VisibilityNeedsBothWindows) {
  _client->ApplyVisible(false);
  EXPECT_TRUE(g_window_calls.empty());
  Arrive();
  _handler->SetParentWindow(0);
  _client->ApplyVisible(false);
  EXPECT_TRUE(g_window_calls.empty());
  _handler->SetParentWindow(5);
  _client->ApplyVisible(false);
  EXPECT_EQ(g_window_calls, Lines{"shrink 77"}) << "The refused call changed nothing.";
}

TEST_F(ORBCefPluginClientTest, OffTheEnginesThreadNothingIsDoneToWindowsAtOnce) {
  Arrive();
  _client->SetVisible(false);
  _client->SetBounds({1, 2, 3, 4});
  _client->ChangeZoomLevel(1);
  EXPECT_TRUE(g_window_calls.empty());
  // The page hears of the change of size on the calling thread already.
  EXPECT_EQ(_browser->calls, Calls{"NotifyMoveOrResizeStarted"});
}

TEST_F(ORBCefPluginClientTest, AZoomChangeIsAdded) {
  _client->ApplyZoomChange(1);
  Arrive();
  _browser->host->zoom_level = 2;
  _client->ApplyZoomChange(-0.5);
  EXPECT_DOUBLE_EQ(_browser->host->zoom_level, 1.5);
}

TEST_F(ORBCefPluginClientTest, TheDeveloperToolsGetTheViewsSettings) {
  _client->ShowDevTools();
  EXPECT_TRUE(_browser->calls.empty());
  Arrive();
  _client->SetJavaScriptEnabled(false);
  _client->ShowDevTools();
  EXPECT_EQ(_browser->calls, Calls{"ShowDevTools Developer Tools"});
  EXPECT_EQ(_browser->host->dev_tools_settings.javascript, STATE_DISABLED);
  EXPECT_EQ(platform::ToWindowHandle(_browser->host->dev_tools_info.parent_window), 0u);
}

TEST_F(ORBCefPluginClientTest, AClosingViewHasNoBrowserForItsAdapter) {
  Arrive();
  EXPECT_TRUE(_client->Browser());
  _handler->DoClose(_browser);
  EXPECT_TRUE(_handler->GetBrowser());
  EXPECT_FALSE(_client->Browser());
  EXPECT_FALSE(_client->Host());
  EXPECT_FALSE(_client->MainFrame());
  EXPECT_FALSE(_client->FocusedFrame());
  _client->ShowDevTools();
  _client->ApplyZoomChange(1);
  _client->Close(true);
  EXPECT_TRUE(_browser->calls.empty());
}

TEST_F(ORBCefPluginClientTest, ClosingClosesTheBrowserThenDetaches) {
  Arrive();
  _client->Close(true);
  EXPECT_EQ(_browser->calls, Calls{"CloseBrowser force"});
  EXPECT_EQ(_host.references, 0);
}

TEST_F(ORBCefPluginClientTest, ClosingBeforeTheBrowserExistsOnlyDetaches) {
  _client->Close(false);
  EXPECT_EQ(_host.references, 0);
}

TEST_F(ORBCefPluginClientTest, AReplayOfADetachedAdapterHasNoHandler) {
  const auto expect_no_handler = [](const ReplayDelegateResult& result) {
    EXPECT_EQ(result.code, 200);
    EXPECT_EQ(result.message.ToString(), "No valid instance for ORBCefClientHandler.");
  };
  const CefRefPtr<ORBCefPluginClient> bare = new ORBCefPluginClient(nullptr, "");
  expect_no_handler(bare->ExecuteReplay("{}"));
  EXPECT_EQ(_client->ExecuteReplay("{}").message.ToString(),
            "No valid instance for ORBCefReplayDelegate.");
  _client->Close(true);
  expect_no_handler(_client->ExecuteReplay("{}"));
}

// An engine that is up without a library behind it.
constexpr ORBCefEngine::Calls kEngine = {
    [](const CefMainArgs&, const CefSettings&, CefRefPtr<CefApp>) { return true; }, [] {}};

TEST_F(ORBCefPluginClientTest, StartingTellsTheHandlerWhatTheEngineKnowsAndWatchesTheURL) {
  fresh_process::Run([&] {
    _tools.language = "German";
    _tools.temp_directory = "/tmp";
    ORBCefEngine::InitializeEngine(kEngine);
    _client->Start();
    EXPECT_EQ(_handler->Settings().home_url.Get().ToString(), "http://home.test/");
    EXPECT_EQ(_handler->Settings().accept_language.Get().ToString(), "de");
    EXPECT_FALSE(_client->HasOneRef());
    _handler->OnAddressChange(_browser, _browser->main_frame, "http://now.test/");
    EXPECT_EQ(_client->CurrentURL().ToString(), "http://now.test/");
    CefBrowserSettings settings;
    _client->FillBrowserSettings(settings);
    EXPECT_EQ(CefString(&settings.accept_language_list).ToString(), "de");
    _client->OnTableReleased();
    EXPECT_TRUE(_client->HasOneRef());
  });
}

}  // namespace
