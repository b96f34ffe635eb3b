// What the natives around promises do: they register and settle promises of the page, and send the
// requests for stored values that such a promise waits for.
//
// One object per render process, shared by the `ORBCefV8Handler`; used on the renderer main thread
// only. Every operation returns whether the call counts as handled and may fill `exception`.

#ifndef ORBCEF_V8_PROMISE_BINDING_H
#define ORBCEF_V8_PROMISE_BINDING_H

#include <cstdint>

#include "ORBCefNativePromiseRegistry.h"
#include "include/cef_browser.h"
#include "include/cef_v8.h"

class ORBCefV8PromiseBinding : public CefBaseRefCounted {
 public:
  // @param registry with null, every operation fails with an exception.
  explicit ORBCefV8PromiseBinding(const CefRefPtr<ORBCefNativePromiseRegistry>& registry)
      : _registry(registry) {}

  ORBCefV8PromiseBinding(const ORBCefV8PromiseBinding&) = delete;
  ORBCefV8PromiseBinding& operator=(const ORBCefV8PromiseBinding&) = delete;

  // @param executor an object with the functions "resolve" and "reject".
  // @param retval receives the integer key.
  bool Register(const CefRefPtr<CefV8Context>& context, const CefRefPtr<CefV8Value>& executor,
                CefRefPtr<CefV8Value>& retval, CefString& exception);

  // Settles a promise. A key that does not wait (settled before, or of no one) is quietly ignored.
  bool Resolve(std::int32_t key, const CefRefPtr<CefV8Value>& value, CefString& exception);
  bool Reject(std::int32_t key, const CefRefPtr<CefV8Value>& value, CefString& exception);

  // Sends "SaveValue" with the properties "origin", "name" and "value" of `request`, or
  // "LoadValue" with the first two. A property that is no text is sent as an empty one.
  bool SaveValue(const CefRefPtr<CefBrowser>& browser, std::int32_t key,
                 const CefRefPtr<CefV8Value>& request, CefString& exception);
  bool LoadValue(const CefRefPtr<CefBrowser>& browser, std::int32_t key,
                 const CefRefPtr<CefV8Value>& request, CefString& exception);

 protected:
  ~ORBCefV8PromiseBinding() override = default;

 private:
  bool CanRequest(const CefRefPtr<CefBrowser>& browser, std::int32_t key,
                  CefString& exception) const;

  const CefRefPtr<ORBCefNativePromiseRegistry> _registry;

  IMPLEMENT_REFCOUNTING(ORBCefV8PromiseBinding);
};

#endif  // ORBCEF_V8_PROMISE_BINDING_H
