// Scripts of the host for one page: run at once if the page can take them, otherwise kept in their
// order until the page has finished loading. Any thread; the owner, the client handler, calls
// every operation under its lock, so that no script overtakes one that is being flushed.
#ifndef ORBCEF_SCRIPT_QUEUE_H
#define ORBCEF_SCRIPT_QUEUE_H

#include <cstddef>
#include <deque>

#include "include/cef_browser.h"
#include "include/cef_frame.h"

class ORBCefScriptQueue {
 public:
  // What flushed scripts show as their origin, whatever their caller asked for.
  static constexpr char kScriptURL[] =
      "ChromiumEmbeddedPlugin/ORBCefWrapperMT.m/src/ORBCefClientHandler";
  static constexpr int kScriptLine = 2217;

  // `browser` may be null; `browser_id` goes into the log lines. Only the code is kept when the
  // script has to wait: its URL and line are lost.
  void Execute(const CefRefPtr<CefBrowser>& browser, int browser_id, const CefString& code,
               const CefString& script_url, int start_line);

  // Runs everything that waits, first in first out. Without a main frame everything stays.
  void Flush(const CefRefPtr<CefBrowser>& browser, int browser_id);

  size_t Size() const { return _scripts.size(); }

 private:
  std::deque<CefString> _scripts;
};

#endif  // ORBCEF_SCRIPT_QUEUE_H
