// One run of a workload on one view: waits for the engine's events, hands the page's strings to
// the workload and prints its results.
//
// The main thread calls all of it, except the three `On` functions, which the engine's threads
// call; `OnStrings` comes on one thread at a time.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>

#include "Bench.h"
#include "Workload.h"
#include "orbcefrecords.h"

namespace bench {

class Session {
 public:
  explicit Session(const Options& options) : _workload(Workload::Make(options)) {}

  // The C callback that both programs end in.
  static void OnStrings(void* self, const orbcefstring_c* const* strings, int32_t count);
  void OnLoadEnd();
  void OnClosed();

  // Waits for the page, and then for the workload to end. False if either took too long.
  bool Travel(View& view);
  bool WaitForClosed();

  // Prints the measured values, or what went wrong. Answers whether all was well.
  bool Report();

 private:
  bool Wait(const bool& flag);

  const std::unique_ptr<Workload> _workload;
  // The page's strings come after the main thread has begun, on another thread.
  View* _view = nullptr;
  std::mutex _mutex;
  std::condition_variable _changed;
  // guarded by _mutex
  bool _loaded = false;
  bool _complete = false;
  bool _closed = false;
};

}  // namespace bench
