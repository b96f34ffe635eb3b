// The one object that the engine calls inside every render process.
//
// It registers the JavaScript extensions, installs the document's listeners and the web-record
// modules in new V8 contexts, logs uncaught page exceptions and tells the browser process about
// contexts and focused form controls. Everything that belongs to a frame lives in the page's own
// objects: the only state here is the record mode. All callbacks run on the renderer main thread;
// `ORBCefApp` owns the handler for the life of the process.

#ifndef ORBCEF_RENDER_PROCESS_HANDLER_H
#define ORBCEF_RENDER_PROCESS_HANDLER_H

#include <string>

#include "include/cef_render_process_handler.h"
#include "orbcefrecords.h"

class ORBCefRenderProcessHandler : public CefRenderProcessHandler {
 public:
  ORBCefRenderProcessHandler() = default;

  ORBCefRenderProcessHandler(const ORBCefRenderProcessHandler&) = delete;
  ORBCefRenderProcessHandler& operator=(const ORBCefRenderProcessHandler&) = delete;

  // Set once, from the command line of the render process, before the engine calls any callback
  // below.
  void SetRecordMode(orbceftypes_recordmode mode) { _record_mode = mode; }

  // CefRenderProcessHandler. `GetLoadHandler` and `OnProcessMessageReceived` keep the engine's
  // defaults on purpose: no process message ever travels from the browser to a renderer.
  void OnWebKitInitialized() override;
  void OnBrowserCreated(CefRefPtr<CefBrowser> browser,
                        CefRefPtr<CefDictionaryValue> extra_info) override;
  void OnBrowserDestroyed(CefRefPtr<CefBrowser> browser) override;
  void OnContextCreated(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                        CefRefPtr<CefV8Context> context) override;
  void OnContextReleased(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                         CefRefPtr<CefV8Context> context) override;
  void OnUncaughtException(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                           CefRefPtr<CefV8Context> context, CefRefPtr<CefV8Exception> exception,
                           CefRefPtr<CefV8StackTrace> stack_trace) override;
  void OnFocusedNodeChanged(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                            CefRefPtr<CefDOMNode> node) override;

  // The script that puts the module map into a page. The map stands between single quotes without
  // any escaping.
  static std::string BuildModuleMapScript(const std::string& module_map);

  // One entry for each valid frame of `stack_trace`, an `eval` announced on a line of its own.
  static std::string FormatStackTrace(const CefRefPtr<CefV8StackTrace>& stack_trace);

 protected:
  ~ORBCefRenderProcessHandler() override = default;

  // Hands one extension to the engine. Virtual because the engine takes extensions in a running
  // renderer only.
  virtual void RegisterExtension(const CefString& name, const CefString& text,
                                 CefRefPtr<CefV8Handler> handler);

 private:
  void RegisterExtensionFile(const char* name, const char* file_name,
                             const CefRefPtr<CefV8Handler>& handler);
  void PrepareMainFrame(const CefRefPtr<CefBrowser>& browser, const CefRefPtr<CefFrame>& frame,
                        const CefRefPtr<CefV8Context>& context, const CefString& frame_name);
  void PrepareWebRecord(const CefRefPtr<CefBrowser>& browser,
                        const CefRefPtr<CefV8Context>& context, const CefString& frame_name);

  orbceftypes_recordmode _record_mode = ORBCEF_RECORDMODE_NONE;

  IMPLEMENT_REFCOUNTING(ORBCefRenderProcessHandler);
};

#endif  // ORBCEF_RENDER_PROCESS_HANDLER_H
