#include "ORBCefLocalResourceHandlerFactory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CapturedLog.h"
#include "FakeTools.h"
#include "FreshProcess.h"
#include "TempDirectory.h"
#include "include/cef_request.h"
#include "include/cef_resource_handler.h"
#include "include/cef_response.h"

namespace {

using testing::HasSubstr;

// The scheme "xortv" has hosts only in a process that has registered it, so these URLs have a
// scheme that every engine knows. The factory does not look at it.
CefRefPtr<CefRequest> Request(const std::string& method, const std::string& url) {
  CefRefPtr<CefRequest> request = CefRequest::Create();
  request->SetMethod(method);
  request->SetURL(url);
  return request;
}

CefRefPtr<CefResourceHandler> Create(CefRefPtr<CefRequest> request) {
  const CefRefPtr<ORBCefLocalResourceHandlerFactory> factory =
      new ORBCefLocalResourceHandlerFactory();
  return factory->Create(nullptr, nullptr, "xortv", request);
}

int StatusOf(CefRefPtr<CefResourceHandler> handler) {
  const CefRefPtr<CefResponse> response = CefResponse::Create();
  int64 length = 0;
  CefString redirect;
  handler->GetResponseHeaders(response, length, redirect);
  return response->GetStatus();
}

// Runs `body` where the installation has a file "a.js" and a file "b%20c.js" of the module "m".
void WithInstallation(const std::function<void()>& body,
                      const testing::Matcher<const std::string&>& log = testing::_,
                      int line = __builtin_LINE()) {
  fresh_process::Run(
      [&] {
        FakeTools tools;
        TempDirectory root;
        root.Write("webapps/m/a.js", "a");
        root.Write("webapps/m/b%20c.js", "a");
        root.Write("webapps/m/d e.js", "a");
        tools.Set("ORBInstallPath", root.Path());
        body();
      },
      log, line);
}

TEST(ORBCefLocalResourceHandlerFactoryTest, AGetOfAFileIsServed) {
  WithInstallation(
      [] { EXPECT_EQ(200, StatusOf(Create(Request("GET", "http://webapps/m/a.js")))); });
}

TEST(ORBCefLocalResourceHandlerFactoryTest, QueryAndFragmentAreIgnored) {
  WithInstallation(
      [] { EXPECT_EQ(200, StatusOf(Create(Request("GET", "http://webapps/m/a.js?v=1#top")))); });
}

TEST(ORBCefLocalResourceHandlerFactoryTest, AnEscapedBlankStaysAsItIs) {
  WithInstallation([] {
    EXPECT_EQ(200, StatusOf(Create(Request("GET", "http://webapps/m/b%20c.js"))));
    EXPECT_EQ(404, StatusOf(Create(Request("GET", "http://webapps/m/d%20e.js"))));
  });
}

TEST(ORBCefLocalResourceHandlerFactoryTest, AMissingFileHasAHandlerToo) {
  WithInstallation(
      [] {
        const CefRefPtr<CefResourceHandler> handler =
            Create(Request("GET", "http://webapps/m/none.js"));
        ASSERT_TRUE(handler);
        EXPECT_EQ(404, StatusOf(handler));
      },
      HasSubstr("[xortv] Impossible to locate resource: /m/none.js\n"));
}

TEST(ORBCefLocalResourceHandlerFactoryTest, AnotherMethodThanGetIsRefusedWithOneEntry) {
  FakeTools tools;
  for (const char* method : {"POST", "HEAD", "get"}) {
    CefRefPtr<CefResourceHandler> handler;
    const std::string log =
        CapturedLog([&] { handler = Create(Request(method, "http://webapps/m/a.js")); });
    EXPECT_FALSE(handler) << method;
    EXPECT_THAT(log, HasSubstr("ERROR"));
    EXPECT_THAT(log, HasSubstr("[xortv] The xortv protocol can only accept GET requests.\n"
                               "\tProtocol: xortv\n\tURL: http://webapps/m/a.js\n"));
  }
}

TEST(ORBCefLocalResourceHandlerFactoryTest, NoRequestHasNoHandler) {
  FakeTools tools;
  EXPECT_FALSE(Create(nullptr));
}

TEST(ORBCefLocalResourceHandlerFactoryTest, OnAnotherThreadThereIsNoHandler) {
  fresh_process::Run([] {
    FakeTools tools;
    tools.Unset("ORBCEF_NO_TID_CHECK");
    EXPECT_FALSE(Create(Request("GET", "http://webapps/m/a.js")));
  });
}

}  // namespace
