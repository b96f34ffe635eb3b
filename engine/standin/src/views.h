// The browsers of the stand-in. A view is the state of one; the objects of the interface are made
// around it whenever somebody asks for one. The registry holds a view from its creation to the end
// of OnBeforeClose, and every object holds it too. UI thread, unless said.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "audit.h"
#include "include/cef_browser.h"
#include "include/cef_client.h"
#include "include/cef_frame.h"

namespace standin {

struct View {
  View(int identifier, const CefRefPtr<CefClient>& its_client, bool is_a_popup);

  const int id;
  const bool is_popup;
  cef_window_handle_t window = 0;

  std::atomic<bool> is_loading{false};
  std::atomic<bool> is_closing{false};
  std::atomic<bool> is_closed{false};
  std::atomic<double> zoom{0};

  std::mutex lock;
  // Guarded by lock.
  std::optional<Held<CefClient>> client;
  std::optional<Held<CefClient>> tools;
  std::vector<std::string> history;
  size_t position = 0;
  std::string url;

 private:
  const Audited _audited{"View"};
};

using ViewPtr = std::shared_ptr<View>;

// Any thread. Null for a view that is closed.
CefRefPtr<CefClient> ClientOf(const ViewPtr& view);
std::string UrlOf(const ViewPtr& view);

// Any thread. The living one with the identifier, the oldest for 0.
ViewPtr FindView(int id);
void NoteLivingViews();

// A view, its first callbacks and its first page.
ViewPtr CreateView(const CefRefPtr<CefClient>& client, const std::string& url, bool is_popup,
                   bool has_window);

// The engine's objects around a view; any thread.
CefRefPtr<CefBrowser> BrowserOf(const ViewPtr& view);
CefRefPtr<CefBrowserHost> HostOf(const ViewPtr& view);
CefRefPtr<CefFrame> FrameOf(const ViewPtr& view);

// Any thread; the work is done on the UI thread.
void Navigate(const ViewPtr& view, const std::string& url, cef_transition_type_t transition);
void NavigateInHistory(const ViewPtr& view, int step);
void CloseView(const ViewPtr& view, bool force);

}  // namespace standin
