#include "ModuleLoader.h"

#include <dlfcn.h>

namespace host {

ModuleLoader::Result ModuleLoader::Load(const std::string& root) {
  _path = root + "/code/bin/libORBCefWrapperMT.so";
  void* library = dlopen(_path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!library) {
    _error = dlerror();
    return Result::kModuleNotFound;
  }
  const auto factory =
      reinterpret_cast<orbcef_pluginfactory_fn>(dlsym(library, ORBCEF_FACTORY_SYMBOL));
  if (!factory) {
    _error = dlerror();
    return Result::kSymbolMissing;
  }
  _global = static_cast<orbcefglobal_c*>(
      factory(ORBCEF_PLUGIN_MAJOR, ORBCEF_PLUGIN_MINOR, ORBCEF_GLOBAL_TABLE));
  if (!_global) {
    _error = "the module's version does not fit this host";
    return Result::kRefused;
  }
  return Result::kLoaded;
}

}  // namespace host
