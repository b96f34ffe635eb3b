#include "ORBCefApp.h"

#include "ORBCefBrowserProcessHandler.h"
#include "ORBCefRenderProcessHandler.h"
#include "ORBCefToolsAccessor.h"
#include "include/base/cef_build.h"

namespace {

struct KindName {
  const char* type;
  ProcessKind kind;
};

// The engine's own GPU processes carry another name and count as "other", like all the rest.
constexpr KindName kKinds[] = {
    {"renderer", ProcessKind::kRenderer},
    {"gpu", ProcessKind::kGpu},
    {"utility", ProcessKind::kUtility},
};

constexpr int kSchemeOptions = CEF_SCHEME_OPTION_STANDARD | CEF_SCHEME_OPTION_SECURE |
                               CEF_SCHEME_OPTION_CORS_ENABLED | CEF_SCHEME_OPTION_FETCH_ENABLED;
static_assert(kSchemeOptions == 89, "All processes register the scheme with the same options.");

// The engine's renderer in reserve, which gets the next page of another site. It asks which view
// the page belongs to so soon that the engine may not know it yet, and then neither bindings nor
// scripts ever reach that page.
constexpr char kSpareRenderer[] = "SpareRendererForSitePerProcess";

// Adds to the features that the command line already takes away.
void DisableFeature(const CefRefPtr<CefCommandLine>& command_line, const char* feature) {
  std::string features = command_line->GetSwitchValue(ORBCefSwitch::kDisableFeatures).ToString();
  if (!features.empty())
    features += ',';
  command_line->AppendSwitchWithValue(ORBCefSwitch::kDisableFeatures, features + feature);
}

}  // namespace

ORBCefApp::ORBCefApp(ProcessKind kind) {
  if (kind == ProcessKind::kBrowser)
    _browser_process_handler = new ORBCefBrowserProcessHandler();
  if (kind == ProcessKind::kRenderer)
    _render_process_handler = new ORBCefRenderProcessHandler();
}

ORBCefApp::~ORBCefApp() = default;

ProcessKind ORBCefApp::ComputeProcessKind(CefRefPtr<CefCommandLine> command_line) {
  if (!command_line)
    return ProcessKind::kOther;
  const CefString type = command_line->GetSwitchValue(ORBCefSwitch::kType);
  for (const KindName& name : kKinds) {
    if (type == CefString(name.type))
      return name.kind;
  }
  return ProcessKind::kOther;
}

orbceftypes_recordmode ORBCefApp::ComputeRecordMode(CefRefPtr<CefCommandLine> command_line) {
  if (command_line->HasSwitch(ORBCefSwitch::kRecord))
    return ORBCEF_RECORDMODE_CAPTURE;
  if (command_line->HasSwitch(ORBCefSwitch::kReplay))
    return ORBCEF_RECORDMODE_REPLAY;
  return ORBCEF_RECORDMODE_NONE;
}

void ORBCefApp::SetRecordMode(orbceftypes_recordmode mode) {
  _record_mode = mode;
  if (_browser_process_handler)
    _browser_process_handler->SetRecordMode(mode);
}

void ORBCefApp::OnBeforeCommandLineProcessing(const CefString& process_type,
                                              CefRefPtr<CefCommandLine> command_line) {
  if (!command_line)
    return;
  if (ORBCefToolsAccessor::ORBGetEnv("ORBCEF_DISABLE_GPU")) {
    command_line->AppendSwitch(ORBCefSwitch::kDisableGpu);
    command_line->AppendSwitch(ORBCefSwitch::kDisableGpuCompositing);
  }
  command_line->AppendSwitch(ORBCefSwitch::kUniversalAccessFromFiles);
  command_line->AppendSwitch(ORBCefSwitch::kFileAccessFromFiles);
  if (process_type.empty())
    DisableFeature(command_line, kSpareRenderer);
#if defined(OS_LINUX)
  // A renderer that is forked from a zygote keeps the application object of the zygote, which is
  // of no kind of its own, and its pages would have no bindings.
  if (process_type.empty())
    command_line->AppendSwitch(ORBCefSwitch::kNoZygote);
#endif
  if (_render_process_handler && process_type == CefString("renderer"))
    _render_process_handler->SetRecordMode(ComputeRecordMode(command_line));
}

void ORBCefApp::OnRegisterCustomSchemes(CefRawPtr<CefSchemeRegistrar> registrar) {
  if (!registrar)
    return;
  registrar->AddCustomScheme(ORBCefScheme::kName, kSchemeOptions);
}

CefRefPtr<CefResourceBundleHandler> ORBCefApp::GetResourceBundleHandler() {
  return nullptr;
}

CefRefPtr<CefBrowserProcessHandler> ORBCefApp::GetBrowserProcessHandler() {
  return _browser_process_handler;
}

CefRefPtr<CefRenderProcessHandler> ORBCefApp::GetRenderProcessHandler() {
  return _render_process_handler;
}
