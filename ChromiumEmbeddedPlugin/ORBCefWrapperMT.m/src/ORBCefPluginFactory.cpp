#include "ORBCefPluginFactory.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>

#include "ORBCefEngine.h"
#include "ORBCefLog.h"
#include "ORBCefPluginClient.h"
#include "ORBCefSubprocess.h"
#include "ORBCefToolsAccessor.h"
#include "include/cef_version.h"

namespace {

constexpr char kModuleName[] = "ORBCefWrapperMT";

// The slots of the table. They ignore the table pointer: there is only one table.
extern "C" {

static orbcefbrowser_c* CreateBrowser(orbcefglobal_c*, orbcefbrowserevents_c* callbacks,
                                      orbcefbrowserhost_c* auth_delegate,
                                      const orbcefstring_c* home_url) noexcept {
  return ORBCefCreateBrowserTable(callbacks, auth_delegate, home_url);
}

static orbcefhttp_c* CreateHttp(orbcefglobal_c*) noexcept {
  ORBCefLog::Error("HTTP requests are not available in this build.");
  return nullptr;
}

static void InitEngine(orbcefglobal_c*) noexcept {
  ORBCefEngine::InitializeEngine();
}

static void ShutdownEngine(orbcefglobal_c*) noexcept {
  ORBCefEngine::ShutdownEngine();
}

static std::int32_t ExecuteSubprocess(orbcefglobal_c*, std::int32_t, void*) noexcept {
  return ORBCefSubprocess::Execute();
}

static void SetTools(orbcefglobal_c*, _orbceftools_c* tools) noexcept {
  ORBCefPlugin_Tools::SetORBCefTools(tools);
}

static std::uint64_t IsAvailable(orbcefglobal_c*) noexcept {
  return MERIDEX_SOFTWARE_KIT2_INTERNAL_ORBCefWrapperMT();
}

static std::uint64_t Reserved(orbcefglobal_c*) noexcept {
  return 0;
}

}  // extern "C"

orbcefglobal_c g_table = {&CreateBrowser,     &CreateHttp, &InitEngine,  &ShutdownEngine,
                          &ExecuteSubprocess, &SetTools,   &IsAvailable, &Reserved};

void RefuseMajor(std::uint32_t requested) {
  std::printf(
      "[error] acces to CEF plugin refused due to different plugin major version : %d vs %u\n",
      ORBCEF_PLUGIN_MAJOR, static_cast<unsigned>(requested));
  std::fflush(stdout);
}

void RefuseMinor(std::int32_t requested) {
  std::printf("[error] acces to CEF plugin refused due to higher plugin minor version : %d vs %d\n",
              ORBCEF_PLUGIN_MINOR, static_cast<int>(requested));
  std::fflush(stdout);
}

void PrintVersions() {
  std::printf("[info] orbcefglobal_c(%d,%d) Cef: %s\n", ORBCEF_PLUGIN_MAJOR, ORBCEF_PLUGIN_MINOR,
              CEF_VERSION);
  // The host's tools may not be set yet.
  if (std::getenv("ORBCEF_LOG")) {
    std::printf("[info] Please check if content of code\\CEF\\cef.txt actually includes :\n");
    std::printf("CEF_VERSION_MAJOR %d\n", CEF_VERSION_MAJOR);
    std::printf("PLUGIN_INSTALLED %d %d %s\n", ORBCEF_PLUGIN_MAJOR, ORBCEF_PLUGIN_MINOR,
                kModuleName);
  }
  std::fflush(stdout);
}

}  // namespace

orbcefglobal_c* ORBCefGlobalTable() {
  return &g_table;
}

extern "C" {

void* orbcef_pluginfactory(std::uint32_t major, std::int32_t minor, const char* tableName) {
  if (major != ORBCEF_PLUGIN_MAJOR) {
    RefuseMajor(major);
    return nullptr;
  }
  if (minor > ORBCEF_PLUGIN_MINOR) {
    RefuseMinor(minor);
    return nullptr;
  }
  if (!tableName || std::strcmp(tableName, ORBCEF_GLOBAL_TABLE) != 0)
    return nullptr;
  static std::once_flag printed;
  std::call_once(printed, PrintVersions);
  return &g_table;
}

std::uint64_t MERIDEX_SOFTWARE_KIT2_INTERNAL_ORBCefWrapperMT(void) {
  return 1;
}

}  // extern "C"
