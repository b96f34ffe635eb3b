#include "ORBCefScriptRunner.h"

#include <fstream>
#include <iterator>

#include "ORBCefLog.h"
#include "ORBCefToolsWrapperMT.h"
#include "ORBCefV8ContextScope.h"
#include "include/cef_browser.h"
#include "include/cef_frame.h"
#include "include/cef_parser.h"

namespace ORBCefScriptRunner {
namespace {

// Compared exactly: a front end under any other scheme, such as "devtools", counts as a page.
constexpr char kDevToolsScheme[] = "chrome-devtools";

// A listener snippet and the two lines that tell how it went.
struct Snippet {
  const char* path;
  const char* success;
  const char* failure;
};

constexpr Snippet kGlobalListenersSnippet = {
    kGlobalListeners, "Added custom global event listeners to frame ",
    "Failed to add custom global event listeners to frame "};
constexpr Snippet kRootDocumentSnippet = {
    kRootDocumentListeners, "Added custom event listeners on root document, frame ",
    "Failed to add custom event listeners on root document, frame "};
constexpr Snippet kEventInspectorSnippet = {
    kEventInspector, "Loaded EventInspector.js for WebRecord in frame ",
    "Failed to load EventInspector.js for WebRecord in frame "};

int BrowserIdentifier(const CefRefPtr<CefV8Context>& context) {
  const CefRefPtr<CefBrowser> browser = context ? context->GetBrowser() : nullptr;
  return browser ? browser->GetIdentifier() : 0;
}

void RunSnippet(const Snippet& snippet, const CefRefPtr<CefV8Context>& context,
                const CefString& frame_name) {
  CefRefPtr<CefV8Value> value;
  CefRefPtr<CefV8Exception> exception;
  if (RunScriptFile(snippet.path, context, value, exception)) {
    if (ORBCefLog::IsAdmitted(ORBCefLog::kInfo)) {
      ORBCefLog::RendererInfo(BrowserIdentifier(context), snippet.success, frame_name);
    }
  } else if (ORBCefLog::IsAdmitted(ORBCefLog::kWarning)) {
    ORBCefLog::RendererWarning(BrowserIdentifier(context), snippet.failure, frame_name);
  }
}

}  // namespace

std::string ReadScriptFile(const std::string& relative_path) {
  return ReadScriptFileFrom(relative_path, ORBCefToolsWrapperMT::InstallPath());
}

std::string ReadScriptFileFrom(const std::string& relative_path, const std::string& roots) {
  const std::string path = ORBCefToolsWrapperMT::FindFileOnPaths(relative_path, roots);
  if (path.empty()) {
    return std::string();
  }
  std::ifstream file(path, std::ios::in | std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

bool RunScriptFile(const std::string& relative_path, const CefRefPtr<CefV8Context>& context,
                   CefRefPtr<CefV8Value>& value, CefRefPtr<CefV8Exception>& exception) {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_RENDERER) || !context) {
    return false;
  }
  const ORBCefV8ContextScope scope(context);
  return context->Eval(ReadScriptFile(relative_path), relative_path, 1, value, exception);
}

bool IsDevToolsContext(const CefRefPtr<CefV8Context>& context) {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_RENDERER) || !context) {
    return false;
  }
  const CefRefPtr<CefFrame> frame = context->GetFrame();
  CefURLParts parts;
  if (!frame || !CefParseURL(frame->GetURL(), parts)) {
    return false;
  }
  return CefString(&parts.scheme) == kDevToolsScheme;
}

void AddGlobalListeners(const CefRefPtr<CefV8Context>& context, const CefString& frame_name) {
  RunSnippet(kGlobalListenersSnippet, context, frame_name);
}

void AddRootDocumentListeners(const CefRefPtr<CefV8Context>& context, const CefString& frame_name) {
  RunSnippet(kRootDocumentSnippet, context, frame_name);
}

void LoadEventInspector(const CefRefPtr<CefV8Context>& context, const CefString& frame_name) {
  RunSnippet(kEventInspectorSnippet, context, frame_name);
}

}  // namespace ORBCefScriptRunner
