#include "System.h"

#include <windows.h>

#include <shellapi.h>

#include <system_error>

#include "Wide.h"

namespace host {

namespace fs = std::filesystem;

const char* const kModuleFile = "ORBCefWrapperMT.dll";

std::vector<std::string> Arguments(int, char**) {
  // The arguments of `main` are in the system's code page, which cannot name every file.
  int count = 0;
  wchar_t** list = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 1; list && i < count; ++i) {
    arguments.push_back(ToUtf8(list[i]));
  }
  LocalFree(list);
  return arguments;
}

std::string ExecutableDirectory() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) {
      path.resize(length);
      return ToText(fs::path(path).parent_path());
    }
    path.resize(path.size() * 2);
  }
}

std::string MakeTemporaryDirectory() {
  std::error_code error;
  const fs::path parent = fs::temp_directory_path(error);
  const std::string stem = "orbcef_host." + std::to_string(GetCurrentProcessId()) + ".";
  for (int number = 0; !error && number < 1000; ++number) {
    const fs::path directory = parent / (stem + std::to_string(number));
    if (fs::create_directory(directory, error)) {
      return ToText(directory);
    }
  }
  return {};
}

std::string UserLocale() {
  wchar_t name[LOCALE_NAME_MAX_LENGTH] = {};
  GetUserDefaultLocaleName(name, LOCALE_NAME_MAX_LENGTH);
  std::string locale = ToUtf8(name);
  for (char& letter : locale) {
    letter = letter == '-' ? '_' : letter;
  }
  return locale;
}

std::optional<std::string> ReadVariable(const std::string& name) {
  const std::wstring wide = ToWide(name);
  std::wstring value;
  for (;;) {
    // An empty value has the length 0 as well, but no error.
    SetLastError(ERROR_SUCCESS);
    const DWORD length =
        GetEnvironmentVariableW(wide.c_str(), value.data(), static_cast<DWORD>(value.size()));
    if (length == 0 && GetLastError() != ERROR_SUCCESS) {
      return std::nullopt;
    }
    const bool whole = length < value.size() || length == 0;
    value.resize(length);
    if (whole) {
      return ToUtf8(value);
    }
  }
}

bool WriteVariable(const std::string& name, const std::string& value) {
  return SetEnvironmentVariableW(ToWide(name).c_str(), ToWide(value).c_str()) != FALSE;
}

void* OpenLibrary(const std::string& path, std::string& error) {
  // The libraries that the module needs stand beside it, not beside the host.
  const HMODULE library =
      LoadLibraryExW(ToPath(path).make_preferred().c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  if (!library) {
    error = std::system_category().message(static_cast<int>(GetLastError()));
  }
  return reinterpret_cast<void*>(library);
}

void* FindSymbol(void* library, const char* name, std::string& error) {
  const FARPROC symbol = GetProcAddress(reinterpret_cast<HMODULE>(library), name);
  if (!symbol) {
    error = std::system_category().message(static_cast<int>(GetLastError()));
  }
  return reinterpret_cast<void*>(symbol);
}

}  // namespace host
