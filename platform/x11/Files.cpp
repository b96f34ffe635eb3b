#include "platform/Files.h"

#include <sys/stat.h>

#include <cstdio>
#include <filesystem>
#include <system_error>

namespace platform {

bool IsReadable(const std::string& path) {
  std::FILE* file = std::fopen(path.c_str(), "re");
  if (!file)
    return false;
  // A directory opens here, but no read from it succeeds.
  struct stat status;
  const bool is_file = fstat(fileno(file), &status) == 0 && !S_ISDIR(status.st_mode);
  std::fclose(file);
  return is_file;
}

bool IsDirectory(const std::string& path) {
  struct stat status;
  return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool IsRelative(const std::string& path) {
  return path.empty() || path.front() != kSeparator;
}

std::string MakeAbsolute(const std::string& path) {
  if (path.empty() || !IsRelative(path))
    return path;
  std::error_code error;
  const std::filesystem::path absolute = std::filesystem::absolute(path, error);
  return error ? path : absolute.string();
}

}  // namespace platform
