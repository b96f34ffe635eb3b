// The functions of the browser table: each finds its object, checks, converts and calls.
#include <atomic>
#include <cstddef>
#include <memory>
#include <utility>

#include "ORBCefAssert.h"
#include "ORBCefConversionToolsWrapperMT.h"
#include "ORBCefPluginClient.h"

namespace {

using ORBCefConversionToolsWrapperMT::FromCStringToCef;
using ORBCefConversionToolsWrapperMT::ToCString;
using Table = orbcefbrowser_c;
using Client = ORBCefPluginClient;

// What slot 0 points to. The pointer is one reference on the object.
struct Instance {
  Client* client;
  std::atomic<int32_t> reference_count;
};
static_assert(sizeof(Instance) == 16 && offsetof(Instance, reference_count) == 8,
              "The holder is known as two words.");

Instance* FindInstance(const Table* table) noexcept {
  if (!ORBCefCheck(table != nullptr, ORBCefCheckSites::kBrowserTable)) {
    return nullptr;
  }
  return static_cast<Instance*>(table->instance);
}

Client* FindObject(const Table* table) noexcept {
  const Instance* const instance = FindInstance(table);
  return instance ? instance->client : nullptr;
}

// Null also for an object that has lost its handler: its slots give their neutral values.
Client* Find(const Table* table) noexcept {
  Client* const client = FindObject(table);
  return client && client->Client() ? client : nullptr;
}

Client::Rect ToRect(const int32_t rect[4]) {
  return {rect[0], rect[1], rect[2], rect[3]};
}

void AddRef(Table* table) noexcept {
  if (Instance* const instance = FindInstance(table)) {
    instance->reference_count.fetch_add(1);
  }
}

void Release(Table* table) noexcept {
  Instance* const instance = FindInstance(table);
  if (!instance || instance->reference_count.fetch_sub(1) != 1) {
    return;
  }
  const std::unique_ptr<Table> freed_table(table);
  const std::unique_ptr<Instance> freed_instance(instance);
  if (Client* const client = std::exchange(instance->client, nullptr)) {
    client->OnTableReleased();
    client->Release();
  }
}

template <bool Client::Flags::*kFlag>
uint8_t GetFlag(Table* table) noexcept {
  const Client* const client = Find(table);
  return client && client->GetFlags().*kFlag ? 1 : 0;
}

template <void (Client::*kSetter)(bool)>
void SetFlag(Table* table, uint8_t value) noexcept {
  if (Client* const client = Find(table)) {
    (client->*kSetter)(value != 0);
  }
}

template <CefString (Client::*kGetter)() const>
orbcefstring_c* GetText(Table* table) noexcept {
  const Client* const client = Find(table);
  return client ? ToCString((client->*kGetter)()) : nullptr;
}

template <void (Client::*kSetter)(const CefString&)>
void SetText(Table* table, const orbcefstring_c* text) noexcept {
  if (Client* const client = Find(table)) {
    (client->*kSetter)(FromCStringToCef(text));
  }
}

template <bool (CefBrowser::*kQuestion)()>
uint8_t AskBrowser(Table* table) noexcept {
  const Client* const client = Find(table);
  const CefRefPtr<CefBrowser> browser = client ? client->Browser() : nullptr;
  return browser && (browser.get()->*kQuestion)() ? 1 : 0;
}

template <void (CefBrowser::*kAction)()>
void OnBrowser(Table* table) noexcept {
  const Client* const client = Find(table);
  if (const CefRefPtr<CefBrowser> browser = client ? client->Browser() : nullptr) {
    (browser.get()->*kAction)();
  }
}

template <void (CefBrowserHost::*kAction)()>
void OnHost(Table* table) noexcept {
  const Client* const client = Find(table);
  if (const CefRefPtr<CefBrowserHost> host = client ? client->Host() : nullptr) {
    (host.get()->*kAction)();
  }
}

template <void (CefFrame::*kAction)()>
void OnFocusedFrame(Table* table) noexcept {
  const Client* const client = Find(table);
  if (const CefRefPtr<CefFrame> frame = client ? client->FocusedFrame() : nullptr) {
    (frame.get()->*kAction)();
  }
}

int32_t GetPopupMode(Table* table) noexcept {
  const Client* const client = Find(table);
  return client ? client->Client()->Settings().popup_mode.load() : ORBCEF_POPUP_ALLOW;
}

void SetPopupMode(Table* table, int32_t mode) noexcept {
  if (const Client* const client = Find(table)) {
    client->Client()->Settings().popup_mode = mode;
  }
}

uint8_t GetJSDialogsAllowed(Table* table) noexcept {
  const Client* const client = Find(table);
  return client && client->Client()->Settings().js_dialogs_allowed ? 1 : 0;
}

void SetJSDialogsAllowed(Table* table, uint8_t allowed) noexcept {
  if (const Client* const client = Find(table)) {
    client->Client()->Settings().js_dialogs_allowed = allowed != 0;
  }
}

void Create(Table* table, void* parent_window, const int32_t rect[4],
            const orbcefstring_c* url) noexcept {
  Client* const client = Find(table);
  if (client && rect) {
    client->Create(parent_window, ToRect(rect), FromCStringToCef(url));
  }
}

void LoadURL(Table* table, const orbcefstring_c* url) noexcept {
  const Client* const client = Find(table);
  if (!client || !url) {
    return;
  }
  if (const CefRefPtr<CefFrame> frame = client->MainFrame()) {
    frame->LoadURL(FromCStringToCef(url));
  }
}

void ExecuteJavaScript(Table* table, const orbcefstring_c* code, const orbcefstring_c* url,
                       int32_t line) noexcept {
  const Client* const client = Find(table);
  if (client && !client->Client()->IsClosing()) {
    client->Client()->ExecuteJavaScript(FromCStringToCef(code), FromCStringToCef(url), line);
  }
}

void SetZoomLevel(Table* table, double level) noexcept {
  const Client* const client = Find(table);
  if (const CefRefPtr<CefBrowserHost> host = client ? client->Host() : nullptr) {
    host->SetZoomLevel(level);
  }
}

void ChangeZoomLevel(Table* table, double delta) noexcept {
  if (Client* const client = Find(table)) {
    client->ChangeZoomLevel(delta);
  }
}

void ShowDevTools(Table* table) noexcept {
  if (Client* const client = Find(table)) {
    client->ShowDevTools();
  }
}

void* GetWindow(Table* table) noexcept {
  const Client* const client = Find(table);
  return client ? platform::FromWindowHandle<void*>(client->Client()->GetWindow()) : nullptr;
}

void SetBounds(Table* table, const int32_t rect[4]) noexcept {
  Client* const client = Find(table);
  if (client && rect) {
    client->SetBounds(ToRect(rect));
  }
}

orbcefreplayresult_c* ExecuteReplay(Table* table, const orbcefstring_c* interaction) noexcept {
  Client* const client = FindObject(table);
  if (!client) {
    return nullptr;
  }
  const ReplayDelegateResult result = client->ExecuteReplay(FromCStringToCef(interaction));
  return ORBCefConversionToolsWrapperMT::MakeReplayResult(result.code, result.message.ToString());
}

// In the order of the slots.
constexpr Table kTable = {
    nullptr,
    AddRef,
    Release,
    GetFlag<&Client::Flags::flag0>,
    SetFlag<&Client::SetFlag0>,
    GetFlag<&Client::Flags::flag1>,
    SetFlag<&Client::SetFlag1>,
    GetFlag<&Client::Flags::javascript_enabled>,
    SetFlag<&Client::SetJavaScriptEnabled>,
    GetFlag<&Client::Flags::flag3>,
    SetFlag<&Client::SetFlag3>,
    GetFlag<&Client::Flags::history_enabled>,
    SetFlag<&Client::SetHistoryEnabled>,
    GetFlag<&Client::Flags::reload_enabled>,
    SetFlag<&Client::SetReloadEnabled>,
    GetFlag<&Client::Flags::zoom_by_page_enabled>,
    SetFlag<&Client::SetZoomByPageEnabled>,
    GetFlag<&Client::Flags::forward_console>,
    SetFlag<&Client::SetForwardConsole>,
    GetText<&Client::DownloadDirectory>,
    SetText<&Client::SetDownloadDirectory>,
    GetText<&Client::ErrorURL>,
    SetText<&Client::SetErrorURL>,
    GetPopupMode,
    SetPopupMode,
    GetFlag<&Client::Flags::local_files_allowed>,
    SetFlag<&Client::SetLocalFilesAllowed>,
    GetFlag<&Client::Flags::external_navigation_allowed>,
    SetFlag<&Client::SetExternalNavigationAllowed>,
    GetJSDialogsAllowed,
    SetJSDialogsAllowed,
    SetFlag<&Client::SetVisible>,
    Create,
    SetFlag<&Client::Close>,
    LoadURL,
    AskBrowser<&CefBrowser::CanGoBack>,
    OnBrowser<&CefBrowser::GoBack>,
    AskBrowser<&CefBrowser::CanGoForward>,
    OnBrowser<&CefBrowser::GoForward>,
    // Never ReloadIgnoreCache.
    OnBrowser<&CefBrowser::Reload>,
    OnBrowser<&CefBrowser::StopLoad>,
    OnFocusedFrame<&CefFrame::Copy>,
    OnFocusedFrame<&CefFrame::Cut>,
    OnFocusedFrame<&CefFrame::Paste>,
    OnFocusedFrame<&CefFrame::Delete>,
    OnFocusedFrame<&CefFrame::SelectAll>,
    OnFocusedFrame<&CefFrame::Undo>,
    OnFocusedFrame<&CefFrame::Redo>,
    GetText<&Client::CurrentURL>,
    GetText<&Client::HomeURL>,
    SetText<&Client::SetHomeURL>,
    ExecuteJavaScript,
    SetZoomLevel,
    ChangeZoomLevel,
    ShowDevTools,
    OnHost<&CefBrowserHost::CloseDevTools>,
    GetWindow,
    OnHost<&CefBrowserHost::NotifyMoveOrResizeStarted>,
    SetBounds,
    ExecuteReplay,
};

}  // namespace

orbcefbrowser_c* ORBCefMakeBrowserTable(const CefRefPtr<ORBCefPluginClient>& client) {
  auto instance = std::make_unique<Instance>();
  instance->reference_count = 1;
  if (client) {
    client->AddRef();
    instance->client = client.get();
  }
  auto table = std::make_unique<orbcefbrowser_c>(kTable);
  table->instance = instance.release();
  return table.release();
}

orbcefbrowser_c* ORBCefCreateBrowserTable(orbcefbrowserevents_c* events,
                                          orbcefbrowserhost_c* auth_delegate,
                                          const orbcefstring_c* home_url) {
  const CefString url = FromCStringToCef(home_url);
  const CefRefPtr<ORBCefPluginClient> client =
      new ORBCefPluginClient(new ORBCefClientHandler(events, auth_delegate, url), url);
  client->Start();
  return ORBCefMakeBrowserTable(client);
}
