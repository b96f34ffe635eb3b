// Requests over the loopback interface, in plain HTTP/1.1. They block: file threads only.
#pragma once

#include <map>
#include <string>

#include "include/cef_request.h"
#include "resources.h"

namespace standin {

struct HttpAnswer {
  cef_errorcode_t error = ERR_NONE;
  int status = 0;
  std::string status_text;
  std::multimap<CefString, CefString> headers;
  std::string body;
};

HttpAnswer SendHttp(const CefRefPtr<CefRequest>& request);
Resource FetchHttp(const CefRefPtr<CefRequest>& request);

}  // namespace standin
