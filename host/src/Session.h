// The host's table `orbcefbrowserhost_c`: what it knows of the user's single-sign-on session. Here
// a session is a ticket of the command line, which is added to the URL that a view opens.
//
// Counted; the host holds one reference through `SessionPtr`, the module its own. Any thread.
#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "orbcefbrowserhost.h"

namespace host {

class Session {
 public:
  struct Releaser {
    void operator()(Session* session) const;
  };
  using Pointer = std::unique_ptr<Session, Releaser>;

  // `ticket` is empty for a user without a session.
  static Pointer Make(std::string turnstile, std::string ticket);

  orbcefbrowserhost_c* Table() { return &_table; }

 private:
  struct Slots;

  Session(std::string turnstile, std::string ticket);

  orbcefbrowserhost_c _table;
  std::atomic<int> _references{1};
  const std::string _turnstile;
  const std::string _ticket;
};

}  // namespace host
