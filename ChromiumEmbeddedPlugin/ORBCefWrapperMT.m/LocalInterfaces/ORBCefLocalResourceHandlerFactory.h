// Makes a handler for each request of the scheme "xortv".
//
// The engine calls Create on its IO thread; the search for the file happens inside the call. One
// instance serves both hosts of the scheme; the engine owns it.
#ifndef ORBCEFLOCALRESOURCEHANDLERFACTORY_H
#define ORBCEFLOCALRESOURCEHANDLERFACTORY_H

#include "include/cef_scheme.h"

class ORBCefLocalResourceHandlerFactory : public CefSchemeHandlerFactory {
 public:
  ORBCefLocalResourceHandlerFactory() = default;

  // A handler also for a file that is missing: the handler itself answers 404. Null for any method
  // but GET.
  CefRefPtr<CefResourceHandler> Create(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                                       const CefString& scheme_name,
                                       CefRefPtr<CefRequest> request) override;

 private:
  IMPLEMENT_REFCOUNTING(ORBCefLocalResourceHandlerFactory);
};

#endif  // ORBCEFLOCALRESOURCEHANDLERFACTORY_H
