// What a view does with keys and with its context menu.
#include <gmock/gmock.h>

#include "FakeTools.h"
#include "FreshProcess.h"
#include "ORBCefClientHandler.h"
#include "engine_doubles/HostDoubles.h"
#include "engine_doubles/MenuDoubles.h"
#include "engine_doubles/ViewDoubles.h"

namespace {

using engine_doubles::BrowserDouble;
using engine_doubles::Calls;
using engine_doubles::ContextMenuParamsDouble;
using engine_doubles::HostEvents;
using engine_doubles::MenuModelDouble;
using testing::SizeIs;
using Lines = std::vector<std::string>;

constexpr int kRefresh = 26505;

CefKeyEvent Key(int code, uint32_t modifiers = 0) {
  CefKeyEvent event;
  event.type = KEYEVENT_RAWKEYDOWN;
  event.windows_key_code = code;
  event.modifiers = modifiers;
  return event;
}

class ORBCefClientHandlerInputTest : public testing::Test {
 protected:
  Lines PageMenu() {
    _params->type_flags = CM_TYPEFLAG_PAGE;
    const CefRefPtr<MenuModelDouble> model = new MenuModelDouble();
    _client->OnBeforeContextMenu(_browser, nullptr, _params, model);
    return model->Lines();
  }
  bool Command(int id) {
    return _client->OnContextMenuCommand(_browser, _browser->main_frame, _params, id,
                                         EVENTFLAG_NONE);
  }

  FakeTools _tools;
  HostEvents _host;
  CefRefPtr<BrowserDouble> _browser = new BrowserDouble();
  CefRefPtr<ContextMenuParamsDouble> _params = new ContextMenuParamsDouble();
  CefRefPtr<ORBCefClientHandler> _client =
      new ORBCefClientHandler(_host.Table(), nullptr, "http://home.test/");
};

TEST_F(ORBCefClientHandlerInputTest, TheEngineFindsTheHandlersAndTheirDefaults) {
  EXPECT_EQ(_client->GetContextMenuHandler().get(), _client.get());
  EXPECT_EQ(_client->GetKeyboardHandler().get(), _client.get());
  EXPECT_FALSE(static_cast<CefContextMenuHandler&>(*_client).RunContextMenu(
      _browser, _browser->main_frame, _params, new MenuModelDouble(), nullptr));
}

TEST_F(ORBCefClientHandlerInputTest, TheMenuFollowsTheFlagsOfTheView) {
  EXPECT_THAT(PageMenu(), SizeIs(4));
  _client->Settings().history_enabled = false;
  EXPECT_THAT(PageMenu(), SizeIs(2));
  _client->Settings().reload_enabled = false;
  EXPECT_EQ(PageMenu(), Lines{});
}

// A menu may be open while the host changes its mind; the reload is tried, and cancelled on its
// way.
TEST_F(ORBCefClientHandlerInputTest, ARefreshOfAnOldMenuIsTriedAndCancelled) {
  EXPECT_THAT(PageMenu(), SizeIs(4));
  _client->Settings().reload_enabled = false;
  EXPECT_TRUE(Command(kRefresh));
  EXPECT_EQ(_browser->calls, Calls{"Reload"});
}

TEST_F(ORBCefClientHandlerInputTest, ACommandNeedsAllItsArguments) {
  const auto run = [this](bool has_browser, bool has_frame, bool has_params) {
    return _client->OnContextMenuCommand(has_browser ? _browser : nullptr,
                                         has_frame ? _browser->main_frame : nullptr,
                                         has_params ? _params : nullptr, kRefresh, EVENTFLAG_NONE);
  };
  EXPECT_FALSE(run(false, true, true));
  EXPECT_FALSE(run(true, false, true));
  EXPECT_FALSE(run(true, true, false));
  EXPECT_TRUE(_browser->calls.empty());
  EXPECT_TRUE(run(true, true, true));
}

TEST_F(ORBCefClientHandlerInputTest, ThePageSeesEachKeyFirst) {
  bool is_shortcut = false;
  EXPECT_FALSE(_client->OnPreKeyEvent(_browser, Key(116), {}, &is_shortcut));
  EXPECT_TRUE(is_shortcut);
  EXPECT_TRUE(_browser->calls.empty());
  EXPECT_TRUE(_client->OnKeyEvent(_browser, Key(116), {}));
  EXPECT_EQ(_browser->calls, Calls{"Reload"});
}

TEST_F(ORBCefClientHandlerInputTest, HomeIsTheAddressThatTheHostGaveLast) {
  EXPECT_TRUE(_client->OnKeyEvent(_browser, Key(36, EVENTFLAG_ALT_DOWN), {}));
  _client->SetURL("http://new.test/");
  EXPECT_TRUE(_client->OnKeyEvent(_browser, Key(36, EVENTFLAG_ALT_DOWN), {}));
  EXPECT_EQ(_browser->calls, (Calls{"LoadURL http://home.test/", "LoadURL http://new.test/"}));
}

TEST_F(ORBCefClientHandlerInputTest, ShortcutsDoNotAskTheFlags) {
  _client->Settings().reload_enabled = false;
  _client->Settings().history_enabled = false;
  EXPECT_TRUE(_client->OnKeyEvent(_browser, Key(116), {}));
  EXPECT_TRUE(_client->OnKeyEvent(_browser, Key(37, EVENTFLAG_ALT_DOWN), {}));
  EXPECT_EQ(_browser->calls, (Calls{"Reload", "GoBack"}));
}

TEST_F(ORBCefClientHandlerInputTest, TheHostIsNotToldOfAZoomByKeyOrMenu) {
  for (const int code : {187, 189, 48}) {
    EXPECT_TRUE(_client->OnKeyEvent(_browser, Key(code, EVENTFLAG_CONTROL_DOWN), {}));
  }
  EXPECT_TRUE(Command(26512));
  EXPECT_EQ(_browser->calls, Calls(4, "SetZoomLevel"));
  EXPECT_TRUE(_host.lines.empty());
}

TEST(ORBCefClientHandlerInputThreadTest, OnAnotherThreadNothingHappens) {
  fresh_process::Run([] {
    FakeTools tools;
    tools.Unset("ORBCEF_NO_TID_CHECK");
    const CefRefPtr<ORBCefClientHandler> client = new ORBCefClientHandler(nullptr, nullptr, "");
    const CefRefPtr<BrowserDouble> browser = new BrowserDouble();
    const CefRefPtr<ContextMenuParamsDouble> params = new ContextMenuParamsDouble();
    const CefRefPtr<MenuModelDouble> model = new MenuModelDouble();
    client->OnBeforeContextMenu(browser, browser->main_frame, params, model);
    EXPECT_THAT(model->Lines(), SizeIs(1));
    EXPECT_FALSE(client->OnContextMenuCommand(browser, browser->main_frame, params, kRefresh,
                                              EVENTFLAG_NONE));
    bool is_shortcut = false;
    EXPECT_FALSE(client->OnPreKeyEvent(browser, Key(116), {}, &is_shortcut));
    EXPECT_FALSE(is_shortcut);
    EXPECT_FALSE(client->OnKeyEvent(browser, Key(116), {}));
    EXPECT_TRUE(browser->calls.empty());
  });
}

}  // namespace
