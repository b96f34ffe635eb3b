// Checks the size of every table and record of api/ and the offset of every member, as a C compiler
// lays them out, against the tables below. They are written here a second time on purpose: a slot
// that moves must be moved in two places before anybody's host is called through the wrong one.
//
//   layout_test         checks
//   layout_test list    prints "type member offset size" for bindings in other languages

#include <stddef.h>
#include <string.h>

#include "check.h"
#include "orbcefglobal.h"

typedef struct {
  const char* name;
  size_t offset;
  size_t size;
} member;

#define MEMBER(type, name) \
  { #name, offsetof(type, name), sizeof(((type*)0)->name) }

// Members in the order of their declaration, and the order that they must have.
// Set by the argument "list": prints the layout instead of checking it.
static int g_list;

static void list(const char* type, member found) {
  printf("%s %s %zu %zu\n", type, found.name, found.offset, found.size);
}

static void check_slots(const char* type, size_t size, const member* members, size_t count,
                        const char* const* expected, size_t expected_count) {
  if (g_list) {
    for (size_t i = 0; i < count; ++i) {
      list(type, members[i]);
    }
    return;
  }
  char text[160];
  snprintf(text, sizeof(text), "%s has %zu bytes", type, expected_count * 8);
  check(size == expected_count * 8, text);
  snprintf(text, sizeof(text), "%s has %zu slots in this test", type, expected_count);
  check(count == expected_count, text);
  for (size_t i = 0; i < count && i < expected_count; ++i) {
    snprintf(text, sizeof(text), "%s slot %zu is %s", type, i, expected[i]);
    check(strcmp(members[i].name, expected[i]) == 0 && members[i].offset == i * 8 &&
              members[i].size == 8,
          text);
  }
}

#define COUNT(array) (sizeof(array) / sizeof((array)[0]))
#define CHECK_SLOTS(type)                                                                        \
  check_slots(#type, sizeof(type), members_of_##type, COUNT(members_of_##type), slots_of_##type, \
              COUNT(slots_of_##type))

static void check_member(const char* type, member found, size_t offset, size_t size) {
  if (g_list) {
    list(type, found);
    return;
  }
  char text[160];
  snprintf(text, sizeof(text), "%s.%s is at %zu with %zu bytes", type, found.name, offset, size);
  check(found.offset == offset && found.size == size, text);
}

#define CHECK_MEMBER(type, name, offset, size) \
  check_member(#type, (member)MEMBER(type, name), offset, size)

static void check_size(const char* type, size_t found, size_t expected) {
  if (g_list) {
    return;
  }
  char text[160];
  snprintf(text, sizeof(text), "%s has %zu bytes", type, expected);
  check(found == expected, text);
}

static const member members_of_orbcefglobal_c[] = {
    MEMBER(orbcefglobal_c, create_browser),     MEMBER(orbcefglobal_c, create_http),
    MEMBER(orbcefglobal_c, init_engine),        MEMBER(orbcefglobal_c, shutdown_engine),
    MEMBER(orbcefglobal_c, execute_subprocess), MEMBER(orbcefglobal_c, set_tools),
    MEMBER(orbcefglobal_c, is_available),       MEMBER(orbcefglobal_c, reserved),
};
static const char* const slots_of_orbcefglobal_c[] = {
    "create_browser",     "create_http", "init_engine",  "shutdown_engine",
    "execute_subprocess", "set_tools",   "is_available", "reserved"};

static const member members_of_orbcefbrowser_c[] = {
    MEMBER(orbcefbrowser_c, instance),
    MEMBER(orbcefbrowser_c, add_ref),
    MEMBER(orbcefbrowser_c, release),
    MEMBER(orbcefbrowser_c, get_flag0),
    MEMBER(orbcefbrowser_c, set_flag0),
    MEMBER(orbcefbrowser_c, get_flag1),
    MEMBER(orbcefbrowser_c, set_flag1),
    MEMBER(orbcefbrowser_c, get_javascript_enabled),
    MEMBER(orbcefbrowser_c, set_javascript_enabled),
    MEMBER(orbcefbrowser_c, get_flag3),
    MEMBER(orbcefbrowser_c, set_flag3),
    MEMBER(orbcefbrowser_c, get_history_enabled),
    MEMBER(orbcefbrowser_c, set_history_enabled),
    MEMBER(orbcefbrowser_c, get_reload_enabled),
    MEMBER(orbcefbrowser_c, set_reload_enabled),
    MEMBER(orbcefbrowser_c, get_zoom_by_page_enabled),
    MEMBER(orbcefbrowser_c, set_zoom_by_page_enabled),
    MEMBER(orbcefbrowser_c, get_forward_console),
    MEMBER(orbcefbrowser_c, set_forward_console),
    MEMBER(orbcefbrowser_c, get_download_dir),
    MEMBER(orbcefbrowser_c, set_download_dir),
    MEMBER(orbcefbrowser_c, get_error_url),
    MEMBER(orbcefbrowser_c, set_error_url),
    MEMBER(orbcefbrowser_c, get_popup_mode),
    MEMBER(orbcefbrowser_c, set_popup_mode),
    MEMBER(orbcefbrowser_c, get_local_files_allowed),
    MEMBER(orbcefbrowser_c, set_local_files_allowed),
    MEMBER(orbcefbrowser_c, get_external_navigation_allowed),
    MEMBER(orbcefbrowser_c, set_external_navigation_allowed),
    MEMBER(orbcefbrowser_c, get_js_dialogs_allowed),
    MEMBER(orbcefbrowser_c, set_js_dialogs_allowed),
    MEMBER(orbcefbrowser_c, set_visible),
    MEMBER(orbcefbrowser_c, create),
    MEMBER(orbcefbrowser_c, close),
    MEMBER(orbcefbrowser_c, load_url),
    MEMBER(orbcefbrowser_c, can_go_back),
    MEMBER(orbcefbrowser_c, go_back),
    MEMBER(orbcefbrowser_c, can_go_forward),
    MEMBER(orbcefbrowser_c, go_forward),
    MEMBER(orbcefbrowser_c, reload),
    MEMBER(orbcefbrowser_c, stop_load),
    MEMBER(orbcefbrowser_c, copy),
    MEMBER(orbcefbrowser_c, cut),
    MEMBER(orbcefbrowser_c, paste),
    MEMBER(orbcefbrowser_c, delete_selection),
    MEMBER(orbcefbrowser_c, select_all),
    MEMBER(orbcefbrowser_c, undo),
    MEMBER(orbcefbrowser_c, redo),
    MEMBER(orbcefbrowser_c, get_current_url),
    MEMBER(orbcefbrowser_c, get_home_url),
    MEMBER(orbcefbrowser_c, set_home_url),
    MEMBER(orbcefbrowser_c, execute_javascript),
    MEMBER(orbcefbrowser_c, set_zoom_level),
    MEMBER(orbcefbrowser_c, change_zoom_level),
    MEMBER(orbcefbrowser_c, show_dev_tools),
    MEMBER(orbcefbrowser_c, close_dev_tools),
    MEMBER(orbcefbrowser_c, get_window),
    MEMBER(orbcefbrowser_c, notify_move_or_resize),
    MEMBER(orbcefbrowser_c, set_bounds),
    MEMBER(orbcefbrowser_c, execute_replay),
};
static const char* const slots_of_orbcefbrowser_c[] = {"instance",
                                                       "add_ref",
                                                       "release",
                                                       "get_flag0",
                                                       "set_flag0",
                                                       "get_flag1",
                                                       "set_flag1",
                                                       "get_javascript_enabled",
                                                       "set_javascript_enabled",
                                                       "get_flag3",
                                                       "set_flag3",
                                                       "get_history_enabled",
                                                       "set_history_enabled",
                                                       "get_reload_enabled",
                                                       "set_reload_enabled",
                                                       "get_zoom_by_page_enabled",
                                                       "set_zoom_by_page_enabled",
                                                       "get_forward_console",
                                                       "set_forward_console",
                                                       "get_download_dir",
                                                       "set_download_dir",
                                                       "get_error_url",
                                                       "set_error_url",
                                                       "get_popup_mode",
                                                       "set_popup_mode",
                                                       "get_local_files_allowed",
                                                       "set_local_files_allowed",
                                                       "get_external_navigation_allowed",
                                                       "set_external_navigation_allowed",
                                                       "get_js_dialogs_allowed",
                                                       "set_js_dialogs_allowed",
                                                       "set_visible",
                                                       "create",
                                                       "close",
                                                       "load_url",
                                                       "can_go_back",
                                                       "go_back",
                                                       "can_go_forward",
                                                       "go_forward",
                                                       "reload",
                                                       "stop_load",
                                                       "copy",
                                                       "cut",
                                                       "paste",
                                                       "delete_selection",
                                                       "select_all",
                                                       "undo",
                                                       "redo",
                                                       "get_current_url",
                                                       "get_home_url",
                                                       "set_home_url",
                                                       "execute_javascript",
                                                       "set_zoom_level",
                                                       "change_zoom_level",
                                                       "show_dev_tools",
                                                       "close_dev_tools",
                                                       "get_window",
                                                       "notify_move_or_resize",
                                                       "set_bounds",
                                                       "execute_replay"};

static const member members_of_orbcefbrowserevents_c[] = {
    MEMBER(orbcefbrowserevents_c, instance),
    MEMBER(orbcefbrowserevents_c, add_ref),
    MEMBER(orbcefbrowserevents_c, release),
    MEMBER(orbcefbrowserevents_c, on_state_changed),
    MEMBER(orbcefbrowserevents_c, on_v8_context),
    MEMBER(orbcefbrowserevents_c, on_strings_received),
    MEMBER(orbcefbrowserevents_c, on_title_changed),
    MEMBER(orbcefbrowserevents_c, on_address_changed),
    MEMBER(orbcefbrowserevents_c, on_download_updated),
    MEMBER(orbcefbrowserevents_c, on_loading_state_changed),
    MEMBER(orbcefbrowserevents_c, reserved10),
    MEMBER(orbcefbrowserevents_c, on_document_size),
    MEMBER(orbcefbrowserevents_c, on_console_message),
    MEMBER(orbcefbrowserevents_c, on_zoom_changed),
    MEMBER(orbcefbrowserevents_c, on_record_data),
    MEMBER(orbcefbrowserevents_c, on_auth_credentials),
};
static const char* const slots_of_orbcefbrowserevents_c[] = {"instance",
                                                             "add_ref",
                                                             "release",
                                                             "on_state_changed",
                                                             "on_v8_context",
                                                             "on_strings_received",
                                                             "on_title_changed",
                                                             "on_address_changed",
                                                             "on_download_updated",
                                                             "on_loading_state_changed",
                                                             "reserved10",
                                                             "on_document_size",
                                                             "on_console_message",
                                                             "on_zoom_changed",
                                                             "on_record_data",
                                                             "on_auth_credentials"};

static const member members_of_orbcefbrowserhost_c[] = {
    MEMBER(orbcefbrowserhost_c, instance),
    MEMBER(orbcefbrowserhost_c, add_ref),
    MEMBER(orbcefbrowserhost_c, release),
    MEMBER(orbcefbrowserhost_c, is_authenticated),
    MEMBER(orbcefbrowserhost_c, get_turnstile_url),
    MEMBER(orbcefbrowserhost_c, get_transient_ticket_url),
};
static const char* const slots_of_orbcefbrowserhost_c[] = {
    "instance",         "add_ref",           "release",
    "is_authenticated", "get_turnstile_url", "get_transient_ticket_url"};

static const member members_of_orbcefauthcallback_c[] = {
    MEMBER(orbcefauthcallback_c, tImpl),   MEMBER(orbcefauthcallback_c, add_ref),
    MEMBER(orbcefauthcallback_c, release), MEMBER(orbcefauthcallback_c, continue_with),
    MEMBER(orbcefauthcallback_c, cancel),
};
static const char* const slots_of_orbcefauthcallback_c[] = {"tImpl", "add_ref", "release",
                                                            "continue_with", "cancel"};

static const member members_of_orbcefhttp_c[] = {
    MEMBER(orbcefhttp_c, add_ref),      MEMBER(orbcefhttp_c, release),
    MEMBER(orbcefhttp_c, get_state),    MEMBER(orbcefhttp_c, set_method),
    MEMBER(orbcefhttp_c, set_url),      MEMBER(orbcefhttp_c, set_headers),
    MEMBER(orbcefhttp_c, set_body),     MEMBER(orbcefhttp_c, send_async),
    MEMBER(orbcefhttp_c, send_sync),    MEMBER(orbcefhttp_c, cancel),
    MEMBER(orbcefhttp_c, get_response), MEMBER(orbcefhttp_c, tImpl),
};
static const char* const slots_of_orbcefhttp_c[] = {
    "add_ref",  "release",    "get_state", "set_method", "set_url",      "set_headers",
    "set_body", "send_async", "send_sync", "cancel",     "get_response", "tImpl"};

static const member members_of_orbcefhttplistener_c[] = {
    MEMBER(orbcefhttplistener_c, add_ref),     MEMBER(orbcefhttplistener_c, release),
    MEMBER(orbcefhttplistener_c, on_headers),  MEMBER(orbcefhttplistener_c, on_data),
    MEMBER(orbcefhttplistener_c, on_progress), MEMBER(orbcefhttplistener_c, on_complete),
};
static const char* const slots_of_orbcefhttplistener_c[] = {
    "add_ref", "release", "on_headers", "on_data", "on_progress", "on_complete"};

static const member members_of__orbceftools_c[] = {
    MEMBER(_orbceftools_c, on_main_thread),
    MEMBER(_orbceftools_c, get_env),
    MEMBER(_orbceftools_c, put_env),
    MEMBER(_orbceftools_c, compute_lang),
    MEMBER(_orbceftools_c, get_release_level),
    MEMBER(_orbceftools_c, build_catalog_message),
    MEMBER(_orbceftools_c, get_temp_directory),
    MEMBER(_orbceftools_c, create_directory),
    MEMBER(_orbceftools_c, is_record_capture),
    MEMBER(_orbceftools_c, is_record_replay),
    MEMBER(_orbceftools_c, get_record_mode),
    MEMBER(_orbceftools_c, get_json_value),
    MEMBER(_orbceftools_c, get_json_module_map),
    MEMBER(_orbceftools_c, remap_url),
    MEMBER(_orbceftools_c, save_in_preference),
    MEMBER(_orbceftools_c, read_from_preferences),
    MEMBER(_orbceftools_c, read_from_sys_settings),
    MEMBER(_orbceftools_c, read_from_settings),
    MEMBER(_orbceftools_c, post_task_on_main_thread),
    MEMBER(_orbceftools_c, should_dispatch_events_on_main_thread),
};
static const char* const slots_of__orbceftools_c[] = {"on_main_thread",
                                                      "get_env",
                                                      "put_env",
                                                      "compute_lang",
                                                      "get_release_level",
                                                      "build_catalog_message",
                                                      "get_temp_directory",
                                                      "create_directory",
                                                      "is_record_capture",
                                                      "is_record_replay",
                                                      "get_record_mode",
                                                      "get_json_value",
                                                      "get_json_module_map",
                                                      "remap_url",
                                                      "save_in_preference",
                                                      "read_from_preferences",
                                                      "read_from_sys_settings",
                                                      "read_from_settings",
                                                      "post_task_on_main_thread",
                                                      "should_dispatch_events_on_main_thread"};

static void check_records(void) {
  check_size("orbcefstring_c", sizeof(orbcefstring_c), 24);
  CHECK_MEMBER(orbcefstring_c, data, 0, 8);
  CHECK_MEMBER(orbcefstring_c, length, 8, 8);
  CHECK_MEMBER(orbcefstring_c, free, 16, 8);

  check_size("orbcefstringmap_c", sizeof(orbcefstringmap_c), 32);
  CHECK_MEMBER(orbcefstringmap_c, keys, 0, 8);
  CHECK_MEMBER(orbcefstringmap_c, values, 8, 8);
  CHECK_MEMBER(orbcefstringmap_c, _nb_values, 16, 8);
  CHECK_MEMBER(orbcefstringmap_c, free, 24, 8);

  check_size("orbcefresponse_c", sizeof(orbcefresponse_c), 32);
  CHECK_MEMBER(orbcefresponse_c, status, 0, 4);
  CHECK_MEMBER(orbcefresponse_c, text, 8, 8);
  CHECK_MEMBER(orbcefresponse_c, headers, 16, 8);
  CHECK_MEMBER(orbcefresponse_c, free, 24, 8);

  check_size("orbcefreplayresult_c", sizeof(orbcefreplayresult_c), 24);
  CHECK_MEMBER(orbcefreplayresult_c, status, 0, 4);
  CHECK_MEMBER(orbcefreplayresult_c, message, 8, 8);
  CHECK_MEMBER(orbcefreplayresult_c, free, 16, 8);

  check_size("orbcefrect_c", sizeof(orbcefrect_c), 16);
  CHECK_MEMBER(orbcefrect_c, x, 0, 4);
  CHECK_MEMBER(orbcefrect_c, y, 4, 4);
  CHECK_MEMBER(orbcefrect_c, width, 8, 4);
  CHECK_MEMBER(orbcefrect_c, height, 12, 4);

  check_size("orbceftypes_recordmode", sizeof(orbceftypes_recordmode), 4);
}

static void check_constants(void) {
  check(ORBCEF_RECORDMODE_NONE == 0, "no record mode is 0");
  check(ORBCEF_RECORDMODE_CAPTURE == 2, "capture is 2");
  check(ORBCEF_RECORDMODE_REPLAY == 3, "replay is 3");
}

static void check_names(void) {
  check(ORBCEF_PLUGIN_MAJOR == 1, "the major version is 1");
  check(ORBCEF_PLUGIN_MINOR == 0, "the minor version is 0");
  check(strcmp(ORBCEF_GLOBAL_TABLE, "orbcefglobal_c") == 0, "the table is orbcefglobal_c");
  check(strcmp(ORBCEF_FACTORY_SYMBOL, "orbcef_pluginfactory") == 0,
        "the factory is orbcef_pluginfactory");
  check(sizeof(orbcef_pluginfactory_fn) == 8, "the factory is a function pointer");
}

int main(int argc, char** argv) {
  g_list = argc == 2 && strcmp(argv[1], "list") == 0;
  check_records();
  CHECK_SLOTS(orbcefglobal_c);
  CHECK_SLOTS(orbcefbrowser_c);
  CHECK_SLOTS(orbcefbrowserevents_c);
  CHECK_SLOTS(orbcefbrowserhost_c);
  CHECK_SLOTS(orbcefauthcallback_c);
  CHECK_SLOTS(orbcefhttp_c);
  CHECK_SLOTS(orbcefhttplistener_c);
  CHECK_SLOTS(_orbceftools_c);
  if (g_list) {
    return 0;
  }
  check_constants();
  check_names();
  return finish();
}
