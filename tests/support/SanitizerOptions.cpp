// The sanitizers ask the program for these defaults; without a sanitizer nobody calls them. A fault
// is left to the system: tests expect a process to die of it by its signal. The leak checker
// guesses where a library's thread-local block begins, and faults itself if the block lies at the
// front of a page: it is to take such blocks for reachable instead, as allocations of the dynamic
// linker.

#if defined(__GNUC__) && !defined(_WIN32)
// The sanitizer's own library looks for them.
#define ORBCEF_FOR_SANITIZER extern "C" __attribute__((visibility("default")))
#else
#define ORBCEF_FOR_SANITIZER extern "C"
#endif

ORBCEF_FOR_SANITIZER const char* __asan_default_options();
ORBCEF_FOR_SANITIZER const char* __tsan_default_options();
ORBCEF_FOR_SANITIZER const char* __ubsan_default_options();

const char* __asan_default_options() {
  return "handle_segv=0:intercept_tls_get_addr=0:detect_stack_use_after_return=1";
}

const char* __tsan_default_options() {
  return "handle_segv=0:second_deadlock_stack=1";
}

const char* __ubsan_default_options() {
  return "print_stacktrace=1";
}
