// The reporting of the ABI tests: a line "ok ..." or "not ok ..." for each check, and at the end
// the plan "1..N" with the number of checks, all on standard output. C11, no library.
#ifndef ORBCEF_TESTS_ABI_CHECK_H
#define ORBCEF_TESTS_ABI_CHECK_H

#include <stdio.h>

static int g_checks;
static int g_failures;

static void check(int passed, const char* what) {
  ++g_checks;
  g_failures += !passed;
  printf("%s %s\n", passed ? "ok" : "not ok", what);
  // What was said must not be lost with a process that dies in the next call.
  fflush(stdout);
}

// The exit status of the test: 0 only if there were checks and all passed.
static int finish(void) {
  printf("1..%d\n", g_checks);
  fflush(stdout);
  return g_checks > 0 && g_failures == 0 ? 0 : 1;
}

#endif  // ORBCEF_TESTS_ABI_CHECK_H
