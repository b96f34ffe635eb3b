// The services that the host gives to the module: the whole table of orbceftools.h.
//
// One object in a process, owned by `main`, made before the module's first call and kept until the
// process ends its use of the module: the table's functions have no argument that could tell one
// object from another. The slots come on the threads that orbceftools.h tells.
#pragma once

#include <map>
#include <mutex>
#include <string>

#include "Catalogue.h"
#include "MainThread.h"
#include "Settings.h"
#include "orbceftools.h"

namespace host {

class Tools {
 public:
  struct Configuration {
    std::string profile;
    std::string catalogues;
    // For instance "de_DE"; empty for none.
    std::string locale;
    int release_level = 0;
    orbceftypes_recordmode record_mode = ORBCEF_RECORDMODE_NONE;
    // JSON text; empty for none.
    std::string module_map;
    // Local files by the URL that they stand for.
    std::map<std::string, std::string> remap;
  };

  Tools(MainThread& main_thread, Configuration configuration);
  ~Tools();
  Tools(const Tools&) = delete;
  Tools& operator=(const Tools&) = delete;

  // The table to give to the module; the module copies it.
  _orbceftools_c* Table() { return &_table; }

  Settings& settings() { return _settings; }

  // Sets an environment variable the way the module does, so that its child processes inherit it.
  // Keeps a value that the user has set, unless `replace`.
  void SetVariable(const std::string& name, const std::string& value, bool replace);

  // A text of the host's own catalogue in the user's language; `key` itself if there is none.
  std::string Message(const std::string& key);

 private:
  // The trampolines of the table, in Tools.cpp.
  struct Slots;

  static _orbceftools_c MakeTable();

  MainThread& _main_thread;
  const Configuration _configuration;
  const std::string _locale;
  Settings _settings;
  Catalogue _catalogue;
  _orbceftools_c _table;
  // Guards the process's environment.
  std::mutex _environment_mutex;
};

}  // namespace host
