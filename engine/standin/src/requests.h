// Requests and responses as values. One thread at a time.
#pragma once

#include <string>

#include "include/cef_request.h"
#include "include/cef_response.h"

namespace standin {

CefRefPtr<CefRequest> MakeRequest(const std::string& url, const std::string& method,
                                  cef_transition_type_t transition = TT_EXPLICIT,
                                  cef_resource_type_t type = RT_MAIN_FRAME);
CefRefPtr<CefResponse> MakeResponse();

// True if both are names of the same header: case is none of them.
bool IsNamed(const CefString& name, const CefString& other);

// All bytes of the request's body.
std::string BodyOf(const CefRefPtr<CefRequest>& request);

}  // namespace standin
