// The session cookie that a launcher, which has logged the user in, hands to the host in the
// variable ORBHUBV9LAUNCHER_CASCOOKIE. A view whose session has no ticket puts it into the engine's
// cookie store. Engine's UI thread.
#ifndef ORBCEF_SESSION_COOKIE_H
#define ORBCEF_SESSION_COOKIE_H

#include <string>

#include "include/cef_cookie.h"

namespace ORBCefSessionCookie {

// Stores the launcher's cookie for the single-sign-on service and answers its value; empty if there
// is no service or no cookie. The store is written on the IO thread, later: a first load may come
// before it.
CefString InstallLauncherCookie(const std::string& turnstile_url);

// The service's address as the cookie's: with a "/" at its end.
std::string CookieURL(const std::string& turnstile_url);

// The session's own cookies travel on secure connections only and are hidden from scripts, whatever
// the launcher says.
void Harden(CefCookie& cookie);

}  // namespace ORBCefSessionCookie

#endif  // ORBCEF_SESSION_COOKIE_H
