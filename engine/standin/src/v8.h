// Script values and contexts without a script engine: what natives are given and give back. The
// renderer's thread.
#pragma once

#include <string>

#include "include/cef_v8.h"
#include "views.h"

namespace standin {

CefRefPtr<CefV8Context> MakeContext(const ViewPtr& view);
// The context lets go of its global object and becomes invalid.
void ReleaseContext(const CefRefPtr<CefV8Context>& context);

CefRefPtr<CefV8Exception> MakeException(const std::string& message);
CefRefPtr<CefV8StackTrace> MakeStackTrace();

// From the text of the control interface; "function:name" is a function.
CefRefPtr<CefV8Value> MakeScriptValue(const std::string& field);
std::string DescribeScriptValue(const CefRefPtr<CefV8Value>& value);

// Forgets the extensions that were registered.
void DropExtensions();

}  // namespace standin
