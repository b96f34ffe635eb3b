#include "system.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <pthread.h>
#include <unistd.h>
#endif

#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <mutex>

#include "include/capi/cef_functions.h"
#include "include/cef_version.h"

namespace standin {

namespace {

// Levels of the log: negative ones are more than information.
constexpr int kVerbose = -1;
constexpr int kFatal = 3;

struct Log {
  std::mutex lock;
  // Guarded by lock.
  std::string file;
  std::atomic<int> least_level{0};
};

Log& TheLog() {
  static Log& log = *new Log();
  return log;
}

int LevelOf(int log_severity) {
  switch (log_severity) {
    case LOGSEVERITY_VERBOSE:
      return kVerbose;
    case LOGSEVERITY_WARNING:
      return 1;
    case LOGSEVERITY_ERROR:
      return 2;
    case LOGSEVERITY_FATAL:
    case LOGSEVERITY_DISABLE:
      return kFatal;
    default:
      return 0;
  }
}

const char* NameOf(int level) {
  constexpr const char* kNames[] = {"INFO", "WARNING", "ERROR", "FATAL"};
  return level < 0 ? "VERBOSE1" : kNames[level > kFatal ? kFatal : level];
}

// What the systems call by different names.
#if defined(_WIN32)
unsigned long ProcessNumber() {
  return GetCurrentProcessId();
}
unsigned long ThreadNumber() {
  return GetCurrentThreadId();
}
void ToLocalTime(std::time_t time, std::tm& parts) {
  localtime_s(&parts, &time);
}
void ToUtc(std::time_t time, std::tm& parts) {
  gmtime_s(&parts, &time);
}
std::time_t FromUtc(std::tm& parts) {
  return _mkgmtime(&parts);
}
#else
unsigned long ProcessNumber() {
  return static_cast<unsigned long>(getpid());
}
unsigned long ThreadNumber() {
  return static_cast<unsigned long>(gettid());
}
void ToLocalTime(std::time_t time, std::tm& parts) {
  localtime_r(&time, &parts);
}
void ToUtc(std::time_t time, std::tm& parts) {
  gmtime_r(&time, &parts);
}
std::time_t FromUtc(std::tm& parts) {
  return timegm(&parts);
}
#endif

std::string LineOf(const char* file, int line, int level, const char* message) {
  using std::chrono::duration_cast;
  using std::chrono::microseconds;
  using std::chrono::seconds;
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  const auto whole = duration_cast<seconds>(now);
  std::tm parts{};
  ToLocalTime(whole.count(), parts);
  char head[96];
  std::snprintf(head, sizeof(head), "[%lu:%lu:%02d%02d/%02d%02d%02d.%06ld:%s:", ProcessNumber(),
                ThreadNumber(), parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min,
                parts.tm_sec, static_cast<long>(duration_cast<microseconds>(now - whole).count()),
                NameOf(level));
  return std::string(head) + (file ? file : "") + "(" + std::to_string(line) + ")] " +
         (message ? message : "") + "\n";
}

}  // namespace

void SetLog(int log_severity, const std::string& file) {
  Log& log = TheLog();
  const std::lock_guard<std::mutex> guard(log.lock);
  log.file = file;
  log.least_level = LevelOf(log_severity);
}

}  // namespace standin

using standin::TheLog;

namespace {

constexpr int64 kMicroseconds = 1000000;
// From 1601 to 1970.
constexpr int64 kEpochDistance = 11644473600LL * kMicroseconds;

void ToParts(double seconds, cef_time_t* to) {
  const double whole = std::floor(seconds);
  const auto time = static_cast<time_t>(whole);
  tm parts{};
  standin::ToUtc(time, parts);
  *to = cef_time_t{};
  to->year = parts.tm_year + 1900;
  to->month = parts.tm_mon + 1;
  to->day_of_week = parts.tm_wday;
  to->day_of_month = parts.tm_mday;
  to->hour = parts.tm_hour;
  to->minute = parts.tm_min;
  to->second = parts.tm_sec;
  to->millisecond = static_cast<int>((seconds - whole) * 1000);
}

double FromParts(const cef_time_t* from) {
  tm parts{};
  parts.tm_year = from->year - 1900;
  parts.tm_mon = from->month - 1;
  parts.tm_mday = from->day_of_month;
  parts.tm_hour = from->hour;
  parts.tm_min = from->minute;
  parts.tm_sec = from->second;
  return static_cast<double>(standin::FromUtc(parts)) + from->millisecond / 1000.0;
}

double Now() {
  return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

}  // namespace

extern "C" {

const char* cef_api_hash(int entry) {
  switch (entry) {
    case 0:
      return CEF_API_HASH_PLATFORM;
    case 1:
      return CEF_API_HASH_UNIVERSAL;
    default:
      return "";
  }
}

int cef_version_info(int entry) {
  constexpr int kNumbers[] = {CEF_VERSION_MAJOR,    CEF_VERSION_MINOR,    CEF_VERSION_PATCH,
                              CEF_COMMIT_NUMBER,    CHROME_VERSION_MAJOR, CHROME_VERSION_MINOR,
                              CHROME_VERSION_BUILD, CHROME_VERSION_PATCH};
  constexpr int kCount = sizeof(kNumbers) / sizeof(kNumbers[0]);
  return entry >= 0 && entry < kCount ? kNumbers[entry] : 0;
}

int cef_get_min_log_level() {
  return TheLog().least_level;
}

int cef_get_vlog_level(const char* file_start, size_t N) {
  return 0;
}

void cef_log(const char* file, int line, int severity, const char* message) {
  if (severity < cef_get_min_log_level()) {
    return;
  }
  const std::string text = standin::LineOf(file, line, severity, message);
  const std::lock_guard<std::mutex> guard(TheLog().lock);
  FILE* const target = TheLog().file.empty() ? stderr : std::fopen(TheLog().file.c_str(), "a");
  if (!target) {
    return;
  }
  std::fputs(text.c_str(), target);
  if (target != stderr) {
    std::fclose(target);
  }
}

cef_platform_thread_id_t cef_get_current_platform_thread_id() {
  return static_cast<cef_platform_thread_id_t>(standin::ThreadNumber());
}
#if defined(_WIN32)
cef_platform_thread_handle_t cef_get_current_platform_thread_handle() {
  return GetCurrentThreadId();
}
#else
cef_platform_thread_handle_t cef_get_current_platform_thread_handle() {
  return pthread_self();
}
XDisplay* cef_get_xdisplay() {
  return nullptr;
}
#endif

int cef_time_to_timet(const cef_time_t* cef_time, time_t* time) {
  *time = static_cast<time_t>(FromParts(cef_time));
  return 1;
}
int cef_time_from_timet(time_t time, cef_time_t* cef_time) {
  ToParts(static_cast<double>(time), cef_time);
  return 1;
}
int cef_time_to_doublet(const cef_time_t* cef_time, double* time) {
  *time = FromParts(cef_time);
  return 1;
}
int cef_time_from_doublet(double time, cef_time_t* cef_time) {
  ToParts(time, cef_time);
  return 1;
}
int cef_time_now(cef_time_t* cef_time) {
  ToParts(Now(), cef_time);
  return 1;
}
int cef_time_delta(const cef_time_t* cef_time1, const cef_time_t* cef_time2, long long* delta) {
  *delta = static_cast<long long>((FromParts(cef_time2) - FromParts(cef_time1)) * 1000);
  return 1;
}

#if CEF_VERSION_MAJOR >= 108
cef_basetime_t cef_basetime_now() {
  return {static_cast<int64>(Now() * kMicroseconds) + kEpochDistance};
}
int cef_time_to_basetime(const cef_time_t* from, cef_basetime_t* to) {
  to->val = static_cast<int64>(FromParts(from) * kMicroseconds) + kEpochDistance;
  return 1;
}
int cef_time_from_basetime(const cef_basetime_t from, cef_time_t* to) {
  ToParts(static_cast<double>(from.val - kEpochDistance) / kMicroseconds, to);
  return 1;
}
#endif

}  // extern "C"
