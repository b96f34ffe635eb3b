// One promise of a page that waits for an answer: the two functions that settle it, and the context
// that they belong to.
//
// Made when a page registers a promise, owned by the `ORBCefNativePromiseRegistry` until the first
// settlement. Used on the renderer main thread. It outlives its page if no answer comes: what it
// refers to is then no longer valid, and a late settlement does nothing.

#ifndef ORBCEF_NATIVE_PROMISE_PROXY_H
#define ORBCEF_NATIVE_PROMISE_PROXY_H

#include "include/cef_v8.h"

class ORBCefNativePromiseProxy : public CefBaseRefCounted {
 public:
  enum class State { kPending = 0, kResolved = 1, kRejected = 2 };

  // @param context the context that the promise lives in.
  // @param executor an object whose properties "resolve" and "reject" are functions.
  // @return null unless the context is valid and the object is such a one.
  static CefRefPtr<ORBCefNativePromiseProxy> Create(const CefRefPtr<CefV8Context>& context,
                                                    const CefRefPtr<CefV8Value>& executor);

  ORBCefNativePromiseProxy(const ORBCefNativePromiseProxy&) = delete;
  ORBCefNativePromiseProxy& operator=(const ORBCefNativePromiseProxy&) = delete;

  // Calls the function of the page, with the value as its one argument. What the function returns
  // or throws is dropped.
  // @return whether the function was called: not for a null value, after the first settlement or
  // when the page is gone.
  bool Resolve(const CefRefPtr<CefV8Value>& value);
  bool Reject(const CefRefPtr<CefV8Value>& value);

  State GetState() const { return _state; }

 protected:
  ~ORBCefNativePromiseProxy() override = default;

 private:
  ORBCefNativePromiseProxy(const CefRefPtr<CefV8Context>& context,
                           const CefRefPtr<CefV8Value>& resolve,
                           const CefRefPtr<CefV8Value>& reject);

  bool Settle(const CefRefPtr<CefV8Value>& function, const CefRefPtr<CefV8Value>& value,
              State state);

  const CefRefPtr<CefV8Context> _context;
  const CefRefPtr<CefV8Value> _resolve;
  const CefRefPtr<CefV8Value> _reject;
  State _state = State::kPending;

  IMPLEMENT_REFCOUNTING(ORBCefNativePromiseProxy);
};

#endif  // ORBCEF_NATIVE_PROMISE_PROXY_H
