#include "ORBCefLocalResourceHandlerFactory.h"

#include "ORBCefLocalResourceHandler.h"
#include "ORBCefLog.h"
#include "ORBCefToolsWrapperMT.h"
#include "include/cef_parser.h"

CefRefPtr<CefResourceHandler> ORBCefLocalResourceHandlerFactory::Create(
    CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame, const CefString& scheme_name,
    CefRefPtr<CefRequest> request) {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_IO))
    return nullptr;
  if (!request)
    return nullptr;
  if (request->GetMethod() != CefString("GET")) {
    ORBCefLog::Error("[xortv] The xortv protocol can only accept GET requests.\n",
                     "\tProtocol: ", scheme_name, "\n", "\tURL: ", request->GetURL());
    return nullptr;
  }
  // The path is taken as it stands: without query and fragment, and not decoded.
  CefURLParts parts;
  CefParseURL(request->GetURL(), parts);
  return new ORBCefLocalResourceHandler(CefString(&parts.host), CefString(&parts.path));
}
