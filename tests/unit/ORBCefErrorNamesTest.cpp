#include "ORBCefErrorNames.h"

#include <gtest/gtest.h>

#include <climits>
#include <set>
#include <string>

namespace {

using ORBCefErrorNames::NetErrorName;
using ORBCefErrorNames::TerminationStatusName;

constexpr char kUndefined[] = "UNDEFINED_ERROR_CODE";

TEST(ORBCefErrorNamesTest, NamesTheEndsAndTheMiddleOfTheList) {
  EXPECT_STREQ(NetErrorName(-1), "IO_PENDING");
  EXPECT_STREQ(NetErrorName(-3), "ABORTED");
  EXPECT_STREQ(NetErrorName(-105), "NAME_NOT_RESOLVED");
  EXPECT_STREQ(NetErrorName(-219), "CERT_END");
  EXPECT_STREQ(NetErrorName(-365), "HTTP_1_1_REQUIRED");
  EXPECT_STREQ(NetErrorName(-810), "DNS_REQUEST_CANCELLED");
}

TEST(ORBCefErrorNamesTest, KeepsTheMisspelledLastName) {
  EXPECT_STREQ(NetErrorName(-811), "DNS_NO_MACHING_SUPPORTED_ALPN");
}

TEST(ORBCefErrorNamesTest, CodesOutsideTheRangeHaveNoName) {
  EXPECT_STREQ(NetErrorName(0), kUndefined);
  EXPECT_STREQ(NetErrorName(1), kUndefined);
  EXPECT_STREQ(NetErrorName(-812), kUndefined);
  EXPECT_STREQ(NetErrorName(INT_MIN), kUndefined);
  EXPECT_STREQ(NetErrorName(INT_MAX), kUndefined);
}

TEST(ORBCefErrorNamesTest, GapsInsideTheRangeHaveNoName) {
  EXPECT_STREQ(NetErrorName(-28), kUndefined);
  EXPECT_STREQ(NetErrorName(-32), kUndefined);
  EXPECT_STREQ(NetErrorName(-384), kUndefined);
  EXPECT_STREQ(NetErrorName(-807), kUndefined);
}

TEST(ORBCefErrorNamesTest, HasOneNameForEachOf236Codes) {
  std::set<std::string> names;
  int named = 0;
  for (int code = -1000; code <= 10; ++code) {
    const std::string name = NetErrorName(code);
    if (name != kUndefined) {
      ++named;
      names.insert(name);
    }
  }
  EXPECT_EQ(named, 236);
  EXPECT_EQ(names.size(), 236u);
}

TEST(ORBCefErrorNamesTest, NamesHowARenderProcessEnded) {
  EXPECT_STREQ(TerminationStatusName(0), "ABNORMAL_TERMINATION");
  EXPECT_STREQ(TerminationStatusName(1), "PROCESS_KILLED");
  EXPECT_STREQ(TerminationStatusName(2), "PROCESS_CRASHED");
}

TEST(ORBCefErrorNamesTest, OutOfMemoryAndLaterStatusesHaveNoName) {
  EXPECT_STREQ(TerminationStatusName(3), "UNKNOWN_TERMINATION_STATUS");
  EXPECT_STREQ(TerminationStatusName(UINT_MAX), "UNKNOWN_TERMINATION_STATUS");
}

}  // namespace
