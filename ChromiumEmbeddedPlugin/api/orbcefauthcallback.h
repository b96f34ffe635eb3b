// The answer to one challenge for credentials, given to the host in `on_auth_credentials` of
// orbcefbrowserevents.h. The module makes and counts it.
//
// It is lent for the length of that call: a host that answers later takes its own reference with
// `add_ref` and gives it back with `release` after the answer. Answer at most once.
#ifndef ORBCEFAUTHCALLBACK_H
#define ORBCEFAUTHCALLBACK_H

#include "orbcefrecords.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct orbcefauthcallback_c orbcefauthcallback_c;
struct orbcefauthcallback_c {
  // The module's own; never touch it.
  void* tImpl;
  // Adds a reference.
  // [any]
  void (*add_ref)(orbcefauthcallback_c* iCStruct);
  // Takes a reference away; the last one frees the table. A challenge that was never answered then
  // ends as the engine ends it.
  // [any]
  void (*release)(orbcefauthcallback_c* iCStruct);
  // Answers with credentials. Both texts are lent; null counts as empty.
  // [any & !answered]
  void (*continue_with)(orbcefauthcallback_c* iCStruct, const orbcefstring_c* username,
                        const orbcefstring_c* password);
  // Refuses: the page gets the server's answer to a request without credentials.
  // [any & !answered]
  void (*cancel)(orbcefauthcallback_c* iCStruct);
};

ORBCEF_STATIC_ASSERT(sizeof(orbcefauthcallback_c) == 40, "orbcefauthcallback_c has 5 slots.");

#ifdef __cplusplus
}
#endif

#endif  // ORBCEFAUTHCALLBACK_H
