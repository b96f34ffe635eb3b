#include "ORBCefNativePromiseRegistry.h"

#include <limits>
#include <utility>

namespace {

constexpr std::int32_t kFirstKey = 1;

// One for the process, so that no key returns before the counter has come round.
std::int32_t& ProcessKey() {
  static std::int32_t next_key = kFirstKey;
  return next_key;
}

std::int32_t KeyAfter(std::int32_t key) {
  return key == std::numeric_limits<std::int32_t>::max() ? kFirstKey : key + 1;
}

}  // namespace

ORBCefNativePromiseRegistry::ORBCefNativePromiseRegistry()
    : ORBCefNativePromiseRegistry(ProcessKey()) {}

std::int32_t ORBCefNativePromiseRegistry::Register(const CefRefPtr<CefV8Context>& context,
                                                   const CefRefPtr<CefV8Value>& executor) {
  const CefRefPtr<ORBCefNativePromiseProxy> proxy =
      ORBCefNativePromiseProxy::Create(context, executor);
  if (!proxy) {
    return kNoKey;
  }
  const std::int32_t key = _next_key;
  _pending.emplace(key, proxy);
  _next_key = KeyAfter(key);
  return key;
}

bool ORBCefNativePromiseRegistry::Resolve(std::int32_t key, const CefRefPtr<CefV8Value>& value) {
  const CefRefPtr<ORBCefNativePromiseProxy> proxy = Take(key);
  return proxy && proxy->Resolve(value);
}

bool ORBCefNativePromiseRegistry::Reject(std::int32_t key, const CefRefPtr<CefV8Value>& value) {
  const CefRefPtr<ORBCefNativePromiseProxy> proxy = Take(key);
  return proxy && proxy->Reject(value);
}

CefRefPtr<ORBCefNativePromiseProxy> ORBCefNativePromiseRegistry::Take(std::int32_t key) {
  const auto entry = _pending.find(key);
  if (entry == _pending.end()) {
    return nullptr;
  }
  // Out of the map before the page's function runs, which may come back here.
  CefRefPtr<ORBCefNativePromiseProxy> proxy = std::move(entry->second);
  _pending.erase(entry);
  return proxy;
}
