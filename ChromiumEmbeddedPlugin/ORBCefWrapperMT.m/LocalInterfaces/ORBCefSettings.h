// Fills the engine's settings from the environment and the host's settings.
//
// Called on the host's main thread when the engine starts. Keeps no state: the environment is read
// at each call.
#ifndef ORBCEFSETTINGS_H
#define ORBCEFSETTINGS_H

#include <string>

#include "include/cef_app.h"

namespace ORBCefSettings {

// The executable of the engine's sub-processes.
#if defined(OS_WIN)
inline constexpr char kHelperFile[] = "7XOWebHelper.exe";
#else
inline constexpr char kHelperFile[] = "7XOWebHelper";
#endif

// `language` is the locale tag; empty leaves the locale to the engine.
void Fill(CefSettings& settings, const CefString& language);

// The directory of the engine's cache: ORBCEF_CACHE_PATH as it stands, else "WebCache" with the
// host's release level below ORBTemp or the host's temporary directory.
std::string ComputeCachePath();

// The value of ORBCEF_DEVTOOLS_PORT, 0 outside 1024 to 65535.
int DevToolsPort();

}  // namespace ORBCefSettings

#endif  // ORBCEFSETTINGS_H
