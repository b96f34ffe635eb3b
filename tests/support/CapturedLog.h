// What a piece of a test writes to standard error. The engine's log goes there as long as the
// engine has not been started.
#ifndef ORBCEF_TESTS_CAPTURED_LOG_H
#define ORBCEF_TESTS_CAPTURED_LOG_H

#include <functional>
#include <string>

#include <gtest/gtest.h>

inline std::string CapturedLog(const std::function<void()>& body) {
  testing::internal::CaptureStderr();
  body();
  return testing::internal::GetCapturedStderr();
}

#endif  // ORBCEF_TESTS_CAPTURED_LOG_H
