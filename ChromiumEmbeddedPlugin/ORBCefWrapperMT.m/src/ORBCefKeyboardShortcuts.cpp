#include "ORBCefKeyboardShortcuts.h"

#include "ORBCefDevToolsClient.h"

namespace {

using ORBCefKeyboardShortcuts::Command;

// The codes of Windows, which the engine uses on every system.
enum KeyCode : int {
  kKeyLeft = 37,
  kKeyHome = 36,
  kKeyRight = 39,
  kKey0 = 48,
  kKeyI = 73,
  kKeyJ = 74,
  kKeyR = 82,
  kKeyPad0 = 96,
  kKeyF5 = 116,
  kKeyF12 = 123,
  kKeyPlus = 187,
  kKeyMinus = 189
};

constexpr uint32_t kNothing = 0;
constexpr uint32_t kShift = EVENTFLAG_SHIFT_DOWN;
constexpr uint32_t kControl = EVENTFLAG_CONTROL_DOWN;
constexpr uint32_t kAlt = EVENTFLAG_ALT_DOWN;
static_assert(kShift == 2 && kControl == 4 && kAlt == 8);

struct Row {
  int key_code;
  uint32_t modifiers;
  Command command;
};

constexpr Row kRows[] = {
    {kKeyR, kControl, Command::kReload},
    {kKeyF5, kNothing, Command::kReload},
    {kKeyR, kControl | kShift, Command::kReloadIgnoringCache},
    {kKeyF5, kShift, Command::kReloadIgnoringCache},
    {kKeyF5, kControl, Command::kReloadIgnoringCache},
    {kKeyHome, kAlt, Command::kHome},
    {kKeyLeft, kAlt, Command::kBack},
    {kKeyRight, kAlt, Command::kForward},
    {kKeyI, kControl | kShift, Command::kDeveloperTools},
    {kKeyJ, kControl | kShift, Command::kDeveloperTools},
    {kKeyF12, kNothing, Command::kDeveloperTools},
    {kKeyPlus, kControl, Command::kZoomIn},
    {kKeyMinus, kControl, Command::kZoomOut},
    {kKey0, kControl, Command::kZoomReset},
    {kKeyPad0, kControl, Command::kZoomReset},
};

// On the engine's scale of zoom levels.
constexpr double kZoomStep = 0.4;

bool LoadHome(const CefRefPtr<CefBrowser>& browser, const CefString& home_url) {
  const CefRefPtr<CefFrame> frame = browser->GetMainFrame();
  if (!frame) {
    return false;
  }
  frame->LoadURL(home_url);
  return true;
}

bool OpenDeveloperTools(const CefRefPtr<CefBrowser>& browser) {
  if (!ORBCefDevToolsClient::IsOffered()) {
    return false;
  }
  ORBCefDevToolsClient::Open(browser);
  return true;
}

// The host is not told: only the page's own zoom messages tell it.
void ChangeZoom(const CefRefPtr<CefBrowser>& browser, double step) {
  if (const CefRefPtr<CefBrowserHost> host = browser->GetHost()) {
    host->SetZoomLevel(host->GetZoomLevel() + step);
  }
}

void ResetZoom(const CefRefPtr<CefBrowser>& browser) {
  if (const CefRefPtr<CefBrowserHost> host = browser->GetHost()) {
    host->SetZoomLevel(0);
  }
}

bool Act(Command command, const CefRefPtr<CefBrowser>& browser, const CefString& home_url) {
  switch (command) {
    case Command::kReload:
      browser->Reload();
      return true;
    case Command::kReloadIgnoringCache:
      browser->ReloadIgnoreCache();
      return true;
    case Command::kHome:
      return LoadHome(browser, home_url);
    case Command::kBack:
      browser->GoBack();
      return true;
    case Command::kForward:
      browser->GoForward();
      return true;
    case Command::kDeveloperTools:
      return OpenDeveloperTools(browser);
    case Command::kZoomIn:
      ChangeZoom(browser, kZoomStep);
      return true;
    case Command::kZoomOut:
      ChangeZoom(browser, -kZoomStep);
      return true;
    case Command::kZoomReset:
      ResetZoom(browser);
      return true;
    case Command::kNone:
      return false;
  }
  return false;
}

}  // namespace

namespace ORBCefKeyboardShortcuts {

Command GetKeyboardShortcut(const CefKeyEvent& event) {
  for (const Row& row : kRows) {
    if (event.windows_key_code == row.key_code && event.modifiers == row.modifiers) {
      return row.command;
    }
  }
  return Command::kNone;
}

void OnPreKeyEvent(const CefRefPtr<CefBrowser>& browser, const CefKeyEvent& event,
                   bool* is_shortcut) {
  if (browser && is_shortcut && event.type == KEYEVENT_RAWKEYDOWN) {
    *is_shortcut = GetKeyboardShortcut(event) != Command::kNone;
  }
}

bool OnKeyEvent(const CefRefPtr<CefBrowser>& browser, const CefKeyEvent& event,
                const CefString& home_url) {
  if (!browser || event.type != KEYEVENT_RAWKEYDOWN) {
    return false;
  }
  return Act(GetKeyboardShortcut(event), browser, home_url);
}

}  // namespace ORBCefKeyboardShortcuts
