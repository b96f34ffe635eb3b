// What a host gives to the module for a view: its callback table and its web authentication
// delegate. Each writes down what it was called with and counts its references.
#ifndef ORBCEF_TESTS_HOST_DOUBLES_H
#define ORBCEF_TESTS_HOST_DOUBLES_H

#include <functional>
#include <string>
#include <vector>

#include "FakeTools.h"
#include "orbcefbrowserevents.h"
#include "orbcefbrowserhost.h"

namespace engine_doubles {

inline std::string TextOf(const orbcefstring_c* record) {
  return record && record->length ? std::string(record->data, record->length) : std::string();
}

// The callback table of a view. Every event becomes one line.
class HostEvents {
 public:
  HostEvents() {
    _table.instance = this;
    _table.add_ref = [](orbcefbrowserevents_c* self) { ++Of(self).references; };
    _table.release = [](orbcefbrowserevents_c* self) { --Of(self).references; };
    _table.on_state_changed = [](orbcefbrowserevents_c* self, int32_t state) {
      Of(self).Note("state " + std::to_string(state));
    };
    _table.on_v8_context = [](orbcefbrowserevents_c* self, uint8_t created) {
      Of(self).Note("v8 " + std::to_string(created));
    };
    _table.on_strings_received = [](orbcefbrowserevents_c* self,
                                    const orbcefstring_c* const* strings, int32_t count) {
      std::string line = "strings " + std::to_string(count);
      for (int32_t i = 0; i < count; ++i) {
        line += "|" + TextOf(strings[i]);
      }
      Of(self).Note(line);
    };
    _table.on_title_changed = [](orbcefbrowserevents_c* self, const orbcefstring_c* title) {
      Of(self).Note("title " + TextOf(title));
    };
    _table.on_address_changed = [](orbcefbrowserevents_c* self, const orbcefstring_c* url) {
      Of(self).Note("address " + TextOf(url));
    };
    _table.on_loading_state_changed = [](orbcefbrowserevents_c* self, uint8_t loading,
                                         const orbcefstring_c* url) {
      Of(self).Note("loading " + std::to_string(loading) + " " + TextOf(url));
    };
    _table.on_document_size = [](orbcefbrowserevents_c* self, int32_t width, int32_t height) {
      Of(self).Note("size " + std::to_string(width) + "x" + std::to_string(height));
    };
    _table.on_console_message = [](orbcefbrowserevents_c* self, const orbcefstring_c* message,
                                   const orbcefstring_c* source, int32_t line) {
      Of(self).Note("console " + TextOf(message) + " " + TextOf(source) + ":" +
                    std::to_string(line));
    };
    _table.on_zoom_changed = [](orbcefbrowserevents_c* self, double change) {
      Of(self).Note("zoom " + std::to_string(change));
    };
  }

  orbcefbrowserevents_c* Table() { return &_table; }

  int references = 0;
  std::vector<std::string> lines;
  std::function<void()> on_event;

 private:
  static HostEvents& Of(orbcefbrowserevents_c* self) {
    return *static_cast<HostEvents*>(self->instance);
  }
  void Note(const std::string& line) {
    lines.push_back(line);
    if (on_event) {
      on_event();
    }
  }

  orbcefbrowserevents_c _table = {};
};

// The web authentication delegate of a view. An absent answer is a null record.
class HostAuthDelegate {
 public:
  HostAuthDelegate() {
    _table.instance = this;
    _table.add_ref = [](orbcefbrowserhost_c* self) { ++Of(self).references; };
    _table.release = [](orbcefbrowserhost_c* self) { --Of(self).references; };
    _table.is_authenticated = [](orbcefbrowserhost_c* self) -> uint8_t {
      return Of(self).is_authenticated;
    };
    _table.get_turnstile_url = [](orbcefbrowserhost_c* self) -> orbcefstring_c* {
      const std::string& url = Of(self).turnstile_url;
      return url.empty() ? nullptr : FakeTools::NewRecord(url);
    };
    _table.get_transient_ticket_url = [](orbcefbrowserhost_c* self,
                                         const orbcefstring_c* url) -> orbcefstring_c* {
      Of(self).asked_for.push_back(TextOf(url));
      const std::string& ticket = Of(self).ticket_url;
      return ticket.empty() ? nullptr : FakeTools::NewRecord(ticket);
    };
  }

  orbcefbrowserhost_c* Table() { return &_table; }

  int references = 0;
  bool is_authenticated = true;
  std::string turnstile_url;
  std::string ticket_url;
  std::vector<std::string> asked_for;

 private:
  static HostAuthDelegate& Of(orbcefbrowserhost_c* self) {
    return *static_cast<HostAuthDelegate*>(self->instance);
  }

  orbcefbrowserhost_c _table = {};
};

}  // namespace engine_doubles

#endif  // ORBCEF_TESTS_HOST_DOUBLES_H
