#include "ORBCefKeyboardShortcuts.h"

#include <gtest/gtest.h>

#include "FakeTools.h"
#include "FreshProcess.h"
#include "engine_doubles/ViewDoubles.h"

namespace {

using engine_doubles::BrowserDouble;
using engine_doubles::Calls;
using ORBCefKeyboardShortcuts::Command;
using ORBCefKeyboardShortcuts::GetKeyboardShortcut;
using ORBCefKeyboardShortcuts::OnKeyEvent;
using ORBCefKeyboardShortcuts::OnPreKeyEvent;

constexpr char kHomeUrl[] = "http://home.test/";

CefKeyEvent Key(int code, uint32_t modifiers) {
  CefKeyEvent event;
  event.type = KEYEVENT_RAWKEYDOWN;
  event.windows_key_code = code;
  event.modifiers = modifiers;
  return event;
}

struct Shortcut {
  int code;
  uint32_t modifiers;
  int command;
};

// Numbers, so that a change of a name is seen here.
constexpr Shortcut kShortcuts[] = {
    {82, 4, 1},  {116, 0, 1}, {82, 6, 2},  {116, 2, 2}, {116, 4, 2},
    {36, 8, 3},  {37, 8, 4},  {39, 8, 5},  {73, 6, 6},  {74, 6, 6},
    {123, 0, 6}, {187, 4, 7}, {189, 4, 8}, {48, 4, 9},  {96, 4, 9},
};

class ORBCefKeyboardShortcutsTest : public testing::Test {
 protected:
  bool Press(int code, uint32_t modifiers) {
    return OnKeyEvent(_browser, Key(code, modifiers), kHomeUrl);
  }

  FakeTools _tools;
  CefRefPtr<BrowserDouble> _browser = new BrowserDouble();
};

TEST_F(ORBCefKeyboardShortcutsTest, EachKeyHasItsCommandWithItsOwnModifiersAlone) {
  for (int code = 0; code < 256; ++code) {
    for (uint32_t modifiers = 0; modifiers < 16; ++modifiers) {
      int expected = 0;
      for (const Shortcut& shortcut : kShortcuts) {
        if (shortcut.code == code && shortcut.modifiers == modifiers)
          expected = shortcut.command;
      }
      EXPECT_EQ(static_cast<int>(GetKeyboardShortcut(Key(code, modifiers))), expected)
          << code << " with " << modifiers;
    }
  }
}

TEST_F(ORBCefKeyboardShortcutsTest, AnyOtherModifierMakesAShortcutNone) {
  for (const Shortcut& shortcut : kShortcuts) {
    for (const uint32_t other : {EVENTFLAG_CAPS_LOCK_ON, EVENTFLAG_NUM_LOCK_ON,
                                 EVENTFLAG_IS_KEY_PAD, EVENTFLAG_COMMAND_DOWN}) {
      const CefKeyEvent event = Key(shortcut.code, shortcut.modifiers | other);
      EXPECT_EQ(GetKeyboardShortcut(event), Command::kNone) << shortcut.code << " with " << other;
      EXPECT_FALSE(OnKeyEvent(_browser, event, kHomeUrl));
    }
  }
  EXPECT_TRUE(_browser->calls.empty());
}

TEST_F(ORBCefKeyboardShortcutsTest, F5WithShiftAndControlIsNoneAndRIsOne) {
  EXPECT_FALSE(Press(116, EVENTFLAG_SHIFT_DOWN | EVENTFLAG_CONTROL_DOWN));
  EXPECT_TRUE(_browser->calls.empty());
  EXPECT_TRUE(Press(82, EVENTFLAG_SHIFT_DOWN | EVENTFLAG_CONTROL_DOWN));
  EXPECT_EQ(_browser->calls, Calls{"ReloadIgnoreCache"});
}

TEST_F(ORBCefKeyboardShortcutsTest, TheEngineIsToldWhatAShortcutIs) {
  bool is_shortcut = false;
  OnPreKeyEvent(_browser, Key(116, 0), &is_shortcut);
  EXPECT_TRUE(is_shortcut);
  OnPreKeyEvent(_browser, Key(65, 0), &is_shortcut);
  EXPECT_FALSE(is_shortcut);
  EXPECT_TRUE(_browser->calls.empty());
}

TEST_F(ORBCefKeyboardShortcutsTest, TheToolsKeyIsAShortcutWithoutTheVariableToo) {
  bool is_shortcut = false;
  OnPreKeyEvent(_browser, Key(123, 0), &is_shortcut);
  EXPECT_TRUE(is_shortcut);
}

TEST_F(ORBCefKeyboardShortcutsTest, WithoutABrowserOrARawKeyTheAnswerOfTheEngineStays) {
  for (bool is_shortcut : {false, true}) {
    const bool before = is_shortcut;
    const int code = before ? 65 : 116;
    OnPreKeyEvent(nullptr, Key(code, 0), &is_shortcut);
    EXPECT_EQ(is_shortcut, before);
    for (const auto type : {KEYEVENT_KEYDOWN, KEYEVENT_KEYUP, KEYEVENT_CHAR}) {
      CefKeyEvent event = Key(code, 0);
      event.type = type;
      OnPreKeyEvent(_browser, event, &is_shortcut);
      EXPECT_EQ(is_shortcut, before);
    }
  }
  OnPreKeyEvent(_browser, Key(116, 0), nullptr);
}

TEST_F(ORBCefKeyboardShortcutsTest, OnlyARawKeyOfABrowserActs) {
  EXPECT_FALSE(OnKeyEvent(nullptr, Key(116, 0), kHomeUrl));
  for (const auto type : {KEYEVENT_KEYDOWN, KEYEVENT_KEYUP, KEYEVENT_CHAR}) {
    CefKeyEvent event = Key(116, 0);
    event.type = type;
    EXPECT_FALSE(OnKeyEvent(_browser, event, kHomeUrl));
  }
  EXPECT_FALSE(Press(65, 0));
  EXPECT_TRUE(_browser->calls.empty());
}

TEST_F(ORBCefKeyboardShortcutsTest, TheBrowserReloads) {
  EXPECT_TRUE(Press(82, EVENTFLAG_CONTROL_DOWN));
  EXPECT_TRUE(Press(116, 0));
  EXPECT_TRUE(Press(116, EVENTFLAG_SHIFT_DOWN));
  EXPECT_TRUE(Press(116, EVENTFLAG_CONTROL_DOWN));
  EXPECT_EQ(_browser->calls, (Calls{"Reload", "Reload", "ReloadIgnoreCache", "ReloadIgnoreCache"}));
}

TEST_F(ORBCefKeyboardShortcutsTest, HomeLoadsInTheMainFrame) {
  EXPECT_TRUE(Press(36, EVENTFLAG_ALT_DOWN));
  EXPECT_EQ(_browser->calls, Calls{"LoadURL http://home.test/"});
  _browser->main_frame = nullptr;
  EXPECT_FALSE(Press(36, EVENTFLAG_ALT_DOWN));
  EXPECT_EQ(_browser->calls.size(), 1u);
}

// The browser itself does nothing at the ends of its history.
TEST_F(ORBCefKeyboardShortcutsTest, BackAndForwardCountAsHandledWhereThereIsNoHistory) {
  _browser->can_go_back = false;
  _browser->can_go_forward = false;
  EXPECT_TRUE(Press(37, EVENTFLAG_ALT_DOWN));
  EXPECT_TRUE(Press(39, EVENTFLAG_ALT_DOWN));
  EXPECT_EQ(_browser->calls, (Calls{"GoBack", "GoForward"}));
}

TEST_F(ORBCefKeyboardShortcutsTest, ZoomGoesInStepsFromWhereItIs) {
  _browser->host->zoom_level = 1.0;
  EXPECT_TRUE(Press(187, EVENTFLAG_CONTROL_DOWN));
  EXPECT_DOUBLE_EQ(_browser->host->zoom_level, 1.4);
  EXPECT_TRUE(Press(189, EVENTFLAG_CONTROL_DOWN));
  EXPECT_TRUE(Press(189, EVENTFLAG_CONTROL_DOWN));
  EXPECT_DOUBLE_EQ(_browser->host->zoom_level, 0.6);
  EXPECT_TRUE(Press(48, EVENTFLAG_CONTROL_DOWN));
  EXPECT_EQ(_browser->host->zoom_level, 0);
  _browser->host->zoom_level = 1.0;
  EXPECT_TRUE(Press(96, EVENTFLAG_CONTROL_DOWN));
  EXPECT_EQ(_browser->host->zoom_level, 0);
}

TEST_F(ORBCefKeyboardShortcutsTest, ABrowserWithoutAHostKeepsItsZoom) {
  _browser->host = nullptr;
  for (const int code : {187, 189, 48}) {
    EXPECT_TRUE(Press(code, EVENTFLAG_CONTROL_DOWN));
  }
  EXPECT_TRUE(_browser->calls.empty());
}

TEST(ORBCefKeyboardShortcutsToolsTest, TheToolsNeedTheirVariableWhichIsReadOnce) {
  constexpr uint32_t kControlShift = EVENTFLAG_CONTROL_DOWN | EVENTFLAG_SHIFT_DOWN;
  fresh_process::Run([] {
    FakeTools tools;
    // The port of the remote tools has no bearing on these.
    tools.Set("ORBCEF_DEVTOOLS_PORT", "9222");
    const CefRefPtr<BrowserDouble> browser = new BrowserDouble();
    EXPECT_FALSE(OnKeyEvent(browser, Key(123, 0), kHomeUrl));
    tools.Set("ORBCEF_DEVTOOLS", "1");
    EXPECT_FALSE(OnKeyEvent(browser, Key(123, 0), kHomeUrl));
    EXPECT_TRUE(browser->calls.empty());
  });
  fresh_process::Run([] {
    FakeTools tools;
    tools.Set("ORBCEF_DEVTOOLS", "");
    const CefRefPtr<BrowserDouble> browser = new BrowserDouble();
    EXPECT_TRUE(OnKeyEvent(browser, Key(123, 0), kHomeUrl));
    tools.Unset("ORBCEF_DEVTOOLS");
    EXPECT_TRUE(OnKeyEvent(browser, Key(73, kControlShift), kHomeUrl));
    EXPECT_TRUE(OnKeyEvent(browser, Key(74, kControlShift), kHomeUrl));
    EXPECT_EQ(browser->calls, Calls(3, "ShowDevTools Developer Tools"));
  });
}

}  // namespace
