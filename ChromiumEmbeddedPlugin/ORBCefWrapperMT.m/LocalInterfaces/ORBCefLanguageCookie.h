// Gives the start page of a new view its language cookie, unless it has one. Started on the
// engine's UI thread; the visit and the writing run on the thread on which the engine serves
// cookies. The engine owns the visitor.
#ifndef ORBCEF_LANGUAGE_COOKIE_H
#define ORBCEF_LANGUAGE_COOKIE_H

#include <functional>
#include <string>

#include "include/cef_cookie.h"

namespace ORBCefLanguageCookie {

inline constexpr char kName[] = "hivelang";

// The domain that the cookie of `url` gets; empty for an address or an unparsable URL. Throws
// std::out_of_range for a host of fewer than four characters that begins with "w" or ".".
std::string CookieDomainOf(const std::string& url);

// The visitor of one check: when the engine drops it without having shown it a cookie of that
// name, it sets one through the manager that `manager` gives at that moment.
CefRefPtr<CefCookieVisitor> CreateVisitor(const CefString& url, const CefString& language,
                                          std::function<CefRefPtr<CefCookieManager>()> manager);

// Does nothing without a global cookie manager or with an empty URL.
void Start(const CefString& url, const CefString& language);

}  // namespace ORBCefLanguageCookie

#endif  // ORBCEF_LANGUAGE_COOKIE_H
