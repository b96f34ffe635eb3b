// The host's web authentication delegate of a view. Holds one reference on the table for as long
// as it keeps it and frees the records that it gets. A missing table or slot answers no or
// nothing. Used by the client handler, mostly on the host's main thread.
#ifndef ORBCEF_AUTH_DELEGATE_H
#define ORBCEF_AUTH_DELEGATE_H

#include <string>

#include "ORBCefToolsWrapperMT.h"
#include "include/internal/cef_string.h"
#include "orbcefbrowserhost.h"

class ORBCefAuthDelegate {
 public:
  explicit ORBCefAuthDelegate(orbcefbrowserhost_c* table) : _table(table) {}
  ORBCefAuthDelegate(const ORBCefAuthDelegate&) = delete;
  ORBCefAuthDelegate& operator=(const ORBCefAuthDelegate&) = delete;

  bool IsSet() const { return static_cast<bool>(_table); }
  void Reset() { _table.Reset(); }

  bool IsAuthenticated() const;
  std::string TurnstileURL() const;
  CefString TransientTicketURL(const CefString& url) const;

 private:
  ORBCefTableRef<orbcefbrowserhost_c> _table;
};

#endif  // ORBCEF_AUTH_DELEGATE_H
