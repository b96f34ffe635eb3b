#include "ORBCefPluginFactory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CapturedLog.h"
#include "Environment.h"
#include "FakeTools.h"
#include "FreshProcess.h"
#include "ORBCefEngine.h"
#include "ORBCefToolsAccessor.h"
#include "include/cef_version.h"

namespace {

using testing::HasSubstr;

// The table, and what the factory writes to standard output.
struct Answer {
  void* table = nullptr;
  std::string output;
};

Answer Ask(uint32_t major, int32_t minor, const char* name) {
  Answer answer;
  testing::internal::CaptureStdout();
  answer.table = orbcef_pluginfactory(major, minor, name);
  answer.output = testing::internal::GetCapturedStdout();
  return answer;
}

void SetLogVariable(const char* value) {
  SetEnvironment("ORBCEF_LOG", value);
}

const std::string kInfoLine = std::string("[info] orbcefglobal_c(1,0) Cef: ") + CEF_VERSION + "\n";

TEST(ORBCefPluginFactoryTest, TheTableIsGivenForTheVersionAndForLowerMinors) {
  void* const table = ORBCefGlobalTable();
  EXPECT_EQ(table, Ask(1, 0, "orbcefglobal_c").table);
  EXPECT_EQ(table, Ask(1, -5, "orbcefglobal_c").table);
}

TEST(ORBCefPluginFactoryTest, AnotherMajorIsRefusedInWords) {
  const Answer answer = Ask(2, 0, "orbcefglobal_c");
  EXPECT_EQ(nullptr, answer.table);
  EXPECT_EQ("[error] acces to CEF plugin refused due to different plugin major version : 1 vs 2\n",
            answer.output);
  EXPECT_EQ(
      "[error] acces to CEF plugin refused due to different plugin major version : 1 vs "
      "4294967295\n",
      Ask(4294967295u, 0, "orbcefglobal_c").output);
}

TEST(ORBCefPluginFactoryTest, AHigherMinorIsRefusedInWords) {
  const Answer answer = Ask(1, 1, "orbcefglobal_c");
  EXPECT_EQ(nullptr, answer.table);
  EXPECT_EQ("[error] acces to CEF plugin refused due to higher plugin minor version : 0 vs 1\n",
            answer.output);
}

TEST(ORBCefPluginFactoryTest, TheMajorIsLookedAtBeforeTheMinorAndTheName) {
  EXPECT_THAT(Ask(0, 9, "other").output, HasSubstr("major version : 1 vs 0\n"));
  EXPECT_THAT(Ask(1, 9, "other").output, HasSubstr("minor version : 0 vs 9\n"));
}

TEST(ORBCefPluginFactoryTest, AnyOtherNameIsRefusedWithoutAWord) {
  for (const char* name : {"orbcefglobal_c ", "orbcefglobal", "ORBCEFGLOBAL_C", ""}) {
    const Answer answer = Ask(1, 0, name);
    EXPECT_EQ(nullptr, answer.table) << name;
    EXPECT_EQ("", answer.output) << name;
  }
  EXPECT_EQ(nullptr, Ask(1, 0, nullptr).table);
}

TEST(ORBCefPluginFactoryTest, TheVersionsArePrintedOnceAndNotByARefusal) {
  fresh_process::Run([] {
    SetLogVariable(nullptr);
    EXPECT_EQ("", Ask(1, 0, "other").output);
    Ask(2, 0, "orbcefglobal_c");
    EXPECT_EQ(kInfoLine, Ask(1, 0, "orbcefglobal_c").output);
    EXPECT_EQ("", Ask(1, 0, "orbcefglobal_c").output);
  });
}

TEST(ORBCefPluginFactoryTest, WithTheLogVariableTheExpectedFileContentIsPrintedToo) {
  fresh_process::Run([] {
    // Before any tools are set.
    SetLogVariable("1");
    EXPECT_EQ(kInfoLine +
                  "[info] Please check if content of code\\CEF\\cef.txt actually includes :\n"
                  "CEF_VERSION_MAJOR " +
                  std::to_string(CEF_VERSION_MAJOR) + "\nPLUGIN_INSTALLED 1 0 ORBCefWrapperMT\n",
              Ask(1, 0, "orbcefglobal_c").output);
  });
}

TEST(ORBCefPluginFactoryTest, TheEngineVersionIsTheFullOne) {
  EXPECT_THAT(kInfoLine, HasSubstr(CEF_VERSION_MAJOR == 104 ? "104.0." : "108.4.13+"));
  EXPECT_THAT(kInfoLine, HasSubstr("+chromium-"));
}

TEST(ORBCefGlobalTableTest, EverySlotIsFilled) {
  const orbcefglobal_c* table = ORBCefGlobalTable();
  EXPECT_NE(nullptr, table->create_browser);
  EXPECT_NE(nullptr, table->create_http);
  EXPECT_NE(nullptr, table->init_engine);
  EXPECT_NE(nullptr, table->shutdown_engine);
  EXPECT_NE(nullptr, table->execute_subprocess);
  EXPECT_NE(nullptr, table->set_tools);
  EXPECT_NE(nullptr, table->is_available);
  EXPECT_NE(nullptr, table->reserved);
}

TEST(ORBCefGlobalTableTest, TheMarkerIsOneAndTheReservedSlotZero) {
  orbcefglobal_c* table = ORBCefGlobalTable();
  EXPECT_EQ(1u, MERIDEX_SOFTWARE_KIT2_INTERNAL_ORBCefWrapperMT());
  EXPECT_EQ(1u, table->is_available(table));
  EXPECT_EQ(0u, table->reserved(table));
  // The table pointer is ignored.
  EXPECT_EQ(1u, table->is_available(nullptr));
}

TEST(ORBCefGlobalTableTest, SetToolsStoresTheTable) {
  orbcefglobal_c* table = ORBCefGlobalTable();
  FakeTools tools;
  _orbceftools_c host = FakeTools::Table();
  host.get_release_level = []() -> int32_t { return 99; };
  table->set_tools(table, &host);
  EXPECT_EQ(99, ORBCefToolsAccessor::GetOrbisReleaseLevelInfo());
}

TEST(ORBCefGlobalTableTest, ShutdownBeforeInitDoesNothing) {
  fresh_process::Run([] {
    orbcefglobal_c* table = ORBCefGlobalTable();
    table->shutdown_engine(table);
    EXPECT_FALSE(ORBCefEngine::IsInitialized());
  });
}

TEST(ORBCefGlobalTableTest, CreateHttpSaysThatRequestsAreNotAvailable) {
  orbcefglobal_c* table = ORBCefGlobalTable();
  orbcefhttp_c* request = reinterpret_cast<orbcefhttp_c*>(table);
  const std::string log = CapturedLog([&] { request = table->create_http(table); });
  EXPECT_EQ(nullptr, request);
  EXPECT_THAT(log, HasSubstr("ERROR"));
  EXPECT_THAT(log, HasSubstr("HTTP requests are not available in this build.\n"));
}

}  // namespace
