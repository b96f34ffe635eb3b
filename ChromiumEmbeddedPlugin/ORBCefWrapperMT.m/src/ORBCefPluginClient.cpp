#include "ORBCefPluginClient.h"

#include <utility>

#include "ORBCefDevToolsClient.h"
#include "ORBCefEngine.h"
#include "ORBCefTask.h"
#include "ORBCefToolsWrapperMT.h"
#include "include/cef_request_context.h"
#include "platform/Files.h"

namespace {

// A hidden view lets its host finish its own work first.
constexpr int64 kVisibilityDelay = 200;

constexpr cef_color_t kOpaqueWhite = 0xFFFFFFFF;

#if defined(OS_WIN)
// Child, visible, clip children, clip siblings, tab stop.
constexpr DWORD kChildStyle = 0x56010000;
#endif

// Bad rectangles are not checked, so the sum may wrap around.
int32_t WrappingSum(int32_t first, int32_t second) {
  return static_cast<int32_t>(static_cast<uint32_t>(first) + static_cast<uint32_t>(second));
}

// X11 has no empty windows. Any other value goes to the system as it is.
int32_t NotEmpty(int32_t extent) {
#if defined(OS_WIN)
  return extent;
#else
  return extent == 0 ? 1 : extent;
#endif
}

// Runs on the engine's UI thread. Only creations and the shutdown take the engine lock, and
// creations all run on this thread: a lock that is not free belongs to the shutdown, which joins
// this thread while it holds it. So this never waits, and a view that comes too late is dropped
// without a word, as after the shutdown. So is a view that its host has closed meanwhile: nobody
// could close its browser.
void CreateBrowser(const CefWindowInfo& info, const CefRefPtr<ORBCefClientHandler>& client,
                   const CefString& url, const CefBrowserSettings& settings) {
  const std::unique_lock<platform::Lock> guard(ORBCefEngine::Lock(), std::try_to_lock);
  if (!guard.owns_lock() || !ORBCefEngine::App() || client->IsDetached()) {
    return;
  }
  // The handler learns of the browser through OnAfterCreated.
  CefBrowserHost::CreateBrowserSync(info, client, url, settings, nullptr, nullptr);
}

}  // namespace

const ORBCefPluginClient::WindowOperations ORBCefPluginClient::kPlatformWindows = {
    platform::MoveResize, platform::Invalidate, platform::ShrinkToNothing};

ORBCefPluginClient::ORBCefPluginClient(CefRefPtr<ORBCefClientHandler> client,
                                       const CefString& home_url, const WindowOperations& windows)
    : _client(std::move(client)), _windows(windows), _home_url(home_url) {}

void ORBCefPluginClient::Start() {
  _client->SetURL(_home_url);
  ORBCefEngine::InitializeEngine();
  const CefRefPtr<ORBCefPluginClient> self = this;
  _client->SetURLObserver([self](const CefString& url) { self->SetCurrentURL(url); });
  _client->SetAcceptLanguage(ORBCefEngine::Language());
}

void ORBCefPluginClient::OnTableReleased() {
  if (_client) {
    _client->SetURLObserver(nullptr);
  }
}

void ORBCefPluginClient::SetHistoryEnabled(bool value) {
  _flags.history_enabled = value;
  _client->Settings().history_enabled = value;
}

void ORBCefPluginClient::SetReloadEnabled(bool value) {
  _flags.reload_enabled = value;
  _client->Settings().reload_enabled = value;
}

void ORBCefPluginClient::SetZoomByPageEnabled(bool value) {
  _flags.zoom_by_page_enabled = value;
  _client->Settings().zoom_by_page_enabled = value;
}

void ORBCefPluginClient::SetForwardConsole(bool value) {
  _flags.forward_console = value;
  _client->Settings().forward_console = value;
}

void ORBCefPluginClient::SetLocalFilesAllowed(bool value) {
  _flags.local_files_allowed = value;
  _client->Settings().local_files_allowed = value;
}

void ORBCefPluginClient::SetExternalNavigationAllowed(bool value) {
  _flags.external_navigation_allowed = value;
  _client->Settings().external_navigation_allowed = value;
}

void ORBCefPluginClient::SetDownloadDirectory(const CefString& path) {
  const std::string directory = path.ToString();
  if (!directory.empty() &&
      (platform::IsRelative(directory) || !platform::IsDirectory(directory))) {
    return;
  }
  _download_dir = path;
  _client->SetDownloadDirectory(path);
}

void ORBCefPluginClient::SetErrorURL(const CefString& url) {
  _error_url = url;
  _client->SetErrorURL(url);
}

void ORBCefPluginClient::SetHomeURL(const CefString& url) {
  _home_url = url;
  _client->SetURL(url);
}

CefString ORBCefPluginClient::CurrentURL() const {
  const std::lock_guard<std::mutex> guard(_current_url_lock);
  return _current_url;
}

void ORBCefPluginClient::SetCurrentURL(const CefString& url) {
  const std::lock_guard<std::mutex> guard(_current_url_lock);
  _current_url = url;
}

void ORBCefPluginClient::FillWindowInfo(void* parent_window, const Rect& rect,
                                        CefWindowInfo& info) {
  const auto [x, y, width, height] = rect;
  // The extents are the right and the bottom edge: that is how a view is made. The host sets the
  // bounds of the view afterwards.
  info.SetAsChild(
      platform::FromWindowHandle<CefWindowHandle>(platform::ToWindowHandle(parent_window)),
      CefRect(x, y, NotEmpty(WrappingSum(x, width)), NotEmpty(WrappingSum(y, height))));
#if defined(OS_WIN)
  info.style = kChildStyle;
#endif
}

void ORBCefPluginClient::FillBrowserSettings(CefBrowserSettings& settings) const {
  settings.windowless_frame_rate = _frame_rate;
  settings.remote_fonts = STATE_ENABLED;
  settings.javascript = _flags.javascript_enabled ? STATE_ENABLED : STATE_DISABLED;
  settings.javascript_close_windows = STATE_DISABLED;
  settings.javascript_access_clipboard = STATE_ENABLED;
  settings.javascript_dom_paste = STATE_ENABLED;
  settings.image_loading = STATE_ENABLED;
  settings.image_shrink_standalone_to_fit = STATE_ENABLED;
  settings.text_area_resize = STATE_ENABLED;
  settings.tab_to_links = STATE_ENABLED;
  settings.local_storage = STATE_ENABLED;
  settings.databases = STATE_ENABLED;
  settings.background_color = kOpaqueWhite;
  CefString(&settings.accept_language_list) = ORBCefEngine::Language();
}

void ORBCefPluginClient::Create(void* parent_window, const Rect& rect, const CefString& url) {
  _client->SetParentWindow(platform::ToWindowHandle(parent_window));
  ORBCefViewSettings& view = _client->Settings();
  view.history_enabled = _flags.history_enabled;
  view.reload_enabled = _flags.reload_enabled;
  view.zoom_by_page_enabled = _flags.zoom_by_page_enabled;
  view.forward_console = _flags.forward_console;
  CefWindowInfo info;
  if (ORBCefToolsWrapperMT::IsOffScreenRendering()) {
    info.windowless_rendering_enabled = 1;
    _client->SetOSRSize(rect[2], rect[3]);
  } else {
    FillWindowInfo(parent_window, rect, info);
  }
  SetCurrentURL(url);
  CefBrowserSettings settings;
  FillBrowserSettings(settings);
  ORBCefPost(TID_UI, [info, client = _client, url, settings] {
    CreateBrowser(info, client, url, settings);
  });
}

void ORBCefPluginClient::Close(bool force) {
  CefRefPtr<CefBrowserHost> host = Host();
  if (host) {
    host->CloseBrowser(force);
  }
  _closed = true;
  _client->Detach();
  // A browser that came between the two steps above; one that comes later finds the view detached.
  if (!host && (host = Host())) {
    host->CloseBrowser(force);
  }
}

void ORBCefPluginClient::SetVisible(bool show) {
  if (CefCurrentlyOn(TID_UI)) {
    ApplyVisible(show);
    return;
  }
  const CefRefPtr<ORBCefPluginClient> self = this;
  ORBCefPostDelayed(
      TID_UI, [self, show] { self->ApplyVisible(show); }, kVisibilityDelay);
}

void ORBCefPluginClient::ApplyVisible(bool show) {
  if (_visible == show) {
    return;
  }
  const platform::WindowHandle window = _client->GetWindow();
  if (!window || !_client->GetParentWindow()) {
    return;
  }
  if (show) {
    ApplyBounds(_bounds);
  } else {
    _windows.shrink_to_nothing(window);
  }
  _visible = show;
}

void ORBCefPluginClient::SetBounds(const Rect& rect) {
  if (CefCurrentlyOn(TID_UI)) {
    ApplyBounds(rect);
    return;
  }
  if (ORBCefToolsWrapperMT::IsOffScreenRendering()) {
    _client->SetOSRSize(rect[2], rect[3]);
    return;
  }
  if (const CefRefPtr<CefBrowserHost> host = Host()) {
    host->NotifyMoveOrResizeStarted();
  }
  const CefRefPtr<ORBCefPluginClient> self = this;
  ORBCefPost(TID_UI, [self, rect] { self->ApplyBounds(rect); });
}

void ORBCefPluginClient::ApplyBounds(const Rect& rect) {
  if (ORBCefToolsWrapperMT::IsOffScreenRendering()) {
    _client->SetOSRSize(rect[2], rect[3]);
    return;
  }
  if (const CefRefPtr<CefBrowserHost> host = Host()) {
    host->NotifyMoveOrResizeStarted();
  }
  const platform::WindowHandle window = _client->GetWindow();
  if (!window) {
    return;
  }
  _windows.move_resize(window, rect[0], rect[1], rect[2], rect[3]);
  _windows.invalidate(window);
  _bounds = rect;
}

void ORBCefPluginClient::ChangeZoomLevel(double delta) {
  if (CefCurrentlyOn(TID_UI)) {
    ApplyZoomChange(delta);
    return;
  }
  const CefRefPtr<ORBCefPluginClient> self = this;
  ORBCefPost(TID_UI, [self, delta] { self->ApplyZoomChange(delta); });
}

void ORBCefPluginClient::ApplyZoomChange(double delta) {
  if (const CefRefPtr<CefBrowserHost> host = Host()) {
    host->SetZoomLevel(host->GetZoomLevel() + delta);
  }
}

void ORBCefPluginClient::ShowDevTools() {
  const CefRefPtr<CefBrowserHost> host = Host();
  if (!host) {
    return;
  }
  const CefWindowHandle no_parent{};
  CefWindowInfo info;
  ORBCefDevToolsClient::FillWindowInfo(no_parent, info);
  CefBrowserSettings settings;
  FillBrowserSettings(settings);
  host->ShowDevTools(info, new ORBCefDevToolsClient(), settings, CefPoint());
}

ReplayDelegateResult ORBCefPluginClient::ExecuteReplay(const CefString& interaction) {
  // A view that its host has closed is as good as none: nobody waits for its browser.
  if (!_client || _closed || _client->IsClosing()) {
    return {ReplayDelegateResult::kBrowserSideFailure,
            "No valid instance for ORBCefClientHandler."};
  }
  return _client->ReplayInteraction(interaction).get();
}

CefRefPtr<CefBrowser> ORBCefPluginClient::Browser() const {
  return _client->IsClosing() ? nullptr : _client->GetBrowser();
}

CefRefPtr<CefBrowserHost> ORBCefPluginClient::Host() const {
  const CefRefPtr<CefBrowser> browser = Browser();
  return browser ? browser->GetHost() : nullptr;
}

CefRefPtr<CefFrame> ORBCefPluginClient::MainFrame() const {
  const CefRefPtr<CefBrowser> browser = Browser();
  return browser ? browser->GetMainFrame() : nullptr;
}

CefRefPtr<CefFrame> ORBCefPluginClient::FocusedFrame() const {
  const CefRefPtr<CefBrowser> browser = Browser();
  return browser ? browser->GetFocusedFrame() : nullptr;
}
