#include "ORBCefV8Handler.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "ORBCefLog.h"
#include "ORBCefProcessMessages.h"
#include "ORBCefToolsWrapperMT.h"

namespace {

using Call = ORBCefV8Handler::Call;
using Operation = bool (*)(const ORBCefV8Handler& handler, const Call& call);

struct Native {
  std::string_view name;
  std::size_t least_arguments;
  Operation operation;
};

template <const char* kMessage>
bool SendPlain(const ORBCefV8Handler&, const Call& call) {
  return ORBCefMessage::SendPlain(call.browser, kMessage);
}

bool SendDocumentSize(const ORBCefV8Handler& handler, const Call& call) {
  return handler.Binding().SendDocumentSize(call.context);
}

bool NotifyZoomChange(const ORBCefV8Handler& handler, const Call& call) {
  return handler.Binding().SendZoomChange(call.browser, call.arguments[0]);
}

bool SendString(const ORBCefV8Handler& handler, const Call& call) {
  return handler.Binding().SendStrings(call.browser, call.arguments);
}

bool GetEnv(const ORBCefV8Handler& handler, const Call& call) {
  CefString value;
  if (!handler.Binding().ReadEnvironment(call.arguments[0], value)) {
    return false;
  }
  call.retval = CefV8Value::CreateString(value);
  return true;
}

bool RegisterPromise(const ORBCefV8Handler& handler, const Call& call) {
  return handler.PromiseBinding().Register(call.context, call.arguments[0], call.retval,
                                           call.exception);
}

// Only integers are keys: a number with a fraction or out of range is as wrong as a text.
bool HasKey(const Call& call, const char* complaint) {
  if (call.arguments[0] && call.arguments[0]->IsInt()) {
    return true;
  }
  call.exception = complaint;
  return false;
}

bool ResolvePromise(const ORBCefV8Handler& handler, const Call& call) {
  return HasKey(call, "xocef._internals.resolvePromise: 1st arg should be an integer") &&
         handler.PromiseBinding().Resolve(call.arguments[0]->GetIntValue(), call.arguments[1],
                                          call.exception);
}

bool RejectPromise(const ORBCefV8Handler& handler, const Call& call) {
  return HasKey(call, "xocef._internals.rejectPromise: 1st arg should be an integer") &&
         handler.PromiseBinding().Reject(call.arguments[0]->GetIntValue(), call.arguments[1],
                                         call.exception);
}

// What is no number reads as 0, which no key is.
std::int32_t KeyOf(const Call& call) {
  return call.arguments[0] ? call.arguments[0]->GetIntValue() : ORBCefNativePromiseRegistry::kNoKey;
}

bool SaveValue(const ORBCefV8Handler& handler, const Call& call) {
  return handler.PromiseBinding().SaveValue(call.browser, KeyOf(call), call.arguments[1],
                                            call.exception);
}

bool LoadValue(const ORBCefV8Handler& handler, const Call& call) {
  return handler.PromiseBinding().LoadValue(call.browser, KeyOf(call), call.arguments[1],
                                            call.exception);
}

constexpr std::string_view kGetEnv = "__getEnv";

// Names are compared exactly, from the first row to the last.
constexpr Native kGeneralNatives[] = {
    {"__sendDocumentSize", 0, SendDocumentSize},
    {"__notifyDOMReady", 0, SendPlain<ORBCefMessage::kOnDOMContentLoaded>},
    {"__notifyLoad", 0, SendPlain<ORBCefMessage::kOnLoad>},
    {"__notifyUnload", 0, SendPlain<ORBCefMessage::kOnUnload>},
    {"__notifyZoomChange", 1, NotifyZoomChange},
    {"__notifyZoomReset", 0, SendPlain<ORBCefMessage::kOnZoomReset>},
    {"__sendString", 1, SendString},
    {"__loadHomepage", 0, SendPlain<ORBCefMessage::kLoadHome>},
    {"__openDevTools", 0, SendPlain<ORBCefMessage::kOpenDevTools>},
    {"__closeDevTools", 0, SendPlain<ORBCefMessage::kCloseDevTools>},
    {kGetEnv, 1, GetEnv},
    {"__registerPromise", 1, RegisterPromise},
    {"__resolvePromise", 2, ResolvePromise},
    {"__rejectPromise", 2, RejectPromise},
    {"__saveValue", 2, SaveValue},
    {"__loadValue", 2, LoadValue},
};

// Compares in place: the engine's text is UTF-16 and the names are ASCII, so nothing is converted.
bool Equals(const CefString& text, std::string_view name) {
  return text.length() == name.size() &&
         std::equal(name.begin(), name.end(), text.c_str(), [](char expected, auto unit) {
           return unit == static_cast<decltype(unit)>(expected);
         });
}

template <std::size_t kCount>
bool Dispatch(const Native (&natives)[kCount], const CefString& name,
              const ORBCefV8Handler& handler, const Call& call) {
  const Native* const end = natives + kCount;
  const Native* const native = std::find_if(
      natives, end, [&name](const Native& candidate) { return Equals(name, candidate.name); });
  return native != end && call.arguments.size() >= native->least_arguments &&
         native->operation(handler, call);
}

}  // namespace

ORBCefV8Handler::ORBCefV8Handler(orbceftypes_recordmode mode)
    : ORBCefV8Handler(mode, new ORBCefNativePromiseRegistry) {}

ORBCefV8Handler::ORBCefV8Handler(orbceftypes_recordmode mode,
                                 const CefRefPtr<ORBCefNativePromiseRegistry>& registry)
    : ORBCefV8Handler(mode, registry, new ORBCefV8BindingImpl,
                      new ORBCefV8PromiseBinding(registry)) {}

ORBCefV8Handler::ORBCefV8Handler(orbceftypes_recordmode mode,
                                 const CefRefPtr<ORBCefNativePromiseRegistry>& registry,
                                 const CefRefPtr<ORBCefV8BindingImpl>& binding,
                                 const CefRefPtr<ORBCefV8PromiseBinding>& promise_binding)
    : _registry(registry),
      _binding(binding),
      _promise_binding(promise_binding),
      _record_mode(mode) {}

bool ORBCefV8Handler::Execute(const CefString& name, CefRefPtr<CefV8Value> object,
                              const CefV8ValueList& arguments, CefRefPtr<CefV8Value>& retval,
                              CefString& exception) {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_RENDERER)) {
    return false;
  }
  return ExecuteIn(CefV8Context::GetCurrentContext(), name, arguments, retval, exception);
}

bool ORBCefV8Handler::ExecuteIn(const CefRefPtr<CefV8Context>& context, const CefString& name,
                                const CefV8ValueList& arguments, CefRefPtr<CefV8Value>& retval,
                                CefString& exception) {
  if (!context || !context->IsValid()) {
    return false;
  }
  const CefRefPtr<CefBrowser> browser = context->GetBrowser();
  if (!browser) {
    return false;
  }
  // The environment is kept out of the log on purpose.
  if (ORBCefLog::IsAdmitted(ORBCefLog::kInfo) && !Equals(name, kGetEnv)) {
    ORBCefLog::RendererInfo(browser->GetIdentifier(), "Binding execution: ", name);
  }
  return _binding && _promise_binding &&
         Dispatch(kGeneralNatives, name, *this,
                  Call{context, browser, arguments, retval, exception});
}
