#include "ORBCefRenderProcessHandler.h"

#include "ORBCefLog.h"
#include "ORBCefProcessMessages.h"
#include "ORBCefScriptRunner.h"
#include "ORBCefToolsAccessor.h"
#include "ORBCefToolsWrapperMT.h"
#include "ORBCefV8Handler.h"
#include "include/cef_browser.h"
#include "include/cef_dom.h"
#include "include/cef_frame.h"
#include "include/cef_v8.h"

namespace {

constexpr char kBindingsExtension[] = "v8/cef_bindings";
constexpr char kBindingsFile[] = "cef_extensions.js";
constexpr char kRecordExtension[] = "v8/cef_record_bindings";
constexpr char kRecordFile[] = "cef_record_extensions.js";
constexpr char kModuleMapScript[] = "__injectWebRecordModules.js";

std::string ParentOf(const CefRefPtr<CefFrame>& frame) {
  const CefRefPtr<CefFrame> parent = frame->IsMain() ? nullptr : frame->GetParent();
  return parent ? std::to_string(parent->GetIdentifier()) : "<none>";
}

void LogFrame(const CefRefPtr<CefBrowser>& browser, const CefRefPtr<CefFrame>& frame,
              const char* title) {
  if (!ORBCefLog::IsAdmitted(ORBCefLog::kInfo)) {
    return;
  }
  ORBCefLog::RendererInfo(browser->GetIdentifier(), title,                           //
                          "\n\tFrame ID: ", std::to_string(frame->GetIdentifier()),  //
                          "\n\tFrame name: ", frame->GetName(),                      //
                          "\n\tFrame URL: ", frame->GetURL(),                        //
                          "\n\tFrame parent: ", ParentOf(frame));
}

// Puts the module map into the page. The text is made at the first context of the process that
// needs it, and is never refreshed.
void InjectModuleMap(const CefRefPtr<CefBrowser>& browser, const CefRefPtr<CefV8Context>& context,
                     const std::string& module_map) {
  static const std::string script = ORBCefRenderProcessHandler::BuildModuleMapScript(module_map);
  CefRefPtr<CefV8Value> value;
  CefRefPtr<CefV8Exception> exception;
  if (context->Eval(script, kModuleMapScript, 1, value, exception) ||
      !ORBCefLog::IsAdmitted(ORBCefLog::kError)) {
    return;
  }
  ORBCefLog::RendererError(browser->GetIdentifier(),
                           "[WebRecord] Failed to inject module map on XOWebRecord.modules and "
                           "XOWebRecord.WRmodules\n",
                           exception ? exception->GetMessage() : CefString());
}

}  // namespace

void ORBCefRenderProcessHandler::OnWebKitInitialized() {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_RENDERER)) {
    return;
  }
  ORBCefLog::Info(ORBCefLog::kRendererProcess, "WebKit initialized: registering v8 extensions.");
  const CefRefPtr<CefV8Handler> handler = new ORBCefV8Handler(_record_mode);
  RegisterExtensionFile(kBindingsExtension, kBindingsFile, handler);
  if (_record_mode != ORBCEF_RECORDMODE_NONE) {
    RegisterExtensionFile(kRecordExtension, kRecordFile, handler);
  }
}

void ORBCefRenderProcessHandler::OnBrowserCreated(CefRefPtr<CefBrowser> browser,
                                                  CefRefPtr<CefDictionaryValue> extra_info) {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_RENDERER) || !browser) {
    return;
  }
  ORBCefLog::RendererInfo(browser->GetIdentifier(), "Created.");
}

void ORBCefRenderProcessHandler::OnBrowserDestroyed(CefRefPtr<CefBrowser> browser) {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_RENDERER) || !browser) {
    return;
  }
  ORBCefLog::RendererInfo(browser->GetIdentifier(), "Destroyed.");
}

void ORBCefRenderProcessHandler::OnContextCreated(CefRefPtr<CefBrowser> browser,
                                                  CefRefPtr<CefFrame> frame,
                                                  CefRefPtr<CefV8Context> context) {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_RENDERER) || !browser || !frame || !context) {
    return;
  }
  LogFrame(browser, frame, "v8 context created.");
  const CefString frame_name = frame->GetName();
  if (frame->IsMain()) {
    PrepareMainFrame(browser, frame, context, frame_name);
  }
  if (_record_mode != ORBCEF_RECORDMODE_NONE && !ORBCefScriptRunner::IsDevToolsContext(context)) {
    PrepareWebRecord(browser, context, frame_name);
  }
}

void ORBCefRenderProcessHandler::OnContextReleased(CefRefPtr<CefBrowser> browser,
                                                   CefRefPtr<CefFrame> frame,
                                                   CefRefPtr<CefV8Context> context) {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_RENDERER) || !browser || !frame || !context) {
    return;
  }
  LogFrame(browser, frame, "v8 context released.");
  if (frame->IsMain()) {
    ORBCefMessage::SendFlag(browser, ORBCefMessage::kV8Context, false);
  }
}

void ORBCefRenderProcessHandler::OnUncaughtException(CefRefPtr<CefBrowser> browser,
                                                     CefRefPtr<CefFrame> frame,
                                                     CefRefPtr<CefV8Context> context,
                                                     CefRefPtr<CefV8Exception> exception,
                                                     CefRefPtr<CefV8StackTrace> stack_trace) {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_RENDERER) || !browser || !exception || !stack_trace ||
      !stack_trace->IsValid() || !ORBCefLog::IsAdmitted(ORBCefLog::kWarning)) {
    return;
  }
  ORBCefLog::RendererWarning(browser->GetIdentifier(), "Uncaught exception.\n\t",
                             exception->GetMessage(), "\n\tStack trace:\n",
                             FormatStackTrace(stack_trace));
}

void ORBCefRenderProcessHandler::OnFocusedNodeChanged(CefRefPtr<CefBrowser> browser,
                                                      CefRefPtr<CefFrame> frame,
                                                      CefRefPtr<CefDOMNode> node) {
  // Focus that leaves all nodes comes as a null node: the browser process then keeps what it knows.
  if (!ORBCefToolsWrapperMT::CheckThread(TID_RENDERER) || !browser || !node) {
    return;
  }
  ORBCefMessage::SendFlag(browser, ORBCefMessage::kFocusedNodeChanged,
                          node->IsFormControlElement());
}

std::string ORBCefRenderProcessHandler::BuildModuleMapScript(const std::string& module_map) {
  return "window.XOWebRecord.WRmodules = JSON.parse('" + module_map + "');";
}

std::string ORBCefRenderProcessHandler::FormatStackTrace(
    const CefRefPtr<CefV8StackTrace>& stack_trace) {
  std::string text;
  const int count = stack_trace->GetFrameCount();
  for (int index = 0; index < count; ++index) {
    const CefRefPtr<CefV8StackFrame> frame = stack_trace->GetFrame(index);
    if (!frame || !frame->IsValid()) {
      continue;
    }
    if (frame->IsEval()) {
      text += "Called from eval()\n";
    }
    text += "\t\t" + frame->GetFunctionName().ToString() + " @" +
            frame->GetScriptNameOrSourceURL().ToString() + ":" +
            std::to_string(frame->GetLineNumber()) + "\n";
  }
  return text;
}

void ORBCefRenderProcessHandler::RegisterExtension(const CefString& name, const CefString& text,
                                                   CefRefPtr<CefV8Handler> handler) {
  CefRegisterExtension(name, text, handler);
}

void ORBCefRenderProcessHandler::RegisterExtensionFile(const char* name, const char* file_name,
                                                       const CefRefPtr<CefV8Handler>& handler) {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_RENDERER) || !handler) {
    return;
  }
  // A file that cannot be read gives an empty text, which is registered like any other.
  RegisterExtension(name,
                    ORBCefScriptRunner::ReadScriptFile(ORBCefScriptRunner::kBindingsFolder +
                                                       std::string(file_name)),
                    handler);
}

void ORBCefRenderProcessHandler::PrepareMainFrame(const CefRefPtr<CefBrowser>& browser,
                                                  const CefRefPtr<CefFrame>& frame,
                                                  const CefRefPtr<CefV8Context>& context,
                                                  const CefString& frame_name) {
  if (frame->GetURL().empty()) {
    ORBCefMessage::SendPlain(browser, ORBCefMessage::kDeferAddEventListeners);
  } else {
    ORBCefScriptRunner::AddRootDocumentListeners(context, frame_name);
  }
  ORBCefScriptRunner::AddGlobalListeners(context, frame_name);
  ORBCefMessage::SendFlag(browser, ORBCefMessage::kV8Context, true);
}

void ORBCefRenderProcessHandler::PrepareWebRecord(const CefRefPtr<CefBrowser>& browser,
                                                  const CefRefPtr<CefV8Context>& context,
                                                  const CefString& frame_name) {
  // Asked for once per process, even if the first context turns out to be invalid.
  static const std::string module_map = ORBCefToolsAccessor::GetJSONModuleMap();
  if (!context->IsValid()) {
    return;
  }
  InjectModuleMap(browser, context, module_map);
  ORBCefScriptRunner::LoadEventInspector(context, frame_name);
}
