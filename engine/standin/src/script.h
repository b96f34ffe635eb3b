// What a test has told the stand-in to do wrong, and what happened. Any thread.
#pragma once

#include <string>

#include "include/internal/cef_string.h"

namespace standin {

// Whether the operation is to fail now; counts it.
bool TakeFault(const char* operation);

// Writes an event down.
void Note(const char* event, const std::string& text = std::string());

}  // namespace standin
