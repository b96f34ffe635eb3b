#include "platform/Files.h"

#include <windows.h>

#include <shlwapi.h>

#include "Utf8.h"

namespace platform {

namespace {

// The least length that the system may refuse without a prefix: a directory must leave room for a
// file name of the old kind.
constexpr std::size_t kLongPath = MAX_PATH - 12;

constexpr wchar_t kLongPrefix[] = L"\\\\?\\";
constexpr wchar_t kLongServerPrefix[] = L"\\\\?\\UNC\\";

bool StartsWith(const std::wstring& text, const wchar_t* start) {
  return text.rfind(start, 0) == 0;
}

std::wstring Absolute(const std::wstring& path) {
  const DWORD size = GetFullPathNameW(path.c_str(), 0, nullptr, nullptr);
  std::wstring absolute(size, L'\0');
  const DWORD length = GetFullPathNameW(path.c_str(), size, absolute.data(), nullptr);
  absolute.resize(length < size ? length : 0);
  return absolute;
}

// The path as the system's functions take it. Behind the prefix for long paths the system reads
// neither "/" nor "..": so the path is made absolute first, and short ones stay as they are.
std::wstring SystemPath(const std::string& path) {
  const std::wstring wide = ToWide(path);
  if (wide.size() < kLongPath || StartsWith(wide, kLongPrefix))
    return wide;
  const std::wstring absolute = Absolute(wide);
  if (absolute.empty() || StartsWith(absolute, kLongPrefix))
    return absolute;
  return StartsWith(absolute, L"\\\\") ? kLongServerPrefix + absolute.substr(2)
                                       : kLongPrefix + absolute;
}

}  // namespace

bool IsReadable(const std::string& path) {
  // A directory does not open this way.
  const HANDLE file = CreateFileW(SystemPath(path).c_str(), GENERIC_READ,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE)
    return false;
  CloseHandle(file);
  return true;
}

bool IsDirectory(const std::string& path) {
  const DWORD attributes = GetFileAttributesW(SystemPath(path).c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool IsRelative(const std::string& path) {
  // The function takes no text of more than MAX_PATH characters, and the root stands at its start.
  return PathIsRelativeW(ToWide(path).substr(0, MAX_PATH - 1).c_str()) != FALSE;
}

std::string MakeAbsolute(const std::string& path) {
  if (path.empty() || !IsRelative(path))
    return path;
  const std::wstring absolute = Absolute(ToWide(path));
  return absolute.empty() ? path : ToUtf8(absolute);
}

}  // namespace platform
