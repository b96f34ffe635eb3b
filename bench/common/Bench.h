// What both programs of a bench share: the options, the clock and the host window.
#pragma once

#include <cstdint>
#include <string>

namespace bench {

constexpr char kPageUrl[] = "xortv://webapps/Bench/index.html";

// Nanoseconds of the system's monotonic clock, the same for all processes.
int64_t Now();

struct Options {
  std::string workload;
  // When the runner started this process.
  int64_t started = 0;
  // The installation roots, separated by ";".
  std::string roots;
  std::string profile;
};

// Exits with a usage line when the command line is wrong.
Options ParseOptions(int argc, char** argv);

// A plain mapped window of 800 by 600; 0 without a display.
unsigned long OpenWindow();

}  // namespace bench
