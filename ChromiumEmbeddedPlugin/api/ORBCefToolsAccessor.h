// The static face of the host's tools table for C++ code inside the module and beside it.
//
// Each function forwards to the slot of `_orbceftools_c` (orbceftools.h) that its comment names and
// hides the C records behind standard texts. The host's table must have been set, by `set_tools`
// or `SetORBCefTools`, before the first call: a call without it is reported and then faults.
// The functions may come on any thread that the host's slot tolerates. They are reached across the
// library's border by their mangled names, so both sides need one compiler and standard library.
#ifndef ORBCEFTOOLSACCESSOR_H
#define ORBCEFTOOLSACCESSOR_H

#include <map>
#include <string>

#include "orbcefglobal.h"

namespace ORBCefPlugin_Tools {

// Copies the host's table and forgets an earlier copy; null only forgets. Not locked: each process
// calls it once, before anything else.
ORBCEF_API void SetORBCefTools(_orbceftools_c* tools);

}  // namespace ORBCefPlugin_Tools

class ORBCefToolsAccessor {
 public:
  ORBCefToolsAccessor() = delete;

  // Slot `on_main_thread`.
  ORBCEF_API static bool OnMainThread();
  // Slot `get_env`: null if the variable is unset. Read the text before the next call.
  ORBCEF_API static const char* ORBGetEnv(const char* name);
  // Slot `put_env`.
  ORBCEF_API static int ORBPutEnv(const char* assignment);
  // Slot `compute_lang`: may be null.
  ORBCEF_API static const char* ComputeLang();
  // Slot `get_release_level`.
  ORBCEF_API static int GetOrbisReleaseLevelInfo();
  // Slot `build_catalog_message`: empty if the host has no such text.
  ORBCEF_API static std::string BuildCatalogMessage(const char* catalog, const char* key);
  // Slot `get_temp_directory`.
  ORBCEF_API static std::string ORBGetTempDirectory();
  // Slot `create_directory`.
  ORBCEF_API static bool ORBCreateDirectory(const std::string& path);
  // Slot `is_record_capture`.
  ORBCEF_API static bool IsRecordCapture();
  // Slot `is_record_replay`.
  ORBCEF_API static bool IsRecordReplay();
  // Slot `get_record_mode`.
  ORBCEF_API static orbceftypes_recordmode GetRecordMode();
  // Slot `get_json_value`: fills the values of the keys that are in `values` and that the object
  // has; the others keep theirs. False without a call if `values` is empty.
  ORBCEF_API static bool GetJsonValue(const std::string& json,
                                      std::map<std::string, std::string>& values);
  // Slot `get_json_module_map`, without its line feeds.
  ORBCEF_API static std::string GetJSONModuleMap();
  // Slot `remap_url`: empty unless the host names a file that can be read.
  ORBCEF_API static std::string RemapURL(const std::string& url);
  // Slot `save_in_preference`: empty on success, else a JavaScript expression.
  ORBCEF_API static std::string SaveInPreference(const char* store, const char* key,
                                                 const std::string& value);
  // Slot `read_from_preferences`.
  ORBCEF_API static std::string ReadFromPreferences(const char* store, const char* key);
  // Slot `read_from_sys_settings`.
  ORBCEF_API static std::string ReadFromSysSettings(const char* section, const char* key);
  // Slot `read_from_settings`: `*value` stays as it is without a setting.
  ORBCEF_API static bool ReadFromSettings(const char* file, const char* key, int* value);
  // Slot `post_task_on_main_thread`.
  ORBCEF_API static bool PostTaskOnMainThread(void (*task)(void*), void* data);
  // Slot `should_dispatch_events_on_main_thread`.
  ORBCEF_API static bool ShouldDispatchEventsOnMainThread();

 private:
  // There is nothing to assign.
  ORBCefToolsAccessor& operator=(const ORBCefToolsAccessor&) { return *this; }
  ORBCefToolsAccessor& operator=(ORBCefToolsAccessor&&) { return *this; }
};

#endif  // ORBCEFTOOLSACCESSOR_H
