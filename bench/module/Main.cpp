// The same work through the module: a small host that knows its C tables only.
#include <dlfcn.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "Session.h"
#include "orbcefglobal.h"

namespace {

bench::Options g_options;

// --- the host's tools: the environment is real, everything else is absent ---

void FreeString(orbcefstring_c* text) {
  std::free(text->data);
  std::free(text);
}

orbcefstring_c* MakeString(const std::string& from) {
  auto* const text = static_cast<orbcefstring_c*>(std::calloc(1, sizeof(orbcefstring_c)));
  text->length = from.size();
  text->data = from.empty() ? nullptr : static_cast<char*>(std::malloc(from.size()));
  if (text->data) {
    std::memcpy(text->data, from.data(), from.size());
  }
  text->free = &FreeString;
  return text;
}

_orbceftools_c Tools() {
  _orbceftools_c tools{};
  tools.on_main_thread = []() -> uint8_t { return 1; };
  tools.get_env = [](const char* name) -> const char* { return std::getenv(name); };
  tools.put_env = [](const char* assignment) -> int32_t { return putenv(strdup(assignment)); };
  tools.compute_lang = []() -> const char* { return "English"; };
  tools.get_release_level = []() -> int32_t { return 0; };
  tools.build_catalog_message = [](const char*, const char*) -> orbcefstring_c* { return nullptr; };
  tools.get_temp_directory = []() { return MakeString(g_options.profile); };
  tools.create_directory = [](orbcefstring_c* path) -> uint8_t {
    return mkdir(std::string(path->data, path->length).c_str(), 0700) == 0;
  };
  tools.is_record_capture = []() -> uint8_t { return 0; };
  tools.is_record_replay = []() -> uint8_t { return 0; };
  tools.get_record_mode = []() { return ORBCEF_RECORDMODE_NONE; };
  tools.get_json_value = [](orbcefstring_c*, orbcefstring_c**, orbcefstring_c**,
                            int32_t) -> uint8_t { return 0; };
  tools.get_json_module_map = []() -> orbcefstring_c* { return nullptr; };
  tools.remap_url = [](orbcefstring_c*) -> orbcefstring_c* { return nullptr; };
  tools.save_in_preference = [](const char*, const char*, orbcefstring_c*) -> orbcefstring_c* {
    return nullptr;
  };
  tools.read_from_preferences = [](const char*, const char*) -> orbcefstring_c* { return nullptr; };
  tools.read_from_sys_settings = [](const char*, const char*) -> orbcefstring_c* {
    return nullptr;
  };
  tools.read_from_settings = [](const char*, const char*, int32_t*) -> uint8_t { return 0; };
  tools.post_task_on_main_thread = [](void (*)(void*), void*) -> uint8_t { return 0; };
  tools.should_dispatch_events_on_main_thread = []() -> uint8_t { return 0; };
  return tools;
}

// --- the view's events ---

orbcefbrowserevents_c Events(bench::Session& session) {
  orbcefbrowserevents_c events{};
  events.instance = &session;
  events.add_ref = [](orbcefbrowserevents_c*) {};
  events.release = [](orbcefbrowserevents_c*) {};
  events.on_state_changed = [](orbcefbrowserevents_c*, int32_t) {};
  events.on_v8_context = [](orbcefbrowserevents_c*, uint8_t) {};
  events.on_strings_received = [](orbcefbrowserevents_c* self, const orbcefstring_c* const* strings,
                                  int32_t count) {
    bench::Session::OnStrings(self->instance, strings, count);
  };
  events.on_title_changed = [](orbcefbrowserevents_c*, const orbcefstring_c*) {};
  events.on_address_changed = [](orbcefbrowserevents_c*, const orbcefstring_c*) {};
  events.on_download_updated = [](orbcefbrowserevents_c*, uint32_t, int64_t, int64_t, int64_t,
                                  uint8_t) {};
  events.on_loading_state_changed = [](orbcefbrowserevents_c* self, uint8_t is_loading,
                                       const orbcefstring_c*) {
    if (!is_loading) {
      static_cast<bench::Session*>(self->instance)->OnLoadEnd();
    }
  };
  events.on_document_size = [](orbcefbrowserevents_c*, int32_t, int32_t) {};
  events.on_console_message = [](orbcefbrowserevents_c*, const orbcefstring_c*,
                                 const orbcefstring_c*, int32_t) {};
  events.on_zoom_changed = [](orbcefbrowserevents_c*, double) {};
  events.on_record_data = [](orbcefbrowserevents_c*, const orbcefstring_c*) {};
  events.on_auth_credentials = [](orbcefbrowserevents_c*, const orbcefstring_c*, uint8_t,
                                  const orbcefstring_c*, int32_t, orbcefauthcallback_c*) {};
  return events;
}

orbcefglobal_c* LoadModule(const std::string& roots) {
  const std::string path = roots.substr(0, roots.find(';')) + "/code/bin/libORBCefWrapperMT.so";
  void* const library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!library) {
    std::fprintf(stderr, "%s\n", dlerror());
    return nullptr;
  }
  const auto factory =
      reinterpret_cast<orbcef_pluginfactory_fn>(dlsym(library, ORBCEF_FACTORY_SYMBOL));
  return factory ? static_cast<orbcefglobal_c*>(factory(1, 0, ORBCEF_GLOBAL_TABLE)) : nullptr;
}

class View : public bench::View {
 public:
  explicit View(orbcefbrowser_c* table) : _table(table) {}

  void Execute(const std::string& code) override {
    // The module reads the record during the call only.
    const orbcefstring_c record = {const_cast<char*>(code.data()), code.size(), nullptr};
    _table->execute_javascript(_table, &record, nullptr, 0);
  }

 private:
  orbcefbrowser_c* const _table;
};

bool Run(bench::Session& session, orbcefbrowser_c* table, const orbcefstring_c* url) {
  const unsigned long window = bench::OpenWindow();
  const int32_t rectangle[4] = {0, 0, 800, 600};
  if (!window) {
    return false;
  }
  table->create(table, reinterpret_cast<void*>(window), rectangle, url);
  View view(table);
  return session.Travel(view);
}

}  // namespace

int main(int argc, char** argv) {
  g_options = bench::ParseOptions(argc, argv);
  setenv("ORBInstallPath", g_options.roots.c_str(), 1);
  setenv("ORBTemp", g_options.profile.c_str(), 1);
  orbcefglobal_c* const module = LoadModule(g_options.roots);
  if (!module) {
    std::printf("FAILED the module could not be loaded\n");
    return 1;
  }
  bench::Session session(g_options);
  _orbceftools_c tools = Tools();
  module->set_tools(module, &tools);
  orbcefbrowserevents_c events = Events(session);
  orbcefstring_c* const url = MakeString(bench::kPageUrl);
  orbcefbrowser_c* const table = module->create_browser(module, &events, nullptr, url);
  const bool done = Run(session, table, url);
  url->free(url);
  table->close(table, 1);
  table->release(table);
  module->shutdown_engine(module);
  return session.Report() && done ? 0 : 1;
}
