// The promises of a render process that wait for an answer, each under the integer key that travels
// to the browser process and comes back with the answer.
//
// One object per render process, shared by the bindings of the `ORBCefV8Handler`; used on the
// renderer main thread only, so it holds no lock. An entry leaves with its first settlement. One
// that is never settled stays for the life of the process, with its page's context: nothing sweeps
// the map, also not when a context is released.

#ifndef ORBCEF_NATIVE_PROMISE_REGISTRY_H
#define ORBCEF_NATIVE_PROMISE_REGISTRY_H

#include <cstddef>
#include <cstdint>
#include <map>

#include "ORBCefNativePromiseProxy.h"

class ORBCefNativePromiseRegistry : public CefBaseRefCounted {
 public:
  // What no key is: every key is at least 1.
  static constexpr std::int32_t kNoKey = 0;

  // Gives out the process's keys, which start at 1 and outlive navigations.
  ORBCefNativePromiseRegistry();

  // @param next_key the key that comes next, advanced with each registration.
  explicit ORBCefNativePromiseRegistry(std::int32_t& next_key) : _next_key(next_key) {}

  ORBCefNativePromiseRegistry(const ORBCefNativePromiseRegistry&) = delete;
  ORBCefNativePromiseRegistry& operator=(const ORBCefNativePromiseRegistry&) = delete;

  // Keeps the two functions of `executor` until one of them is called. A key that has come round
  // and still waits keeps its old entry, and is returned all the same.
  // @return the key, or `kNoKey` if there is no valid context or no such object.
  std::int32_t Register(const CefRefPtr<CefV8Context>& context,
                        const CefRefPtr<CefV8Value>& executor);

  // Settles the promise of `key`, and forgets it whatever comes of that.
  // @return whether the page's function was called; false for a key that does not wait.
  bool Resolve(std::int32_t key, const CefRefPtr<CefV8Value>& value);
  bool Reject(std::int32_t key, const CefRefPtr<CefV8Value>& value);

  // The number of promises that wait.
  std::size_t Size() const { return _pending.size(); }

 protected:
  ~ORBCefNativePromiseRegistry() override = default;

 private:
  CefRefPtr<ORBCefNativePromiseProxy> Take(std::int32_t key);

  std::int32_t& _next_key;
  std::map<std::int32_t, CefRefPtr<ORBCefNativePromiseProxy>> _pending;

  IMPLEMENT_REFCOUNTING(ORBCefNativePromiseRegistry);
};

#endif  // ORBCEF_NATIVE_PROMISE_REGISTRY_H
