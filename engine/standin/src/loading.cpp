// How a view loads a page: the decisions on the UI thread, the request on the IO thread, the
// reading on a file thread, and the outcome on the UI thread again.
#include "http.h"
#include "include/cef_display_handler.h"
#include "include/cef_load_handler.h"
#include "include/cef_request_handler.h"
#include "include/cef_resource_handler.h"
#include "include/cef_resource_request_handler.h"
#include "requests.h"
#include "resources.h"
#include "runtime.h"
#include "script.h"
#include "threads.h"
#include "url.h"
#include "views.h"

namespace standin {

namespace {

constexpr char kEmptyPage[] = "about:blank";
constexpr unsigned kForwardBack = TT_FORWARD_BACK_FLAG;
constexpr int kOk = 200;

// One load of one page.
struct Load {
  ViewPtr view;
  cef_transition_type_t transition = TT_EXPLICIT;
  CefRefPtr<CefRequest> request;
  CefRefPtr<CefResourceRequestHandler> requests;
  Resource resource;
};
using LoadPtr = std::shared_ptr<Load>;

template <class Handler>
using Getter = CefRefPtr<Handler> (CefClient::*)();

template <class Handler>
CefRefPtr<Handler> HandlerOf(const ViewPtr& view, Getter<Handler> getter) {
  const CefRefPtr<CefClient> client = ClientOf(view);
  return client ? (client.get()->*getter)() : nullptr;
}

void TellLoading(const ViewPtr& view, bool is_loading) {
  view->is_loading = is_loading;
  if (const auto handler = HandlerOf<CefLoadHandler>(view, &CefClient::GetLoadHandler)) {
    const CefRefPtr<CefBrowser> browser = BrowserOf(view);
    handler->OnLoadingStateChange(browser, is_loading, browser->CanGoBack(),
                                  browser->CanGoForward());
  }
}

void Commit(const LoadPtr& load) {
  const std::string url = load->request->GetURL().ToString();
  {
    const std::lock_guard<std::mutex> guard(load->view->lock);
    auto& history = load->view->history;
    load->view->url = url;
    const bool is_same = (load->transition & kForwardBack) != 0 || load->transition == TT_RELOAD;
    if (!is_same || history.empty()) {
      history.resize(history.empty() ? 0 : load->view->position + 1);
      history.push_back(url);
      load->view->position = history.size() - 1;
    }
  }
  const CefRefPtr<CefBrowser> browser = BrowserOf(load->view);
  const CefRefPtr<CefFrame> frame = FrameOf(load->view);
  const auto loads = HandlerOf<CefLoadHandler>(load->view, &CefClient::GetLoadHandler);
  const auto display = HandlerOf<CefDisplayHandler>(load->view, &CefClient::GetDisplayHandler);
  if (loads) {
    loads->OnLoadStart(browser, frame, load->transition);
  }
  if (display) {
    display->OnAddressChange(browser, frame, url);
    const std::string title = TitleOf(load->resource.body);
    if (!title.empty()) {
      display->OnTitleChange(browser, title);
    }
  }
  if (loads) {
    loads->OnLoadEnd(browser, frame, load->resource.status);
  }
}

void Finish(const LoadPtr& load) {
  if (load->view->is_closed) {
    return;
  }
  const std::string url = load->request->GetURL().ToString();
  if (load->resource.error == ERR_NONE) {
    Commit(load);
  } else if (const auto handler =
                 HandlerOf<CefLoadHandler>(load->view, &CefClient::GetLoadHandler)) {
    handler->OnLoadError(BrowserOf(load->view), FrameOf(load->view), load->resource.error,
                         load->resource.error_text, url);
  }
  TellLoading(load->view, false);
  Note("loaded", url + " " + std::to_string(load->resource.status) + " " +
                     std::to_string(load->resource.error));
}

void FinishWith(const LoadPtr& load, Resource resource) {
  load->requests = nullptr;
  load->resource = std::move(resource);
  Post(TID_UI, [load] { Finish(load); });
}

// IO thread.
void Fetch(const LoadPtr& load) {
  const std::string url = load->request->GetURL().ToString();
  const std::string scheme = ParseUrl(url).scheme;
  const CefRefPtr<CefBrowser> browser = BrowserOf(load->view);
  const CefRefPtr<CefFrame> frame = FrameOf(load->view);
  const auto deliver = [load](Resource resource) { FinishWith(load, std::move(resource)); };
  if (const auto factory = FindFactory(url)) {
    ReadFromHandler(factory->Create(browser, frame, scheme, load->request), load->request, deliver);
    return;
  }
  if (url == kEmptyPage) {
    deliver(Resource{kOk, "text/html", std::string(), ERR_NONE, std::string()});
  } else if (scheme == "http") {
    Post(TID_FILE_USER_BLOCKING,
         [request = load->request, deliver] { deliver(FetchHttp(request)); });
  } else {
    bool is_allowed = false;
    if (load->requests) {
      load->requests->OnProtocolExecution(browser, frame, load->request, is_allowed);
      Note("protocol", url + (is_allowed ? " allowed" : " denied"));
    }
    deliver(Failure(ERR_UNKNOWN_URL_SCHEME));
  }
}

// IO thread.
void Request(const LoadPtr& load) {
  const CefRefPtr<CefBrowser> browser = BrowserOf(load->view);
  const CefRefPtr<CefFrame> frame = FrameOf(load->view);
  const auto handler = HandlerOf<CefRequestHandler>(load->view, &CefClient::GetRequestHandler);
  bool is_default_off = false;
  if (handler) {
    load->requests = handler->GetResourceRequestHandler(browser, frame, load->request, true, false,
                                                        CefString(), is_default_off);
  }
  if (load->requests &&
      load->requests->OnBeforeResourceLoad(browser, frame, load->request, nullptr) == RV_CANCEL) {
    FinishWith(load, Failure(ERR_ABORTED));
    return;
  }
  Note("request", load->request->GetURL().ToString());
  Fetch(load);
}

// UI thread.
void Begin(const LoadPtr& load) {
  if (load->view->is_closed) {
    return;
  }
  const auto handler = HandlerOf<CefRequestHandler>(load->view, &CefClient::GetRequestHandler);
  TellLoading(load->view, true);
  if (handler && handler->OnBeforeBrowse(BrowserOf(load->view), FrameOf(load->view), load->request,
                                         false, false)) {
    Note("browse_refused", load->request->GetURL().ToString());
    TellLoading(load->view, false);
    return;
  }
  Post(TID_IO, [load] { Request(load); });
}

}  // namespace

void Navigate(const ViewPtr& view, const std::string& url, cef_transition_type_t transition) {
  const LoadPtr load = std::make_shared<Load>();
  load->view = view;
  load->transition = transition;
  load->request = MakeRequest(url.empty() ? kEmptyPage : url, "GET", transition);
  Post(TID_UI, [load] { Begin(load); });
}

void NavigateInHistory(const ViewPtr& view, int step) {
  std::string url;
  {
    const std::lock_guard<std::mutex> guard(view->lock);
    const auto target = static_cast<std::ptrdiff_t>(view->position) + step;
    if (target < 0 || static_cast<size_t>(target) >= view->history.size()) {
      return;
    }
    view->position = static_cast<size_t>(target);
    url = view->history[view->position];
  }
  Navigate(view, url, static_cast<cef_transition_type_t>(TT_LINK | kForwardBack));
}

}  // namespace standin
