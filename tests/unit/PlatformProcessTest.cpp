#include "platform/Process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::HasSubstr;

TEST(PlatformProcessTest, TheCommandLineBeginsWithTheProgram) {
  const std::vector<std::string> arguments = platform::CommandLine();
  ASSERT_FALSE(arguments.empty());
  EXPECT_THAT(arguments.front(), HasSubstr("orbcef_unit_tests"));
  EXPECT_THAT(platform::CommandLineText(), HasSubstr("orbcef_unit_tests"));
}

#if !defined(_WIN32)
TEST(PlatformProcessTest, AnX11ProcessIsNotDpiAwareAndHasNoModuleHandle) {
  EXPECT_FALSE(platform::IsDpiAware());
  EXPECT_EQ(nullptr, platform::ModuleHandle());
}
#endif

}  // namespace
