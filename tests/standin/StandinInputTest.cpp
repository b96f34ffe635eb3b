// Keys and context menus, across the engine's interface.
#include <gtest/gtest.h>

#include "Control.h"
#include "Host.h"

namespace {

using control::Callback;
using standin_host::Events;
using standin_host::Host;
using standin_host::InOwnProcess;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kRefresh = 26505;
constexpr int kDeveloperTools = 26513;
constexpr int kKeyF5 = 116;
constexpr int kKeyF12 = 123;
constexpr int kKeyPlus = 187;
constexpr int kKey0 = 48;

void WithView(const std::function<void(orbcefbrowser_c*, Events&)>& body,
              const char* variable = nullptr) {
  InOwnProcess([&] {
    Host host;
    if (variable)
      host.tools.Set(variable, "");
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    host.Open(view);
    control::SettleAll();
    body(view, events);
    host.CloseAndRelease(view);
    host.Shutdown();
    EXPECT_EQ(control::Living(), 0);
  });
}

std::string Menu(int type_flags, int edit_flags = 0) {
  Callback menu("CefContextMenuHandler::OnBeforeContextMenu");
  EXPECT_TRUE(menu.Number(0, type_flags).Number(1, edit_flags).Text(0, "http://a.test/").Play());
  return menu.text;
}

// Whether the command was taken.
bool Choose(int command, int event_flags = 0) {
  Callback choice("CefContextMenuHandler::OnContextMenuCommand");
  choice.Number(2, command).Number(3, event_flags).Text(0, "http://link.test/");
  EXPECT_TRUE(choice.Play());
  control::SettleAll();
  return choice.result != 0;
}

// Whether the key was acted on, after the engine was told that it is a shortcut.
bool Press(int code, int modifiers = 0) {
  Callback before("CefKeyboardHandler::OnPreKeyEvent");
  EXPECT_TRUE(before.Number(0, KEYEVENT_RAWKEYDOWN).Number(1, code).Number(2, modifiers).Play());
  EXPECT_EQ(before.result, 0);
  EXPECT_EQ(before.outs[0], 1);
  Callback key("CefKeyboardHandler::OnKeyEvent");
  EXPECT_TRUE(key.Number(0, KEYEVENT_RAWKEYDOWN).Number(1, code).Number(2, modifiers).Play());
  control::SettleAll();
  return key.result != 0;
}

TEST(StandinInputTest, TheMenuFitsTheSpot) {
  WithView([](orbcefbrowser_c* view, Events&) {
    EXPECT_EQ(Menu(CM_TYPEFLAG_PAGE), "(26503) (26504) 26505 --");
    EXPECT_EQ(Menu(CM_TYPEFLAG_LINK | CM_TYPEFLAG_EDITABLE, CM_EDITFLAG_CAN_PASTE),
              "26506 26507 -- (26508) (26509) (26501) (26500) 26502 (26510) --");
    EXPECT_EQ(Menu(CM_TYPEFLAG_MEDIA), "");
    view->set_zoom_level(view, 1.0);
    control::SettleAll();
    EXPECT_EQ(Menu(CM_TYPEFLAG_MEDIA), "26512 --");
  });
}

TEST(StandinInputTest, ABarePageOfAViewWithoutReloadAndHistoryHasNoMenu) {
  WithView([](orbcefbrowser_c* view, Events&) {
    view->set_reload_enabled(view, 0);
    view->set_history_enabled(view, 0);
    EXPECT_EQ(Menu(CM_TYPEFLAG_PAGE), "");
  });
}

TEST(StandinInputTest, ARefreshReloadsThePage) {
  WithView([](orbcefbrowser_c*, Events& events) {
    EXPECT_TRUE(Choose(kRefresh));
    EXPECT_TRUE(Choose(kRefresh, EVENTFLAG_SHIFT_DOWN));
    EXPECT_EQ(control::Count("reload"), 1);
    EXPECT_EQ(control::Count("reload_ignore_cache"), 1);
    EXPECT_TRUE(events.Wait("loading 0 about:blank", 3));
  });
}

TEST(StandinInputTest, ARefreshOfAnOldMenuIsCancelledOnItsWay) {
  WithView([](orbcefbrowser_c* view, Events&) {
    EXPECT_EQ(Menu(CM_TYPEFLAG_PAGE), "(26503) (26504) 26505 --");
    view->set_reload_enabled(view, 0);
    const int loaded = control::Count("loaded");
    EXPECT_TRUE(Choose(kRefresh));
    EXPECT_TRUE(Press(kKeyF5));
    EXPECT_EQ(control::Count("reload"), 2);
    EXPECT_EQ(control::Count("loaded"), loaded);
  });
}

TEST(StandinInputTest, AKeyZoomsWithoutTheHostHearingOfIt) {
  WithView([](orbcefbrowser_c*, Events& events) {
    const auto lines = events.Lines();
    EXPECT_TRUE(Press(kKeyPlus, EVENTFLAG_CONTROL_DOWN));
    EXPECT_TRUE(Press(kKey0, EVENTFLAG_CONTROL_DOWN));
    EXPECT_THAT(control::Texts("zoom"), ElementsAre("0.400000", "0.000000"));
    EXPECT_EQ(events.Lines(), lines);
  });
}

TEST(StandinInputTest, TheToolsNeedTheirVariable) {
  WithView([](orbcefbrowser_c*, Events&) {
    EXPECT_FALSE(Press(kKeyF12));
    EXPECT_THAT(control::Texts("show_dev_tools"), IsEmpty());
  });
  WithView(
      [](orbcefbrowser_c*, Events&) {
        EXPECT_TRUE(Press(kKeyF12));
        EXPECT_EQ(Menu(CM_TYPEFLAG_MEDIA), "26513");
        EXPECT_TRUE(Choose(kDeveloperTools));
        EXPECT_THAT(control::Texts("show_dev_tools"),
                    ElementsAre("Developer Tools", "Developer Tools"));
      },
      "ORBCEF_DEVTOOLS");
}

}  // namespace
