// The named messages that go from a render process to the browser process, and the routines that
// send them.
//
// Every message goes one way, renderer to browser: what comes back is JavaScript that the browser
// process executes in the page. The names are compared exactly. The senders belong to the renderer
// main thread, so the messages of a page arrive in the order of its calls; the receiver,
// `ORBCefClientHandler`, uses the names alone, on TID_UI. The functions own nothing: a message is
// the engine's once it has been sent.

#ifndef ORBCEF_PROCESS_MESSAGES_H
#define ORBCEF_PROCESS_MESSAGES_H

#include <cstddef>

#include "include/cef_browser.h"
#include "include/cef_process_message.h"

namespace ORBCefMessage {

// The state of the page.
constexpr char kV8Context[] = "V8Context";
constexpr char kFocusedNodeChanged[] = "FocusedNodeChanged";
constexpr char kOnDOMContentLoaded[] = "OnDOMContentLoaded";
constexpr char kOnUnload[] = "OnUnload";
constexpr char kOnZoomChanged[] = "OnZoomChanged";
constexpr char kOnZoomReset[] = "OnZoomReset";
constexpr char kDocumentSize[] = "DocumentSize";

// The browser process leaves these two unhandled; they are sent all the same.
constexpr char kDeferAddEventListeners[] = "DeferAddEventListeners";
constexpr char kOnLoad[] = "OnLoad";

// What the page asks for.
constexpr char kSendString[] = "SendString";
constexpr char kLoadHome[] = "LoadHome";
constexpr char kOpenDevTools[] = "OpenDevTools";
constexpr char kCloseDevTools[] = "CloseDevTools";
constexpr char kSaveValue[] = "SaveValue";
constexpr char kLoadValue[] = "LoadValue";

// Record and replay.
constexpr char kRecordData[] = "RecordData";
constexpr char kReplayQuery[] = "ReplayQuery";
constexpr char kReplayResult[] = "ReplayResult";
constexpr char kReplayAbort[] = "ReplayAbort";
constexpr char kOnInterpreterLoaded[] = "OnInterpreterLoaded";

// Reserved: nothing sends or reads it.
constexpr char kRecordableDoc[] = "RecordableDoc";

// Makes the message `name` whose argument list holds exactly `item_count` items, all of them null
// so far.
// @return null only when the engine gives no message.
CefRefPtr<CefProcessMessage> Create(const char* name, std::size_t item_count);

// Sends `message` through the browser's main frame, whichever frame's script caused it. A null
// browser, frame or message sends nothing. [renderer]
void SendToBrowser(const CefRefPtr<CefBrowser>& browser,
                   const CefRefPtr<CefProcessMessage>& message);

// Sends the message `name` without arguments. [renderer]
// @return false for a null browser, else true.
bool SendPlain(const CefRefPtr<CefBrowser>& browser, const char* name);

// Sends `name` with one bool; serves "V8Context" and "FocusedNodeChanged". [renderer]
// @return false for a null browser, else true.
bool SendFlag(const CefRefPtr<CefBrowser>& browser, const char* name, bool value);

// @param step zoom step in hundredths; the caller has excluded 0. [renderer]
// @return false for a null browser, else true.
bool SendZoomChanged(const CefRefPtr<CefBrowser>& browser, double step);

// @param width,height size of the document in CSS pixels. [renderer]
// @return false for a null browser, else true.
bool SendDocumentSize(const CefRefPtr<CefBrowser>& browser, int width, int height);

// The requests for stored values. [renderer]
// @param key the promise that waits for the answer; the caller has excluded keys below 1.
// @param origin the repository of values that the page names.
// @return false for a null browser, else true.
bool SendSaveValue(const CefRefPtr<CefBrowser>& browser, int key, const CefString& origin,
                   const CefString& name, const CefString& value);
bool SendLoadValue(const CefRefPtr<CefBrowser>& browser, int key, const CefString& origin,
                   const CefString& name);

}  // namespace ORBCefMessage

#endif  // ORBCEF_PROCESS_MESSAGES_H
