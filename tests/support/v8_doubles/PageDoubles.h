// A browser with its frames, as a render process sees them, without an engine.
//
// `BrowserDouble` hands out the main frame that the test gives it; `FrameDouble` keeps the process
// messages that are sent through it. Counted like any engine object; one thread.

#ifndef V8_DOUBLES_PAGE_DOUBLES_H
#define V8_DOUBLES_PAGE_DOUBLES_H

#include <string>
#include <utility>
#include <vector>

#include "include/cef_browser.h"
#include "include/cef_frame.h"
#include "include/cef_process_message.h"
#include "include/cef_request.h"
#include "include/cef_urlrequest.h"
#include "include/cef_v8.h"
#include "include/cef_values.h"

namespace v8_doubles {

struct SentMessage {
  CefProcessId target;
  CefRefPtr<CefProcessMessage> message;

  std::string Name() const { return message->GetName().ToString(); }
  CefRefPtr<CefListValue> Arguments() const { return message->GetArgumentList(); }
};

class FrameDouble : public CefFrame {
 public:
  FrameDouble(bool is_main, int64 identifier, std::string frame_name, std::string frame_url)
      : main(is_main), id(identifier), name(std::move(frame_name)), url(std::move(frame_url)) {}

  bool main;
  int64 id;
  std::string name;
  std::string url;
  CefRefPtr<CefFrame> parent;
  std::vector<SentMessage> sent;

  bool IsValid() override { return true; }
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
  bool IsMain() override { return main; }
  bool IsFocused() override { return false; }
  CefString GetName() override { return name; }
  int64 GetIdentifier() override { return id; }
  CefRefPtr<CefFrame> GetParent() override { return parent; }
  CefString GetURL() override { return url; }
  CefRefPtr<CefBrowser> GetBrowser() override { return nullptr; }
  CefRefPtr<CefV8Context> GetV8Context() override { return nullptr; }
  void VisitDOM(CefRefPtr<CefDOMVisitor>) override {}
  CefRefPtr<CefURLRequest> CreateURLRequest(CefRefPtr<CefRequest>,
                                            CefRefPtr<CefURLRequestClient>) override {
    return nullptr;
  }
  void SendProcessMessage(CefProcessId target, CefRefPtr<CefProcessMessage> message) override {
    sent.push_back({target, std::move(message)});
  }

 private:
  IMPLEMENT_REFCOUNTING(FrameDouble);
};

class BrowserDouble : public CefBrowser {
 public:
  BrowserDouble(int identifier, CefRefPtr<CefFrame> main_frame)
      : id(identifier), main(std::move(main_frame)) {}

  int id;
  CefRefPtr<CefFrame> main;

  bool IsValid() override { return true; }
  CefRefPtr<CefBrowserHost> GetHost() override { return nullptr; }
  bool CanGoBack() override { return false; }
  void GoBack() override {}
  bool CanGoForward() override { return false; }
  void GoForward() override {}
  bool IsLoading() override { return false; }
  void Reload() override {}
  void ReloadIgnoreCache() override {}
  void StopLoad() override {}
  int GetIdentifier() override { return id; }
  bool IsSame(CefRefPtr<CefBrowser> that) override { return that.get() == this; }
  bool IsPopup() override { return false; }
  bool HasDocument() override { return true; }
  CefRefPtr<CefFrame> GetMainFrame() override { return main; }
  CefRefPtr<CefFrame> GetFocusedFrame() override { return nullptr; }
  CefRefPtr<CefFrame> GetFrame(int64) override { return nullptr; }
  CefRefPtr<CefFrame> GetFrame(const CefString&) override { return nullptr; }
  size_t GetFrameCount() override { return 1; }
  void GetFrameIdentifiers(std::vector<int64>&) override {}
  void GetFrameNames(std::vector<CefString>&) override {}

 private:
  IMPLEMENT_REFCOUNTING(BrowserDouble);
};

}  // namespace v8_doubles

#endif  // V8_DOUBLES_PAGE_DOUBLES_H
