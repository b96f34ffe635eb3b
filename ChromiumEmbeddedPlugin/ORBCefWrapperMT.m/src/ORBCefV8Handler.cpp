#include "ORBCefV8Handler.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

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
    : ORBCefV8Handler(mode, new ORBCefV8BindingImpl) {}

ORBCefV8Handler::ORBCefV8Handler(orbceftypes_recordmode mode,
                                 CefRefPtr<ORBCefV8BindingImpl> binding)
    : _binding(std::move(binding)), _record_mode(mode) {}

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
  return _binding && Dispatch(kGeneralNatives, name, *this,
                              Call{context, browser, arguments, retval, exception});
}
