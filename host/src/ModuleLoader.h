// Finds and loads the module of an installation root and asks its factory for the global table.
//
// Main thread; `main` owns it. The library is never unloaded: the engine's threads and exit
// handlers live in it to the end of the process.
#pragma once

#include <string>

#include "orbcefglobal.h"

namespace host {

class ModuleLoader {
 public:
  enum class Result { kLoaded, kModuleNotFound, kSymbolMissing, kRefused };

  // Loads the module from "code/bin" below `root`.
  Result Load(const std::string& root);

  // The module's table, null before it was loaded; lives as long as the process.
  orbcefglobal_c* Global() const { return _global; }

  const std::string& Path() const { return _path; }
  // What went wrong, in words.
  const std::string& Error() const { return _error; }

 private:
  orbcefglobal_c* _global = nullptr;
  std::string _path;
  std::string _error;
};

}  // namespace host
