#include "ORBCefSessionCookie.h"

#include <gtest/gtest.h>

#include "CapturedLog.h"
#include "FakeTools.h"
#include "ORBCefCookieLine.h"

namespace {

CefCookie Hardened(const char* line) {
  CefCookie cookie = ORBCefCookieLine::Parse(line);
  ORBCefSessionCookie::Harden(cookie);
  return cookie;
}

TEST(ORBCefSessionCookieTest, TheTicketCookieIsHardenedWhateverItsTextSays) {
  const CefCookie cookie = Hardened("CASTGC=abc; Domain=x");
  EXPECT_EQ(1, cookie.secure);
  EXPECT_EQ(1, cookie.httponly);
  EXPECT_EQ(CEF_COOKIE_SAME_SITE_NO_RESTRICTION, cookie.same_site);
}

TEST(ORBCefSessionCookieTest, TheServletsCookieKeepsItsSameSite) {
  const CefCookie cookie = Hardened("JSESSIONID=abc");
  EXPECT_EQ(1, cookie.secure);
  EXPECT_EQ(1, cookie.httponly);
  EXPECT_EQ(CEF_COOKIE_SAME_SITE_UNSPECIFIED, cookie.same_site);
}

TEST(ORBCefSessionCookieTest, OtherCookiesStayAsTheyAre) {
  for (const char* line : {"castgc=abc", "CASTGC2=abc", "a=b"}) {
    const CefCookie cookie = Hardened(line);
    EXPECT_EQ(0, cookie.secure) << line;
    EXPECT_EQ(0, cookie.httponly) << line;
  }
}

TEST(ORBCefSessionCookieTest, TheServicesAddressEndsInOneSlash) {
  EXPECT_EQ("https://sso.test/", ORBCefSessionCookie::CookieURL("https://sso.test"));
  EXPECT_EQ("https://sso.test/", ORBCefSessionCookie::CookieURL("https://sso.test/"));
}

TEST(ORBCefSessionCookieTest, WithoutTheVariableThereIsOneWarning) {
  FakeTools tools;
  CefString value;
  const std::string log = CapturedLog(
      [&value] { value = ORBCefSessionCookie::InstallLauncherCookie("https://sso.test"); });
  EXPECT_TRUE(value.empty());
  EXPECT_NE(std::string::npos,
            log.find("Looking for a CASTGC cookie, but ORBHUBV9LAUNCHER_CASCOOKIE is not valued"));
}

TEST(ORBCefSessionCookieTest, WithoutAServiceNothingIsLookedFor) {
  FakeTools tools;
  const std::string log =
      CapturedLog([] { EXPECT_TRUE(ORBCefSessionCookie::InstallLauncherCookie("").empty()); });
  EXPECT_EQ("", log);
}

TEST(ORBCefSessionCookieTest, WithoutAnEngineNothingIsStored) {
  FakeTools tools;
  tools.Set("ORBHUBV9LAUNCHER_CASCOOKIE", "CASTGC=abc");
  EXPECT_TRUE(ORBCefSessionCookie::InstallLauncherCookie("https://sso.test").empty());
}

}  // namespace
