#include "HelperPlatform.h"

#include <windows.h>

#include <stdlib.h>

#include <cstring>
#include <filesystem>

// Texts cross as UTF-8, and the system is called by its wide functions: the narrow ones speak a
// code page that cannot name every file.
namespace HelperPlatform {
namespace {

constexpr wchar_t kModuleFile[] = L"ORBCefWrapperMT.dll";

// Of a path or a value, for the first attempt.
constexpr std::size_t kUsualLength = MAX_PATH;

// The whole path, however long it is; empty if the system does not tell.
std::wstring ExecutablePath() {
  std::wstring path(kUsualLength, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) {
      path.resize(length);
      return path;
    }
    path.resize(path.size() * 2);
  }
}

}  // namespace

std::string ModulePath() {
  const std::filesystem::path executable = ExecutablePath();
  return executable.empty() ? std::string() : (executable.parent_path() / kModuleFile).u8string();
}

void* LoadModule(const std::string& path, std::string& error) {
  if (path.empty()) {
    error = "the directory of this executable is not known";
    return nullptr;
  }
  // What the module needs is looked for beside it first, wherever this process was started.
  const HMODULE module =
      LoadLibraryExW(std::filesystem::u8path(path).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  if (!module) {
    error = "system error " + std::to_string(GetLastError());
  }
  return module;
}

void* FindSymbol(void* module, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(module), name));
}

const char* GetEnvironment(const char* name) {
  thread_local std::string text;
  const std::wstring wide_name = std::filesystem::u8path(name).wstring();
  std::wstring value(kUsualLength, L'\0');
  for (;;) {
    // An empty value has the length 0 as well, but no error.
    SetLastError(ERROR_SUCCESS);
    const DWORD length =
        GetEnvironmentVariableW(wide_name.c_str(), value.data(), static_cast<DWORD>(value.size()));
    if (length == 0 && GetLastError() != ERROR_SUCCESS) {
      return nullptr;
    }
    const bool fitted = length < value.size();
    value.resize(length);
    if (fitted) {
      text = std::filesystem::path(value).u8string();
      return text.c_str();
    }
  }
}

int PutEnvironment(const char* assignment) {
  const char* equals = assignment ? std::strchr(assignment, '=') : nullptr;
  if (!equals || equals == assignment) {
    return -1;
  }
  const std::wstring name = std::filesystem::u8path(assignment, equals).wstring();
  const std::wstring value = std::filesystem::u8path(equals + 1).wstring();
  // The C library keeps a copy of the environment, and it takes an empty value for a removal.
  if (_wputenv_s(name.c_str(), value.c_str()) != 0) {
    return -1;
  }
  return value.empty() && !SetEnvironmentVariableW(name.c_str(), L"") ? -1 : 0;
}

}  // namespace HelperPlatform
