// Tasks and task runners of the engine's interface.
#include "audit.h"
#include "glue_conversions.h"
#include "neutral_classes.h"
#include "script.h"
#include "threads.h"

namespace standin {

namespace {

bool PostTask(cef_thread_id_t id, CefRefPtr<CefTask> task, int64 delay) {
  if (!task || TakeFault("post_task")) {
    return false;
  }
  const Held<CefTask> held("client CefTask", std::move(task));
  return Post(
      id, [held] { held->Execute(); }, std::chrono::milliseconds(delay));
}

class StandinTaskRunner : public engine_neutral::NeutralTaskRunner {
 public:
  explicit StandinTaskRunner(cef_thread_id_t id) : _id(id) {}

  bool IsSame(CefRefPtr<CefTaskRunner> that) override { return that && that->BelongsToThread(_id); }
  bool BelongsToCurrentThread() override { return IsOn(_id); }
  bool BelongsToThread(CefThreadId threadId) override { return threadId == _id; }
  bool PostTask(CefRefPtr<CefTask> task) override {
    return standin::PostTask(_id, std::move(task), 0);
  }
  bool PostDelayedTask(CefRefPtr<CefTask> task, int64 delay_ms) override {
    return standin::PostTask(_id, std::move(task), delay_ms);
  }

 private:
  const cef_thread_id_t _id;

  STANDIN_OBJECT(StandinTaskRunner);
};

cef_task_runner_t* RunnerOf(cef_thread_id_t id) {
  return engine_glue::ToC(CefRefPtr<CefTaskRunner>(new StandinTaskRunner(id)));
}

}  // namespace

}  // namespace standin

extern "C" {

int cef_currently_on(cef_thread_id_t threadId) {
  return standin::IsOn(threadId) ? 1 : 0;
}

int cef_post_task(cef_thread_id_t threadId, cef_task_t* task) {
  return standin::PostTask(threadId, engine_glue::FromC(task), 0) ? 1 : 0;
}

int cef_post_delayed_task(cef_thread_id_t threadId, cef_task_t* task, int64 delay_ms) {
  return standin::PostTask(threadId, engine_glue::FromC(task), delay_ms) ? 1 : 0;
}

cef_task_runner_t* cef_task_runner_get_for_thread(cef_thread_id_t threadId) {
  return standin::RunnerOf(threadId);
}

cef_task_runner_t* cef_task_runner_get_for_current_thread() {
  for (int id = TID_UI; id <= TID_RENDERER; ++id) {
    if (standin::IsOn(static_cast<cef_thread_id_t>(id))) {
      return standin::RunnerOf(static_cast<cef_thread_id_t>(id));
    }
  }
  return nullptr;
}

}  // extern "C"
