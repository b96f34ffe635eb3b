#include "TempDirectory.h"

#include <filesystem>
#include <fstream>
#include <random>

namespace fs = std::filesystem;

namespace {

// As long a path as a test likes: Windows takes those of more than 260 characters with a prefix.
fs::path SystemPath(const std::string& path) {
#if defined(_WIN32)
  return fs::path(L"\\\\?\\" + fs::u8path(path).wstring());
#else
  return fs::u8path(path);
#endif
}

}  // namespace

TempDirectory::TempDirectory() {
  std::random_device random;
  fs::path path;
  do {
    path = fs::temp_directory_path() / ("orbcef_unit_" + std::to_string(random()));
  } while (!fs::create_directory(path));
  _path = path.u8string();
}

TempDirectory::~TempDirectory() {
  std::error_code ignored;
  fs::remove_all(SystemPath(_path), ignored);
}

std::string TempDirectory::Join(const std::string& relative) const {
  return (fs::u8path(_path) / fs::u8path(relative)).make_preferred().u8string();
}

std::string TempDirectory::MakeDirectory(const std::string& relative) const {
  const std::string path = Join(relative);
  fs::create_directories(SystemPath(path));
  return path;
}

std::string TempDirectory::Write(const std::string& relative, const std::string& content) const {
  const std::string path = Join(relative);
  const fs::path file = SystemPath(path);
  fs::create_directories(file.parent_path());
  std::ofstream(file, std::ios::binary) << content;
  return path;
}
