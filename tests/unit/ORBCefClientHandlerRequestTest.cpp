// What a view decides about navigations, requests and external protocols.
#include <gmock/gmock.h>

#include "CapturedLog.h"
#include "FakeTools.h"
#include "FreshProcess.h"
#include "ORBCefClientHandler.h"
#include "TempDirectory.h"
#include "engine_doubles/ViewDoubles.h"

namespace {

using engine_doubles::BrowserDouble;
using testing::HasSubstr;
using testing::Not;

constexpr uint32_t kForwardBack = 0x01000000;

// A request whose transition a test can set: the engine's own always says the default.
class RequestDouble : public CefRequest {
 public:
  explicit RequestDouble(const std::string& url) : url(url) {}

  bool IsReadOnly() override { return false; }
  CefString GetURL() override { return url; }
  void SetURL(const CefString& value) override { url = value.ToString(); }
  CefString GetMethod() override { return "GET"; }
  void SetMethod(const CefString&) override {}
  void SetReferrer(const CefString&, ReferrerPolicy) override {}
  CefString GetReferrerURL() override { return CefString(); }
  ReferrerPolicy GetReferrerPolicy() override { return REFERRER_POLICY_DEFAULT; }
  CefRefPtr<CefPostData> GetPostData() override { return nullptr; }
  void SetPostData(CefRefPtr<CefPostData>) override {}
  void GetHeaderMap(HeaderMap& map) override { map = headers; }
  void SetHeaderMap(const HeaderMap& map) override {
    headers = map;
    ++header_writes;
  }
  CefString GetHeaderByName(const CefString&) override { return CefString(); }
  void SetHeaderByName(const CefString&, const CefString&, bool) override {}
  void Set(const CefString&, const CefString&, CefRefPtr<CefPostData>, const HeaderMap&) override {}
  int GetFlags() override { return 0; }
  void SetFlags(int) override {}
  CefString GetFirstPartyForCookies() override { return CefString(); }
  void SetFirstPartyForCookies(const CefString&) override {}
  ResourceType GetResourceType() override { return RT_MAIN_FRAME; }
  TransitionType GetTransitionType() override { return static_cast<TransitionType>(transition); }
  uint64 GetIdentifier() override { return 1; }

  std::string url;
  uint32_t transition = TT_LINK;
  HeaderMap headers;
  int header_writes = 0;

 private:
  IMPLEMENT_REFCOUNTING(RequestDouble);
};

class ORBCefClientHandlerRequestTest : public testing::Test {
 protected:
  // True if the navigation is cancelled.
  bool Browse(const std::string& url, uint32_t transition = TT_LINK) {
    const CefRefPtr<RequestDouble> request = new RequestDouble(url);
    request->transition = transition;
    return _client->OnBeforeBrowse(_browser, _browser->main_frame, request, true, false);
  }

  CefRefPtr<RequestDouble> Load(const std::string& url) {
    const CefRefPtr<RequestDouble> request = new RequestDouble(url);
    Load(request);
    return request;
  }
  void Load(const CefRefPtr<RequestDouble>& request) {
    EXPECT_EQ(_client->OnBeforeResourceLoad(_browser, _browser->main_frame, request, nullptr),
              RV_CONTINUE);
  }

  bool ExecuteProtocol(const std::string& url) {
    bool allowed = true;
    _client->OnProtocolExecution(_browser, nullptr, new RequestDouble(url), allowed);
    return allowed;
  }

  FakeTools _tools;
  CefRefPtr<BrowserDouble> _browser = new BrowserDouble();
  CefRefPtr<ORBCefClientHandler> _client =
      new ORBCefClientHandler(nullptr, nullptr, "https://home.test/");
};

TEST_F(ORBCefClientHandlerRequestTest, NullArgumentsCancel) {
  EXPECT_TRUE(
      _client->OnBeforeBrowse(_browser, nullptr, new RequestDouble("http://a.test/"), true, false));
  EXPECT_TRUE(_client->OnBeforeBrowse(_browser, _browser->main_frame, nullptr, true, false));
  EXPECT_EQ(_client->OnBeforeResourceLoad(_browser, nullptr, nullptr, nullptr), RV_CANCEL);
}

TEST_F(ORBCefClientHandlerRequestTest, ANavigationPassesAndIsLogged) {
  const std::string log = CapturedLog([this] { EXPECT_FALSE(Browse("http://a.test/")); });
  EXPECT_THAT(log, HasSubstr("Browsing: http://a.test/"));
}

TEST_F(ORBCefClientHandlerRequestTest, ALocalFileNeedsItsFlagSilently) {
  const std::string log = CapturedLog([this] { EXPECT_TRUE(Browse("file:///etc/hosts")); });
  EXPECT_EQ(log, "");
  _client->Settings().local_files_allowed = true;
  EXPECT_FALSE(Browse("file:///etc/hosts"));
}

TEST_F(ORBCefClientHandlerRequestTest, TheFirstPageMayBeALocalFile) {
  _browser->main_frame->url = "";
  EXPECT_FALSE(Browse("file:///etc/hosts"));
}

TEST_F(ORBCefClientHandlerRequestTest, AViewThatMayNotLeaveStaysInsideSilently) {
  _client->Settings().external_navigation_allowed = false;
  EXPECT_FALSE(Browse("https://home.test/other"));
  EXPECT_FALSE(Browse("xortv://webapps/a.html"));
  const std::string log = CapturedLog([this] {
    EXPECT_TRUE(Browse("https://else.test/"));
    EXPECT_TRUE(Browse("https://else.test/?xortv://webapps/"));
  });
  EXPECT_EQ(log, "");
  EXPECT_TRUE(Browse("https://sso.test/login"));
  _tools.sys_settings[{"7DAstrolabeAccess", "7DTurnstile_URL"}] = "https://sso.test/";
  EXPECT_FALSE(Browse("https://sso.test/login"));
}

TEST_F(ORBCefClientHandlerRequestTest, WithoutAHomeEveryURLIsInside) {
  _client->Settings().external_navigation_allowed = false;
  _client->SetURL("");
  EXPECT_FALSE(Browse("https://else.test/"));
}

TEST_F(ORBCefClientHandlerRequestTest, AReloadNeedsItsFlag) {
  EXPECT_FALSE(Browse("http://a.test/", TT_RELOAD));
  _client->Settings().reload_enabled = false;
  const std::string log = CapturedLog([this] { EXPECT_TRUE(Browse("http://a.test/", TT_RELOAD)); });
  EXPECT_THAT(log, HasSubstr("Browsing: http://a.test/"));
  EXPECT_THAT(log, HasSubstr("Navigation cancelled: reload has been disabled."));
  EXPECT_FALSE(Browse("http://a.test/", TT_RELOAD | 0x02000000));
}

TEST_F(ORBCefClientHandlerRequestTest, BackAndForwardNeedTheirFlag) {
  EXPECT_FALSE(Browse("http://a.test/", TT_LINK | kForwardBack));
  _client->Settings().history_enabled = false;
  const std::string log =
      CapturedLog([this] { EXPECT_TRUE(Browse("http://a.test/", TT_LINK | kForwardBack)); });
  EXPECT_THAT(log, HasSubstr("Navigation cancelled: previous/next has been disabled."));
}

TEST_F(ORBCefClientHandlerRequestTest, ARequestGetsTheHostsLanguage) {
  _client->SetAcceptLanguage("de-CH");
  const auto request = Load("http://a.test/");
  ASSERT_EQ(request->headers.count("Accept-Language"), 1u);
  EXPECT_EQ(request->headers.find("Accept-Language")->second.ToString(), "de-CH");
}

TEST_F(ORBCefClientHandlerRequestTest, APagesOwnLanguageStays) {
  _client->SetAcceptLanguage("de-CH");
  const CefRefPtr<RequestDouble> request = new RequestDouble("http://a.test/");
  request->headers.emplace("Accept-Language", "fr");
  Load(request);
  ASSERT_EQ(request->headers.count("Accept-Language"), 1u);
  EXPECT_EQ(request->headers.find("Accept-Language")->second.ToString(), "fr");
  EXPECT_EQ(request->header_writes, 1);
}

TEST_F(ORBCefClientHandlerRequestTest, ARedirectServesOneRequest) {
  _client->AddRedirect("http://a.test/", "http://a.test/?ticket=1");
  EXPECT_EQ(Load("http://b.test/")->url, "http://b.test/");
  const std::string log =
      CapturedLog([this] { EXPECT_EQ(Load("http://a.test/")->url, "http://a.test/?ticket=1"); });
  EXPECT_THAT(log, HasSubstr("Redirecting request...\n\tFrom: http://a.test/\n\tTo: "
                             "http://a.test/?ticket=1"));
  EXPECT_EQ(Load("http://a.test/")->url, "http://a.test/");
}

TEST_F(ORBCefClientHandlerRequestTest, TheEnginesOwnRequestsTakeHeaderAndRedirect) {
  _client->SetAcceptLanguage("it");
  _client->AddRedirect("http://a.test/", "http://b.test/");
  const CefRefPtr<CefRequest> request = CefRequest::Create();
  request->SetURL("http://a.test/");
  EXPECT_EQ(_client->OnBeforeResourceLoad(_browser, nullptr, request, nullptr), RV_CONTINUE);
  EXPECT_EQ(request->GetURL().ToString(), "http://b.test/");
  EXPECT_EQ(request->GetHeaderByName("Accept-Language").ToString(), "it");
}

TEST_F(ORBCefClientHandlerRequestTest, WithoutASchemeTableNothingLeavesTheEngine) {
  const std::string log = CapturedLog([this] { EXPECT_FALSE(ExecuteProtocol("mailto:a@b.test")); });
  EXPECT_THAT(log, HasSubstr("Protocol execution denied: mailto:a@b.test"));
}

TEST_F(ORBCefClientHandlerRequestTest, ANullRequestLeavesTheAnswerAlone) {
  bool allowed = true;
  _client->OnProtocolExecution(_browser, nullptr, nullptr, allowed);
  EXPECT_TRUE(allowed);
}

TEST(ORBCefClientHandlerSchemesTest, SchemesOfTheInstallationMayGoToTheSystem) {
  TempDirectory directory;
  fresh_process::Run(
      [&] {
        directory.Write("resources/ORBCefRsc/uri-schemes.xml",
                        "<registry><record><value>mailto</value><description>Mail</description>"
                        "</record><people/></registry>");
        FakeTools tools;
        tools.Set("ORBInstallPath", directory.Path());
        const CefRefPtr<ORBCefClientHandler> client = new ORBCefClientHandler(nullptr, nullptr, "");
        bool allowed = false;
        client->OnProtocolExecution(nullptr, nullptr, new RequestDouble("mailto:a@b.test"),
                                    allowed);
        EXPECT_TRUE(allowed);
        client->OnProtocolExecution(nullptr, nullptr, new RequestDouble("tel:123"), allowed);
        EXPECT_FALSE(allowed);
        allowed = true;
        client->OnProtocolExecution(nullptr, nullptr, new RequestDouble("no url"), allowed);
        EXPECT_FALSE(allowed);
      },
      HasSubstr("Protocol execution allowed: mailto:a@b.test"));
}

}  // namespace
