// Keeps the client of every living browser alive: written when a browser is created and when it
// begins to close, never read otherwise. Engine's UI thread; one registry for the process, with a
// lock of its own that is taken after the view's.
#ifndef ORBCEF_CLIENT_REGISTRY_H
#define ORBCEF_CLIENT_REGISTRY_H

#include <cstddef>
#include <map>
#include <mutex>

#include "include/cef_base.h"

class ORBCefClientRegistry {
 public:
  static ORBCefClientRegistry& Instance();

  // Does nothing if `browser_id` already has an entry.
  void Add(int browser_id, CefRefPtr<CefBaseRefCounted> client);
  void Remove(int browser_id);
  size_t Size() const;

 private:
  mutable std::mutex _lock;
  // Guarded by _lock.
  std::map<int, CefRefPtr<CefBaseRefCounted>> _clients;
};

#endif  // ORBCEF_CLIENT_REGISTRY_H
