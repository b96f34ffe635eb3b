#include "views.h"

#include <cstdint>
#include <map>

#include "glue_conversions.h"
#include "include/cef_life_span_handler.h"
#include "runtime.h"
#include "script.h"
#include "threads.h"

namespace standin {

namespace {

// No window of any system has such a number by chance.
constexpr std::uintptr_t kFirstWindow = 0x57000000;

struct Registry {
  std::mutex lock;
  // Guarded by lock.
  std::map<int, ViewPtr> views;
  int last_id = 0;
};

Registry& TheRegistry() {
  static Registry& registry = *new Registry();
  return registry;
}

ViewPtr NewView(const CefRefPtr<CefClient>& client, bool is_popup) {
  const std::lock_guard<std::mutex> guard(TheRegistry().lock);
  const int id = ++TheRegistry().last_id;
  const ViewPtr view = std::make_shared<View>(id, client, is_popup);
  TheRegistry().views.emplace(id, view);
  return view;
}

CefRefPtr<CefLifeSpanHandler> LifeSpanOf(const ViewPtr& view) {
  const CefRefPtr<CefClient> client = ClientOf(view);
  return client ? client->GetLifeSpanHandler() : nullptr;
}

// The window is gone: the last callback, then the view.
void Destroy(const ViewPtr& view) {
  if (const auto handler = LifeSpanOf(view)) {
    handler->OnBeforeClose(BrowserOf(view));
  }
  view->is_closed = true;
  Note("closed", std::to_string(view->id));
  std::optional<Held<CefClient>> client;
  std::optional<Held<CefClient>> tools;
  {
    const std::lock_guard<std::mutex> guard(view->lock);
    client.swap(view->client);
    tools.swap(view->tools);
  }
  ViewPtr removed;
  const std::lock_guard<std::mutex> guard(TheRegistry().lock);
  const auto found = TheRegistry().views.find(view->id);
  if (found != TheRegistry().views.end()) {
    removed = found->second;
    TheRegistry().views.erase(found);
  }
}

void Close(const ViewPtr& view) {
  if (view->is_closing.exchange(true)) {
    return;
  }
  const auto handler = LifeSpanOf(view);
  if (handler && handler->DoClose(BrowserOf(view))) {
    // The client ends it itself, or not at all.
    Note("close_refused", std::to_string(view->id));
    view->is_closing = false;
    return;
  }
  Post(TID_UI, [view] { Destroy(view); });
}

}  // namespace

View::View(int identifier, const CefRefPtr<CefClient>& its_client, bool is_a_popup)
    : id(identifier), is_popup(is_a_popup) {
  if (its_client) {
    client.emplace("client CefClient", its_client);
  }
}

CefRefPtr<CefClient> ClientOf(const ViewPtr& view) {
  const std::lock_guard<std::mutex> guard(view->lock);
  return view->client ? view->client->get() : nullptr;
}

std::string UrlOf(const ViewPtr& view) {
  const std::lock_guard<std::mutex> guard(view->lock);
  return view->url;
}

ViewPtr FindView(int id) {
  const std::lock_guard<std::mutex> guard(TheRegistry().lock);
  const auto& views = TheRegistry().views;
  const auto found = id == 0 ? views.begin() : views.find(id);
  return found != views.end() ? found->second : nullptr;
}

void NoteLivingViews() {
  const std::lock_guard<std::mutex> guard(TheRegistry().lock);
  for (const auto& item : TheRegistry().views) {
    Note("alive_at_shutdown", std::to_string(item.first));
  }
}

ViewPtr CreateView(const CefRefPtr<CefClient>& client, const std::string& url, bool is_popup,
                   bool has_window) {
  const ViewPtr view = NewView(client, is_popup);
  if (has_window) {
    // A number on one system, a pointer on the other.
    view->window = (cef_window_handle_t)(kFirstWindow + static_cast<std::uintptr_t>(view->id));
  }
  AnnounceProcess("renderer");
  if (const auto handler = LifeSpanOf(view)) {
    handler->OnAfterCreated(BrowserOf(view));
  }
  Note("created", std::to_string(view->id));
  Navigate(view, url, TT_EXPLICIT);
  return view;
}

void CloseView(const ViewPtr& view, bool force) {
  Note("close_browser", std::to_string(view->id) + (force ? " forced" : ""));
  Post(TID_UI, [view] { Close(view); });
}

}  // namespace standin

namespace {

CefRefPtr<CefBrowser> Create(const cef_window_info_t* info, const CefRefPtr<CefClient>& client,
                             const cef_string_t* url, const cef_browser_settings_t* settings) {
  if (standin::TakeFault("create_browser")) {
    standin::Note("create_refused");
    return nullptr;
  }
  if (!standin::IsOn(TID_UI)) {
    standin::Note("create_on_wrong_thread");
    return nullptr;
  }
  standin::Note("window.bounds",
                std::to_string(info->bounds.x) + " " + std::to_string(info->bounds.y) + " " +
                    std::to_string(info->bounds.width) + " " + std::to_string(info->bounds.height));
  standin::Note("window.windowless", std::to_string(info->windowless_rendering_enabled));
  standin::Note("browser.javascript", std::to_string(settings->javascript));
  standin::Note("browser.accept_language_list",
                CefString(&settings->accept_language_list).ToString());
  return standin::BrowserOf(standin::CreateView(client, CefString(url).ToString(), false,
                                                !info->windowless_rendering_enabled));
}

}  // namespace

extern "C" cef_browser_t* cef_browser_host_create_browser_sync(
    const cef_window_info_t* windowInfo, cef_client_t* client, const cef_string_t* url,
    const cef_browser_settings_t* settings, cef_dictionary_value_t* extra_info,
    cef_request_context_t* request_context) {
  const CefRefPtr<CefClient> taken = engine_glue::FromC(client);
  const CefRefPtr<CefDictionaryValue> extra = engine_glue::FromC(extra_info);
  const CefRefPtr<CefRequestContext> context = engine_glue::FromC(request_context);
  return engine_glue::ToC(Create(windowInfo, taken, url, settings));
}
