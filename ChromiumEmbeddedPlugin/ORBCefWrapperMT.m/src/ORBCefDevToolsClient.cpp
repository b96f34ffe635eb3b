#include "ORBCefDevToolsClient.h"

#include "ORBCefToolsWrapperMT.h"

namespace {

constexpr char kWindowName[] = "Developer Tools";

#if defined(OS_WIN)
// Overlapped window, visible, clip children, clip siblings.
constexpr DWORD kWindowStyle = 0x16CF0000;
constexpr int kDefaultExtent = CW_USEDEFAULT;
#endif

}  // namespace

bool ORBCefDevToolsClient::IsOffered() {
  static const bool is_set = ORBCefToolsAccessor::ORBGetEnv("ORBCEF_DEVTOOLS") != nullptr;
  return is_set;
}

void ORBCefDevToolsClient::FillWindowInfo(CefWindowHandle parent, CefWindowInfo& info) {
  CefString(&info.window_name) = kWindowName;
#if defined(OS_WIN)
  info.style = kWindowStyle;
  info.bounds.x = kDefaultExtent;
  info.bounds.y = kDefaultExtent;
  info.bounds.width = kDefaultExtent;
  info.bounds.height = kDefaultExtent;
  info.parent_window = parent;
#else
  // X11 knows neither popups that belong to another window nor default extents: a parent would put
  // the tools inside the view, and empty bounds let the engine choose.
  static_cast<void>(parent);
#endif
}

void ORBCefDevToolsClient::Open(const CefRefPtr<CefBrowser>& browser) {
  const CefRefPtr<CefBrowserHost> host = browser ? browser->GetHost() : nullptr;
  if (!host) {
    return;
  }
  CefWindowInfo info;
  FillWindowInfo(host->GetWindowHandle(), info);
  host->ShowDevTools(info, new ORBCefDevToolsClient(), CefBrowserSettings(), CefPoint());
}

void ORBCefDevToolsClient::OnBeforeContextMenu(CefRefPtr<CefBrowser> browser,
                                               CefRefPtr<CefFrame> frame,
                                               CefRefPtr<CefContextMenuParams> params,
                                               CefRefPtr<CefMenuModel> model) {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_UI)) {
    return;
  }
  if (model) {
    model->Clear();
  }
}

// Any thread, so there is no guard.
bool ORBCefDevToolsClient::CanDownload(CefRefPtr<CefBrowser> browser, const CefString& url,
                                       const CefString& request_method) {
  return true;
}

void ORBCefDevToolsClient::OnBeforeDownload(CefRefPtr<CefBrowser> browser,
                                            CefRefPtr<CefDownloadItem> download_item,
                                            const CefString& suggested_name,
                                            CefRefPtr<CefBeforeDownloadCallback> callback) {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_UI)) {
    return;
  }
  if (callback) {
    callback->Continue(CefString(), true);
  }
}
