// The tools table that the helper gives to the module in a sub-process.
//
// A sub-process has no host of its own: its services are the process environment, which it
// inherits from the host, and the file system. Everything that only a host has answers "none".
// The table is static and lives as long as the process; its functions come on any thread.

#ifndef ORBCEF_HELPER_TOOLS_H
#define ORBCEF_HELPER_TOOLS_H

#include "orbceftools.h"

// The one table of this process. Call it first on the main thread, which it remembers.
_orbceftools_c* HelperTools();

#endif  // ORBCEF_HELPER_TOOLS_H
