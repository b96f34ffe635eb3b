#include "ORBCefContextMenu.h"

#include <gtest/gtest.h>

#include "Clipboard.h"
#include "FakeTools.h"
#include "FreshProcess.h"
#include "engine_doubles/MenuDoubles.h"
#include "engine_doubles/ViewDoubles.h"

namespace {

using engine_doubles::BrowserDouble;
using engine_doubles::Calls;
using engine_doubles::ContextMenuParamsDouble;
using engine_doubles::MenuModelDouble;
using Lines = std::vector<std::string>;

constexpr cef_event_flags_t kNoFlags = EVENTFLAG_NONE;
constexpr int kAllEdits = CM_EDITFLAG_CAN_UNDO | CM_EDITFLAG_CAN_REDO | CM_EDITFLAG_CAN_CUT |
                          CM_EDITFLAG_CAN_COPY | CM_EDITFLAG_CAN_PASTE | CM_EDITFLAG_CAN_DELETE;

const Lines kLinkItems = {"26506 link", "26507 address", "--"};
const Lines kEditItems = {"26508 undo",  "26509 redo",   "26501 cut", "26500 copy",
                          "26502 paste", "26510 delete", "--"};
const Lines kZoomItems = {"26512 size", "--"};

Lines operator+(const Lines& left, const Lines& right) {
  Lines both = left;
  both.insert(both.end(), right.begin(), right.end());
  return both;
}

void SetLabels(FakeTools& tools) {
  const std::pair<const char*, const char*> labels[] = {
      {"ContextMenu.Copy.Label", "copy"},      {"ContextMenu.Cut.Label", "cut"},
      {"ContextMenu.Paste.Label", "paste"},    {"ContextMenu.Previous.Label", "previous"},
      {"ContextMenu.Next.Label", "next"},      {"ContextMenu.Refresh.Label", "refresh"},
      {"ContextMenu.OpenLink.Label", "link"},  {"ContextMenu.CopyLinkURL.Label", "address"},
      {"ContextMenu.Undo.Label", "undo"},      {"ContextMenu.Redo.Label", "redo"},
      {"ContextMenu.Delete.Label", "delete"},  {"ContextMenu.ResetZoom.Label", "size"},
      {"ContextMenu.DevTools.Label", "tools"},
  };
  for (const auto& [key, label] : labels) {
    tools.messages[{"ORBCefClientHandler", key}] = label;
  }
}

class ORBCefContextMenuTest : public testing::Test {
 protected:
  ORBCefContextMenuTest() { SetLabels(_tools); }

  Lines MenuFor(int type_flags) {
    _params->type_flags = type_flags;
    const CefRefPtr<MenuModelDouble> model = new MenuModelDouble();
    ORBCefContextMenu::Build(_browser, _params, model, _settings);
    return model->Lines();
  }

  Calls Run(int id, cef_event_flags_t flags = kNoFlags) {
    _browser->calls.clear();
    EXPECT_TRUE(ORBCefContextMenu::Run(_browser, _browser->main_frame, _params, id, flags)) << id;
    return _browser->calls;
  }

  FakeTools _tools;
  ORBCefViewSettings _settings;
  CefRefPtr<BrowserDouble> _browser = new BrowserDouble();
  CefRefPtr<ContextMenuParamsDouble> _params = new ContextMenuParamsDouble();
};

TEST_F(ORBCefContextMenuTest, ThePageOffersItsHistoryAndAReload) {
  for (const int flags :
       {+CM_TYPEFLAG_PAGE, +CM_TYPEFLAG_FRAME, CM_TYPEFLAG_PAGE | CM_TYPEFLAG_MEDIA}) {
    EXPECT_EQ(MenuFor(flags),
              (Lines{"26503 previous (disabled)", "26504 next (disabled)", "26505 refresh", "--"}));
  }
}

TEST_F(ORBCefContextMenuTest, TheHistoryIsEnabledWhereThereIsSome) {
  _browser->can_go_back = true;
  EXPECT_EQ(MenuFor(CM_TYPEFLAG_PAGE),
            (Lines{"26503 previous", "26504 next (disabled)", "26505 refresh", "--"}));
  _browser->can_go_back = false;
  _browser->can_go_forward = true;
  EXPECT_EQ(MenuFor(CM_TYPEFLAG_PAGE),
            (Lines{"26503 previous (disabled)", "26504 next", "26505 refresh", "--"}));
}

TEST_F(ORBCefContextMenuTest, WhatTheHostForbidsIsLeftOut) {
  _settings.history_enabled = false;
  EXPECT_EQ(MenuFor(CM_TYPEFLAG_PAGE), (Lines{"26505 refresh", "--"}));
  _settings.reload_enabled = false;
  EXPECT_EQ(MenuFor(CM_TYPEFLAG_PAGE), Lines{});
  _settings.history_enabled = true;
  EXPECT_EQ(MenuFor(CM_TYPEFLAG_PAGE),
            (Lines{"26503 previous (disabled)", "26504 next (disabled)", "--"}));
}

TEST_F(ORBCefContextMenuTest, ALinkOffersItself) {
  EXPECT_EQ(MenuFor(CM_TYPEFLAG_LINK), kLinkItems);
  EXPECT_EQ(MenuFor(CM_TYPEFLAG_LINK | CM_TYPEFLAG_PAGE), kLinkItems);
}

TEST_F(ORBCefContextMenuTest, TextOffersTheEditsWithThePageOrWithout) {
  _params->edit_flags = kAllEdits;
  for (const int page : {+CM_TYPEFLAG_NONE, +CM_TYPEFLAG_PAGE, +CM_TYPEFLAG_FRAME}) {
    EXPECT_EQ(MenuFor(page | CM_TYPEFLAG_SELECTION), kEditItems);
    EXPECT_EQ(MenuFor(page | CM_TYPEFLAG_EDITABLE), kEditItems);
  }
}

TEST_F(ORBCefContextMenuTest, EachEditHasAFlagOfItsOwn) {
  const std::pair<int, const char*> edits[] = {
      {CM_EDITFLAG_CAN_UNDO, "26508 undo"},   {CM_EDITFLAG_CAN_REDO, "26509 redo"},
      {CM_EDITFLAG_CAN_CUT, "26501 cut"},     {CM_EDITFLAG_CAN_COPY, "26500 copy"},
      {CM_EDITFLAG_CAN_PASTE, "26502 paste"}, {CM_EDITFLAG_CAN_DELETE, "26510 delete"}};
  for (const auto& [flag, line] : edits) {
    Lines expected = kEditItems;
    for (std::string& item : expected) {
      if (item != line && item != "--")
        item += " (disabled)";
    }
    _params->edit_flags = flag;
    EXPECT_EQ(MenuFor(CM_TYPEFLAG_EDITABLE), expected);
  }
}

TEST_F(ORBCefContextMenuTest, ALinkInAnEditableAreaOffersBoth) {
  _params->edit_flags = kAllEdits;
  EXPECT_EQ(MenuFor(CM_TYPEFLAG_LINK | CM_TYPEFLAG_EDITABLE), kLinkItems + kEditItems);
}

TEST_F(ORBCefContextMenuTest, APictureAloneOffersNothing) {
  EXPECT_EQ(MenuFor(CM_TYPEFLAG_MEDIA), Lines{});
  EXPECT_EQ(MenuFor(CM_TYPEFLAG_NONE), Lines{});
}

TEST_F(ORBCefContextMenuTest, AZoomedViewOffersTheWayBackEverywhere) {
  for (const double level : {0.4, -0.4}) {
    _browser->host->zoom_level = level;
    EXPECT_EQ(MenuFor(CM_TYPEFLAG_MEDIA), kZoomItems);
    EXPECT_EQ(MenuFor(CM_TYPEFLAG_LINK), kLinkItems + kZoomItems);
  }
}

TEST_F(ORBCefContextMenuTest, ALabelThatTheHostDoesNotKnowIsEmpty) {
  _tools.messages.clear();
  EXPECT_EQ(MenuFor(CM_TYPEFLAG_LINK), (Lines{"26506 ", "26507 ", "--"}));
}

TEST_F(ORBCefContextMenuTest, LabelsGiveTheirRecordsBack) {
  const int before = FakeTools::LiveRecords();
  MenuFor(CM_TYPEFLAG_LINK | CM_TYPEFLAG_EDITABLE);
  EXPECT_EQ(FakeTools::LiveRecords(), before);
}

TEST_F(ORBCefContextMenuTest, NullArgumentsLeaveTheModelAlone) {
  const Lines untouched = {"131 Print"};
  const CefRefPtr<MenuModelDouble> model = new MenuModelDouble();
  ORBCefContextMenu::Build(nullptr, _params, model, _settings);
  EXPECT_EQ(model->Lines(), untouched);
  ORBCefContextMenu::Build(_browser, nullptr, model, _settings);
  EXPECT_EQ(model->Lines(), untouched);
  ORBCefContextMenu::Build(_browser, _params, nullptr, _settings);
}

TEST_F(ORBCefContextMenuTest, ABrowserWithoutAHostIsNotZoomed) {
  _browser->host = nullptr;
  EXPECT_EQ(MenuFor(CM_TYPEFLAG_LINK), kLinkItems);
  EXPECT_EQ(Run(26512), Calls{});
}

TEST_F(ORBCefContextMenuTest, EachItemDoesItsOwn) {
  _params->link_url = "http://link.test/";
  const std::pair<int, const char*> actions[] = {
      {26500, "Copy"},
      {26501, "Cut"},
      {26502, "Paste"},
      {26503, "GoBack"},
      {26504, "GoForward"},
      {26505, "Reload"},
      {26508, "Undo"},
      {26509, "Redo"},
      {26510, "Delete"},
      {26512, "SetZoomLevel"},
      {26506, "LoadURL http://link.test/"},
      {26513, "ShowDevTools Developer Tools"},
  };
  _browser->host->zoom_level = 1.0;
  for (const auto& [id, action] : actions) {
    EXPECT_EQ(Run(id), Calls{action}) << id;
  }
  EXPECT_EQ(_browser->host->zoom_level, 0);
}

TEST_F(ORBCefContextMenuTest, ARefreshWithShiftIgnoresTheCache) {
  EXPECT_EQ(Run(26505, EVENTFLAG_SHIFT_DOWN), Calls{"ReloadIgnoreCache"});
  EXPECT_EQ(Run(26505, EVENTFLAG_CONTROL_DOWN), Calls{"Reload"});
}

TEST_F(ORBCefContextMenuTest, AnUnknownItemCountsAsDone) {
  for (const int id : {26499, 26511, 26514, 0, -1, +MENU_ID_RELOAD}) {
    EXPECT_EQ(Run(id), Calls{}) << id;
  }
}

TEST_F(ORBCefContextMenuTest, NullArgumentsAreNoCommand) {
  const CefRefPtr<CefFrame> frame = _browser->main_frame;
  EXPECT_FALSE(ORBCefContextMenu::Run(nullptr, frame, _params, 26505, kNoFlags));
  EXPECT_FALSE(ORBCefContextMenu::Run(_browser, nullptr, _params, 26505, kNoFlags));
  EXPECT_FALSE(ORBCefContextMenu::Run(_browser, frame, nullptr, 26505, kNoFlags));
  EXPECT_TRUE(_browser->calls.empty());
}

// Meant: the length of the 16-bit text is counted in bytes.
TEST_F(ORBCefContextMenuTest, AboutTheFirstHalfOfALinkIsCopied) {
  if (!clipboard::Exists())
    GTEST_SKIP() << "There is no X server.";
  // 26 units make 27 bytes, and these 13 whole units.
  _params->link_url = "http://link.test/abcdefghi";
  EXPECT_EQ(Run(26507), Calls{});
  EXPECT_EQ(clipboard::Text(), "http://link.t");
  // 25 units make 26 bytes, and these 13 as well.
  _params->link_url = "http://link.test/abcdefgh";
  EXPECT_EQ(Run(26507), Calls{});
  EXPECT_EQ(clipboard::Text(), clipboard::Arriving("http://link.t"));
  _params->link_url = "";
  EXPECT_EQ(Run(26507), Calls{});
  EXPECT_EQ(clipboard::Text(), "");
}

TEST(ORBCefContextMenuToolsTest, TheToolsNeedTheirVariableWhichIsReadOnce) {
  const auto menu = [] {
    const CefRefPtr<BrowserDouble> browser = new BrowserDouble();
    const CefRefPtr<ContextMenuParamsDouble> params = new ContextMenuParamsDouble();
    const CefRefPtr<MenuModelDouble> model = new MenuModelDouble();
    ORBCefContextMenu::Build(browser, params, model, ORBCefViewSettings());
    return model->Lines();
  };
  fresh_process::Run([&] {
    FakeTools tools;
    SetLabels(tools);
    // The port of the remote tools has no bearing on the menu.
    tools.Set("ORBCEF_DEVTOOLS_PORT", "9222");
    EXPECT_EQ(menu(), Lines{});
    tools.Set("ORBCEF_DEVTOOLS", "1");
    EXPECT_EQ(menu(), Lines{});
  });
  fresh_process::Run([&] {
    FakeTools tools;
    SetLabels(tools);
    tools.Set("ORBCEF_DEVTOOLS", "");
    EXPECT_EQ(menu(), Lines{"26513 tools"});
    tools.Unset("ORBCEF_DEVTOOLS");
    EXPECT_EQ(menu(), Lines{"26513 tools"});
  });
}

}  // namespace
