#include "ORBCefLanguageCookie.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "FakeTools.h"
#include "engine_doubles/HostDoubles.h"
#include "include/cef_callback.h"

namespace {

using ORBCefLanguageCookie::CookieDomainOf;

class CookieManagerDouble : public CefCookieManager {
 public:
  bool VisitAllCookies(CefRefPtr<CefCookieVisitor>) override { return false; }
  bool VisitUrlCookies(const CefString&, bool, CefRefPtr<CefCookieVisitor>) override {
    return false;
  }
  bool SetCookie(const CefString& url, const CefCookie& cookie,
                 CefRefPtr<CefSetCookieCallback>) override {
    urls.push_back(url.ToString());
    cookies.push_back(cookie);
    return true;
  }
  bool DeleteCookies(const CefString&, const CefString&,
                     CefRefPtr<CefDeleteCookiesCallback>) override {
    return false;
  }
  bool FlushStore(CefRefPtr<CefCompletionCallback>) override { return false; }

  std::vector<std::string> urls;
  std::vector<CefCookie> cookies;

 private:
  IMPLEMENT_REFCOUNTING(CookieManagerDouble);
};

class ORBCefLanguageCookieTest : public testing::Test {
 protected:
  FakeTools _tools;
  // Shows the cookies to a visitor until it has seen enough, then drops it as the engine does.
  void Visit(const std::vector<const char*>& names, const char* url = "https://a.b.test/x",
             const char* language = "en-US") {
    const CefRefPtr<CefCookieVisitor> visitor =
        ORBCefLanguageCookie::CreateVisitor(url, language, [this] { return _manager; });
    shown = 0;
    for (const char* name : names) {
      CefCookie cookie;
      CefString(&cookie.name) = name;
      bool deleted = false;
      ++shown;
      if (!visitor->Visit(cookie, shown - 1, static_cast<int>(names.size()), deleted)) {
        break;
      }
      EXPECT_FALSE(deleted);
    }
  }

  const CefCookie& Only() const { return _double->cookies.at(0); }

  int shown = 0;
  CefRefPtr<CookieManagerDouble> _double = new CookieManagerDouble();
  CefRefPtr<CefCookieManager> _manager = _double;
};

TEST_F(ORBCefLanguageCookieTest, SetsASessionCookieWithTheBaseLanguage) {
  Visit({"other", "hivelanguage", "HIVELANG"});
  EXPECT_EQ(shown, 3);
  ASSERT_EQ(_double->urls, std::vector<std::string>{"https://a.b.test/x"});
  EXPECT_EQ(CefString(&Only().name).ToString(), "hivelang");
  EXPECT_EQ(CefString(&Only().value).ToString(), "en");
  EXPECT_EQ(CefString(&Only().domain).ToString(), ".b.test");
  EXPECT_EQ(CefString(&Only().path).ToString(), "/");
  EXPECT_EQ(Only().secure, 0);
  EXPECT_EQ(Only().httponly, 0);
  EXPECT_EQ(Only().has_expires, 0);
}

TEST_F(ORBCefLanguageCookieTest, ALanguageWithoutARegionIsTakenWhole) {
  Visit({}, "https://a.b.test/", "fil");
  ASSERT_EQ(_double->cookies.size(), 1u);
  EXPECT_EQ(CefString(&Only().value).ToString(), "fil");
}

TEST_F(ORBCefLanguageCookieTest, AnExistingCookieKeepsItsValueAndEndsTheVisit) {
  Visit({"first", "hivelang", "last"});
  EXPECT_EQ(shown, 2);
  EXPECT_TRUE(_double->cookies.empty());
}

TEST_F(ORBCefLanguageCookieTest, AVisitorThatSawNoCookieAtAllSetsOne) {
  Visit({});
  EXPECT_EQ(_double->cookies.size(), 1u);
}

TEST_F(ORBCefLanguageCookieTest, WithoutAManagerNothingIsSet) {
  _manager = nullptr;
  Visit({});
  EXPECT_TRUE(_double->cookies.empty());
}

TEST_F(ORBCefLanguageCookieTest, AHostThatHasNoDomainSetsNothing) {
  Visit({}, "http://w.b/");
  EXPECT_TRUE(_double->cookies.empty());
}

TEST_F(ORBCefLanguageCookieTest, NothingStartsWithoutAnEngine) {
  ORBCefLanguageCookie::Start("https://a.b.test/", "en");
  ORBCefLanguageCookie::Start("", "en");
  EXPECT_TRUE(_double->cookies.empty());
}

TEST(ORBCefLanguageCookieDomainTest, AHostOfThreeLabelsLosesItsFirst) {
  EXPECT_EQ(CookieDomainOf("http://a.b.c/x?y"), ".b.c");
  EXPECT_EQ(CookieDomainOf("http://a.b.c.d:81/"), ".b.c.d");
}

TEST(ORBCefLanguageCookieDomainTest, AShortHostStaysWhole) {
  EXPECT_EQ(CookieDomainOf("http://b.c/"), ".b.c");
  EXPECT_EQ(CookieDomainOf("http://localhost:8080/"), ".localhost");
}

TEST(ORBCefLanguageCookieDomainTest, AnAddressHasNoDomain) {
  EXPECT_EQ(CookieDomainOf("http://10.0.0.1/"), "");
  EXPECT_EQ(CookieDomainOf("http://127.0.0.1:8080/"), "");
}

TEST(ORBCefLanguageCookieDomainTest, TheWorldWideWebIsCutOff) {
  EXPECT_EQ(CookieDomainOf("http://www.b.c/"), ".b.c");
  EXPECT_EQ(CookieDomainOf("http://www.a.b.c/"), ".b.c");
}

// Meant: single characters are compared, not the word.
TEST(ORBCefLanguageCookieDomainTest, AnyHostThatBeginsLikeItLosesFourCharacters) {
  EXPECT_EQ(CookieDomainOf("http://web.sub.test/"), ".sub.test");
  EXPECT_EQ(CookieDomainOf("http://wiki.sub.test/"), ".sub.test");
  EXPECT_EQ(CookieDomainOf("http://wonder.sub.test/"), ".sub.test");
}

TEST(ORBCefLanguageCookieDomainTest, ATooShortHostOfThatKindIsOutOfRange) {
  EXPECT_THROW(CookieDomainOf("http://w.b/"), std::out_of_range);
  EXPECT_THROW(CookieDomainOf("http://w/"), std::out_of_range);
}

TEST(ORBCefLanguageCookieDomainTest, NoURLHasNoDomain) {
  EXPECT_EQ(CookieDomainOf(""), "");
  EXPECT_EQ(CookieDomainOf("no url"), "");
}

}  // namespace
