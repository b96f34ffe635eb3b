// The short menu that stands in place of the engine's own: what it offers for the spot that was
// clicked, with labels in the host's language, and what its items do. Engine's UI thread; no state
// but a variable of the environment, which is read once.
#ifndef ORBCEF_CONTEXT_MENU_H
#define ORBCEF_CONTEXT_MENU_H

#include "ORBCefViewSettings.h"
#include "include/cef_browser.h"
#include "include/cef_context_menu_handler.h"

namespace ORBCefContextMenu {

// The numbers of the items. One is left out, and stays so.
enum CommandId : int {
  kCopy = MENU_ID_USER_FIRST,
  kCut,
  kPaste,
  kPrevious,
  kNext,
  kRefresh,
  kOpenLink,
  kCopyLinkUrl,
  kUndo,
  kRedo,
  kDelete,
  kResetZoom = MENU_ID_USER_FIRST + 12,
  kDeveloperTools
};

// Puts the items in place of those that the model has. It may end in a separator, and an empty one
// shows nothing. Nothing happens if an argument is null.
void Build(const CefRefPtr<CefBrowser>& browser, const CefRefPtr<CefContextMenuParams>& params,
           const CefRefPtr<CefMenuModel>& model, const ORBCefViewSettings& settings);

// Carries an item out. False if an argument is null; true otherwise, for ids that are no item's
// too, so that the engine does nothing of its own.
bool Run(const CefRefPtr<CefBrowser>& browser, const CefRefPtr<CefFrame>& frame,
         const CefRefPtr<CefContextMenuParams>& params, int command_id, cef_event_flags_t flags);

}  // namespace ORBCefContextMenu

#endif  // ORBCEF_CONTEXT_MENU_H
