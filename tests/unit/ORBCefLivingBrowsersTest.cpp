#include "ORBCefLivingBrowsers.h"

#include <gtest/gtest.h>

#include <thread>

#include "engine_doubles/ViewDoubles.h"

namespace {

using engine_doubles::BrowserDouble;
using engine_doubles::Calls;
using std::chrono::milliseconds;

constexpr milliseconds kLong{10'000};

TEST(ORBCefLivingBrowsersTest, CountsEachBrowserOnce) {
  ORBCefLivingBrowsers browsers;
  const CefRefPtr<BrowserDouble> first = new BrowserDouble(1);
  const CefRefPtr<BrowserDouble> second = new BrowserDouble(2);
  browsers.Add(first);
  browsers.Add(first);
  browsers.Add(second);
  EXPECT_EQ(browsers.Size(), 2u);
  browsers.Remove(first);
  browsers.Remove(first);
  EXPECT_EQ(browsers.Size(), 1u);
  EXPECT_TRUE(first->HasOneRef());
}

TEST(ORBCefLivingBrowsersTest, ClosesAllWithoutAskingTheirPages) {
  ORBCefLivingBrowsers browsers;
  const CefRefPtr<BrowserDouble> first = new BrowserDouble(1);
  const CefRefPtr<BrowserDouble> second = new BrowserDouble(2);
  const CefRefPtr<BrowserDouble> without_host = new BrowserDouble(3);
  without_host->host = nullptr;
  browsers.Add(first);
  browsers.Add(second);
  browsers.Add(without_host);
  browsers.CloseAll();
  EXPECT_EQ(first->calls, Calls{"CloseBrowser force"});
  EXPECT_EQ(second->calls, Calls{"CloseBrowser force"});
}

TEST(ORBCefLivingBrowsersTest, WaitsForTheLastBrowser) {
  ORBCefLivingBrowsers browsers;
  const CefRefPtr<BrowserDouble> browser = new BrowserDouble(1);
  browsers.Add(browser);
  EXPECT_FALSE(browsers.WaitForNone(milliseconds(0)));
  std::thread engine([&] { browsers.Remove(browser); });
  EXPECT_TRUE(browsers.WaitForNone(kLong));
  engine.join();
}

TEST(ORBCefLivingBrowsersTest, WithoutAnEngineThereIsNothingToWaitFor) {
  ORBCefLivingBrowsers browsers;
  const CefRefPtr<BrowserDouble> browser = new BrowserDouble(1);
  browsers.Add(browser);
  EXPECT_TRUE(browsers.CloseAllAndWait(kLong));
  EXPECT_TRUE(browser->calls.empty());
  browsers.Remove(browser);
  EXPECT_TRUE(browsers.WaitForNone(milliseconds(0))) << "No close is pending any more.";
}

TEST(ORBCefLivingBrowsersTest, RestsAfterTheEndOfTheLastBrowser) {
  ORBCefLivingBrowsers browsers;
  const CefRefPtr<BrowserDouble> browser = new BrowserDouble(1);
  browsers.Add(browser);
  const auto end = std::chrono::steady_clock::now();
  browsers.Remove(browser);
  EXPECT_TRUE(browsers.CloseAllAndWait(kLong));
  EXPECT_GE(std::chrono::steady_clock::now() - end, ORBCefLivingBrowsers::kRest);
}

}  // namespace
