#include "ORBCefEngine.h"

#include <atomic>
#include <chrono>
#include <mutex>
#include <utility>

#include "ORBCefLivingBrowsers.h"
#include "ORBCefLocale.h"
#include "ORBCefLog.h"
#include "ORBCefSettings.h"
#include "ORBCefStartedEvent.h"
#include "ORBCefToolsAccessor.h"
#include "ORBCefToolsWrapperMT.h"
#include "include/base/cef_build.h"
#include "platform/HostWait.h"
#include "platform/Process.h"

#if defined(OS_WIN)
// The header of this function differs between the engine's versions; the function does not.
extern "C" void cef_enable_highdpi_support(void);
#endif

namespace {

constexpr std::uint32_t kEngineLockSpinCount = 2000;

// What there is once in a process. Made when the library is loaded, gone when it is unloaded; an
// application object that a host left behind is released then.
struct State {
  platform::Lock lock{kEngineLockSpinCount};
  std::atomic<bool> initialized{false};
  // The engine's own state is not made for a second start.
  bool stopped = false;
  CefRefPtr<ORBCefApp> app;
  // Kept as an 8-bit text: its end must not need the engine.
  std::string language;
};
State g_engine;

constexpr char kNoHelper[] =
    "The engine is not started: the helper executable is below no root of ORBInstallPath.";

// Without a helper the engine takes the host's own executable for its sub-processes: it would start
// copies of the host over and over, and end the host when none of them serves.
bool CallInitialize(const CefMainArgs& args, const CefSettings& settings, CefRefPtr<CefApp> app) {
  if (settings.browser_subprocess_path.length == 0) {
    ORBCefLog::Error(ORBCefLog::kBrowserProcess, kNoHelper);
    return false;
  }
  return CefInitialize(args, settings, app, nullptr);
}

constexpr char kSecondStart[] =
    "The engine was shut down and cannot be started again in this process.";
constexpr char kNotStarted[] = "The engine is shut down before it has come up.";
constexpr char kLivingBrowsers[] = "The engine is shut down while browsers have not closed.";

// Far longer than a start takes; a stop that is asked for must come to its end in any case.
constexpr std::chrono::seconds kStartLimit{10};

// What the engine's processes take to notice that the engine is gone, and far more.
constexpr std::chrono::seconds kChildrenLimit{5};

// The engine faults when it is stopped before it has come up, and while browsers live. A host hears
// nothing of the one, and of the other nothing after a close, so this waits for both. On Windows a
// renderer that is starting in that moment may not notice the end, and would stay as long as the
// host.
void CallShutdown() {
  if (!ORBCefStartedEvent::Instance().WaitFor(kStartLimit))
    ORBCefLog::Error(ORBCefLog::kBrowserProcess, kNotStarted);
  if (!ORBCefLivingBrowsers::Instance().CloseAllAndWait())
    ORBCefLog::Error(ORBCefLog::kBrowserProcess, kLivingBrowsers);
  CefShutdown();
  platform::EndChildren(ORBCefSettings::kHelperFile, kChildrenLimit);
}

}  // namespace

const ORBCefEngine::Calls& ORBCefEngine::EngineCalls() {
  static constexpr Calls calls{&CallInitialize, &CallShutdown};
  return calls;
}

void ORBCefEngine::InitializeEngine(const Calls& calls) {
  if (g_engine.initialized)
    return;
  if (g_engine.stopped) {
    ORBCefLog::Error(ORBCefLog::kBrowserProcess, kSecondStart);
    return;
  }
  if (platform::IsDpiAware())
    EnableHighDpiSupport();
  g_engine.language = ComputeLocaleTag();
  ORBCefToolsWrapperMT::FixInstallPath();

  // Without an instance handle or arguments: the host's command line is not the engine's.
  const CefMainArgs args;
  CefSettings settings;
  FillSettings(settings);
  if (!g_engine.app)
    g_engine.app = new ORBCefApp(ProcessKind::kBrowser);
  g_engine.initialized = calls.initialize(args, settings, g_engine.app);
  g_engine.app->SetRecordMode(ORBCefToolsAccessor::GetRecordMode());
}

void ORBCefEngine::ShutdownEngine(const Calls& calls) {
  // The task that makes a browser holds the lock, and its window's parent may be this thread's.
  platform::EnterServing(g_engine.lock);
  std::lock_guard<platform::Lock> guard(g_engine.lock, std::adopt_lock);
  if (!g_engine.initialized)
    return;
  g_engine.initialized = false;
  g_engine.stopped = true;
  g_engine.app = nullptr;
  calls.shutdown();
}

bool ORBCefEngine::IsInitialized() {
  return g_engine.initialized;
}

CefString ORBCefEngine::Language() {
  return CefString(g_engine.language);
}

platform::Lock& ORBCefEngine::Lock() {
  return g_engine.lock;
}

CefRefPtr<ORBCefApp> ORBCefEngine::App() {
  return g_engine.app;
}

std::string ORBCefEngine::ComputeLocaleTag() {
  return ORBCefLocale::ComputeLocaleTag();
}

void ORBCefEngine::FillSettings(CefSettings& settings) {
  ORBCefSettings::Fill(settings, Language());
}

void ORBCefEngine::EnableHighDpiSupport() {
#if defined(OS_WIN)
  cef_enable_highdpi_support();
#endif
}
