// Runs a sub-process of the engine from its command line to its end.
//
// Called once, on the main thread of the helper executable. Keeps the command line until the
// process ends.
#ifndef ORBCEFSUBPROCESS_H
#define ORBCEFSUBPROCESS_H

#include "include/cef_app.h"
#include "include/cef_command_line.h"

namespace ORBCefSubprocess {

using ExecuteCall = int (*)(const CefMainArgs& args, CefRefPtr<CefApp> app);

// The process's exit code: the engine's answer, 1 without an application object or without the
// engine's library.
int Execute();

// The same for a given command line and call into the engine.
int Execute(CefRefPtr<CefCommandLine> command_line, ExecuteCall execute);

// The command line that the operating system gave to this process.
CefRefPtr<CefCommandLine> StartupCommandLine();

}  // namespace ORBCefSubprocess

#endif  // ORBCEFSUBPROCESS_H
