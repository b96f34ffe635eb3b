#include "audit.h"

#if defined(_WIN32)
#include <windows.h>
#endif

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <mutex>

namespace standin {

namespace {

struct Ledger {
  std::mutex lock;
  // Guarded by lock.
  std::map<std::string, int> living;
};

Ledger& TheLedger() {
  // Never destroyed: objects go until the very end of the process.
  static Ledger& ledger = *new Ledger();
  return ledger;
}

std::atomic<bool> g_has_leaked{false};

void Count(const char* name, int change) {
  Ledger& ledger = TheLedger();
  const std::lock_guard<std::mutex> guard(ledger.lock);
  ledger.living[name] += change;
}

// Runs when the process has ended all else, the client's static objects included.
__attribute__((destructor)) void AuditTheEnd() {
  const bool is_clean = ReportLiving("at the end of the process");
  if (is_clean && !g_has_leaked) {
    return;
  }
  std::fflush(nullptr);
#if defined(_WIN32)
  // The process is ending already, and takes no other status than this way.
  TerminateProcess(GetCurrentProcess(), kLeakStatus);
#else
  std::_Exit(kLeakStatus);
#endif
}

}  // namespace

Audited::Audited(const char* name) : _name(name) {
  Count(_name, 1);
}

Audited::~Audited() {
  Count(_name, -1);
}

int Living(const char* name) {
  Ledger& ledger = TheLedger();
  const std::lock_guard<std::mutex> guard(ledger.lock);
  int count = 0;
  for (const auto& [class_name, living] : ledger.living) {
    if (!name || class_name == name) {
      count += living;
    }
  }
  return count;
}

bool ReportLiving(const char* when) {
  Ledger& ledger = TheLedger();
  const std::lock_guard<std::mutex> guard(ledger.lock);
  bool is_clean = true;
  for (const auto& [name, living] : ledger.living) {
    if (living != 0) {
      std::fprintf(stderr, "[stand-in] %s: %d %s alive\n", when, living, name.c_str());
      is_clean = false;
    }
  }
  if (!is_clean) {
    g_has_leaked = true;
  }
  return is_clean;
}

}  // namespace standin
