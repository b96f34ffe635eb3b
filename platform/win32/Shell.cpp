#include "platform/Shell.h"

#include <windows.h>

#include <shellapi.h>

#include "Utf8.h"

namespace platform {

namespace {

// What the function returns beyond its error codes.
constexpr INT_PTR kMostError = 32;

constexpr int kShowUrl = SW_SHOWNORMAL;
constexpr int kShowFile = SW_SHOW;
static_assert(kShowUrl == 1 && kShowFile == 5);

bool Took(HINSTANCE result) {
  return reinterpret_cast<INT_PTR>(result) > kMostError;
}

}  // namespace

bool OpenWithDesktop(const std::string& target, DesktopTarget kind) {
  if (target.empty() || target.front() == '-')
    return false;
  if (kind == DesktopTarget::kUrl)
    return Took(ShellExecuteA(nullptr, "open", target.c_str(), nullptr, nullptr, kShowUrl));
  const std::wstring wide = ToWide(target);
  return !wide.empty() &&
         Took(ShellExecuteW(nullptr, L"open", wide.c_str(), nullptr, nullptr, kShowFile));
}

}  // namespace platform
