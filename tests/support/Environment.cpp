#include "Environment.h"

#include <stdlib.h>

#if defined(_WIN32)
#include <windows.h>

#include <filesystem>
#endif

void SetEnvironment(const char* name, const char* value) {
#if defined(_WIN32)
  const std::wstring wide_name = std::filesystem::u8path(name).wstring();
  const std::wstring wide_value = std::filesystem::u8path(value ? value : "").wstring();
  // The C library keeps a copy, and it takes an empty value for a removal.
  _wputenv_s(wide_name.c_str(), wide_value.c_str());
  SetEnvironmentVariableW(wide_name.c_str(), value ? wide_value.c_str() : nullptr);
#else
  if (value)
    setenv(name, value, 1);
  else
    unsetenv(name);
#endif
}
