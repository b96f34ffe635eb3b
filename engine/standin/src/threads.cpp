#include "threads.h"

#include <array>
#include <condition_variable>
#include <future>
#include <map>
#include <memory>
#include <mutex>
#include <thread>

#include "orbcef_standin.h"

namespace standin {

namespace {

using Clock = std::chrono::system_clock;
constexpr int kNone = -1;
constexpr int kCount = TID_RENDERER + 1;

// Which of the engine's threads this one is.
thread_local int t_current = kNone;

class TaskThread {
 public:
  void Start(int id) {
    Open();
    _thread = std::thread([this, id] {
      t_current = id;
      Run();
    });
  }

  void Open() {
    const std::lock_guard<std::mutex> guard(_lock);
    _is_open = true;
  }

  // Nothing is taken from here on; what is due has run when this returns.
  void Stop() {
    {
      const std::lock_guard<std::mutex> guard(_lock);
      _is_stopping = true;
      _changed.notify_all();
    }
    if (_thread.joinable()) {
      _thread.join();
    }
  }

  bool Post(std::function<void()> task, std::chrono::milliseconds delay) {
    const std::lock_guard<std::mutex> guard(_lock);
    if (!_is_open) {
      return false;
    }
    _tasks.emplace(Clock::now() + delay, std::move(task));
    _changed.notify_all();
    return true;
  }

  void SetHeld(bool is_held) {
    const std::lock_guard<std::mutex> guard(_lock);
    _is_held = is_held;
    _changed.notify_all();
  }

  // Takes and runs tasks until there is none that is due.
  void RunDue() {
    std::unique_lock<std::mutex> guard(_lock);
    while (!_tasks.empty() && _tasks.begin()->first <= Clock::now()) {
      RunFirst(guard);
    }
  }

  void Close() {
    std::multimap<Clock::time_point, std::function<void()>> dropped;
    const std::lock_guard<std::mutex> guard(_lock);
    _is_open = false;
    dropped.swap(_tasks);
  }

 private:
  void Run() {
    std::unique_lock<std::mutex> guard(_lock);
    for (;;) {
      const bool is_due = !_tasks.empty() && _tasks.begin()->first <= Clock::now();
      if (is_due && !_is_held) {
        RunFirst(guard);
      } else if (_is_stopping && !is_due) {
        break;
      } else if (_is_held || _tasks.empty()) {
        _changed.wait(guard);
      } else {
        const Clock::time_point due = _tasks.begin()->first;
        _changed.wait_until(guard, due);
      }
    }
    _is_open = false;
    // Dropped on this thread, as what they hold may ask for.
    std::multimap<Clock::time_point, std::function<void()>> dropped;
    dropped.swap(_tasks);
    guard.unlock();
  }

  void RunFirst(std::unique_lock<std::mutex>& guard) {
    std::function<void()> task = std::move(_tasks.begin()->second);
    _tasks.erase(_tasks.begin());
    guard.unlock();
    task();
    task = nullptr;
    guard.lock();
  }

  std::thread _thread;
  std::mutex _lock;
  std::condition_variable _changed;
  // Guarded by _lock. Tasks of one moment keep their order.
  std::multimap<Clock::time_point, std::function<void()>> _tasks;
  bool _is_open = false;
  bool _is_held = false;
  bool _is_stopping = false;
};

std::array<TaskThread, kCount>& Threads() {
  // Never destroyed: a client may post to the end of the process.
  static auto& threads = *new std::array<TaskThread, kCount>();
  return threads;
}

bool IsThread(int id) {
  return id >= 0 && id < kCount;
}

// The first ends first: what it leaves on the others still runs.
constexpr int kBrowserThreads[] = {TID_UI,
                                   TID_FILE_BACKGROUND,
                                   TID_FILE_USER_VISIBLE,
                                   TID_FILE_USER_BLOCKING,
                                   TID_PROCESS_LAUNCHER,
                                   TID_IO};

}  // namespace

void StartThreads() {
  for (const int id : kBrowserThreads) {
    Threads()[id].Start(id);
  }
}

void StopThreads() {
  for (const int id : kBrowserThreads) {
    Threads()[id].Stop();
  }
}

bool IsOn(cef_thread_id_t id) {
  return t_current == id;
}

bool Post(cef_thread_id_t id, std::function<void()> task, std::chrono::milliseconds delay) {
  return IsThread(id) && Threads()[id].Post(std::move(task), delay);
}

bool RunOn(int id, const std::function<void()>& function) {
  if (id == ORBCEF_STANDIN_CALLER || id == t_current) {
    function();
    return true;
  }
  if (id == ORBCEF_STANDIN_STRANGER) {
    std::thread(function).join();
    return true;
  }
  const auto done = std::make_shared<std::promise<void>>();
  const bool is_posted = Post(static_cast<cef_thread_id_t>(id), [&function, done] {
    function();
    done->set_value();
  });
  if (is_posted) {
    done->get_future().wait();
  }
  return is_posted;
}

void BecomeRenderer() {
  t_current = TID_RENDERER;
  Threads()[TID_RENDERER].Open();
}

void RunRendererTasks() {
  Threads()[TID_RENDERER].RunDue();
}

void LeaveRenderer() {
  Threads()[TID_RENDERER].Close();
  t_current = kNone;
}

void HoldThread(cef_thread_id_t id) {
  if (IsThread(id)) {
    Threads()[id].SetHeld(true);
  }
}

void ResumeThread(cef_thread_id_t id) {
  if (IsThread(id)) {
    Threads()[id].SetHeld(false);
  }
}

bool Settle(cef_thread_id_t id, int milliseconds) {
  const auto done = std::make_shared<std::promise<void>>();
  return Post(id, [done] { done->set_value(); }) &&
         done->get_future().wait_until(Clock::now() + std::chrono::milliseconds(milliseconds)) ==
             std::future_status::ready;
}

}  // namespace standin
