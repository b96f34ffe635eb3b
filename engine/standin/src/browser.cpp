// The engine's objects around a view.
#include "include/cef_process_message.h"
#include "include/cef_request.h"
#include "messages.h"
#include "neutral_classes.h"
#include "script.h"
#include "threads.h"
#include "views.h"

namespace standin {

namespace {

constexpr int64 kMainFrame = 1;

class StandinFrame : public engine_neutral::NeutralFrame {
 public:
  explicit StandinFrame(ViewPtr view) : _view(std::move(view)) {}

  bool IsValid() override { return !_view->is_closed; }
  void Undo() override { Edit("undo"); }
  void Redo() override { Edit("redo"); }
  void Cut() override { Edit("cut"); }
  void Copy() override { Edit("copy"); }
  void Paste() override { Edit("paste"); }
  void Delete() override { Edit("delete"); }
  void SelectAll() override { Edit("select_all"); }
  void LoadRequest(CefRefPtr<CefRequest> request) override {
    Navigate(_view, request->GetURL().ToString(), TT_EXPLICIT);
  }
  void LoadURL(const CefString& url) override {
    Note("load_url", url.ToString());
    Navigate(_view, url.ToString(), TT_EXPLICIT);
  }
  void ExecuteJavaScript(const CefString& code, const CefString& script_url,
                         int start_line) override {
    Note("script", code.ToString());
    Note("script.place", script_url.ToString() + ":" + std::to_string(start_line));
  }
  bool IsMain() override { return true; }
  bool IsFocused() override { return true; }
  int64 GetIdentifier() override { return kMainFrame; }
  CefString GetURL() override { return UrlOf(_view); }
  CefRefPtr<CefBrowser> GetBrowser() override { return BrowserOf(_view); }
  void SendProcessMessage(CefProcessId target_process,
                          CefRefPtr<CefProcessMessage> message) override {
    Note("message", (target_process == PID_BROWSER ? "browser " : "renderer ") +
                        (message ? DescribeMessage(message) : std::string("null")));
  }

 private:
  void Edit(const char* operation) { Note("edit", operation); }

  const ViewPtr _view;

  STANDIN_OBJECT(StandinFrame);
};

class StandinBrowser : public engine_neutral::NeutralBrowser {
 public:
  explicit StandinBrowser(ViewPtr view) : _view(std::move(view)) {}

  bool IsValid() override { return !_view->is_closed; }
  CefRefPtr<CefBrowserHost> GetHost() override {
    return TakeFault("host") ? nullptr : HostOf(_view);
  }
  bool CanGoBack() override {
    const std::lock_guard<std::mutex> guard(_view->lock);
    return _view->position > 0;
  }
  void GoBack() override { NavigateInHistory(_view, -1); }
  bool CanGoForward() override {
    const std::lock_guard<std::mutex> guard(_view->lock);
    return _view->position + 1 < _view->history.size();
  }
  void GoForward() override { NavigateInHistory(_view, 1); }
  bool IsLoading() override { return _view->is_loading; }
  void Reload() override {
    Note("reload");
    Navigate(_view, UrlOf(_view), TT_RELOAD);
  }
  void ReloadIgnoreCache() override {
    Note("reload_ignore_cache");
    Navigate(_view, UrlOf(_view), TT_RELOAD);
  }
  void StopLoad() override { Note("stop_load"); }
  int GetIdentifier() override { return _view->id; }
  bool IsSame(CefRefPtr<CefBrowser> that) override {
    return that && that->GetIdentifier() == _view->id;
  }
  bool IsPopup() override { return _view->is_popup; }
  bool HasDocument() override { return !UrlOf(_view).empty(); }
  CefRefPtr<CefFrame> GetMainFrame() override {
    return TakeFault("main_frame") ? nullptr : FrameOf(_view);
  }
  CefRefPtr<CefFrame> GetFocusedFrame() override {
    return TakeFault("focused_frame") ? nullptr : FrameOf(_view);
  }
  size_t GetFrameCount() override { return _view->is_closed ? 0 : 1; }

 private:
  const ViewPtr _view;

  STANDIN_OBJECT(StandinBrowser);
};

class StandinHost : public engine_neutral::NeutralBrowserHost {
 public:
  explicit StandinHost(ViewPtr view) : _view(std::move(view)) {}

  CefRefPtr<CefBrowser> GetBrowser() override { return BrowserOf(_view); }
  void CloseBrowser(bool force_close) override { CloseView(_view, force_close); }
  bool TryCloseBrowser() override {
    CloseView(_view, false);
    return false;
  }
  CefWindowHandle GetWindowHandle() override { return _view->window; }
  CefRefPtr<CefClient> GetClient() override { return ClientOf(_view); }
  double GetZoomLevel() override { return _view->zoom; }
  void SetZoomLevel(double zoomLevel) override {
    _view->zoom = zoomLevel;
    Note("zoom", std::to_string(zoomLevel));
  }
  void ShowDevTools(const CefWindowInfo& windowInfo, CefRefPtr<CefClient> client,
                    const CefBrowserSettings& settings, const CefPoint& at) override {
    Note("show_dev_tools", CefString(&windowInfo.window_name).ToString());
    const ViewPtr view = _view;
    const Held<CefClient> held("client CefClient", client);
    Post(TID_UI, [view, held] {
      const std::lock_guard<std::mutex> guard(view->lock);
      if (!view->is_closed && !view->tools) {
        view->tools.emplace(held);
      }
    });
  }
  void CloseDevTools() override {
    Note("close_dev_tools");
    const ViewPtr view = _view;
    Post(TID_UI, [view] {
      std::optional<Held<CefClient>> tools;
      const std::lock_guard<std::mutex> guard(view->lock);
      tools.swap(view->tools);
    });
  }
  bool HasDevTools() override {
    const std::lock_guard<std::mutex> guard(_view->lock);
    return _view->tools.has_value();
  }
  void NotifyMoveOrResizeStarted() override { Note("move_or_resize"); }
  void WasResized() override { Note("was_resized"); }

 private:
  const ViewPtr _view;

  STANDIN_OBJECT(StandinHost);
};

}  // namespace

CefRefPtr<CefBrowser> BrowserOf(const ViewPtr& view) {
  return new StandinBrowser(view);
}

CefRefPtr<CefBrowserHost> HostOf(const ViewPtr& view) {
  return view->is_closed ? nullptr : new StandinHost(view);
}

CefRefPtr<CefFrame> FrameOf(const ViewPtr& view) {
  return view->is_closed ? nullptr : new StandinFrame(view);
}

}  // namespace standin
