// What a view tells its host: the table that a host gives to `create_browser`. The host makes and
// counts it; the module holds one reference from `create_browser` to `close`. After `close`
// returned on the main thread no event comes any more.
//
// Events come on the engine's UI thread unless told otherwise, most of them under the view's lock:
// copy what you need and go on elsewhere; never block, and never wait for the main thread. Texts
// are lent for the call and never null. Every function slot must be filled.
#ifndef ORBCEFBROWSEREVENTS_H
#define ORBCEFBROWSEREVENTS_H

#include "orbcefauthcallback.h"
#include "orbcefrecords.h"

#ifdef __cplusplus
extern "C" {
#endif

// Values of `on_state_changed`.
enum {
  ORBCEF_STATE_CREATED = 1,       // The engine browser exists; comes again for each allowed popup.
  ORBCEF_STATE_DOM_READY = 2,     // The main document is parsed.
  ORBCEF_STATE_PAGE_UNLOADED = 3  // The page goes away.
};

typedef struct orbcefbrowserevents_c orbcefbrowserevents_c;
struct orbcefbrowserevents_c {
  // The host's own; the module never touches it.
  void* instance;
  // Adds a reference.
  // [main]
  void (*add_ref)(orbcefbrowserevents_c* self);
  // Takes a reference away. In `close` on the main thread, else at the end of the view.
  // [any]
  void (*release)(orbcefbrowserevents_c* self);
  // The view came a step further: ORBCEF_STATE_CREATED, _DOM_READY or _PAGE_UNLOADED.
  // [ui & !detached]
  void (*on_state_changed)(orbcefbrowserevents_c* self, int32_t state);
  // The main frame's script context was created (1) or released (0).
  // [ui & !detached]
  void (*on_v8_context)(orbcefbrowserevents_c* self, uint8_t created);
  // The page sent texts. `strings` is an array of `count` pointers to records, at least one.
  // [ui & !detached]
  void (*on_strings_received)(orbcefbrowserevents_c* self, const orbcefstring_c* const* strings,
                              int32_t count);
  // The page's title changed.
  // [ui & !detached & locked]
  void (*on_title_changed)(orbcefbrowserevents_c* self, const orbcefstring_c* title);
  // The main frame's URL changed.
  // [ui & !detached & locked]
  void (*on_address_changed)(orbcefbrowserevents_c* self, const orbcefstring_c* url);
  // A download went on. `id` is unique in the process; sizes are bytes, `totalBytes` 0 if unknown;
  // `speed` is bytes per second; `complete` is 1 at the end.
  // [ui & !detached & locked]
  void (*on_download_updated)(orbcefbrowserevents_c* self, uint32_t id, int64_t receivedBytes,
                              int64_t totalBytes, int64_t speed, uint8_t complete);
  // Loading began (1) or ended (0). `url` is the URL of the focused frame.
  // [ui & !detached & locked]
  void (*on_loading_state_changed)(orbcefbrowserevents_c* self, uint8_t isLoading,
                                   const orbcefstring_c* url);
  // Never called; leave it null.
  // [none]
  void* reserved10;
  // The page told the size of its document in CSS pixels.
  // [ui & !detached]
  void (*on_document_size)(orbcefbrowserevents_c* self, int32_t width, int32_t height);
  // The page wrote a line to its console; only after `set_forward_console`. `line` counts from 1.
  // [ui & !detached & locked]
  void (*on_console_message)(orbcefbrowserevents_c* self, const orbcefstring_c* message,
                             const orbcefstring_c* source, int32_t line);
  // The page asked for another zoom: a step in zoom levels (one level is a factor of 1.2), or 0 for
  // a reset. Comes also when the view's zoom stays, because the page may not change it.
  // [ui & !detached]
  void (*on_zoom_changed)(orbcefbrowserevents_c* self, double zoomChange);
  // A captured interaction as JSON text; only in a capture run.
  // [ui & !detached]
  void (*on_record_data)(orbcefbrowserevents_c* self, const orbcefstring_c* data);
  // A server, or a proxy if `isProxy`, asks for credentials. Answer through `callback` now, or take
  // a reference and answer later from any thread. A load waits for the answer.
  // [io & !detached]
  void (*on_auth_credentials)(orbcefbrowserevents_c* self, const orbcefstring_c* originUrl,
                              uint8_t isProxy, const orbcefstring_c* host, int32_t port,
                              orbcefauthcallback_c* callback);
};

ORBCEF_STATIC_ASSERT(sizeof(orbcefbrowserevents_c) == 128, "orbcefbrowserevents_c has 16 slots.");
ORBCEF_STATIC_ASSERT(offsetof(orbcefbrowserevents_c, reserved10) == 80, "slot 10");

#ifdef __cplusplus
}
#endif

#endif  // ORBCEFBROWSEREVENTS_H
