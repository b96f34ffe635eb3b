#include "Xvfb.h"

#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>

namespace host {
namespace {

constexpr int kStartLimitMs = 20'000;

// Reads the line with the display number that the server writes when it is ready.
std::string ReadDisplayNumber(int descriptor) {
  std::string line;
  for (;;) {
    pollfd ready = {descriptor, POLLIN, 0};
    char byte = 0;
    if (poll(&ready, 1, kStartLimitMs) <= 0 || read(descriptor, &byte, 1) != 1) {
      return {};
    }
    if (byte == '\n') {
      return line;
    }
    line += byte;
  }
}

}  // namespace

Xvfb::~Xvfb() {
  if (_pid > 0) {
    kill(_pid, SIGTERM);
    waitpid(_pid, nullptr, 0);
  }
}

std::string Xvfb::Start(int width, int height) {
  int ends[2];
  if (pipe(ends) != 0) {
    return {};
  }
  const std::string descriptor = std::to_string(ends[1]);
  const std::string screen =
      std::to_string(std::max(width, 1280)) + "x" + std::to_string(std::max(height, 1024)) + "x24";
  const pid_t parent = getpid();
  _pid = fork();
  if (_pid == 0) {
    // The server must not outlive a host that is killed, nor hear the terminal's interrupt before
    // the host has closed its view.
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    setpgid(0, 0);
    if (getppid() != parent) {
      _exit(127);
    }
    close(ends[0]);
    execlp("Xvfb", "Xvfb", "-displayfd", descriptor.c_str(), "-screen", "0", screen.c_str(),
           "-nolisten", "tcp", "-noreset", static_cast<char*>(nullptr));
    _exit(127);
  }
  close(ends[1]);
  const std::string number = _pid > 0 ? ReadDisplayNumber(ends[0]) : std::string();
  close(ends[0]);
  return number.empty() ? std::string() : ":" + number;
}

}  // namespace host
