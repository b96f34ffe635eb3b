#include "TempDirectory.h"

#include <filesystem>
#include <fstream>
#include <random>

namespace fs = std::filesystem;

TempDirectory::TempDirectory() {
  std::random_device random;
  fs::path path;
  do {
    path = fs::temp_directory_path() / ("orbcef_unit_" + std::to_string(random()));
  } while (!fs::create_directory(path));
  _path = path.string();
}

TempDirectory::~TempDirectory() {
  std::error_code ignored;
  fs::remove_all(_path, ignored);
}

std::string TempDirectory::Join(const std::string& relative) const {
  return (fs::path(_path) / relative).make_preferred().string();
}

std::string TempDirectory::MakeDirectory(const std::string& relative) const {
  const std::string path = Join(relative);
  fs::create_directories(path);
  return path;
}

std::string TempDirectory::Write(const std::string& relative, const std::string& content) const {
  const std::string path = Join(relative);
  fs::create_directories(fs::path(path).parent_path());
  std::ofstream(path, std::ios::binary) << content;
  return path;
}
