#include "MainThread.h"

#include <poll.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <system_error>
#include <utility>

namespace host {
namespace {

// Read in a signal handler, so plain lock-free atomics.
std::atomic<int> g_wake{-1};
std::atomic<bool> g_interrupted{false};

void WakeDescriptor(int descriptor) {
  const std::uint64_t one = 1;
  // A full counter already wakes the reader, so a failed write needs no answer.
  [[maybe_unused]] const ssize_t written = write(descriptor, &one, sizeof(one));
}

void OnSignal(int) {
  g_interrupted = true;
  WakeDescriptor(g_wake);
}

int NewEvent() {
  const int descriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  if (descriptor < 0) {
    throw std::system_error(errno, std::generic_category(), "eventfd");
  }
  return descriptor;
}

}  // namespace

MainThread::MainThread() : _thread(std::this_thread::get_id()), _wake(NewEvent()) {
  g_wake = _wake;
}

MainThread::~MainThread() {
  signal(SIGINT, SIG_DFL);
  signal(SIGTERM, SIG_DFL);
  g_wake = -1;
  close(_wake);
}

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
  WakeDescriptor(_wake);
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
  struct sigaction action = {};
  action.sa_handler = &OnSignal;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
}

bool MainThread::Interrupted() const {
  return g_interrupted;
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
  std::vector<pollfd> descriptors = {{_wake, POLLIN, 0}};
  for (const Watched& watched : _watched) {
    descriptors.push_back({watched.descriptor, POLLIN, 0});
  }
  const auto left = std::chrono::ceil<milliseconds>(deadline - Clock::now());
  const auto limit = std::clamp(left, milliseconds(0), milliseconds(60'000));
  poll(descriptors.data(), descriptors.size(), static_cast<int>(limit.count()));
  std::uint64_t count = 0;
  // Draining an event that did not fire fails with EAGAIN, which is fine.
  [[maybe_unused]] const ssize_t taken = read(_wake, &count, sizeof(count));
}

}  // namespace host
