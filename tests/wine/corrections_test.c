// Shows that the corrections of engine_corrections.c hold, by what goes wrong on wine without them.
// This program's own import table gets them, as the engine's does.
//
//   corrections_test          checks
//   corrections_test other    the other process of a check: waits for its end

#include <stdio.h>
#include <windows.h>

#include "check.h"
#include "engine_corrections.h"

enum { kRounds = 10, kThreads = 8, kHandles = 64, kMilliseconds = 40000 };
// Of the waits: more threads would find the fault less often.
enum { kWaiters = 4, kWaits = 2000 };

static HANDLE g_process;
static HANDLE g_handles[kThreads][kHandles];
static volatile LONG g_taken;

static DWORD WINAPI take_handles(void* parameter) {
  const HANDLE* handles = parameter;
  for (int i = 0; i < kHandles; ++i) {
    HANDLE taken = NULL;
    if (!DuplicateHandle(g_process, handles[i], GetCurrentProcess(), &taken, 0, FALSE,
                         DUPLICATE_SAME_ACCESS | DUPLICATE_CLOSE_SOURCE)) {
      break;
    }
    InterlockedIncrement(&g_taken);
    CloseHandle(taken);
  }
  return 0;
}

static HANDLE start_other_process(void) {
  char program[MAX_PATH];
  char line[MAX_PATH + 16];
  STARTUPINFOA how = {.cb = sizeof(how)};
  PROCESS_INFORMATION process = {0};
  GetModuleFileNameA(NULL, program, sizeof(program));
  snprintf(line, sizeof(line), "\"%s\" other", program);
  if (!CreateProcessA(NULL, line, NULL, NULL, FALSE, 0, NULL, NULL, &how, &process)) {
    return NULL;
  }
  CloseHandle(process.hThread);
  return process.hProcess;
}

static HANDLE give(HANDLE process, HANDLE handle) {
  HANDLE given = NULL;
  DuplicateHandle(GetCurrentProcess(), handle, process, &given, 0, FALSE, DUPLICATE_SAME_ACCESS);
  return given;
}

// Whether all calls returned that were taking handles when the process ended.
static BOOL take_while_it_ends(HANDLE object) {
  g_process = start_other_process();
  g_taken = 0;
  for (int i = 0; i < kThreads * kHandles; ++i) {
    g_handles[i / kHandles][i % kHandles] = give(g_process, object);
  }
  HANDLE threads[kThreads];
  for (int i = 0; i < kThreads; ++i) {
    threads[i] = CreateThread(NULL, 0, take_handles, g_handles[i], 0, NULL);
  }
  while (g_taken < kThreads) {
    Sleep(0);
  }
  TerminateProcess(g_process, 0);
  const DWORD result = WaitForMultipleObjects(kThreads, threads, TRUE, kMilliseconds);
  for (int i = 0; i < kThreads; ++i) {
    CloseHandle(threads[i]);
  }
  CloseHandle(g_process);
  return result != WAIT_TIMEOUT;
}

static void check_a_handle_of_a_process_that_ends(void) {
  HANDLE object = CreateEventA(NULL, TRUE, FALSE, NULL);
  int returned = 0;
  while (returned < kRounds && take_while_it_ends(object)) {
    ++returned;
  }
  check(returned == kRounds, "taking a handle returns also when its process ends meanwhile");
  CloseHandle(object);
}

static void check_a_handle_of_a_process_that_lives_and_then_not(void) {
  const HANDLE process = start_other_process();
  HANDLE reading = NULL;
  HANDLE writing = NULL;
  CreatePipe(&reading, &writing, NULL, 0);
  const HANDLE given = give(process, writing);
  CloseHandle(writing);
  HANDLE taken = NULL;
  check(DuplicateHandle(process, given, GetCurrentProcess(), &taken, 0, FALSE,
                        DUPLICATE_SAME_ACCESS | DUPLICATE_CLOSE_SOURCE),
        "a handle is taken out of a process that lives");
  char byte = 'x';
  DWORD count = 0;
  check(WriteFile(taken, &byte, 1, &count, NULL) && ReadFile(reading, &byte, 1, &count, NULL),
        "the handle is that of the same object");
  CloseHandle(taken);
  // Ends only when nobody has the other end any more; a handle left there would hold it for ever.
  check(!ReadFile(reading, &byte, 1, &count, NULL) && GetLastError() == ERROR_BROKEN_PIPE,
        "the handle is closed where it was");
  HANDLE none = NULL;
  check(!DuplicateHandle(process, (HANDLE)0x7FFC, GetCurrentProcess(), &none, 0, FALSE,
                         DUPLICATE_SAME_ACCESS | DUPLICATE_CLOSE_SOURCE) &&
            GetLastError() == ERROR_INVALID_HANDLE,
        "a handle that there is not is refused");
  CloseHandle(reading);
  TerminateProcess(process, 0);
  WaitForSingleObject(process, kMilliseconds);
  check(!DuplicateHandle(process, given, GetCurrentProcess(), &none, 0, FALSE,
                         DUPLICATE_SAME_ACCESS | DUPLICATE_CLOSE_SOURCE) &&
            GetLastError() == ERROR_ACCESS_DENIED,
        "a process that has ended is told apart from a handle that there is not");
  CloseHandle(process);
}

struct wait_of_a_test {
  volatile BOOL is_over;
};

// By all waits of all threads; none is used twice.
static struct wait_of_a_test g_waits[kWaiters][kWaits];
static volatile LONG g_calls;
static volatile LONG g_late_calls;

static void spend_some_time(int rounds) {
  for (volatile int i = 0; i < rounds; ++i) {
  }
}

static void CALLBACK on_signal(void* parameter, BOOLEAN timed_out) {
  struct wait_of_a_test* wait = parameter;
  (void)timed_out;
  InterlockedIncrement(&g_calls);
  spend_some_time(200);
  if (wait->is_over) {
    InterlockedIncrement(&g_late_calls);
  }
}

static DWORD WINAPI begin_and_end_waits(void* parameter) {
  struct wait_of_a_test* waits = parameter;
  HANDLE object = CreateEventA(NULL, FALSE, FALSE, NULL);
  for (int i = 0; i < kWaits; ++i) {
    HANDLE wait = NULL;
    RegisterWaitForSingleObject(&wait, object, on_signal, &waits[i], INFINITE,
                                WT_EXECUTEONLYONCE | (i % 2 ? WT_EXECUTEINWAITTHREAD : 0));
    SetEvent(object);
    // So that some end before their callback begins, some meanwhile and some after it.
    spend_some_time(i % 50 * 100);
    UnregisterWaitEx(wait, INVALID_HANDLE_VALUE);
    waits[i].is_over = TRUE;
    ResetEvent(object);
  }
  CloseHandle(object);
  return 0;
}

static void check_that_no_callback_runs_after_its_waits_end(void) {
  HANDLE threads[kWaiters];
  for (int i = 0; i < kWaiters; ++i) {
    threads[i] = CreateThread(NULL, 0, begin_and_end_waits, g_waits[i], 0, NULL);
  }
  const DWORD result = WaitForMultipleObjects(kWaiters, threads, TRUE, kMilliseconds);
  check(result != WAIT_TIMEOUT && g_calls > 0, "waits begin, call back and end");
  check(g_late_calls == 0, "no callback runs after the end of its wait");
  for (int i = 0; i < kWaiters; ++i) {
    CloseHandle(threads[i]);
  }
}

int main(int argc, char** argv) {
  (void)argv;
  if (argc > 1) {
    Sleep(INFINITE);
  }
  correct_system_calls(GetModuleHandleA(NULL));
  check_a_handle_of_a_process_that_lives_and_then_not();
  check_a_handle_of_a_process_that_ends();
  check_that_no_callback_runs_after_its_waits_end();
  return finish();
}
