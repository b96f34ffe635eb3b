#include "ORBCefContextMenu.h"

#include <string>

#include "ORBCefDevToolsClient.h"
#include "ORBCefToolsAccessor.h"
#include "platform/Clipboard.h"

namespace {

using ORBCefContextMenu::CommandId;

constexpr char kCatalog[] = "ORBCefClientHandler";

// What an operation works on, lent for one command.
struct Click {
  const CefRefPtr<CefBrowser>& browser;
  const CefRefPtr<CefFrame>& frame;
  const CefRefPtr<CefContextMenuParams>& params;
  cef_event_flags_t flags;
};

void Refresh(const Click& click) {
  if (click.flags & EVENTFLAG_SHIFT_DOWN) {
    click.browser->ReloadIgnoreCache();
  } else {
    click.browser->Reload();
  }
}

void CopyLinkUrl(const Click& click) {
  const CefString url = click.params->GetLinkUrl();
  const std::u16string text(url.c_str(), url.c_str() + url.length());
  // The length of a 16-bit text is counted in bytes here, so only about its first half arrives.
  // This is meant: the item is relied upon as it is.
  platform::SetClipboardText(text.c_str(), text.length() + 1);
}

void ResetZoom(const Click& click) {
  if (const CefRefPtr<CefBrowserHost> host = click.browser->GetHost()) {
    host->SetZoomLevel(0);
  }
}

struct Item {
  CommandId id;
  const char* key;
  void (*run)(const Click& click);
};

constexpr Item kItems[] = {
    {CommandId::kCopy, "ContextMenu.Copy.Label", [](const Click& click) { click.frame->Copy(); }},
    {CommandId::kCut, "ContextMenu.Cut.Label", [](const Click& click) { click.frame->Cut(); }},
    {CommandId::kPaste, "ContextMenu.Paste.Label",
     [](const Click& click) { click.frame->Paste(); }},
    {CommandId::kPrevious, "ContextMenu.Previous.Label",
     [](const Click& click) { click.browser->GoBack(); }},
    {CommandId::kNext, "ContextMenu.Next.Label",
     [](const Click& click) { click.browser->GoForward(); }},
    {CommandId::kRefresh, "ContextMenu.Refresh.Label", Refresh},
    {CommandId::kOpenLink, "ContextMenu.OpenLink.Label",
     [](const Click& click) { click.frame->LoadURL(click.params->GetLinkUrl()); }},
    {CommandId::kCopyLinkUrl, "ContextMenu.CopyLinkURL.Label", CopyLinkUrl},
    {CommandId::kUndo, "ContextMenu.Undo.Label", [](const Click& click) { click.frame->Undo(); }},
    {CommandId::kRedo, "ContextMenu.Redo.Label", [](const Click& click) { click.frame->Redo(); }},
    {CommandId::kDelete, "ContextMenu.Delete.Label",
     [](const Click& click) { click.frame->Delete(); }},
    {CommandId::kResetZoom, "ContextMenu.ResetZoom.Label", ResetZoom},
    {CommandId::kDeveloperTools, "ContextMenu.DevTools.Label",
     [](const Click& click) { ORBCefDevToolsClient::Open(click.browser); }},
};

struct EditItem {
  CommandId id;
  int enabling_flag;
};

// In the order of the menu.
constexpr EditItem kEditItems[] = {
    {CommandId::kUndo, CM_EDITFLAG_CAN_UNDO},   {CommandId::kRedo, CM_EDITFLAG_CAN_REDO},
    {CommandId::kCut, CM_EDITFLAG_CAN_CUT},     {CommandId::kCopy, CM_EDITFLAG_CAN_COPY},
    {CommandId::kPaste, CM_EDITFLAG_CAN_PASTE}, {CommandId::kDelete, CM_EDITFLAG_CAN_DELETE},
};

const Item* FindItem(int id) {
  for (const Item& item : kItems) {
    if (item.id == id) {
      return &item;
    }
  }
  return nullptr;
}

// The model of one click, under construction.
class Builder {
 public:
  explicit Builder(const CefRefPtr<CefMenuModel>& model) : _model(model) { _model->Clear(); }

  void Add(CommandId id, bool is_enabled = true) {
    _model->AddItem(id, ORBCefToolsAccessor::BuildCatalogMessage(kCatalog, FindItem(id)->key));
    _model->SetEnabled(id, is_enabled);
  }

  void AddSeparator() { _model->AddSeparator(); }

  void AddLinkItems() {
    Add(CommandId::kOpenLink);
    Add(CommandId::kCopyLinkUrl);
    AddSeparator();
  }

  void AddEditItems(int edit_flags) {
    for (const EditItem& item : kEditItems) {
      Add(item.id, (edit_flags & item.enabling_flag) != 0);
    }
    AddSeparator();
  }

  void AddPageItems(const CefRefPtr<CefBrowser>& browser, const ORBCefViewSettings& settings) {
    if (settings.history_enabled) {
      Add(CommandId::kPrevious, browser->CanGoBack());
      Add(CommandId::kNext, browser->CanGoForward());
    }
    if (settings.reload_enabled) {
      Add(CommandId::kRefresh);
    }
    if (_model->GetCount() > 0) {
      AddSeparator();
    }
  }

 private:
  const CefRefPtr<CefMenuModel>& _model;
};

bool IsZoomed(const CefRefPtr<CefBrowser>& browser) {
  const CefRefPtr<CefBrowserHost> host = browser->GetHost();
  return host && host->GetZoomLevel() != 0;
}

}  // namespace

namespace ORBCefContextMenu {

void Build(const CefRefPtr<CefBrowser>& browser, const CefRefPtr<CefContextMenuParams>& params,
           const CefRefPtr<CefMenuModel>& model, const ORBCefViewSettings& settings) {
  if (!browser || !params || !model) {
    return;
  }
  const int flags = params->GetTypeFlags();
  const bool is_link = (flags & CM_TYPEFLAG_LINK) != 0;
  const bool is_text = (flags & (CM_TYPEFLAG_SELECTION | CM_TYPEFLAG_EDITABLE)) != 0;
  const bool is_page = (flags & (CM_TYPEFLAG_PAGE | CM_TYPEFLAG_FRAME)) != 0;

  Builder menu(model);
  if (is_link) {
    menu.AddLinkItems();
  }
  if (is_text) {
    menu.AddEditItems(params->GetEditStateFlags());
  }
  if (!is_link && !is_text && is_page) {
    menu.AddPageItems(browser, settings);
  }
  if (IsZoomed(browser)) {
    menu.Add(kResetZoom);
    menu.AddSeparator();
  }
  if (ORBCefDevToolsClient::IsOffered()) {
    menu.Add(kDeveloperTools);
  }
}

bool Run(const CefRefPtr<CefBrowser>& browser, const CefRefPtr<CefFrame>& frame,
         const CefRefPtr<CefContextMenuParams>& params, int command_id, cef_event_flags_t flags) {
  if (!browser || !frame || !params) {
    return false;
  }
  if (const Item* const item = FindItem(command_id)) {
    item->run({browser, frame, params, flags});
  }
  return true;
}

}  // namespace ORBCefContextMenu
