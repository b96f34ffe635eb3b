// Generated from the interface facts. Do not edit.
#ifndef CEF_INCLUDE_CAPI_CEF_FUNCTIONS_H_
#define CEF_INCLUDE_CAPI_CEF_FUNCTIONS_H_

#include "include/capi/cef_structs.h"

#ifdef __cplusplus
extern "C" {
#endif

int cef_parse_url(const cef_string_t* url, cef_urlparts_t* parts);
cef_process_message_t* cef_process_message_create(const cef_string_t* name);
cef_list_value_t* cef_list_value_create(void);
const char* cef_api_hash(int entry);
#if defined(OS_WIN)
void cef_set_osmodal_loop(int osModalLoop);
#endif
int cef_get_min_log_level(void);
void cef_log(const char* file, int line, int severity, const char* message);

#ifdef __cplusplus
}
#endif

#endif  // CEF_INCLUDE_CAPI_CEF_FUNCTIONS_H_
