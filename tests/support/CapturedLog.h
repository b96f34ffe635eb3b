// What a piece of a test writes to standard error, and what the engine logs meanwhile. As long as
// the engine has not been started its log goes to standard error as well or, on Windows, into a
// file beside the program.
#ifndef ORBCEF_TESTS_CAPTURED_LOG_H
#define ORBCEF_TESTS_CAPTURED_LOG_H

#include <cstddef>
#include <functional>
#include <string>

#include <gtest/gtest.h>

// What the engine logs into its file from the making of this object on.
class LoggedFile {
 public:
  LoggedFile();
  std::string Text() const;

 private:
  const std::size_t _old_size;
};

std::string CapturedLog(const std::function<void()>& body);

#endif  // ORBCEF_TESTS_CAPTURED_LOG_H
