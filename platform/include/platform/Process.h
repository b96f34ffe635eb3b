// Facts about the running process.
//
// Any thread may call these functions.
#ifndef PLATFORM_PROCESS_H
#define PLATFORM_PROCESS_H

#include <chrono>
#include <string>
#include <vector>

namespace platform {

// The arguments that the process was started with, the program first. Empty if the system does not
// tell.
std::vector<std::string> CommandLine();

// The same as one line, as the system keeps it or, where it keeps a list, with quotes around
// arguments that need them.
std::string CommandLineText();

// True if the process draws at the screen's own resolution instead of being scaled by the system.
bool IsDpiAware();

// The system's handle of the program's image, null where there is no such thing.
void* ModuleHandle();

// Waits until the children of this process that run `program`, a file name, have ended, and ends
// those that have not within `limit`. Where the engine's own starter process has the children, and
// ends them with itself, there is nothing to do.
void EndChildren(const std::string& program, std::chrono::milliseconds limit);

// Value of an environment variable in UTF-8, null if it is unset. Valid until the next call on this
// thread, or until the environment changes.
const char* GetEnvironment(const char* name);

}  // namespace platform

#endif  // PLATFORM_PROCESS_H
