#include "ORBCefBrowserProcessHandler.h"

#include <string_view>

#include "ORBCefApp.h"
#include "ORBCefLocalResourceHandlerFactory.h"
#include "ORBCefLog.h"
#include "ORBCefStartedEvent.h"
#include "ORBCefTestStubUtils.h"
#include "ORBCefToolsWrapperMT.h"
#include "include/cef_cookie.h"
#include "include/cef_scheme.h"
#include "platform/Process.h"

namespace {

struct RecordSwitch {
  orbceftypes_recordmode mode;
  const char* name;
};

constexpr RecordSwitch kRecordSwitches[] = {
    {ORBCEF_RECORDMODE_CAPTURE, ORBCefSwitch::kRecord},
    {ORBCEF_RECORDMODE_REPLAY, ORBCefSwitch::kReplay},
};

class StartedCallback : public CefCompletionCallback {
 public:
  void OnComplete() override { ORBCefStartedEvent::Instance().Set(); }

 private:
  IMPLEMENT_REFCOUNTING(StartedCallback);
};

// The engine goes on starting its services when the context is up. An answer of the cookie store,
// which one of them keeps, says that they have come through.
void NoteStartedEngine() {
  const CefRefPtr<CefCookieManager> cookies = CefCookieManager::GetGlobalManager(nullptr);
  if (!cookies || !cookies->FlushStore(new StartedCallback()))
    ORBCefStartedEvent::Instance().Set();
}

}  // namespace

ORBCefBrowserProcessHandler::ORBCefBrowserProcessHandler()
    : _debug_wait_target(DebugWaitOf(ORBCefToolsAccessor::ORBGetEnv("ORBCEF_DEBUG_WAIT"))) {}

ORBCefBrowserProcessHandler::DebugWait ORBCefBrowserProcessHandler::DebugWaitOf(const char* value) {
  struct Name {
    std::string_view value;
    DebugWait target;
  };
  constexpr Name kNames[] = {
      {"", DebugWait::kNone},
      {"renderer", DebugWait::kRenderer},
      {"gpu", DebugWait::kGpu},
      {"utility", DebugWait::kUtility},
  };
  const std::string_view wanted = value ? value : "";
  for (const Name& name : kNames) {
    if (name.value == wanted)
      return name.target;
  }
  return DebugWait::kAll;
}

void ORBCefBrowserProcessHandler::OnContextInitialized() {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_UI))
    return;
  ORBCefLog::Info(ORBCefLog::kBrowserProcess, "CEF context initialized.");
  CefRefPtr<CefSchemeHandlerFactory> factory = new ORBCefLocalResourceHandlerFactory();
  CefRegisterSchemeHandlerFactory(ORBCefScheme::kName, ORBCefScheme::kWebapps, factory);
  CefRegisterSchemeHandlerFactory(ORBCefScheme::kName, ORBCefScheme::kResources, factory);
  NoteStartedEngine();
}

void ORBCefBrowserProcessHandler::OnBeforeChildProcessLaunch(
    CefRefPtr<CefCommandLine> command_line) {
  if (!command_line)
    return;
  command_line->AppendSwitch(ORBCefSwitch::kUniversalAccessFromFiles);
  command_line->AppendSwitch(ORBCefSwitch::kFileAccessFromFiles);
  AddStartupDialogs(command_line);
  if (platform::IsDpiAware())
    command_line->AppendSwitch(ORBCefSwitch::kDpiAware);
  AddRecordMode(command_line);
  if (ORBCefTestStubUtils::IsInstrumentedRun())
    PrepareStubHandshake(command_line);
  ORBCefLog::Info(ORBCefLog::kBrowserProcess, "Creating child process with command line:\n\t",
                  command_line->GetCommandLineString());
}

void ORBCefBrowserProcessHandler::OnScheduleMessagePumpWork(int64 delay_ms) {
  // The engine runs a loop of its own.
}

CefRefPtr<CefClient> ORBCefBrowserProcessHandler::GetDefaultClient() {
  return nullptr;
}

void ORBCefBrowserProcessHandler::AddStartupDialogs(CefRefPtr<CefCommandLine> command_line) const {
  struct Dialog {
    DebugWait target;
    const char* name;
  };
  constexpr Dialog kDialogs[] = {
      {DebugWait::kRenderer, ORBCefSwitch::kRendererStartupDialog},
      {DebugWait::kGpu, ORBCefSwitch::kGpuStartupDialog},
      {DebugWait::kUtility, ORBCefSwitch::kUtilityStartupDialog},
  };
  for (const Dialog& dialog : kDialogs) {
    if (_debug_wait_target == dialog.target || _debug_wait_target == DebugWait::kAll)
      command_line->AppendSwitch(dialog.name);
  }
}

void ORBCefBrowserProcessHandler::AddRecordMode(CefRefPtr<CefCommandLine> command_line) const {
  const orbceftypes_recordmode mode = _record_mode;
  for (const RecordSwitch& record : kRecordSwitches) {
    if (record.mode == mode)
      command_line->AppendSwitch(record.name);
  }
}

void ORBCefBrowserProcessHandler::PrepareStubHandshake(CefRefPtr<CefCommandLine> command_line) {
  ORBCefTestStubUtils::RemoveStubDirectoryFromPath();
  const int port = ORBCefTestStubUtils::OpenStubPort(ORBCefTestStubUtils::kCreatedMessage,
                                                     ORBCefTestStubUtils::RestorePath);
  if (port < 1) {
    // The child starts without a port and never reports: PATH stays as it is now.
    ORBCefLog::Error(ORBCefLog::kBrowserProcess, "Failed to create a listening socket");
    return;
  }
  command_line->AppendSwitchWithValue(ORBCefSwitch::kStubPort, std::to_string(port));
}
