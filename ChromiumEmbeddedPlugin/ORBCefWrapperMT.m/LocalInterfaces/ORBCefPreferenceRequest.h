// One request of a page to write or read a preference, from the arrival of its message until the
// page's promise is settled.
//
// Made on the engine's UI thread when the message arrives. The job runs there as well, or on the
// host's main thread if the host wants its preferences touched there only; whoever runs it owns the
// request. No lock is held meanwhile: the host's store may take its time.

#ifndef ORBCEF_PREFERENCE_REQUEST_H
#define ORBCEF_PREFERENCE_REQUEST_H

#include <cstdint>
#include <memory>
#include <string>

#include "include/cef_browser.h"
#include "include/cef_frame.h"
#include "include/cef_values.h"

struct ORBCefPreferenceRequest {
  // Where the settling scripts stand, for the page's stack traces.
  static constexpr int kResolveLine = 251;
  static constexpr int kRejectLine = 260;

  // The requests of the messages "SaveValue" and "LoadValue".
  // @param sender  the main frame of the page that asks; null takes the browser's.
  // @return null if arguments are missing, or the browser has no main frame.
  static std::unique_ptr<ORBCefPreferenceRequest> FromSaveValue(
      const CefRefPtr<CefBrowser>& browser, const CefRefPtr<CefFrame>& sender,
      const CefRefPtr<CefListValue>& arguments);
  static std::unique_ptr<ORBCefPreferenceRequest> FromLoadValue(
      const CefRefPtr<CefBrowser>& browser, const CefRefPtr<CefFrame>& sender,
      const CefRefPtr<CefListValue>& arguments);

  // Runs the job at once, or hands it to the host's main thread. A host that takes no more tasks
  // leaves the page's promise open.
  static void Start(std::unique_ptr<ORBCefPreferenceRequest> request);

  // The job: asks the host's store and settles the promise by a script in `frame`, which does
  // nothing if that has gone.
  void Run();

  // The main frame of the page that asked, whichever of its frames did. A page of another site
  // speaks before the browser calls its frame the main one: the browser's would be the old page's.
  CefRefPtr<CefFrame> frame;
  std::int32_t promise_id = 0;
  std::string repository;
  std::string key;
  // What to write; after the operation, what the promise is resolved with: JavaScript, as it
  // stands.
  std::string value;
  bool is_read = false;
};

#endif  // ORBCEF_PREFERENCE_REQUEST_H
