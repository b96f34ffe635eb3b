// Process messages: a name and a list of arguments. Any thread, one at a time.
#pragma once

#include "include/cef_process_message.h"
#include "orbcef_standin.h"
#include "values.h"

namespace standin {

CefRefPtr<CefProcessMessage> MakeMessage(const CefString& name, const NodePtr& arguments);

// A value as the control interface writes it, "int:3"; a text that names no kind is null.
NodePtr ParseField(const std::string& field);
// All fields of a call, as a list.
NodePtr ParseFields(const char* const* fields, int count);

// The name, and the arguments in brackets.
std::string DescribeMessage(const CefRefPtr<CefProcessMessage>& message);

}  // namespace standin
