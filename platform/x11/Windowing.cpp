#include "platform/Windowing.h"

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <mutex>

namespace platform {

namespace {

// Positions and sizes are 16-bit numbers in the X protocol.
constexpr int kLeast = -32768;
constexpr int kMost = 32767;

constexpr xcb_window_t kNoWindow = XCB_WINDOW_NONE;

struct FreeDeleter {
  void operator()(void* block) const { std::free(block); }
};
template <class T>
using Reply = std::unique_ptr<T, FreeDeleter>;

// The module's own connection, made on first use. XCB gives each request's error to the caller
// who asks for it: nothing here touches the error handlers of a host that uses Xlib, and a window
// that is gone cannot end the process.
class Connection {
 public:
  ~Connection() { Disconnect(); }

  // Null without a usable display. A connection that broke is replaced.
  xcb_connection_t* Get() {
    if (_connection && xcb_connection_has_error(_connection))
      Disconnect();
    if (!_connection) {
      _connection = xcb_connect(nullptr, &_screen);
      // The object is never null and must be freed even if there is no connection.
      if (xcb_connection_has_error(_connection)) {
        Disconnect();
        return nullptr;
      }
    }
    // Some events go to every client, wanted or not.
    while (Reply<xcb_generic_event_t>(xcb_poll_for_queued_event(_connection))) {
    }
    return _connection;
  }

  xcb_window_t DefaultRoot() {
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(_connection));
    for (int i = 0; i < _screen && screens.rem > 1; ++i) xcb_screen_next(&screens);
    return screens.rem > 0 ? screens.data->root : kNoWindow;
  }

 private:
  void Disconnect() {
    if (_connection)
      xcb_disconnect(_connection);
    _connection = nullptr;
  }

  xcb_connection_t* _connection = nullptr;
  int _screen = 0;
};

// One connection for all threads, so their calls come one after the other.
std::mutex& Mutex() {
  static std::mutex mutex;
  return mutex;
}

// Only under Mutex.
Connection& TheConnection() {
  static Connection connection;
  return connection;
}

bool Succeeded(xcb_connection_t* x, xcb_void_cookie_t cookie) {
  return !Reply<xcb_generic_error_t>(xcb_request_check(x, cookie)) && !xcb_connection_has_error(x);
}

Reply<xcb_get_geometry_reply_t> Geometry(xcb_connection_t* x, xcb_window_t window) {
  return Reply<xcb_get_geometry_reply_t>(
      xcb_get_geometry_reply(x, xcb_get_geometry(x, window), nullptr));
}

Reply<xcb_query_tree_reply_t> Tree(xcb_connection_t* x, xcb_window_t window) {
  return Reply<xcb_query_tree_reply_t>(xcb_query_tree_reply(x, xcb_query_tree(x, window), nullptr));
}

// The ancestor just below the root, the window itself if it is that or the root.
xcb_window_t TopLevel(xcb_connection_t* x, xcb_window_t window) {
  for (;;) {
    const auto tree = Tree(x, window);
    if (!tree)
      return kNoWindow;
    if (tree->parent == tree->root || tree->parent == kNoWindow)
      return window;
    window = tree->parent;
  }
}

// With its border.
bool Outline(xcb_connection_t* x, xcb_window_t window, Rect& rect) {
  const auto geometry = Geometry(x, window);
  if (!geometry)
    return false;
  rect = Rect{geometry->x, geometry->y, geometry->width + 2 * geometry->border_width,
              geometry->height + 2 * geometry->border_width};
  return true;
}

// What the work answers for the window, under the lock and with a connection; the false value
// without a window or a connection.
template <class Work>
auto ForWindow(WindowHandle window, Work work) -> decltype(work(nullptr, kNoWindow)) {
  std::lock_guard<std::mutex> guard(Mutex());
  xcb_connection_t* connection = TheConnection().Get();
  if (!connection || !window)
    return {};
  return work(connection, static_cast<xcb_window_t>(window));
}

}  // namespace

bool MoveResize(WindowHandle window, int x, int y, int width, int height) {
  return ForWindow(window, [=](xcb_connection_t* connection, xcb_window_t id) {
    const std::uint32_t values[] = {static_cast<std::uint32_t>(std::clamp(x, kLeast, kMost)),
                                    static_cast<std::uint32_t>(std::clamp(y, kLeast, kMost)),
                                    static_cast<std::uint32_t>(std::clamp(width, 1, kMost)),
                                    static_cast<std::uint32_t>(std::clamp(height, 1, kMost))};
    return Succeeded(connection, xcb_configure_window_checked(
                                     connection, id,
                                     XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y |
                                         XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                                     values));
  });
}

bool ShrinkToNothing(WindowHandle window) {
  return ForWindow(window, [](xcb_connection_t* connection, xcb_window_t id) {
    const std::uint32_t values[] = {1, 1};
    return Succeeded(connection, xcb_configure_window_checked(
                                     connection, id,
                                     XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, values));
  });
}

bool Invalidate(WindowHandle window) {
  return ForWindow(window, [](xcb_connection_t* connection, xcb_window_t id) {
    // A width and height of 0 reach to the window's edges.
    return Succeeded(connection, xcb_clear_area_checked(connection, 1, id, 0, 0, 0, 0));
  });
}

bool ClientRect(WindowHandle window, Rect& rect) {
  return ForWindow(window, [&](xcb_connection_t* connection, xcb_window_t id) {
    const auto geometry = Geometry(connection, id);
    if (!geometry)
      return false;
    rect = Rect{0, 0, geometry->width, geometry->height};
    return true;
  });
}

bool RootRect(WindowHandle window, Rect& rect) {
  return ForWindow(window, [&](xcb_connection_t* connection, xcb_window_t id) {
    const xcb_window_t top_level = TopLevel(connection, id);
    return top_level != kNoWindow && Outline(connection, top_level, rect);
  });
}

bool DesktopRect(Rect& rect) {
  std::lock_guard<std::mutex> guard(Mutex());
  xcb_connection_t* connection = TheConnection().Get();
  return connection && Outline(connection, TheConnection().DefaultRoot(), rect);
}

bool MapToScreen(WindowHandle window, Point& point) {
  return ForWindow(window, [&](xcb_connection_t* connection, xcb_window_t id) {
    const auto geometry = Geometry(connection, id);
    if (!geometry)
      return false;
    // The window's origin is translated and the point added, since the point may exceed 16 bits.
    const Reply<xcb_translate_coordinates_reply_t> origin(xcb_translate_coordinates_reply(
        connection, xcb_translate_coordinates(connection, id, geometry->root, 0, 0), nullptr));
    if (!origin)
      return false;
    point.x += origin->dst_x;
    point.y += origin->dst_y;
    return true;
  });
}

bool EndViewWindow(WindowHandle window) {
  return false;
}

WindowHandle FirstChild(WindowHandle window) {
  return ForWindow(window, [](xcb_connection_t* connection, xcb_window_t id) -> WindowHandle {
    const auto tree = Tree(connection, id);
    // The list goes from the bottom to the top.
    const int count = tree ? xcb_query_tree_children_length(tree.get()) : 0;
    return count > 0 ? xcb_query_tree_children(tree.get())[count - 1] : 0;
  });
}

}  // namespace platform
