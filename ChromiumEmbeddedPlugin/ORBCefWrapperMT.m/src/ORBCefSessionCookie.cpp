#include "ORBCefSessionCookie.h"

#include "ORBCefCookieLine.h"
#include "ORBCefLog.h"
#include "ORBCefTask.h"
#include "ORBCefToolsAccessor.h"

namespace ORBCefSessionCookie {

namespace {

constexpr char kVariable[] = "ORBHUBV9LAUNCHER_CASCOOKIE";
constexpr char kTicketCookie[] = "CASTGC";
constexpr char kServletCookie[] = "JSESSIONID";

CefString UpdateCookie(const CefString& url, const CefString& text) {
  if (url.empty() || text.empty()) {
    return CefString();
  }
  const CefRefPtr<CefCookieManager> manager = CefCookieManager::GetGlobalManager(nullptr);
  if (!manager) {
    return CefString();
  }
  CefCookie cookie = ORBCefCookieLine::Parse(text);
  Harden(cookie);
  ORBCefPost(TID_IO, [manager, url, cookie] { manager->SetCookie(url, cookie, nullptr); });
  ORBCefLog::Info("Updated cookie.\n", "\t", text, "\n\tURL: ", url);
  // A copy: the cookie's own text goes with it.
  return CefString(cookie.value.str, cookie.value.length, true);
}

}  // namespace

CefString InstallLauncherCookie(const std::string& turnstile_url) {
  if (turnstile_url.empty()) {
    return CefString();
  }
  const char* text = ORBCefToolsAccessor::ORBGetEnv(kVariable);
  if (!text) {
    ORBCefLog::Warning("Looking for a CASTGC cookie, but ", kVariable, " is not valued");
    return CefString();
  }
  return UpdateCookie(CookieURL(turnstile_url), CefString(text));
}

std::string CookieURL(const std::string& turnstile_url) {
  return turnstile_url.back() == '/' ? turnstile_url : turnstile_url + '/';
}

void Harden(CefCookie& cookie) {
  const std::string name = CefString(&cookie.name).ToString();
  if (name != kTicketCookie && name != kServletCookie) {
    return;
  }
  cookie.secure = 1;
  cookie.httponly = 1;
  if (name == kTicketCookie) {
    cookie.same_site = CEF_COOKIE_SAME_SITE_NO_RESTRICTION;
  }
}

}  // namespace ORBCefSessionCookie
