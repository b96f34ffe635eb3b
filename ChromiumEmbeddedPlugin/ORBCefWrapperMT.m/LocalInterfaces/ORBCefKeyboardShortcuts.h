// The keys that act on a view by themselves: one table from a key event to a command, and what each
// command does. A key goes to the page first and comes here if the page leaves it. Engine's UI
// thread; no state but a variable of the environment, which is read once.
#ifndef ORBCEF_KEYBOARD_SHORTCUTS_H
#define ORBCEF_KEYBOARD_SHORTCUTS_H

#include "include/cef_browser.h"
#include "include/cef_keyboard_handler.h"

namespace ORBCefKeyboardShortcuts {

enum class Command {
  kNone = 0,
  kReload = 1,
  kReloadIgnoringCache = 2,
  kHome = 3,
  kBack = 4,
  kForward = 5,
  kDeveloperTools = 6,
  kZoomIn = 7,
  kZoomOut = 8,
  kZoomReset = 9
};

// By key code and modifiers alone, and all modifiers count: a shortcut with Num Lock is none.
Command GetKeyboardShortcut(const CefKeyEvent& event);

// Before the page sees the key: tells the engine in `is_shortcut`, which may be null, whether it is
// one. The engine then offers it again, to OnKeyEvent, after the page.
void OnPreKeyEvent(const CefRefPtr<CefBrowser>& browser, const CefKeyEvent& event,
                   bool* is_shortcut);

// After the page left the key. True if it was acted on. What the host forbids, such as a reload, is
// tried all the same; the navigation that comes of it is cancelled.
bool OnKeyEvent(const CefRefPtr<CefBrowser>& browser, const CefKeyEvent& event,
                const CefString& home_url);

}  // namespace ORBCefKeyboardShortcuts

#endif  // ORBCEF_KEYBOARD_SHORTCUTS_H
