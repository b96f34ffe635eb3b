// A host's tools table for tests: answers what the test put into it, counts the records that the
// module has not freed, and writes down the calls in their order.
//
// One object at a time; it installs its table when it is made and takes it away at its end. Any
// thread may call the table; the fields are the test's, set before the module runs.
#ifndef ORBCEF_TESTS_FAKE_TOOLS_H
#define ORBCEF_TESTS_FAKE_TOOLS_H

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "orbceftools.h"

class FakeTools {
 public:
  // The environment starts with ORBCEF_NO_TID_CHECK, as in all tests that share one process: what
  // the module reads once must be alike for them. A fresh process takes it away with Unset.
  FakeTools();
  ~FakeTools();
  FakeTools(const FakeTools&) = delete;
  FakeTools& operator=(const FakeTools&) = delete;

  // The table as the host gives it.
  static _orbceftools_c Table();

  void Set(const std::string& variable, const std::string& value);
  void Unset(const std::string& variable);
  // Null if the variable is unset.
  const char* Get(const std::string& variable) const;

  // The calls that change something or carry arguments, for instance "put_env A=b".
  std::vector<std::string> Calls() const;

  // Records that were handed to the module and that it has not freed.
  static int LiveRecords();
  // A record as a host allocates it, counted by LiveRecords.
  static orbcefstring_c* NewRecord(const std::string& text);

  bool on_main_thread = true;
  int put_env_result = 0;
  // Told of each variable that was set through the table.
  std::function<void(const std::string& assignment)> on_put_env;
  std::optional<std::string> language;
  int release_level = 0;
  // Absent texts are answered with a null record.
  std::map<std::pair<std::string, std::string>, std::string> messages;
  std::optional<std::string> temp_directory;
  bool create_directory_result = true;
  orbceftypes_recordmode record_mode = ORBCEF_RECORDMODE_NONE;
  // Members that the JSON reader finds, whatever the text is.
  std::map<std::string, std::string> json_members;
  bool json_result = true;
  std::optional<std::string> module_map;
  std::map<std::string, std::string> url_mappings;
  std::optional<std::string> save_result;
  std::map<std::pair<std::string, std::string>, std::string> preferences;
  std::map<std::pair<std::string, std::string>, std::string> sys_settings;
  std::map<std::pair<std::string, std::string>, int> settings;
  bool post_task_result = true;
  bool dispatch_on_main_thread = false;

 private:
  struct Slots;

  void Record(std::string call);

  mutable std::mutex _mutex;
  // Guarded by _mutex.
  std::map<std::string, std::string> _environment;
  std::vector<std::string> _calls;
};

#endif  // ORBCEF_TESTS_FAKE_TOOLS_H
