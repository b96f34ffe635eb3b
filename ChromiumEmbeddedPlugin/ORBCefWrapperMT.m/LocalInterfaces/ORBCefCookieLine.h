// Reads a cookie from one line of text, as a server writes it behind "Set-Cookie:". A deliberately
// short list of attributes counts; nothing is validated and no date is read. Pure functions, any
// thread.
#ifndef ORBCEF_COOKIE_LINE_H
#define ORBCEF_COOKIE_LINE_H

#include <string>
#include <utility>
#include <vector>

#include "include/cef_cookie.h"

namespace ORBCefCookieLine {

// Name and value in UTF-8, in the order of the line. All names but the first are in lower case.
using Pairs = std::vector<std::pair<std::string, std::string>>;

Pairs Split(const std::string& line);

// The first pair names the cookie; of the others the attributes that are known count, the later one
// of two that are the same. Fields that no pair touches stay as they are.
void Apply(const Pairs& pairs, CefCookie& cookie);

// An empty line, and one of nothing but white space, give an empty cookie.
CefCookie Parse(const CefString& line);

}  // namespace ORBCefCookieLine

#endif  // ORBCEF_COOKIE_LINE_H
