// The profile: the directory of cache, engine log and settings. One that the host made itself is
// removed with the object. Main thread; `main` owns it, and the engine must have stopped before it
// ends.
#pragma once

#include <string>

namespace host {

class Profile {
 public:
  // Empty `directory` makes a new one below the temporary directory.
  explicit Profile(const std::string& directory);
  ~Profile();
  Profile(const Profile&) = delete;
  Profile& operator=(const Profile&) = delete;

  // Absolute path; empty if the directory could not be made.
  const std::string& Path() const { return _path; }

 private:
  std::string _path;
  bool _temporary = false;
};

// The installation root to use: `wanted`, else the first root of ORBInstallPath, else "root" beside
// the directory of this executable. Absolute.
std::string FindRoot(const std::string& wanted);

}  // namespace host
