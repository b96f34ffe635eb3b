#include "HelperPlatform.h"

#include <dlfcn.h>
#include <stdlib.h>

#include <cstring>
#include <filesystem>
#include <system_error>

namespace HelperPlatform {
namespace {

constexpr char kModuleFile[] = "libORBCefWrapperMT.so";

}  // namespace

std::string ModulePath() {
  std::error_code error;
  const std::filesystem::path executable = std::filesystem::read_symlink("/proc/self/exe", error);
  return error ? std::string() : (executable.parent_path() / kModuleFile).string();
}

void* LoadModule(const std::string& path, std::string& error) {
  // The loader would take an empty name for the executable itself.
  if (path.empty()) {
    error = "the directory of this executable is not known";
    return nullptr;
  }
  // All symbols are bound now: a module that lacks something fails here and not in mid-run.
  void* module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!module) {
    const char* words = dlerror();
    error = words ? words : "unknown error";
  }
  return module;
}

void* FindSymbol(void* module, const char* name) {
  return dlsym(module, name);
}

const char* GetEnvironment(const char* name) {
  return getenv(name);
}

int PutEnvironment(const char* assignment) {
  const char* equals = assignment ? std::strchr(assignment, '=') : nullptr;
  if (!equals || equals == assignment) {
    return -1;
  }
  return setenv(std::string(assignment, equals).c_str(), equals + 1, 1);
}

}  // namespace HelperPlatform
