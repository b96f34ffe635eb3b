// The log of the engine. Any thread.
#pragma once

#include <string>

namespace standin {

// From the settings of the start: a cef_log_severity_t, and the file that takes the lines; standard
// error does as long as there is none.
void SetLog(int log_severity, const std::string& file);

}  // namespace standin
