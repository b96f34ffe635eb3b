// What the tests of the built module share: loading it as a host does, and the services of a host
// that has nothing to tell. Each test includes it once.
#ifndef ORBCEF_TESTS_ABI_LOADED_MODULE_H
#define ORBCEF_TESTS_ABI_LOADED_MODULE_H

#include <pthread.h>
#include <stdatomic.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#if defined(_WIN32)
#include <direct.h>
#include <windows.h>
#else
#include <dlfcn.h>
#include <unistd.h>
#endif

#include "check.h"
#include "orbcefglobal.h"

#if defined(_WIN32)
static void* open_library(const char* path) {
  HMODULE module = LoadLibraryExA(path, NULL, LOAD_WITH_ALTERED_SEARCH_PATH);
  if (!module) {
    fprintf(stderr, "%s: error %lu\n", path, GetLastError());
  }
  return module;
}
static void* find_symbol(void* module, const char* name) {
  return (void*)GetProcAddress((HMODULE)module, name);
}
static const char* const kTempVariable = "TEMP";
#define SOME_DIRECTORY "C:\\windows"
#define MISSING_DIRECTORY "C:\\nowhere\\at\\all"
static inline int put_variable(const char* name, const char* value) {
  return _putenv_s(name, value);
}
static inline const char* current_directory(char* path, int size) {
  return _getcwd(path, size);
}
#else
static void* open_library(const char* path) {
  void* module = dlopen(path, RTLD_NOW | RTLD_LOCAL);
  if (!module) {
    fprintf(stderr, "%s\n", dlerror());
  }
  return module;
}
static void* find_symbol(void* module, const char* name) {
  return dlsym(module, name);
}
static const char* const kTempVariable = "TMPDIR";
#define SOME_DIRECTORY "/tmp"
#define MISSING_DIRECTORY "/nowhere/at/all"
static inline int put_variable(const char* name, const char* value) {
  return setenv(name, value, 1);
}
static inline const char* current_directory(char* path, int size) {
  return getcwd(path, (size_t)size);
}
#endif

// Loads the module and resolves its factory; ends the test if that fails.
static orbcef_pluginfactory_fn load_factory(const char* path) {
  void* module = open_library(path);
  if (!module) {
    exit(1);
  }
  orbcef_pluginfactory_fn factory =
      (orbcef_pluginfactory_fn)find_symbol(module, ORBCEF_FACTORY_SYMBOL);
  uint64_t (*marker)(void) =
      (uint64_t(*)(void))find_symbol(module, "MERIDEX_SOFTWARE_KIT2_INTERNAL_ORBCefWrapperMT");
  check(factory != NULL, "the factory is exported");
  check(marker && marker() == 1, "the marker is exported and answers 1");
  if (!factory) {
    exit(finish());
  }
  return factory;
}

// Asks the factory for the table; ends the test if it refuses.
static orbcefglobal_c* get_global(orbcef_pluginfactory_fn factory) {
  orbcefglobal_c* global = factory(1, 0, ORBCEF_GLOBAL_TABLE);
  check(global != NULL, "the factory gives the table");
  if (!global) {
    exit(finish());
  }
  return global;
}

// ---- A host's services

static pthread_t g_main_thread;
static atomic_int g_tool_calls;

static void free_text(orbcefstring_c* text) {
  free(text->data);
  free(text);
}

static orbcefstring_c* new_text(const char* bytes) {
  orbcefstring_c* text = calloc(1, sizeof(*text));
  if (!text) {
    abort();
  }
  text->free = free_text;
  text->length = strlen(bytes);
  text->data = text->length ? malloc(text->length) : NULL;
  if (text->data) {
    memcpy(text->data, bytes, text->length);
  }
  return text;
}

static uint8_t on_main_thread(void) {
  ++g_tool_calls;
  return pthread_equal(pthread_self(), g_main_thread) != 0;
}

static const char* get_env(const char* name) {
  return getenv(name);
}
static const char* compute_lang(void) {
  return "German";
}
static int32_t put_env(const char* assignment) {
  return -1;
}
static int32_t no_number(void) {
  return 0;
}
static uint8_t no(void) {
  return 0;
}
static orbceftypes_recordmode no_mode(void) {
  return ORBCEF_RECORDMODE_NONE;
}
static orbcefstring_c* empty(void) {
  return NULL;
}
static orbcefstring_c* temp(void) {
  const char* directory = getenv(kTempVariable);
  return new_text(directory && *directory ? directory : "/tmp");
}
static orbcefstring_c* empty_for(const char* place, const char* key) {
  return NULL;
}
static orbcefstring_c* empty_url(orbcefstring_c* url) {
  return NULL;
}
static uint8_t no_directory(orbcefstring_c* path) {
  return 0;
}
static uint8_t no_setting(const char* file, const char* key, int32_t* value) {
  return 0;
}
static orbcefstring_c* no_saving(const char* store, const char* key, orbcefstring_c* value) {
  return NULL;
}
static uint8_t no_json(orbcefstring_c* json, orbcefstring_c** keys, orbcefstring_c** values,
                       int32_t count) {
  return 0;
}
static uint8_t no_task(void (*task)(void*), void* data) {
  return 0;
}

static void give_tools(orbcefglobal_c* global) {
  _orbceftools_c tools = {on_main_thread, get_env,   put_env,      compute_lang, no_number,
                          empty_for,      temp,      no_directory, no,           no,
                          no_mode,        no_json,   empty,        empty_url,    no_saving,
                          empty_for,      empty_for, no_setting,   no_task,      no};
  g_main_thread = pthread_self();
  global->set_tools(global, &tools);
  // The module has a copy: what becomes of the host's own block must not matter.
  memset(&tools, 0, sizeof(tools));
}

static void check_filled(const char* type, const void* table, size_t first, size_t last) {
  for (size_t slot = first; slot <= last; ++slot) {
    void* content = NULL;
    memcpy(&content, (const char*)table + slot * 8, sizeof(content));
    char text[96];
    snprintf(text, sizeof(text), "%s slot %zu is filled", type, slot);
    check(content != NULL, text);
  }
}

#endif  // ORBCEF_TESTS_ABI_LOADED_MODULE_H
