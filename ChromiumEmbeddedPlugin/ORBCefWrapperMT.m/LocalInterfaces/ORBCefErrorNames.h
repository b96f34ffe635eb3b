// Readable words for the numbers that the engine reports. Pure functions: any thread, no owner.
#ifndef ORBCEF_ERROR_NAMES_H
#define ORBCEF_ERROR_NAMES_H

#include <cstdint>

namespace ORBCefErrorNames {

// The name of a network error without "ERR_"; "UNDEFINED_ERROR_CODE" for a code without one.
const char* NetErrorName(int32_t code);

// The way a render process ended; "UNKNOWN_TERMINATION_STATUS" for a value without a name.
const char* TerminationStatusName(uint32_t status);

}  // namespace ORBCefErrorNames

#endif  // ORBCEF_ERROR_NAMES_H
