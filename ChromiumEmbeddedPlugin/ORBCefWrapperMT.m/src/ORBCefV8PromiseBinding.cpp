#include "ORBCefV8PromiseBinding.h"

#include "ORBCefFixedText.h"
#include "ORBCefProcessMessages.h"

namespace {

constexpr char kNoRegistry[] = "Native callback handler is null";
constexpr char kNoProxy[] = "Failed to instantiate native promise proxy";
constexpr char kNoResolveValue[] = "Native promise resolver called with null value";
constexpr char kNoRejectValue[] = "Native promise rejector called with null value";
constexpr char kInvalidKey[] = "Invalid key for native promise executor";

constexpr ORBCefFixedText kOrigin("origin");
constexpr ORBCefFixedText kName("name");
constexpr ORBCefFixedText kValue("value");

// @return false if the engine does not give the property at all, as for a value without properties.
bool ReadText(const CefRefPtr<CefV8Value>& object, const CefString& key, CefString& text) {
  const CefRefPtr<CefV8Value> property = object ? object->GetValue(key) : nullptr;
  if (!property) {
    return false;
  }
  text = property->GetStringValue();
  return true;
}

}  // namespace

bool ORBCefV8PromiseBinding::Register(const CefRefPtr<CefV8Context>& context,
                                      const CefRefPtr<CefV8Value>& executor,
                                      CefRefPtr<CefV8Value>& retval, CefString& exception) {
  if (!_registry) {
    exception = kNoRegistry;
    return false;
  }
  const std::int32_t key = _registry->Register(context, executor);
  if (key == ORBCefNativePromiseRegistry::kNoKey) {
    exception = kNoProxy;
    return false;
  }
  retval = CefV8Value::CreateInt(key);
  return true;
}

bool ORBCefV8PromiseBinding::Resolve(std::int32_t key, const CefRefPtr<CefV8Value>& value,
                                     CefString& exception) {
  if (!_registry) {
    exception = kNoRegistry;
    return false;
  }
  if (!value) {
    exception = kNoResolveValue;
    return false;
  }
  return _registry->Resolve(key, value);
}

bool ORBCefV8PromiseBinding::Reject(std::int32_t key, const CefRefPtr<CefV8Value>& value,
                                    CefString& exception) {
  if (!_registry) {
    exception = kNoRegistry;
    return false;
  }
  if (!value) {
    exception = kNoRejectValue;
    return false;
  }
  return _registry->Reject(key, value);
}

bool ORBCefV8PromiseBinding::SaveValue(const CefRefPtr<CefBrowser>& browser, std::int32_t key,
                                       const CefRefPtr<CefV8Value>& request, CefString& exception) {
  CefString value;
  CefString name;
  CefString origin;
  return CanRequest(browser, key, exception) && ReadText(request, kValue.Text(), value) &&
         ReadText(request, kName.Text(), name) && ReadText(request, kOrigin.Text(), origin) &&
         ORBCefMessage::SendSaveValue(browser, key, origin, name, value);
}

bool ORBCefV8PromiseBinding::LoadValue(const CefRefPtr<CefBrowser>& browser, std::int32_t key,
                                       const CefRefPtr<CefV8Value>& request, CefString& exception) {
  CefString name;
  CefString origin;
  return CanRequest(browser, key, exception) && ReadText(request, kName.Text(), name) &&
         ReadText(request, kOrigin.Text(), origin) &&
         ORBCefMessage::SendLoadValue(browser, key, origin, name);
}

bool ORBCefV8PromiseBinding::CanRequest(const CefRefPtr<CefBrowser>& browser, std::int32_t key,
                                        CefString& exception) const {
  if (!browser) {
    return false;
  }
  if (!_registry) {
    exception = kNoRegistry;
    return false;
  }
  if (key <= ORBCefNativePromiseRegistry::kNoKey) {
    exception = kInvalidKey;
    return false;
  }
  return true;
}
