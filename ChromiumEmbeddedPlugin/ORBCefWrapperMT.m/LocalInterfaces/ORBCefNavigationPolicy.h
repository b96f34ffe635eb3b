// Which navigations of a view may go on. Pure decisions on values: any thread, no state.
#ifndef ORBCEF_NAVIGATION_POLICY_H
#define ORBCEF_NAVIGATION_POLICY_H

#include <cstdint>

#include "ORBCefViewSettings.h"
#include "include/internal/cef_string.h"

namespace ORBCefNavigationPolicy {

enum class Transition { kAllowed, kReloadRefused, kHistoryRefused };

// Both URLs parse and have equal origins; two empty origins are equal.
bool HaveSameOrigin(const CefString& first, const CefString& second);

// A page that is not a local file itself asks for one. A frame without a URL may ask for anything.
bool IsRefusedLocalFile(const CefString& frame_url, const CefString& request_url);

// The URL belongs to the installation, to the home page or to the sign-on service.
bool StaysInside(const CefString& url, const CefString& home_url, const CefString& service_url);

// `transition` is the engine's transition type with its qualifiers.
Transition CheckTransition(uint32_t transition, bool reload_enabled, bool history_enabled);

}  // namespace ORBCefNavigationPolicy

#endif  // ORBCEF_NAVIGATION_POLICY_H
