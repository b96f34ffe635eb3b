// The life of a view, from its table to the last callback, and the engine's faults on the way.
#include <gtest/gtest.h>

#include <thread>

#include "Control.h"
#include "Host.h"

namespace {

using control::Callback;
using standin_host::Events;
using standin_host::Host;
using standin_host::InOwnProcess;
using standin_host::Take;
using standin_host::Text;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr int32_t kRect[4] = {1, 2, 30, 40};
using Lines = std::vector<std::string>;

TEST(StandinViewTest, AViewLivesFromCreateToRelease) {
  InOwnProcess([] {
    Host host;
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    EXPECT_EQ(events.References(), 1);
    host.Open(view);
    EXPECT_EQ(events.Lines(),
              (Lines{"state 1", "loading 1 ", "address about:blank", "loading 0 about:blank"}));
    EXPECT_EQ(Take(view->get_current_url(view)), "about:blank");
    EXPECT_NE(view->get_window(view), nullptr);
    host.CloseAndRelease(view);
    EXPECT_EQ(events.References(), 0);
    host.Shutdown();
    EXPECT_EQ(control::Living(), 0);
  });
}

TEST(StandinViewTest, RightAndBottomEdgesGoIntoTheExtents) {
  InOwnProcess([] {
    Host host;
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    view->create(view, nullptr, kRect, Text("about:blank"));
    EXPECT_TRUE(control::Wait("loaded"));
    EXPECT_EQ(control::Last("window.bounds"), "1 2 31 42");
    EXPECT_EQ(control::Last("window.windowless"), "0");
    EXPECT_EQ(control::Last("browser.javascript"), "1");
    host.CloseAndRelease(view);
  });
}

TEST(StandinViewTest, AWindowlessViewHasNoWindow) {
  InOwnProcess([] {
    Host host;
    host.tools.Set("ORBCEF_ENABLE_OSR", "");
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    view->set_javascript_enabled(view, 0);
    view->create(view, nullptr, kRect, Text("about:blank"));
    EXPECT_TRUE(control::Wait("loaded"));
    EXPECT_EQ(control::Last("window.windowless"), "1");
    EXPECT_EQ(control::Last("browser.javascript"), "2");
    EXPECT_EQ(view->get_window(view), nullptr);
    Callback rect("CefRenderHandler::GetViewRect");
    EXPECT_TRUE(rect.Play());
    EXPECT_THAT(rect.outs, ElementsAre(0, 0, 30, 40));
    host.CloseAndRelease(view);
  });
}

TEST(StandinViewTest, ABrowserThatCannotBeMadeLeavesAViewWithNeutralAnswers) {
  InOwnProcess([] {
    Host host;
    Events events;
    control::Fail("create_browser");
    orbcefbrowser_c* const view = host.NewView(events);
    view->create(view, nullptr, kRect, Text("about:blank"));
    EXPECT_TRUE(control::Wait("create_refused"));
    EXPECT_EQ(view->can_go_back(view), 0);
    EXPECT_EQ(view->can_go_forward(view), 0);
    EXPECT_EQ(view->get_window(view), nullptr);
    EXPECT_EQ(view->get_popup_mode(view), 1);
    view->load_url(view, Text("http://a.test/"));
    view->show_dev_tools(view);
    view->set_bounds(view, kRect);
    view->change_zoom_level(view, 1);
    control::SettleAll();
    EXPECT_EQ(control::Count("load_url") + control::Count("zoom"), 0);
    view->close(view, 1);
    view->release(view);
    EXPECT_THAT(events.Lines(), IsEmpty());
    EXPECT_EQ(events.References(), 0);
  });
}

TEST(StandinViewTest, WithoutARectangleNothingIsCreated) {
  InOwnProcess([] {
    Host host;
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    view->create(view, nullptr, nullptr, Text("about:blank"));
    view->set_bounds(view, nullptr);
    view->load_url(view, nullptr);
    control::SettleAll();
    EXPECT_EQ(control::Count("created"), 0);
    view->release(view);
  });
}

TEST(StandinViewTest, ReloadNeverBypassesTheCache) {
  InOwnProcess([] {
    Host host;
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    host.Open(view);
    view->reload(view);
    EXPECT_TRUE(control::Wait("loaded", 2));
    EXPECT_EQ(control::Count("reload"), 1);
    EXPECT_EQ(control::Count("reload_ignore_cache"), 0);
    host.CloseAndRelease(view);
  });
}

TEST(StandinViewTest, AnAbsentHostOrFrameIsNoFault) {
  InOwnProcess([] {
    Host host;
    Events events;
    control::Fail("host", -1);
    orbcefbrowser_c* const view = host.NewView(events);
    host.Open(view);
    EXPECT_EQ(view->get_window(view), nullptr);
    view->set_zoom_level(view, 1);
    view->show_dev_tools(view);
    view->close_dev_tools(view);
    view->notify_move_or_resize(view);
    view->set_bounds(view, kRect);
    control::Fail("main_frame", -1);
    control::Fail("focused_frame", -1);
    view->load_url(view, Text("http://a.test/"));
    view->execute_javascript(view, Text("a()"), Text(""), 1);
    view->copy(view);
    Callback loaded("CefLoadHandler::OnLoadingStateChange");
    EXPECT_TRUE(loaded.Play());
    control::SettleAll();
    EXPECT_EQ(control::Count("zoom") + control::Count("load_url") + control::Count("script") +
                  control::Count("edit") + control::Count("move_or_resize"),
              0);
    control::Fail("host", 0);
    host.CloseAndRelease(view);
  });
}

TEST(StandinViewTest, ScriptsGivenBeforeTheBrowserRunAfterTheFirstLoad) {
  InOwnProcess([] {
    Host host;
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    view->execute_javascript(view, Text("first()"), Text("http://s.test/"), 7);
    view->execute_javascript(view, Text("second()"), Text(""), 1);
    EXPECT_EQ(control::Count("script"), 0);
    host.Open(view);
    EXPECT_THAT(control::Texts("script"), ElementsAre("first()", "second()"));
    view->execute_javascript(view, Text("third()"), Text("http://s.test/"), 7);
    EXPECT_EQ(control::Last("script"), "third()");
    EXPECT_EQ(control::Last("script.place"), "http://s.test/:7");
    host.CloseAndRelease(view);
  });
}

TEST(StandinViewTest, AnAllowedPopupIsCreatedAgainAndChangesNothingOfTheView) {
  InOwnProcess([] {
    Host host;
    host.EnableLog();
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    host.Open(view);
    void* const window = view->get_window(view);
    Callback popup("CefLifeSpanHandler::OnBeforePopup");
    EXPECT_TRUE(popup.Text(0, "about:blank").Play());
    ASSERT_EQ(popup.result, 0);
    EXPECT_TRUE(events.Wait("state 1", 2));
    EXPECT_EQ(view->get_window(view), window);
    EXPECT_THAT(host.Log(), Not(HasSubstr("Browser #2")));
    // The popup lives on when its opener is closed; the shutdown ends it.
    host.CloseAndRelease(view);
    host.Shutdown();
    EXPECT_EQ(control::Count("closed"), 2);
    EXPECT_EQ(control::Count("alive_at_shutdown"), 0);
  });
}

TEST(StandinViewTest, AStartURLThatDoesNotParseAsksForNoTicket) {
  InOwnProcess([] {
    Host host;
    Events events;
    control::Fail("parse_url", -1);
    orbcefbrowser_c* const view = host.NewView(events, "http://home.test/");
    EXPECT_EQ(Take(view->get_home_url(view)), "http://home.test/");
    host.Open(view);
    // Neither is the language cookie looked for without a home.
    EXPECT_EQ(control::Count("visit_cookies"), 0);
    host.CloseAndRelease(view);
  });
}

TEST(StandinViewTest, TheLanguageCookieIsSetOnce) {
  InOwnProcess([] {
    Host host;
    host.tools.language = "German";
    Events events;
    orbcefbrowser_c* const view = host.NewView(events, "http://app.home.test/");
    host.Open(view);
    EXPECT_TRUE(control::Wait("set_cookie"));
    EXPECT_EQ(control::Last("set_cookie"),
              "http://app.home.test/ hivelang=de; domain=.home.test; path=/");
    Events others;
    orbcefbrowser_c* const other = host.NewView(others, "http://app.home.test/");
    host.Open(other);
    control::SettleAll();
    EXPECT_EQ(control::Count("visit_cookies"), 2);
    EXPECT_EQ(control::Count("set_cookie"), 1);
    host.CloseAndRelease(view);
    host.CloseAndRelease(other);
  });
}

TEST(StandinViewTest, WithoutACookieManagerTheViewIsCreatedAllTheSame) {
  InOwnProcess([] {
    Host host;
    Events events;
    control::Fail("cookie_manager", -1);
    orbcefbrowser_c* const view = host.NewView(events);
    host.Open(view);
    EXPECT_TRUE(events.Has("state 1"));
    host.CloseAndRelease(view);
  });
}

TEST(StandinViewTest, CloseFromAnotherThreadKeepsTheTablesAndIsLogged) {
  InOwnProcess([] {
    Host host;
    host.EnableLog();
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    host.Open(view);
    host.tools.on_main_thread = false;
    view->close(view, 1);
    EXPECT_EQ(events.References(), 1);
    EXPECT_TRUE(control::Wait("closed"));
    EXPECT_THAT(host.Log(),
                HasSubstr("Browser #1 - This method should be called on the main thread\n"));
    view->release(view);
    host.Shutdown();
    EXPECT_EQ(events.References(), 0);
  });
}

TEST(StandinViewTest, AfterCloseNothingReachesTheHost) {
  InOwnProcess([] {
    Host host;
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    host.Open(view);
    control::Hold(TID_UI);
    view->close(view, 1);
    EXPECT_EQ(events.References(), 0);
    const Lines lines = events.Lines();
    std::thread engine([] { control::Resume(TID_UI); });
    Callback title("CefDisplayHandler::OnTitleChange");
    title.Text(0, "late").Play();
    Callback message("CefClient::OnProcessMessageReceived");
    message.Text(0, "OnUnload").Number(0, PID_RENDERER).Play();
    EXPECT_EQ(message.result, 0);
    engine.join();
    EXPECT_TRUE(control::Wait("closed"));
    EXPECT_EQ(events.Lines(), lines);
    view->release(view);
  });
}

TEST(StandinViewTest, AClosingViewDoesNotTouchTheEngine) {
  InOwnProcess([] {
    Host host;
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    host.Open(view);
    Callback close("CefLifeSpanHandler::DoClose");
    EXPECT_TRUE(close.Play());
    EXPECT_EQ(close.result, 0);
    view->load_url(view, Text("http://a.test/"));
    view->reload(view);
    view->set_zoom_level(view, 1);
    view->copy(view);
    EXPECT_EQ(view->can_go_back(view), 0);
    EXPECT_EQ(control::Count("load_url") + control::Count("reload") + control::Count("zoom") +
                  control::Count("edit"),
              0);
    orbcefreplayresult_c* const result = view->execute_replay(view, Text("{}"));
    ASSERT_TRUE(result);
    EXPECT_EQ(result->status, 200);
    EXPECT_EQ(std::string(result->message->data, result->message->length),
              "No valid instance for ORBCefClientHandler.");
    result->free(result);
    view->release(view);
    host.Shutdown();
    EXPECT_EQ(control::Living(), 0);
  });
}

TEST(StandinViewTest, OpenToolsEndWithTheirView) {
  InOwnProcess([] {
    Host host;
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    host.Open(view);
    view->show_dev_tools(view);
    control::SettleAll();
    EXPECT_EQ(control::Last("show_dev_tools"), "Developer Tools");
    EXPECT_EQ(control::Living("client CefClient"), 2);
    host.CloseAndRelease(view);
    host.Shutdown();
    EXPECT_EQ(control::Living(), 0);
  });
}

TEST(StandinViewTest, ZoomHopsToTheUIThreadAndAddsUp) {
  InOwnProcess([] {
    Host host;
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    host.Open(view);
    std::thread([&] { view->set_zoom_level(view, 2); }).join();
    view->change_zoom_level(view, -0.5);
    EXPECT_TRUE(control::Wait("zoom", 2));
    EXPECT_THAT(control::Texts("zoom"), ElementsAre("2.000000", "1.500000"));
    host.CloseAndRelease(view);
  });
}

TEST(StandinViewTest, AShutdownClosesForgottenViews) {
  InOwnProcess([] {
    Host host;
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    host.Open(view);
    view->release(view);
    host.Shutdown();
    EXPECT_THAT(control::Texts("close_browser"), Contains("1 forced"));
    EXPECT_EQ(control::Count("alive_at_shutdown"), 0);
    EXPECT_EQ(control::Living(), 0);
  });
}

TEST(StandinViewTest, ALoadThatStillGoesOnIsStoppedByTheClose) {
  InOwnProcess([] {
    Host host;
    host.root.Write("webapps/m/a.html", "<title>A page</title>");
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    host.Open(view);
    control::Hold(TID_FILE_USER_BLOCKING);
    view->load_url(view, Text("xortv://webapps/m/a.html"));
    EXPECT_TRUE(events.Wait("loading 1 about:blank"));
    view->execute_javascript(view, Text("late()"), Text(""), 1);
    view->close(view, 1);
    EXPECT_TRUE(control::Wait("closed"));
    EXPECT_EQ(control::Count("stop_load"), 1);
    control::Resume(TID_FILE_USER_BLOCKING);
    control::SettleAll();
    EXPECT_FALSE(events.Has("title A page"));
    // What waits for a load that never ends goes unrun.
    EXPECT_EQ(control::Count("script"), 0);
    view->release(view);
  });
}

TEST(StandinViewTest, ATerminatedRendererIsLoggedAndTheViewStays) {
  InOwnProcess([] {
    Host host;
    host.EnableLog();
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    host.Open(view);
    const Lines lines = events.Lines();
    Callback terminated("CefRequestHandler::OnRenderProcessTerminated");
    EXPECT_TRUE(terminated.Number(0, TS_PROCESS_CRASHED).Play());
    EXPECT_THAT(host.Log(),
                HasSubstr("Browser #1 - A render process has been abnormally terminated."));
    EXPECT_EQ(events.Lines(), lines);
    EXPECT_EQ(control::Count("loaded"), 1);
    host.CloseAndRelease(view);
  });
}

TEST(StandinViewTest, AFailedConnectionLoadsTheErrorPage) {
  InOwnProcess([] {
    Host host;
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    view->set_error_url(view, Text("about:blank"));
    // Nobody listens on the first port of all.
    view->create(view, nullptr, kRect, Text("http://127.0.0.1:1/"));
    EXPECT_TRUE(control::Wait("loaded", 2));
    EXPECT_EQ(control::Texts("loaded").front(), "http://127.0.0.1:1/ 0 -102");
    EXPECT_THAT(control::Texts("load_url"), ElementsAre("about:blank"));
    host.CloseAndRelease(view);
  });
}

TEST(StandinViewTest, AProcessWithATestRigDiesOfANullTable) {
  standin_host::ExpectSegmentationFault([] {
    Host host;
    host.tools.Set("ORBCEF_RECORD", "");
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    view->reload(nullptr);
  });
}

TEST(StandinViewTest, WithoutATestRigANullTableIsReported) {
  InOwnProcess([] {
    Host host;
    host.EnableLog();
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    view->reload(nullptr);
    EXPECT_EQ(view->get_flag1(nullptr), 0);
    EXPECT_EQ(view->get_popup_mode(nullptr), 1);
    EXPECT_THAT(host.Log(), HasSubstr("iCStruct!=0 in ChromiumEmbeddedPlugin/ORBCefWrapperMT.m/src/"
                                      "ORBCefPluginClient line 17\n"));
    view->release(view);
  });
}

}  // namespace
