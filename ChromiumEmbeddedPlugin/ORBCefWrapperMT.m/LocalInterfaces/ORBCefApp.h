// The application object of a process: it holds the handler of the process's kind and decides
// what is added to the process's command line.
//
// The engine calls it on threads of its own choice. In the host process ORBCefEngine owns it from
// the first start to the stop; in a sub-process it lives for the call that runs the process.
#ifndef ORBCEFAPP_H
#define ORBCEFAPP_H

#include <atomic>
#include <cstdint>

#include "include/cef_app.h"
#include "include/cef_command_line.h"
#include "orbcefrecords.h"

class ORBCefBrowserProcessHandler;
class ORBCefRenderProcessHandler;

enum class ProcessKind : std::int32_t {
  kBrowser = 0,  // Never derived from a command line.
  kRenderer = 1,
  kGpu = 2,
  kUtility = 3,
  kOther = 4,
};

// Names of the command-line switches that the module reads or adds.
namespace ORBCefSwitch {
constexpr char kType[] = "type";
constexpr char kDisableGpu[] = "disable-gpu";
constexpr char kDisableGpuCompositing[] = "disable-gpu-compositing";
constexpr char kUniversalAccessFromFiles[] = "allow-universal-access-from-files";
constexpr char kFileAccessFromFiles[] = "allow-file-access-from-files";
constexpr char kRecord[] = "xo-record";
constexpr char kReplay[] = "xo-replay";
constexpr char kRendererStartupDialog[] = "renderer-startup-dialog";
constexpr char kGpuStartupDialog[] = "gpu-startup-dialog";
constexpr char kUtilityStartupDialog[] = "utility-startup-dialog";
constexpr char kDpiAware[] = "dpi-aware";
constexpr char kStubPort[] = "mc-stub-port";
constexpr char kNoZygote[] = "no-zygote";
constexpr char kDisableFeatures[] = "disable-features";
}  // namespace ORBCefSwitch

// The scheme of the installation's files, and the two hosts that it has.
namespace ORBCefScheme {
constexpr char kName[] = "xortv";
constexpr char kWebapps[] = "webapps";
constexpr char kResources[] = "resources";
}  // namespace ORBCefScheme

class ORBCefApp : public CefApp {
 public:
  explicit ORBCefApp(ProcessKind kind);
  ~ORBCefApp() override;

  // The kind that the switch "type" names; kOther without a command line.
  static ProcessKind ComputeProcessKind(CefRefPtr<CefCommandLine> command_line);

  // The record mode that the switches name; "xo-record" wins over "xo-replay".
  static orbceftypes_recordmode ComputeRecordMode(CefRefPtr<CefCommandLine> command_line);

  // Runs once, on the thread that started the engine, right after the start. A child that was
  // launched before carries no record switch.
  void SetRecordMode(orbceftypes_recordmode mode);
  orbceftypes_recordmode RecordMode() const { return _record_mode; }

  void OnBeforeCommandLineProcessing(const CefString& process_type,
                                     CefRefPtr<CefCommandLine> command_line) override;
  void OnRegisterCustomSchemes(CefRawPtr<CefSchemeRegistrar> registrar) override;
  CefRefPtr<CefResourceBundleHandler> GetResourceBundleHandler() override;
  CefRefPtr<CefBrowserProcessHandler> GetBrowserProcessHandler() override;
  CefRefPtr<CefRenderProcessHandler> GetRenderProcessHandler() override;

 private:
  CefRefPtr<ORBCefBrowserProcessHandler> _browser_process_handler;
  CefRefPtr<ORBCefRenderProcessHandler> _render_process_handler;
  std::atomic<orbceftypes_recordmode> _record_mode{ORBCEF_RECORDMODE_NONE};

  IMPLEMENT_REFCOUNTING(ORBCefApp);
};

#endif  // ORBCEFAPP_H
