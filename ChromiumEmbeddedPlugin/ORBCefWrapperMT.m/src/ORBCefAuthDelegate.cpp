#include "ORBCefAuthDelegate.h"

#include "ORBCefConversionToolsWrapperMT.h"

ORBCefAuthDelegate::ORBCefAuthDelegate(orbcefbrowserhost_c* table) : _table(table) {
  if (_table && _table->add_ref) {
    _table->add_ref(_table);
  }
}

ORBCefAuthDelegate::~ORBCefAuthDelegate() {
  Reset();
}

void ORBCefAuthDelegate::Reset() {
  // Cleared before the call, which may come back here.
  orbcefbrowserhost_c* const table = _table;
  _table = nullptr;
  if (table && table->release) {
    table->release(table);
  }
}

bool ORBCefAuthDelegate::IsAuthenticated() const {
  return _table && _table->is_authenticated && _table->is_authenticated(_table) != 0;
}

std::string ORBCefAuthDelegate::TurnstileURL() const {
  if (!_table || !_table->get_turnstile_url) {
    return std::string();
  }
  const ORBCefCStringHolder url(_table->get_turnstile_url(_table));
  return url.Text();
}

CefString ORBCefAuthDelegate::TransientTicketURL(const CefString& url) const {
  if (!_table || !_table->get_transient_ticket_url) {
    return CefString();
  }
  const ORBCefCStringHolder argument(url);
  const ORBCefCStringHolder ticket(_table->get_transient_ticket_url(_table, argument.Get()));
  return ORBCefConversionToolsWrapperMT::FromCStringToCef(ticket.Get());
}
