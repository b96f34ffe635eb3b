#include "HelperTools.h"

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>

#include "HelperPlatform.h"

namespace {

// What a page would be rejected with. Preferences belong to the host's process, so claiming that
// one was written here would lose it without a word.
constexpr std::string_view kNoPreferences = "new Error(\"No preferences in a sub-process.\")";

std::thread::id MainThread() {
  static const std::thread::id main_thread = std::this_thread::get_id();
  return main_thread;
}

void FreeRecord(orbcefstring_c* record) noexcept {
  if (record) {
    std::free(record->data);
    std::free(record);
  }
}

// A record for the module, which frees it through its own function; null without memory.
orbcefstring_c* MakeRecord(std::string_view text) noexcept {
  auto* record = static_cast<orbcefstring_c*>(std::calloc(1, sizeof(orbcefstring_c)));
  if (!record) {
    return nullptr;
  }
  record->free = FreeRecord;
  if (!text.empty()) {
    record->data = static_cast<char*>(std::malloc(text.size()));
    if (!record->data) {
      FreeRecord(record);
      return nullptr;
    }
    std::memcpy(record->data, text.data(), text.size());
    record->length = text.size();
  }
  return record;
}

// The thread of main stands for the host's main thread: it is the one that runs the sub-process.
uint8_t OnMainThread() noexcept {
  return std::this_thread::get_id() == MainThread() ? 1 : 0;
}

// The host's environment has become this process's when the engine started it.
const char* GetEnv(const char* name) noexcept {
  try {
    return HelperPlatform::GetEnvironment(name);
  } catch (...) {
    return nullptr;
  }
}

int32_t PutEnv(const char* assignment) noexcept {
  try {
    return HelperPlatform::PutEnvironment(assignment);
  } catch (...) {
    return -1;
  }
}

// The engine gives the locale of a sub-process on its command line; this is only the fallback.
const char* ComputeLang() noexcept {
  return "English";
}

// Names the cache directory and the user agent, both of them the host process's business.
int32_t GetReleaseLevel() noexcept {
  return 0;
}

// Message catalogues are the host's.
orbcefstring_c* BuildCatalogMessage(const char*, const char*) noexcept {
  return nullptr;
}

orbcefstring_c* GetTempDirectory() noexcept {
  try {
    std::error_code error;
    const std::filesystem::path path = std::filesystem::temp_directory_path(error);
    return error ? nullptr : MakeRecord(path.u8string());
  } catch (...) {
    return nullptr;
  }
}

uint8_t CreateDirectoryWithParents(orbcefstring_c* path) noexcept {
  if (!path || path->length == 0) {
    return 0;
  }
  try {
    const std::filesystem::path directory =
        std::filesystem::u8path(std::string(path->data, path->length));
    std::error_code error;
    std::filesystem::create_directories(directory, error);
    return std::filesystem::is_directory(directory, error) ? 1 : 0;
  } catch (...) {
    return 0;
  }
}

// The record mode reaches a renderer on its command line, which the module reads itself.
uint8_t IsRecordCapture() noexcept {
  return 0;
}
uint8_t IsRecordReplay() noexcept {
  return 0;
}
orbceftypes_recordmode GetRecordMode() noexcept {
  return ORBCEF_RECORDMODE_NONE;
}

// Nothing in a sub-process reads JSON through the host.
uint8_t GetJsonValue(orbcefstring_c*, orbcefstring_c**, orbcefstring_c**, int32_t) noexcept {
  return 0;
}

// The web-record modules come with a host that records; this helper brings none.
orbcefstring_c* GetJsonModuleMap() noexcept {
  return nullptr;
}

// URLs are mapped to files in the host process only.
orbcefstring_c* RemapUrl(orbcefstring_c*) noexcept {
  return nullptr;
}

orbcefstring_c* SaveInPreference(const char*, const char*, orbcefstring_c*) noexcept {
  return MakeRecord(kNoPreferences);
}
orbcefstring_c* ReadFromPreferences(const char*, const char*) noexcept {
  return nullptr;
}

// Settings are the host's.
orbcefstring_c* ReadFromSysSettings(const char*, const char*) noexcept {
  return nullptr;
}
uint8_t ReadFromSettings(const char*, const char*, int32_t*) noexcept {
  return 0;
}

// The main thread runs the engine and takes no tasks: what is posted is refused.
uint8_t PostTaskOnMainThread(void (*)(void*), void*) noexcept {
  return 0;
}
uint8_t ShouldDispatchEventsOnMainThread() noexcept {
  return 0;
}

}  // namespace

_orbceftools_c* HelperTools() {
  static _orbceftools_c tools = {
      OnMainThread,
      GetEnv,
      PutEnv,
      ComputeLang,
      GetReleaseLevel,
      BuildCatalogMessage,
      GetTempDirectory,
      CreateDirectoryWithParents,
      IsRecordCapture,
      IsRecordReplay,
      GetRecordMode,
      GetJsonValue,
      GetJsonModuleMap,
      RemapUrl,
      SaveInPreference,
      ReadFromPreferences,
      ReadFromSysSettings,
      ReadFromSettings,
      PostTaskOnMainThread,
      ShouldDispatchEventsOnMainThread,
  };
  MainThread();
  return &tools;
}
