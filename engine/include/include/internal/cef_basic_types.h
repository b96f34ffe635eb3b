// Integer, character and handle types of the engine's C interface.
#ifndef CEF_INCLUDE_INTERNAL_CEF_BASIC_TYPES_H_
#define CEF_INCLUDE_INTERNAL_CEF_BASIC_TYPES_H_

#include <limits.h>
#include <stddef.h>
#include <stdint.h>
#include <time.h>
#include <wchar.h>

#include "include/base/cef_build.h"

#if defined(OS_WIN)
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

typedef long long int64;
typedef unsigned long long uint64;
typedef wchar_t char16;

#define CEF_CALLBACK __stdcall

#define cef_window_handle_t HWND
#define cef_cursor_handle_t HCURSOR
#define cef_event_handle_t MSG*
typedef DWORD cef_platform_thread_id_t;
typedef DWORD cef_platform_thread_handle_t;

#define kNullWindowHandle NULL
#define kNullCursorHandle NULL
#define kNullEventHandle NULL
#define kInvalidPlatformThreadId 0U
#define kInvalidPlatformThreadHandle 0U
#else
#include <pthread.h>
#include <sys/types.h>

typedef long int64;
typedef unsigned long uint64;
typedef unsigned short char16;

// Xlib declares these two types under the same names; neither is needed whole here.
union _XEvent;
typedef union _XEvent XEvent;
struct _XDisplay;
typedef struct _XDisplay XDisplay;

#define CEF_CALLBACK

#define cef_window_handle_t unsigned long
#define cef_cursor_handle_t unsigned long
#define cef_event_handle_t XEvent*
typedef pid_t cef_platform_thread_id_t;
typedef pthread_t cef_platform_thread_handle_t;

#define kNullWindowHandle 0
#define kNullCursorHandle 0
#define kNullEventHandle NULL
#define kInvalidPlatformThreadId 0
#define kInvalidPlatformThreadHandle 0
#endif

typedef int int32;
typedef unsigned int uint32;
typedef short int16;
typedef unsigned short uint16;

typedef uint32 cef_color_t;

#endif  // CEF_INCLUDE_INTERNAL_CEF_BASIC_TYPES_H_
