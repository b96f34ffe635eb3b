// Generated from the interface facts. Do not edit.
#include <assert.h>
#include <stddef.h>

#include "include/capi/cef_structs.h"

#if defined(OS_WIN)
static_assert(sizeof(cef_string_wide_t) == 24, "size of cef_string_wide_t");
static_assert(offsetof(cef_string_wide_t, str) == 0, "offset of cef_string_wide_t.str");
static_assert(offsetof(cef_string_wide_t, length) == 8, "offset of cef_string_wide_t.length");
static_assert(offsetof(cef_string_wide_t, dtor) == 16, "offset of cef_string_wide_t.dtor");
static_assert(sizeof(cef_string_utf8_t) == 24, "size of cef_string_utf8_t");
static_assert(offsetof(cef_string_utf8_t, str) == 0, "offset of cef_string_utf8_t.str");
static_assert(offsetof(cef_string_utf8_t, length) == 8, "offset of cef_string_utf8_t.length");
static_assert(offsetof(cef_string_utf8_t, dtor) == 16, "offset of cef_string_utf8_t.dtor");
static_assert(sizeof(cef_string_utf16_t) == 24, "size of cef_string_utf16_t");
static_assert(offsetof(cef_string_utf16_t, str) == 0, "offset of cef_string_utf16_t.str");
static_assert(offsetof(cef_string_utf16_t, length) == 8, "offset of cef_string_utf16_t.length");
static_assert(offsetof(cef_string_utf16_t, dtor) == 16, "offset of cef_string_utf16_t.dtor");
static_assert(sizeof(cef_rect_t) == 16, "size of cef_rect_t");
static_assert(offsetof(cef_rect_t, x) == 0, "offset of cef_rect_t.x");
static_assert(offsetof(cef_rect_t, y) == 4, "offset of cef_rect_t.y");
static_assert(offsetof(cef_rect_t, width) == 8, "offset of cef_rect_t.width");
static_assert(offsetof(cef_rect_t, height) == 12, "offset of cef_rect_t.height");
static_assert(sizeof(cef_window_info_t) == 96, "size of cef_window_info_t");
static_assert(offsetof(cef_window_info_t, window_name) == 8, "offset of cef_window_info_t.window_name");
static_assert(offsetof(cef_window_info_t, bounds) == 36, "offset of cef_window_info_t.bounds");
static_assert(offsetof(cef_window_info_t, parent_window) == 56, "offset of cef_window_info_t.parent_window");
static_assert(offsetof(cef_window_info_t, windowless_rendering_enabled) == 72, "offset of cef_window_info_t.windowless_rendering_enabled");
static_assert(offsetof(cef_window_info_t, shared_texture_enabled) == 76, "offset of cef_window_info_t.shared_texture_enabled");
static_assert(offsetof(cef_window_info_t, external_begin_frame_enabled) == 80, "offset of cef_window_info_t.external_begin_frame_enabled");
static_assert(offsetof(cef_window_info_t, window) == 88, "offset of cef_window_info_t.window");
static_assert(offsetof(cef_window_info_t, ex_style) == 0, "offset of cef_window_info_t.ex_style");
static_assert(offsetof(cef_window_info_t, style) == 32, "offset of cef_window_info_t.style");
static_assert(offsetof(cef_window_info_t, menu) == 64, "offset of cef_window_info_t.menu");
static_assert(sizeof(cef_urlparts_t) == 240, "size of cef_urlparts_t");
static_assert(offsetof(cef_urlparts_t, spec) == 0, "offset of cef_urlparts_t.spec");
static_assert(offsetof(cef_urlparts_t, scheme) == 24, "offset of cef_urlparts_t.scheme");
static_assert(offsetof(cef_urlparts_t, username) == 48, "offset of cef_urlparts_t.username");
static_assert(offsetof(cef_urlparts_t, password) == 72, "offset of cef_urlparts_t.password");
static_assert(offsetof(cef_urlparts_t, host) == 96, "offset of cef_urlparts_t.host");
static_assert(offsetof(cef_urlparts_t, port) == 120, "offset of cef_urlparts_t.port");
static_assert(offsetof(cef_urlparts_t, origin) == 144, "offset of cef_urlparts_t.origin");
static_assert(offsetof(cef_urlparts_t, path) == 168, "offset of cef_urlparts_t.path");
static_assert(offsetof(cef_urlparts_t, query) == 192, "offset of cef_urlparts_t.query");
static_assert(offsetof(cef_urlparts_t, fragment) == 216, "offset of cef_urlparts_t.fragment");
static_assert(sizeof(cef_mouse_event_t) == 12, "size of cef_mouse_event_t");
static_assert(offsetof(cef_mouse_event_t, x) == 0, "offset of cef_mouse_event_t.x");
static_assert(offsetof(cef_mouse_event_t, y) == 4, "offset of cef_mouse_event_t.y");
static_assert(offsetof(cef_mouse_event_t, modifiers) == 8, "offset of cef_mouse_event_t.modifiers");
#endif
#if defined(OS_LINUX)
static_assert(sizeof(cef_string_wide_t) == 24, "size of cef_string_wide_t");
static_assert(offsetof(cef_string_wide_t, str) == 0, "offset of cef_string_wide_t.str");
static_assert(offsetof(cef_string_wide_t, length) == 8, "offset of cef_string_wide_t.length");
static_assert(offsetof(cef_string_wide_t, dtor) == 16, "offset of cef_string_wide_t.dtor");
static_assert(sizeof(cef_string_utf8_t) == 24, "size of cef_string_utf8_t");
static_assert(offsetof(cef_string_utf8_t, str) == 0, "offset of cef_string_utf8_t.str");
static_assert(offsetof(cef_string_utf8_t, length) == 8, "offset of cef_string_utf8_t.length");
static_assert(offsetof(cef_string_utf8_t, dtor) == 16, "offset of cef_string_utf8_t.dtor");
static_assert(sizeof(cef_string_utf16_t) == 24, "size of cef_string_utf16_t");
static_assert(offsetof(cef_string_utf16_t, str) == 0, "offset of cef_string_utf16_t.str");
static_assert(offsetof(cef_string_utf16_t, length) == 8, "offset of cef_string_utf16_t.length");
static_assert(offsetof(cef_string_utf16_t, dtor) == 16, "offset of cef_string_utf16_t.dtor");
static_assert(sizeof(cef_rect_t) == 16, "size of cef_rect_t");
static_assert(offsetof(cef_rect_t, x) == 0, "offset of cef_rect_t.x");
static_assert(offsetof(cef_rect_t, y) == 4, "offset of cef_rect_t.y");
static_assert(offsetof(cef_rect_t, width) == 8, "offset of cef_rect_t.width");
static_assert(offsetof(cef_rect_t, height) == 12, "offset of cef_rect_t.height");
static_assert(sizeof(cef_window_info_t) == 72, "size of cef_window_info_t");
static_assert(offsetof(cef_window_info_t, window_name) == 0, "offset of cef_window_info_t.window_name");
static_assert(offsetof(cef_window_info_t, bounds) == 24, "offset of cef_window_info_t.bounds");
static_assert(offsetof(cef_window_info_t, parent_window) == 40, "offset of cef_window_info_t.parent_window");
static_assert(offsetof(cef_window_info_t, windowless_rendering_enabled) == 48, "offset of cef_window_info_t.windowless_rendering_enabled");
static_assert(offsetof(cef_window_info_t, shared_texture_enabled) == 52, "offset of cef_window_info_t.shared_texture_enabled");
static_assert(offsetof(cef_window_info_t, external_begin_frame_enabled) == 56, "offset of cef_window_info_t.external_begin_frame_enabled");
static_assert(offsetof(cef_window_info_t, window) == 64, "offset of cef_window_info_t.window");
static_assert(sizeof(cef_urlparts_t) == 240, "size of cef_urlparts_t");
static_assert(offsetof(cef_urlparts_t, spec) == 0, "offset of cef_urlparts_t.spec");
static_assert(offsetof(cef_urlparts_t, scheme) == 24, "offset of cef_urlparts_t.scheme");
static_assert(offsetof(cef_urlparts_t, username) == 48, "offset of cef_urlparts_t.username");
static_assert(offsetof(cef_urlparts_t, password) == 72, "offset of cef_urlparts_t.password");
static_assert(offsetof(cef_urlparts_t, host) == 96, "offset of cef_urlparts_t.host");
static_assert(offsetof(cef_urlparts_t, port) == 120, "offset of cef_urlparts_t.port");
static_assert(offsetof(cef_urlparts_t, origin) == 144, "offset of cef_urlparts_t.origin");
static_assert(offsetof(cef_urlparts_t, path) == 168, "offset of cef_urlparts_t.path");
static_assert(offsetof(cef_urlparts_t, query) == 192, "offset of cef_urlparts_t.query");
static_assert(offsetof(cef_urlparts_t, fragment) == 216, "offset of cef_urlparts_t.fragment");
static_assert(sizeof(cef_mouse_event_t) == 12, "size of cef_mouse_event_t");
static_assert(offsetof(cef_mouse_event_t, x) == 0, "offset of cef_mouse_event_t.x");
static_assert(offsetof(cef_mouse_event_t, y) == 4, "offset of cef_mouse_event_t.y");
static_assert(offsetof(cef_mouse_event_t, modifiers) == 8, "offset of cef_mouse_event_t.modifiers");
#endif
static_assert(sizeof(cef_scale_factor_t) == 4, "size of cef_scale_factor_t");
static_assert(sizeof(cef_base_ref_counted_t) == 40, "size of cef_base_ref_counted_t");
static_assert(sizeof(cef_base_scoped_t) == 16, "size of cef_base_scoped_t");
static_assert(sizeof(cef_list_value_t) == 264, "size of cef_list_value_t");
static_assert(offsetof(cef_list_value_t, get_size) == 96, "offset of cef_list_value_t.get_size");
static_assert(offsetof(cef_list_value_t, get_string) == 160, "offset of cef_list_value_t.get_string");
static_assert(offsetof(cef_list_value_t, set_string) == 232, "offset of cef_list_value_t.set_string");
static_assert(sizeof(cef_process_message_t) == 88, "size of cef_process_message_t");
static_assert(offsetof(cef_process_message_t, is_valid) == 40, "offset of cef_process_message_t.is_valid");
static_assert(offsetof(cef_process_message_t, copy) == 56, "offset of cef_process_message_t.copy");
static_assert(offsetof(cef_process_message_t, get_name) == 64, "offset of cef_process_message_t.get_name");
static_assert(offsetof(cef_process_message_t, get_argument_list) == 72, "offset of cef_process_message_t.get_argument_list");
static_assert(sizeof(cef_resource_bundle_handler_t) == 64, "size of cef_resource_bundle_handler_t");
static_assert(offsetof(cef_resource_bundle_handler_t, get_localized_string) == 40, "offset of cef_resource_bundle_handler_t.get_localized_string");
static_assert(offsetof(cef_resource_bundle_handler_t, get_data_resource) == 48, "offset of cef_resource_bundle_handler_t.get_data_resource");
static_assert(offsetof(cef_resource_bundle_handler_t, get_data_resource_for_scale) == 56, "offset of cef_resource_bundle_handler_t.get_data_resource_for_scale");

// The tables above are checked by the compiler alone; a linker wants one symbol.
extern const int cef_layout_is_asserted;
const int cef_layout_is_asserted = 1;
