#include "Waker.h"

#include <poll.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <system_error>

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

struct Waker::Native {
  const int event = NewEvent();
};

Waker::Waker() : _native(std::make_unique<Native>()) {
  g_wake = _native->event;
}

Waker::~Waker() {
  signal(SIGINT, SIG_DFL);
  signal(SIGTERM, SIG_DFL);
  g_wake = -1;
  close(_native->event);
}

void Waker::Wake() {
  WakeDescriptor(_native->event);
}

void Waker::Wait(const std::vector<int>& descriptors, std::chrono::milliseconds limit) {
  std::vector<pollfd> watched = {{_native->event, POLLIN, 0}};
  for (const int descriptor : descriptors) {
    watched.push_back({descriptor, POLLIN, 0});
  }
  poll(watched.data(), watched.size(), static_cast<int>(limit.count()));
  std::uint64_t count = 0;
  // Draining an event that did not fire fails with EAGAIN, which is fine.
  [[maybe_unused]] const ssize_t taken = read(_native->event, &count, sizeof(count));
}

void Waker::CatchSignals() {
  struct sigaction action = {};
  action.sa_handler = &OnSignal;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
}

bool Waker::Interrupted() const {
  return g_interrupted;
}

}  // namespace host
