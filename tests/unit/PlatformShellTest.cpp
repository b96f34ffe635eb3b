#include "platform/Shell.h"

#if !defined(_WIN32)

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include <gtest/gtest.h>

#include "TempDirectory.h"

namespace {

// An opener on PATH that writes its process and its arguments into a pipe.
class PlatformShellTest : public testing::Test {
 protected:
  PlatformShellTest() : _old_path(std::getenv("PATH")) {
    const std::string fifo = _directory.Join("fifo");
    EXPECT_EQ(0, mkfifo(fifo.c_str(), 0600));
    _pipe = open(fifo.c_str(), O_RDWR | O_CLOEXEC);
    EXPECT_GE(_pipe, 0);
  }
  ~PlatformShellTest() override {
    close(_pipe);
    setenv("PATH", _old_path.c_str(), 1);
  }

  void InstallOpener() {
    const std::string opener =
        _directory.Write("xdg-open", "#!/bin/sh\n{ printf '%s\\n' \"$$\" \"$#\" \"$1\" end; } > '" +
                                         _directory.Join("fifo") + "'\n");
    std::filesystem::permissions(opener, std::filesystem::perms::owner_all);
    setenv("PATH", (_directory.Path() + ":" + _old_path).c_str(), 1);
  }
  void RemoveAllOpeners() { setenv("PATH", _directory.Path().c_str(), 1); }

  // Reads what the opener wrote; empty after ten seconds.
  std::string Read() {
    std::string text;
    pollfd wait{_pipe, POLLIN, 0};
    while (text.find("\nend\n") == std::string::npos) {
      if (poll(&wait, 1, 10000) <= 0)
        return std::string();
      char buffer[256];
      const ssize_t count = read(_pipe, buffer, sizeof(buffer));
      if (count > 0)
        text.append(buffer, static_cast<std::size_t>(count));
    }
    return text;
  }

 private:
  TempDirectory _directory;
  const std::string _old_path;
  int _pipe = -1;
};

// A zombie still exists for kill(), so this waits for the reaping.
bool IsReaped(pid_t process) {
  const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (kill(process, 0) == 0) {
    if (std::chrono::steady_clock::now() > limit)
      return false;
    std::this_thread::yield();
  }
  return errno == ESRCH;
}

TEST_F(PlatformShellTest, TheOpenerGetsTheTargetAsOneArgumentAndIsReaped) {
  InstallOpener();
  const std::string target = "http://a/b?c=d&e=$(touch /tmp/x);'\"`*` end";
  ASSERT_TRUE(platform::OpenWithDesktop(target));
  const std::string text = Read();
  const std::string::size_type line = text.find('\n');
  ASSERT_NE(std::string::npos, line);
  EXPECT_EQ("1\n" + target + "\nend\n", text.substr(line + 1));
  EXPECT_TRUE(IsReaped(std::stoi(text)));
}

TEST_F(PlatformShellTest, WithoutAnOpenerTheAnswerIsFalse) {
  RemoveAllOpeners();
  EXPECT_FALSE(platform::OpenWithDesktop("http://a/"));
}

TEST_F(PlatformShellTest, NothingAndOptionsAreRefused) {
  InstallOpener();
  EXPECT_FALSE(platform::OpenWithDesktop(""));
  EXPECT_FALSE(platform::OpenWithDesktop("--version"));
}

}  // namespace

#endif  // !defined(_WIN32)
