// The services that only the host has and that the module needs: one table of 20 functions, given
// right after the factory by `set_tools` of orbcefglobal.h, in every process that loads the module.
//
// The functions take no table argument. Records that the module passes in stay the module's.
// Records that the host returns are handed over: the module frees them through their own free
// function, which the host must fill; a null result counts as an empty text. `const char*` texts
// are UTF-8, terminated by zero and stay with their side; those that the host returns must stay
// valid until the next call of the same function on that thread.
// The module calls from the host's main thread, from the engine's UI and IO threads and, in a
// sub-process, from the renderer's main thread, and several of them at once.
#ifndef ORBCEFTOOLS_H
#define ORBCEFTOOLS_H

#include "orbcefrecords.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct _orbceftools_c _orbceftools_c;
typedef _orbceftools_c orbceftools_c;
struct _orbceftools_c {
  // True on the host's main thread.
  // [any]
  uint8_t (*on_main_thread)(void);
  // Value of an environment variable; null if it is unset, "" if it is empty. `name` is never null.
  // [any]
  const char* (*get_env)(const char* name);
  // Sets an environment variable, `assignment` being "NAME=value". Returns 0 on success. Child
  // processes must inherit it.
  // [any]
  int32_t (*put_env)(const char* assignment);
  // Name of the host's language, for instance "German", "English", "Portuguese_BR",
  // "Simplified_Chinese"; null or an unknown name stands for American English.
  // [main]
  const char* (*compute_lang)(void);
  // Release level of the host, 0 or below for none. It names the cache directory and ends the user
  // agent.
  // [any]
  int32_t (*get_release_level)(void);
  // Translated text of `key` in the message catalogue `catalog`, as a new record; null if there is
  // none. Asked for each item of a context menu, whose labels they are.
  // [ui]
  orbcefstring_c* (*build_catalog_message)(const char* catalog, const char* key);
  // The host's temporary directory as a new record.
  // [main]
  orbcefstring_c* (*get_temp_directory)(void);
  // Creates a directory with its parents. True if it exists afterwards.
  // [main]
  uint8_t (*create_directory)(orbcefstring_c* path);
  // True if `get_record_mode` is ORBCEF_RECORDMODE_CAPTURE.
  // [any]
  uint8_t (*is_record_capture)(void);
  // True if `get_record_mode` is ORBCEF_RECORDMODE_REPLAY.
  // [any]
  uint8_t (*is_record_replay)(void);
  // Whether the host records or replays. Constant for the life of the process.
  // [any]
  orbceftypes_recordmode (*get_record_mode)(void);
  // Reads members of the JSON object in `json`. `keys` holds `count` names; for each that the
  // object has, set the element of `values` (all null on entry) to a new record of the member's
  // text: a string without its quotes, anything else as JSON. False if `json` is not an object.
  // [any]
  uint8_t (*get_json_value)(orbcefstring_c* json, orbcefstring_c** keys, orbcefstring_c** values,
                            int32_t count);
  // JSON text of the web-record module map as a new record; null or empty outside record and
  // replay runs. Asked for in renderer processes too.
  // [any]
  orbcefstring_c* (*get_json_module_map)(void);
  // Path of the local file that stands for `url` in record and replay, as a new record; null or
  // empty if there is none.
  // [io]
  orbcefstring_c* (*remap_url)(orbcefstring_c* url);
  // Writes a preference. `value` is a JavaScript expression, kept as it stands. Returns null or an
  // empty record on success, else a JavaScript expression that the page's promise is rejected with.
  // [main & should_dispatch_events_on_main_thread, else ui]
  orbcefstring_c* (*save_in_preference)(const char* store, const char* key, orbcefstring_c* value);
  // Reads a preference as a new record; null or empty if there is none.
  // [main & should_dispatch_events_on_main_thread, else ui]
  orbcefstring_c* (*read_from_preferences)(const char* store, const char* key);
  // Reads a system setting as a new record; null or empty if there is none.
  // [any]
  orbcefstring_c* (*read_from_sys_settings)(const char* section, const char* key);
  // Reads an integer setting. True if there is one; otherwise `*value` must stay as it is.
  // [main]
  uint8_t (*read_from_settings)(const char* file, const char* key, int32_t* value);
  // Runs `task(data)` once on the host's main thread, later, never inside this call; tasks run in
  // the order in which they were posted. False if the host takes no more tasks: it then never runs.
  // [any]
  uint8_t (*post_task_on_main_thread)(void (*task)(void*), void* data);
  // True if preference jobs must run on the host's main thread instead of the engine's UI thread.
  // [any]
  uint8_t (*should_dispatch_events_on_main_thread)(void);
};

ORBCEF_STATIC_ASSERT(sizeof(_orbceftools_c) == 160, "_orbceftools_c has 20 slots.");

#ifdef __cplusplus
}
#endif

#endif  // ORBCEFTOOLS_H
