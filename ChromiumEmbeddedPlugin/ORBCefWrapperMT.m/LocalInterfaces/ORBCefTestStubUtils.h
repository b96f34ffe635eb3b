// Keeps the stub directory of an instrumented test run away from the engine's child processes: it
// is taken out of PATH before a launch and put back when the child reports over a loopback port.
//
// In the browser process the functions are called where children are launched and on the thread of
// each listener; a child calls SendStubMessage once at its start. The saved PATH and the number of
// launches under way belong to the process and have a lock of their own.
#ifndef ORBCEFTESTSTUBUTILS_H
#define ORBCEFTESTSTUBUTILS_H

#include <functional>
#include <string>

#include "platform/Loopback.h"

namespace ORBCefTestStubUtils {

// What a child sends: 18 characters without terminator or length.
constexpr char kCreatedMessage[] = "subprocess:created";

// A memory or coverage tool wraps the process. Reads the environment at each call.
bool IsInstrumentedRun();

// Takes the directory that PATH_TEST names out of PATH. Only the first of overlapping launches
// changes PATH.
bool RemoveStubDirectoryFromPath();

// Keeps PATH for RestorePath; part of RemoveStubDirectoryFromPath, under its lock.
bool SavePath();

// Puts the saved PATH back when no launch is under way any more.
bool RestorePath();

// Opens a port for one child and waits for it on a thread of its own, without limit. `callback`
// runs on that thread whenever the child's bytes, as they came in one piece, equal `expected`.
// Returns the port, -1 on failure. `sockets` must live until the thread has ended.
int OpenStubPort(const std::string& expected, std::function<void()> callback,
                 platform::Loopback& sockets = platform::Loopback::System());

// Sends `message` to a port. True also after a failed send: only a port that is not there is a
// failure.
bool SendStubMessage(int port, const std::string& message,
                     platform::Loopback& sockets = platform::Loopback::System());

}  // namespace ORBCefTestStubUtils

#endif  // ORBCEFTESTSTUBUTILS_H
