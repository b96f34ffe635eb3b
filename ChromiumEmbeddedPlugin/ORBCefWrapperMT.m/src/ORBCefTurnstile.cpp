#include "ORBCefTurnstile.h"

#include "ORBCefToolsAccessor.h"

namespace ORBCefTurnstile {

std::string GetTurnstileUrl(const char* section) {
  if (const char* url = ORBCefToolsAccessor::ORBGetEnv("ORBCEF_TURNSTILE_URL")) {
    return url;
  }
  return ORBCefToolsAccessor::ReadFromSysSettings(section, "7DTurnstile_URL");
}

}  // namespace ORBCefTurnstile
