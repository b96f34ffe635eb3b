// The engine browsers of all views and their popups that exist now. The engine must not be shut
// down while one of them lives, and a host that closes its views hears nothing of their end: so the
// shutdown closes what is left and waits for it here. Written on the engine's UI thread; one object
// for the process, with a lock of its own under which nothing else is called.
#ifndef ORBCEF_LIVING_BROWSERS_H
#define ORBCEF_LIVING_BROWSERS_H

#include <chrono>
#include <cstddef>
#include <map>
#include <mutex>

#include "include/cef_browser.h"
#include "platform/HostWait.h"

class ORBCefLivingBrowsers {
 public:
  // Long enough for a busy page. An engine that does not answer is shut down all the same.
  static constexpr std::chrono::milliseconds kLimit{5000};

  // The engine gives a page's process up to half a second after its browser, tells nobody of it,
  // and faults now and then when it is shut down before.
  static constexpr std::chrono::milliseconds kRest{600};

  static ORBCefLivingBrowsers& Instance();

  void Add(const CefRefPtr<CefBrowser>& browser);
  void Remove(const CefRefPtr<CefBrowser>& browser);
  size_t Size() const;

  // Closes all of them without asking their pages. Engine's UI thread.
  void CloseAll();

  // Waits until the engine's threads have done all earlier tasks, closes what lives then, and
  // waits until nothing is left and kRest has passed since the last end. False if a step took
  // longer than `limit`; nothing is awaited without an engine. Host's main thread; the caller keeps
  // new browsers from coming.
  bool CloseAllAndWait(std::chrono::milliseconds limit = kLimit);

  // The waiting of CloseAllAndWait.
  bool WaitForNone(std::chrono::milliseconds limit);

 private:
  // One turn of all threads that ends in CloseAll, and the wait for it.
  bool GoRound(std::chrono::milliseconds limit);
  // Posts the rest of a turn. False if the engine takes no task.
  bool PassOn(size_t station);
  void EndClose();
  void Rest();

  mutable std::mutex _lock;
  platform::HostCondition _changed;
  // Guarded by _lock.
  std::map<int, CefRefPtr<CefBrowser>> _browsers;
  std::chrono::steady_clock::time_point _rest_end;
  bool _is_close_pending = false;
};

#endif  // ORBCEF_LIVING_BROWSERS_H
