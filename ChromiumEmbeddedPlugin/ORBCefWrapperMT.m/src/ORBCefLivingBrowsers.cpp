#include "ORBCefLivingBrowsers.h"

#include <iterator>
#include <vector>

#include "ORBCefTask.h"
#include "platform/Windowing.h"

namespace {

// The engine's start hands work from thread to thread, and the engine faults now and then when it
// is shut down before that is over. So the shutdown's turn goes the same round first.
constexpr CefThreadId kStations[] = {TID_UI,
                                     TID_FILE_BACKGROUND,
                                     TID_FILE_USER_VISIBLE,
                                     TID_FILE_USER_BLOCKING,
                                     TID_PROCESS_LAUNCHER,
                                     TID_IO,
                                     TID_UI};

}  // namespace

ORBCefLivingBrowsers& ORBCefLivingBrowsers::Instance() {
  // Never destroyed: a task that the engine runs late may still refer to it.
  static ORBCefLivingBrowsers* const instance = new ORBCefLivingBrowsers();
  return *instance;
}

void ORBCefLivingBrowsers::Add(const CefRefPtr<CefBrowser>& browser) {
  const int id = browser->GetIdentifier();
  const std::lock_guard<std::mutex> guard(_lock);
  _browsers.emplace(id, browser);
}

void ORBCefLivingBrowsers::Remove(const CefRefPtr<CefBrowser>& browser) {
  const int id = browser->GetIdentifier();
  // Released after the lock: it may be the last reference.
  CefRefPtr<CefBrowser> removed;
  const std::lock_guard<std::mutex> guard(_lock);
  const auto found = _browsers.find(id);
  if (found == _browsers.end()) {
    return;
  }
  removed = found->second;
  _browsers.erase(found);
  _rest_end = std::chrono::steady_clock::now() + kRest;
  _changed.Notify();
}

size_t ORBCefLivingBrowsers::Size() const {
  const std::lock_guard<std::mutex> guard(_lock);
  return _browsers.size();
}

void ORBCefLivingBrowsers::CloseAll() {
  std::vector<CefRefPtr<CefBrowser>> browsers;
  {
    const std::lock_guard<std::mutex> guard(_lock);
    for (const auto& [id, browser] : _browsers) {
      browsers.push_back(browser);
    }
  }
  for (const CefRefPtr<CefBrowser>& browser : browsers) {
    if (const CefRefPtr<CefBrowserHost> host = browser->GetHost()) {
      // The tools are a browser of their own that tells of no end; closed first, they end first.
      if (host->HasDevTools()) {
        host->CloseDevTools();
      }
      // Where the engine leaves a view's window to the host it only asks for its end, and the host
      // hears nothing while it waits for the shutdown. This is the window's own thread.
      if (!platform::EndViewWindow(platform::ToWindowHandle(host->GetWindowHandle()))) {
        host->CloseBrowser(true);
      }
    }
  }
}

void ORBCefLivingBrowsers::EndClose() {
  const std::lock_guard<std::mutex> guard(_lock);
  _is_close_pending = false;
  _changed.Notify();
}

bool ORBCefLivingBrowsers::PassOn(size_t station) {
  return ORBCefPost(kStations[station], [this, station] {
    if (station + 1 == std::size(kStations)) {
      CloseAll();
      EndClose();
    } else if (!PassOn(station + 1)) {
      CloseAll();
      EndClose();
    }
  });
}

bool ORBCefLivingBrowsers::CloseAllAndWait(std::chrono::milliseconds limit) {
  // A second round, since the end of a browser too leaves work on the engine's threads, and for a
  // popup that came after the first one had closed what there was.
  GoRound(limit);
  const bool none_left = GoRound(limit);
  Rest();
  return none_left;
}

void ORBCefLivingBrowsers::Rest() {
  std::unique_lock<std::mutex> guard(_lock);
  _changed.WaitUntil(guard, _rest_end, [] { return false; });
}

bool ORBCefLivingBrowsers::GoRound(std::chrono::milliseconds limit) {
  {
    const std::lock_guard<std::mutex> guard(_lock);
    _is_close_pending = true;
  }
  if (!PassOn(0)) {
    EndClose();
    return true;
  }
  return WaitForNone(limit);
}

bool ORBCefLivingBrowsers::WaitForNone(std::chrono::milliseconds limit) {
  std::unique_lock<std::mutex> guard(_lock);
  return _changed.WaitUntil(guard, std::chrono::steady_clock::now() + limit,
                            [this] { return !_is_close_pending && _browsers.empty(); });
}
