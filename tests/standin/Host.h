// A host in a process of its own: the module reached through its C tables, an installation root,
// and views whose events are written down. Made on the test's own thread, which is the host's main
// one.
#ifndef ORBCEF_TESTS_STANDIN_HOST_H
#define ORBCEF_TESTS_STANDIN_HOST_H

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "FakeTools.h"
#include "TempDirectory.h"
#include "orbcefglobal.h"

namespace standin_host {

// Runs `body` in a process of its own, which ends by itself with `status`. `log` describes what it
// writes to standard error.
void InOwnProcess(const std::function<void()>& body,
                  const testing::Matcher<const std::string&>& log = testing::_, int status = 0,
                  int line = __builtin_LINE());

// The same for a body that stores to address zero.
void ExpectSegmentationFault(const std::function<void()>& body, int line = __builtin_LINE());

// Ends this process, badly, when it has run for far too long: a test that hangs must not keep the
// whole run.
void EndAfterLimit();

// A view's callback table. Any thread may call it.
class Events {
 public:
  Events();
  Events(const Events&) = delete;
  Events& operator=(const Events&) = delete;

  orbcefbrowserevents_c* Table() { return &_table; }
  std::vector<std::string> Lines() const;
  bool Has(const std::string& line) const;
  // Waits until the line has come `count` times.
  bool Wait(const std::string& line, int count = 1);
  int References() const;
  // Called with each line, on the thread that it comes on, without a lock.
  std::function<void(const std::string&)> on_line;

 private:
  void Note(const std::string& line);
  void Refer(int change);
  static Events& Of(orbcefbrowserevents_c* self) { return *static_cast<Events*>(self->instance); }

  orbcefbrowserevents_c _table = {};
  mutable std::mutex _lock;
  mutable std::condition_variable _changed;
  // Guarded by _lock.
  std::vector<std::string> _lines;
  int _references = 0;
};

// A record that lives for an expression.
class Text {
 public:
  explicit Text(const std::string& text) : _text(text) {
    _record.data = _text.data();
    _record.length = _text.size();
  }
  operator const orbcefstring_c*() const { return &_record; }

 private:
  std::string _text;
  orbcefstring_c _record = {};
};

// The text of a record that the module hands over.
std::string Take(orbcefstring_c* record);

class Host {
 public:
  // With a helper in the installation root, so that the engine starts, and with the threads
  // checked.
  Host();
  // Stops the engine if the test has not.
  ~Host() { Shutdown(); }
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  // The view's table, with the events of `events`.
  orbcefbrowser_c* NewView(Events& events, const std::string& home_url = "http://home.test/");
  // Creates the engine's browser and waits until its first page is there.
  void Open(orbcefbrowser_c* view, const std::string& url = "about:blank");
  void Init() { table->init_engine(table); }
  void Shutdown() { table->shutdown_engine(table); }
  // The whole of a good life.
  void CloseAndRelease(orbcefbrowser_c* view);

  // From the next start on, the engine's log goes to a file.
  void EnableLog();
  std::string Log() const;

  FakeTools tools;
  TempDirectory root;
  // The helper's path.
  const std::string helper;
  orbcefglobal_c* const table;
};

}  // namespace standin_host

#endif  // ORBCEF_TESTS_STANDIN_HOST_H
