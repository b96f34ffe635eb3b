// Runs a program to its end and keeps what it writes.
//
// Called on a test's own thread; returns when the program has ended.
#ifndef ORBCEF_TESTS_CHILD_PROCESS_H
#define ORBCEF_TESTS_CHILD_PROCESS_H

#include <string>

namespace child_process {

struct Ending {
  // -1 if the program could not be started or did not end by itself.
  int code = -1;
  std::string output;
  std::string errors;
};

// Runs the program at `path` with one argument in the root directory and with this process's
// environment. Both texts are UTF-8 without quotes in them. Lines end in a line feed alone.
Ending Run(const std::string& path, const std::string& argument);

}  // namespace child_process

#endif  // ORBCEF_TESTS_CHILD_PROCESS_H
