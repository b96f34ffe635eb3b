#include "Display.h"

#include <cstdio>

#include "System.h"
#include "Tools.h"
#include "Xvfb.h"

namespace host {

struct Display::Native {
  Xvfb server;
};

Display::Display() : _native(std::make_unique<Native>()) {}

Display::~Display() = default;

bool Display::Provide(int width, int height, Tools& tools) {
  if (!ReadVariable("DISPLAY").value_or("").empty()) {
    return true;
  }
  const std::string name = _native->server.Start(width, height);
  if (name.empty()) {
    std::fprintf(stderr, "[host] no DISPLAY, and Xvfb did not start\n");
    return false;
  }
  std::printf("[host] no DISPLAY: started Xvfb %s (pid %d)\n", name.c_str(), _native->server.pid());
  tools.SetVariable("DISPLAY", name, true);
  return true;
}

}  // namespace host
