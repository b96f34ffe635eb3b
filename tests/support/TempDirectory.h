// A directory of a test's own that goes with everything in it. Paths are UTF-8.
#ifndef ORBCEF_TESTS_TEMP_DIRECTORY_H
#define ORBCEF_TESTS_TEMP_DIRECTORY_H

#include <string>

class TempDirectory {
 public:
  TempDirectory();
  ~TempDirectory();
  TempDirectory(const TempDirectory&) = delete;
  TempDirectory& operator=(const TempDirectory&) = delete;

  // Absolute, with the system's separators, without one at the end.
  const std::string& Path() const { return _path; }

  // `relative` is written with "/". The joined path in the system's own form.
  std::string Join(const std::string& relative) const;

  // Both make the directories on the way and answer the path.
  std::string MakeDirectory(const std::string& relative) const;
  std::string Write(const std::string& relative, const std::string& content) const;

 private:
  std::string _path;
};

#endif  // ORBCEF_TESTS_TEMP_DIRECTORY_H
