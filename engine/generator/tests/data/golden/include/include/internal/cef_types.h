// Generated from the interface facts. Do not edit.
#ifndef CEF_INCLUDE_INTERNAL_CEF_TYPES_H_
#define CEF_INCLUDE_INTERNAL_CEF_TYPES_H_

#include "include/internal/cef_basic_types.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
  SCALE_FACTOR_NONE = 0,
  SCALE_FACTOR_100P = 1,
  SCALE_FACTOR_125P = 2,
  SCALE_FACTOR_133P = 3,
  SCALE_FACTOR_140P = 4,
  SCALE_FACTOR_150P = 5,
  SCALE_FACTOR_180P = 6,
  SCALE_FACTOR_200P = 7,
  SCALE_FACTOR_250P = 8,
  SCALE_FACTOR_300P = 9,
} cef_scale_factor_t;

typedef struct _cef_string_wide_t {
  wchar_t* str;
  size_t length;
  void (*dtor)(wchar_t* str);
} cef_string_wide_t;

typedef struct _cef_string_utf8_t {
  char* str;
  size_t length;
  void (*dtor)(char* str);
} cef_string_utf8_t;

typedef struct _cef_string_utf16_t {
  char16* str;
  size_t length;
  void (*dtor)(char16* str);
} cef_string_utf16_t;

typedef char16 cef_char_t;
typedef cef_string_wide_t* cef_string_userfree_wide_t;
typedef cef_string_utf8_t* cef_string_userfree_utf8_t;
typedef cef_string_utf16_t* cef_string_userfree_utf16_t;
typedef cef_string_userfree_utf16_t cef_string_userfree_t;
typedef cef_string_utf16_t cef_string_t;
typedef void* cef_string_list_t;
typedef void* cef_string_map_t;
typedef void* cef_string_multimap_t;

typedef struct _cef_rect_t {
  int x;
  int y;
  int width;
  int height;
} cef_rect_t;

typedef struct _cef_window_info_t {
#if defined(OS_WIN)
  DWORD ex_style;
  cef_string_t window_name;
  DWORD style;
  cef_rect_t bounds;
  cef_window_handle_t parent_window;
  HMENU menu;
  int windowless_rendering_enabled;
  int shared_texture_enabled;
  int external_begin_frame_enabled;
  cef_window_handle_t window;
#else
  cef_string_t window_name;
  cef_rect_t bounds;
  cef_window_handle_t parent_window;
  int windowless_rendering_enabled;
  int shared_texture_enabled;
  int external_begin_frame_enabled;
  cef_window_handle_t window;
#endif
} cef_window_info_t;

typedef struct _cef_urlparts_t {
  cef_string_t spec;
  cef_string_t scheme;
  cef_string_t username;
  cef_string_t password;
  cef_string_t host;
  cef_string_t port;
  cef_string_t origin;
  cef_string_t path;
  cef_string_t query;
  cef_string_t fragment;
} cef_urlparts_t;

typedef struct _cef_mouse_event_t {
  int x;
  int y;
  uint32 modifiers;
} cef_mouse_event_t;

#ifdef __cplusplus
}
#endif

#endif  // CEF_INCLUDE_INTERNAL_CEF_TYPES_H_
