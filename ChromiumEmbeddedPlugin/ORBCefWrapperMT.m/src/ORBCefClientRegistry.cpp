#include "ORBCefClientRegistry.h"

#include <utility>

ORBCefClientRegistry& ORBCefClientRegistry::Instance() {
  // Never destroyed: a browser that still lives at the end of the process keeps its client.
  static ORBCefClientRegistry* const registry = new ORBCefClientRegistry();
  return *registry;
}

void ORBCefClientRegistry::Add(int browser_id, CefRefPtr<CefBaseRefCounted> client) {
  const std::lock_guard<std::mutex> guard(_lock);
  _clients.emplace(browser_id, std::move(client));
}

void ORBCefClientRegistry::Remove(int browser_id) {
  // Released after the lock: the last reference runs the client's destructor.
  CefRefPtr<CefBaseRefCounted> removed;
  const std::lock_guard<std::mutex> guard(_lock);
  const auto found = _clients.find(browser_id);
  if (found == _clients.end()) {
    return;
  }
  removed = std::move(found->second);
  _clients.erase(found);
}

size_t ORBCefClientRegistry::Size() const {
  const std::lock_guard<std::mutex> guard(_lock);
  return _clients.size();
}
