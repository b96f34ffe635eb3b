// What is on the desktop's clipboard, asked for as another program would.
//
// Called on a test's own thread.
#ifndef ORBCEF_TESTS_CLIPBOARD_H
#define ORBCEF_TESTS_CLIPBOARD_H

#include <memory>
#include <optional>
#include <string>

namespace clipboard {

// False where no test can read or write it: there is no X server.
bool Exists();

// The text in UTF-8, and nothing if there is none or its owner does not answer. On Windows it is
// the block up to its zero, and must be ASCII.
std::optional<std::string> Text();

// What arrives of characters that fill their bytes: Windows ends a text with a zero in its last two
// bytes, in place of what is there.
std::string Arriving(std::string characters);

#if !defined(_WIN32)
// Asks on a connection that it makes once. One thread at a time.
class Reader {
 public:
  Reader();
  ~Reader();
  Reader(const Reader&) = delete;
  Reader& operator=(const Reader&) = delete;

  // The same by the name of an X11 target, as bytes; atoms are given by their names, each with a
  // space behind it.
  std::optional<std::string> Text(const char* target = "UTF8_STRING");

 private:
  struct Connection;
  const std::unique_ptr<Connection> _connection;
};

std::optional<std::string> Text(const char* target);

// Takes the clipboard away from its owner, for the life of the object.
class OtherOwner {
 public:
  OtherOwner();
  ~OtherOwner();
  OtherOwner(const OtherOwner&) = delete;
  OtherOwner& operator=(const OtherOwner&) = delete;

 private:
  struct Connection;
  const std::unique_ptr<Connection> _connection;
};
#endif

}  // namespace clipboard

#endif  // ORBCEF_TESTS_CLIPBOARD_H
