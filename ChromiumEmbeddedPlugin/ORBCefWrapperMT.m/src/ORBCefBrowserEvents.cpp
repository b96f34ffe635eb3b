#include "ORBCefBrowserEvents.h"

#include "ORBCefConversionToolsWrapperMT.h"

namespace {

template <class Slot, class... Arguments>
void Call(orbcefbrowserevents_c* table, Slot orbcefbrowserevents_c::*slot, Arguments... arguments) {
  if (table && table->*slot) {
    (table->*slot)(table, arguments...);
  }
}

}  // namespace

void ORBCefBrowserEvents::OnStateChanged(State state) const {
  Call(_table.Get(), &orbcefbrowserevents_c::on_state_changed, static_cast<int32_t>(state));
}

void ORBCefBrowserEvents::OnV8Context(bool created) const {
  Call(_table.Get(), &orbcefbrowserevents_c::on_v8_context, static_cast<uint8_t>(created));
}

void ORBCefBrowserEvents::OnStringsReceived(const std::vector<CefString>& strings) const {
  if (strings.empty() || !_table || !_table->on_strings_received) {
    return;
  }
  std::vector<ORBCefCStringHolder> holders;
  std::vector<const orbcefstring_c*> records;
  holders.reserve(strings.size());
  records.reserve(strings.size());
  for (const CefString& string : strings) {
    holders.emplace_back(string);
    records.push_back(holders.back().Get());
  }
  _table->on_strings_received(_table.Get(), records.data(), static_cast<int32_t>(records.size()));
}

void ORBCefBrowserEvents::OnTitleChanged(const CefString& title) const {
  const ORBCefCStringHolder record(title);
  Call(_table.Get(), &orbcefbrowserevents_c::on_title_changed, record.Get());
}

void ORBCefBrowserEvents::OnAddressChanged(const CefString& url) const {
  const ORBCefCStringHolder record(url);
  Call(_table.Get(), &orbcefbrowserevents_c::on_address_changed, record.Get());
}

void ORBCefBrowserEvents::OnLoadingStateChanged(bool loading, const CefString& url) const {
  const ORBCefCStringHolder record(url);
  Call(_table.Get(), &orbcefbrowserevents_c::on_loading_state_changed,
       static_cast<uint8_t>(loading), record.Get());
}

void ORBCefBrowserEvents::OnDocumentSize(int32_t width, int32_t height) const {
  Call(_table.Get(), &orbcefbrowserevents_c::on_document_size, width, height);
}

void ORBCefBrowserEvents::OnConsoleMessage(const CefString& message, const CefString& source,
                                           int32_t line) const {
  const ORBCefCStringHolder message_record(message);
  const ORBCefCStringHolder source_record(source);
  Call(_table.Get(), &orbcefbrowserevents_c::on_console_message, message_record.Get(),
       source_record.Get(), line);
}

void ORBCefBrowserEvents::OnZoomChanged(double change) const {
  Call(_table.Get(), &orbcefbrowserevents_c::on_zoom_changed, change);
}
