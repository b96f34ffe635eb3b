// Runs the script files of the installation in a page.
//
// Much of what a page can do with the host lies in these files; this is the one place that reads
// and evaluates them. A path is relative to an installation root, with forward slashes, and is also
// the script's name in stack traces. Files are read again on each run, only the list of roots is
// kept. Everything here belongs to the renderer main thread; nothing is owned.

#ifndef ORBCEF_SCRIPT_RUNNER_H
#define ORBCEF_SCRIPT_RUNNER_H

#include <string>

#include "include/cef_v8.h"

namespace ORBCefScriptRunner {

// Folder of the bindings' scripts, with its final slash.
constexpr char kBindingsFolder[] = "webapps/ORBCefBindings/";

constexpr char kRootDocumentListeners[] =
    "webapps/ORBCefBindings/snippets/addRootDocumentEventListeners.js";
constexpr char kGlobalListeners[] = "webapps/ORBCefBindings/snippets/addGlobalEventListeners.js";
constexpr char kEventInspector[] = "webapps/WebRecordClient/Record/EventInspector.js";
constexpr char kGetDocumentSize[] = "webapps/ORBCefBindings/snippets/getDocumentSize.js";

// The whole content of the first file of that name on the installation roots; empty if there is
// none or it cannot be read.
std::string ReadScriptFile(const std::string& relative_path);

// The same with the ";"-separated `roots` in the place of the installation's.
std::string ReadScriptFileFrom(const std::string& relative_path, const std::string& roots);

// Evaluates the file in `context`, which need not be the current one. A missing file counts as an
// empty script. [renderer]
// @param value,exception receive what the script left.
// @return false off TID_RENDERER and for a null context, else what the engine says of the script.
bool RunScriptFile(const std::string& relative_path, const CefRefPtr<CefV8Context>& context,
                   CefRefPtr<CefV8Value>& value, CefRefPtr<CefV8Exception>& exception);

// True if the context's frame shows the developer tools. False in all doubtful cases, also off
// TID_RENDERER. [renderer]
bool IsDevToolsContext(const CefRefPtr<CefV8Context>& context);

// The listener snippets. Each logs whether its script ran, with the frame's name, and drops the
// script's value and exception. [renderer]
void AddGlobalListeners(const CefRefPtr<CefV8Context>& context, const CefString& frame_name);
void AddRootDocumentListeners(const CefRefPtr<CefV8Context>& context, const CefString& frame_name);
void LoadEventInspector(const CefRefPtr<CefV8Context>& context, const CefString& frame_name);

}  // namespace ORBCefScriptRunner

#endif  // ORBCEF_SCRIPT_RUNNER_H
