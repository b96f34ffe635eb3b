#include "ORBCefNavigationPolicy.h"

#include <gtest/gtest.h>

#include "include/internal/cef_types.h"

namespace {

using ORBCefNavigationPolicy::CheckTransition;
using ORBCefNavigationPolicy::HaveSameOrigin;
using ORBCefNavigationPolicy::IsRefusedLocalFile;
using ORBCefNavigationPolicy::StaysInside;
using ORBCefNavigationPolicy::Transition;

constexpr uint32_t kForwardBack = 0x01000000;

TEST(ORBCefNavigationPolicyTest, ComparesSchemeHostAndPort) {
  EXPECT_TRUE(HaveSameOrigin("http://a.test/x", "http://a.test/y?z#w"));
  EXPECT_TRUE(HaveSameOrigin("http://a.test:80/", "http://a.test/"));
  EXPECT_FALSE(HaveSameOrigin("http://a.test/", "https://a.test/"));
  EXPECT_FALSE(HaveSameOrigin("http://a.test:8080/", "http://a.test/"));
  EXPECT_FALSE(HaveSameOrigin("http://a.test/", "http://b.a.test/"));
}

TEST(ORBCefNavigationPolicyTest, AnUnparsableURLHasNoOriginInCommon) {
  EXPECT_FALSE(HaveSameOrigin("", ""));
  EXPECT_FALSE(HaveSameOrigin("no url", "no url"));
  EXPECT_FALSE(HaveSameOrigin("http://a.test/", ""));
}

TEST(ORBCefNavigationPolicyTest, RefusesALocalFileForAPageOfTheNetwork) {
  EXPECT_TRUE(IsRefusedLocalFile("http://a.test/", "file:///etc/hosts"));
  EXPECT_TRUE(IsRefusedLocalFile("about:blank", "file:///etc/hosts"));
  EXPECT_FALSE(IsRefusedLocalFile("file:///tmp/a.html", "file:///etc/hosts"));
  EXPECT_FALSE(IsRefusedLocalFile("http://a.test/", "http://b.test/"));
}

TEST(ORBCefNavigationPolicyTest, TheFirstPageOfAViewMayBeALocalFile) {
  EXPECT_FALSE(IsRefusedLocalFile("", "file:///etc/hosts"));
}

TEST(ORBCefNavigationPolicyTest, StaysWithTheInstallationTheHomeAndTheService) {
  const CefString home("https://home.test/start");
  EXPECT_TRUE(StaysInside("xortv://webapps/a.html", home, ""));
  EXPECT_TRUE(StaysInside("https://home.test/other", home, ""));
  EXPECT_TRUE(StaysInside("https://sso.test/login", home, "https://sso.test/"));
  EXPECT_FALSE(StaysInside("https://sso.test/login", home, ""));
  EXPECT_FALSE(StaysInside("https://else.test/", home, "https://sso.test/"));
}

TEST(ORBCefNavigationPolicyTest, TheInstallationsSchemeCountsAtTheStartOnly) {
  EXPECT_FALSE(StaysInside("https://else.test/?xortv://webapps/", "https://home.test/", ""));
}

TEST(ORBCefNavigationPolicyTest, APlainReloadNeedsItsFlag) {
  EXPECT_EQ(CheckTransition(TT_RELOAD, true, false), Transition::kAllowed);
  EXPECT_EQ(CheckTransition(TT_RELOAD, false, true), Transition::kReloadRefused);
}

TEST(ORBCefNavigationPolicyTest, AReloadWithAQualifierIsNotCaught) {
  EXPECT_EQ(CheckTransition(TT_RELOAD | 0x02000000, false, false), Transition::kAllowed);
}

TEST(ORBCefNavigationPolicyTest, BackAndForwardNeedTheirFlag) {
  EXPECT_EQ(CheckTransition(TT_LINK | kForwardBack, false, true), Transition::kAllowed);
  EXPECT_EQ(CheckTransition(TT_LINK | kForwardBack, true, false), Transition::kHistoryRefused);
  // A reload with the qualifier counts as history.
  EXPECT_EQ(CheckTransition(TT_RELOAD | kForwardBack, true, false), Transition::kHistoryRefused);
}

TEST(ORBCefNavigationPolicyTest, OtherNavigationsPass) {
  EXPECT_EQ(CheckTransition(TT_LINK, false, false), Transition::kAllowed);
  EXPECT_EQ(CheckTransition(TT_EXPLICIT, false, false), Transition::kAllowed);
}

}  // namespace
