// What the natives of the general dispatch do: each operation turns the arguments of one native
// function into a process message, or into a value.
//
// It has no state: all state of a call lives in the call. One object per render process, shared by
// the `ORBCefV8Handler`; used on the renderer main thread only. Every operation returns whether the
// call counts as handled.

#ifndef ORBCEF_V8_BINDING_IMPL_H
#define ORBCEF_V8_BINDING_IMPL_H

#include "include/cef_browser.h"
#include "include/cef_v8.h"

class ORBCefV8BindingImpl : public CefBaseRefCounted {
 public:
  ORBCefV8BindingImpl() = default;

  ORBCefV8BindingImpl(const ORBCefV8BindingImpl&) = delete;
  ORBCefV8BindingImpl& operator=(const ORBCefV8BindingImpl&) = delete;

  // Measures the document of `context` with the installation's snippet and sends "DocumentSize".
  bool SendDocumentSize(const CefRefPtr<CefV8Context>& context);

  // Sends "OnZoomChanged" unless the step is undefined or 0.
  bool SendZoomChange(const CefRefPtr<CefBrowser>& browser, const CefRefPtr<CefV8Value>& step);

  // Sends "SendString" with the page's strings, the caller's position and the record options, which
  // are arguments 0 to 2. Further arguments only lengthen the message by empty items.
  // @return false, with nothing sent, for fewer than three arguments or one of the wrong kind.
  bool SendStrings(const CefRefPtr<CefBrowser>& browser, const CefV8ValueList& arguments);

  // Reads a variable of this process's own environment, not of the host's.
  // @param value receives the text, empty if the variable is not set.
  // @return false if `name` is missing, null, undefined or has no text.
  bool ReadEnvironment(const CefRefPtr<CefV8Value>& name, CefString& value);

 protected:
  ~ORBCefV8BindingImpl() override = default;

 private:
  IMPLEMENT_REFCOUNTING(ORBCefV8BindingImpl);
};

#endif  // ORBCEF_V8_BINDING_IMPL_H
