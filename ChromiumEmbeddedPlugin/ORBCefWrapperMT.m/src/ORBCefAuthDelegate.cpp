#include "ORBCefAuthDelegate.h"

#include "ORBCefConversionToolsWrapperMT.h"

bool ORBCefAuthDelegate::IsAuthenticated() const {
  return _table && _table->is_authenticated && _table->is_authenticated(_table.Get()) != 0;
}

std::string ORBCefAuthDelegate::TurnstileURL() const {
  if (!_table || !_table->get_turnstile_url) {
    return std::string();
  }
  const ORBCefCStringHolder url(_table->get_turnstile_url(_table.Get()));
  return url.Text();
}

CefString ORBCefAuthDelegate::TransientTicketURL(const CefString& url) const {
  if (!_table || !_table->get_transient_ticket_url) {
    return CefString();
  }
  const ORBCefCStringHolder argument(url);
  const ORBCefCStringHolder ticket(_table->get_transient_ticket_url(_table.Get(), argument.Get()));
  return ORBCefConversionToolsWrapperMT::FromCStringToCef(ticket.Get());
}
