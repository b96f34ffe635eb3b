#include "Tools.h"

#include <charconv>
#include <filesystem>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "Json.h"
#include "Languages.h"
#include "Records.h"
#include "System.h"

namespace host {
namespace {

Tools* g_tools = nullptr;

std::string TextOrEmpty(const char* text) {
  return text ? std::string(text) : std::string();
}

orbcefstring_c* RecordOrNull(const std::optional<std::string>& text) {
  return text ? NewRecord(*text) : nullptr;
}

std::optional<int> ToInt(const std::string& text) {
  int value = 0;
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, value);
  if (result.ec != std::errc() || result.ptr != end) {
    return std::nullopt;
  }
  return value;
}

}  // namespace

struct Tools::Slots {
  static uint8_t OnMainThread() { return g_tools->_main_thread.IsCurrent() ? 1 : 0; }

  static const char* GetEnv(const char* name) {
    // The copy keeps the text valid while another thread changes the environment.
    thread_local std::string value;
    const std::lock_guard<std::mutex> guard(g_tools->_environment_mutex);
    const std::optional<std::string> found = ReadVariable(TextOrEmpty(name));
    if (!found) {
      return nullptr;
    }
    value = *found;
    return value.c_str();
  }

  static int32_t PutEnv(const char* assignment) {
    const std::string text = TextOrEmpty(assignment);
    const std::size_t equals = text.find('=');
    if (equals == 0 || equals == std::string::npos) {
      return -1;
    }
    const std::lock_guard<std::mutex> guard(g_tools->_environment_mutex);
    return WriteVariable(text.substr(0, equals), text.substr(equals + 1)) ? 0 : -1;
  }

  static const char* ComputeLang() { return LanguageName(g_tools->_locale); }

  static int32_t GetReleaseLevel() { return g_tools->_configuration.release_level; }

  static orbcefstring_c* BuildCatalogMessage(const char* catalog, const char* key) {
    return RecordOrNull(g_tools->_catalogue.Find(TextOrEmpty(catalog),
                                                 LanguageName(g_tools->_locale), TextOrEmpty(key)));
  }

  static orbcefstring_c* GetTempDirectory() {
    std::error_code error;
    const std::filesystem::path directory = std::filesystem::temp_directory_path(error);
    return NewRecord(error ? "." : ToText(directory));
  }

  static uint8_t CreateDirectory(orbcefstring_c* path) {
    std::error_code error;
    const std::filesystem::path directory = ToPath(TextOf(path));
    std::filesystem::create_directories(directory, error);
    return std::filesystem::is_directory(directory, error) ? 1 : 0;
  }

  static uint8_t IsRecordCapture() { return GetRecordMode() == ORBCEF_RECORDMODE_CAPTURE ? 1 : 0; }

  static uint8_t IsRecordReplay() { return GetRecordMode() == ORBCEF_RECORDMODE_REPLAY ? 1 : 0; }

  static orbceftypes_recordmode GetRecordMode() { return g_tools->_configuration.record_mode; }

  static uint8_t GetJsonValue(orbcefstring_c* json, orbcefstring_c** keys, orbcefstring_c** values,
                              int32_t count) {
    std::vector<std::string> names;
    for (int32_t i = 0; i < count; ++i) {
      names.push_back(TextOf(keys[i]));
    }
    const auto members = ReadMembers(TextOf(json), names);
    if (!members) {
      return 0;
    }
    for (int32_t i = 0; i < count; ++i) {
      const auto member = members->find(names[static_cast<std::size_t>(i)]);
      if (member != members->end()) {
        values[i] = NewRecord(member->second);
      }
    }
    return 1;
  }

  static orbcefstring_c* GetJsonModuleMap() {
    return NewRecord(g_tools->_configuration.module_map);
  }

  static orbcefstring_c* RemapUrl(orbcefstring_c* url) {
    const auto& remap = g_tools->_configuration.remap;
    const auto found = remap.find(TextOf(url));
    return found == remap.end() ? nullptr : NewRecord(found->second);
  }

  static orbcefstring_c* SaveInPreference(const char* store, const char* key,
                                          orbcefstring_c* value) {
    const std::string error = g_tools->_settings.Write(Settings::kPreferences, TextOrEmpty(store),
                                                       TextOrEmpty(key), TextOf(value));
    return NewRecord(error.empty() ? error : "new Error(" + ScriptLiteral(error) + ")");
  }

  static orbcefstring_c* ReadFromPreferences(const char* store, const char* key) {
    return RecordOrNull(
        g_tools->_settings.Read(Settings::kPreferences, TextOrEmpty(store), TextOrEmpty(key)));
  }

  static orbcefstring_c* ReadFromSysSettings(const char* section, const char* key) {
    return RecordOrNull(
        g_tools->_settings.Read(Settings::kSysSettings, TextOrEmpty(section), TextOrEmpty(key)));
  }

  static uint8_t ReadFromSettings(const char* file, const char* key, int32_t* value) {
    const std::string file_text = TextOrEmpty(file);
    const std::string key_text = TextOrEmpty(key);
    std::optional<int> number;
    if (const auto kept = g_tools->_settings.Read(Settings::kSettings, file_text, key_text)) {
      number = ToInt(*kept);
    } else if (file_text == "FrameGeneral" && key_text == "UserInterfaceLanguage") {
      number = LanguageId(g_tools->_locale);
    }
    if (!number) {
      return 0;
    }
    *value = *number;
    return 1;
  }

  static uint8_t PostTaskOnMainThread(void (*task)(void*), void* data) {
    return g_tools->_main_thread.Post([task, data] { task(data); }) ? 1 : 0;
  }

  static uint8_t ShouldDispatchEventsOnMainThread() { return 1; }
};

_orbceftools_c Tools::MakeTable() {
  _orbceftools_c table = {};
  table.on_main_thread = &Slots::OnMainThread;
  table.get_env = &Slots::GetEnv;
  table.put_env = &Slots::PutEnv;
  table.compute_lang = &Slots::ComputeLang;
  table.get_release_level = &Slots::GetReleaseLevel;
  table.build_catalog_message = &Slots::BuildCatalogMessage;
  table.get_temp_directory = &Slots::GetTempDirectory;
  table.create_directory = &Slots::CreateDirectory;
  table.is_record_capture = &Slots::IsRecordCapture;
  table.is_record_replay = &Slots::IsRecordReplay;
  table.get_record_mode = &Slots::GetRecordMode;
  table.get_json_value = &Slots::GetJsonValue;
  table.get_json_module_map = &Slots::GetJsonModuleMap;
  table.remap_url = &Slots::RemapUrl;
  table.save_in_preference = &Slots::SaveInPreference;
  table.read_from_preferences = &Slots::ReadFromPreferences;
  table.read_from_sys_settings = &Slots::ReadFromSysSettings;
  table.read_from_settings = &Slots::ReadFromSettings;
  table.post_task_on_main_thread = &Slots::PostTaskOnMainThread;
  table.should_dispatch_events_on_main_thread = &Slots::ShouldDispatchEventsOnMainThread;
  return table;
}

Tools::Tools(MainThread& main_thread, Configuration configuration)
    : _main_thread(main_thread),
      _configuration(std::move(configuration)),
      _locale(_configuration.locale),
      _settings(_configuration.profile + "/settings.sqlite"),
      _catalogue(_configuration.catalogues),
      _table(MakeTable()) {
  g_tools = this;
}

Tools::~Tools() {
  g_tools = nullptr;
}

void Tools::SetVariable(const std::string& name, const std::string& value, bool replace) {
  if (replace || !Slots::GetEnv(name.c_str())) {
    Slots::PutEnv((name + "=" + value).c_str());
  }
}

std::string Tools::Message(const std::string& key) {
  return _catalogue.Find("ORBCefHost", LanguageName(_locale), key).value_or(key);
}

}  // namespace host
