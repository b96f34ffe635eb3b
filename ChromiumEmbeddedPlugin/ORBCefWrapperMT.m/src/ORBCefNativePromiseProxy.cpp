#include "ORBCefNativePromiseProxy.h"

#include "ORBCefFixedText.h"
#include "ORBCefV8ContextScope.h"

namespace {

constexpr ORBCefFixedText kResolve("resolve");
constexpr ORBCefFixedText kReject("reject");

bool IsFunction(const CefRefPtr<CefV8Value>& value) {
  return value && value->IsFunction();
}

}  // namespace

CefRefPtr<ORBCefNativePromiseProxy> ORBCefNativePromiseProxy::Create(
    const CefRefPtr<CefV8Context>& context, const CefRefPtr<CefV8Value>& executor) {
  if (!context || !context->IsValid()) {
    return nullptr;
  }
  if (!executor || executor->IsNull() || executor->IsUndefined() || !executor->IsObject()) {
    return nullptr;
  }
  const CefRefPtr<CefV8Value> resolve = executor->GetValue(kResolve.Text());
  if (!IsFunction(resolve)) {
    return nullptr;
  }
  const CefRefPtr<CefV8Value> reject = executor->GetValue(kReject.Text());
  if (!IsFunction(reject)) {
    return nullptr;
  }
  return new ORBCefNativePromiseProxy(context, resolve, reject);
}

ORBCefNativePromiseProxy::ORBCefNativePromiseProxy(const CefRefPtr<CefV8Context>& context,
                                                   const CefRefPtr<CefV8Value>& resolve,
                                                   const CefRefPtr<CefV8Value>& reject)
    : _context(context), _resolve(resolve), _reject(reject) {}

bool ORBCefNativePromiseProxy::Resolve(const CefRefPtr<CefV8Value>& value) {
  return Settle(_resolve, value, State::kResolved);
}

bool ORBCefNativePromiseProxy::Reject(const CefRefPtr<CefV8Value>& value) {
  return Settle(_reject, value, State::kRejected);
}

bool ORBCefNativePromiseProxy::Settle(const CefRefPtr<CefV8Value>& function,
                                      const CefRefPtr<CefV8Value>& value, State state) {
  if (_state != State::kPending || !_context || !function) {
    return false;
  }
  if (!value || !_context->IsValid()) {
    return false;
  }
  const ORBCefV8ContextScope scope(_context);
  // A function of a page that went away is none any more.
  if (!function->IsFunction()) {
    return false;
  }
  function->ExecuteFunction(nullptr, {value});
  _state = state;
  return true;
}
