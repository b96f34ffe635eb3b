// An HTTP request on the engine's network stack: it shares the cookies and the session of the
// views. Made by `create_http` of orbcefglobal.h, sent once, read, released.
#ifndef ORBCEFHTTP_H
#define ORBCEFHTTP_H

#include "orbcefrecords.h"

#ifdef __cplusplus
extern "C" {
#endif

// Values of `get_state`.
enum {
  ORBCEF_HTTP_CREATED = 0,   // Never sent, or a blocking send under way.
  ORBCEF_HTTP_RUNNING = 1,   // Sent by `send_async`.
  ORBCEF_HTTP_FINISHED = 2,  // Ended with status 200.
  ORBCEF_HTTP_FAILED = 3,    // Ended with another status, or could not be sent.
  ORBCEF_HTTP_CANCELLED = 4  // Cancelled, or a blocking send that could not run.
};

// What the host may give to `send_async` to follow the request. The host makes and counts it; the
// module holds one reference from the send to the end. Arguments are lent.
typedef struct orbcefhttplistener_c orbcefhttplistener_c;
struct orbcefhttplistener_c {
  // Adds a reference.
  // [any]
  void (*add_ref)(orbcefhttplistener_c* self);
  // Takes the reference away; may be null.
  // [any]
  void (*release)(orbcefhttplistener_c* self);
  // The response's headers, once, before the first data; never for a response without a body.
  // `headers` is null if there is no response.
  // [ui]
  void (*on_headers)(orbcefhttplistener_c* self, const orbcefstringmap_c* headers);
  // The next `size` bytes of the body, at least one; `data` is never null.
  // [ui]
  void (*on_data)(orbcefhttplistener_c* self, const void* data, uint64_t size);
  // `current` of `total` bytes came; `total` is -1 if it is unknown.
  // [ui]
  void (*on_progress)(orbcefhttplistener_c* self, int64_t current, int64_t total);
  // The request ended, by success, failure or cancellation. Once, and the last call but `release`.
  // [ui]
  void (*on_complete)(orbcefhttplistener_c* self);
};

typedef struct orbcefhttp_c orbcefhttp_c;
struct orbcefhttp_c {
  // Adds a reference.
  // [any]
  void (*add_ref)(orbcefhttp_c* iCStruct);
  // Takes a reference away. True if it was the last: request and table are gone.
  // [any]
  uint8_t (*release)(orbcefhttp_c* iCStruct);
  // One of the states above; 0xFFFFFFFF without an object.
  // [any]
  uint32_t (*get_state)(orbcefhttp_c* iCStruct);
  // Sets the method, for instance "POST". False for a null record and once the request was sent.
  // [any & !sent]
  uint8_t (*set_method)(orbcefhttp_c* iCStruct, const orbcefstring_c* method);
  // Sets the URL. False for a null record and once the request was sent.
  // [any & !sent]
  uint8_t (*set_url)(orbcefhttp_c* iCStruct, const orbcefstring_c* url);
  // Replaces all headers. False for a null map and once the request was sent.
  // [any & !sent]
  uint8_t (*set_headers)(orbcefhttp_c* iCStruct, const orbcefstringmap_c* headers);
  // Sets the body to a copy of `size` bytes. False for null or 0, the earlier body stays, and once
  // the request was sent.
  // [any & !sent]
  uint8_t (*set_body)(orbcefhttp_c* iCStruct, const void* data, uint64_t size);
  // Sends and returns. `completion` is an `orbcefhttplistener_c*` or null. False if it could not
  // be sent.
  // [any & engine runs]
  uint8_t (*send_async)(orbcefhttp_c* iCStruct, void* completion);
  // Sends and blocks, without a limit, until the request ended. False if it could not be sent. The
  // body of the response is not kept. Never on the engine's UI thread, which does the work.
  // [any & !ui & engine runs]
  uint8_t (*send_sync)(orbcefhttp_c* iCStruct);
  // Cancels a running request; otherwise nothing.
  // [any]
  void (*cancel)(orbcefhttp_c* iCStruct);
  // The response as a new record that the caller frees; null before there is one.
  // [any]
  orbcefresponse_c* (*get_response)(orbcefhttp_c* iCStruct);
  // The module's own; never touch it.
  void* tImpl;
};

ORBCEF_STATIC_ASSERT(sizeof(orbcefhttplistener_c) == 48, "orbcefhttplistener_c has 6 entries.");
ORBCEF_STATIC_ASSERT(sizeof(orbcefhttp_c) == 96, "orbcefhttp_c has 12 slots.");
ORBCEF_STATIC_ASSERT(offsetof(orbcefhttp_c, tImpl) == 88, "orbcefhttp_c.tImpl");

#ifdef __cplusplus
}
#endif

#endif  // ORBCEFHTTP_H
