// Functions of the system's as Windows has them, for a library on wine that calls them. Two of
// wine's own are wrong.
//
// The end of a wait for an object returns now and then while the wait's callback still runs, or
// before it begins, and the engine has then freed what the callback uses; or it faults itself, over
// a callback that is just on its way. So each wait has a thread of its own here.
//
// A handle is taken out of another process in one step, which wine leaves to a thread of that
// process; if the process ends before the thread comes to it, the call never returns. That is how a
// renderer ends while its last message is read, and the engine's shutdown would wait for ever. So
// the handle is copied at once, which needs no thread of the other process, and the original is
// closed by a thread that nobody waits for.

#include "engine_corrections.h"

#include <stdlib.h>
#include <string.h>
#include <windows.h>

struct wait {
  // Of the caller of the begin until its end, and of the thread.
  volatile LONG references;
  WAITORTIMERCALLBACK callback;
  void* parameter;
  ULONG milliseconds;
  ULONG flags;
  HANDLE object;
  HANDLE end;
  HANDLE is_done;
  HANDLE thread;
  DWORD thread_id;
};

static void release(struct wait* wait) {
  if (InterlockedDecrement(&wait->references) == 0) {
    CloseHandle(wait->end);
    CloseHandle(wait->is_done);
    CloseHandle(wait->thread);
    free(wait);
  }
}

static DWORD WINAPI run(void* parameter) {
  struct wait* wait = parameter;
  // The end stands first, so that it counts where both are set.
  const HANDLE objects[] = {wait->end, wait->object};
  BOOL is_once = FALSE;
  while (!is_once) {
    const DWORD result = WaitForMultipleObjects(2, objects, FALSE, wait->milliseconds);
    if (result != WAIT_OBJECT_0 + 1 && result != WAIT_TIMEOUT) {
      break;
    }
    wait->callback(wait->parameter, result == WAIT_TIMEOUT);
    is_once = (wait->flags & WT_EXECUTEONLYONCE) != 0;
  }
  SetEvent(wait->is_done);
  release(wait);
  return 0;
}

static BOOL WINAPI begin_wait(HANDLE* handle, HANDLE object, WAITORTIMERCALLBACK callback,
                              void* parameter, ULONG milliseconds, ULONG flags) {
  struct wait* wait = calloc(1, sizeof(*wait));
  if (!wait) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return FALSE;
  }
  *wait = (struct wait){.references = 2,
                        .callback = callback,
                        .parameter = parameter,
                        .milliseconds = milliseconds,
                        .flags = flags,
                        .object = object,
                        .end = CreateEventW(NULL, TRUE, FALSE, NULL),
                        .is_done = CreateEventW(NULL, TRUE, FALSE, NULL)};
  // The callback may end the wait, so everything is written before it can begin.
  wait->thread = CreateThread(NULL, 0, run, wait, CREATE_SUSPENDED, &wait->thread_id);
  if (!wait->thread) {
    const DWORD error = GetLastError();
    wait->references = 1;
    release(wait);
    SetLastError(error);
    return FALSE;
  }
  *handle = wait;
  ResumeThread(wait->thread);
  return TRUE;
}

// Whether nothing runs any more: with an invalid handle as the event that is waited for, except by
// the callback itself. The engine gives no other event.
static BOOL WINAPI end_wait_ex(HANDLE handle, HANDLE event) {
  struct wait* wait = handle;
  // At the end of the process the system ends the threads first.
  const HANDLE ends[] = {wait->is_done, wait->thread};
  const BOOL is_waited_for =
      event == INVALID_HANDLE_VALUE && wait->thread_id != GetCurrentThreadId();
  SetEvent(wait->end);
  const BOOL is_over =
      WaitForMultipleObjects(2, ends, FALSE, is_waited_for ? INFINITE : 0) != WAIT_TIMEOUT;
  release(wait);
  if (!is_over) {
    SetLastError(ERROR_IO_PENDING);
  }
  return is_over;
}

static BOOL WINAPI end_wait(HANDLE handle) {
  return end_wait_ex(handle, NULL);
}

struct original {
  HANDLE process;
  HANDLE handle;
};

static DWORD WINAPI close_original(void* parameter) {
  struct original* original = parameter;
  HANDLE copy = NULL;
  // Wine closes nothing for a call without a target.
  if (DuplicateHandle(original->process, original->handle, GetCurrentProcess(), &copy, 0, FALSE,
                      DUPLICATE_SAME_ACCESS | DUPLICATE_CLOSE_SOURCE)) {
    CloseHandle(copy);
  }
  CloseHandle(original->process);
  free(original);
  return 0;
}

static void close_in_other_process(HANDLE process, HANDLE handle) {
  struct original* original = calloc(1, sizeof(*original));
  if (!original) {
    return;
  }
  original->handle = handle;
  // The caller may close its own handle of the process before the thread comes to it.
  if (!DuplicateHandle(GetCurrentProcess(), process, GetCurrentProcess(), &original->process, 0,
                       FALSE, DUPLICATE_SAME_ACCESS)) {
    free(original);
    return;
  }
  if (!QueueUserWorkItem(close_original, original, WT_EXECUTELONGFUNCTION)) {
    CloseHandle(original->process);
    free(original);
  }
}

static BOOL WINAPI duplicate_handle(HANDLE source_process, HANDLE source, HANDLE target_process,
                                    HANDLE* target, DWORD access, BOOL is_inherited,
                                    DWORD options) {
  if (!(options & DUPLICATE_CLOSE_SOURCE) || source_process == GetCurrentProcess()) {
    return DuplicateHandle(source_process, source, target_process, target, access, is_inherited,
                           options);
  }
  // Without a target it is only closed.
  if (target && !DuplicateHandle(source_process, source, target_process, target, access,
                                 is_inherited, options & ~DUPLICATE_CLOSE_SOURCE)) {
    // No such handle, or no such process any more. The engine bears only the second, and wine tells
    // them apart in this call alone, which then waits for nobody.
    return DuplicateHandle(source_process, source, target_process, target, access, is_inherited,
                           options);
  }
  close_in_other_process(source_process, source);
  return TRUE;
}

static const struct {
  const char* name;
  void* function;
} replacements[] = {
    {"RegisterWaitForSingleObject", (void*)&begin_wait},
    {"UnregisterWaitEx", (void*)&end_wait_ex},
    {"UnregisterWait", (void*)&end_wait},
    {"DuplicateHandle", (void*)&duplicate_handle},
};

static void replace(const char* name, void** entry) {
  for (size_t i = 0; i < sizeof(replacements) / sizeof(replacements[0]); ++i) {
    DWORD protection;
    if (strcmp(name, replacements[i].name) == 0 &&
        VirtualProtect(entry, sizeof(*entry), PAGE_READWRITE, &protection)) {
      *entry = replacements[i].function;
      VirtualProtect(entry, sizeof(*entry), protection, &protection);
    }
  }
}

void correct_system_calls(HMODULE module) {
  char* base = (char*)module;
  const IMAGE_NT_HEADERS* headers = (const void*)(base + ((const IMAGE_DOS_HEADER*)base)->e_lfanew);
  const DWORD imports =
      headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
  const IMAGE_IMPORT_DESCRIPTOR* library = (const void*)(base + imports);
  for (; library->Name; ++library) {
    const IMAGE_THUNK_DATA* names = (const void*)(base + library->OriginalFirstThunk);
    void** entries = (void**)(base + library->FirstThunk);
    for (size_t i = 0; names[i].u1.AddressOfData; ++i) {
      if (!IMAGE_SNAP_BY_ORDINAL(names[i].u1.Ordinal)) {
        const IMAGE_IMPORT_BY_NAME* entry = (const void*)(base + names[i].u1.AddressOfData);
        replace(entry->Name, &entries[i]);
      }
    }
  }
}
