#include "Control.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

#include <cstdio>
#include <cstdlib>

namespace control {

namespace {

// The search path of the program leads to the same file as the binding's.
void* Symbol(const char* name) {
#if defined(_WIN32)
  static const HMODULE library = LoadLibraryW(L"libcef.dll");
  return library ? reinterpret_cast<void*>(GetProcAddress(library, name)) : nullptr;
#else
  static void* const library = dlopen("libcef.so", RTLD_NOW | RTLD_LOCAL);
  return library ? dlsym(library, name) : nullptr;
#endif
}

template <class Function>
Function* Find(const char* name) {
  void* const found = Symbol(name);
  if (!found) {
    std::fprintf(stderr, "no %s: this is not the stand-in\n", name);
    std::_Exit(1);
  }
  return reinterpret_cast<Function*>(found);
}

}  // namespace

void Fail(const char* operation, int times) {
  static auto* const function = Find<orbcef_standin_fail_fn>("orbcef_standin_fail");
  function(operation, times);
}

int Count(const char* event) {
  static auto* const function = Find<orbcef_standin_count_fn>("orbcef_standin_count");
  return function(event);
}

std::vector<std::string> Texts(const char* event) {
  static auto* const function = Find<orbcef_standin_text_fn>("orbcef_standin_text");
  std::vector<std::string> texts;
  const int count = Count(event);
  for (int i = 0; i < count; ++i) {
    std::string text(static_cast<size_t>(function(event, i, nullptr, 0)) + 1, '\0');
    function(event, i, text.data(), static_cast<int32_t>(text.size()));
    text.pop_back();
    texts.push_back(text);
  }
  return texts;
}

std::string Last(const char* event) {
  const std::vector<std::string> texts = Texts(event);
  return texts.empty() ? std::string() : texts.back();
}

bool Wait(const char* event, int count, int milliseconds) {
  static auto* const function = Find<orbcef_standin_wait_fn>("orbcef_standin_wait");
  return function(event, count, milliseconds) != 0;
}

void Hold(cef_thread_id_t thread) {
  static auto* const function = Find<orbcef_standin_hold_fn>("orbcef_standin_hold");
  function(thread);
}

void Resume(cef_thread_id_t thread) {
  static auto* const function = Find<orbcef_standin_resume_fn>("orbcef_standin_resume");
  function(thread);
}

bool Settle(cef_thread_id_t thread) {
  static auto* const function = Find<orbcef_standin_settle_fn>("orbcef_standin_settle");
  return function(thread, kLimit) != 0;
}

void SettleAll() {
  for (int round = 0; round < 4; ++round) {
    Settle(TID_UI);
    Settle(TID_IO);
    Settle(TID_FILE_USER_BLOCKING);
  }
  Settle(TID_UI);
}

int Living(const char* class_name) {
  static auto* const function = Find<orbcef_standin_living_fn>("orbcef_standin_living");
  return function(class_name);
}

void OnPage(void (*page)(void* data), void* data) {
  static auto* const function = Find<orbcef_standin_page_fn>("orbcef_standin_page");
  function(page, data);
}

bool Native(const char* name, const std::vector<const char*>& arguments) {
  static auto* const function = Find<orbcef_standin_native_fn>("orbcef_standin_native");
  return function(name, arguments.data(), static_cast<int32_t>(arguments.size())) != 0;
}

Callback::Callback(const char* its_name, int its_thread) : orbcef_standin_call{} {
  name = its_name;
  thread = its_thread;
}

Callback& Callback::Null(int argument) {
  nulls |= 1u << argument;
  return *this;
}

Callback& Callback::Text(int index, const char* value) {
  texts[index] = value;
  return *this;
}

Callback& Callback::Number(int index, int value) {
  numbers[index] = value;
  return *this;
}

Callback& Callback::Fields(const std::vector<const char*>& values) {
  _fields = values;
  return *this;
}

bool Callback::Play() {
  static auto* const function = Find<orbcef_standin_play_fn>("orbcef_standin_play");
  fields = _fields.data();
  field_count = static_cast<int32_t>(_fields.size());
  return function(this) != 0;
}

}  // namespace control
