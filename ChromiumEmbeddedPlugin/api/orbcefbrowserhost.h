// What the host knows of the user's web session: the second, optional table that a host gives to
// `create_browser`. The host makes and counts it; the module holds one reference until the view is
// closed or the session refuses a ticket.
#ifndef ORBCEFBROWSERHOST_H
#define ORBCEFBROWSERHOST_H

#include "orbcefrecords.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct orbcefbrowserhost_c orbcefbrowserhost_c;
struct orbcefbrowserhost_c {
  // The host's own; the module never touches it.
  void* instance;
  // Adds a reference.
  // [main]
  void (*add_ref)(orbcefbrowserhost_c* self);
  // Takes a reference away.
  // [any]
  void (*release)(orbcefbrowserhost_c* self);
  // True if the user has a session with the single-sign-on service.
  // [main]
  uint8_t (*is_authenticated)(orbcefbrowserhost_c* self);
  // Base URL of the single-sign-on service as a new record that the module frees; null if there is
  // none.
  // [main]
  orbcefstring_c* (*get_turnstile_url)(orbcefbrowserhost_c* self);
  // The URL to load instead of `url` so that the page opens with the user's session, as a new
  // record that the module frees. Null or empty means that no ticket could be had: the view then
  // opens without one, and the module releases this table. May block; the view waits for it.
  // [main]
  orbcefstring_c* (*get_transient_ticket_url)(orbcefbrowserhost_c* self, const orbcefstring_c* url);
};

ORBCEF_STATIC_ASSERT(sizeof(orbcefbrowserhost_c) == 48, "orbcefbrowserhost_c has 6 slots.");

#ifdef __cplusplus
}
#endif

#endif  // ORBCEFBROWSERHOST_H
