// Generated from the interface facts. Do not edit.
#include "engine_library.h"

#include "include/capi/cef_functions.h"

namespace engine_library {

const char* const kFunctionNames[] = {
    "cef_parse_url",
    "cef_process_message_create",
    "cef_list_value_create",
#if defined(OS_WIN)
    "cef_set_osmodal_loop",
#endif
    "cef_get_min_log_level",
    nullptr,
};

namespace {

enum FunctionIndex : int {
  k_cef_parse_url,
  k_cef_process_message_create,
  k_cef_list_value_create,
#if defined(OS_WIN)
  k_cef_set_osmodal_loop,
#endif
  k_cef_get_min_log_level,
  kFunctionCount
};

}  // namespace

const int kCount = kFunctionCount;

}  // namespace engine_library

using namespace engine_library;

extern "C" int cef_parse_url(const cef_string_t* url, cef_urlparts_t* parts) {
  const auto function = Function<decltype(&cef_parse_url)>(k_cef_parse_url);
  if (!function) {
    return {};
  }
  return function(url, parts);
}

extern "C" cef_process_message_t* cef_process_message_create(const cef_string_t* name) {
  const auto function = Function<decltype(&cef_process_message_create)>(k_cef_process_message_create);
  if (!function) {
    return {};
  }
  return function(name);
}

extern "C" cef_list_value_t* cef_list_value_create(void) {
  const auto function = Function<decltype(&cef_list_value_create)>(k_cef_list_value_create);
  if (!function) {
    return {};
  }
  return function();
}

#if defined(OS_WIN)
extern "C" void cef_set_osmodal_loop(int osModalLoop) {
  const auto function = Function<decltype(&cef_set_osmodal_loop)>(k_cef_set_osmodal_loop);
  if (!function) {
    return;
  }
  function(osModalLoop);
}

#endif
extern "C" int cef_get_min_log_level(void) {
  const auto function = Function<decltype(&cef_get_min_log_level)>(k_cef_get_min_log_level);
  if (!function) {
    return {};
  }
  return function();
}

