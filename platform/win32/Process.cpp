#include "platform/Process.h"

#include <windows.h>

#include <shellapi.h>

#include <memory>
#include <mutex>
#include <set>

#include "Utf8.h"

namespace platform {

namespace {

struct LocalFreeDeleter {
  void operator()(wchar_t** list) const { LocalFree(list); }
};

// Callers keep the pointer, so values are kept as well, each of them once. Never destroyed: the
// engine's threads may ask while the process ends.
const char* Keep(std::string value) {
  static std::mutex& mutex = *new std::mutex;
  static std::set<std::string>& values = *new std::set<std::string>;
  const std::lock_guard<std::mutex> guard(mutex);
  return values.insert(std::move(value)).first->c_str();
}

}  // namespace

std::vector<std::string> CommandLine() {
  int count = 0;
  const std::unique_ptr<wchar_t*, LocalFreeDeleter> list(
      CommandLineToArgvW(GetCommandLineW(), &count));
  std::vector<std::string> arguments;
  for (int i = 0; list && i < count; ++i) arguments.push_back(ToUtf8(list.get()[i]));
  return arguments;
}

std::string CommandLineText() {
  return ToUtf8(GetCommandLineW());
}

bool IsDpiAware() {
  return IsProcessDPIAware() != FALSE;
}

void* ModuleHandle() {
  return GetModuleHandleW(nullptr);
}

const char* GetEnvironment(const char* name) {
  const std::wstring wide_name = ToWide(name);
  std::wstring value;
  for (;;) {
    // An empty value has the length 0 as well, but no error.
    SetLastError(ERROR_SUCCESS);
    const DWORD length =
        GetEnvironmentVariableW(wide_name.c_str(), value.data(), static_cast<DWORD>(value.size()));
    if (length == 0 && GetLastError() != ERROR_SUCCESS)
      return nullptr;
    // Without room for the value the length counts its end too; another thread may have made the
    // value longer meanwhile.
    if (length < value.size() || length == 0) {
      value.resize(length);
      return Keep(ToUtf8(value));
    }
    value.resize(length);
  }
}

}  // namespace platform
