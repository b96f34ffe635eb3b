// Stands under the engine's name in front of the engine where tests run on wine, and gives it three
// switches that it needs there and nowhere else: wine shows nothing that a GPU process paints into
// another process's window, and refuses the page protection that V8 asks for when it freezes its
// flags. Every other function is forwarded to the engine by the export table.
//
// So the module and its helper are those of a release, byte for byte, and know nothing of this.

#include <stddef.h>
#include <windows.h>

#include "engine_corrections.h"
#include "include/capi/cef_functions.h"
#include "include/capi/cef_structs.h"

// The engine's own function, imported under another name.
extern __declspec(dllimport) int CEF_CALLBACK
    engine_cef_initialize(const cef_main_args_t* args, const cef_settings_t* settings,
                          cef_app_t* application, void* windows_sandbox_info);

typedef void(CEF_CALLBACK* command_line_function)(cef_app_t* self, const cef_string_t* process_type,
                                                  cef_command_line_t* command_line);

// Written before the engine is started, read on the thread that starts it.
static command_line_function g_of_the_host;

#define TEXT_OF(literal) \
  { (char16*)literal, sizeof(literal) / sizeof(literal[0]) - 1, NULL }

static void CEF_CALLBACK add_switches(cef_app_t* self, const cef_string_t* process_type,
                                      cef_command_line_t* command_line) {
  const cef_string_t disable_gpu = TEXT_OF(L"disable-gpu");
  const cef_string_t in_process_gpu = TEXT_OF(L"in-process-gpu");
  const cef_string_t js_flags = TEXT_OF(L"js-flags");
  const cef_string_t no_freeze = TEXT_OF(L"--no-freeze-flags-after-init");
  // The engine itself hands them on to its sub-processes.
  if (!process_type || process_type->length == 0) {
    command_line->append_switch(command_line, &disable_gpu);
    command_line->append_switch(command_line, &in_process_gpu);
    command_line->append_switch_with_value(command_line, &js_flags, &no_freeze);
  }
  if (g_of_the_host) {
    g_of_the_host(self, process_type, command_line);
  } else {
    command_line->base.release(&command_line->base);
  }
}

__declspec(dllexport) int CEF_CALLBACK
    cef_initialize(const cef_main_args_t* args, const cef_settings_t* settings,
                   cef_app_t* application, void* windows_sandbox_info) {
  if (application) {
    g_of_the_host = application->on_before_command_line_processing;
    application->on_before_command_line_processing = &add_switches;
  }
  return engine_cef_initialize(args, settings, application, windows_sandbox_info);
}

BOOL WINAPI DllMain(HINSTANCE library, DWORD reason, void* reserved) {
  (void)library;
  (void)reserved;
  if (reason == DLL_PROCESS_ATTACH) {
    // Loaded already, since this library imports from it.
    correct_system_calls(GetModuleHandleW(L"libcef_engine.dll"));
  }
  return TRUE;
}
