// Receives every call of a native function that the extension scripts declare, and dispatches it.
//
// One object per render process, made by `ORBCefRenderProcessHandler` when the engine is ready and
// owned by the engine's registration of the extensions. Calls come on the renderer main thread with
// the page's context current; nothing changes after construction.

#ifndef ORBCEF_V8_HANDLER_H
#define ORBCEF_V8_HANDLER_H

#include "ORBCefNativePromiseRegistry.h"
#include "ORBCefV8BindingImpl.h"
#include "ORBCefV8PromiseBinding.h"
#include "include/cef_browser.h"
#include "include/cef_v8.h"
#include "orbcefrecords.h"

class ORBCefV8Handler : public CefV8Handler {
 public:
  // One call of a native function; it lends everything for as long as the call lasts. The context
  // is valid and the browser is its browser.
  struct Call {
    const CefRefPtr<CefV8Context>& context;
    const CefRefPtr<CefBrowser>& browser;
    const CefV8ValueList& arguments;
    CefRefPtr<CefV8Value>& retval;
    CefString& exception;
  };

  // @param mode the record mode of this process.
  explicit ORBCefV8Handler(orbceftypes_recordmode mode);

  // @param registry holds the promises of this process.
  ORBCefV8Handler(orbceftypes_recordmode mode,
                  const CefRefPtr<ORBCefNativePromiseRegistry>& registry);

  // @param binding,promise_binding serve the general natives; with one of them null, none of the
  // natives is handled.
  ORBCefV8Handler(orbceftypes_recordmode mode,
                  const CefRefPtr<ORBCefNativePromiseRegistry>& registry,
                  const CefRefPtr<ORBCefV8BindingImpl>& binding,
                  const CefRefPtr<ORBCefV8PromiseBinding>& promise_binding);

  ORBCefV8Handler(const ORBCefV8Handler&) = delete;
  ORBCefV8Handler& operator=(const ORBCefV8Handler&) = delete;

  // CefV8Handler. False means that the call was not handled: `retval` stays empty, and the engine
  // does not raise the text in `exception`, which it does with true only. [renderer]
  bool Execute(const CefString& name, CefRefPtr<CefV8Value> object, const CefV8ValueList& arguments,
               CefRefPtr<CefV8Value>& retval, CefString& exception) override;

  // The same in a given context instead of the current one.
  bool ExecuteIn(const CefRefPtr<CefV8Context>& context, const CefString& name,
                 const CefV8ValueList& arguments, CefRefPtr<CefV8Value>& retval,
                 CefString& exception);

  // What the operations of the dispatch table use.
  ORBCefV8BindingImpl& Binding() const { return *_binding; }
  ORBCefV8PromiseBinding& PromiseBinding() const { return *_promise_binding; }
  orbceftypes_recordmode RecordMode() const { return _record_mode; }

 protected:
  ~ORBCefV8Handler() override = default;

 private:
  const CefRefPtr<ORBCefNativePromiseRegistry> _registry;
  const CefRefPtr<ORBCefV8BindingImpl> _binding;
  const CefRefPtr<ORBCefV8PromiseBinding> _promise_binding;
  const orbceftypes_recordmode _record_mode;

  IMPLEMENT_REFCOUNTING(ORBCefV8Handler);
};

#endif  // ORBCEF_V8_HANDLER_H
