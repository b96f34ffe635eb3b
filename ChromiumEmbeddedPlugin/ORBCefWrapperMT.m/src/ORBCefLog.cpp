#include "ORBCefLog.h"

#include "include/internal/cef_logging_internal.h"

namespace ORBCefLog {

namespace {

// Stands where the engine's own lines name a source file.
constexpr char kSource[] = "ORBCefWrapperMT";

}  // namespace

bool IsAdmitted(Severity severity) {
  return cef_get_min_log_level() <= severity;
}

void Write(Severity severity, const std::string& line) {
  cef_log(kSource, 0, severity, line.c_str());
}

void Append(std::string& line, const char* part) {
  if (part)
    line.append(part);
}

void Append(std::string& line, const CefString& part) {
  line.append(part.ToString());
}

}  // namespace ORBCefLog
