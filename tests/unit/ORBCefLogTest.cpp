#include "ORBCefLog.h"

#include <cstdint>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CapturedLog.h"

namespace counted {

int g_appended = 0;

// A part of a line that counts how often it is put into one.
struct Part {};

void Append(std::string& line, const Part&) {
  ++g_appended;
  line += "counted";
}

}  // namespace counted

namespace {

using testing::AllOf;
using testing::HasSubstr;

TEST(ORBCefLogTest, PutsAllKindsOfPartsIntoOneLine) {
  const std::string log = CapturedLog([] {
    ORBCefLog::Info(std::string("string "), std::string_view("view "), "literal ",
                    CefString("engine \xC3\xA4 "), 7, ' ', std::int64_t{-9000000000}, 'c',
                    static_cast<unsigned>(8));
  });
  EXPECT_THAT(log, HasSubstr("string view literal engine \xC3\xA4 7 -9000000000c8\n"));
}

TEST(ORBCefLogTest, ANullTextCountsAsEmpty) {
  const char* nothing = nullptr;
  EXPECT_THAT(CapturedLog([&] { ORBCefLog::Error("a", nothing, "b"); }), HasSubstr("ab\n"));
}

TEST(ORBCefLogTest, EachSeverityIsNamedByTheEngine) {
  EXPECT_THAT(CapturedLog([] { ORBCefLog::Info("one"); }),
              AllOf(HasSubstr("INFO"), HasSubstr("one")));
  EXPECT_THAT(CapturedLog([] { ORBCefLog::Warning("two"); }),
              AllOf(HasSubstr("WARNING"), HasSubstr("two")));
  EXPECT_THAT(CapturedLog([] { ORBCefLog::Error("three"); }),
              AllOf(HasSubstr("ERROR"), HasSubstr("three")));
}

TEST(ORBCefLogTest, BuildsNothingForASeverityThatIsNotAdmitted) {
  // Below the least severity of an engine that has not been told another one.
  const auto verbose = static_cast<ORBCefLog::Severity>(-1);
  ASSERT_FALSE(ORBCefLog::IsAdmitted(verbose));
  counted::g_appended = 0;
  EXPECT_EQ("", CapturedLog([&] { ORBCefLog::Line(verbose, counted::Part()); }));
  EXPECT_EQ(0, counted::g_appended);

  ASSERT_TRUE(ORBCefLog::IsAdmitted(ORBCefLog::kInfo));
  EXPECT_THAT(CapturedLog([] { ORBCefLog::Info(counted::Part()); }), HasSubstr("counted"));
  EXPECT_EQ(1, counted::g_appended);
}

TEST(ORBCefLogTest, LinesAboutAViewNameItsProcessAndBrowser) {
  EXPECT_THAT(CapturedLog([] { ORBCefLog::BrowserInfo(12, "text"); }),
              AllOf(HasSubstr("INFO"), HasSubstr("[Browser Process] Browser #12 - text\n")));
  EXPECT_THAT(CapturedLog([] { ORBCefLog::BrowserWarning(12, "text"); }),
              AllOf(HasSubstr("WARNING"), HasSubstr("[Browser Process] Browser #12 - text\n")));
  EXPECT_THAT(CapturedLog([] { ORBCefLog::BrowserError(12, "text"); }),
              AllOf(HasSubstr("ERROR"), HasSubstr("[Browser Process] Browser #12 - text\n")));
  EXPECT_THAT(CapturedLog([] { ORBCefLog::RendererInfo(3, "text"); }),
              AllOf(HasSubstr("INFO"), HasSubstr("[Renderer Process] Browser #3 - text\n")));
  EXPECT_THAT(CapturedLog([] { ORBCefLog::RendererWarning(3, "text"); }),
              AllOf(HasSubstr("WARNING"), HasSubstr("[Renderer Process] Browser #3 - text\n")));
  EXPECT_THAT(CapturedLog([] { ORBCefLog::RendererError(3, "text"); }),
              AllOf(HasSubstr("ERROR"), HasSubstr("[Renderer Process] Browser #3 - text\n")));
}

}  // namespace
