// The host's callback table of a view. Holds one reference on the table for as long as it keeps
// it, builds the records of each call and frees them afterwards. A missing table or slot makes a
// call do nothing. The owner, the client handler, calls everything under its lock, on the thread
// of the engine callback concerned.
#ifndef ORBCEF_BROWSER_EVENTS_H
#define ORBCEF_BROWSER_EVENTS_H

#include <cstdint>
#include <vector>

#include "ORBCefToolsWrapperMT.h"
#include "include/internal/cef_string.h"
#include "orbcefbrowserevents.h"

class ORBCefBrowserEvents {
 public:
  enum State : int32_t { kCreated = 1, kDocumentReady = 2, kUnloaded = 3 };

  explicit ORBCefBrowserEvents(orbcefbrowserevents_c* table) : _table(table) {}
  ORBCefBrowserEvents(const ORBCefBrowserEvents&) = delete;
  ORBCefBrowserEvents& operator=(const ORBCefBrowserEvents&) = delete;

  bool IsSet() const { return static_cast<bool>(_table); }
  // Gives the reference back; the host hears nothing more.
  void Reset() { _table.Reset(); }

  void OnStateChanged(State state) const;
  void OnV8Context(bool created) const;
  // Nothing is called for an empty list.
  void OnStringsReceived(const std::vector<CefString>& strings) const;
  void OnTitleChanged(const CefString& title) const;
  void OnAddressChanged(const CefString& url) const;
  void OnLoadingStateChanged(bool loading, const CefString& url) const;
  void OnDocumentSize(int32_t width, int32_t height) const;
  void OnConsoleMessage(const CefString& message, const CefString& source, int32_t line) const;
  void OnZoomChanged(double change) const;

 private:
  ORBCefTableRef<orbcefbrowserevents_c> _table;
};

#endif  // ORBCEF_BROWSER_EVENTS_H
