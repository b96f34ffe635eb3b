// A browser with its frames, as a render process sees them, without an engine.
//
// `BrowserDouble` hands out the main frame that the test gives it; `FrameDouble` keeps the process
// messages that are sent through it. Counted like any engine object; one thread.

#ifndef V8_DOUBLES_PAGE_DOUBLES_H
#define V8_DOUBLES_PAGE_DOUBLES_H

#include <string>
#include <utility>
#include <vector>

#include "engine_doubles/NullBrowser.h"
#include "engine_doubles/NullFrame.h"
#include "include/cef_process_message.h"
#include "include/cef_values.h"

namespace v8_doubles {

struct SentMessage {
  CefProcessId target;
  CefRefPtr<CefProcessMessage> message;

  std::string Name() const { return message->GetName().ToString(); }
  CefRefPtr<CefListValue> Arguments() const { return message->GetArgumentList(); }
};

class FrameDouble : public engine_doubles::NullFrame {
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
  bool IsMain() override { return main; }
  CefString GetName() override { return name; }
  int64 GetIdentifier() override { return id; }
  CefRefPtr<CefFrame> GetParent() override { return parent; }
  CefString GetURL() override { return url; }
  void SendProcessMessage(CefProcessId target, CefRefPtr<CefProcessMessage> message) override {
    sent.push_back({target, std::move(message)});
  }
};

class BrowserDouble : public engine_doubles::NullBrowser {
 public:
  BrowserDouble(int identifier, CefRefPtr<CefFrame> main_frame)
      : id(identifier), main(std::move(main_frame)) {}

  int id;
  CefRefPtr<CefFrame> main;

  bool IsValid() override { return true; }
  int GetIdentifier() override { return id; }
  bool IsSame(CefRefPtr<CefBrowser> that) override { return that.get() == this; }
  bool HasDocument() override { return true; }
  CefRefPtr<CefFrame> GetMainFrame() override { return main; }
  size_t GetFrameCount() override { return 1; }
};

}  // namespace v8_doubles

#endif  // V8_DOUBLES_PAGE_DOUBLES_H
