// Registers the scheme of the installation's files when the engine's context is up, and adds the
// module's switches to the command line of each child process.
//
// OnContextInitialized comes on the engine's UI thread, OnBeforeChildProcessLaunch on a thread of
// the engine's choice. Owned by the ORBCefApp of the host process.
#ifndef ORBCEFBROWSERPROCESSHANDLER_H
#define ORBCEFBROWSERPROCESSHANDLER_H

#include <atomic>
#include <cstdint>

#include "include/cef_browser_process_handler.h"
#include "include/cef_client.h"
#include "include/cef_command_line.h"
#include "orbcefrecords.h"

class ORBCefBrowserProcessHandler : public CefBrowserProcessHandler {
 public:
  // Reads ORBCEF_DEBUG_WAIT.
  ORBCefBrowserProcessHandler();

  void SetRecordMode(orbceftypes_recordmode mode) { _record_mode = mode; }

  void OnContextInitialized() override;
  void OnBeforeChildProcessLaunch(CefRefPtr<CefCommandLine> command_line) override;
  void OnScheduleMessagePumpWork(int64 delay_ms) override;
  CefRefPtr<CefClient> GetDefaultClient() override;

 private:
  // Which child shows a dialog at its start, so that a debugger can be attached.
  enum class DebugWait : std::int32_t {
    kRenderer = 1,
    kGpu = 2,
    kUtility = 3,
    kNone = 4,
    kAll = 5
  };
  static DebugWait DebugWaitOf(const char* value);

  void AddStartupDialogs(CefRefPtr<CefCommandLine> command_line) const;
  void AddRecordMode(CefRefPtr<CefCommandLine> command_line) const;
  // In an instrumented run: hides the stub directory until the child has reported.
  static void PrepareStubHandshake(CefRefPtr<CefCommandLine> command_line);

  const DebugWait _debug_wait_target;
  std::atomic<orbceftypes_recordmode> _record_mode{ORBCEF_RECORDMODE_NONE};

  IMPLEMENT_REFCOUNTING(ORBCefBrowserProcessHandler);
};

#endif  // ORBCEFBROWSERPROCESSHANDLER_H
