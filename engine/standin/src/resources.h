// What a request gives: status, type and bytes, or an error.
#pragma once

#include <functional>
#include <string>

#include "include/cef_request.h"
#include "include/cef_resource_handler.h"

namespace standin {

struct Resource {
  int status = 0;
  std::string mime_type;
  std::string body;
  cef_errorcode_t error = ERR_NONE;
  std::string error_text;
};

Resource Failure(cef_errorcode_t error);

// The text of the first title element; empty without one.
std::string TitleOf(const std::string& html);

// Asks a handler of the client: headers on the IO thread, bytes on a file thread. Called on the IO
// thread; `deliver` comes on any thread. No handler is a failure.
void ReadFromHandler(const CefRefPtr<CefResourceHandler>& handler,
                     const CefRefPtr<CefRequest>& request,
                     const std::function<void(Resource)>& deliver);

}  // namespace standin
