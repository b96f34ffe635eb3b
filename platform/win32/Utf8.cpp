#include "Utf8.h"

#include <windows.h>

#include <cstring>

namespace platform {

std::wstring ToWide(const std::string& text) {
  const int size = static_cast<int>(std::strlen(text.c_str()));
  const int count =
      MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.c_str(), size, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(count), L'\0');
  MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.c_str(), size, wide.data(), count);
  return wide;
}

std::string ToUtf8(const std::wstring& text) {
  const int size = static_cast<int>(text.size());
  const int count =
      WideCharToMultiByte(CP_UTF8, 0, text.c_str(), size, nullptr, 0, nullptr, nullptr);
  std::string narrow(static_cast<std::size_t>(count), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.c_str(), size, narrow.data(), count, nullptr, nullptr);
  return narrow;
}

}  // namespace platform
