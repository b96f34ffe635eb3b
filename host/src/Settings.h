// What the host keeps from run to run: preferences of pages, integer settings and system settings,
// in one SQLite database below the profile. Any thread; the tools of the host own it.
#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <string>

struct sqlite3;

namespace host {

class Settings {
 public:
  // Opens the database at `path`, and creates it. `Error` tells why that failed, empty if it did
  // not; without a database nothing is found and nothing can be written.
  explicit Settings(const std::string& path);
  ~Settings();
  Settings(const Settings&) = delete;
  Settings& operator=(const Settings&) = delete;

  std::string Error() const { return _error; }

  // `table` is one of the constants below.
  std::optional<std::string> Read(const char* table, const std::string& place,
                                  const std::string& key);
  // Empty on success, else the reason.
  std::string Write(const char* table, const std::string& place, const std::string& key,
                    const std::string& value);

  static constexpr char kPreferences[] = "preferences";
  static constexpr char kSettings[] = "settings";
  static constexpr char kSysSettings[] = "sys_settings";

 private:
  struct Closer {
    void operator()(sqlite3* database) const;
  };

  std::mutex _mutex;
  // Guarded by `_mutex`.
  std::unique_ptr<sqlite3, Closer> _database;
  std::string _error;
};

}  // namespace host
