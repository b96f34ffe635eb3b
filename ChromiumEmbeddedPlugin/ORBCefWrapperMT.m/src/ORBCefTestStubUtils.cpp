#include "ORBCefTestStubUtils.h"

#include <algorithm>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "ORBCefLog.h"
#include "ORBCefToolsAccessor.h"
#include "ORBCefToolsWrapperMT.h"
#include "platform/Files.h"
#include "platform/Lock.h"

namespace ORBCefTestStubUtils {

namespace {

using platform::Loopback;

constexpr std::size_t kBufferSize = 32;
constexpr char kPathVariable[] = "PATH";
constexpr char kPathAssignment[] = "PATH=";

// Guarded by `lock`.
struct SavedPath {
  platform::Lock lock;
  // Launches that have not reported yet.
  int indicator = 0;
  // The whole assignment; empty if nothing was saved.
  std::string assignment;
};

// Never destroyed: the thread of a listener may end after the static objects.
SavedPath& Saved() {
  static SavedPath& saved = *new SavedPath;
  return saved;
}

std::string Environment(const char* name) {
  const char* value = ORBCefToolsAccessor::ORBGetEnv(name);
  return value ? value : std::string();
}

const std::string& StubDirectory() {
  // Never destroyed: the engine may launch a child to the end of the process.
  static const std::string& directory = *new std::string(Environment("PATH_TEST"));
  return directory;
}

template <class... Parts>
void BrowserWarning(const Parts&... parts) {
  ORBCefLog::Warning(ORBCefLog::kBrowserProcess, parts...);
}
template <class... Parts>
void BrowserError(const Parts&... parts) {
  ORBCefLog::Error(ORBCefLog::kBrowserProcess, parts...);
}
// Stands on the messages of every child, whatever its kind.
template <class... Parts>
void ChildError(const Parts&... parts) {
  ORBCefLog::Error(ORBCefLog::kRendererProcess, parts...);
}

// Waits on its own thread for one child and hears it to the end.
class StubListener {
 public:
  StubListener(Loopback& sockets, Loopback::Socket socket, int port, std::string expected,
               std::function<void()> callback)
      : _sockets(sockets),
        _socket(socket),
        _port(port),
        _expected(std::move(expected)),
        _callback(std::move(callback)) {}

  void Run() {
    if (AcceptChild())
      ServeChild();
    _sockets.Close(_socket);
    _sockets.Stop();
  }

 private:
  bool AcceptChild() {
    if (!_sockets.Listen(_socket)) {
      BrowserError("listen failed: ", _sockets.LastError());
      return false;
    }
    const Loopback::Socket child = _sockets.Accept(_socket);
    if (child == Loopback::kNoSocket) {
      BrowserError("accept failed: ", _sockets.LastError());
      return false;
    }
    // The port serves a single child.
    _sockets.Close(_socket);
    _socket = child;
    return true;
  }

  void ServeChild() {
    char buffer[kBufferSize];
    int received = 0;
    while ((received = _sockets.Receive(_socket, buffer, sizeof(buffer))) > 0) {
      // Only bytes that came in one piece are compared; a message in two pieces never matches.
      if (std::string(buffer, static_cast<std::size_t>(received)) == _expected)
        _callback();
    }
    if (received < 0) {
      BrowserError("recv failed: ", _sockets.LastError());
      return;
    }
    BrowserWarning("Closing connection on port ", _port);
    if (!_sockets.ShutdownBoth(_socket))
      BrowserError("shutdown failed: ", _sockets.LastError());
  }

  Loopback& _sockets;
  Loopback::Socket _socket;
  const int _port;
  const std::string _expected;
  const std::function<void()> _callback;
};

// A socket on a port that the system chose, and the port; logs and cleans up on failure.
bool BindToFreePort(Loopback& sockets, Loopback::Socket& socket, int& port) {
  socket = sockets.Open();
  if (socket == Loopback::kNoSocket) {
    BrowserError("socket failed: ", sockets.LastError());
    return false;
  }
  if (!sockets.Bind(socket)) {
    BrowserError("bind failed: ", sockets.LastError());
    sockets.Close(socket);
    return false;
  }
  port = sockets.BoundPort(socket);
  if (port < 0) {
    BrowserError("getsockname failed: ", sockets.LastError());
    sockets.Close(socket);
    return false;
  }
  return true;
}

// Connects, sends and closes; false only if no connection came about.
bool Send(Loopback& sockets, int port, const std::string& message) {
  const Loopback::Socket socket = sockets.Open();
  if (socket == Loopback::kNoSocket) {
    ChildError("socket failed: ", sockets.LastError());
    return false;
  }
  if (!sockets.Connect(socket, port)) {
    ChildError("connect failed: ", sockets.LastError());
    if (!sockets.Close(socket))
      ChildError("closesocket failed: ", sockets.LastError());
    return false;
  }
  if (sockets.Send(socket, message.data(), message.size()) < 0)
    ChildError("send failed: ", sockets.LastError());
  else
    sockets.ShutdownBoth(socket);
  sockets.Close(socket);
  return true;
}

}  // namespace

bool IsInstrumentedRun() {
  return ORBCefToolsWrapperMT::IsUnderTestTool();
}

bool RemoveStubDirectoryFromPath() {
  SavedPath& saved = Saved();
  std::lock_guard<platform::Lock> guard(saved.lock);
  ++saved.indicator;
  if (saved.indicator >= 2) {
    BrowserWarning("Indicator says PATH_TEST was already removed. Not modifying PATH this time: ",
                   saved.indicator);
    return true;
  }
  const std::string& stub_directory = StubDirectory();
  if (stub_directory.empty()) {
    BrowserError("Could not find stub directory: PATH_TEST is empty");
    return false;
  }
  BrowserWarning(
      "Removing stub directory from PATH (found in PATH_TEST) to avoid interfering with IPC "
      "between CEF processes: ",
      stub_directory);
  SavePath();

  const std::string path = Environment(kPathVariable);
  if (path.empty()) {
    BrowserError("Failed to fetch value of PATH");
    return false;
  }
  std::vector<std::string> entries =
      ORBCefToolsWrapperMT::SplitString(path, platform::kPathListSeparator);
  entries.erase(std::remove(entries.begin(), entries.end(), stub_directory), entries.end());
  const std::string assignment =
      kPathAssignment + ORBCefToolsWrapperMT::JoinStrings(entries, platform::kPathListSeparator);
  return ORBCefToolsAccessor::ORBPutEnv(assignment.c_str()) == 0;
}

bool SavePath() {
  SavedPath& saved = Saved();
  std::lock_guard<platform::Lock> guard(saved.lock);
  const std::string path = Environment(kPathVariable);
  if (path.empty()) {
    BrowserError("Failed to save PATH: variable is empty");
    return false;
  }
  saved.assignment = kPathAssignment + path;
  return true;
}

bool RestorePath() {
  SavedPath& saved = Saved();
  std::lock_guard<platform::Lock> guard(saved.lock);
  --saved.indicator;
  if (saved.indicator >= 1) {
    BrowserWarning("Still waiting to restore PATH: ", saved.indicator);
    return true;
  }
  if (saved.assignment.empty()) {
    BrowserError("Restoration of PATH failed: backup is empty");
    return false;
  }
  BrowserWarning("Restoring PATH...");
  return ORBCefToolsAccessor::ORBPutEnv(saved.assignment.c_str()) == 0;
}

int OpenStubPort(const std::string& expected, std::function<void()> callback, Loopback& sockets) {
  if (const int error = sockets.Start()) {
    BrowserError("WSAStartup failed: ", error);
    return -1;
  }
  Loopback::Socket socket = Loopback::kNoSocket;
  int port = -1;
  if (!BindToFreePort(sockets, socket, port)) {
    sockets.Stop();
    return -1;
  }
  try {
    std::thread(&StubListener::Run,
                StubListener(sockets, socket, port, expected, std::move(callback)))
        .detach();
  } catch (const std::system_error&) {
    // Nobody would hear the child: its launch goes on without a port.
    sockets.Close(socket);
    sockets.Stop();
    return -1;
  }
  return port;
}

bool SendStubMessage(int port, const std::string& message, Loopback& sockets) {
  if (const int error = sockets.Start()) {
    ChildError("WSAStartup failed: ", error);
    return false;
  }
  const bool sent = Send(sockets, port, message);
  sockets.Stop();
  return sent;
}

}  // namespace ORBCefTestStubUtils
