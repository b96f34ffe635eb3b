#include "ORBCefLocalResourceHandler.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CapturedLog.h"
#include "FakeTools.h"
#include "FreshProcess.h"
#include "TempDirectory.h"
#include "include/cef_response.h"
#include "platform/Files.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

// What a handler answers for its file.
struct Answer {
  int status = 0;
  std::string status_text;
  std::string mime_type;
  std::string cache_control;
  int64 length = 0;
  std::string redirect;
  std::string body;
};

Answer Ask(const std::string& host, const std::string& path) {
  const CefRefPtr<ORBCefLocalResourceHandler> handler = new ORBCefLocalResourceHandler(host, path);
  bool handle_request = false;
  EXPECT_TRUE(handler->Open(nullptr, handle_request, nullptr));
  EXPECT_TRUE(handle_request);

  Answer answer;
  const CefRefPtr<CefResponse> response = CefResponse::Create();
  CefString redirect;
  handler->GetResponseHeaders(response, answer.length, redirect);
  answer.redirect = redirect.ToString();
  answer.status = response->GetStatus();
  answer.status_text = response->GetStatusText().ToString();
  answer.mime_type = response->GetMimeType().ToString();
  answer.cache_control = response->GetHeaderByName("Cache-Control").ToString();
  char buffer[8];
  int read = 0;
  while (handler->Read(buffer, sizeof(buffer), read, nullptr))
    answer.body.append(buffer, static_cast<std::size_t>(read));
  EXPECT_EQ(0, read);
  return answer;
}

// Two roots of an installation; `body` gets them in the order of the search.
using Roots = std::function<void(FakeTools& tools, TempDirectory& first, TempDirectory& second)>;
void WithRoots(const Roots& body, const testing::Matcher<const std::string&>& log = testing::_,
               int line = __builtin_LINE()) {
  fresh_process::Run(
      [&] {
        FakeTools tools;
        TempDirectory first;
        TempDirectory second;
        tools.Set("ORBInstallPath", first.Path() + ";" + second.Path());
        body(tools, first, second);
      },
      log, line);
}

void WriteMimeTypes(const TempDirectory& root) {
  root.Write("resources/ORBCefRsc/mime-types.xml",
             "<types><mimeType type=\"text/javascript\" extension=\".js\"/></types>");
}

TEST(ORBCefLocalResourceHandlerTest, AFileIsServedWithItsTypeAndLength) {
  WithRoots(
      [](FakeTools&, TempDirectory& first, TempDirectory&) {
        WriteMimeTypes(first);
        const std::string content = "a content that is longer than the buffer";
        first.Write("webapps/m/sub/a.js", content);
        const Answer answer = Ask("webapps", "/m/sub/a.js");
        EXPECT_EQ(200, answer.status);
        EXPECT_EQ("OK", answer.status_text);
        EXPECT_EQ("text/javascript", answer.mime_type);
        EXPECT_EQ(static_cast<int64>(content.size()), answer.length);
        EXPECT_EQ(content, answer.body);
        EXPECT_EQ("", answer.redirect);
        EXPECT_EQ("", answer.cache_control);
      },
      AllOf(HasSubstr("INFO"), HasSubstr("Streaming local file.\n\tReplacement: "),
            HasSubstr(std::string(1, platform::kSeparator) +
                      "a.js\n\tSource path: webapps/m/sub/a.js\n")));
}

TEST(ORBCefLocalResourceHandlerTest, AMissingFileIsNotFound) {
  WithRoots(
      [](FakeTools&, TempDirectory& first, TempDirectory&) {
        first.MakeDirectory("webapps/m");
        const Answer answer = Ask("webapps", "/m/none.js");
        EXPECT_EQ(404, answer.status);
        EXPECT_EQ("Not Found", answer.status_text);
        EXPECT_EQ("", answer.mime_type);
        EXPECT_EQ(-1, answer.length);
        EXPECT_EQ("", answer.body);
      },
      AllOf(HasSubstr("[xortv] Impossible to locate resource: /m/none.js\n"),
            Not(HasSubstr("Impossible to locate module"))));
}

TEST(ORBCefLocalResourceHandlerTest, AnEmptyFileIsFoundAndHasNoLength) {
  WithRoots([](FakeTools&, TempDirectory& first, TempDirectory&) {
    first.Write("resources/empty.bin", "");
    const Answer answer = Ask("resources", "/empty.bin");
    EXPECT_EQ(200, answer.status);
    EXPECT_EQ(-1, answer.length);
    EXPECT_EQ("", answer.body);
  });
}

TEST(ORBCefLocalResourceHandlerTest, AModuleIsBoundToTheFirstRootThatHasItsDirectory) {
  WithRoots([](FakeTools&, TempDirectory& first, TempDirectory& second) {
    first.MakeDirectory("webapps/m");
    second.Write("webapps/m/a.js", "second");
    EXPECT_EQ(404, Ask("webapps", "/m/a.js").status);
    first.Write("webapps/m/a.js", "first");
    EXPECT_EQ("first", Ask("webapps", "/m/a.js").body);
  });
}

TEST(ORBCefLocalResourceHandlerTest, AModuleOfTheSecondRootIsFoundIfTheFirstHasNone) {
  WithRoots([](FakeTools&, TempDirectory&, TempDirectory& second) {
    second.Write("webapps/m/a.js", "second");
    EXPECT_EQ("second", Ask("webapps", "/m/a.js").body);
  });
}

TEST(ORBCefLocalResourceHandlerTest, AResourceIsLookedForBelowEachRoot) {
  WithRoots([](FakeTools&, TempDirectory& first, TempDirectory& second) {
    first.MakeDirectory("resources/sub");
    second.Write("resources/sub/a.txt", "second");
    EXPECT_EQ("second", Ask("resources", "/sub/a.txt").body);
    first.Write("resources/sub/a.txt", "first");
    EXPECT_EQ("first", Ask("resources", "/sub/a.txt").body);
  });
}

TEST(ORBCefLocalResourceHandlerTest, AMissingModuleIsNamed) {
  WithRoots([](FakeTools&, TempDirectory&,
               TempDirectory&) { EXPECT_EQ(404, Ask("webapps", "/none/a.js").status); },
            AllOf(HasSubstr(std::string("[xortv] Impossible to locate module: webapps") +
                            platform::kSeparator + "none\n"),
                  HasSubstr("[xortv] Impossible to locate resource: /none/a.js\n")));
}

TEST(ORBCefLocalResourceHandlerTest, AModuleWithoutAPathIsNotFoundAndNotNamed) {
  WithRoots(
      [](FakeTools&, TempDirectory& first, TempDirectory&) {
        first.MakeDirectory("webapps/ORBCefBindings");
        EXPECT_EQ(404, Ask("webapps", "/ORBCefBindings").status);
      },
      AllOf(Not(HasSubstr("Impossible to locate module")),
            HasSubstr("[xortv] Impossible to locate resource: /ORBCefBindings\n")));
}

TEST(ORBCefLocalResourceHandlerTest, AnEmptyHostOrPathIsNotFoundWithoutAWord) {
  WithRoots(
      [](FakeTools&, TempDirectory&, TempDirectory&) {
        EXPECT_EQ(404, Ask("", "/m/a.js").status);
        EXPECT_EQ(404, Ask("webapps", "").status);
      },
      Not(HasSubstr("xortv")));
}

TEST(ORBCefLocalResourceHandlerTest, APathWithoutASlashAtItsStartIsTheSame) {
  WithRoots([](FakeTools&, TempDirectory& first, TempDirectory&) {
    const std::string file = first.Write("webapps/m/a.js", "x");
    EXPECT_EQ(file, LocateResource("webapps", "m/a.js"));
    EXPECT_EQ(file, LocateResource("webapps", "/m/a.js"));
    EXPECT_EQ("", LocateResource("resources", "/m/a.js"));
  });
}

TEST(ORBCefLocalResourceHandlerTest, AnExtensionThatIsUnknownIsServedAsBytes) {
  WithRoots([](FakeTools&, TempDirectory& first, TempDirectory&) {
    WriteMimeTypes(first);
    first.Write("resources/name", "x");
    first.Write("resources/name.JS", "x");
    first.Write("resources/name.other", "x");
    EXPECT_EQ("application/octet-stream", Ask("resources", "/name").mime_type);
    EXPECT_EQ("application/octet-stream", Ask("resources", "/name.JS").mime_type);
    EXPECT_EQ("application/octet-stream", Ask("resources", "/name.other").mime_type);
  });
}

TEST(ORBCefLocalResourceHandlerTest, ADotInADirectoryStartsTheExtensionToo) {
  WithRoots([](FakeTools&, TempDirectory& first, TempDirectory&) {
    const std::string extension = std::string(".js") + platform::kSeparator + "c";
    first.Write("resources/ORBCefRsc/mime-types.xml",
                "<t><mimeType type=\"text/javascript\" extension=\".js\"/><mimeType "
                "type=\"text/odd\" extension=\"" +
                    extension + "\"/></t>");
    first.Write("resources/a.js/c", "x");
    first.Write("resources/a.b/c", "x");
    EXPECT_EQ("text/odd", Ask("resources", "/a.js/c").mime_type);
    EXPECT_EQ("application/octet-stream", Ask("resources", "/a.b/c").mime_type);
  });
}

TEST(ORBCefLocalResourceHandlerTest, AnEmptyTypeInTheTableIsServedAsBytes) {
  WithRoots([](FakeTools&, TempDirectory& first, TempDirectory&) {
    first.Write("resources/ORBCefRsc/mime-types.xml",
                "<t><mimeType type=\"\" extension=\".e\"/></t>");
    first.Write("resources/a.e", "x");
    EXPECT_EQ("application/octet-stream", Ask("resources", "/a.e").mime_type);
  });
}

TEST(ORBCefLocalResourceHandlerTest, TheVariableForbidsCaching) {
  WithRoots([](FakeTools& tools, TempDirectory& first, TempDirectory&) {
    tools.Set("ORBCEF_NOCACHE_XORTV", "");
    first.Write("resources/a.txt", "x");
    EXPECT_EQ("no-cache", Ask("resources", "/a.txt").cache_control);
    EXPECT_EQ("no-cache", Ask("resources", "/none.txt").cache_control);
    // Read once in a process.
    tools.Unset("ORBCEF_NOCACHE_XORTV");
    EXPECT_EQ("no-cache", Ask("resources", "/a.txt").cache_control);
  });
}

TEST(ORBCefLocalResourceHandlerTest, ADirectoryIsNotFound) {
  WithRoots([](FakeTools&, TempDirectory& first, TempDirectory&) {
    first.MakeDirectory("webapps/m/sub");
    EXPECT_EQ(404, Ask("webapps", "/m/sub").status);
    EXPECT_EQ(404, Ask("webapps", "/m/").status);
  });
}

TEST(ORBCefLocalResourceHandlerTest, SkipAlwaysFails) {
  FakeTools tools;
  const CefRefPtr<ORBCefLocalResourceHandler> handler = new ORBCefLocalResourceHandler("", "");
  int64 skipped = 7;
  EXPECT_FALSE(handler->Skip(1, skipped, nullptr));
  EXPECT_EQ(-2, skipped);
}

TEST(ORBCefLocalResourceHandlerTest, TheOlderEntriesAreNotUsed) {
  FakeTools tools;
  const CefRefPtr<ORBCefLocalResourceHandler> handler = new ORBCefLocalResourceHandler("", "");
  EXPECT_FALSE(handler->ProcessRequest(nullptr, nullptr));
  int read = 7;
  char byte = 'x';
  EXPECT_FALSE(handler->ReadResponse(&byte, 1, read, nullptr));
  EXPECT_EQ(-2, read);
}

TEST(ORBCefLocalResourceHandlerTest, ReadWithoutAFileGivesNothing) {
  FakeTools tools;
  const CefRefPtr<ORBCefLocalResourceHandler> handler = new ORBCefLocalResourceHandler("", "");
  int read = 7;
  char byte = 'x';
  EXPECT_FALSE(handler->Read(&byte, 1, read, nullptr));
  EXPECT_EQ(0, read);
  EXPECT_EQ('x', byte);
}

TEST(ORBCefLocalResourceHandlerTest, OnAnotherThreadTheHeadersStayAsTheyAre) {
  fresh_process::Run([] {
    FakeTools tools;
    tools.Unset("ORBCEF_NO_TID_CHECK");
    const CefRefPtr<ORBCefLocalResourceHandler> handler = new ORBCefLocalResourceHandler("", "");
    const CefRefPtr<CefResponse> response = CefResponse::Create();
    int64 length = 7;
    CefString redirect;
    handler->GetResponseHeaders(response, length, redirect);
    EXPECT_EQ(7, length);
    EXPECT_NE(404, response->GetStatus());
  });
}

TEST(ORBCefLocalResourceHandlerTest, NoResponseIsIgnored) {
  FakeTools tools;
  const CefRefPtr<ORBCefLocalResourceHandler> handler = new ORBCefLocalResourceHandler("", "");
  int64 length = 7;
  CefString redirect;
  handler->GetResponseHeaders(nullptr, length, redirect);
  EXPECT_EQ(7, length);
}

}  // namespace
