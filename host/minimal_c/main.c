// The smallest useful host: one window, one web view, no services but those that every host owes.
// Read it from the bottom: `main` goes through the steps of orbcefglobal.h in their order.
//
//   orbcef_minimal_host ROOT [URL]
//
// ROOT is an installation root: ROOT/code/bin holds the module, its helper and the engine. The
// program needs a display, and ends when its window is closed.

// For setenv in strict C11.
#define _POSIX_C_SOURCE 200809L

#if defined(_WIN32)
#include <windows.h>
#else
#include <X11/Xlib.h>
#include <dlfcn.h>
#endif
#include <pthread.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "orbcefglobal.h"

static pthread_t g_main_thread;

// ---- What differs between the systems: libraries, the environment, and the window to put the view
// in. `open_window` answers its handle, null without a display; `next_size` waits until the window
// has a new size, and answers 0 when the user wants it closed.

#if defined(_WIN32)
static const char kModule[] = "ORBCefWrapperMT.dll";
static const char kTemp[] = "TEMP";
static HWND g_window;
static int g_closed;

static void* open_library(const char* path) {
  // The libraries that the module needs stand beside it, not beside the host.
  return (void*)LoadLibraryExA(path, NULL, LOAD_WITH_ALTERED_SEARCH_PATH);
}

static void* find_symbol(void* library, const char* name) {
  return (void*)GetProcAddress((HMODULE)library, name);
}

static int set_variable(const char* name, const char* value) {
  return _putenv_s(name, value);
}

static LRESULT CALLBACK handle_message(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_CLOSE) {
    g_closed = 1;
    return 0;
  }
  return DefWindowProcA(window, message, wparam, lparam);
}

static void* open_window(const int32_t* rect) {
  const WNDCLASSA description = {.lpfnWndProc = handle_message,
                                 .hInstance = GetModuleHandleA(NULL),
                                 .lpszClassName = "orbcef_minimal_host"};
  RegisterClassA(&description);
  g_window =
      CreateWindowA("orbcef_minimal_host", "orbcef_minimal_host", WS_OVERLAPPEDWINDOW, rect[0],
                    rect[1], rect[2], rect[3], NULL, NULL, description.hInstance, NULL);
  ShowWindow(g_window, SW_SHOW);
  return g_window;
}

static int next_size(int32_t* size) {
  RECT client = {0, 0, size[2], size[3]};
  MSG message;
  while (!g_closed && client.right == size[2] && client.bottom == size[3] &&
         GetMessageA(&message, NULL, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageA(&message);
    GetClientRect(g_window, &client);
  }
  size[2] = client.right;
  size[3] = client.bottom;
  return !g_closed;
}

static void close_window(void) {
  DestroyWindow(g_window);
}
#else
static const char kModule[] = "libORBCefWrapperMT.so";
static const char kTemp[] = "TMPDIR";
static Display* g_display;
static Atom g_delete_window;

static void* open_library(const char* path) {
  return dlopen(path, RTLD_NOW | RTLD_LOCAL);
}

static void* find_symbol(void* library, const char* name) {
  return dlsym(library, name);
}

static int set_variable(const char* name, const char* value) {
  return setenv(name, value, 1);
}

static void* open_window(const int32_t* rect) {
  g_display = XOpenDisplay(NULL);
  if (!g_display) {
    return NULL;
  }
  Window window = XCreateSimpleWindow(g_display, DefaultRootWindow(g_display), rect[0], rect[1],
                                      (unsigned)rect[2], (unsigned)rect[3], 0, 0, 0xFFFFFF);
  g_delete_window = XInternAtom(g_display, "WM_DELETE_WINDOW", False);
  XSetWMProtocols(g_display, window, &g_delete_window, 1);
  XSelectInput(g_display, window, StructureNotifyMask);
  XStoreName(g_display, window, "orbcef_minimal_host");
  XMapWindow(g_display, window);
  XFlush(g_display);
  return (void*)(uintptr_t)window;
}

static int next_size(int32_t* size) {
  for (;;) {
    XEvent event;
    XNextEvent(g_display, &event);
    if (event.type == ConfigureNotify) {
      size[2] = event.xconfigure.width;
      size[3] = event.xconfigure.height;
      return 1;
    }
    if (event.type == ClientMessage && (Atom)event.xclient.data.l[0] == g_delete_window) {
      return 0;
    }
  }
}

static void close_window(void) {
  XCloseDisplay(g_display);
}
#endif

// ---- The host's services, see orbceftools.h for their meaning and threads. A service that this
// host does not have answers 0 or null; no slot may be left empty.

// A text that the host hands over: the module frees it through the function in its last field.
static void free_text(orbcefstring_c* text) {
  free(text);
}

static orbcefstring_c* new_text(const char* bytes) {
  const size_t length = strlen(bytes);
  orbcefstring_c* text = malloc(sizeof(*text) + length);
  if (text) {
    text->data = memcpy((char*)(text + 1), bytes, length);
    text->length = length;
    text->free = free_text;
  }
  return text;
}

static int32_t put_env(const char* assignment) {
  char name[256] = {0};
  const char* equals = strchr(assignment, '=');
  if (!equals || (size_t)(equals - assignment) >= sizeof(name)) {
    return -1;
  }
  memcpy(name, assignment, (size_t)(equals - assignment));
  return set_variable(name, equals + 1);
}

// clang-format off
static uint8_t on_main_thread(void) { return pthread_equal(pthread_self(), g_main_thread) != 0; }
static const char* get_env(const char* name) { return getenv(name); }
static const char* language(void) { return "English"; }
static orbcefstring_c* temp_directory(void) { return new_text(getenv(kTemp) ? getenv(kTemp) : "/tmp"); }
static orbceftypes_recordmode record_mode(void) { return ORBCEF_RECORDMODE_NONE; }
static uint8_t no(void) { return 0; }
static int32_t zero(void) { return 0; }
static orbcefstring_c* no_text(void) { return NULL; }
static orbcefstring_c* no_text_for(const char* place, const char* key) { return NULL; }
static orbcefstring_c* no_file(orbcefstring_c* url) { return NULL; }
static orbcefstring_c* no_saving(const char* store, const char* key, orbcefstring_c* value) {
  return new_text("new Error('This host keeps no preferences.')");
}
static uint8_t no_directory(orbcefstring_c* path) { return 0; }
static uint8_t no_setting(const char* file, const char* key, int32_t* value) { return 0; }
static uint8_t no_json(orbcefstring_c* json, orbcefstring_c** keys, orbcefstring_c** values,
                       int32_t count) { return 0; }
static uint8_t no_task(void (*task)(void*), void* data) { return 0; }

static _orbceftools_c g_tools = {
    on_main_thread, get_env,     put_env,     language,   zero,
    no_text_for,    temp_directory, no_directory, no,     no,
    record_mode,    no_json,     no_text,     no_file,    no_saving,
    no_text_for,    no_text_for, no_setting,  no_task,    no};
// clang-format on

// ---- The view's events. They come on the engine's UI thread: copy, and never wait there. The
// table is static, so its references need no counting.

static void on_state(orbcefbrowserevents_c* self, int32_t state) {
  printf("state %d\n", (int)state);
}

static void on_text(orbcefbrowserevents_c* self, const orbcefstring_c* text) {
  printf("page %.*s\n", (int)text->length, text->data ? text->data : "");
}

static void on_strings(orbcefbrowserevents_c* self, const orbcefstring_c* const* strings,
                       int32_t count) {
  for (int32_t i = 0; i < count; ++i) {
    on_text(self, strings[i]);
  }
}

static void on_auth(orbcefbrowserevents_c* self, const orbcefstring_c* origin, uint8_t is_proxy,
                    const orbcefstring_c* host, int32_t port, orbcefauthcallback_c* callback) {
  callback->cancel(callback);
}

// clang-format off
static void on_loading(orbcefbrowserevents_c* self, uint8_t loading, const orbcefstring_c* url) {
  printf("loading %s\n", loading ? "began" : "ended");
}
static void uncounted(orbcefbrowserevents_c* self) {}
static void on_byte(orbcefbrowserevents_c* self, uint8_t value) {}
static void on_size(orbcefbrowserevents_c* self, int32_t width, int32_t height) {}
static void on_zoom(orbcefbrowserevents_c* self, double change) {}
static void on_console(orbcefbrowserevents_c* self, const orbcefstring_c* text,
                       const orbcefstring_c* source, int32_t line) {}
static void on_download(orbcefbrowserevents_c* self, uint32_t id, int64_t received, int64_t total,
                        int64_t speed, uint8_t complete) {}

static orbcefbrowserevents_c g_events = {
    NULL,        uncounted,  uncounted, on_state, on_byte,    on_strings, on_text, on_text,
    on_download, on_loading, NULL,      on_size,  on_console, on_zoom,    on_text, on_auth};
// clang-format on

int main(int argc, char** argv) {
  if (argc < 2) {
    fprintf(stderr, "usage: %s ROOT [URL]\n", argv[0]);
    return 2;
  }
  const char* url = argc > 2 ? argv[2] : "xortv://webapps/Welcome/index.html";
  char path[4096];
  snprintf(path, sizeof(path), "%s/code/bin/%s", argv[1], kModule);
  set_variable("ORBInstallPath", argv[1]);
  // Nothing is kept back from who reads the lines while the window is open.
  setvbuf(stdout, NULL, _IONBF, 0);
  g_main_thread = pthread_self();

  // 1. and 2.: load the module by name and ask its factory for the one table.
  void* module = open_library(path);
  if (!module) {
    fprintf(stderr, "cannot load %s\n", path);
    return 3;
  }
  orbcef_pluginfactory_fn factory =
      (orbcef_pluginfactory_fn)find_symbol(module, ORBCEF_FACTORY_SYMBOL);
  orbcefglobal_c* global =
      factory ? factory(ORBCEF_PLUGIN_MAJOR, ORBCEF_PLUGIN_MINOR, ORBCEF_GLOBAL_TABLE) : NULL;
  if (!global) {
    fprintf(stderr, "%s is not a module for this host\n", path);
    return 4;
  }

  // 3.: hand over the services.
  global->set_tools(global, &g_tools);

  // A window to put the view in.
  int32_t rect[4] = {0, 0, 1024, 768};
  void* window = open_window(rect);
  if (!window) {
    fprintf(stderr, "no display\n");
    return 10;
  }

  // 4. and 5.: the first view starts the engine; its browser comes later, see `on_state`.
  orbcefstring_c home = {(char*)url, strlen(url), NULL};
  orbcefbrowser_c* view = global->create_browser(global, &g_events, NULL, &home);
  view->create(view, window, rect, &home);

  // 6.: the user's request ends the view.
  while (next_size(rect)) {
    view->set_bounds(view, rect);
  }
  view->close(view, 1);
  view->release(view);

  // 7.: stop the engine, on the thread that started it. This waits until the view's own window is
  // gone, so the window around it goes last.
  global->shutdown_engine(global);
  close_window();
  return 0;
}
