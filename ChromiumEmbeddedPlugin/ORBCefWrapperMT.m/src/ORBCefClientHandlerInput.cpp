// The callbacks that shape what the user does with keys and with the context menu.
#include "ORBCefClientHandler.h"
#include "ORBCefContextMenu.h"
#include "ORBCefKeyboardShortcuts.h"
#include "ORBCefToolsWrapperMT.h"

void ORBCefClientHandler::OnBeforeContextMenu(CefRefPtr<CefBrowser> browser,
                                              CefRefPtr<CefFrame> frame,
                                              CefRefPtr<CefContextMenuParams> params,
                                              CefRefPtr<CefMenuModel> model) {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_UI)) {
    return;
  }
  ORBCefContextMenu::Build(browser, params, model, _settings);
}

bool ORBCefClientHandler::OnContextMenuCommand(CefRefPtr<CefBrowser> browser,
                                               CefRefPtr<CefFrame> frame,
                                               CefRefPtr<CefContextMenuParams> params,
                                               int command_id, EventFlags event_flags) {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_UI)) {
    return false;
  }
  return ORBCefContextMenu::Run(browser, frame, params, command_id, event_flags);
}

bool ORBCefClientHandler::OnPreKeyEvent(CefRefPtr<CefBrowser> browser, const CefKeyEvent& event,
                                        CefEventHandle os_event, bool* is_keyboard_shortcut) {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_UI)) {
    return false;
  }
  ORBCefKeyboardShortcuts::OnPreKeyEvent(browser, event, is_keyboard_shortcut);
  // The page comes first.
  return false;
}

bool ORBCefClientHandler::OnKeyEvent(CefRefPtr<CefBrowser> browser, const CefKeyEvent& event,
                                     CefEventHandle os_event) {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_UI)) {
    return false;
  }
  return ORBCefKeyboardShortcuts::OnKeyEvent(browser, event, _settings.home_url.Get());
}
