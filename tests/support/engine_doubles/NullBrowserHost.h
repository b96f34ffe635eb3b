// A browser host that answers nothing and does nothing: the base of the doubles.
// Any thread; counted.
#ifndef ORBCEF_TESTS_NULL_BROWSER_HOST_H
#define ORBCEF_TESTS_NULL_BROWSER_HOST_H

#include "include/cef_browser.h"
#include "include/cef_client.h"
#include "include/cef_drag_data.h"
#include "include/cef_extension.h"
#include "include/cef_navigation_entry.h"
#include "include/cef_registration.h"
#include "include/cef_request_context.h"

namespace engine_doubles {

class NullBrowserHost : public CefBrowserHost {
 public:
  CefRefPtr<CefBrowser> GetBrowser() override { return nullptr; }
  void CloseBrowser(bool) override {}
  bool TryCloseBrowser() override { return false; }
  void SetFocus(bool) override {}
  CefWindowHandle GetWindowHandle() override { return 0; }
  CefWindowHandle GetOpenerWindowHandle() override { return 0; }
  bool HasView() override { return false; }
  CefRefPtr<CefClient> GetClient() override { return nullptr; }
  CefRefPtr<CefRequestContext> GetRequestContext() override { return nullptr; }
  double GetZoomLevel() override { return 0; }
  void SetZoomLevel(double) override {}
  void RunFileDialog(FileDialogMode, const CefString&, const CefString&,
                     const std::vector<CefString>&, CefRefPtr<CefRunFileDialogCallback>) override {}
  void StartDownload(const CefString&) override {}
  void DownloadImage(const CefString&, bool, uint32, bool,
                     CefRefPtr<CefDownloadImageCallback>) override {}
  void Print() override {}
  void PrintToPDF(const CefString&, const CefPdfPrintSettings&,
                  CefRefPtr<CefPdfPrintCallback>) override {}
  void Find(const CefString&, bool, bool, bool) override {}
  void StopFinding(bool) override {}
  void ShowDevTools(const CefWindowInfo&, CefRefPtr<CefClient>, const CefBrowserSettings&,
                    const CefPoint&) override {}
  void CloseDevTools() override {}
  bool HasDevTools() override { return false; }
  bool SendDevToolsMessage(const void*, size_t) override { return false; }
  int ExecuteDevToolsMethod(int, const CefString&, CefRefPtr<CefDictionaryValue>) override {
    return 0;
  }
  CefRefPtr<CefRegistration> AddDevToolsMessageObserver(
      CefRefPtr<CefDevToolsMessageObserver>) override {
    return nullptr;
  }
  void GetNavigationEntries(CefRefPtr<CefNavigationEntryVisitor>, bool) override {}
  void ReplaceMisspelling(const CefString&) override {}
  void AddWordToDictionary(const CefString&) override {}
  bool IsWindowRenderingDisabled() override { return false; }
  void WasResized() override {}
  void WasHidden(bool) override {}
  void NotifyScreenInfoChanged() override {}
  void Invalidate(PaintElementType) override {}
  void SendExternalBeginFrame() override {}
  void SendKeyEvent(const CefKeyEvent&) override {}
  void SendMouseClickEvent(const CefMouseEvent&, MouseButtonType, bool, int) override {}
  void SendMouseMoveEvent(const CefMouseEvent&, bool) override {}
  void SendMouseWheelEvent(const CefMouseEvent&, int, int) override {}
  void SendTouchEvent(const CefTouchEvent&) override {}
  void SendCaptureLostEvent() override {}
  void NotifyMoveOrResizeStarted() override {}
  int GetWindowlessFrameRate() override { return 0; }
  void SetWindowlessFrameRate(int) override {}
  void ImeSetComposition(const CefString&, const std::vector<CefCompositionUnderline>&,
                         const CefRange&, const CefRange&) override {}
  void ImeCommitText(const CefString&, const CefRange&, int) override {}
  void ImeFinishComposingText(bool) override {}
  void ImeCancelComposition() override {}
  void DragTargetDragEnter(CefRefPtr<CefDragData>, const CefMouseEvent&,
                           DragOperationsMask) override {}
  void DragTargetDragOver(const CefMouseEvent&, DragOperationsMask) override {}
  void DragTargetDragLeave() override {}
  void DragTargetDrop(const CefMouseEvent&) override {}
  void DragSourceEndedAt(int, int, DragOperationsMask) override {}
  void DragSourceSystemDragEnded() override {}
  CefRefPtr<CefNavigationEntry> GetVisibleNavigationEntry() override { return nullptr; }
  void SetAccessibilityState(cef_state_t) override {}
  void SetAutoResizeEnabled(bool, const CefSize&, const CefSize&) override {}
  CefRefPtr<CefExtension> GetExtension() override { return nullptr; }
  bool IsBackgroundHost() override { return false; }
  void SetAudioMuted(bool) override {}
  bool IsAudioMuted() override { return false; }

 protected:
  ~NullBrowserHost() override = default;

 private:
  IMPLEMENT_REFCOUNTING(NullBrowserHost);
};

}  // namespace engine_doubles

#endif  // ORBCEF_TESTS_NULL_BROWSER_HOST_H
