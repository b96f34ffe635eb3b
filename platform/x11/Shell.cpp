#include "platform/Shell.h"

#include <signal.h>
#include <spawn.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <thread>

extern char** environ;

namespace platform {

namespace {

constexpr char kOpener[] = "xdg-open";

void Reap(pid_t child) {
  while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
  }
}

// The opener must not inherit the blocked and ignored signals of the thread that happens to start
// it.
class SpawnAttributes {
 public:
  SpawnAttributes() {
    posix_spawnattr_init(&_attributes);
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&_attributes, &none);
    sigset_t defaults;
    sigemptyset(&defaults);
    sigaddset(&defaults, SIGPIPE);
    sigaddset(&defaults, SIGCHLD);
    posix_spawnattr_setsigdefault(&_attributes, &defaults);
    posix_spawnattr_setflags(&_attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  ~SpawnAttributes() { posix_spawnattr_destroy(&_attributes); }
  SpawnAttributes(const SpawnAttributes&) = delete;
  SpawnAttributes& operator=(const SpawnAttributes&) = delete;

  const posix_spawnattr_t* Get() const { return &_attributes; }

 private:
  posix_spawnattr_t _attributes;
};

}  // namespace

bool OpenWithDesktop(const std::string& target, DesktopTarget) {
  if (target.empty() || target.front() == '-')
    return false;

  std::string opener = kOpener;
  std::string argument = target;
  char* const arguments[] = {opener.data(), argument.data(), nullptr};
  const SpawnAttributes attributes;
  pid_t child = 0;
  if (posix_spawnp(&child, kOpener, nullptr, attributes.Get(), arguments, environ) != 0)
    return false;

  try {
    std::thread(Reap, child).detach();
  } catch (const std::system_error&) {
    // Without a thread the wait is done here: late is better than a zombie.
    Reap(child);
  }
  return true;
}

}  // namespace platform
