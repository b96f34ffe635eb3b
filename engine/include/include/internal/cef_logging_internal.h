// The engine's log as C functions: cef_get_min_log_level() and cef_log().
#ifndef CEF_INCLUDE_INTERNAL_CEF_LOGGING_INTERNAL_H_
#define CEF_INCLUDE_INTERNAL_CEF_LOGGING_INTERNAL_H_

#include "include/capi/cef_functions.h"

#endif  // CEF_INCLUDE_INTERNAL_CEF_LOGGING_INTERNAL_H_
