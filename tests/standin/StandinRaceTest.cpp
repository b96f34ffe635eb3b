// Calls of the host that meet the engine's threads at a bad moment. Some are brought about by
// holding a thread, others are left to chance and repeated.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "Control.h"
#include "Host.h"

namespace {

using control::Callback;
using standin_host::Events;
using standin_host::Host;
using standin_host::InOwnProcess;
using standin_host::Text;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr int32_t kRect[4] = {0, 0, 100, 100};
// The engine starts once in a process, so each repetition has its own.
constexpr int kProcesses = 5;
constexpr int kViews = 20;

TEST(StandinRaceTest, CreateThenShutdownAtOnce) {
  for (int i = 0; i < kProcesses; ++i) {
    InOwnProcess([] {
      Host host;
      Events events;
      orbcefbrowser_c* const view = host.NewView(events);
      view->create(view, nullptr, kRect, Text("about:blank"));
      view->release(view);
      host.Shutdown();
      EXPECT_EQ(control::Count("alive_at_shutdown"), 0);
      EXPECT_EQ(control::Living(), 0);
    });
  }
}

TEST(StandinRaceTest, ACreationThatMeetsTheShutdownIsDroppedWithoutAWord) {
  InOwnProcess([] {
    Host host;
    host.EnableLog();
    host.Init();
    EXPECT_TRUE(control::Wait("context_initialized"));
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    control::SettleAll();
    control::Hold(TID_UI);
    view->create(view, nullptr, kRect, Text("about:blank"));
    std::thread engine([] { control::Resume(TID_UI); });
    host.Shutdown();
    engine.join();
    // Either it came before the shutdown had taken the engine, and was closed, or it was dropped.
    EXPECT_EQ(control::Count("created"), control::Count("closed"));
    EXPECT_EQ(control::Count("alive_at_shutdown"), 0);
    view->release(view);
    EXPECT_EQ(events.References(), 0);
  });
}

TEST(StandinRaceTest, AViewThatIsClosedBeforeItsTurnIsNeverCreated) {
  InOwnProcess([] {
    Host host;
    host.Init();
    EXPECT_TRUE(control::Wait("context_initialized"));
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    control::SettleAll();
    control::Hold(TID_UI);
    view->create(view, nullptr, kRect, Text("about:blank"));
    view->close(view, 1);
    view->release(view);
    control::Resume(TID_UI);
    control::SettleAll();
    EXPECT_EQ(control::Count("created"), 0);
    EXPECT_THAT(events.Lines(), IsEmpty());
    EXPECT_EQ(events.References(), 0);
  });
}

TEST(StandinRaceTest, CreateThenCloseAtOnceLeavesNoBrowser) {
  InOwnProcess([] {
    Host host;
    std::vector<std::unique_ptr<Events>> events;
    for (int i = 0; i < kViews; ++i) {
      events.push_back(std::make_unique<Events>());
      orbcefbrowser_c* const view = host.NewView(*events.back());
      view->create(view, nullptr, kRect, Text("about:blank"));
      if (i % 2)
        control::Wait("created", 1, 1);
      view->close(view, 1);
      view->release(view);
    }
    host.Shutdown();
    EXPECT_EQ(control::Count("created"), control::Count("closed"));
    EXPECT_EQ(control::Count("alive_at_shutdown"), 0);
    EXPECT_EQ(control::Living(), 0);
    for (const auto& view_events : events) {
      EXPECT_EQ(view_events->References(), 0);
    }
  });
}

TEST(StandinRaceTest, AViewMayBeReleasedWhileItsTasksWait) {
  InOwnProcess([] {
    Host host;
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    host.Open(view);
    control::Hold(TID_UI);
    view->set_bounds(view, kRect);
    view->change_zoom_level(view, 1);
    view->set_visible(view, 0);
    view->close(view, 1);
    view->release(view);
    control::Resume(TID_UI);
    EXPECT_TRUE(control::Wait("closed"));
    host.Shutdown();
    EXPECT_EQ(control::Living(), 0);
  });
}

TEST(StandinRaceTest, TheHostSetsWhatTheEngineReads) {
  InOwnProcess([] {
    Host host;
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    view->set_forward_console(view, 1);
    host.Open(view);
    std::atomic<bool> is_over{false};
    std::thread engine([&] {
      while (!is_over) {
        Callback("CefDisplayHandler::OnAddressChange").Text(0, "http://a.test/").Play();
        Callback("CefDisplayHandler::OnConsoleMessage").Text(0, "line").Play();
        Callback("CefRequestHandler::OnBeforeBrowse").Text(0, "http://a.test/").Play();
        Callback("CefResourceRequestHandler::OnBeforeResourceLoad", TID_IO)
            .Text(0, "http://a.test/")
            .Play();
        Callback("CefLoadHandler::OnLoadError").Number(0, ERR_CONNECTION_REFUSED).Play();
        Callback("CefLoadHandler::OnLoadingStateChange").Play();
      }
    });
    for (int i = 0; i < 200; ++i) {
      view->set_home_url(view, Text(i % 2 ? "http://home.test/" : "http://other.test/"));
      view->set_error_url(view, Text(""));
      view->set_history_enabled(view, i % 2);
      view->set_reload_enabled(view, i % 2);
      view->set_popup_mode(view, i % 4);
      view->set_js_dialogs_allowed(view, i % 2);
      view->set_download_dir(view, Text(i % 2 ? host.root.Path() : ""));
      view->execute_javascript(view, Text("a()"), Text(""), 1);
      standin_host::Take(view->get_current_url(view));
      view->set_forward_console(view, i % 2);
      view->get_window(view);
    }
    is_over = true;
    engine.join();
    host.CloseAndRelease(view);
  });
}

TEST(StandinRaceTest, TheHostMayCallBackFromItsEvents) {
  InOwnProcess([] {
    Host host;
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    events.on_line = [&](const std::string& line) {
      if (line.rfind("title", 0) == 0) {
        view->execute_javascript(view, Text("fromEvent()"), Text(""), 1);
        view->set_home_url(view, Text("http://event.test/"));
        view->set_zoom_level(view, 1);
      }
    };
    host.Open(view);
    Callback title("CefDisplayHandler::OnTitleChange");
    EXPECT_TRUE(title.Text(0, "call").Play());
    EXPECT_EQ(control::Last("script"), "fromEvent()");
    EXPECT_EQ(control::Count("zoom"), 1);
    host.CloseAndRelease(view);
  });
}

TEST(StandinRaceTest, TheHostMayCloseAViewFromItsFirstEvent) {
  InOwnProcess([] {
    Host host;
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    events.on_line = [&](const std::string&) { view->close(view, 1); };
    view->create(view, nullptr, kRect, Text("about:blank"));
    EXPECT_TRUE(control::Wait("closed"));
    EXPECT_THAT(events.Lines(), testing::ElementsAre("state 1"));
    EXPECT_EQ(events.References(), 0);
    view->release(view);
    host.Shutdown();
    EXPECT_EQ(control::Living(), 0);
  });
}

TEST(StandinRaceTest, ManyViewsLiveAtOnce) {
  InOwnProcess([] {
    Host host;
    std::vector<std::unique_ptr<Events>> events;
    std::vector<orbcefbrowser_c*> views;
    for (int i = 0; i < kViews; ++i) {
      events.push_back(std::make_unique<Events>());
      views.push_back(host.NewView(*events.back()));
      views.back()->create(views.back(), nullptr, kRect, Text("about:blank"));
    }
    EXPECT_TRUE(control::Wait("loaded", kViews));
    for (orbcefbrowser_c* const view : views) {
      view->close(view, 1);
      view->release(view);
    }
    EXPECT_TRUE(control::Wait("closed", kViews));
    host.Shutdown();
    EXPECT_EQ(control::Living(), 0);
    for (const auto& view_events : events) {
      EXPECT_EQ(view_events->References(), 0);
    }
  });
}

TEST(StandinRaceTest, ASchemeTableThatComesLateIsReadWhileItIsAskedFor) {
  InOwnProcess([] {
    Host host;
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    host.Open(view);
    std::atomic<bool> is_asked{false};
    std::atomic<bool> is_allowed{false};
    std::thread engine([&] {
      while (!is_allowed) {
        Callback call("CefResourceRequestHandler::OnProtocolExecution", TID_IO);
        call.Text(0, "tel:112").Play();
        is_allowed = call.outs[0] != 0;
        is_asked = true;
      }
    });
    while (!is_asked) {
      std::this_thread::yield();
    }
    // Long enough to be asked for while it is being read.
    std::string schemes;
    for (int i = 0; i < 2000; ++i) {
      schemes += "<value>x" + std::to_string(i) + "</value><description>d</description>";
    }
    host.root.Write("resources/ORBCefRsc/uri-schemes.xml",
                    "<r>" + schemes + "<value>tel</value><description>Phone</description></r>");
    Events others;
    orbcefbrowser_c* const other = host.NewView(others);
    engine.join();
    other->release(other);
    host.CloseAndRelease(view);
  });
}

TEST(StandinRaceTest, AnEngineThatTakesNoTaskDropsWhatItIsGiven) {
  InOwnProcess([] {
    Host host;
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    host.Open(view);
    control::Fail("post_task", -1);
    view->set_bounds(view, kRect);
    view->change_zoom_level(view, 1);
    view->set_visible(view, 0);
    control::SettleAll();
    EXPECT_EQ(control::Count("zoom"), 0);
    control::Fail("post_task", 0);
    host.CloseAndRelease(view);
    host.Shutdown();
    EXPECT_EQ(control::Living(), 0);
  });
}

}  // namespace
