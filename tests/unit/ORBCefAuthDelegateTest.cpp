#include "ORBCefAuthDelegate.h"

#include <gtest/gtest.h>

#include "FakeTools.h"
#include "engine_doubles/HostDoubles.h"

namespace {

using engine_doubles::HostAuthDelegate;

TEST(ORBCefAuthDelegateTest, HoldsOneReferenceForAsLongAsItKeepsTheTable) {
  HostAuthDelegate host;
  {
    ORBCefAuthDelegate delegate(host.Table());
    EXPECT_EQ(host.references, 1);
    delegate.Reset();
    EXPECT_EQ(host.references, 0);
  }
  EXPECT_EQ(host.references, 0);
}

TEST(ORBCefAuthDelegateTest, AsksTheHostAndFreesItsRecords) {
  HostAuthDelegate host;
  host.turnstile_url = "https://sso.test/";
  host.ticket_url = "https://a.test/?ticket=1";
  const ORBCefAuthDelegate delegate(host.Table());
  EXPECT_TRUE(delegate.IsAuthenticated());
  EXPECT_EQ(delegate.TurnstileURL(), "https://sso.test/");
  EXPECT_EQ(delegate.TransientTicketURL("https://a.test/").ToString(), "https://a.test/?ticket=1");
  EXPECT_EQ(host.asked_for, std::vector<std::string>{"https://a.test/"});
  EXPECT_EQ(FakeTools::LiveRecords(), 0);
}

TEST(ORBCefAuthDelegateTest, ANullRecordCountsAsEmpty) {
  HostAuthDelegate host;
  const ORBCefAuthDelegate delegate(host.Table());
  EXPECT_EQ(delegate.TurnstileURL(), "");
  EXPECT_TRUE(delegate.TransientTicketURL("https://a.test/").empty());
}

TEST(ORBCefAuthDelegateTest, LivesWithoutATableOrItsSlots) {
  orbcefbrowserhost_c empty = {};
  for (orbcefbrowserhost_c* table : {static_cast<orbcefbrowserhost_c*>(nullptr), &empty}) {
    ORBCefAuthDelegate delegate(table);
    EXPECT_FALSE(delegate.IsAuthenticated());
    EXPECT_EQ(delegate.TurnstileURL(), "");
    EXPECT_TRUE(delegate.TransientTicketURL("https://a.test/").empty());
    delegate.Reset();
    EXPECT_FALSE(delegate.IsSet());
  }
}

}  // namespace
