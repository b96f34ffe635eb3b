#include "ORBCefRedirectTable.h"

#include <utility>

ORBCefRedirectTable::ORBCefRedirectTable(Clock clock) : _clock(std::move(clock)) {}

void ORBCefRedirectTable::Add(const CefString& source, const CefString& target) {
  _entries[source] = Entry{target, _clock()};
  _count = _entries.size();
}

CefString ORBCefRedirectTable::Take(const CefString& url) {
  const auto found = _entries.find(url);
  if (found == _entries.end()) {
    return CefString();
  }
  const Entry entry = std::move(found->second);
  _entries.erase(found);
  _count = _entries.size();
  return _clock() - entry.created < kLifetime ? entry.target : CefString();
}

std::chrono::nanoseconds ORBCefRedirectTable::SteadyNow() {
  return std::chrono::steady_clock::now().time_since_epoch();
}
