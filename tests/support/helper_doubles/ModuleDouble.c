// A module for tests of the helper: it lies where the real one would, writes to standard output how
// it is called, and ends the sub-process with a code that nothing else uses.
// Compiled with ORBCEF_WITHOUT_FACTORY it is a library that is no module.
#include <inttypes.h>
#include <stdio.h>
#include <stdlib.h>

#include "orbcefglobal.h"

#if defined(ORBCEF_WITHOUT_FACTORY)

ORBCEF_API int orbcef_other_symbol = 1;

#else

enum { kExitCode = 42 };

static _orbceftools_c* tools = NULL;

static int32_t ExecuteSubprocess(orbcefglobal_c* iCStruct, int32_t count, void* arguments) {
  const char* value = tools ? tools->get_env("ORBCEF_UNIT_TEST_VARIABLE") : NULL;
  printf("execute %s %" PRId32 " %s env=%s\n", iCStruct ? "table" : "null", count,
         arguments ? "arguments" : "null", value ? value : "(unset)");
  fflush(stdout);
  return kExitCode;
}

static void SetTools(orbcefglobal_c* iCStruct, _orbceftools_c* given) {
  printf("set_tools %s %s\n", iCStruct ? "table" : "null", given ? "tools" : "null");
  tools = given;
}

static orbcefglobal_c table = {.execute_subprocess = ExecuteSubprocess, .set_tools = SetTools};

void* orbcef_pluginfactory(uint32_t major, int32_t minor, const char* tableName) {
  printf("factory %" PRIu32 " %" PRId32 " %s\n", major, minor, tableName);
  fflush(stdout);
  return getenv("ORBCEF_UNIT_TEST_REFUSE") ? NULL : &table;
}

#endif
