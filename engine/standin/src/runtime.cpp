#include "runtime.h"

#include <cstdlib>
#include <mutex>
#include <optional>
#include <thread>

#include "audit.h"
#include "command_line.h"
#include "glue_conversions.h"
#include "renderer.h"
#include "script.h"
#include "system.h"
#include "threads.h"
#include "url.h"
#include "views.h"

namespace standin {

namespace {

struct Runtime {
  std::mutex lock;
  // Guarded by lock.
  std::optional<Held<CefApp>> app;
  std::optional<Held<CefBrowserProcessHandler>> handler;
  CefRefPtr<CefCommandLine> command_line;
  bool was_started = false;
  std::thread::id starter;
};

Runtime& TheRuntime() {
  static Runtime& runtime = *new Runtime();
  return runtime;
}

class Registrar : public CefSchemeRegistrar {
 public:
  bool AddCustomScheme(const CefString& scheme_name, int options) override {
    Note("scheme", scheme_name.ToString() + " " + std::to_string(options));
    if (options & CEF_SCHEME_OPTION_STANDARD) {
      AddStandardScheme(scheme_name.ToString());
    }
    return true;
  }
};

std::string Text(const cef_string_t& field) {
  return CefString(&field).ToString();
}

void NoteSettings(const cef_settings_t& settings) {
  Note("settings.locale", Text(settings.locale));
  Note("settings.cache_path", Text(settings.cache_path));
  Note("settings.log_file", Text(settings.log_file));
  Note("settings.browser_subprocess_path", Text(settings.browser_subprocess_path));
  Note("settings.user_agent_product", Text(settings.user_agent_product));
  Note("settings.log_severity", std::to_string(settings.log_severity));
  Note("settings.remote_debugging_port", std::to_string(settings.remote_debugging_port));
  Note("settings.multi_threaded_message_loop",
       std::to_string(settings.multi_threaded_message_loop));
  Note("settings.windowless_rendering_enabled",
       std::to_string(settings.windowless_rendering_enabled));
}

bool Start(const cef_settings_t& settings, const CefRefPtr<CefApp>& app) {
  Runtime& runtime = TheRuntime();
  {
    const std::lock_guard<std::mutex> guard(runtime.lock);
    if (runtime.was_started || !settings.multi_threaded_message_loop) {
      return false;
    }
    runtime.was_started = true;
    runtime.starter = std::this_thread::get_id();
    runtime.command_line = MakeCommandLine({"program"});
  }
  SetLog(settings.log_severity, Text(settings.log_file));
  NoteSettings(settings);
  CefRefPtr<CefBrowserProcessHandler> handler;
  if (app) {
    app->OnBeforeCommandLineProcessing(CefString(), GlobalCommandLine());
    Note("command_line", GlobalCommandLine()->GetCommandLineString().ToString());
    RegisterSchemes(app);
    handler = app->GetBrowserProcessHandler();
    const std::lock_guard<std::mutex> guard(runtime.lock);
    runtime.app.emplace("client CefApp", app);
    if (handler) {
      runtime.handler.emplace("client CefBrowserProcessHandler", handler);
    }
  }
  StartThreads();
  if (handler) {
    Post(TID_UI, [handler] {
      handler->OnContextInitialized();
      Note("context_initialized");
    });
  }
  Post(TID_IO, [] { AnnounceProcess("gpu-process"); });
  return true;
}

void Stop() {
  Runtime& runtime = TheRuntime();
  std::optional<Held<CefApp>> app;
  std::optional<Held<CefBrowserProcessHandler>> handler;
  CefRefPtr<CefCommandLine> command_line;
  {
    const std::lock_guard<std::mutex> guard(runtime.lock);
    Note("shutdown", runtime.starter == std::this_thread::get_id() ? "on the thread of the start"
                                                                   : "elsewhere");
  }
  // The engine itself faults here; the audit names these browsers.
  NoteLivingViews();
  StopThreads();
  DropFactories();
  DropCookies();
  {
    const std::lock_guard<std::mutex> guard(runtime.lock);
    app.swap(runtime.app);
    handler.swap(runtime.handler);
    std::swap(command_line, runtime.command_line);
  }
  app.reset();
  handler.reset();
  command_line = nullptr;
  ReportLiving("after the shutdown");
}

}  // namespace

CefRefPtr<CefApp> TheApp() {
  const std::lock_guard<std::mutex> guard(TheRuntime().lock);
  return TheRuntime().app ? TheRuntime().app->get() : nullptr;
}

CefRefPtr<CefBrowserProcessHandler> TheBrowserProcessHandler() {
  const std::lock_guard<std::mutex> guard(TheRuntime().lock);
  return TheRuntime().handler ? TheRuntime().handler->get() : nullptr;
}

CefRefPtr<CefCommandLine> GlobalCommandLine() {
  const std::lock_guard<std::mutex> guard(TheRuntime().lock);
  return TheRuntime().command_line;
}

void AnnounceProcess(const std::string& type) {
  const CefRefPtr<CefBrowserProcessHandler> handler = TheBrowserProcessHandler();
  if (!handler) {
    return;
  }
  const CefRefPtr<CefCommandLine> line = MakeCommandLine({"helper", "--type=" + type});
  handler->OnBeforeChildProcessLaunch(line);
  Note("child_process", line->GetCommandLineString().ToString());
}

void RegisterSchemes(const CefRefPtr<CefApp>& app) {
  Registrar registrar;
  app->OnRegisterCustomSchemes(&registrar);
}

}  // namespace standin

extern "C" {

int cef_initialize(const cef_main_args_t* args, const cef_settings_t* settings,
                   cef_app_t* application, void* windows_sandbox_info) {
  const CefRefPtr<CefApp> app = engine_glue::FromC(application);
  const bool is_started = !standin::TakeFault("initialize") && standin::Start(*settings, app);
  standin::Note("initialize", is_started ? "1" : "0");
  return is_started ? 1 : 0;
}

void cef_shutdown() {
  standin::Stop();
}

int cef_execute_process(const cef_main_args_t* args, cef_app_t* application,
                        void* windows_sandbox_info) {
  const CefRefPtr<CefApp> app = engine_glue::FromC(application);
#if defined(_WIN32)
  // The engine reads the process's own line there.
  const std::vector<std::string> argv(__argv, __argv + __argc);
#else
  const std::vector<std::string> argv(args->argv, args->argv + args->argc);
#endif
  const CefRefPtr<CefCommandLine> line = standin::MakeCommandLine(argv);
  const std::string type = line->GetSwitchValue("type").ToString();
  if (type.empty()) {
    return -1;
  }
  standin::Note("sub_process", type);
  if (app) {
    app->OnBeforeCommandLineProcessing(type, line);
    standin::RegisterSchemes(app);
    if (type == "renderer") {
      standin::ServeRenderer(app);
    }
  }
  return 0;
}

}  // extern "C"
