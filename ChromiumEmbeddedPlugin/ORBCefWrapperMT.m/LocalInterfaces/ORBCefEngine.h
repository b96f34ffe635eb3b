// Starts and stops the engine in the host process, and holds what there is once in a process: the
// application object, the lock that keeps start, stop and the creation of browsers apart, and the
// locale tag that the engine was started with.
//
// InitializeEngine and ShutdownEngine run on the same thread, the host's main thread. App is read
// and browsers are created under Lock, on the engine's UI thread. The objects belong to the
// process and go when the library is unloaded.
#ifndef ORBCEFENGINE_H
#define ORBCEFENGINE_H

#include <string>

#include "ORBCefApp.h"
#include "include/cef_app.h"
#include "platform/Lock.h"

class ORBCefEngine {
 public:
  // The two calls that reach into the engine, so that a test can put its own in their place.
  struct Calls {
    bool (*initialize)(const CefMainArgs& args, const CefSettings& settings, CefRefPtr<CefApp> app);
    void (*shutdown)();
  };
  static const Calls& EngineCalls();

  ORBCefEngine() = delete;

  // Does nothing if the engine runs. After a failure the next call tries again with the same
  // application object. The engine cannot be started a second time in a process: after
  // ShutdownEngine the call is refused with a log line.
  static void InitializeEngine(const Calls& calls = EngineCalls());

  // Does nothing if the engine does not run. Waits, each within a limit, until the engine has come
  // up and until all browsers have ended, of which it closes what is left: the engine faults when
  // it is stopped earlier. Holds Lock to the end, so a task on the UI thread must only try to enter
  // it.
  static void ShutdownEngine(const Calls& calls = EngineCalls());

  static bool IsInitialized();

  // The locale tag of the last start; empty means the engine's own default. Kept after the stop.
  static CefString Language();

  static platform::Lock& Lock();

  // Null before the first start and after the stop. Call it under Lock when off the main thread.
  static CefRefPtr<ORBCefApp> App();

  // The locale tag of the host's language (ORBCefLocale); empty off the host's main thread.
  static std::string ComputeLocaleTag();

  // Fills all settings (ORBCefSettings) with `Language`.
  static void FillSettings(CefSettings& settings);

  // Only Windows has such a switch for a process.
  static void EnableHighDpiSupport();
};

#endif  // ORBCEFENGINE_H
