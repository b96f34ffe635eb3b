// Runs a piece of a test in a process that has read nothing of the environment yet, for what the
// module reads once and keeps.
//
// Called on a test's own thread. The process starts the test anew up to the call, so what stands
// before the call runs in both processes.
#ifndef ORBCEF_TESTS_FRESH_PROCESS_H
#define ORBCEF_TESTS_FRESH_PROCESS_H

#include <functional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace fresh_process {

// Runs `body` with its expectations. `log` describes what the process writes to standard error,
// where the engine's log goes as well.
void Run(const std::function<void()>& body,
         const testing::Matcher<const std::string&>& log = testing::_, int line = __builtin_LINE());

// Expects that `body` stores to address zero.
void ExpectDeath(const std::function<void()>& body,
                 const testing::Matcher<const std::string&>& log = testing::_,
                 int line = __builtin_LINE());

// Tells by the status of a process that it stored to address zero.
bool DiedAtAddressZero(int status);

// Expects that the process ends with `code`.
void ExpectExit(const std::function<void()>& body, int code,
                const testing::Matcher<const std::string&>& log = testing::_,
                int line = __builtin_LINE());

}  // namespace fresh_process

#endif  // ORBCEF_TESTS_FRESH_PROCESS_H
