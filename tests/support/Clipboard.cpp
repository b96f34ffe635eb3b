#include "Clipboard.h"

#if defined(_WIN32)

#include <windows.h>

namespace clipboard {

bool Exists() {
  return true;
}

std::optional<std::string> Text() {
  if (!OpenClipboard(nullptr))
    return std::nullopt;
  std::optional<std::string> text;
  if (const HANDLE block = GetClipboardData(CF_UNICODETEXT)) {
    const auto* const units = static_cast<const wchar_t*>(GlobalLock(block));
    text.emplace();
    for (size_t i = 0; i < GlobalSize(block) / sizeof(wchar_t) && units[i]; ++i) {
      text->push_back(static_cast<char>(units[i]));
    }
    GlobalUnlock(block);
  }
  CloseClipboard();
  return text;
}

std::string Arriving(std::string characters) {
  if (!characters.empty())
    characters.pop_back();
  return characters;
}

}  // namespace clipboard

#else

#include <poll.h>
#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#include <memory>

namespace clipboard {

namespace {

constexpr int kLimit = 10'000;

struct FreeDeleter {
  void operator()(void* block) const { std::free(block); }
};
template <class T>
using Reply = std::unique_ptr<T, FreeDeleter>;

// A connection with a window.
class Client {
 public:
  Client() : _x(xcb_connect(nullptr, nullptr)) {
    if (!IsConnected())
      return;
    window = xcb_generate_id(_x);
    xcb_create_window(_x, XCB_COPY_FROM_PARENT, window,
                      xcb_setup_roots_iterator(xcb_get_setup(_x)).data->root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    selection = Atom("CLIPBOARD");
  }
  ~Client() { xcb_disconnect(_x); }
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;

  bool IsConnected() const { return !xcb_connection_has_error(_x); }
  xcb_connection_t* X() const { return _x; }

  xcb_atom_t Atom(const char* name) {
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        _x, xcb_intern_atom(_x, 0, static_cast<uint16_t>(std::strlen(name)), name), nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
  }

  std::string AtomName(xcb_atom_t atom) {
    const Reply<xcb_get_atom_name_reply_t> reply(
        xcb_get_atom_name_reply(_x, xcb_get_atom_name(_x, atom), nullptr));
    return reply ? std::string(xcb_get_atom_name_name(reply.get()),
                               static_cast<size_t>(xcb_get_atom_name_name_length(reply.get())))
                 : std::string();
  }

  // The property that the owner wrote; none if it refused, or did not answer within the limit.
  xcb_atom_t WaitForAnswer() {
    for (;;) {
      while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(_x)}) {
        if ((event->response_type & 0x7F) == XCB_SELECTION_NOTIFY)
          return reinterpret_cast<const xcb_selection_notify_event_t*>(event.get())->property;
      }
      pollfd wait{xcb_get_file_descriptor(_x), POLLIN, 0};
      if (poll(&wait, 1, kLimit) <= 0)
        return XCB_ATOM_NONE;
    }
  }

  std::string Read(xcb_atom_t property) {
    constexpr uint32_t kWhole = 0x1FFFFFFF;
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        _x, xcb_get_property(_x, 1, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, kWhole),
        nullptr));
    if (!reply)
      return std::string();
    const void* const value = xcb_get_property_value(reply.get());
    const auto length = static_cast<size_t>(xcb_get_property_value_length(reply.get()));
    if (reply->type != XCB_ATOM_ATOM)
      return std::string(static_cast<const char*>(value), length);
    std::string names;
    for (size_t i = 0; i < length / sizeof(xcb_atom_t); ++i) {
      names += AtomName(static_cast<const xcb_atom_t*>(value)[i]) + " ";
    }
    return names;
  }

  xcb_window_t window = XCB_WINDOW_NONE;
  xcb_atom_t selection = XCB_ATOM_NONE;

 private:
  xcb_connection_t* const _x;
};

}  // namespace

bool Exists() {
  return Client().IsConnected();
}

std::optional<std::string> Text() {
  return Text("UTF8_STRING");
}

std::string Arriving(std::string characters) {
  return characters;
}

struct Reader::Connection {
  Client client;
};

Reader::Reader() : _connection(std::make_unique<Connection>()) {}

Reader::~Reader() = default;

std::optional<std::string> Reader::Text(const char* target) {
  Client& client = _connection->client;
  if (!client.IsConnected())
    return std::nullopt;
  xcb_convert_selection(client.X(), client.window, client.selection, client.Atom(target),
                        client.Atom("ORBCEF_TEST"), XCB_CURRENT_TIME);
  xcb_flush(client.X());
  const xcb_atom_t property = client.WaitForAnswer();
  if (property == XCB_ATOM_NONE)
    return std::nullopt;
  return client.Read(property);
}

std::optional<std::string> Text(const char* target) {
  return Reader().Text(target);
}

struct OtherOwner::Connection {
  Client client;
};

OtherOwner::OtherOwner() : _connection(std::make_unique<Connection>()) {
  Client& client = _connection->client;
  xcb_set_selection_owner(client.X(), client.window, client.selection, XCB_CURRENT_TIME);
  // The answer to a question comes after what was done before it.
  client.Atom("ORBCEF_TEST");
}

OtherOwner::~OtherOwner() = default;

}  // namespace clipboard

#endif
