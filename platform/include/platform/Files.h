// Small questions about paths and files. Paths are UTF-8.
//
// Any thread may call these functions. They keep no state.
#ifndef PLATFORM_FILES_H
#define PLATFORM_FILES_H

#include <string>

namespace platform {

#if defined(_WIN32)
constexpr char kSeparator = '\\';
constexpr char kPathListSeparator = ';';
#else
constexpr char kSeparator = '/';
// Separates the directories of the variable PATH.
constexpr char kPathListSeparator = ':';
#endif

// True if the path names something other than a directory that opens for reading.
bool IsReadable(const std::string& path);

// True if the path names an existing directory.
bool IsDirectory(const std::string& path);

// True if the path does not start at a root; the empty path is relative.
bool IsRelative(const std::string& path);

// A relative path below the current directory; any other path, and the empty one, as it is.
std::string MakeAbsolute(const std::string& path);

}  // namespace platform

#endif  // PLATFORM_FILES_H
