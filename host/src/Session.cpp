#include "Session.h"

#include <cstdio>
#include <utility>

#include "Records.h"

namespace host {

struct Session::Slots {
  static Session* Of(orbcefbrowserhost_c* self) { return static_cast<Session*>(self->instance); }

  static void AddRef(orbcefbrowserhost_c* self) { ++Of(self)->_references; }

  static void Release(orbcefbrowserhost_c* self) { Releaser()(Of(self)); }

  static uint8_t IsAuthenticated(orbcefbrowserhost_c* self) {
    return Of(self)->_ticket.empty() ? 0 : 1;
  }

  static orbcefstring_c* GetTurnstileUrl(orbcefbrowserhost_c* self) {
    return NewRecord(Of(self)->_turnstile);
  }

  static orbcefstring_c* GetTransientTicketUrl(orbcefbrowserhost_c* self,
                                               const orbcefstring_c* url) {
    const std::string plain = TextOf(url);
    std::printf("[session] ticket for %s\n", plain.c_str());
    const char* joint = plain.find('?') == std::string::npos ? "?" : "&";
    return NewRecord(plain + joint + "ticket=" + Of(self)->_ticket);
  }
};

Session::Pointer Session::Make(std::string turnstile, std::string ticket) {
  return Pointer(new Session(std::move(turnstile), std::move(ticket)));
}

Session::Session(std::string turnstile, std::string ticket)
    : _table{this,
             &Slots::AddRef,
             &Slots::Release,
             &Slots::IsAuthenticated,
             &Slots::GetTurnstileUrl,
             &Slots::GetTransientTicketUrl},
      _turnstile(std::move(turnstile)),
      _ticket(std::move(ticket)) {}

void Session::Releaser::operator()(Session* session) const {
  if (--session->_references == 0) {
    delete session;
  }
}

}  // namespace host
