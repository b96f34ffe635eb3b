// The reference host: one window, one view, all services that the module asks of a host. Read
// minimal_c/main.c first: it shows the same road without the services.

#include <chrono>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "Display.h"
#include "Json.h"
#include "MainThread.h"
#include "ModuleLoader.h"
#include "Options.h"
#include "Png.h"
#include "Profile.h"
#include "Road.h"
#include "Session.h"
#include "System.h"
#include "Tools.h"
#include "View.h"
#include "ViewEvents.h"
#include "Window.h"

namespace host {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

// The exit status; told in --help.
enum Status {
  kWorked = 0,
  kInternalError = 1,
  kUsage = 2,
  kModuleNotFound = 3,
  kSymbolMissing = 4,
  kFactoryRefused = 5,
  kEngineNotStarted = 6,
  kNotLoaded = 7,
  kNoString = 8,
  kNotAcknowledged = 9,
  kNoDisplay = 10,
  kNoScreenshot = 11,
  kNotClosed = 12,
};

constexpr seconds kCreationLimit{20};
constexpr seconds kRoadLimit{30};
constexpr seconds kCloseLimit{10};
constexpr seconds kPictureLimit{5};
constexpr milliseconds kPictureInterval{150};

MainThread::Clock::time_point After(MainThread::Clock::duration time) {
  return MainThread::Clock::now() + time;
}

Status StatusOf(ModuleLoader::Result result) {
  switch (result) {
    case ModuleLoader::Result::kLoaded:
      return kWorked;
    case ModuleLoader::Result::kModuleNotFound:
      return kModuleNotFound;
    case ModuleLoader::Result::kSymbolMissing:
      return kSymbolMissing;
    case ModuleLoader::Result::kRefused:
      return kFactoryRefused;
  }
  return kInternalError;
}

Status StatusOf(const Road& road) {
  if (!road.Loaded()) {
    return kNotLoaded;
  }
  if (!road.Received()) {
    return kNoString;
  }
  return road.Acknowledged() ? kWorked : kNotAcknowledged;
}

Tools::Configuration ToolsConfiguration(const Options& options, const Profile& profile) {
  Tools::Configuration configuration;
  configuration.profile = profile.Path();
  configuration.catalogues = ExecutableDirectory() + "/catalogs";
  configuration.locale = UserLocale();
  configuration.release_level = options.release_level;
  configuration.record_mode = options.record_mode;
  if (!options.module_map.empty()) {
    configuration.module_map = ReadFile(options.module_map);
  }
  if (!options.remap.empty()) {
    configuration.remap = ReadTextMap(options.remap);
  }
  return configuration;
}

// Splits "PLACE/KEY", which the options have checked.
std::pair<std::string, std::string> SplitName(const std::string& name) {
  const std::size_t slash = name.find('/');
  return {name.substr(0, slash), name.substr(slash + 1)};
}

void KeepSettings(const Options& options, Settings& settings) {
  for (const auto& [name, value] : options.settings) {
    const auto [file, key] = SplitName(name);
    settings.Write(Settings::kSettings, file, key, std::to_string(value));
  }
  for (const auto& [name, value] : options.sys_settings) {
    const auto [section, key] = SplitName(name);
    settings.Write(Settings::kSysSettings, section, key, value);
  }
}

void SetEnvironment(const Options& options, const Profile& profile, const std::string& root,
                    Tools& tools) {
  tools.SetVariable("ORBInstallPath", root, !options.root.empty());
  if (!options.log.empty()) {
    tools.SetVariable("ORBCEF_LOG", options.log, false);
  }
  tools.SetVariable("ORBCEF_LOG_PATH", profile.Path(), false);
  tools.SetVariable("ORBCEF_CACHE_PATH", profile.Path() + "/WebCache", false);
  if (options.record_mode != ORBCEF_RECORDMODE_NONE) {
    tools.SetVariable("ORBCEF_RECORD", "1", false);
  }
}

// One run from the open window to the closed one.
class Run {
 public:
  Run(const Options& options, MainThread& main_thread, Tools& tools, orbcefglobal_c* global)
      : _options(options), _main_thread(main_thread), _tools(tools), _global(global) {}

  Status Execute() {
    if (!OpenWindow()) {
      std::fprintf(stderr, "[host] cannot open the display\n");
      return kNoDisplay;
    }
    const auto road = std::make_shared<Road>(RoadConfiguration());
    OpenView(road);
    Status status = kEngineNotStarted;
    if (Until([&] { return road->Created(); }, After(kCreationLimit)) && road->Created()) {
      // The engine gave each signal its default action when it started.
      _main_thread.CatchSignals();
      status = Travel(*road);
    } else {
      std::fprintf(stderr, "[host] no view was created; --log info tells more\n");
    }
    return Close() || status != kWorked ? status : kNotClosed;
  }

 private:
  bool OpenWindow() {
    Window::Listener listener;
    listener.on_resized = [this](int width, int height) {
      if (_view) {
        _view->SetBounds({0, 0, width, height});
      }
    };
    listener.on_close_requested = [this] { _quit = true; };
    listener.on_view_gone = [this](std::uintptr_t view) {
      _view_gone = _view_gone || view == _view_window;
    };
    listener.on_focused = [this] {
      if (_view) {
        _window.Focus(_view->Window());
      }
    };
    if (!_window.Open("orbcef_host", _options.width, _options.height, std::move(listener))) {
      return false;
    }
    _main_thread.Watch(_window.Descriptor(), [this] { _window.Pump(); });
    return true;
  }

  Road::Configuration RoadConfiguration() {
    Road::Configuration configuration;
    configuration.say = _options.say;
    configuration.answer = _tools.Message("Welcome.Answer");
    configuration.user = _options.user;
    configuration.password = _options.password;
    configuration.run_script = [this](const std::string& code) {
      if (_view) {
        _view->ExecuteJavaScript(code);
      }
    };
    configuration.set_title = [this](const std::string& title) { _window.SetTitle(title); };
    return configuration;
  }

  void OpenView(const std::shared_ptr<Road>& road) {
    Session::Pointer session;
    if (!_options.turnstile.empty()) {
      session = Session::Make(_options.turnstile, _options.ticket);
    }
    _view = std::make_unique<View>(_global, ViewEvents::Make(_main_thread, road),
                                   std::move(session), _options.url);
    if (_view->IsValid()) {
      _view->Create(_window.Handle(), {0, 0, _options.width, _options.height}, _options.url);
    }
  }

  bool Until(const std::function<bool()>& done, MainThread::Clock::time_point deadline) {
    return _main_thread.RunUntil([&] { return _quit || _main_thread.Interrupted() || done(); },
                                 deadline);
  }

  // Lets the view live as long as the options want it.
  Status Travel(const Road& road) {
    if (_options.seconds) {
      const auto time = std::chrono::duration<double>(*_options.seconds);
      Until([] { return false; },
            After(std::chrono::duration_cast<MainThread::Clock::duration>(time)));
    } else if (!_options.screenshot.empty()) {
      Until([&] { return road.Done(); }, After(kRoadLimit));
    } else {
      while (!Until([] { return false; }, After(std::chrono::hours(1)))) {
      }
    }
    std::printf("[host] ends at %s\n", _view->CurrentUrl().c_str());
    const Status status = StatusOf(road);
    if (!_options.screenshot.empty() && !TakeScreenshot() && status == kWorked) {
      return kNoScreenshot;
    }
    return status;
  }

  // Waits until the window has stood still for a moment: the page paints in another process.
  bool TakeScreenshot() {
    Picture picture = _window.Capture();
    const auto limit = After(kPictureLimit);
    while (MainThread::Clock::now() < limit) {
      _main_thread.RunUntil([] { return false; }, After(kPictureInterval));
      Picture next = _window.Capture();
      const bool still = next == picture;
      picture = std::move(next);
      if (still) {
        break;
      }
    }
    if (picture.empty() || !WritePng(picture, _options.screenshot)) {
      std::fprintf(stderr, "[host] cannot write %s\n", _options.screenshot.c_str());
      return false;
    }
    std::printf("[host] wrote %s (%d x %d)\n", _options.screenshot.c_str(), picture.width,
                picture.height);
    return true;
  }

  // Closes the view and waits until the engine has destroyed its window: the window around it must
  // not go first.
  bool Close() {
    void* const window = _view->Window();
    _view_window = reinterpret_cast<std::uintptr_t>(window);
    if (window) {
      _window.ExpectEnd(window);
    }
    _view->Close();
    if (_view_window == 0) {
      return true;
    }
    const bool gone = _main_thread.RunUntil([this] { return _view_gone; }, After(kCloseLimit));
    std::printf("[host] view %s\n", gone ? "closed" : "did not close in time");
    return gone;
  }

  const Options& _options;
  MainThread& _main_thread;
  Tools& _tools;
  orbcefglobal_c* const _global;
  Window _window;
  std::unique_ptr<View> _view;
  std::uintptr_t _view_window = 0;
  bool _quit = false;
  bool _view_gone = false;
};

Status Execute(const Options& options) {
  const Profile profile(options.profile);
  if (profile.Path().empty()) {
    std::fprintf(stderr, "[host] cannot make the profile %s\n", options.profile.c_str());
    return kInternalError;
  }
  MainThread main_thread;
  Tools tools(main_thread, ToolsConfiguration(options, profile));
  if (!tools.settings().Error().empty()) {
    std::fprintf(stderr, "[host] settings: %s\n", tools.settings().Error().c_str());
  }
  KeepSettings(options, tools.settings());
  const std::string root = FindRoot(options.root);
  SetEnvironment(options, profile, root, tools);

  ModuleLoader module;
  const ModuleLoader::Result loaded = module.Load(root);
  if (loaded != ModuleLoader::Result::kLoaded) {
    std::fprintf(stderr, "[host] %s: %s\n", module.Path().c_str(), module.Error().c_str());
    return StatusOf(loaded);
  }
  std::printf("[host] loaded %s, profile %s\n", module.Path().c_str(), profile.Path().c_str());

  Display display;
  if (!display.Provide(options.width, options.height, tools)) {
    return kNoDisplay;
  }

  main_thread.CatchSignals();
  orbcefglobal_c* global = module.Global();
  global->set_tools(global, tools.Table());
  Status status = kInternalError;
  {
    Run run(options, main_thread, tools, global);
    status = run.Execute();
    // Jobs that the module posted hold engine objects, so they run before the engine stops.
    main_thread.Close();
    main_thread.RunUntil([] { return true; }, MainThread::Clock::now());
  }
  global->shutdown_engine(global);
  return status;
}

}  // namespace
}  // namespace host

int main(int argc, char** argv) {
  // Lines must stand in order with those that the module and the engine write. Not every system has
  // a buffer of lines, so there is none.
  std::setvbuf(stdout, nullptr, _IONBF, 0);
  std::string error;
  const auto options = host::ParseOptions(host::Arguments(argc, argv), error);
  if (!options) {
    std::fprintf(stderr, "orbcef_host: %s; try --help\n", error.c_str());
    return host::kUsage;
  }
  if (options->help) {
    std::fputs(host::HelpText(), stdout);
    return host::kWorked;
  }
  try {
    const host::Status status = host::Execute(*options);
    std::printf("[host] exit status %d\n", status);
    return status;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "[host] %s\n", failure.what());
    return host::kInternalError;
  }
}
