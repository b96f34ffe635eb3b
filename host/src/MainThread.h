// The host's main thread: its queue of tasks, its timers and the descriptors that it watches.
//
// The thread that constructs the object is the main thread; there is one object in a process and
// `main` owns it. `Post`, `IsCurrent` and `Close` may be called on any thread, all else on the main
// thread only.
#pragma once

#include <chrono>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "Waker.h"

namespace host {

class MainThread {
 public:
  using Clock = std::chrono::steady_clock;
  using Task = std::function<void()>;

  MainThread();
  MainThread(const MainThread&) = delete;
  MainThread& operator=(const MainThread&) = delete;

  bool IsCurrent() const;

  // Runs `task` later on the main thread, in the order of the calls. False once the queue is
  // closed.
  bool Post(Task task);

  // Takes no more tasks; those that wait still run in the next turn of the loop.
  void Close();

  // Calls `pump` in each turn of the loop, and wakes the loop when `descriptor` can be read; -1 is
  // no descriptor.
  void Watch(int descriptor, Task pump);

  // Makes an interrupt of the user end the loop's waits and show in `Interrupted`. The engine
  // resets the handlers when it starts: call this again after its start.
  void CatchSignals();
  bool Interrupted() const;

  // Runs tasks and pumps until `done` answers true, and then returns true; false at `deadline`.
  bool RunUntil(const std::function<bool()>& done, Clock::time_point deadline);

 private:
  void RunTasks();
  void Wait(Clock::time_point deadline);

  struct Watched {
    int descriptor;
    Task pump;
  };

  const std::thread::id _thread;
  Waker _waker;
  std::vector<Watched> _watched;

  std::mutex _mutex;
  // Guarded by `_mutex`.
  std::vector<Task> _tasks;
  bool _closed = false;
};

}  // namespace host
