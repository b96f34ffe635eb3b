// Command lines for the stand-in itself. Any thread.
#pragma once

#include <string>
#include <vector>

#include "include/cef_command_line.h"

namespace standin {

CefRefPtr<CefCommandLine> MakeCommandLine(const std::vector<std::string>& argv);

// That of the started engine; null before.
CefRefPtr<CefCommandLine> GlobalCommandLine();

}  // namespace standin
