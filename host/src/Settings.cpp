#include "Settings.h"

#include <sqlite3.h>

namespace host {
namespace {

struct Finalizer {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, Finalizer>;

// Prepares `sql` and binds `values` in their order. Null if the database refuses it.
template <typename... Values>
Statement Prepare(sqlite3* database, const std::string& sql, const Values&... values) {
  sqlite3_stmt* raw = nullptr;
  if (!database || sqlite3_prepare_v2(database, sql.c_str(), -1, &raw, nullptr) != SQLITE_OK) {
    return nullptr;
  }
  int index = 0;
  (sqlite3_bind_text64(raw, ++index, values.data(), values.size(), SQLITE_TRANSIENT, SQLITE_UTF8),
   ...);
  return Statement(raw);
}

}  // namespace

void Settings::Closer::operator()(sqlite3* database) const {
  sqlite3_close(database);
}

Settings::Settings(const std::string& path) {
  // Some builds of the library do not do this by themselves.
  sqlite3_initialize();
  sqlite3* raw = nullptr;
  const int opened = sqlite3_open(path.c_str(), &raw);
  _database.reset(raw);
  if (opened != SQLITE_OK) {
    _error = raw ? sqlite3_errmsg(raw) : "out of memory";
    _database.reset();
    return;
  }
  for (const char* table : {kPreferences, kSettings, kSysSettings}) {
    const std::string sql = std::string("CREATE TABLE IF NOT EXISTS ") + table +
                            " (place TEXT, key TEXT, value TEXT, PRIMARY KEY (place, key))";
    if (sqlite3_exec(raw, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
      _error = sqlite3_errmsg(raw);
      _database.reset();
      return;
    }
  }
}

Settings::~Settings() = default;

std::optional<std::string> Settings::Read(const char* table, const std::string& place,
                                          const std::string& key) {
  const std::lock_guard<std::mutex> guard(_mutex);
  const Statement statement = Prepare(
      _database.get(), std::string("SELECT value FROM ") + table + " WHERE place = ? AND key = ?",
      place, key);
  if (!statement || sqlite3_step(statement.get()) != SQLITE_ROW) {
    return std::nullopt;
  }
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement.get(), 0));
  const int length = sqlite3_column_bytes(statement.get(), 0);
  return text ? std::string(text, static_cast<std::size_t>(length)) : std::string();
}

std::string Settings::Write(const char* table, const std::string& place, const std::string& key,
                            const std::string& value) {
  const std::lock_guard<std::mutex> guard(_mutex);
  if (!_database) {
    return _error;
  }
  const Statement statement =
      Prepare(_database.get(), std::string("REPLACE INTO ") + table + " VALUES (?, ?, ?)", place,
              key, value);
  if (!statement || sqlite3_step(statement.get()) != SQLITE_DONE) {
    return sqlite3_errmsg(_database.get());
  }
  return {};
}

}  // namespace host
