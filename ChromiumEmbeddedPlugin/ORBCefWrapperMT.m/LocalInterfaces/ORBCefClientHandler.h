// The client object of one view: the one object that the engine talks to. It is wiring: it
// implements the engine's handler interfaces, holds the view's state and lock, and hands each
// concern to a class of its own. Made on the host's main thread; the engine calls it on its UI and
// IO threads as each callback says; the adapter of the browser table calls it on the main thread.
// Shared by the adapter, the engine and, while the browser lives, the client registry.
//
// Lock order: _lock, then the registry's lock. The engine lock is never taken under _lock. _lock is
// recursive, because the host may call back into the view from its own callbacks.
#ifndef ORBCEF_CLIENT_HANDLER_H
#define ORBCEF_CLIENT_HANDLER_H

#include <atomic>
#include <cstdint>
#include <functional>
#include <future>
#include <memory>
#include <string>

#include "ORBCefAuthDelegate.h"
#include "ORBCefBrowserEvents.h"
#include "ORBCefPreferenceRequest.h"
#include "ORBCefRedirectTable.h"
#include "ORBCefReplayDelegateResult.h"
#include "ORBCefScriptQueue.h"
#include "ORBCefViewSettings.h"
#include "include/cef_client.h"
#include "platform/Lock.h"
#include "platform/Windowing.h"

class ORBCefClientHandler : public CefClient,
                            public CefContextMenuHandler,
                            public CefDisplayHandler,
                            public CefDownloadHandler,
                            public CefDragHandler,
                            public CefFocusHandler,
                            public CefJSDialogHandler,
                            public CefKeyboardHandler,
                            public CefLifeSpanHandler,
                            public CefLoadHandler,
                            public CefRenderHandler,
                            public CefRequestHandler,
                            public CefResourceRequestHandler {
 public:
  using URLObserver = std::function<void(const CefString&)>;

  ORBCefClientHandler(orbcefbrowserevents_c* events, orbcefbrowserhost_c* auth_delegate,
                      const CefString& start_url);

  // What the host has set; flags and error URL are written here directly, any thread.
  ORBCefViewSettings& Settings() { return _settings; }

  // Any thread.
  void SetURL(const CefString& url);
  void SetAcceptLanguage(const CefString& language);
  void SetErrorURL(const CefString& url) { _settings.error_url.Set(url); }
  void SetDownloadDirectory(const CefString& path);
  void SetParentWindow(platform::WindowHandle window);
  void SetURLObserver(URLObserver observer);
  void SetOSRSize(int32_t width, int32_t height);
  platform::WindowHandle GetParentWindow() const;
  platform::WindowHandle GetWindow() const;
  CefRefPtr<CefBrowser> GetBrowser() const;
  int GetBrowserId() const { return _browser_id; }
  bool IsClosing() const { return _closing; }
  bool IsDetached() const { return _detached; }
  bool IsLoginPending() const { return _login_pending; }
  std::string GetTurnstileURL() const;
  void AddRedirect(const CefString& source, const CefString& target);
  CefString TakeRedirect(const CefString& url);
  void ExecuteJavaScript(const CefString& code, const CefString& script_url, int start_line);

  // Takes the host's tables away: the host hears nothing more from this view. Host's main thread.
  void Detach();

  // The future holds its result already. Host's main thread.
  std::future<ReplayDelegateResult> ReplayInteraction(const CefString& interaction);

  // CefClient. The engine asks for the handlers on any thread.
  CefRefPtr<CefContextMenuHandler> GetContextMenuHandler() override { return this; }
  CefRefPtr<CefDisplayHandler> GetDisplayHandler() override { return this; }
  CefRefPtr<CefDownloadHandler> GetDownloadHandler() override { return this; }
  CefRefPtr<CefDragHandler> GetDragHandler() override { return this; }
  CefRefPtr<CefFocusHandler> GetFocusHandler() override { return this; }
  CefRefPtr<CefJSDialogHandler> GetJSDialogHandler() override { return this; }
  CefRefPtr<CefKeyboardHandler> GetKeyboardHandler() override { return this; }
  CefRefPtr<CefLifeSpanHandler> GetLifeSpanHandler() override { return this; }
  CefRefPtr<CefLoadHandler> GetLoadHandler() override { return this; }
  CefRefPtr<CefRenderHandler> GetRenderHandler() override { return this; }
  CefRefPtr<CefRequestHandler> GetRequestHandler() override { return this; }
  bool OnProcessMessageReceived(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                                CefProcessId source_process,
                                CefRefPtr<CefProcessMessage> message) override;

  // CefContextMenuHandler, UI thread.
  void OnBeforeContextMenu(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                           CefRefPtr<CefContextMenuParams> params,
                           CefRefPtr<CefMenuModel> model) override;
  bool OnContextMenuCommand(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                            CefRefPtr<CefContextMenuParams> params, int command_id,
                            EventFlags event_flags) override;

  // CefDisplayHandler, UI thread.
  void OnAddressChange(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                       const CefString& url) override;
  void OnTitleChange(CefRefPtr<CefBrowser> browser, const CefString& title) override;
  void OnStatusMessage(CefRefPtr<CefBrowser> browser, const CefString& value) override;
  bool OnConsoleMessage(CefRefPtr<CefBrowser> browser, cef_log_severity_t level,
                        const CefString& message, const CefString& source, int line) override;

  // CefDownloadHandler, UI thread.
  void OnBeforeDownload(CefRefPtr<CefBrowser> browser, CefRefPtr<CefDownloadItem> download_item,
                        const CefString& suggested_name,
                        CefRefPtr<CefBeforeDownloadCallback> callback) override;

  // CefJSDialogHandler, UI thread.
  bool OnJSDialog(CefRefPtr<CefBrowser> browser, const CefString& origin_url,
                  JSDialogType dialog_type, const CefString& message_text,
                  const CefString& default_prompt_text, CefRefPtr<CefJSDialogCallback> callback,
                  bool& suppress_message) override;

  // CefKeyboardHandler, UI thread.
  bool OnPreKeyEvent(CefRefPtr<CefBrowser> browser, const CefKeyEvent& event,
                     CefEventHandle os_event, bool* is_keyboard_shortcut) override;
  bool OnKeyEvent(CefRefPtr<CefBrowser> browser, const CefKeyEvent& event,
                  CefEventHandle os_event) override;

  // CefLifeSpanHandler, UI thread.
  void OnAfterCreated(CefRefPtr<CefBrowser> browser) override;
  bool DoClose(CefRefPtr<CefBrowser> browser) override;
  void OnBeforeClose(CefRefPtr<CefBrowser> browser) override;

  // CefLoadHandler, UI thread.
  void OnLoadingStateChange(CefRefPtr<CefBrowser> browser, bool isLoading, bool canGoBack,
                            bool canGoForward) override;
  void OnLoadError(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame, ErrorCode errorCode,
                   const CefString& errorText, const CefString& failedUrl) override;

  // CefRenderHandler, UI thread. The module does not paint.
  bool GetRootScreenRect(CefRefPtr<CefBrowser> browser, CefRect& rect) override;
  void GetViewRect(CefRefPtr<CefBrowser> browser, CefRect& rect) override;
  bool GetScreenPoint(CefRefPtr<CefBrowser> browser, int viewX, int viewY, int& screenX,
                      int& screenY) override;
  void OnPaint(CefRefPtr<CefBrowser> browser, PaintElementType type, const RectList& dirtyRects,
               const void* buffer, int width, int height) override {}

  // CefRequestHandler, UI thread; the getter comes on the IO thread.
  bool OnBeforeBrowse(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                      CefRefPtr<CefRequest> request, bool user_gesture, bool is_redirect) override;
  CefRefPtr<CefResourceRequestHandler> GetResourceRequestHandler(
      CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame, CefRefPtr<CefRequest> request,
      bool is_navigation, bool is_download, const CefString& request_initiator,
      bool& disable_default_handling) override {
    return this;
  }
  void OnRenderProcessTerminated(CefRefPtr<CefBrowser> browser, TerminationStatus status) override;

  // CefResourceRequestHandler, IO thread.
  ReturnValue OnBeforeResourceLoad(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                                   CefRefPtr<CefRequest> request,
                                   CefRefPtr<CefCallback> callback) override;
  void OnProtocolExecution(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                           CefRefPtr<CefRequest> request, bool& allow_os_execution) override;

 private:
  ~ORBCefClientHandler() override;

  void AskForTicket();
  bool ActOnMessage(const CefRefPtr<CefBrowser>& browser, const CefRefPtr<CefFrame>& frame,
                    const CefRefPtr<CefProcessMessage>& message,
                    std::unique_ptr<ORBCefPreferenceRequest>& preference_request);
  void CloseIfForsaken(const CefRefPtr<CefBrowser>& browser);
  void FlushJavaScriptQueue();

  std::atomic<bool> _closing{false};
  std::atomic<bool> _detached{false};
  std::atomic<int32_t> _osr_width{0};
  std::atomic<int32_t> _osr_height{0};
  std::atomic<bool> _login_pending{false};
  // The first browser of this client; allowed popups change neither this nor _browser.
  std::atomic<int> _browser_id{0};
  ORBCefViewSettings _settings;

  mutable platform::Lock _lock;
  // Guarded by _lock.
  ORBCefScriptQueue _script_queue;
  ORBCefRedirectTable _redirects;
  ORBCefBrowserEvents _callbacks;
  ORBCefAuthDelegate _auth_delegate;
  std::string _turnstile_url;
  // The value of the session cookie that was installed; only stored.
  CefString _login_result;
  URLObserver _url_observer;
  CefRefPtr<CefBrowser> _browser;
  platform::WindowHandle _window = 0;
  platform::WindowHandle _parent_window = 0;

  IMPLEMENT_REFCOUNTING(ORBCefClientHandler);
};

#endif  // ORBCEF_CLIENT_HANDLER_H
