// The entry of the module: one exported C function, and the table that it hands out.
//
// What a host does, in this order:
//   1. Load the module (libORBCefWrapperMT.so, ORBCefWrapperMT.dll) and resolve
//      `orbcef_pluginfactory`. Nothing else has to be resolved, nothing is linked.
//   2. Call it with ORBCEF_PLUGIN_MAJOR, ORBCEF_PLUGIN_MINOR and ORBCEF_GLOBAL_TABLE.
//   3. Call `set_tools` with the table of orbceftools.h: all later calls need the host's services.
//   4. Call `create_browser` (orbcefbrowser.h) for each view. The first one starts the engine;
//      `init_engine` starts it earlier. `create_http` (orbcefhttp.h) gives requests.
//   5. For each view: any setters, `create` once, then free use. The view's events come through
//      the table of orbcefbrowserevents.h, most of them on the engine's UI thread.
//   6. For each view: `close`, then `release`. Wait for the destruction of the view's window before
//      the window that it is a child of is destroyed.
//   7. Call `shutdown_engine` on the thread of step 4, when all views and requests are released.
//      The engine can be started once in a process; there is no second start after this.
// A sub-process (the helper executable) does steps 1 to 3 and then `execute_subprocess`, no more.
//
// The rules of all tables:
// - A function's first argument is the table itself, never null. The tools table has no such
//   argument.
// - Booleans are one byte, 1 for true, any other value than 0 counts as true.
// - Tables that stand for objects are counted: born with one reference of the caller's, `add_ref`
//   and `release` are atomic, and the last `release` frees object and table.
// - Arguments are lent for the call. Results are handed over; records are freed through their own
//   free function, tables by `release`.
// - No function throws and none reports an error code: a call that cannot act returns its neutral
//   value (false, 0, null) and writes to the engine's log.
// - The thread tag on the last line of a slot's comment tells where the slot may be called or comes
//   from: [main] the host's main thread, [ui] the engine's UI thread, [io] the engine's IO thread,
//   [any] every thread. What follows "&" is the state that must hold.
#ifndef ORBCEFGLOBAL_H
#define ORBCEFGLOBAL_H

#include "orbcefbrowser.h"
#include "orbcefbrowserevents.h"
#include "orbcefbrowserhost.h"
#include "orbcefhttp.h"
#include "orbcefrecords.h"
#include "orbceftools.h"

// Version of this interface. The module refuses another major and a higher minor.
#define ORBCEF_PLUGIN_MAJOR 1
#define ORBCEF_PLUGIN_MINOR 0
// Name of the table below, and of the factory's symbol.
#define ORBCEF_GLOBAL_TABLE "orbcefglobal_c"
#define ORBCEF_FACTORY_SYMBOL "orbcef_pluginfactory"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct orbcefglobal_c orbcefglobal_c;
struct orbcefglobal_c {
  // Creates a view without an engine browser yet, and starts the engine if that has not happened.
  // `callbacks` hears the view's events, `authDelegate` answers for the session; either may be
  // null, and the module adds a reference to each. `homeUrl` may be null or empty.
  // Returns the view with one reference, also when the engine did not start: look at the log.
  // [main & tools set]
  orbcefbrowser_c* (*create_browser)(orbcefglobal_c* iCStruct, orbcefbrowserevents_c* callbacks,
                                     orbcefbrowserhost_c* authDelegate,
                                     const orbcefstring_c* homeUrl);
  // Creates an HTTP request with one reference; it can be sent once the engine runs. Does not
  // start the engine.
  // [any & tools set]
  orbcefhttp_c* (*create_http)(orbcefglobal_c* iCStruct);
  // Starts the engine on the calling thread. Does nothing if it runs already.
  // [main & tools set]
  void (*init_engine)(orbcefglobal_c* iCStruct);
  // Stops the engine. Blocks until its threads have ended. Does nothing if it does not run.
  // [main & thread of the start & all views released]
  void (*shutdown_engine)(orbcefglobal_c* iCStruct);
  // Runs an engine sub-process to its end. Both arguments are ignored (0, null): the command line
  // is read from the operating system. Returns the process's exit code, -1 if the command line is
  // not that of a sub-process.
  // [main & sub-process & tools set]
  int32_t (*execute_subprocess)(orbcefglobal_c* iCStruct, int32_t ignoredCount, void* ignoredArgs);
  // Gives the host's services. The table is copied; null takes the stored copy away. Not locked:
  // call it once, before anything else.
  // [main & no view]
  void (*set_tools)(orbcefglobal_c* iCStruct, _orbceftools_c* tools);
  // Returns 1.
  // [any]
  uint64_t (*is_available)(orbcefglobal_c* iCStruct);
  // Returns 0.
  // [any]
  uint64_t (*reserved)(orbcefglobal_c* iCStruct);
};

ORBCEF_STATIC_ASSERT(sizeof(orbcefglobal_c) == 64, "orbcefglobal_c has 8 slots.");

// Type of the exported symbol `orbcef_pluginfactory`. Returns the one table of the name, null for
// another major, a higher minor or an unknown name. The table belongs to the module and lives as
// long as it is loaded. The first two refusals write a line to standard output, as does the first
// success in a process. `tableName` must not be null.
// [any]
typedef void* (*orbcef_pluginfactory_fn)(uint32_t major, int32_t minor, const char* tableName);

// The module defines ORBCEF_BUILDING_MODULE; a program that has the module's sources linked in
// statically defines ORBCEF_STATIC. Only the module exports: a host resolves the symbol by name.
#if defined(_WIN32) && defined(ORBCEF_BUILDING_MODULE)
#define ORBCEF_API __declspec(dllexport)
#elif defined(_WIN32) && !defined(ORBCEF_STATIC)
#define ORBCEF_API __declspec(dllimport)
#elif defined(__GNUC__) && !defined(_WIN32)
#define ORBCEF_API __attribute__((visibility("default")))
#else
#define ORBCEF_API
#endif

ORBCEF_API void* orbcef_pluginfactory(uint32_t major, int32_t minor, const char* tableName);

// Marker of the interface kit: returns 1. [any]
ORBCEF_API uint64_t MERIDEX_SOFTWARE_KIT2_INTERNAL_ORBCefWrapperMT(void);

#ifdef __cplusplus
}
#endif

#endif  // ORBCEFGLOBAL_H
