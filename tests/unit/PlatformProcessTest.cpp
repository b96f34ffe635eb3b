#include "platform/Process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Environment.h"

#if defined(_WIN32)
#include <windows.h>

#include <thread>

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

// A command interpreter, which runs until its input ends.
class PlatformChildTest : public testing::Test {
 protected:
  PlatformChildTest() {
    SECURITY_ATTRIBUTES inherited{sizeof(inherited), nullptr, TRUE};
    HANDLE input = nullptr;
    EXPECT_TRUE(CreatePipe(&input, &writer, &inherited, 0));
    SetHandleInformation(writer, HANDLE_FLAG_INHERIT, 0);
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = input;
    PROCESS_INFORMATION made{};
    wchar_t line[] = L"cmd.exe";
    EXPECT_TRUE(CreateProcessW(nullptr, line, nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                               &made));
    CloseHandle(made.hThread);
    CloseHandle(input);
    child = made.hProcess;
  }
  ~PlatformChildTest() override {
    EndInput();
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(child, 10'000));
    CloseHandle(child);
  }

  void EndInput() {
    if (writer)
      CloseHandle(writer);
    writer = nullptr;
  }
  bool IsRunning() const { return WaitForSingleObject(child, 0) == WAIT_TIMEOUT; }
  DWORD ExitCode() const {
    DWORD code = STILL_ACTIVE;
    GetExitCodeProcess(child, &code);
    return code;
  }

  HANDLE writer = nullptr;
  HANDLE child = nullptr;
};

TEST_F(PlatformChildTest, AChildThatDoesNotEndIsEnded) {
  platform::EndChildren("CMD.exe", std::chrono::milliseconds(200));
  EXPECT_FALSE(IsRunning());
  EXPECT_EQ(1u, ExitCode());
}

TEST_F(PlatformChildTest, AChildThatEndsHasItsOwnEnd) {
  std::thread other([this] { EndInput(); });
  platform::EndChildren("cmd.exe", std::chrono::seconds(10));
  EXPECT_FALSE(IsRunning());
  EXPECT_EQ(0u, ExitCode());
  other.join();
}

TEST_F(PlatformChildTest, AChildOfAnotherProgramIsLeftAlone) {
  platform::EndChildren("command.exe", std::chrono::milliseconds(0));
  EXPECT_TRUE(IsRunning());
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
