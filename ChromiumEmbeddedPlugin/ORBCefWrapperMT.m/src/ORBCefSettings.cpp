#include "ORBCefSettings.h"

#include <cstdio>
#include <cstdlib>

#include "ORBCefToolsAccessor.h"
#include "ORBCefToolsWrapperMT.h"
#include "platform/Files.h"

namespace ORBCefSettings {

namespace {

constexpr char kBinaries[] = "code/bin/";
constexpr char kCacheDirectory[] = "WebCache";
constexpr char kLogFile[] = "cef_client_debug.log";
constexpr int kStackFrames = 20;
constexpr cef_color_t kWhite = 0xFFFFFFFF;
constexpr long kLeastPort = 1024;
constexpr long kMostPort = 65535;

const char* Env(const char* name) {
  return ORBCefToolsAccessor::ORBGetEnv(name);
}

void SetText(cef_string_t& field, const std::string& text) {
  CefString view(&field);
  view = text;
}

// The engine's own log is not up yet.
void Announce(const char* text, const std::string& path) {
  std::fprintf(stderr, "%s%s\n", text, path.c_str());
}

std::string LogDirectory(const std::string& cache_path) {
  if (const char* directory = Env("ORBCEF_LOG_PATH"))
    return directory;
  if (platform::IsDirectory(cache_path) || ORBCefToolsAccessor::ORBCreateDirectory(cache_path))
    return cache_path;
  return ORBCefToolsAccessor::ORBGetTempDirectory();
}

cef_log_severity_t LogSeverity() {
  const char* log = Env("ORBCEF_LOG");
  if (!log)
    return LOGSEVERITY_DISABLE;
  return std::string(log) == "verbose" ? LOGSEVERITY_VERBOSE : LOGSEVERITY_INFO;
}

void FillLogAndCache(CefSettings& settings) {
  settings.log_severity = LogSeverity();
  const bool logging = Env("ORBCEF_LOG") != nullptr;
  const bool caching = Env("ORBCEF_NOCACHE") == nullptr;
  SetText(settings.log_file, std::string());
  SetText(settings.cache_path, std::string());
  if (!logging && !caching)
    return;

  const std::string cache_path = ComputeCachePath();
  if (logging) {
    // The separator comes even if the directory ends in one: log files have always been there.
    const std::string log_file = LogDirectory(cache_path) + platform::kSeparator + kLogFile;
    SetText(settings.log_file, log_file);
    Announce("[Info] CEF logging is enabled and should be written in ", log_file);
  }
  if (caching) {
    SetText(settings.cache_path, cache_path);
    if (logging)
      Announce("[Info] Cache is now enabled for CEF: ", cache_path);
  }
}

}  // namespace

std::string ComputeCachePath() {
  if (const char* path = Env("ORBCEF_CACHE_PATH"))
    return path;
  const char* temp = Env("ORBTemp");
  std::string path = temp ? temp : ORBCefToolsAccessor::ORBGetTempDirectory();
  if (path.empty() || path.back() != platform::kSeparator)
    path.push_back(platform::kSeparator);
  path += kCacheDirectory;
  const int level = ORBCefToolsAccessor::GetOrbisReleaseLevelInfo();
  if (level >= 1)
    path += "_" + std::to_string(level);
  return path;
}

int DevToolsPort() {
  const char* value = Env("ORBCEF_DEVTOOLS_PORT");
  const long port = value ? std::strtol(value, nullptr, 10) : 0;
  return port >= kLeastPort && port <= kMostPort ? static_cast<int>(port) : 0;
}

void Fill(CefSettings& settings, const CefString& language) {
  FillLogAndCache(settings);

  SetText(settings.browser_subprocess_path,
          ORBCefToolsWrapperMT::FindFileOnPaths(std::string(kBinaries) + kHelperFile,
                                                ORBCefToolsWrapperMT::CurrentInstallPath()));
  settings.remote_debugging_port = DevToolsPort();

  settings.no_sandbox = 1;
  settings.chrome_runtime = 0;
  settings.multi_threaded_message_loop = 1;
  settings.external_message_pump = 0;
  settings.windowless_rendering_enabled = ORBCefToolsWrapperMT::IsOffScreenRendering() ? 1 : 0;
  settings.command_line_args_disabled = 1;
  SetText(settings.root_cache_path, std::string());
  SetText(settings.user_data_path, std::string());
  settings.persist_session_cookies = 0;
  settings.persist_user_preferences = 0;
  SetText(settings.user_agent, std::string());
  SetText(settings.user_agent_product, ORBCefToolsWrapperMT::GetUserAgentProduct());
  CefString(&settings.locale) = language;
  CefString(&settings.accept_language_list) = language;
  SetText(settings.javascript_flags, std::string());
  SetText(settings.resources_dir_path, std::string());
  SetText(settings.locales_dir_path, std::string());
  settings.pack_loading_disabled = 0;
  settings.uncaught_exception_stack_size = kStackFrames;
  settings.background_color = kWhite;
}

}  // namespace ORBCefSettings
