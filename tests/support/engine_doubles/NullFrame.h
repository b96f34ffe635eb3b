// A frame that answers nothing and does nothing: the base of the doubles.
// Any thread; counted.
#ifndef ORBCEF_TESTS_NULL_FRAME_H
#define ORBCEF_TESTS_NULL_FRAME_H

#include "include/cef_browser.h"
#include "include/cef_dom.h"
#include "include/cef_frame.h"
#include "include/cef_urlrequest.h"
#include "include/cef_v8.h"

namespace engine_doubles {

class NullFrame : public CefFrame {
 public:
  bool IsValid() override { return false; }
  void Undo() override {}
  void Redo() override {}
  void Cut() override {}
  void Copy() override {}
  void Paste() override {}
  void Delete() override {}
  void SelectAll() override {}
  void ViewSource() override {}
  void GetSource(CefRefPtr<CefStringVisitor>) override {}
  void GetText(CefRefPtr<CefStringVisitor>) override {}
  void LoadRequest(CefRefPtr<CefRequest>) override {}
  void LoadURL(const CefString&) override {}
  void ExecuteJavaScript(const CefString&, const CefString&, int) override {}
  bool IsMain() override { return false; }
  bool IsFocused() override { return false; }
  CefString GetName() override { return CefString(); }
  int64 GetIdentifier() override { return 0; }
  CefRefPtr<CefFrame> GetParent() override { return nullptr; }
  CefString GetURL() override { return CefString(); }
  CefRefPtr<CefBrowser> GetBrowser() override { return nullptr; }
  CefRefPtr<CefV8Context> GetV8Context() override { return nullptr; }
  void VisitDOM(CefRefPtr<CefDOMVisitor>) override {}
  CefRefPtr<CefURLRequest> CreateURLRequest(CefRefPtr<CefRequest>,
                                            CefRefPtr<CefURLRequestClient>) override {
    return nullptr;
  }
  void SendProcessMessage(CefProcessId, CefRefPtr<CefProcessMessage>) override {}

 protected:
  ~NullFrame() override = default;

 private:
  IMPLEMENT_REFCOUNTING(NullFrame);
};

}  // namespace engine_doubles

#endif  // ORBCEF_TESTS_NULL_FRAME_H
