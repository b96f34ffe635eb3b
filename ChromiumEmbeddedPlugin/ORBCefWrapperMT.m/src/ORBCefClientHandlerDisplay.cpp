// The callbacks that tell what the page is doing and where the view is.
#include <iterator>
#include <mutex>

#include "ORBCefClientHandler.h"
#include "ORBCefErrorNames.h"
#include "ORBCefLog.h"
#include "ORBCefToolsWrapperMT.h"

namespace {

using Guard = std::lock_guard<platform::Lock>;

// The engine's connection errors.
constexpr int kFirstConnectionError = -199;
constexpr int kLastConnectionError = -100;

// Indexed by the engine's type of a JavaScript dialog.
constexpr const char* kSuppressedDialogs[] = {"Suppressed JS alert dialog\n",
                                              "Suppressed JS confirm dialog\n",
                                              "Suppressed JS prompt dialog\n"};

const char* SuppressedDialog(cef_jsdialog_type_t type) {
  const auto index = static_cast<size_t>(type);
  return index < std::size(kSuppressedDialogs) ? kSuppressedDialogs[index] : "";
}

bool IsLoadThread() {
  return ORBCefToolsWrapperMT::CheckThread(TID_UI) ||
         ORBCefToolsWrapperMT::CheckThread(TID_RENDERER);
}

CefRect ToEngineRect(const platform::Rect& rect) {
  return CefRect(rect.x, rect.y, rect.width, rect.height);
}

}  // namespace

void ORBCefClientHandler::OnAddressChange(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                                          const CefString& url) {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_UI)) {
    return;
  }
  if (!frame || !frame->IsMain()) {
    return;
  }
  ORBCefLog::BrowserInfo(_browser_id, "URL changed: ", url);
  // Called without the lock, and kept alive by the copy if the view is detached meanwhile.
  URLObserver observer;
  {
    const Guard guard(_lock);
    observer = _url_observer;
  }
  if (observer) {
    observer(url);
  }
  const Guard guard(_lock);
  _callbacks.OnAddressChanged(url);
}

void ORBCefClientHandler::OnTitleChange(CefRefPtr<CefBrowser> browser, const CefString& title) {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_UI)) {
    return;
  }
  ORBCefLog::BrowserInfo(_browser_id, "Title changed: ", title);
  const Guard guard(_lock);
  _callbacks.OnTitleChanged(title);
}

void ORBCefClientHandler::OnStatusMessage(CefRefPtr<CefBrowser> browser, const CefString& value) {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_UI)) {
    return;
  }
  ORBCefLog::BrowserInfo(_browser_id, "Status message: ", value);
}

bool ORBCefClientHandler::OnConsoleMessage(CefRefPtr<CefBrowser> browser, cef_log_severity_t level,
                                           const CefString& message, const CefString& source,
                                           int line) {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_UI)) {
    return false;
  }
  if (_settings.forward_console) {
    const Guard guard(_lock);
    _callbacks.OnConsoleMessage(message, source, line);
  }
  // The engine logs the line as well.
  return false;
}

void ORBCefClientHandler::OnBeforeDownload(CefRefPtr<CefBrowser> browser,
                                           CefRefPtr<CefDownloadItem> download_item,
                                           const CefString& suggested_name,
                                           CefRefPtr<CefBeforeDownloadCallback> callback) {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_UI)) {
    return;
  }
  if (!callback) {
    return;
  }
  const CefString directory = _settings.download_dir.Get();
  if (directory.empty()) {
    callback->Continue(suggested_name, true);
  } else {
    callback->Continue(directory.ToString() + suggested_name.ToString(), false);
  }
}

bool ORBCefClientHandler::OnJSDialog(CefRefPtr<CefBrowser> browser, const CefString& origin_url,
                                     JSDialogType dialog_type, const CefString& message_text,
                                     const CefString& default_prompt_text,
                                     CefRefPtr<CefJSDialogCallback> callback,
                                     bool& suppress_message) {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_UI)) {
    return false;
  }
  suppress_message = !_settings.js_dialogs_allowed;
  if (suppress_message) {
    ORBCefLog::Info(SuppressedDialog(dialog_type), "Origin: ", origin_url,
                    "\nText: ", message_text);
  }
  return false;
}

void ORBCefClientHandler::OnLoadingStateChange(CefRefPtr<CefBrowser> browser, bool isLoading,
                                               bool canGoBack, bool canGoForward) {
  if (!IsLoadThread()) {
    return;
  }
  ORBCefLog::BrowserInfo(_browser_id, "Loading state change: ", isLoading ? "start." : "stop.");
  const CefRefPtr<CefFrame> frame = browser ? browser->GetFocusedFrame() : nullptr;
  if (!frame) {
    return;
  }
  if (!isLoading) {
    FlushJavaScriptQueue();
  }
  const Guard guard(_lock);
  _callbacks.OnLoadingStateChanged(isLoading, frame->GetURL());
}

void ORBCefClientHandler::OnLoadError(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                                      ErrorCode errorCode, const CefString& errorText,
                                      const CefString& failedUrl) {
  if (!IsLoadThread()) {
    return;
  }
  const int code = errorCode;
  ORBCefLog::BrowserError(_browser_id,
                          "Load error.\n\tCode: ", ORBCefErrorNames::NetErrorName(code), " (", code,
                          ")\n\tDescription: ", errorText, "\n\tURL: ", failedUrl);
  const CefString error_url = _settings.error_url.Get();
  if (frame && frame->IsMain() && code >= kFirstConnectionError && code <= kLastConnectionError &&
      !error_url.empty()) {
    frame->LoadURL(error_url);
  }
}

bool ORBCefClientHandler::GetRootScreenRect(CefRefPtr<CefBrowser> browser, CefRect& rect) {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_UI)) {
    return false;
  }
  const platform::WindowHandle window = GetWindow();
  platform::Rect found;
  if (window) {
    if (!platform::RootRect(window, found)) {
      return false;
    }
    rect = ToEngineRect(found);
    return true;
  }
  // Written in any case: the desktop has no rectangle only where there is no screen.
  const bool succeeded = platform::DesktopRect(found);
  rect = ToEngineRect(found);
  return succeeded;
}

void ORBCefClientHandler::GetViewRect(CefRefPtr<CefBrowser> browser, CefRect& rect) {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_UI)) {
    return;
  }
  if (_closing) {
    return;
  }
  const Guard guard(_lock);
  if (!_window) {
    rect = CefRect(0, 0, _osr_width, _osr_height);
    return;
  }
  platform::Rect found;
  if (platform::ClientRect(_window, found)) {
    rect = ToEngineRect(found);
  }
}

bool ORBCefClientHandler::GetScreenPoint(CefRefPtr<CefBrowser> browser, int viewX, int viewY,
                                         int& screenX, int& screenY) {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_UI)) {
    return false;
  }
  const platform::WindowHandle window = GetWindow();
  if (!window) {
    return false;
  }
  // A window that is gone leaves the point as it is, and the answer is yes all the same.
  platform::Point point{viewX, viewY};
  platform::MapToScreen(window, point);
  screenX = point.x;
  screenY = point.y;
  return true;
}
