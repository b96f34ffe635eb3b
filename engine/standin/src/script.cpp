#include "script.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <map>
#include <mutex>
#include <vector>

#include "audit.h"
#include "orbcef_standin.h"
#include "threads.h"

namespace standin {

namespace {

struct Script {
  std::mutex lock;
  std::condition_variable changed;
  // Guarded by lock.
  std::map<std::string, int> faults;
  std::map<std::string, std::vector<std::string>> events;
};

Script& TheScript() {
  // Never destroyed: engine threads may come here to the end of the process.
  static Script& script = *new Script();
  return script;
}

}  // namespace

bool TakeFault(const char* operation) {
  Script& script = TheScript();
  const std::lock_guard<std::mutex> guard(script.lock);
  const auto found = script.faults.find(operation);
  if (found == script.faults.end() || found->second == 0) {
    return false;
  }
  if (found->second > 0) {
    --found->second;
  }
  return true;
}

void Note(const char* event, const std::string& text) {
  Script& script = TheScript();
  const std::lock_guard<std::mutex> guard(script.lock);
  script.events[event].push_back(text);
  script.changed.notify_all();
}

}  // namespace standin

using standin::TheScript;

extern "C" {

void orbcef_standin_fail(const char* operation, int32_t times) {
  const std::lock_guard<std::mutex> guard(TheScript().lock);
  TheScript().faults[operation] = times;
}

int32_t orbcef_standin_count(const char* event) {
  const std::lock_guard<std::mutex> guard(TheScript().lock);
  return static_cast<int32_t>(TheScript().events[event].size());
}

int32_t orbcef_standin_text(const char* event, int32_t index, char* buffer, int32_t size) {
  const std::lock_guard<std::mutex> guard(TheScript().lock);
  const auto& texts = TheScript().events[event];
  if (index < 0 || static_cast<size_t>(index) >= texts.size()) {
    return -1;
  }
  const std::string& text = texts[static_cast<size_t>(index)];
  if (buffer && size > 0) {
    const size_t length = std::min(text.size(), static_cast<size_t>(size) - 1);
    std::memcpy(buffer, text.data(), length);
    buffer[length] = '\0';
  }
  return static_cast<int32_t>(text.size());
}

int32_t orbcef_standin_wait(const char* event, int32_t count, int32_t milliseconds) {
  std::unique_lock<std::mutex> guard(TheScript().lock);
  const auto has_happened = [&] {
    return TheScript().events[event].size() >= static_cast<size_t>(count);
  };
  // By the system's clock: the sanitizers see through waits on that one only.
  return TheScript().changed.wait_until(
             guard, std::chrono::system_clock::now() + std::chrono::milliseconds(milliseconds),
             has_happened)
             ? 1
             : 0;
}

void orbcef_standin_hold(int32_t thread) {
  standin::HoldThread(static_cast<cef_thread_id_t>(thread));
}

void orbcef_standin_resume(int32_t thread) {
  standin::ResumeThread(static_cast<cef_thread_id_t>(thread));
}

int32_t orbcef_standin_settle(int32_t thread, int32_t milliseconds) {
  return standin::Settle(static_cast<cef_thread_id_t>(thread), milliseconds) ? 1 : 0;
}

int32_t orbcef_standin_living(const char* class_name) {
  return standin::Living(class_name);
}

}  // extern "C"
