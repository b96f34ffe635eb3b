#include "ORBCefRedirectTable.h"

#include <gtest/gtest.h>

namespace {

using std::chrono::nanoseconds;

class ORBCefRedirectTableTest : public testing::Test {
 protected:
  std::string Take(const char* url) { return _table.Take(url).ToString(); }

  nanoseconds _now{5};
  ORBCefRedirectTable _table{[this] { return _now; }};
};

TEST_F(ORBCefRedirectTableTest, ServesOneRequest) {
  _table.Add("http://a.test/", "http://a.test/?ticket=1");
  EXPECT_EQ(Take("http://a.test/"), "http://a.test/?ticket=1");
  EXPECT_EQ(Take("http://a.test/"), "");
}

TEST_F(ORBCefRedirectTableTest, AnUnknownURLGivesNothingAndTakesNothing) {
  _table.Add("http://a.test/", "http://b.test/");
  EXPECT_EQ(Take("http://a.test"), "");
  EXPECT_FALSE(_table.IsEmpty());
}

TEST_F(ORBCefRedirectTableTest, LivesUpToAMinute) {
  _table.Add("http://a.test/", "http://b.test/");
  _now += nanoseconds(59'999'999'999);
  EXPECT_EQ(Take("http://a.test/"), "http://b.test/");
}

TEST_F(ORBCefRedirectTableTest, ASixtySecondsOldEntryIsErasedAndGivesNothing) {
  _table.Add("http://a.test/", "http://b.test/");
  _now += nanoseconds(60'000'000'000);
  EXPECT_EQ(Take("http://a.test/"), "");
  EXPECT_TRUE(_table.IsEmpty());
}

TEST_F(ORBCefRedirectTableTest, ASecondRedirectReplacesTheFirstAndRestartsItsTime) {
  _table.Add("http://a.test/", "http://b.test/");
  _now += nanoseconds(59'000'000'000);
  _table.Add("http://a.test/", "http://c.test/");
  _now += nanoseconds(59'000'000'000);
  EXPECT_EQ(Take("http://a.test/"), "http://c.test/");
  EXPECT_TRUE(_table.IsEmpty());
}

TEST_F(ORBCefRedirectTableTest, KeepsSourcesApart) {
  _table.Add("http://a.test/", "1");
  _table.Add("http://b.test/", "2");
  EXPECT_EQ(Take("http://b.test/"), "2");
  EXPECT_EQ(Take("http://a.test/"), "1");
}

TEST(ORBCefRedirectTableClockTest, TheSteadyClockIsTheDefault) {
  ORBCefRedirectTable table;
  table.Add("http://a.test/", "http://b.test/");
  EXPECT_EQ(table.Take("http://a.test/").ToString(), "http://b.test/");
}

}  // namespace
