#include "Session.h"

#include <chrono>
#include <cstdio>

namespace bench {

void Session::OnStrings(void* self, const orbcefstring_c* const* strings, int32_t count) {
  auto& session = *static_cast<Session*>(self);
  for (int32_t i = 0; i < count; ++i) {
    if (session._workload->Take(*session._view, {strings[i]->data, strings[i]->length})) {
      const std::lock_guard<std::mutex> guard(session._mutex);
      session._complete = true;
      session._changed.notify_all();
    }
  }
}

void Session::OnLoadEnd() {
  const int64_t now = Now();
  const std::lock_guard<std::mutex> guard(_mutex);
  if (!_loaded) {
    _workload->Loaded(now);
    _loaded = true;
    _changed.notify_all();
  }
}

void Session::OnClosed() {
  const std::lock_guard<std::mutex> guard(_mutex);
  _closed = true;
  _changed.notify_all();
}

bool Session::Wait(const bool& flag) {
  std::unique_lock<std::mutex> lock(_mutex);
  return _changed.wait_for(lock, std::chrono::seconds(60), [&flag] { return flag; });
}

bool Session::Travel(View& view) {
  if (!Wait(_loaded)) {
    return false;
  }
  _view = &view;
  return !_workload->Begin(view) || Wait(_complete);
}

bool Session::WaitForClosed() {
  return Wait(_closed);
}

bool Session::Report() {
  const std::lock_guard<std::mutex> guard(_mutex);
  if (!_loaded) {
    std::printf("FAILED the page did not load\n");
    return false;
  }
  const std::string failure = _workload->Failure();
  if (!failure.empty()) {
    std::printf("FAILED %s\n", failure.c_str());
    return false;
  }
  for (const auto& [name, value] : _workload->Results()) {
    std::printf("RESULT %s %.3f\n", name.c_str(), value);
  }
  return true;
}

}  // namespace bench
