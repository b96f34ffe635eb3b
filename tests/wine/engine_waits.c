// Waits of the engine's for objects of the system, as Windows has them. On wine the end of a wait
// returns now and then while its callback still runs, or before it begins; the engine has then
// freed what the callback uses, and faults. So the engine's waits stand behind these functions,
// which hold callback and end apart.

#include "engine_waits.h"

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

static const struct {
  const char* name;
  void* function;
} replacements[] = {
    {"RegisterWaitForSingleObject", (void*)&begin_wait},
    {"UnregisterWaitEx", (void*)&end_wait_ex},
    {"UnregisterWait", (void*)&end_wait},
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

void correct_waits(HMODULE module) {
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
