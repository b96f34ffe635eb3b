#include "Profile.h"

#include <stdlib.h>

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace host {

namespace fs = std::filesystem;

Profile::Profile(const std::string& directory) : _temporary(directory.empty()) {
  std::error_code error;
  if (!_temporary) {
    fs::create_directories(directory, error);
    if (fs::is_directory(directory, error)) {
      _path = fs::absolute(directory, error).string();
    }
    return;
  }
  std::string name = (fs::temp_directory_path(error) / "orbcef_host.XXXXXX").string();
  if (mkdtemp(name.data())) {
    _path = name;
  }
}

Profile::~Profile() {
  if (_temporary && !_path.empty()) {
    std::error_code error;
    fs::remove_all(_path, error);
  }
}

std::string ExecutableDirectory() {
  std::error_code error;
  return fs::read_symlink("/proc/self/exe", error).parent_path().string();
}

std::string FindRoot(const std::string& wanted) {
  std::string root = wanted;
  if (root.empty()) {
    const char* install_path = std::getenv("ORBInstallPath");
    root = install_path ? install_path : "";
    root = root.substr(0, root.find(';'));
  }
  if (root.empty()) {
    root = (fs::path(ExecutableDirectory()).parent_path() / "root").string();
  }
  std::error_code error;
  return fs::absolute(root, error).lexically_normal().string();
}

}  // namespace host
