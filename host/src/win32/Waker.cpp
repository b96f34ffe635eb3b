#include "Waker.h"

#include <windows.h>

#include <atomic>
#include <system_error>

namespace host {
namespace {

// Both are used on the thread that the system makes for an interrupt.
std::atomic<HANDLE> g_wake{nullptr};
std::atomic<bool> g_interrupted{false};

BOOL WINAPI OnInterrupt(DWORD) {
  g_interrupted = true;
  SetEvent(g_wake);
  return TRUE;
}

HANDLE NewEvent() {
  const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  if (!event) {
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), "event");
  }
  return event;
}

}  // namespace

struct Waker::Native {
  const HANDLE event = NewEvent();
};

Waker::Waker() : _native(std::make_unique<Native>()) {
  g_wake = _native->event;
}

Waker::~Waker() {
  SetConsoleCtrlHandler(&OnInterrupt, FALSE);
  g_wake = nullptr;
  CloseHandle(_native->event);
}

void Waker::Wake() {
  SetEvent(_native->event);
}

void Waker::Wait(const std::vector<int>&, std::chrono::milliseconds limit) {
  MsgWaitForMultipleObjectsEx(1, &_native->event, static_cast<DWORD>(limit.count()), QS_ALLINPUT,
                              MWMO_INPUTAVAILABLE);
}

void Waker::CatchSignals() {
  // A handler that is there already must not come twice.
  SetConsoleCtrlHandler(&OnInterrupt, FALSE);
  SetConsoleCtrlHandler(&OnInterrupt, TRUE);
}

bool Waker::Interrupted() const {
  return g_interrupted;
}

}  // namespace host
