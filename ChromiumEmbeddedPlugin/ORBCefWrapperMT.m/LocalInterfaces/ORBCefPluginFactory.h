// The one global table of the module, for the factory and for code inside the module that acts on
// the host's behalf.
//
// Any thread may ask for it. The table is static: it lives as long as the module is loaded.
#ifndef ORBCEFPLUGINFACTORY_H
#define ORBCEFPLUGINFACTORY_H

#include "orbcefglobal.h"

orbcefglobal_c* ORBCefGlobalTable();

#endif  // ORBCEFPLUGINFACTORY_H
