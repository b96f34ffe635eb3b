#include "ORBCefDevToolsClient.h"

#include <gtest/gtest.h>

#include "FakeTools.h"
#include "engine_doubles/HostDoubles.h"
#include "engine_doubles/ViewDoubles.h"
#include "include/cef_download_handler.h"

namespace {

using engine_doubles::BrowserDouble;
using engine_doubles::Calls;

class DownloadDouble : public CefBeforeDownloadCallback {
 public:
  void Continue(const CefString& path, bool show_dialog) override {
    answers.push_back(path.ToString() + (show_dialog ? " ask" : " direct"));
  }
  std::vector<std::string> answers;

 private:
  IMPLEMENT_REFCOUNTING(DownloadDouble);
};

class ORBCefDevToolsClientTest : public testing::Test {
 protected:
  FakeTools _tools;
};

TEST_F(ORBCefDevToolsClientTest, HandlesMenusAndDownloadsAndNothingElse) {
  const CefRefPtr<CefClient> client = new ORBCefDevToolsClient();
  EXPECT_TRUE(client->GetContextMenuHandler());
  EXPECT_TRUE(client->GetDownloadHandler());
  EXPECT_FALSE(client->GetDisplayHandler());
  EXPECT_FALSE(client->GetKeyboardHandler());
  EXPECT_FALSE(client->GetLifeSpanHandler());
  EXPECT_FALSE(client->GetLoadHandler());
  EXPECT_FALSE(client->GetRenderHandler());
  EXPECT_FALSE(client->GetRequestHandler());
}

TEST_F(ORBCefDevToolsClientTest, DownloadsAlwaysAskWhereToGo) {
  const CefRefPtr<ORBCefDevToolsClient> client = new ORBCefDevToolsClient();
  const CefRefPtr<DownloadDouble> callback = new DownloadDouble();
  EXPECT_TRUE(client->CanDownload(nullptr, "http://a.test/", "GET"));
  client->OnBeforeDownload(nullptr, nullptr, "name.txt", callback);
  client->OnBeforeDownload(nullptr, nullptr, "name.txt", nullptr);
  EXPECT_EQ(callback->answers, std::vector<std::string>{" ask"});
}

TEST_F(ORBCefDevToolsClientTest, OpensAWindowOfItsOwnWithDefaultSettings) {
  const CefRefPtr<BrowserDouble> browser = new BrowserDouble();
  ORBCefDevToolsClient::Open(browser);
  EXPECT_EQ(browser->calls, Calls{"ShowDevTools Developer Tools"});
  EXPECT_TRUE(browser->host->dev_tools_client);
  EXPECT_EQ(browser->host->dev_tools_settings.javascript, STATE_DEFAULT);
}

TEST_F(ORBCefDevToolsClientTest, NothingOpensWithoutABrowserOrItsHost) {
  ORBCefDevToolsClient::Open(nullptr);
  const CefRefPtr<BrowserDouble> browser = new BrowserDouble();
  browser->host = nullptr;
  ORBCefDevToolsClient::Open(browser);
  EXPECT_TRUE(browser->calls.empty());
}

#if defined(OS_WIN)
TEST_F(ORBCefDevToolsClientTest, TheWindowIsAnOverlappedPopupAtTheSystemsPlace) {
  const auto parent = reinterpret_cast<CefWindowHandle>(7);
  CefWindowInfo info;
  ORBCefDevToolsClient::FillWindowInfo(parent, info);
  EXPECT_EQ(info.style, 0x16CF0000u);
  EXPECT_EQ(info.parent_window, parent);
  for (const int value : {info.bounds.x, info.bounds.y, info.bounds.width, info.bounds.height}) {
    EXPECT_EQ(static_cast<unsigned>(value), 0x80000000u);
  }
}
#else
TEST_F(ORBCefDevToolsClientTest, TheWindowIsATopLevelOneAtTheEnginesPlace) {
  CefWindowInfo info;
  ORBCefDevToolsClient::FillWindowInfo(7, info);
  EXPECT_EQ(info.parent_window, 0u);
  EXPECT_EQ(info.bounds.width, 0);
  EXPECT_EQ(info.bounds.height, 0);
}
#endif

}  // namespace
