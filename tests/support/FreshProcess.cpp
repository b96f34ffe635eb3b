#include "FreshProcess.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>

#if !defined(_WIN32)
#include <sys/wait.h>
#endif

#include "CapturedLog.h"

namespace fresh_process {

namespace {

[[noreturn]] void RunAndEnd(const std::function<void()>& body) {
  const LoggedFile file;
  body();
  // The parent looks at the standard error stream alone.
  std::fputs(file.Text().c_str(), stderr);
  std::fflush(nullptr);
  // No static destructors: the engine's library has its own idea of an end.
  std::_Exit(testing::Test::HasFailure() ? 1 : 0);
}

std::string CalledFrom(int line) {
  return "in the fresh process of line " + std::to_string(line);
}

}  // namespace

bool DiedAtAddressZero(int status) {
#if defined(_WIN32)
  return static_cast<unsigned>(status) == 0xC0000005u;
#else
  return WIFSIGNALED(status) && WTERMSIG(status) == SIGSEGV;
#endif
}

void Run(const std::function<void()>& body, const testing::Matcher<const std::string&>& log,
         int line) {
  SCOPED_TRACE(CalledFrom(line));
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(RunAndEnd(body), testing::ExitedWithCode(0), log);
}

void ExpectDeath(const std::function<void()>& body, const testing::Matcher<const std::string&>& log,
                 int line) {
  SCOPED_TRACE(CalledFrom(line));
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(RunAndEnd(body), DiedAtAddressZero, log);
}

void ExpectExit(const std::function<void()>& body, int code,
                const testing::Matcher<const std::string&>& log, int line) {
  SCOPED_TRACE(CalledFrom(line));
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(RunAndEnd(body), testing::ExitedWithCode(code), log);
}

}  // namespace fresh_process
