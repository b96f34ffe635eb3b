// Enters a V8 context for the length of a block.
//
// Used on the renderer main thread, as a local variable that shares the context with its maker. The
// engine pairs `Exit` with a successful `Enter` only, so a refused `Enter` is not undone.

#ifndef ORBCEF_V8_CONTEXT_SCOPE_H
#define ORBCEF_V8_CONTEXT_SCOPE_H

#include "include/cef_v8.h"

class ORBCefV8ContextScope {
 public:
  explicit ORBCefV8ContextScope(const CefRefPtr<CefV8Context>& context)
      : _context(context), _entered(context->Enter()) {}
  ~ORBCefV8ContextScope() {
    if (_entered) {
      _context->Exit();
    }
  }

  ORBCefV8ContextScope(const ORBCefV8ContextScope&) = delete;
  ORBCefV8ContextScope& operator=(const ORBCefV8ContextScope&) = delete;

 private:
  const CefRefPtr<CefV8Context> _context;
  const bool _entered;
};

#endif  // ORBCEF_V8_CONTEXT_SCOPE_H
