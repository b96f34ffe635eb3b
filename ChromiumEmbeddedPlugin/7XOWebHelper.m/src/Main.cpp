// The engine starts this executable for each of its sub-processes. It loads the module that lies
// beside it and hands the process over, so that all code of a sub-process is the module's.

#if defined(_WIN32)
#include <windows.h>
#endif

#include <cstdint>
#include <cstdio>
#include <string>

#include "HelperPlatform.h"
#include "HelperTools.h"
#include "orbcefglobal.h"

namespace {

// Exit codes of a helper that could not hand over. They lie above those of the engine's processes.
enum ExitCode : int {
  kNoModule = 120,
  kNoFactory = 121,
  kRefused = 122,
};

int Fail(ExitCode code, const std::string& words) {
  std::fprintf(stderr, "7XOWebHelper: %s\n", words.c_str());
  return code;
}

int Run() {
  const std::string path = HelperPlatform::ModulePath();
  std::string error;
  void* const module = HelperPlatform::LoadModule(path, error);
  if (!module) {
    return Fail(kNoModule, "cannot load the module \"" + path + "\": " + error);
  }
  const auto factory = reinterpret_cast<orbcef_pluginfactory_fn>(
      HelperPlatform::FindSymbol(module, ORBCEF_FACTORY_SYMBOL));
  if (!factory) {
    return Fail(kNoFactory, "the module \"" + path + "\" has no symbol " ORBCEF_FACTORY_SYMBOL);
  }
  auto* const global = static_cast<orbcefglobal_c*>(
      factory(ORBCEF_PLUGIN_MAJOR, ORBCEF_PLUGIN_MINOR, ORBCEF_GLOBAL_TABLE));
  if (!global) {
    return Fail(kRefused, "the module \"" + path + "\" does not serve this helper's version");
  }
  global->set_tools(global, HelperTools());
  // The module reads the command line from the operating system.
  return global->execute_subprocess(global, 0, nullptr);
}

}  // namespace

#if defined(_WIN32)
// The entry of a program without a console.
int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
  return Run();
}
#else
int main() {
  return Run();
}
#endif
