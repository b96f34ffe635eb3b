#include "System.h"

#include <dlfcn.h>
#include <stdlib.h>

#include <cstdlib>
#include <system_error>

namespace host {

namespace fs = std::filesystem;

const char* const kModuleFile = "libORBCefWrapperMT.so";

std::vector<std::string> Arguments(int argc, char** argv) {
  return {argv + 1, argv + argc};
}

std::string ExecutableDirectory() {
  std::error_code error;
  return ToText(fs::read_symlink("/proc/self/exe", error).parent_path());
}

std::string MakeTemporaryDirectory() {
  std::error_code error;
  std::string name = ToText(fs::temp_directory_path(error) / "orbcef_host.XXXXXX");
  return mkdtemp(name.data()) ? name : std::string();
}

std::string UserLocale() {
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const auto value = ReadVariable(name);
    if (value && !value->empty()) {
      return *value;
    }
  }
  return {};
}

std::optional<std::string> ReadVariable(const std::string& name) {
  const char* value = std::getenv(name.c_str());
  return value ? std::optional<std::string>(value) : std::nullopt;
}

bool WriteVariable(const std::string& name, const std::string& value) {
  return setenv(name.c_str(), value.c_str(), 1) == 0;
}

void* OpenLibrary(const std::string& path, std::string& error) {
  void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!library) {
    error = dlerror();
  }
  return library;
}

void* FindSymbol(void* library, const char* name, std::string& error) {
  void* symbol = dlsym(library, name);
  if (!symbol) {
    error = dlerror();
  }
  return symbol;
}

}  // namespace host
