// The stored copy of the host's tools table. The module calls the host through
// `ORBCefToolsAccessor`; this header only tells whether the table is there.
//
// The table is set once in each process before anything else and is read from every thread. The
// copy is the module's.
#ifndef ORBCEFTOOLS_MODULE_H
#define ORBCEFTOOLS_MODULE_H

#include "ORBCefToolsAccessor.h"

namespace ORBCefTools {

// For the few entries that must not fault when a host forgot `set_tools`.
bool AreSet();

}  // namespace ORBCefTools

#endif  // ORBCEFTOOLS_MODULE_H
