#include "platform/Process.h"

#include <windows.h>

#include <shellapi.h>
#include <tlhelp32.h>

#include <algorithm>
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

struct HandleCloser {
  void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using OwnHandle = std::unique_ptr<void, HandleCloser>;

ULONGLONG BeginOf(HANDLE process) {
  FILETIME begin{};
  FILETIME rest{};
  GetProcessTimes(process, &begin, &rest, &rest, &rest);
  return (static_cast<ULONGLONG>(begin.dwHighDateTime) << 32) | begin.dwLowDateTime;
}

std::vector<OwnHandle> Children(const std::wstring& program) {
  std::vector<OwnHandle> children;
  const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
  if (snapshot == INVALID_HANDLE_VALUE)
    return children;
  const OwnHandle closer(snapshot);
  PROCESSENTRY32W entry{};
  entry.dwSize = sizeof(entry);
  for (BOOL more = Process32FirstW(snapshot, &entry); more;
       more = Process32NextW(snapshot, &entry)) {
    if (entry.th32ParentProcessID != GetCurrentProcessId() ||
        lstrcmpiW(entry.szExeFile, program.c_str()) != 0)
      continue;
    OwnHandle child(OpenProcess(SYNCHRONIZE | PROCESS_TERMINATE | PROCESS_QUERY_LIMITED_INFORMATION,
                                FALSE, entry.th32ProcessID));
    // An older process is the child of one that had this process's number before it.
    if (child && BeginOf(child.get()) >= BeginOf(GetCurrentProcess()))
      children.push_back(std::move(child));
  }
  return children;
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

void EndChildren(const std::string& program, std::chrono::milliseconds limit) {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point deadline = Clock::now() + limit;
  for (const OwnHandle& child : Children(ToWide(program))) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    if (WaitForSingleObject(child.get(), static_cast<DWORD>(std::max<long long>(left, 0))) !=
        WAIT_TIMEOUT)
      continue;
    TerminateProcess(child.get(), 1);
    // The system ends it in its own time, and soon.
    WaitForSingleObject(child.get(), static_cast<DWORD>(limit.count()));
  }
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
