// Functions of the system's as Windows has them, for a library on wine that calls them. Two of
// wine's own are wrong.
//
// The end of a wait for an object returns now and then while the wait's callback still runs, or
// before it begins; the engine has then freed what the callback uses, and faults. So callback and
// end are held apart.
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
  CRITICAL_SECTION turn;
  WAITORTIMERCALLBACK callback;
  void* parameter;
  HANDLE handle;
  BOOL is_over;
};

static void CALLBACK run(void* parameter, BOOLEAN timed_out) {
  struct wait* wait = parameter;
  EnterCriticalSection(&wait->turn);
  if (!wait->is_over) {
    wait->callback(wait->parameter, timed_out);
  }
  LeaveCriticalSection(&wait->turn);
}

static BOOL WINAPI begin_wait(HANDLE* handle, HANDLE object, WAITORTIMERCALLBACK callback,
                              void* parameter, ULONG milliseconds, ULONG flags) {
  // Never freed: wine may still call it after its end.
  struct wait* wait = calloc(1, sizeof(*wait));
  if (!wait) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return FALSE;
  }
  InitializeCriticalSection(&wait->turn);
  wait->callback = callback;
  wait->parameter = parameter;
  *handle = wait;
  return RegisterWaitForSingleObject(&wait->handle, object, run, wait, milliseconds, flags);
}

static BOOL WINAPI end_wait_ex(HANDLE handle, HANDLE event) {
  struct wait* wait = handle;
  BOOL is_done = UnregisterWaitEx(wait->handle, event);
  if (event == INVALID_HANDLE_VALUE) {
    EnterCriticalSection(&wait->turn);
    wait->is_over = TRUE;
    LeaveCriticalSection(&wait->turn);
    is_done = TRUE;
  }
  return is_done;
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
