#include "FakeTools.h"

#include <atomic>
#include <cstring>

#include "ORBCefToolsAccessor.h"

namespace {

FakeTools* g_tools = nullptr;
std::atomic<int> g_live_records{0};

void FreeRecord(orbcefstring_c* record) {
  delete[] record->data;
  delete record;
  --g_live_records;
}

std::string TextOf(const orbcefstring_c* record) {
  return record->data ? std::string(record->data, record->length) : std::string();
}

orbcefstring_c* RecordOrNull(const std::optional<std::string>& text) {
  return text ? FakeTools::NewRecord(*text) : nullptr;
}

template <class Map, class Key>
orbcefstring_c* Lookup(const Map& map, const Key& key) {
  const auto found = map.find(key);
  return found != map.end() ? FakeTools::NewRecord(found->second) : nullptr;
}

}  // namespace

struct FakeTools::Slots {
  static uint8_t OnMainThread() { return g_tools->on_main_thread; }
  static const char* GetEnv(const char* name) { return g_tools->Get(name); }
  static int32_t PutEnv(const char* assignment) {
    const std::string text = assignment;
    g_tools->Record("put_env " + text);
    if (g_tools->put_env_result == 0) {
      const std::string::size_type equals = text.find('=');
      g_tools->Set(text.substr(0, equals), text.substr(equals + 1));
    }
    if (g_tools->on_put_env)
      g_tools->on_put_env(text);
    return g_tools->put_env_result;
  }
  static const char* ComputeLang() {
    return g_tools->language ? g_tools->language->c_str() : nullptr;
  }
  static int32_t GetReleaseLevel() { return g_tools->release_level; }
  static orbcefstring_c* BuildCatalogMessage(const char* catalog, const char* key) {
    return Lookup(g_tools->messages, std::make_pair(std::string(catalog), std::string(key)));
  }
  static orbcefstring_c* GetTempDirectory() { return RecordOrNull(g_tools->temp_directory); }
  static uint8_t CreateDirectory(orbcefstring_c* path) {
    g_tools->Record("create_directory " + TextOf(path));
    return g_tools->create_directory_result;
  }
  static uint8_t IsRecordCapture() { return g_tools->record_mode == ORBCEF_RECORDMODE_CAPTURE; }
  static uint8_t IsRecordReplay() { return g_tools->record_mode == ORBCEF_RECORDMODE_REPLAY; }
  static orbceftypes_recordmode GetRecordMode() { return g_tools->record_mode; }
  static uint8_t GetJsonValue(orbcefstring_c* json, orbcefstring_c** keys, orbcefstring_c** values,
                              int32_t count) {
    std::string call = "get_json_value " + TextOf(json);
    for (int32_t i = 0; i < count; ++i) {
      const std::string key = TextOf(keys[i]);
      call += " " + key + (values[i] ? "!" : "");
      values[i] = Lookup(g_tools->json_members, key);
    }
    g_tools->Record(call);
    return g_tools->json_result;
  }
  static orbcefstring_c* GetJsonModuleMap() { return RecordOrNull(g_tools->module_map); }
  static orbcefstring_c* RemapUrl(orbcefstring_c* url) {
    g_tools->Record("remap_url " + TextOf(url));
    return Lookup(g_tools->url_mappings, TextOf(url));
  }
  static orbcefstring_c* SaveInPreference(const char* store, const char* key,
                                          orbcefstring_c* value) {
    g_tools->Record(std::string("save_in_preference ") + store + " " + key + " " + TextOf(value));
    return RecordOrNull(g_tools->save_result);
  }
  static orbcefstring_c* ReadFromPreferences(const char* store, const char* key) {
    return Lookup(g_tools->preferences, std::make_pair(std::string(store), std::string(key)));
  }
  static orbcefstring_c* ReadFromSysSettings(const char* section, const char* key) {
    return Lookup(g_tools->sys_settings, std::make_pair(std::string(section), std::string(key)));
  }
  static uint8_t ReadFromSettings(const char* file, const char* key, int32_t* value) {
    const auto found = g_tools->settings.find({file, key});
    if (found == g_tools->settings.end())
      return 0;
    *value = found->second;
    return 1;
  }
  // Runs the task at once: a test has no loop.
  static uint8_t PostTaskOnMainThread(void (*task)(void*), void* data) {
    g_tools->Record("post_task_on_main_thread");
    if (g_tools->post_task_result)
      task(data);
    return g_tools->post_task_result;
  }
  static uint8_t ShouldDispatchEventsOnMainThread() { return g_tools->dispatch_on_main_thread; }
};

FakeTools::FakeTools() {
  g_tools = this;
  Set("ORBCEF_NO_TID_CHECK", "1");
  _orbceftools_c table = Table();
  ORBCefPlugin_Tools::SetORBCefTools(&table);
}

FakeTools::~FakeTools() {
  ORBCefPlugin_Tools::SetORBCefTools(nullptr);
  g_tools = nullptr;
}

_orbceftools_c FakeTools::Table() {
  return {&Slots::OnMainThread,
          &Slots::GetEnv,
          &Slots::PutEnv,
          &Slots::ComputeLang,
          &Slots::GetReleaseLevel,
          &Slots::BuildCatalogMessage,
          &Slots::GetTempDirectory,
          &Slots::CreateDirectory,
          &Slots::IsRecordCapture,
          &Slots::IsRecordReplay,
          &Slots::GetRecordMode,
          &Slots::GetJsonValue,
          &Slots::GetJsonModuleMap,
          &Slots::RemapUrl,
          &Slots::SaveInPreference,
          &Slots::ReadFromPreferences,
          &Slots::ReadFromSysSettings,
          &Slots::ReadFromSettings,
          &Slots::PostTaskOnMainThread,
          &Slots::ShouldDispatchEventsOnMainThread};
}

void FakeTools::Set(const std::string& variable, const std::string& value) {
  std::lock_guard<std::mutex> guard(_mutex);
  _environment[variable] = value;
}

void FakeTools::Unset(const std::string& variable) {
  std::lock_guard<std::mutex> guard(_mutex);
  _environment.erase(variable);
}

const char* FakeTools::Get(const std::string& variable) const {
  std::lock_guard<std::mutex> guard(_mutex);
  const auto found = _environment.find(variable);
  return found != _environment.end() ? found->second.c_str() : nullptr;
}

std::vector<std::string> FakeTools::Calls() const {
  std::lock_guard<std::mutex> guard(_mutex);
  return _calls;
}

int FakeTools::LiveRecords() {
  return g_live_records;
}

orbcefstring_c* FakeTools::NewRecord(const std::string& text) {
  ++g_live_records;
  auto* record = new orbcefstring_c{nullptr, text.size(), &FreeRecord};
  if (!text.empty()) {
    record->data = new char[text.size()];
    std::memcpy(record->data, text.data(), text.size());
  }
  return record;
}

void FakeTools::Record(std::string call) {
  std::lock_guard<std::mutex> guard(_mutex);
  _calls.push_back(std::move(call));
}
