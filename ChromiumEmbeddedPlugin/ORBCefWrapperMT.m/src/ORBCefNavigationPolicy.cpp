#include "ORBCefNavigationPolicy.h"

#include <string>

#include "include/cef_parser.h"

namespace {

constexpr char kInstallationPrefix[] = "xortv://";

}  // namespace

namespace ORBCefNavigationPolicy {

bool HaveSameOrigin(const CefString& first, const CefString& second) {
  CefURLParts first_parts;
  CefURLParts second_parts;
  return CefParseURL(first, first_parts) && CefParseURL(second, second_parts) &&
         CefString(&first_parts.origin) == CefString(&second_parts.origin);
}

bool IsRefusedLocalFile(const CefString& frame_url, const CefString& request_url) {
  CefURLParts frame_parts;
  CefURLParts request_parts;
  if (!CefParseURL(frame_url, frame_parts) || !CefParseURL(request_url, request_parts)) {
    return false;
  }
  const CefString file("file");
  return CefString(&request_parts.scheme) == file && CefString(&frame_parts.scheme) != file;
}

bool StaysInside(const CefString& url, const CefString& home_url, const CefString& service_url) {
  if (url.ToString().rfind(kInstallationPrefix, 0) == 0) {
    return true;
  }
  return HaveSameOrigin(url, home_url) ||
         (!service_url.empty() && HaveSameOrigin(url, service_url));
}

Transition CheckTransition(uint32_t transition, bool reload_enabled, bool history_enabled) {
  // The whole value: a reload with any qualifier is not taken for one.
  if (transition == static_cast<uint32_t>(TT_RELOAD)) {
    return reload_enabled ? Transition::kAllowed : Transition::kReloadRefused;
  }
  if ((transition & static_cast<uint32_t>(TT_FORWARD_BACK_FLAG)) != 0) {
    return history_enabled ? Transition::kAllowed : Transition::kHistoryRefused;
  }
  return Transition::kAllowed;
}

}  // namespace ORBCefNavigationPolicy
