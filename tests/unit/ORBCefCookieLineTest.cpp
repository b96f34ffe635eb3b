#include "ORBCefCookieLine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

std::string Text(const cef_string_t& field) {
  return CefString(&field).ToString();
}

TEST(ORBCefCookieLineTest, ReadsNameValueAndAttributes) {
  const CefCookie cookie = ORBCefCookieLine::Parse("a=b; Path=/x; HttpOnly");
  EXPECT_EQ("a", Text(cookie.name));
  EXPECT_EQ("b", Text(cookie.value));
  EXPECT_EQ("/x", Text(cookie.path));
  EXPECT_EQ("", Text(cookie.domain));
  EXPECT_EQ(1, cookie.httponly);
  EXPECT_EQ(0, cookie.secure);
  EXPECT_EQ(0, cookie.has_expires);
}

TEST(ORBCefCookieLineTest, AFirstTextWithoutAnEqualsSignIsAValueWithoutAName) {
  EXPECT_THAT(ORBCefCookieLine::Split("abc"), ElementsAre(Pair("", "abc")));
  EXPECT_THAT(ORBCefCookieLine::Split(" a b ; Secure"),
              ElementsAre(Pair("", "a b"), Pair("secure", "")));
}

TEST(ORBCefCookieLineTest, AnEqualsSignInTheValueBelongsToIt) {
  EXPECT_THAT(ORBCefCookieLine::Split("a=b=c"), ElementsAre(Pair("a", "b=c")));
  EXPECT_THAT(ORBCefCookieLine::Split("a=\"b\""), ElementsAre(Pair("a", "\"b\"")));
}

TEST(ORBCefCookieLineTest, ADateIsNotRead) {
  const CefCookie cookie = ORBCefCookieLine::Parse("a=b; Expires=Wed, 09 Jun 2027 10:18:14 GMT");
  const CefCookie untouched;
  EXPECT_EQ(1, cookie.has_expires);
  EXPECT_EQ(0, std::memcmp(&cookie.expires, &untouched.expires, sizeof(cookie.expires)));
}

TEST(ORBCefCookieLineTest, OnlyTheFirstNameKeepsItsUpperCase) {
  EXPECT_THAT(ORBCefCookieLine::Split("NAME=v;DOMAIN=X"),
              ElementsAre(Pair("NAME", "v"), Pair("domain", "X")));
  EXPECT_EQ("X", Text(ORBCefCookieLine::Parse("NAME=v;DOMAIN=X").domain));
}

TEST(ORBCefCookieLineTest, TheValueOfAFlagIsIgnored) {
  EXPECT_EQ(1, ORBCefCookieLine::Parse("a=b; secure=no").secure);
}

TEST(ORBCefCookieLineTest, ATrailingSemicolonAddsNothing) {
  EXPECT_THAT(ORBCefCookieLine::Split("a=b;"), ElementsAre(Pair("a", "b")));
  EXPECT_THAT(ORBCefCookieLine::Split("a=b; "), ElementsAre(Pair("a", "b")));
}

TEST(ORBCefCookieLineTest, TheLaterOfTwoAttributesStandsAndUnknownOnesHaveNoEffect) {
  const CefCookie cookie =
      ORBCefCookieLine::Parse("a = b ;\tpath=/1; path = /2 ; Max-Age=5; SameSite=Lax");
  EXPECT_EQ("b", Text(cookie.value));
  EXPECT_EQ("/2", Text(cookie.path));
  EXPECT_EQ(0, cookie.has_expires);
  EXPECT_EQ(CEF_COOKIE_SAME_SITE_UNSPECIFIED, cookie.same_site);
}

TEST(ORBCefCookieLineTest, NothingAndWhiteSpaceGiveAnEmptyCookie) {
  EXPECT_THAT(ORBCefCookieLine::Split(""), IsEmpty());
  EXPECT_THAT(ORBCefCookieLine::Split(" \t "), IsEmpty());
  EXPECT_EQ("", Text(ORBCefCookieLine::Parse(" ").name));
}

TEST(ORBCefCookieLineTest, EmptyPartsAreReadAndHaveNoEffect) {
  EXPECT_THAT(ORBCefCookieLine::Split(";a=b"), ElementsAre(Pair("", ""), Pair("a", "b")));
  EXPECT_THAT(ORBCefCookieLine::Split("=v"), ElementsAre(Pair("", "v")));
}

}  // namespace
