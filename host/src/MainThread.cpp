#include "MainThread.h"

#include <algorithm>
#include <utility>

namespace host {

MainThread::MainThread() : _thread(std::this_thread::get_id()) {}

bool MainThread::IsCurrent() const {
  return std::this_thread::get_id() == _thread;
}

bool MainThread::Post(Task task) {
  {
    const std::lock_guard<std::mutex> guard(_mutex);
    if (_closed) {
      return false;
    }
    _tasks.push_back(std::move(task));
  }
  _waker.Wake();
  return true;
}

void MainThread::Close() {
  const std::lock_guard<std::mutex> guard(_mutex);
  _closed = true;
}

void MainThread::Watch(int descriptor, Task pump) {
  _watched.push_back({descriptor, std::move(pump)});
}

void MainThread::CatchSignals() {
  _waker.CatchSignals();
}

bool MainThread::Interrupted() const {
  return _waker.Interrupted();
}

bool MainThread::RunUntil(const std::function<bool()>& done, Clock::time_point deadline) {
  for (;;) {
    for (const Watched& watched : _watched) {
      watched.pump();
    }
    RunTasks();
    if (done()) {
      return true;
    }
    if (Clock::now() >= deadline) {
      return false;
    }
    Wait(deadline);
  }
}

void MainThread::RunTasks() {
  std::vector<Task> tasks;
  {
    const std::lock_guard<std::mutex> guard(_mutex);
    tasks.swap(_tasks);
  }
  for (const Task& task : tasks) {
    task();
  }
}

void MainThread::Wait(Clock::time_point deadline) {
  using std::chrono::milliseconds;
  std::vector<int> descriptors;
  for (const Watched& watched : _watched) {
    if (watched.descriptor >= 0) {
      descriptors.push_back(watched.descriptor);
    }
  }
  const auto left = std::chrono::ceil<milliseconds>(deadline - Clock::now());
  _waker.Wait(descriptors, std::clamp(left, milliseconds(0), milliseconds(60'000)));
}

}  // namespace host
