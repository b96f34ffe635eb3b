// What the browser side does with the named messages of a render process: one table of name and
// operation, compared in its order. Engine's UI thread, under the lock of the view; no state.
#ifndef ORBCEF_MESSAGE_DISPATCHER_H
#define ORBCEF_MESSAGE_DISPATCHER_H

#include <memory>

#include "ORBCefBrowserEvents.h"
#include "ORBCefPreferenceRequest.h"
#include "ORBCefViewSettings.h"
#include "include/cef_browser.h"
#include "include/cef_frame.h"
#include "include/cef_values.h"

// What the operations work on, lent for one dispatch.
struct ORBCefMessageContext {
  CefRefPtr<CefBrowser> browser;
  // Where the message came from: the main frame of its page. May be null.
  CefRefPtr<CefFrame> sender;
  CefRefPtr<CefListValue> arguments;
  const ORBCefBrowserEvents& events;
  ORBCefViewSettings& settings;
  // Receives the request of a message that asks for one; the caller starts it without its lock.
  std::unique_ptr<ORBCefPreferenceRequest>& preference_request;
};

namespace ORBCefMessageDispatcher {

// True if the message was acted on. A message of a wrong shape is not reported: a missing argument
// reads as the zero value of its type.
bool Dispatch(const CefString& name, const ORBCefMessageContext& context);

}  // namespace ORBCefMessageDispatcher

#endif  // ORBCEF_MESSAGE_DISPATCHER_H
