// A browser that answers nothing and does nothing: the base of the doubles.
// Any thread; counted.
#ifndef ORBCEF_TESTS_NULL_BROWSER_H
#define ORBCEF_TESTS_NULL_BROWSER_H

#include "include/cef_browser.h"
#include "include/cef_frame.h"

namespace engine_doubles {

class NullBrowser : public CefBrowser {
 public:
  bool IsValid() override { return false; }
  CefRefPtr<CefBrowserHost> GetHost() override { return nullptr; }
  bool CanGoBack() override { return false; }
  void GoBack() override {}
  bool CanGoForward() override { return false; }
  void GoForward() override {}
  bool IsLoading() override { return false; }
  void Reload() override {}
  void ReloadIgnoreCache() override {}
  void StopLoad() override {}
  int GetIdentifier() override { return 0; }
  bool IsSame(CefRefPtr<CefBrowser>) override { return false; }
  bool IsPopup() override { return false; }
  bool HasDocument() override { return false; }
  CefRefPtr<CefFrame> GetMainFrame() override { return nullptr; }
  CefRefPtr<CefFrame> GetFocusedFrame() override { return nullptr; }
  CefRefPtr<CefFrame> GetFrame(int64) override { return nullptr; }
  CefRefPtr<CefFrame> GetFrame(const CefString&) override { return nullptr; }
  size_t GetFrameCount() override { return 0; }
  void GetFrameIdentifiers(std::vector<int64>&) override {}
  void GetFrameNames(std::vector<CefString>&) override {}

 protected:
  ~NullBrowser() override = default;

 private:
  IMPLEMENT_REFCOUNTING(NullBrowser);
};

}  // namespace engine_doubles

#endif  // ORBCEF_TESTS_NULL_BROWSER_H
