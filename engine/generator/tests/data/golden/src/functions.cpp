// Generated from the interface facts. Do not edit.
#include "glue_scoped.h"
#include "include/cef_parser.h"

using namespace engine_glue;

CefRefPtr<CefListValue> CefListValue::Create() {
  return FromC(cef_list_value_create());
}

CefRefPtr<CefProcessMessage> CefProcessMessage::Create(const CefString& name) {
  return FromC(cef_process_message_create(name.GetStruct()));
}

bool CefParseURL(const CefString& url, CefURLParts& parts) {
  return cef_parse_url(url.GetStruct(), &parts) != 0;
}

