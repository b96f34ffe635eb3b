// An engine task that runs a function, so that a caller can post a closure with the references
// that it needs. Made on any thread, run on the thread it is posted to; the engine owns it and
// drops it unrun when that thread is already gone.
#ifndef ORBCEF_TASK_H
#define ORBCEF_TASK_H

#include <functional>
#include <utility>

#include "include/cef_task.h"

class ORBCefFunctionTask : public CefTask {
 public:
  explicit ORBCefFunctionTask(std::function<void()> function) : _function(std::move(function)) {}

  void Execute() override {
    if (_function) {
      _function();
    }
  }

 private:
  ~ORBCefFunctionTask() override = default;

  std::function<void()> _function;

  IMPLEMENT_REFCOUNTING(ORBCefFunctionTask);
};

inline bool ORBCefPost(CefThreadId thread, std::function<void()> function) {
  return CefPostTask(thread, new ORBCefFunctionTask(std::move(function)));
}

inline bool ORBCefPostDelayed(CefThreadId thread, std::function<void()> function,
                              int64 delay_milliseconds) {
  return CefPostDelayedTask(thread, new ORBCefFunctionTask(std::move(function)),
                            delay_milliseconds);
}

#endif  // ORBCEF_TASK_H
