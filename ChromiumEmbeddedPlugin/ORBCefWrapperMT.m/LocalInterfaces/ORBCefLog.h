// The module's log lines. They go to the engine's log, and a line is put together only if the
// engine's least severity admits it.
//
// Any thread of any process may call these functions. They keep no state.
#ifndef ORBCEFLOG_H
#define ORBCEFLOG_H

#include <string>
#include <string_view>
#include <type_traits>

#include "include/cef_base.h"

namespace ORBCefLog {

enum Severity : int { kInfo = 0, kWarning = 1, kError = 2 };

constexpr std::string_view kBrowserProcess = "[Browser Process] ";
constexpr std::string_view kRendererProcess = "[Renderer Process] ";
// What stands before and behind a browser's identifier in the lines that concern a view.
constexpr std::string_view kBrowserNumber = "Browser #";
constexpr std::string_view kAfterNumber = " - ";

bool IsAdmitted(Severity severity);

// Writes a finished line, whether or not its severity is admitted.
void Write(Severity severity, const std::string& line);

inline void Append(std::string& line, std::string_view part) {
  line.append(part);
}
inline void Append(std::string& line, const std::string& part) {
  line.append(part);
}
inline void Append(std::string& line, char part) {
  line.push_back(part);
}
// A null text counts as empty.
void Append(std::string& line, const char* part);
void Append(std::string& line, const CefString& part);
// Numbers in decimal.
template <class Number, std::enable_if_t<std::is_integral_v<Number>, int> = 0>
void Append(std::string& line, Number number) {
  line.append(std::to_string(number));
}

template <class... Parts>
void Line(Severity severity, const Parts&... parts) {
  if (!IsAdmitted(severity))
    return;
  std::string line;
  (Append(line, parts), ...);
  Write(severity, line);
}

template <class... Parts>
void Info(const Parts&... parts) {
  Line(kInfo, parts...);
}
template <class... Parts>
void Warning(const Parts&... parts) {
  Line(kWarning, parts...);
}
template <class... Parts>
void Error(const Parts&... parts) {
  Line(kError, parts...);
}

// Lines of the browser process about the view with the engine's browser identifier `id`.
template <class... Parts>
void BrowserInfo(int id, const Parts&... parts) {
  Line(kInfo, kBrowserProcess, kBrowserNumber, id, kAfterNumber, parts...);
}
template <class... Parts>
void BrowserWarning(int id, const Parts&... parts) {
  Line(kWarning, kBrowserProcess, kBrowserNumber, id, kAfterNumber, parts...);
}
template <class... Parts>
void BrowserError(int id, const Parts&... parts) {
  Line(kError, kBrowserProcess, kBrowserNumber, id, kAfterNumber, parts...);
}

// The same in a render process.
template <class... Parts>
void RendererInfo(int id, const Parts&... parts) {
  Line(kInfo, kRendererProcess, kBrowserNumber, id, kAfterNumber, parts...);
}
template <class... Parts>
void RendererWarning(int id, const Parts&... parts) {
  Line(kWarning, kRendererProcess, kBrowserNumber, id, kAfterNumber, parts...);
}
template <class... Parts>
void RendererError(int id, const Parts&... parts) {
  Line(kError, kRendererProcess, kBrowserNumber, id, kAfterNumber, parts...);
}

}  // namespace ORBCefLog

#endif  // ORBCEFLOG_H
