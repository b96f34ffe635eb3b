// The fingerprints of the engine interface that this build is made for, and the engine's own.
#ifndef CEF_INCLUDE_CEF_API_HASH_H_
#define CEF_INCLUDE_CEF_API_HASH_H_

#include "include/capi/cef_functions.h"
#include "include/cef_version.h"

#endif  // CEF_INCLUDE_CEF_API_HASH_H_
