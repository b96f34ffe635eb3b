#include "ORBCefToolsAccessor.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "ORBCefAssert.h"
#include "ORBCefConversionToolsWrapperMT.h"
#include "ORBCefLog.h"
#include "platform/Files.h"

namespace {

// A plain pointer on purpose: a static object with a destructor would take the table away from the
// engine's threads while the process ends.
_orbceftools_c* g_tools = nullptr;

// The host's table. Without one there is no neutral answer, and not even the test-rig mode can be
// asked for: the call is reported and faults.
const _orbceftools_c& Tools() {
  if (!g_tools) {
    const ORBCefCheckSite& site = ORBCefCheckSites::kTools;
    ORBCefReportCheck(site.expression, site.path, site.line);
    ORBCefDie();
  }
  return *g_tools;
}

// Takes a record that the host hands over.
std::string TakeText(orbcefstring_c* record) {
  return ORBCefCStringHolder(record).Text();
}

constexpr char kNoModuleMap[] =
    "[WebRecord] Function WRModulesServicesModulesMapInit could not be loaded from "
    "XOWebRecorderSharedServices or an empty string has been returned";
constexpr char kModuleMap[] = "[WebRecord] Fetched WebRecord module map:\n";
constexpr char kNoMapping[] =
    "[WebRecord] Function WRModulesServicesRemap could not be loaded from "
    "XOWebRecorderSharedServices or an empty string has been returned";
constexpr char kInvalidMapping[] =
    "[WebRecord] WRModulesServicesRemap returned an invalid path for \"";
constexpr char kMapping[] = "[WebRecord] Mapping found for \"";
constexpr char kMapsTo[] = "\": ";

}  // namespace

namespace ORBCefPlugin_Tools {

void SetORBCefTools(_orbceftools_c* tools) {
  std::unique_ptr<_orbceftools_c> earlier(g_tools);
  g_tools = tools ? std::make_unique<_orbceftools_c>(*tools).release() : nullptr;
}

}  // namespace ORBCefPlugin_Tools

bool ORBCefToolsAccessor::OnMainThread() {
  return Tools().on_main_thread() != 0;
}

const char* ORBCefToolsAccessor::ORBGetEnv(const char* name) {
  return Tools().get_env(name);
}

int ORBCefToolsAccessor::ORBPutEnv(const char* assignment) {
  return Tools().put_env(assignment);
}

const char* ORBCefToolsAccessor::ComputeLang() {
  return Tools().compute_lang();
}

int ORBCefToolsAccessor::GetOrbisReleaseLevelInfo() {
  return Tools().get_release_level();
}

std::string ORBCefToolsAccessor::BuildCatalogMessage(const char* catalog, const char* key) {
  return TakeText(Tools().build_catalog_message(catalog, key));
}

std::string ORBCefToolsAccessor::ORBGetTempDirectory() {
  return TakeText(Tools().get_temp_directory());
}

bool ORBCefToolsAccessor::ORBCreateDirectory(const std::string& path) {
  const _orbceftools_c& tools = Tools();
  const ORBCefCStringHolder record(path);
  return tools.create_directory(record.Get()) != 0;
}

bool ORBCefToolsAccessor::IsRecordCapture() {
  return Tools().is_record_capture() != 0;
}

bool ORBCefToolsAccessor::IsRecordReplay() {
  return Tools().is_record_replay() != 0;
}

orbceftypes_recordmode ORBCefToolsAccessor::GetRecordMode() {
  return Tools().get_record_mode();
}

bool ORBCefToolsAccessor::GetJsonValue(const std::string& json,
                                       std::map<std::string, std::string>& values) {
  const _orbceftools_c& tools = Tools();
  if (values.empty())
    return false;

  const ORBCefCStringHolder json_record(json);
  std::vector<ORBCefCStringHolder> key_holders;
  std::vector<orbcefstring_c*> keys;
  key_holders.reserve(values.size());
  keys.reserve(values.size());
  for (const auto& entry : values) {
    key_holders.emplace_back(entry.first);
    keys.push_back(key_holders.back().Get());
  }
  std::vector<orbcefstring_c*> found(values.size(), nullptr);

  const bool result = tools.get_json_value(json_record.Get(), keys.data(), found.data(),
                                           static_cast<std::int32_t>(found.size())) != 0;

  // What the host has found counts even if it answers false.
  auto record = found.begin();
  for (auto& entry : values) {
    if (*record)
      entry.second = TakeText(*record);
    ++record;
  }
  return result;
}

std::string ORBCefToolsAccessor::GetJSONModuleMap() {
  std::string map = TakeText(Tools().get_json_module_map());
  if (map.empty())
    ORBCefLog::Error(kNoModuleMap);
  ORBCefLog::Info(kModuleMap, map);
  // The map goes into one line of a script.
  map.erase(std::remove(map.begin(), map.end(), '\n'), map.end());
  return map;
}

std::string ORBCefToolsAccessor::RemapURL(const std::string& url) {
  const _orbceftools_c& tools = Tools();
  const ORBCefCStringHolder record(url);
  std::string path = TakeText(tools.remap_url(record.Get()));
  if (path.empty()) {
    ORBCefLog::Error(kNoMapping);
    return path;
  }
  if (!platform::IsReadable(path)) {
    ORBCefLog::Warning(kInvalidMapping, url, kMapsTo, path);
    path.clear();
  }
  ORBCefLog::Info(kMapping, url, kMapsTo, path);
  return path;
}

std::string ORBCefToolsAccessor::SaveInPreference(const char* store, const char* key,
                                                  const std::string& value) {
  const _orbceftools_c& tools = Tools();
  const ORBCefCStringHolder record(value);
  return TakeText(tools.save_in_preference(store, key, record.Get()));
}

std::string ORBCefToolsAccessor::ReadFromPreferences(const char* store, const char* key) {
  return TakeText(Tools().read_from_preferences(store, key));
}

std::string ORBCefToolsAccessor::ReadFromSysSettings(const char* section, const char* key) {
  return TakeText(Tools().read_from_sys_settings(section, key));
}

bool ORBCefToolsAccessor::ReadFromSettings(const char* file, const char* key, int* value) {
  return Tools().read_from_settings(file, key, value) != 0;
}

bool ORBCefToolsAccessor::PostTaskOnMainThread(void (*task)(void*), void* data) {
  return Tools().post_task_on_main_thread(task, data) != 0;
}

bool ORBCefToolsAccessor::ShouldDispatchEventsOnMainThread() {
  return Tools().should_dispatch_events_on_main_thread() != 0;
}
