#include "Workload.h"

#include <X11/Xlib.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>

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
  if ((options.workload != "start" && options.workload != "send") || options.roots.empty() ||
      options.profile.empty() || options.started <= 0) {
    std::fprintf(stderr,
                 "usage: %s --workload start|send --roots DIR[;DIR] --profile DIR --started NS\n",
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

void Receiver::OnStrings(void* self, const orbcefstring_c* const* strings, int32_t count) {
  auto& receiver = *static_cast<Receiver*>(self);
  for (int32_t i = 0; i < count; ++i) {
    receiver.Take(*strings[i]);
  }
}

void Receiver::Take(const orbcefstring_c& text) {
  char expected[32];
  const int digits = std::snprintf(expected, sizeof(expected), "%d", _received);
  const bool right = text.length == static_cast<uint64_t>(_options.length) &&
                     std::memcmp(text.data, expected, static_cast<size_t>(digits)) == 0 &&
                     (text.length == static_cast<uint64_t>(digits) || text.data[digits] == '.');
  const std::lock_guard<std::mutex> guard(_mutex);
  _wrong += right ? 0 : 1;
  if (++_received == _options.count) {
    _send_end = Now();
    _complete = true;
    _changed.notify_all();
  }
}

void Receiver::OnLoadEnd() {
  const int64_t now = Now();
  const std::lock_guard<std::mutex> guard(_mutex);
  if (!_loaded) {
    _load_end = now;
    _loaded = true;
    _changed.notify_all();
  }
}

void Receiver::OnClosed() {
  const std::lock_guard<std::mutex> guard(_mutex);
  _closed = true;
  _changed.notify_all();
}

bool Receiver::Wait(const bool& flag) {
  std::unique_lock<std::mutex> lock(_mutex);
  return _changed.wait_for(lock, std::chrono::seconds(30), [&flag] { return flag; });
}

bool Receiver::WaitForLoadEnd() {
  return Wait(_loaded);
}
bool Receiver::WaitForStrings() {
  return Wait(_complete);
}
bool Receiver::WaitForClosed() {
  return Wait(_closed);
}

void Receiver::BeginSending() {
  const std::lock_guard<std::mutex> guard(_mutex);
  _send_begin = Now();
}

bool Receiver::Report() {
  const std::lock_guard<std::mutex> guard(_mutex);
  if (!_loaded) {
    std::printf("FAILED the page did not load\n");
    return false;
  }
  if (_options.workload == "start") {
    std::printf("RESULT %.3f\n", static_cast<double>(_load_end - _options.started) / 1e6);
    return true;
  }
  if (_received != _options.count || _wrong != 0) {
    std::printf("FAILED %d of %d strings came, %d of them wrong or out of order\n", _received,
                _options.count, _wrong);
    return false;
  }
  std::printf("RESULT %.0f\n", static_cast<double>(_options.count) * 1e9 /
                                   static_cast<double>(_send_end - _send_begin));
  return true;
}

}  // namespace bench
