// What both programs of a bench share: options, clock, the host window, and the receiver that
// counts, checks and times the strings. The main thread calls all of it, except
// `Receiver::OnStrings`, which any one thread calls at a time.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>

#include "orbcefrecords.h"

namespace bench {

// Nanoseconds of the system's monotonic clock, the same for all processes.
int64_t Now();

struct Options {
  std::string workload;
  // When the runner started this process.
  int64_t started = 0;
  // The installation roots, separated by ";".
  std::string roots;
  std::string profile;
  int count = 10000;
  int length = 64;
};

// Exits with a usage line when the command line is wrong.
Options ParseOptions(int argc, char** argv);

// A plain mapped window of 800 by 600; 0 without a display.
unsigned long OpenWindow();

constexpr char kPageUrl[] = "xortv://webapps/Bench/index.html";

// Events of the engine's threads that the main thread waits for.
class Receiver {
 public:
  explicit Receiver(const Options& options) : _options(options) {}

  // The C callback that both programs end in.
  static void OnStrings(void* self, const orbcefstring_c* const* strings, int32_t count);
  void OnLoadEnd();
  void OnClosed();

  // Each waits up to 30 seconds and answers whether the event came.
  bool WaitForLoadEnd();
  bool WaitForStrings();
  bool WaitForClosed();

  void BeginSending();
  // Prints the measured value, or what was lost or out of order. Answers whether all was well.
  bool Report();

 private:
  bool Wait(const bool& flag);
  void Take(const orbcefstring_c& text);

  const Options& _options;
  std::mutex _mutex;
  std::condition_variable _changed;
  // guarded by _mutex
  bool _loaded = false;
  bool _complete = false;
  bool _closed = false;
  int64_t _load_end = 0;
  int64_t _send_begin = 0;
  int64_t _send_end = 0;
  int _received = 0;
  int _wrong = 0;
};

}  // namespace bench
