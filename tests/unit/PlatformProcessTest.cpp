#include "platform/Process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Environment.h"

#if defined(_WIN32)
#include <windows.h>

#include "FreshProcess.h"
#endif

namespace {

using testing::HasSubstr;

constexpr char kVariable[] = "ORBCEF_UNIT_TEST_VARIABLE";

TEST(PlatformProcessTest, TheCommandLineBeginsWithTheProgram) {
  const std::vector<std::string> arguments = platform::CommandLine();
  ASSERT_FALSE(arguments.empty());
  EXPECT_THAT(arguments.front(), HasSubstr("orbcef_unit_tests"));
  EXPECT_THAT(platform::CommandLineText(), HasSubstr("orbcef_unit_tests"));
}

TEST(PlatformProcessTest, TheEnvironmentIsTheProcesssOwn) {
  const char* path = platform::GetEnvironment("PATH");
  ASSERT_NE(nullptr, path);
  EXPECT_STRNE("", path);
  EXPECT_EQ(nullptr, platform::GetEnvironment("ORBCEF_NO_SUCH_VARIABLE"));
}

TEST(PlatformProcessTest, AnEmptyVariableIsSet) {
  SetEnvironment(kVariable, "");
  EXPECT_STREQ("", platform::GetEnvironment(kVariable));
  SetEnvironment(kVariable, nullptr);
  EXPECT_EQ(nullptr, platform::GetEnvironment(kVariable));
}

TEST(PlatformProcessTest, VariablesAreUtf8) {
  SetEnvironment(kVariable, "caf\xc3\xa9 \xe6\x97\xa5\xe6\x9c\xac");
  EXPECT_STREQ("caf\xc3\xa9 \xe6\x97\xa5\xe6\x9c\xac", platform::GetEnvironment(kVariable));
  SetEnvironment(kVariable, nullptr);
}

TEST(PlatformProcessTest, ALongValueComesWhole) {
  const std::string value(5000, 'x');
  SetEnvironment(kVariable, value.c_str());
  EXPECT_EQ(value, platform::GetEnvironment(kVariable));
  SetEnvironment(kVariable, nullptr);
}

#if defined(_WIN32)
TEST(PlatformProcessTest, TheModuleHandleIsThatOfTheProgram) {
  EXPECT_EQ(GetModuleHandleW(nullptr), platform::ModuleHandle());
}

TEST(PlatformProcessTest, AProcessIsDpiAwareOnceItSaysSo) {
  fresh_process::Run([] {
    ASSERT_TRUE(SetProcessDPIAware());
    EXPECT_TRUE(platform::IsDpiAware());
  });
}
#else
TEST(PlatformProcessTest, AnX11ProcessIsNotDpiAwareAndHasNoModuleHandle) {
  EXPECT_FALSE(platform::IsDpiAware());
  EXPECT_EQ(nullptr, platform::ModuleHandle());
}
#endif

}  // namespace
