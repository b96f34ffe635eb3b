// A web view. Made by `create_browser` of orbcefglobal.h with one reference; then: setters,
// `create` once, free use, `close`, `release`.
//
// Common to all slots: `iCStruct` is the table, never null. Texts given are lent, null counts as
// empty unless told otherwise; texts returned are new records that the caller frees, empty rather
// than null. "Nothing" means that the call does nothing without an engine browser: before it exists
// (the event ORBCEF_STATE_CREATED tells) and once the view is closing. A view without its object
// answers false, 0 or null. The tag [main] asks for the host's main thread, not the engine's.
#ifndef ORBCEFBROWSER_H
#define ORBCEFBROWSER_H

#include "orbcefrecords.h"

#ifdef __cplusplus
extern "C" {
#endif

// Values of `get_popup_mode`. Any other value acts as ORBCEF_POPUP_ALLOW.
enum {
  ORBCEF_POPUP_BLOCK = 0,           // No popup opens.
  ORBCEF_POPUP_ALLOW = 1,           // Popups open as engine windows; the default.
  ORBCEF_POPUP_EXTERNAL = 2,        // Popups open in the system's default browser.
  ORBCEF_POPUP_EXTERNAL_TICKET = 3  // The same, with a ticket of the single-sign-on service.
};

typedef struct orbcefbrowser_c orbcefbrowser_c;
struct orbcefbrowser_c {
  // Slot 0: the module's own; never touch it.
  void* instance;
  // Slot 1: adds a reference. [any]
  void (*add_ref)(orbcefbrowser_c* iCStruct);
  // Slot 2: takes a reference away; the last one frees the table. Call `close` before. [main]
  void (*release)(orbcefbrowser_c* iCStruct);

  // Slots 3 to 6: two marks of the host's own (false, true at first); the module only keeps them.
  // [main]
  uint8_t (*get_flag0)(orbcefbrowser_c* iCStruct);
  // Sets the first mark. [main]
  void (*set_flag0)(orbcefbrowser_c* iCStruct, uint8_t value);
  // The second mark. [main]
  uint8_t (*get_flag1)(orbcefbrowser_c* iCStruct);
  // Sets the second mark. [main]
  void (*set_flag1)(orbcefbrowser_c* iCStruct, uint8_t value);
  // Slots 7, 8: may pages run scripts? True at first. [main]
  uint8_t (*get_javascript_enabled)(orbcefbrowser_c* iCStruct);
  // Takes effect at `create` and for developer tools opened later. [main & !created]
  void (*set_javascript_enabled)(orbcefbrowser_c* iCStruct, uint8_t enabled);
  // Slots 9, 10: a third mark of the host's own, true at first. [main]
  uint8_t (*get_flag3)(orbcefbrowser_c* iCStruct);
  // Sets the third mark. [main]
  void (*set_flag3)(orbcefbrowser_c* iCStruct, uint8_t value);
  // Slots 11, 12: may the user go back and forward, by key, menu or page? True at first. [main]
  uint8_t (*get_history_enabled)(orbcefbrowser_c* iCStruct);
  // Takes effect at once. [main]
  void (*set_history_enabled)(orbcefbrowser_c* iCStruct, uint8_t enabled);
  // Slots 13, 14: may the user reload, by key, menu or page? True at first. [main]
  uint8_t (*get_reload_enabled)(orbcefbrowser_c* iCStruct);
  // Takes effect at once. [main]
  void (*set_reload_enabled)(orbcefbrowser_c* iCStruct, uint8_t enabled);
  // Slots 15, 16: may the page change its zoom? True at first. [main]
  uint8_t (*get_zoom_by_page_enabled)(orbcefbrowser_c* iCStruct);
  // Takes effect at once. [main]
  void (*set_zoom_by_page_enabled)(orbcefbrowser_c* iCStruct, uint8_t enabled);
  // Slots 17, 18: does the host hear console lines? False at first. [main]
  uint8_t (*get_forward_console)(orbcefbrowser_c* iCStruct);
  // Takes effect at once. [main]
  void (*set_forward_console)(orbcefbrowser_c* iCStruct, uint8_t forward);
  // Slots 19, 20: directory of downloads; empty, as at first, asks the user each time. [main]
  orbcefstring_c* (*get_download_dir)(orbcefbrowser_c* iCStruct);
  // Takes an absolute path of an existing directory, refuses any other; empty clears. [main]
  void (*set_download_dir)(orbcefbrowser_c* iCStruct, const orbcefstring_c* path);
  // Slots 21, 22: page shown when a main document fails to connect; empty at first. [main]
  orbcefstring_c* (*get_error_url)(orbcefbrowser_c* iCStruct);
  // Takes effect at once; empty shows the engine's own page. [main]
  void (*set_error_url)(orbcefbrowser_c* iCStruct, const orbcefstring_c* url);
  // Slots 23, 24: what becomes of popups, one of the values above; 1 without an object. [main]
  int32_t (*get_popup_mode)(orbcefbrowser_c* iCStruct);
  // Takes effect at once. [main]
  void (*set_popup_mode)(orbcefbrowser_c* iCStruct, int32_t mode);
  // Slots 25, 26: may pages navigate to file: URLs? False at first. [main]
  uint8_t (*get_local_files_allowed)(orbcefbrowser_c* iCStruct);
  // Takes effect at once. [main]
  void (*set_local_files_allowed)(orbcefbrowser_c* iCStruct, uint8_t allowed);
  // Slots 27, 28: may navigation leave the origin of the home URL? True at first. [main]
  uint8_t (*get_external_navigation_allowed)(orbcefbrowser_c* iCStruct);
  // Takes effect at once. [main]
  void (*set_external_navigation_allowed)(orbcefbrowser_c* iCStruct, uint8_t allowed);
  // Slots 29, 30: are the page's alert, confirm and prompt shown? False at first. [main]
  uint8_t (*get_js_dialogs_allowed)(orbcefbrowser_c* iCStruct);
  // Takes effect at once. [main]
  void (*set_js_dialogs_allowed)(orbcefbrowser_c* iCStruct, uint8_t allowed);

  // Slot 31: shows the view at its last bounds, or shrinks its window to nothing in its place.
  // Takes effect 200 ms later unless called on the engine's UI thread. [any & !closing]
  void (*set_visible)(orbcefbrowser_c* iCStruct, uint8_t show);
  // Slot 32: creates the engine browser, later, as a child of `parentWindow` (an HWND; on X11 the
  // window's id) at `rect`: x, y, width, height in device pixels, relative to the parent. Null
  // `rect` does nothing. The parent must live until the view's window is gone.
  // [main & once]
  void (*create)(orbcefbrowser_c* iCStruct, void* parentWindow, const int32_t rect[4],
                 const orbcefstring_c* url);
  // Slot 33: closes the engine browser, asking no unload handler if `force`, without waiting, and
  // releases both host tables: no event comes after it.
  // [main]
  void (*close)(orbcefbrowser_c* iCStruct, uint8_t force);
  // Slot 34: loads a URL in the main frame. Null does nothing. [any & !closing]
  void (*load_url)(orbcefbrowser_c* iCStruct, const orbcefstring_c* url);
  // Slot 35: is there a page to go back to? [any]
  uint8_t (*can_go_back)(orbcefbrowser_c* iCStruct);
  // Slot 36: goes back, or nothing. [any & !closing]
  void (*go_back)(orbcefbrowser_c* iCStruct);
  // Slot 37: is there a page to go forward to? [any]
  uint8_t (*can_go_forward)(orbcefbrowser_c* iCStruct);
  // Slot 38: goes forward, or nothing. [any & !closing]
  void (*go_forward)(orbcefbrowser_c* iCStruct);
  // Slot 39: loads the page again, through the cache, or nothing. [any & !closing]
  void (*reload)(orbcefbrowser_c* iCStruct);
  // Slot 40: stops loading, or nothing. [any & !closing]
  void (*stop_load)(orbcefbrowser_c* iCStruct);
  // Slot 41: copies the focused frame's selection to the clipboard, or nothing. [any & !closing]
  void (*copy)(orbcefbrowser_c* iCStruct);
  // Slot 42: cuts it, or nothing. [any & !closing]
  void (*cut)(orbcefbrowser_c* iCStruct);
  // Slot 43: pastes the clipboard into the focused frame, or nothing. [any & !closing]
  void (*paste)(orbcefbrowser_c* iCStruct);
  // Slot 44: deletes the focused frame's selection, or nothing. [any & !closing]
  void (*delete_selection)(orbcefbrowser_c* iCStruct);
  // Slot 45: selects all in the focused frame, or nothing. [any & !closing]
  void (*select_all)(orbcefbrowser_c* iCStruct);
  // Slot 46: takes the focused frame's last edit back, or nothing. [any & !closing]
  void (*undo)(orbcefbrowser_c* iCStruct);
  // Slot 47: does that edit again, or nothing. [any & !closing]
  void (*redo)(orbcefbrowser_c* iCStruct);
  // Slot 48: URL of the main frame as last told; before that, the one given to `create`. [main]
  orbcefstring_c* (*get_current_url)(orbcefbrowser_c* iCStruct);
  // Slots 49, 50: URL that Home leads to and whose origin is the view's own. [main]
  orbcefstring_c* (*get_home_url)(orbcefbrowser_c* iCStruct);
  // Takes effect at once; does not load it. [main]
  void (*set_home_url)(orbcefbrowser_c* iCStruct, const orbcefstring_c* url);
  // Slot 51: runs a script in the main frame, or keeps it in order until the page has loaded. `url`
  // and `line` (counted from 1) are what its errors tell; an empty `url` is the page's own. No word
  // of its outcome comes back.
  // [any]
  void (*execute_javascript)(orbcefbrowser_c* iCStruct, const orbcefstring_c* code,
                             const orbcefstring_c* url, int32_t line);
  // Slot 52: sets the zoom in levels: 0 is 100 %, each level a factor of 1.2. [any & !closing]
  void (*set_zoom_level)(orbcefbrowser_c* iCStruct, double level);
  // Slot 53: adds to the zoom level. [any & !closing]
  void (*change_zoom_level)(orbcefbrowser_c* iCStruct, double delta);
  // Slot 54: opens the developer tools in a window of their own, or nothing. The user opens them by
  // key or menu only where the environment has ORBCEF_DEVTOOLS; this does not ask.
  // [any & !closing]
  void (*show_dev_tools)(orbcefbrowser_c* iCStruct);
  // Slot 55: closes them, or nothing. [any & !closing]
  void (*close_dev_tools)(orbcefbrowser_c* iCStruct);
  // Slot 56: the view's own window, null before it exists and after `close`. [any]
  void* (*get_window)(orbcefbrowser_c* iCStruct);
  // Slot 57: tells the page that the host's window moves or changes its size. [any & !closing]
  void (*notify_move_or_resize)(orbcefbrowser_c* iCStruct);
  // Slot 58: moves the view to `rect` (as in `create`), later. Null does nothing. [any & !closing]
  void (*set_bounds)(orbcefbrowser_c* iCStruct, const int32_t rect[4]);
  // Slot 59: replays one recorded interaction (JSON text) and blocks until it has run, at most for
  // the time-outs of a replay. Returns a new record that the caller frees; null without an object.
  // [main & replay run & !ui]
  orbcefreplayresult_c* (*execute_replay)(orbcefbrowser_c* iCStruct,
                                          const orbcefstring_c* interaction);
};

ORBCEF_STATIC_ASSERT(sizeof(orbcefbrowser_c) == 480, "orbcefbrowser_c has 60 slots.");
ORBCEF_STATIC_ASSERT(offsetof(orbcefbrowser_c, create) == 32 * 8, "slot 32");
ORBCEF_STATIC_ASSERT(offsetof(orbcefbrowser_c, execute_replay) == 59 * 8, "slot 59");

#ifdef __cplusplus
}
#endif

#endif  // ORBCEFBROWSER_H
