#include "platform/Clipboard.h"

#include <signal.h>
#include <sys/socket.h>
#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <memory>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

namespace platform {

namespace {

struct FreeDeleter {
  void operator()(void* block) const { std::free(block); }
};
template <class T>
using Reply = std::unique_ptr<T, FreeDeleter>;
using Event = Reply<xcb_generic_event_t>;

// An event that another client sent has this bit set in its type.
constexpr std::uint8_t kSent = 0x80;
constexpr std::size_t kBytesPerUnit = sizeof(char16_t);
// What a request that changes a property carries beside its data, with room to spare.
constexpr std::uint64_t kRequestOverhead = 64;

bool IsHigh(char16_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}

bool IsLow(char16_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}

void AppendUtf8(std::string& text, std::uint32_t code) {
  const auto tail = [code](int shift) {
    return static_cast<char>(0x80 | ((code >> shift) & 0x3F));
  };
  if (code < 0x80) {
    text += static_cast<char>(code);
  } else if (code < 0x800) {
    text += {static_cast<char>(0xC0 | (code >> 6)), tail(0)};
  } else if (code < 0x10000) {
    text += {static_cast<char>(0xE0 | (code >> 12)), tail(6), tail(0)};
  } else {
    text += {static_cast<char>(0xF0 | (code >> 18)), tail(12), tail(6), tail(0)};
  }
}

// The characters that are whole. Half of a unit, and half of a pair of units, are left out.
std::string ToUtf8(const char16_t* text, std::size_t bytes) {
  const std::size_t count = bytes / kBytesPerUnit;
  std::string result;
  for (std::size_t i = 0; i < count; ++i) {
    const char16_t unit = text[i];
    if (IsHigh(unit) && i + 1 < count && IsLow(text[i + 1])) {
      AppendUtf8(result, 0x10000 + ((unit - 0xD800u) << 10) + (text[++i] - 0xDC00u));
    } else if (!IsHigh(unit) && !IsLow(unit)) {
      AppendUtf8(result, unit);
    }
  }
  return result;
}

// One ownership of the selection CLIPBOARD, from the claim to its loss, on a connection of its own.
// The claim is made on the caller's thread; then the connection is the serving thread's alone, up
// to its end.
class ClipboardOwner {
 public:
  // Null without a usable display, and for a text that does not fit into one request.
  static std::unique_ptr<ClipboardOwner> Claim(std::string text) {
    auto owner = std::make_unique<ClipboardOwner>(std::move(text));
    if (!owner->Connect() || !owner->Own())
      return nullptr;
    try {
      owner->_thread = std::thread(&ClipboardOwner::Serve, owner.get());
    } catch (const std::system_error&) {
      return nullptr;
    }
    return owner;
  }

  explicit ClipboardOwner(std::string text) : _text(std::move(text)) {}
  // Ends the ownership.
  ~ClipboardOwner() {
    HangUp();
    Join();
    // The object is never null after xcb_connect, and must be freed even without a connection.
    if (_x)
      xcb_disconnect(_x);
  }

  // Waits for the loss of the selection, which another owner has by now: whoever asked before that
  // still gets his answer.
  void Join() {
    if (_thread.joinable())
      _thread.join();
  }

 private:
  bool Connect() {
    int screen = 0;
    _x = xcb_connect(nullptr, &screen);
    if (xcb_connection_has_error(_x))
      return false;
    // The server's limit counts in units of four bytes.
    const std::uint64_t most = std::uint64_t{xcb_get_maximum_request_length(_x)} * 4;
    if (_text.size() + kRequestOverhead > most)
      return false;
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(_x));
    for (int i = 0; i < screen && screens.rem > 1; ++i) xcb_screen_next(&screens);
    if (screens.rem <= 0)
      return false;
    _window = xcb_generate_id(_x);
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(_x, XCB_COPY_FROM_PARENT, _window, screens.data->root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
    return FindAtoms();
  }

  bool FindAtoms() {
    const std::pair<const char*, xcb_atom_t*> atoms[] = {{"CLIPBOARD", &_clipboard},
                                                         {"TARGETS", &_targets},
                                                         {"TIMESTAMP", &_timestamp},
                                                         {"UTF8_STRING", &_utf8_string}};
    // All are asked for before the first answer is waited for.
    xcb_intern_atom_cookie_t cookies[std::size(atoms)];
    for (std::size_t i = 0; i < std::size(atoms); ++i) {
      const char* const name = atoms[i].first;
      cookies[i] = xcb_intern_atom(_x, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    }
    for (std::size_t i = 0; i < std::size(atoms); ++i) {
      const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(_x, cookies[i], nullptr));
      if (!reply)
        return false;
      *atoms[i].second = reply->atom;
    }
    return true;
  }

  bool Own() {
    if (!FindTime())
      return false;
    xcb_set_selection_owner(_x, _window, _clipboard, _time);
    const Reply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(_x, xcb_get_selection_owner(_x, _clipboard), nullptr));
    return reply && reply->owner == _window;
  }

  // A claim needs a time of the server's, which comes with the notice of a changed property.
  bool FindTime() {
    xcb_change_property(_x, XCB_PROP_MODE_APPEND, _window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 0,
                        nullptr);
    xcb_flush(_x);
    while (const Event event{xcb_wait_for_event(_x)}) {
      if ((event->response_type & ~kSent) == XCB_PROPERTY_NOTIFY) {
        _time = reinterpret_cast<const xcb_property_notify_event_t*>(event.get())->time;
        return true;
      }
    }
    return false;
  }

  // Ends the wait of the serving thread, and the server's side of the connection.
  void HangUp() {
    if (_x)
      shutdown(xcb_get_file_descriptor(_x), SHUT_RDWR);
  }

  void Serve() {
    // The host's signals are for the host's threads. A server that is gone answers a request with
    // SIGPIPE, which would end the process.
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);
    while (const Event event{xcb_wait_for_event(_x)}) {
      const int type = event->response_type & ~kSent;
      if (type == XCB_SELECTION_REQUEST) {
        Answer(*reinterpret_cast<const xcb_selection_request_event_t*>(event.get()));
      } else if (type == XCB_SELECTION_CLEAR) {
        break;
      }
    }
    // A server drops what it has not yet read of a connection that is shut, so the last answer is
    // seen through before.
    Reply<xcb_get_input_focus_reply_t>(
        xcb_get_input_focus_reply(_x, xcb_get_input_focus(_x), nullptr));
    // What comes now would be read by nobody.
    HangUp();
  }

  void Answer(const xcb_selection_request_event_t& request) {
    // Clients of an old kind name no property and mean the target's name.
    const xcb_atom_t property = request.property ? request.property : request.target;
    xcb_selection_notify_event_t notice{};
    notice.response_type = XCB_SELECTION_NOTIFY;
    notice.time = request.time;
    notice.requestor = request.requestor;
    notice.selection = request.selection;
    notice.target = request.target;
    notice.property = WriteTarget(request.requestor, property, request.target)
                          ? property
                          : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
    // The server sends 32 bytes, whatever the event is.
    char bytes[32] = {};
    std::memcpy(bytes, &notice, sizeof(notice));
    xcb_send_event(_x, 0, request.requestor, XCB_EVENT_MASK_NO_EVENT, bytes);
    xcb_flush(_x);
  }

  bool WriteTarget(xcb_window_t window, xcb_atom_t property, xcb_atom_t target) {
    if (target == _utf8_string || target == XCB_ATOM_STRING) {
      // The same text under both names: what is copied here is an address in ASCII.
      Write(window, property, target, 8, _text.size(), _text.data());
    } else if (target == _targets) {
      const xcb_atom_t offered[] = {_targets, _timestamp, _utf8_string, XCB_ATOM_STRING};
      Write(window, property, XCB_ATOM_ATOM, 32, std::size(offered), offered);
    } else if (target == _timestamp) {
      Write(window, property, XCB_ATOM_INTEGER, 32, 1, &_time);
    } else {
      return false;
    }
    return true;
  }

  // A requestor that is gone makes an error event, which nobody minds.
  void Write(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::uint8_t format,
             std::size_t count, const void* data) {
    xcb_change_property(_x, XCB_PROP_MODE_REPLACE, window, property, type, format,
                        static_cast<std::uint32_t>(count), data);
  }

  const std::string _text;
  xcb_connection_t* _x = nullptr;
  xcb_window_t _window = XCB_WINDOW_NONE;
  xcb_atom_t _clipboard = XCB_ATOM_NONE;
  xcb_atom_t _targets = XCB_ATOM_NONE;
  xcb_atom_t _timestamp = XCB_ATOM_NONE;
  xcb_atom_t _utf8_string = XCB_ATOM_NONE;
  xcb_timestamp_t _time = XCB_CURRENT_TIME;
  std::thread _thread;
};

struct Clipboard {
  std::mutex lock;
  // Guarded by lock. The last one, which may have lost the selection.
  std::unique_ptr<ClipboardOwner> owner;
};

// Its end, with the process or the library, ends the thread too.
Clipboard& TheClipboard() {
  static Clipboard clipboard;
  return clipboard;
}

}  // namespace

bool SetClipboardText(const char16_t* text, std::size_t bytes) {
  const std::lock_guard<std::mutex> guard(TheClipboard().lock);
  std::unique_ptr<ClipboardOwner> owner = ClipboardOwner::Claim(ToUtf8(text, bytes));
  if (!owner)
    return false;
  std::swap(owner, TheClipboard().owner);
  if (owner)
    owner->Join();
  return true;
}

}  // namespace platform
