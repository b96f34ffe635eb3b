#include "Profile.h"

#include <filesystem>
#include <system_error>

#include "System.h"

namespace host {

namespace fs = std::filesystem;

Profile::Profile(const std::string& directory) : _temporary(directory.empty()) {
  if (_temporary) {
    _path = MakeTemporaryDirectory();
    return;
  }
  std::error_code error;
  fs::create_directories(ToPath(directory), error);
  if (fs::is_directory(ToPath(directory), error)) {
    _path = ToText(fs::absolute(ToPath(directory), error));
  }
}

Profile::~Profile() {
  if (_temporary && !_path.empty()) {
    std::error_code error;
    fs::remove_all(ToPath(_path), error);
  }
}

std::string FindRoot(const std::string& wanted) {
  std::string root = wanted;
  if (root.empty()) {
    root = ReadVariable("ORBInstallPath").value_or("");
    root = root.substr(0, root.find(';'));
  }
  if (root.empty()) {
    root = ToText(ToPath(ExecutableDirectory()).parent_path() / "root");
  }
  std::error_code error;
  return ToText(fs::absolute(ToPath(root), error).lexically_normal());
}

}  // namespace host
