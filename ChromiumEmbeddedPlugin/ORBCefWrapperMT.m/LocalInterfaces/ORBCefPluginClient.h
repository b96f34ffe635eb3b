// The adapter behind the browser table: it keeps the view's settings until the engine's browser
// exists, forwards them to the client handler, and turns the table's arguments into engine types.
// The host's main thread calls it; SetVisible, ChangeZoomLevel and SetBounds hop to the engine's
// UI thread by themselves. The table owns one reference, every posted task and the handler's URL
// observer another.
#ifndef ORBCEF_PLUGIN_CLIENT_H
#define ORBCEF_PLUGIN_CLIENT_H

#include <array>
#include <cstdint>
#include <mutex>

#include "ORBCefClientHandler.h"
#include "ORBCefReplayDelegateResult.h"
#include "include/cef_base.h"
#include "include/cef_browser.h"
#include "include/cef_frame.h"
#include "orbcefbrowser.h"
#include "orbcefbrowserevents.h"
#include "orbcefbrowserhost.h"
#include "orbcefrecords.h"
#include "platform/Windowing.h"

// Makes the adapter, starts the engine if needed and returns the filled table with one reference
// that belongs to the caller. Called on the host's main thread.
orbcefbrowser_c* ORBCefCreateBrowserTable(orbcefbrowserevents_c* events,
                                          orbcefbrowserhost_c* auth_delegate,
                                          const orbcefstring_c* home_url);

// Puts a table around `client`, of which it takes a reference.
class ORBCefPluginClient;
orbcefbrowser_c* ORBCefMakeBrowserTable(const CefRefPtr<ORBCefPluginClient>& client);

class ORBCefPluginClient : public CefBaseRefCounted {
 public:
  using Rect = std::array<int32_t, 4>;  // x, y, width, height

  // What the adapter does to the view's window. Tests bring their own.
  struct WindowOperations {
    bool (*move_resize)(platform::WindowHandle window, int x, int y, int width, int height);
    bool (*invalidate)(platform::WindowHandle window);
    bool (*shrink_to_nothing)(platform::WindowHandle window);
  };
  static const WindowOperations kPlatformWindows;

  // The flags that the host reads and writes here, on its main thread. Those below flag3 are
  // mirrored in the handler.
  struct Flags {
    bool flag0 = false;
    bool flag1 = true;
    bool javascript_enabled = true;
    bool flag3 = true;
    bool history_enabled = true;
    bool reload_enabled = true;
    bool zoom_by_page_enabled = true;
    bool forward_console = false;
    bool local_files_allowed = false;
    bool external_navigation_allowed = true;
  };

  // The table calls nothing but ExecuteReplay on an adapter with a null `client`.
  ORBCefPluginClient(CefRefPtr<ORBCefClientHandler> client, const CefString& home_url,
                     const WindowOperations& windows = kPlatformWindows);

  // What needs the object itself: start URL, start of the engine, URL observer, language.
  void Start();
  // The last reference of the table goes: nobody can ask for the current URL any more, so the
  // observer, which holds a reference on this object, is taken back.
  void OnTableReleased();

  const CefRefPtr<ORBCefClientHandler>& Client() const { return _client; }
  const Flags& GetFlags() const { return _flags; }
  void SetFlag0(bool value) { _flags.flag0 = value; }
  void SetFlag1(bool value) { _flags.flag1 = value; }
  void SetFlag3(bool value) { _flags.flag3 = value; }
  void SetJavaScriptEnabled(bool value) { _flags.javascript_enabled = value; }
  void SetHistoryEnabled(bool value);
  void SetReloadEnabled(bool value);
  void SetZoomByPageEnabled(bool value);
  void SetForwardConsole(bool value);
  void SetLocalFilesAllowed(bool value);
  void SetExternalNavigationAllowed(bool value);

  CefString DownloadDirectory() const { return _download_dir; }
  void SetDownloadDirectory(const CefString& path);
  CefString ErrorURL() const { return _error_url; }
  void SetErrorURL(const CefString& url);
  CefString HomeURL() const { return _home_url; }
  void SetHomeURL(const CefString& url);
  CefString CurrentURL() const;

  void Create(void* parent_window, const Rect& rect, const CefString& url);
  void Close(bool force);
  void SetVisible(bool show);
  void SetBounds(const Rect& rect);
  void ChangeZoomLevel(double delta);
  void ShowDevTools();
  ReplayDelegateResult ExecuteReplay(const CefString& interaction);

  // Null when there is no browser yet, none any more, or the view is closing.
  CefRefPtr<CefBrowser> Browser() const;
  CefRefPtr<CefBrowserHost> Host() const;
  CefRefPtr<CefFrame> MainFrame() const;
  CefRefPtr<CefFrame> FocusedFrame() const;

  // What the three hopping operations do once they are on the engine's UI thread.
  void ApplyVisible(bool show);
  void ApplyBounds(const Rect& rect);
  void ApplyZoomChange(double delta);

  // What Create and ShowDevTools hand to the engine.
  void FillBrowserSettings(CefBrowserSettings& settings) const;
  static void FillWindowInfo(void* parent_window, const Rect& rect, CefWindowInfo& info);

 private:
  ~ORBCefPluginClient() override = default;

  void SetCurrentURL(const CefString& url);

  const CefRefPtr<ORBCefClientHandler> _client;
  const WindowOperations _windows;
  const int32_t _frame_rate = 60;

  // Host's main thread only.
  Flags _flags;
  CefString _home_url;
  CefString _error_url;
  CefString _download_dir;
  bool _closed = false;

  // Written on the engine's UI thread, read on the host's main thread.
  mutable std::mutex _current_url_lock;
  CefString _current_url;

  // Engine's UI thread only.
  Rect _bounds{};
  bool _visible = true;

  IMPLEMENT_REFCOUNTING(ORBCefPluginClient);
};

#endif  // ORBCEF_PLUGIN_CLIENT_H
