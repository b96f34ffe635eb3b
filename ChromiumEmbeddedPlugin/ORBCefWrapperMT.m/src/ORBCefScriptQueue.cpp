#include "ORBCefScriptQueue.h"

#include "ORBCefLog.h"
#include "ORBCefToolsAccessor.h"

namespace {

CefRefPtr<CefFrame> MainFrameOf(const CefRefPtr<CefBrowser>& browser) {
  return browser ? browser->GetMainFrame() : nullptr;
}

bool CanRunScripts(const CefRefPtr<CefBrowser>& browser) {
  return browser && !browser->IsLoading() && browser->GetMainFrame();
}

}  // namespace

void ORBCefScriptQueue::Execute(const CefRefPtr<CefBrowser>& browser, int browser_id,
                                const CefString& code, const CefString& script_url,
                                int start_line) {
  if (!CanRunScripts(browser)) {
    ORBCefLog::BrowserInfo(browser_id, "Can't execute JavaScript right now, enqueuing the code.");
    _scripts.push_back(code);
    return;
  }
  // Asked at each script, so that a running host can switch it.
  if (ORBCefToolsAccessor::ORBGetEnv("ORBCEF_LOG_EXECJS")) {
    ORBCefLog::BrowserInfo(browser_id, "Executing script:\n\t", code);
  }
  // A frame that went away meanwhile takes the script with it, without a word.
  const CefRefPtr<CefFrame> frame = MainFrameOf(browser);
  if (!frame) {
    return;
  }
  frame->ExecuteJavaScript(code, script_url.empty() ? frame->GetURL() : script_url, start_line);
}

void ORBCefScriptQueue::Flush(const CefRefPtr<CefBrowser>& browser, int browser_id) {
  if (_scripts.empty()) {
    return;
  }
  ORBCefLog::BrowserInfo(browser_id, "Flushing the JavaScript queue.");
  const CefRefPtr<CefFrame> frame = MainFrameOf(browser);
  if (!frame) {
    return;
  }
  const CefString url(kScriptURL);
  // IsLoading is not asked again: the engine has just reported the end of loading.
  while (!_scripts.empty()) {
    frame->ExecuteJavaScript(_scripts.front(), url, kScriptLine);
    _scripts.pop_front();
  }
}
