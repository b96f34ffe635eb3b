#include "ORBCefAssert.h"

#include <cstdlib>

#include "ORBCefLog.h"
#include "ORBCefToolsWrapperMT.h"

void ORBCefReportCheck(const char* expression, const char* path, int line) {
  ORBCefLog::Error(expression, " in ", path, " line ", line);
}

void ORBCefDie() {
  // Volatile twice, so that no compiler sees the null or drops the store before the abort.
  volatile int* volatile nowhere = nullptr;
  *nowhere = 0;
  std::abort();
}

bool ORBCefCheck(bool ok, const char* expression, const char* path, int line) {
  if (ok)
    return true;
  ORBCefReportCheck(expression, path, line);
  if (ORBCefToolsWrapperMT::IsTestRig())
    ORBCefDie();
  return false;
}
