// Generated from the interface facts. Do not edit.
#ifndef CEF_INCLUDE_CEF_PARSER_H_
#define CEF_INCLUDE_CEF_PARSER_H_

#include "include/cef_base.h"



bool CefParseURL(const CefString& url, CefURLParts& parts);

#endif  // CEF_INCLUDE_CEF_PARSER_H_
