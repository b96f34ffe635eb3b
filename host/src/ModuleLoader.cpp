#include "ModuleLoader.h"

#include "System.h"

namespace host {

ModuleLoader::Result ModuleLoader::Load(const std::string& root) {
  _path = root + "/code/bin/" + kModuleFile;
  void* library = OpenLibrary(_path, _error);
  if (!library) {
    return Result::kModuleNotFound;
  }
  const auto factory =
      reinterpret_cast<orbcef_pluginfactory_fn>(FindSymbol(library, ORBCEF_FACTORY_SYMBOL, _error));
  if (!factory) {
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
