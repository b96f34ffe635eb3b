// Small decisions that all of the module shares: what the environment says about this process,
// text helpers, and the search for files of the installation; and the holder of the host's counted
// tables.
//
// Any thread of any process may call the functions. What they read from the environment is read
// once in a process and kept, unless a comment says otherwise. The tools table must be set.
#ifndef ORBCEFTOOLSWRAPPERMT_H
#define ORBCEFTOOLSWRAPPERMT_H

#include <string>
#include <utility>
#include <vector>

#include "ORBCefAssert.h"
#include "ORBCefToolsAccessor.h"
#include "include/cef_task.h"

namespace ORBCefToolsWrapperMT {

// The thread guard that opens every engine callback: true on the thread `id`, and always when
// ORBCEF_NO_TID_CHECK is set.
bool CheckThread(cef_thread_id_t id);

// ORBCEF_ENABLE_OSR is set: views are windowless.
bool IsOffScreenRendering();

// QVL_RIG_TMP or ORBCEF_RECORD is set: a failed check ends the process.
bool IsTestRig();

// A memory or coverage tool wraps the process. Reads the environment at each call.
bool IsUnderTestTool();

// "Chrome/<version> 7XO/<release level>", made anew at each call.
std::string GetUserAgentProduct();

// The value of ORBCEF_LOG contains `topic`.
bool IsLogTopicEnabled(const std::string& topic);

// Value of ORBInstallPath at the first call: the installation roots separated by ";". Empty if
// unset.
const std::string& InstallPath();

// The value that it has now. A relative root is one below the current directory.
std::string CurrentInstallPath();

// Makes relative roots absolute in the host's environment. The engine changes the current directory
// for moments, when it loads a library; a relative root would lead elsewhere then, in this process
// and in the engine's own ones, which start in the directory of the moment.
void FixInstallPath();

// The text before the first "-".
std::string BaseLanguage(const std::string& tag);

// Replaces every "/" by a backslash, on every system.
void ToBackslashes(std::string& text);

// Replaces every "/" by the system's own separator.
void ToNativeSeparators(std::string& path);

// The URL as the engine writes it, empty if it is none.
std::string CanonicalURL(const std::string& url);

// An empty text gives no parts, and a separator at the end no empty last part.
std::vector<std::string> SplitString(const std::string& text, char separator);
std::string JoinStrings(const std::vector<std::string>& parts, char separator);

// The first of the ";"-separated `roots` below which `relative_path`, written with "/", is a file
// that opens for reading (a directory): the joined path, empty if there is none.
std::string FindFileOnPaths(const std::string& relative_path, const std::string& roots);
std::string FindDirectoryOnPaths(const std::string& relative_path, const std::string& roots);

}  // namespace ORBCefToolsWrapperMT

// Holds one reference to a counted C table through its slots `add_ref` and `release`.
template <class Table>
class ORBCefTableRef {
 public:
  ORBCefTableRef() = default;
  // Adds a reference; null holds nothing.
  explicit ORBCefTableRef(Table* table) : _p(table) {
    if (_p && _p->add_ref)
      _p->add_ref(_p);
  }
  ORBCefTableRef(const ORBCefTableRef& other) : ORBCefTableRef(other._p) {}
  ORBCefTableRef(ORBCefTableRef&& other) noexcept : _p(std::exchange(other._p, nullptr)) {}
  ORBCefTableRef& operator=(ORBCefTableRef other) noexcept {
    std::swap(_p, other._p);
    return *this;
  }
  ~ORBCefTableRef() { Reset(); }

  // Gives the reference back. Cleared before the call, which may come back here.
  void Reset() {
    Table* const table = std::exchange(_p, nullptr);
    if (table && table->release)
      table->release(table);
  }

  Table* Get() const { return _p; }
  explicit operator bool() const { return _p != nullptr; }

  // A null table is reported; the call through it then faults.
  Table* operator->() const {
    ORBCefCheck(_p != nullptr, ORBCefCheckSites::kHostTable);
    return _p;
  }

 private:
  Table* _p = nullptr;
};

#endif  // ORBCEFTOOLSWRAPPERMT_H
