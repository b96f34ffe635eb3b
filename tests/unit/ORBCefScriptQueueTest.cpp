#include "ORBCefScriptQueue.h"

#include <gtest/gtest.h>

#include "CapturedLog.h"
#include "FakeTools.h"
#include "engine_doubles/HostDoubles.h"
#include "engine_doubles/ViewDoubles.h"

namespace {

using engine_doubles::BrowserDouble;
using engine_doubles::Calls;

constexpr char kFlushed[] =
    " @ ChromiumEmbeddedPlugin/ORBCefWrapperMT.m/src/ORBCefClientHandler:2217";

class ORBCefScriptQueueTest : public testing::Test {
 protected:
  FakeTools _tools;
  void Execute(const char* code, const char* url = "http://script.test/", int line = 5) {
    _queue.Execute(_browser, 1, code, url, line);
  }

  ORBCefScriptQueue _queue;
  CefRefPtr<BrowserDouble> _browser = new BrowserDouble();
};

TEST_F(ORBCefScriptQueueTest, RunsAScriptAtOnceInAnIdlePage) {
  Execute("a()");
  EXPECT_EQ(_browser->calls, Calls{"Execute a() @ http://script.test/:5"});
  EXPECT_EQ(_queue.Size(), 0u);
}

TEST_F(ORBCefScriptQueueTest, AnEmptyScriptURLBecomesThePagesOwn) {
  Execute("a()", "");
  EXPECT_EQ(_browser->calls, Calls{"Execute a() @ http://page.test/:5"});
}

TEST_F(ORBCefScriptQueueTest, ThreeScriptsOfALoadRunInOrderAtItsEnd) {
  _browser->is_loading = true;
  Execute("a()");
  Execute("b()", "");
  Execute("c()", "http://other.test/", 9);
  EXPECT_TRUE(_browser->calls.empty());
  EXPECT_EQ(_queue.Size(), 3u);
  _browser->is_loading = false;
  _queue.Flush(_browser, 1);
  EXPECT_EQ(_browser->calls,
            (Calls{std::string("Execute a()") + kFlushed, std::string("Execute b()") + kFlushed,
                   std::string("Execute c()") + kFlushed}));
  EXPECT_EQ(_queue.Size(), 0u);
}

TEST_F(ORBCefScriptQueueTest, KeepsAScriptThatComesBeforeTheBrowser) {
  _queue.Execute(nullptr, 0, "a()", "", 1);
  EXPECT_EQ(_queue.Size(), 1u);
  _queue.Flush(_browser, 1);
  EXPECT_EQ(_browser->calls, Calls{std::string("Execute a()") + kFlushed});
}

TEST_F(ORBCefScriptQueueTest, KeepsAScriptForAPageWithoutAMainFrame) {
  _browser->main_frame = nullptr;
  Execute("a()");
  EXPECT_EQ(_queue.Size(), 1u);
}

TEST_F(ORBCefScriptQueueTest, AFlushWithoutAMainFrameLosesNothing) {
  _browser->is_loading = true;
  Execute("a()");
  const auto frame = _browser->main_frame;
  _browser->main_frame = nullptr;
  _queue.Flush(_browser, 1);
  _queue.Flush(nullptr, 1);
  EXPECT_EQ(_queue.Size(), 1u);
  _browser->main_frame = frame;
  _queue.Flush(_browser, 1);
  EXPECT_EQ(_queue.Size(), 0u);
}

TEST_F(ORBCefScriptQueueTest, AFlushTrustsTheEngineAndDoesNotAskForLoading) {
  _browser->is_loading = true;
  Execute("a()");
  _queue.Flush(_browser, 1);
  EXPECT_EQ(_browser->calls.size(), 1u);
}

TEST_F(ORBCefScriptQueueTest, AnEmptyFlushTouchesNothing) {
  _queue.Flush(_browser, 1);
  EXPECT_TRUE(_browser->calls.empty());
}

// A browser whose main frame goes away between the two looks at it.
class VanishingFrameBrowser : public BrowserDouble {
 public:
  CefRefPtr<CefFrame> GetMainFrame() override {
    return ++_asked == 1 ? BrowserDouble::GetMainFrame() : nullptr;
  }

 private:
  int _asked = 0;
};

TEST_F(ORBCefScriptQueueTest, AFrameThatGoesAwayMeanwhileTakesTheScriptWithIt) {
  _browser = new VanishingFrameBrowser();
  Execute("a()");
  EXPECT_TRUE(_browser->calls.empty());
  EXPECT_EQ(_queue.Size(), 0u);
}

TEST_F(ORBCefScriptQueueTest, LogsWhatItRunsOnlyWhileAskedTo) {
  const std::string log = CapturedLog([this] {
    Execute("quiet()");
    _tools.Set("ORBCEF_LOG_EXECJS", "");
    Execute("loud()");
    _tools.Unset("ORBCEF_LOG_EXECJS");
    Execute("quiet()");
  });
  EXPECT_NE(log.find("[Browser Process] Browser #1 - Executing script:\n\tloud()"),
            std::string::npos)
      << log;
  EXPECT_EQ(log.find("quiet()"), std::string::npos) << log;
}

TEST_F(ORBCefScriptQueueTest, LogsQueueingAndFlushing) {
  const std::string log = CapturedLog([this] {
    _queue.Execute(nullptr, 3, "a()", "", 1);
    _queue.Flush(_browser, 3);
  });
  EXPECT_NE(log.find("[Browser Process] Browser #3 - Can't execute JavaScript right now, enqueuing "
                     "the code."),
            std::string::npos)
      << log;
  EXPECT_NE(log.find("[Browser Process] Browser #3 - Flushing the JavaScript queue."),
            std::string::npos)
      << log;
}

TEST_F(ORBCefScriptQueueTest, TakesVeryLongScripts) {
  const std::string code(16 * 1024 * 1024, 'x');
  _browser->is_loading = true;
  _queue.Execute(_browser, 1, code, "", 1);
  _queue.Flush(_browser, 1);
  ASSERT_EQ(_browser->calls.size(), 1u);
  EXPECT_EQ(_browser->calls[0].size(),
            std::string("Execute ").size() + code.size() + std::string(kFlushed).size());
}

}  // namespace
