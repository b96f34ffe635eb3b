#include "Host.h"

#if !defined(_WIN32)
#include <unistd.h>
#endif

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <thread>

#include <gtest/gtest.h>

#include "Control.h"
#include "FreshProcess.h"
#include "ORBCefSettings.h"
#include "platform/Files.h"

namespace standin_host {

namespace {

constexpr int kProcessSeconds = 120;
constexpr int32_t kRect[4] = {0, 0, 400, 300};

std::string TextOf(const orbcefstring_c* record) {
  return record && record->length ? std::string(record->data, record->length) : std::string();
}

// Ends like any program: the client's static objects go, then the stand-in counts what is left.
[[noreturn]] void RunAndEnd(const std::function<void()>& body) {
  EndAfterLimit();
  body();
  std::exit(testing::Test::HasFailure() ? 1 : 0);
}

std::string CalledFrom(int line) {
  return "in the own process of line " + std::to_string(line);
}

orbcefglobal_c* GlobalTable() {
  return static_cast<orbcefglobal_c*>(
      orbcef_pluginfactory(ORBCEF_PLUGIN_MAJOR, ORBCEF_PLUGIN_MINOR, ORBCEF_GLOBAL_TABLE));
}

}  // namespace

#if defined(_WIN32)
void EndAfterLimit() {
  std::thread([] {
    std::this_thread::sleep_for(std::chrono::seconds(kProcessSeconds));
    std::fprintf(stderr, "the process hangs\n");
    std::_Exit(99);
  }).detach();
}
#else
// Without a thread of its own: the sanitizers look at all that are left when the process ends.
void EndAfterLimit() {
  alarm(kProcessSeconds);
}
#endif

void InOwnProcess(const std::function<void()>& body,
                  const testing::Matcher<const std::string&>& log, int status, int line) {
  SCOPED_TRACE(CalledFrom(line));
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(RunAndEnd(body), testing::ExitedWithCode(status), log);
}

void ExpectSegmentationFault(const std::function<void()>& body, int line) {
  SCOPED_TRACE(CalledFrom(line));
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(RunAndEnd(body), fresh_process::DiedAtAddressZero, "");
}

Events::Events() {
  _table.instance = this;
  _table.add_ref = [](orbcefbrowserevents_c* self) { Of(self).Refer(1); };
  _table.release = [](orbcefbrowserevents_c* self) { Of(self).Refer(-1); };
  _table.on_state_changed = [](orbcefbrowserevents_c* self, int32_t state) {
    Of(self).Note("state " + std::to_string(state));
  };
  _table.on_v8_context = [](orbcefbrowserevents_c* self, uint8_t created) {
    Of(self).Note("v8 " + std::to_string(created));
  };
  _table.on_strings_received = [](orbcefbrowserevents_c* self, const orbcefstring_c* const* strings,
                                  int32_t count) {
    std::string line = "strings";
    for (int32_t i = 0; i < count; ++i) {
      line += "|" + TextOf(strings[i]);
    }
    Of(self).Note(line);
  };
  _table.on_title_changed = [](orbcefbrowserevents_c* self, const orbcefstring_c* title) {
    Of(self).Note("title " + TextOf(title));
  };
  _table.on_address_changed = [](orbcefbrowserevents_c* self, const orbcefstring_c* url) {
    Of(self).Note("address " + TextOf(url));
  };
  _table.on_loading_state_changed = [](orbcefbrowserevents_c* self, uint8_t loading,
                                       const orbcefstring_c* url) {
    Of(self).Note("loading " + std::to_string(loading) + " " + TextOf(url));
  };
  _table.on_document_size = [](orbcefbrowserevents_c* self, int32_t width, int32_t height) {
    Of(self).Note("size " + std::to_string(width) + "x" + std::to_string(height));
  };
  _table.on_console_message = [](orbcefbrowserevents_c* self, const orbcefstring_c* message,
                                 const orbcefstring_c*,
                                 int32_t) { Of(self).Note("console " + TextOf(message)); };
  _table.on_zoom_changed = [](orbcefbrowserevents_c* self, double change) {
    Of(self).Note("zoom " + std::to_string(change));
  };
}

std::vector<std::string> Events::Lines() const {
  const std::lock_guard<std::mutex> guard(_lock);
  return _lines;
}

bool Events::Has(const std::string& line) const {
  const std::vector<std::string> lines = Lines();
  return std::find(lines.begin(), lines.end(), line) != lines.end();
}

bool Events::Wait(const std::string& line, int count) {
  std::unique_lock<std::mutex> guard(_lock);
  return _changed.wait_until(
      guard, std::chrono::system_clock::now() + std::chrono::milliseconds(control::kLimit),
      [&] { return std::count(_lines.begin(), _lines.end(), line) >= count; });
}

int Events::References() const {
  const std::lock_guard<std::mutex> guard(_lock);
  return _references;
}

void Events::Note(const std::string& line) {
  {
    const std::lock_guard<std::mutex> guard(_lock);
    _lines.push_back(line);
    _changed.notify_all();
  }
  if (on_line) {
    on_line(line);
  }
}

void Events::Refer(int change) {
  const std::lock_guard<std::mutex> guard(_lock);
  _references += change;
  _changed.notify_all();
}

std::string Take(orbcefstring_c* record) {
  const std::string text = TextOf(record);
  if (record) {
    record->free(record);
  }
  return text;
}

Host::Host()
    : helper(root.Write(std::string("code/bin/") + ORBCefSettings::kHelperFile, "")),
      table(GlobalTable()) {
  tools.Unset("ORBCEF_NO_TID_CHECK");
  tools.Set("ORBInstallPath", root.Path());
  tools.Set("ORBCEF_CACHE_PATH", root.MakeDirectory("cache"));
}

orbcefbrowser_c* Host::NewView(Events& events, const std::string& home_url) {
  return table->create_browser(table, events.Table(), nullptr, Text(home_url));
}

void Host::Open(orbcefbrowser_c* view, const std::string& url) {
  const int before = control::Count("loaded");
  view->create(view, nullptr, kRect, Text(url));
  EXPECT_TRUE(control::Wait("loaded", before + 1));
}

void Host::CloseAndRelease(orbcefbrowser_c* view) {
  const int before = control::Count("closed");
  view->close(view, 1);
  EXPECT_TRUE(control::Wait("closed", before + 1));
  view->release(view);
}

void Host::EnableLog() {
  tools.Set("ORBCEF_LOG", "1");
  tools.Set("ORBCEF_LOG_PATH", root.MakeDirectory("log"));
}

std::string Host::Log() const {
  std::ifstream file(root.Join("log") + platform::kSeparator + "cef_client_debug.log");
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

}  // namespace standin_host
