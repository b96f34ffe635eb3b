// The scheme of the installation's files, from the page's URL to the bytes.
#include <gtest/gtest.h>

#include "Control.h"
#include "Host.h"
#include "platform/Files.h"

namespace {

using control::Callback;
using standin_host::Events;
using standin_host::Host;
using standin_host::InOwnProcess;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr char kMimeTypes[] = "resources/ORBCefRsc/mime-types.xml";
constexpr char kUriSchemes[] = "resources/ORBCefRsc/uri-schemes.xml";

class StandinResourceTest : public testing::Test {
 protected:
  // A host whose installation has one module, with the engine up.
  static void WithEngine(
      const std::function<void(Host&)>& body,
      const std::function<void(Host&)>& prepare = [](Host&) {}) {
    InOwnProcess([&] {
      Host host;
      host.EnableLog();
      host.root.Write("webapps/m/a.html", "<title>A page</title>");
      host.root.Write("webapps/m/b%20c.js", "x");
      host.root.Write("webapps/m/a.b/c", "x");
      host.root.Write("webapps/m/empty.js", "");
      host.root.Write("resources/r.JS", "xx");
      host.root.Write(kMimeTypes,
                      "<r><mimeType type=\"text/javascript\" extension=\".js\"/>"
                      "<mimeType type=\"text/other\" extension=\".js\"/>"
                      "<mimeType type=\"text/html\" extension=\".html\"/></r>");
      host.root.Write(kUriSchemes,
                      "<r><record><value>tel</value><description>Phone</description></record>"
                      "<people><value>sip</value><description>Late</description></people></r>");
      prepare(host);
      host.Init();
      EXPECT_TRUE(control::Wait("context_initialized"));
      body(host);
      host.Shutdown();
      EXPECT_EQ(control::Living(), 0);
    });
  }

  // "status length type" of a URL; empty when no handler was given.
  static std::string Headers(const char* url) {
    Callback call("CefResourceHandler::GetResponseHeaders", TID_IO);
    if (!call.Text(0, url).Play())
      return std::string();
    return std::to_string(call.outs[0]) + " " + std::to_string(call.outs[1]) + " " + call.text;
  }

  static int Create(const char* url, int thread, uint32_t nulls, const char* method = "GET") {
    Callback call("CefSchemeHandlerFactory::Create", thread);
    call.nulls = nulls;
    EXPECT_TRUE(call.Text(0, url).Text(1, method).Play());
    return call.result;
  }
};

TEST_F(StandinResourceTest, APageOfTheInstallationIsLoaded) {
  WithEngine([](Host& host) {
    Events events;
    orbcefbrowser_c* const view = host.NewView(events, "xortv://webapps/m/a.html");
    host.Open(view, "xortv://webapps/m/a.html?v=1");
    EXPECT_EQ(control::Last("loaded"), "xortv://webapps/m/a.html?v=1 200 0");
    EXPECT_EQ(control::Last("response"), "200 text/html 21 ");
    EXPECT_TRUE(events.Has("title A page"));
    EXPECT_TRUE(events.Has("address xortv://webapps/m/a.html?v=1"));
    EXPECT_THAT(host.Log(), HasSubstr("Streaming local file.\n\tReplacement: " +
                                      host.root.Join("webapps/m/a.html")));
    host.CloseAndRelease(view);
  });
}

TEST_F(StandinResourceTest, WithoutCachingEachAnswerSaysSo) {
  WithEngine(
      [](Host& host) {
        Events events;
        orbcefbrowser_c* const view = host.NewView(events);
        host.Open(view, "xortv://webapps/m/a.html");
        EXPECT_EQ(control::Last("response"), "200 text/html 21 no-cache");
        host.CloseAndRelease(view);
      },
      [](Host& host) { host.tools.Set("ORBCEF_NOCACHE_XORTV", ""); });
}

TEST_F(StandinResourceTest, TheFactoryAnswersOnTheIOThreadAlone) {
  WithEngine([](Host&) {
    constexpr char kUrl[] = "xortv://webapps/m/a.html";
    EXPECT_EQ(Create(kUrl, TID_IO, 0), 1);
    for (const int thread : {static_cast<int>(TID_UI), static_cast<int>(TID_FILE_USER_BLOCKING),
                             ORBCEF_STANDIN_STRANGER}) {
      EXPECT_EQ(Create(kUrl, thread, 0), 0) << thread;
    }
    EXPECT_EQ(Create(kUrl, TID_IO, 1u << 2), 0);
    // Neither browser nor frame is needed.
    EXPECT_EQ(Create(kUrl, TID_IO, 3), 1);
  });
}

TEST_F(StandinResourceTest, AnotherMethodIsRefusedWithItsThreeLines) {
  WithEngine([](Host& host) {
    EXPECT_EQ(Create("xortv://webapps/m/a.html", TID_IO, 0, "POST"), 0);
    EXPECT_EQ(Create("xortv://webapps/m/a.html", TID_IO, 0, "get"), 0);
    EXPECT_THAT(host.Log(), HasSubstr("[xortv] The xortv protocol can only accept GET requests.\n"
                                      "\tProtocol: xortv\n\tURL: xortv://webapps/m/a.html\n"));
  });
}

TEST_F(StandinResourceTest, AnotherHostNeverReachesTheFactory) {
  WithEngine([](Host&) {
    Callback call("CefSchemeHandlerFactory::Create", TID_IO);
    EXPECT_FALSE(call.Text(0, "xortv://other/x").Play());
  });
}

TEST_F(StandinResourceTest, HeadersTellStatusLengthAndType) {
  WithEngine([](Host&) {
    EXPECT_EQ(Headers("xortv://webapps/m/a.html#top"), "200 21 text/html");
    EXPECT_EQ(Headers("xortv://webapps/m/b%20c.js"), "200 1 text/javascript");
    EXPECT_EQ(Headers("xortv://webapps/m/empty.js"), "200 -1 text/javascript");
    EXPECT_EQ(Headers("xortv://webapps/m/a.b/c"), "200 1 application/octet-stream");
    EXPECT_EQ(Headers("xortv://resources/r.JS"), "200 2 application/octet-stream");
    EXPECT_EQ(Headers("xortv://webapps/m/none.js"), "404 -1 ");
  });
}

TEST_F(StandinResourceTest, AModuleAloneIsNotFoundAndNotMissed) {
  WithEngine([](Host& host) {
    EXPECT_EQ(Headers("xortv://webapps/m"), "404 -1 ");
    EXPECT_THAT(host.Log(), Not(HasSubstr("locate module")));
    EXPECT_EQ(Headers("xortv://webapps/none/a.js"), "404 -1 ");
    EXPECT_THAT(host.Log(), HasSubstr(std::string("[xortv] Impossible to locate module: webapps") +
                                      platform::kSeparator + "none\n"));
  });
}

TEST_F(StandinResourceTest, OfTwoRootsTheFirstHasTheModuleAndTheFilesAreShared) {
  TempDirectory second;
  WithEngine(
      [](Host&) {
        EXPECT_EQ(Headers("xortv://webapps/m/second.js"), "404 -1 ");
        EXPECT_EQ(Headers("xortv://resources/second.js"), "200 3 text/javascript");
      },
      [&second](Host& host) {
        second.Write("webapps/m/second.js", "abc");
        second.Write("resources/second.js", "abc");
        host.tools.Set("ORBInstallPath", host.root.Path() + ";" + second.Path());
      });
}

TEST_F(StandinResourceTest, HeadersOnAWrongThreadOrWithoutAResponseStayEmpty) {
  WithEngine([](Host&) {
    for (const int thread : {static_cast<int>(TID_UI), ORBCEF_STANDIN_STRANGER}) {
      Callback call("CefResourceHandler::GetResponseHeaders", thread);
      EXPECT_TRUE(call.Text(0, "xortv://webapps/m/a.html").Play());
      EXPECT_EQ(call.outs[0], 0);
      EXPECT_EQ(call.outs[1], 0);
    }
    Callback call("CefResourceHandler::GetResponseHeaders", TID_IO);
    EXPECT_TRUE(call.Text(0, "xortv://webapps/m/a.html").Null(0).Play());
    EXPECT_EQ(call.outs[1], 0);
  });
}

TEST_F(StandinResourceTest, SkipAlwaysFails) {
  WithEngine([](Host&) {
    Callback call("CefResourceHandler::Skip", TID_IO);
    EXPECT_TRUE(call.Text(0, "xortv://webapps/m/a.html").Number(0, 3).Play());
    EXPECT_EQ(call.result, 0);
    EXPECT_EQ(call.outs[0], -2);
  });
}

TEST_F(StandinResourceTest, AFileWhoseStreamDoesNotOpenIsNotFoundWithoutAWord) {
  WithEngine([](Host& host) {
    EXPECT_EQ(Headers("xortv://webapps/m/a.html"), "200 21 text/html");
    control::Fail("stream");
    EXPECT_EQ(Headers("xortv://webapps/m/a.html"), "404 -1 ");
    EXPECT_THAT(host.Log(), Not(HasSubstr("Impossible")));
  });
}

TEST_F(StandinResourceTest, WithoutATypeTableEverythingIsBytesUntilItCanBeRead) {
  WithEngine([](Host&) {
    control::Fail("xml_reader");
    EXPECT_EQ(Headers("xortv://webapps/m/a.html"), "200 21 application/octet-stream");
    control::Fail("stream");
    // The stream of the table, not that of the file.
    EXPECT_EQ(Headers("xortv://webapps/m/a.html"), "200 21 application/octet-stream");
    EXPECT_EQ(Headers("xortv://webapps/m/a.html"), "200 21 text/html");
  });
}

TEST_F(StandinResourceTest, ABrokenTypeTableKeepsWhatCameBeforeTheFault) {
  WithEngine(
      [](Host&) {
        EXPECT_EQ(Headers("xortv://webapps/m/a.html"), "200 21 text/html");
        EXPECT_EQ(Headers("xortv://webapps/m/b%20c.js"), "200 1 application/octet-stream");
      },
      [](Host& host) {
        host.root.Write(kMimeTypes,
                        "<r><mimeType type=\"text/html\" extension=\".html\"/><broken"
                        "<mimeType type=\"text/javascript\" extension=\".js\"/></r>");
      });
}

TEST_F(StandinResourceTest, OnlyListedSchemesGoToTheSystem) {
  WithEngine([](Host& host) {
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    host.Open(view, "tel:112");
    view->load_url(view, standin_host::Text("sip:a"));
    EXPECT_TRUE(control::Wait("loaded", 2));
    EXPECT_THAT(control::Texts("protocol"), ElementsAre("tel:112 allowed", "sip:a denied"));
    Callback denied("CefResourceRequestHandler::OnProtocolExecution", TID_IO);
    EXPECT_TRUE(denied.Text(0, "sip:a").Number(1, 1).Play());
    EXPECT_EQ(denied.outs[0], 0);
    control::Fail("parse_url");
    Callback unparsed("CefResourceRequestHandler::OnProtocolExecution", TID_IO);
    EXPECT_TRUE(unparsed.Text(0, "tel:112").Play());
    EXPECT_EQ(unparsed.outs[0], 0);
    host.CloseAndRelease(view);
  });
}

TEST_F(StandinResourceTest, WithoutASchemeTableNothingGoesToTheSystem) {
  WithEngine([](Host& host) {
    control::Fail("xml_reader", -1);
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    host.Open(view, "tel:112");
    EXPECT_THAT(control::Texts("protocol"), ElementsAre("tel:112 denied"));
    host.CloseAndRelease(view);
  });
}

}  // namespace
