// Where the single sign-on service of the installation answers. Any thread that may call the
// host's tools; no state.
#ifndef ORBCEF_TURNSTILE_H
#define ORBCEF_TURNSTILE_H

#include <string>

namespace ORBCefTurnstile {

// The section of the system settings that holds the service of the views.
inline constexpr char kServiceKey[] = "7DAstrolabeAccess";

// ORBCEF_TURNSTILE_URL if it is set, even to nothing; otherwise the setting "7DTurnstile_URL" of
// `section`. Empty if neither says anything.
std::string GetTurnstileUrl(const char* section);

}  // namespace ORBCefTurnstile

#endif  // ORBCEF_TURNSTILE_H
