// Generated from the interface facts. Do not edit.
#ifndef CEF_INCLUDE_INTERNAL_CEF_RECORD_CLASSES_H_
#define CEF_INCLUDE_INTERNAL_CEF_RECORD_CLASSES_H_

#include "include/capi/cef_functions.h"

struct CefWindowInfoTraits {
  using struct_type = cef_window_info_t;
  static void init(struct_type* s) {
    *s = struct_type{};
  }
  static void clear(struct_type* s) {
    cef_string_utf16_clear(&s->window_name);
  }
  static void set(const struct_type* from, struct_type* to, bool copy) {
    cef_string_utf16_set(from->window_name.str, from->window_name.length, &to->window_name, copy);
    to->bounds = from->bounds;
    to->parent_window = from->parent_window;
    to->windowless_rendering_enabled = from->windowless_rendering_enabled;
    to->shared_texture_enabled = from->shared_texture_enabled;
    to->external_begin_frame_enabled = from->external_begin_frame_enabled;
    to->window = from->window;
#if defined(OS_WIN)
    to->ex_style = from->ex_style;
#endif
#if defined(OS_WIN)
    to->style = from->style;
#endif
#if defined(OS_WIN)
    to->menu = from->menu;
#endif
  }
};

struct CefURLPartsTraits {
  using struct_type = cef_urlparts_t;
  static void init(struct_type* s) {
    *s = struct_type{};
  }
  static void clear(struct_type* s) {
    cef_string_utf16_clear(&s->spec);
    cef_string_utf16_clear(&s->scheme);
    cef_string_utf16_clear(&s->username);
    cef_string_utf16_clear(&s->password);
    cef_string_utf16_clear(&s->host);
    cef_string_utf16_clear(&s->port);
    cef_string_utf16_clear(&s->origin);
    cef_string_utf16_clear(&s->path);
    cef_string_utf16_clear(&s->query);
    cef_string_utf16_clear(&s->fragment);
  }
  static void set(const struct_type* from, struct_type* to, bool copy) {
    cef_string_utf16_set(from->spec.str, from->spec.length, &to->spec, copy);
    cef_string_utf16_set(from->scheme.str, from->scheme.length, &to->scheme, copy);
    cef_string_utf16_set(from->username.str, from->username.length, &to->username, copy);
    cef_string_utf16_set(from->password.str, from->password.length, &to->password, copy);
    cef_string_utf16_set(from->host.str, from->host.length, &to->host, copy);
    cef_string_utf16_set(from->port.str, from->port.length, &to->port, copy);
    cef_string_utf16_set(from->origin.str, from->origin.length, &to->origin, copy);
    cef_string_utf16_set(from->path.str, from->path.length, &to->path, copy);
    cef_string_utf16_set(from->query.str, from->query.length, &to->query, copy);
    cef_string_utf16_set(from->fragment.str, from->fragment.length, &to->fragment, copy);
  }
};

using CefURLParts = CefStructBase<CefURLPartsTraits>;

class CefMouseEvent : public cef_mouse_event_t {
 public:
  CefMouseEvent() : cef_mouse_event_t{} {}
  CefMouseEvent(const cef_mouse_event_t& other) : cef_mouse_event_t(other) {}
};

#endif  // CEF_INCLUDE_INTERNAL_CEF_RECORD_CLASSES_H_
