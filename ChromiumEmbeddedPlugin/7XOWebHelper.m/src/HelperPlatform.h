// What the helper needs of the operating system: finding and loading the module, and the variables
// of its own environment. One source per platform. Texts are UTF-8.
//
// Loading happens once, on the main thread, before the module runs; the environment may be asked
// and set on any thread that the C library allows it on. The module stays loaded until the process
// ends.

#ifndef ORBCEF_HELPER_PLATFORM_H
#define ORBCEF_HELPER_PLATFORM_H

#include <string>

namespace HelperPlatform {

// Path of the module: its platform's file name in the directory of this executable, never a search
// along the loader's paths. Empty if the system does not tell where the executable lies.
std::string ModulePath();

// Loads the library at `path` and gives its handle.
// @param error receives the system's words when the result is null.
void* LoadModule(const std::string& path, std::string& error);

// Address of the exported `name`; null if the library has no such symbol.
void* FindSymbol(void* module, const char* name);

// Value of a variable of this process, null if it is unset. Valid until the thread's next call.
const char* GetEnvironment(const char* name);

// Sets a variable of this process.
// @param assignment "NAME=value"; the text is copied.
// @return 0 on success, also for an empty value; -1 for a text without a name or without "=".
int PutEnvironment(const char* assignment);

}  // namespace HelperPlatform

#endif  // ORBCEF_HELPER_PLATFORM_H
