// The client of a developer tools window: no context menu, downloads always ask where to go.
// Engine's UI thread; the tools window's browser owns it.
#ifndef ORBCEF_DEV_TOOLS_CLIENT_H
#define ORBCEF_DEV_TOOLS_CLIENT_H

#include "include/cef_browser.h"
#include "include/cef_client.h"

class ORBCefDevToolsClient : public CefClient,
                             public CefContextMenuHandler,
                             public CefDownloadHandler {
 public:
  ORBCefDevToolsClient() = default;

  // ORBCEF_DEVTOOLS is set, so the context menu and the keyboard lead to the tools. Pages and hosts
  // open them without it. Any thread; read once in a process.
  static bool IsOffered();

  // Opens the tools for `browser` as a popup of its window. Nothing happens without a browser.
  static void Open(const CefRefPtr<CefBrowser>& browser);

  // The window of the tools; `parent` may be null.
  static void FillWindowInfo(CefWindowHandle parent, CefWindowInfo& info);

  CefRefPtr<CefContextMenuHandler> GetContextMenuHandler() override { return this; }
  CefRefPtr<CefDownloadHandler> GetDownloadHandler() override { return this; }

  void OnBeforeContextMenu(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                           CefRefPtr<CefContextMenuParams> params,
                           CefRefPtr<CefMenuModel> model) override;
  bool CanDownload(CefRefPtr<CefBrowser> browser, const CefString& url,
                   const CefString& request_method) override;
  void OnBeforeDownload(CefRefPtr<CefBrowser> browser, CefRefPtr<CefDownloadItem> download_item,
                        const CefString& suggested_name,
                        CefRefPtr<CefBeforeDownloadCallback> callback) override;

 private:
  ~ORBCefDevToolsClient() override = default;

  IMPLEMENT_REFCOUNTING(ORBCefDevToolsClient);
};

#endif  // ORBCEF_DEV_TOOLS_CLIENT_H
