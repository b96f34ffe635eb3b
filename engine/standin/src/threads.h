// The engine's threads: a queue of tasks each, run in order; delayed tasks when their time has
// come. They exist from the start of the engine to its stop. The renderer's thread is the one that
// serves a render process.
#pragma once

#include <chrono>
#include <functional>

#include "include/cef_task.h"

namespace standin {

void StartThreads();
// Runs what was posted before, drops what is not due yet, and ends the threads one after another.
void StopThreads();

bool IsOn(cef_thread_id_t id);
// False when there is no such thread; `task` is dropped then.
bool Post(cef_thread_id_t id, std::function<void()> task,
          std::chrono::milliseconds delay = std::chrono::milliseconds(0));

// Runs the function on the thread and returns when it has returned. A negative id is that of the
// control interface: the caller's thread or a strange one. False when there is no such thread.
bool RunOn(int id, const std::function<void()>& function);

// The calling thread serves a render process from here on, and runs what was posted to it.
void BecomeRenderer();
void RunRendererTasks();
void LeaveRenderer();

void HoldThread(cef_thread_id_t id);
void ResumeThread(cef_thread_id_t id);
bool Settle(cef_thread_id_t id, int milliseconds);

}  // namespace standin
