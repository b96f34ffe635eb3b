// Generated from the interface facts. Do not edit.
#pragma once

#include "include/cef_process_message.h"
#include "include/cef_resource_bundle_handler.h"
#include "include/cef_values.h"
#include "include/capi/cef_functions.h"

namespace engine_glue {

cef_base_ref_counted_t* ToC(const CefRefPtr<CefBaseRefCounted>& object);
CefRefPtr<CefBaseRefCounted> FromC(cef_base_ref_counted_t* structure);
void Fill(cef_base_ref_counted_t* s);
cef_list_value_t* ToC(const CefRefPtr<CefListValue>& object);
CefRefPtr<CefListValue> FromC(cef_list_value_t* structure);
cef_process_message_t* ToC(const CefRefPtr<CefProcessMessage>& object);
CefRefPtr<CefProcessMessage> FromC(cef_process_message_t* structure);
cef_resource_bundle_handler_t* ToC(const CefRefPtr<CefResourceBundleHandler>& object);
CefRefPtr<CefResourceBundleHandler> FromC(cef_resource_bundle_handler_t* structure);
void Fill(cef_list_value_t* s);
void Fill(cef_process_message_t* s);
void Fill(cef_resource_bundle_handler_t* s);

}  // namespace engine_glue
