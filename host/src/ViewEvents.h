// The host's table `orbcefbrowserevents_c`. The module calls it on the engine's threads; each call
// copies its arguments and hops to the main thread, where the listener hears it.
//
// Counted; the view holds one reference through `Pointer`, the module its own.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "MainThread.h"
#include "orbcefbrowserevents.h"

namespace host {

// Hears a view's events on the main thread.
class ViewListener {
 public:
  virtual ~ViewListener() = default;
  virtual void OnState(int state) = 0;
  virtual void OnV8Context(bool created) = 0;
  virtual void OnStrings(const std::vector<std::string>& strings) = 0;
  virtual void OnTitle(const std::string& title) = 0;
  virtual void OnAddress(const std::string& url) = 0;
  virtual void OnDownload(std::uint32_t id, std::int64_t received, std::int64_t total,
                          std::int64_t speed, bool complete) = 0;
  virtual void OnLoading(bool loading, const std::string& url) = 0;
  virtual void OnDocumentSize(int width, int height) = 0;
  virtual void OnConsole(const std::string& message, const std::string& source, int line) = 0;
  virtual void OnZoom(double change) = 0;
  virtual void OnRecordData(const std::string& data) = 0;
  // `callback` is lent for the call; it may be answered later with a reference of one's own.
  virtual void OnAuthentication(const std::string& origin, bool proxy, const std::string& host,
                                int port, orbcefauthcallback_c* callback) = 0;
};

class ViewEvents {
 public:
  struct Releaser {
    void operator()(ViewEvents* events) const;
  };
  using Pointer = std::unique_ptr<ViewEvents, Releaser>;

  // The listener is held weakly: an event that arrives after its end is dropped.
  static Pointer Make(MainThread& main_thread, std::weak_ptr<ViewListener> listener);

  orbcefbrowserevents_c* Table() { return &_table; }

 private:
  struct Slots;

  ViewEvents(MainThread& main_thread, std::weak_ptr<ViewListener> listener);

  void Tell(std::function<void(ViewListener&)> event);

  orbcefbrowserevents_c _table;
  std::atomic<int> _references{1};
  MainThread& _main_thread;
  const std::weak_ptr<ViewListener> _listener;
};

}  // namespace host
