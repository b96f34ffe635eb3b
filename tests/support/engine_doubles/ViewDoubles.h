// A browser with its host and one main frame, as a view sees them. All three write what is asked
// of them into one list of calls and answer from plain fields that a test sets.
#ifndef ORBCEF_TESTS_VIEW_DOUBLES_H
#define ORBCEF_TESTS_VIEW_DOUBLES_H

#include <string>
#include <vector>

#include "NullBrowser.h"
#include "NullBrowserHost.h"
#include "NullFrame.h"

namespace engine_doubles {

using Calls = std::vector<std::string>;

class FrameDouble : public NullFrame {
 public:
  FrameDouble(Calls& calls, const std::string& url) : url(url), _calls(calls) {}

  bool IsMain() override { return is_main; }
  CefString GetURL() override { return url; }
  void LoadURL(const CefString& target) override { Note("LoadURL " + target.ToString()); }
  void ExecuteJavaScript(const CefString& code, const CefString& script_url, int line) override {
    Note("Execute " + code.ToString() + " @ " + script_url.ToString() + ":" + std::to_string(line));
  }
  void Undo() override { Note("Undo"); }
  void Redo() override { Note("Redo"); }
  void Cut() override { Note("Cut"); }
  void Copy() override { Note("Copy"); }
  void Paste() override { Note("Paste"); }
  void Delete() override { Note("Delete"); }
  void SelectAll() override { Note("SelectAll"); }

  bool is_main = true;
  std::string url;

 private:
  void Note(const std::string& call) { _calls.push_back(call); }

  Calls& _calls;
};

class BrowserHostDouble : public NullBrowserHost {
 public:
  explicit BrowserHostDouble(Calls& calls) : _calls(calls) {}

  void CloseBrowser(bool force) override {
    _calls.push_back(force ? "CloseBrowser force" : "CloseBrowser");
  }
  CefWindowHandle GetWindowHandle() override { return window; }
  double GetZoomLevel() override { return zoom_level; }
  void SetZoomLevel(double level) override {
    zoom_level = level;
    _calls.push_back("SetZoomLevel");
  }
  void ShowDevTools(const CefWindowInfo& info, CefRefPtr<CefClient> client,
                    const CefBrowserSettings& settings, const CefPoint&) override {
    _calls.push_back("ShowDevTools " + CefString(&info.window_name).ToString());
    dev_tools_info = info;
    dev_tools_settings = settings;
    dev_tools_client = client;
  }
  void CloseDevTools() override { _calls.push_back("CloseDevTools"); }
  void NotifyMoveOrResizeStarted() override { _calls.push_back("NotifyMoveOrResizeStarted"); }

  CefWindowHandle window{};
  double zoom_level = 0;
  CefWindowInfo dev_tools_info;
  CefBrowserSettings dev_tools_settings;
  CefRefPtr<CefClient> dev_tools_client;

 private:
  Calls& _calls;
};

class BrowserDouble : public NullBrowser {
 public:
  explicit BrowserDouble(int id = 1)
      : main_frame(new FrameDouble(calls, "http://page.test/")),
        focused_frame(main_frame),
        host(new BrowserHostDouble(calls)),
        _id(id) {}

  CefRefPtr<CefBrowserHost> GetHost() override { return host; }
  bool CanGoBack() override { return can_go_back; }
  bool CanGoForward() override { return can_go_forward; }
  void GoBack() override { calls.push_back("GoBack"); }
  void GoForward() override { calls.push_back("GoForward"); }
  bool IsLoading() override { return is_loading; }
  void Reload() override { calls.push_back("Reload"); }
  void ReloadIgnoreCache() override { calls.push_back("ReloadIgnoreCache"); }
  void StopLoad() override { calls.push_back("StopLoad"); }
  int GetIdentifier() override { return _id; }
  CefRefPtr<CefFrame> GetMainFrame() override { return main_frame; }
  CefRefPtr<CefFrame> GetFocusedFrame() override { return focused_frame; }

  Calls calls;
  bool is_loading = false;
  bool can_go_back = false;
  bool can_go_forward = false;
  CefRefPtr<FrameDouble> main_frame;
  CefRefPtr<FrameDouble> focused_frame;
  CefRefPtr<BrowserHostDouble> host;

 private:
  const int _id;
};

}  // namespace engine_doubles

#endif  // ORBCEF_TESTS_VIEW_DOUBLES_H
