#include "platform/Shell.h"

#include <windows.h>

#include <shellapi.h>

#include "Utf8.h"

namespace platform {

namespace {

// What the function returns beyond its error codes.
constexpr INT_PTR kMostError = 32;

}  // namespace

bool OpenWithDesktop(const std::string& target) {
  if (target.empty() || target.front() == '-')
    return false;
  const std::wstring wide = ToWide(target);
  if (wide.empty())
    return false;
  const HINSTANCE result =
      ShellExecuteW(nullptr, L"open", wide.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
  return reinterpret_cast<INT_PTR>(result) > kMostError;
}

}  // namespace platform
