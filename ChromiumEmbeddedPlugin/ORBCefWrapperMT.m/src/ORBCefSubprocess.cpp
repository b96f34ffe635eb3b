#include "ORBCefSubprocess.h"

#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include "ORBCefApp.h"
#include "ORBCefEngine.h"
#include "ORBCefTestStubUtils.h"
#include "ORBCefToolsWrapperMT.h"
#include "include/base/cef_build.h"
#include "platform/Process.h"

namespace ORBCefSubprocess {

namespace {

constexpr int kFailure = 1;

// The engine wants the process's own arguments: as the instance whose command line it can ask the
// system for, or as the usual array.
class ProcessArguments {
 public:
  ProcessArguments() : _texts(platform::CommandLine()) {
    for (std::string& text : _texts) _pointers.push_back(text.data());
    _pointers.push_back(nullptr);
  }
  ProcessArguments(const ProcessArguments&) = delete;
  ProcessArguments& operator=(const ProcessArguments&) = delete;

  int Count() const { return static_cast<int>(_texts.size()); }
  char** Array() { return _pointers.data(); }

  CefMainArgs MainArgs() {
#if defined(OS_WIN)
    return CefMainArgs(static_cast<HINSTANCE>(platform::ModuleHandle()));
#else
    return CefMainArgs(Count(), Array());
#endif
  }

 private:
  std::vector<std::string> _texts;
  std::vector<char*> _pointers;
};

CefRefPtr<CefCommandLine> ReadCommandLine() {
  CefRefPtr<CefCommandLine> command_line = CefCommandLine::CreateCommandLine();
  if (!command_line)
    return nullptr;
#if defined(OS_WIN)
  command_line->InitFromString(platform::CommandLineText());
#else
  ProcessArguments arguments;
  command_line->InitFromArgv(arguments.Count(), arguments.Array());
#endif
  return command_line;
}

int CallExecute(const CefMainArgs& args, CefRefPtr<CefApp> app) {
  return CefExecuteProcess(args, app, nullptr);
}

void ReportToStub(CefRefPtr<CefCommandLine> command_line) {
  const std::string port = command_line->GetSwitchValue(ORBCefSwitch::kStubPort).ToString();
  if (!port.empty())
    ORBCefTestStubUtils::SendStubMessage(std::atoi(port.c_str()),
                                         ORBCefTestStubUtils::kCreatedMessage);
}

}  // namespace

CefRefPtr<CefCommandLine> StartupCommandLine() {
  static const CefRefPtr<CefCommandLine> command_line = ReadCommandLine();
  return command_line;
}

int Execute() {
  return Execute(StartupCommandLine(), &CallExecute);
}

int Execute(CefRefPtr<CefCommandLine> command_line, ExecuteCall execute) {
  if (command_line && command_line->HasSwitch(ORBCefSwitch::kDpiAware))
    ORBCefEngine::EnableHighDpiSupport();
  if (command_line && ORBCefToolsWrapperMT::IsUnderTestTool())
    ReportToStub(command_line);

  CefRefPtr<CefApp> app = new (std::nothrow) ORBCefApp(ORBCefApp::ComputeProcessKind(command_line));
  if (!app)
    return kFailure;
  ProcessArguments arguments;
  const int result = execute(arguments.MainArgs(), app);
  // Without the engine's library there is no command line and every call answers zero, which must
  // not look like the good end of a sub-process.
  return !command_line && result == 0 ? kFailure : result;
}

}  // namespace ORBCefSubprocess
