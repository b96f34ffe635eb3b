// A virtual X server of the host's own, for machines without a display. It picks a free display
// number by itself and ends with the object, or with the process if that dies. Main thread only.
#pragma once

#include <sys/types.h>

#include <string>

namespace host {

class Xvfb {
 public:
  Xvfb() = default;
  ~Xvfb();
  Xvfb(const Xvfb&) = delete;
  Xvfb& operator=(const Xvfb&) = delete;

  // Starts the server with one screen of at least this size and waits until it answers, at most 20
  // seconds. Returns its display name, for instance ":5", empty if it did not start.
  std::string Start(int width, int height);

  pid_t pid() const { return _pid; }

 private:
  pid_t _pid = -1;
};

}  // namespace host
