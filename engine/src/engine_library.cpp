#include "engine_library.h"

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "include/capi/cef_functions.h"
#include "include/cef_version.h"

#if defined(OS_LINUX)
#include <dlfcn.h>
#endif

namespace engine_library {

namespace {

using HashFunction = decltype(&cef_api_hash);
using LogFunction = decltype(&cef_log);

#if defined(OS_WIN)
constexpr char kLibraryName[] = "libcef.dll";
constexpr wchar_t kLibraryFile[] = L"libcef.dll";

// Wide, since a narrow path cannot name every folder. Empty if the system does not tell.
std::wstring OwnFile() {
  HMODULE module = nullptr;
  if (!GetModuleHandleExW(
          GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
          reinterpret_cast<const wchar_t*>(&OwnFile), &module)) {
    return std::wstring();
  }
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) {
      path.resize(length);
      return path;
    }
    path.resize(path.size() * 2);
  }
}

void* OpenBesideOwnFile() {
  const std::wstring file = OwnFile();
  if (file.empty()) {
    return nullptr;
  }
  const std::wstring path = file.substr(0, file.find_last_of(L'\\') + 1) + kLibraryFile;
  // The libraries that the engine needs lie beside it too, not beside the program.
  return reinterpret_cast<void*>(
      LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
}

void* OpenAnywhere() {
  return reinterpret_cast<void*>(LoadLibraryExW(kLibraryFile, nullptr, 0));
}

std::string OpenError() {
  return "error " + std::to_string(GetLastError());
}

void* Symbol(void* library, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(reinterpret_cast<HMODULE>(library), name));
}
#else
constexpr char kLibraryName[] = "libcef.so";

std::string OwnFolder() {
  Dl_info info{};
  if (!dladdr(reinterpret_cast<const void*>(&OwnFolder), &info) || !info.dli_fname) {
    return std::string();
  }
  const std::string path = info.dli_fname;
  return path.substr(0, path.find_last_of('/') + 1);
}

void* Open(const std::string& path) {
  return dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
}

void* OpenBesideOwnFile() {
  return Open(OwnFolder() + kLibraryName);
}

void* OpenAnywhere() {
  return Open(kLibraryName);
}

std::string OpenError() {
  const char* text = dlerror();
  return text ? text : "unknown error";
}

void* Symbol(void* library, const char* name) {
  return dlsym(library, name);
}
#endif

struct Library {
  HashFunction hash = nullptr;
  LogFunction log = nullptr;
  std::vector<void*> functions;
};

void Complain(const std::string& text) {
  std::fprintf(stderr, "[error] CEF: %s\n", text.c_str());
}

Library Load() {
  Library loaded;
  loaded.functions.assign(kCount, nullptr);
  void* handle = OpenBesideOwnFile();
  if (!handle) {
    const std::string error = OpenError();
    handle = OpenAnywhere();
    if (!handle) {
      Complain(std::string("the engine library ") + kLibraryName +
               " could not be loaded: " + error);
      return loaded;
    }
  }
  const auto hash = reinterpret_cast<HashFunction>(Symbol(handle, "cef_api_hash"));
  const char* const found = hash ? hash(0) : nullptr;
  if (!found || std::strcmp(found, CEF_API_HASH_PLATFORM) != 0) {
    Complain(std::string("the engine library ") + kLibraryName + " is refused: its interface is " +
             (found ? found : "unknown") + ", and this module was built for CEF " + CEF_VERSION +
             " with interface " CEF_API_HASH_PLATFORM);
    return loaded;
  }
  loaded.hash = hash;
  loaded.log = reinterpret_cast<LogFunction>(Symbol(handle, "cef_log"));
  for (int i = 0; i < kCount; ++i) {
    loaded.functions[i] = Symbol(handle, kFunctionNames[i]);
  }
  return loaded;
}

const Library& Loaded() {
  // Never destroyed: engine threads may still call while the process ends.
  static const Library& library = *new Library(Load());
  return library;
}

}  // namespace

void* Address(int index) {
  return Loaded().functions[index];
}

}  // namespace engine_library

extern "C" const char* cef_api_hash(int entry) {
  const auto hash = engine_library::Loaded().hash;
  return hash ? hash(entry) : "";
}

// Without an engine there is no log, and what would have been said goes to standard error.
extern "C" void cef_log(const char* file, int line, int severity, const char* message) {
  const auto log = engine_library::Loaded().log;
  if (log) {
    log(file, line, severity, message);
  } else {
    std::fprintf(stderr, "[%s(%d)] %s\n", file, line, message);
  }
}
