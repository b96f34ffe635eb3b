#include "Bench.h"

#include <X11/Xlib.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>

#include "Workload.h"

namespace bench {

int64_t Now() {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(
             std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

Options ParseOptions(int argc, char** argv) {
  Options options;
  std::map<std::string, std::string> values;
  for (int i = 1; i + 1 < argc; i += 2) {
    values[argv[i]] = argv[i + 1];
  }
  options.workload = values["--workload"];
  options.roots = values["--roots"];
  options.profile = values["--profile"];
  options.started = std::atoll(values["--started"].c_str());
  if (!Workload::Make(options) || options.roots.empty() || options.profile.empty() ||
      options.started <= 0) {
    std::fprintf(stderr, "usage: %s --workload NAME --roots DIR[;DIR] --profile DIR --started NS\n",
                 argv[0]);
    std::exit(2);
  }
  return options;
}

unsigned long OpenWindow() {
  Display* const display = XOpenDisplay(nullptr);
  if (!display) {
    return 0;
  }
  const Window window =
      XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 800, 600, 0, 0, 0xffffff);
  XMapWindow(display, window);
  XSync(display, False);
  return window;
}

}  // namespace bench
