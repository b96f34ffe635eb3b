// One-shot redirects of a view: a request for the source URL goes once to the target, if it comes
// within a minute. The owner, the client handler, serialises Add and Take with its lock;
// IsEmpty may be asked without it, from any thread.
#ifndef ORBCEF_REDIRECT_TABLE_H
#define ORBCEF_REDIRECT_TABLE_H

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>

#include "include/internal/cef_string.h"

class ORBCefRedirectTable {
 public:
  using Clock = std::function<std::chrono::nanoseconds()>;

  static constexpr std::chrono::nanoseconds kLifetime{60'000'000'000};

  // `clock` gives the steady time; tests bring their own.
  explicit ORBCefRedirectTable(Clock clock = SteadyNow);

  // A second redirect for the same source replaces the first and restarts its time.
  void Add(const CefString& source, const CefString& target);

  // Takes the entry of `url` out, fresh or not. Empty if there was none or it was too old.
  CefString Take(const CefString& url);

  bool IsEmpty() const { return _count.load() == 0; }

 private:
  struct Entry {
    CefString target;
    std::chrono::nanoseconds created;
  };

  static std::chrono::nanoseconds SteadyNow();

  const Clock _clock;
  std::map<CefString, Entry> _entries;
  // Mirrors the size of _entries for readers without the lock.
  std::atomic<size_t> _count{0};
};

#endif  // ORBCEF_REDIRECT_TABLE_H
