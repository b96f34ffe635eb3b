#include "platform/Windowing.h"

#if !defined(_WIN32)

#include <poll.h>
#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "ExpectRect.h"
#include "FreshProcess.h"

namespace {

using platform::Point;
using platform::Rect;
using platform::WindowHandle;

struct FreeDeleter {
  void operator()(void* block) const { std::free(block); }
};

// A client of its own that makes windows, as a host does.
class PlatformWindowingTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!std::getenv("DISPLAY"))
      GTEST_SKIP() << "There is no DISPLAY.";
    _x = xcb_connect(nullptr, nullptr);
    ASSERT_EQ(0, xcb_connection_has_error(_x)) << "The display does not answer.";
    root = xcb_setup_roots_iterator(xcb_get_setup(_x)).data->root;
  }
  void TearDown() override {
    if (_x)
      xcb_disconnect(_x);
  }

  xcb_window_t NewWindow(xcb_window_t parent, int x, int y, int width, int height, int border = 0) {
    const xcb_window_t window = xcb_generate_id(_x);
    const std::uint32_t values[] = {1, XCB_EVENT_MASK_EXPOSURE};
    xcb_create_window(_x, XCB_COPY_FROM_PARENT, window, parent, static_cast<std::int16_t>(x),
                      static_cast<std::int16_t>(y), static_cast<std::uint16_t>(width),
                      static_cast<std::uint16_t>(height), static_cast<std::uint16_t>(border),
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    Sync();
    return window;
  }
  void Map(xcb_window_t window) {
    xcb_map_window(_x, window);
    xcb_flush(_x);
  }
  void Destroy(xcb_window_t window) {
    xcb_destroy_window(_x, window);
    Sync();
  }
  // Returns when the server has done everything so far.
  void Sync() {
    const std::unique_ptr<xcb_get_input_focus_reply_t, FreeDeleter> reply(
        xcb_get_input_focus_reply(_x, xcb_get_input_focus(_x), nullptr));
    ASSERT_TRUE(reply);
  }
  Rect Geometry(xcb_window_t window) {
    const std::unique_ptr<xcb_get_geometry_reply_t, FreeDeleter> reply(
        xcb_get_geometry_reply(_x, xcb_get_geometry(_x, window), nullptr));
    return reply ? Rect{reply->x, reply->y, reply->width, reply->height} : Rect{};
  }
  // Waits for a repaint of the whole window; false after ten seconds.
  bool WaitForExpose(xcb_window_t window, int width, int height) {
    for (;;) {
      while (auto event =
                 std::unique_ptr<xcb_generic_event_t, FreeDeleter>(xcb_poll_for_event(_x))) {
        if ((event->response_type & 0x7F) != XCB_EXPOSE)
          continue;
        const auto* expose = reinterpret_cast<const xcb_expose_event_t*>(event.get());
        if (expose->window == window && expose->width == width && expose->height == height)
          return true;
      }
      pollfd wait{xcb_get_file_descriptor(_x), POLLIN, 0};
      if (poll(&wait, 1, 10000) <= 0)
        return false;
    }
  }

  xcb_window_t root = XCB_WINDOW_NONE;

 private:
  xcb_connection_t* _x = nullptr;
};

TEST_F(PlatformWindowingTest, MoveResizePlacesAWindowInItsParent) {
  const xcb_window_t top = NewWindow(root, 10, 20, 300, 200);
  const xcb_window_t child = NewWindow(top, 0, 0, 5, 5);
  EXPECT_TRUE(platform::MoveResize(child, -7, 8, 90, 100));
  EXPECT_RECT(-7, 8, 90, 100, Geometry(child));
}

TEST_F(PlatformWindowingTest, ASizeOfZeroOrLessBecomesOne) {
  const xcb_window_t window = NewWindow(root, 10, 20, 300, 200);
  EXPECT_TRUE(platform::MoveResize(window, 1, 2, 0, -5));
  EXPECT_RECT(1, 2, 1, 1, Geometry(window));
}

TEST_F(PlatformWindowingTest, NumbersOutsideTheProtocolStayAtItsEdge) {
  const xcb_window_t window = NewWindow(root, 10, 20, 300, 200);
  EXPECT_TRUE(platform::MoveResize(window, -100000, 100000, 100000, 65536));
  EXPECT_RECT(-32768, 32767, 32767, 32767, Geometry(window));
}

TEST_F(PlatformWindowingTest, AShrunkenWindowKeepsItsPlace) {
  const xcb_window_t window = NewWindow(root, 10, 20, 300, 200);
  EXPECT_TRUE(platform::ShrinkToNothing(window));
  EXPECT_RECT(10, 20, 1, 1, Geometry(window));
}

TEST_F(PlatformWindowingTest, InvalidateAsksForARepaintOfTheWholeWindow) {
  const xcb_window_t window = NewWindow(root, 0, 0, 120, 80);
  Map(window);
  ASSERT_TRUE(WaitForExpose(window, 120, 80));
  EXPECT_TRUE(platform::Invalidate(window));
  EXPECT_TRUE(WaitForExpose(window, 120, 80));
}

TEST_F(PlatformWindowingTest, TheClientRectIsTheInsideWithoutPlace) {
  const xcb_window_t window = NewWindow(root, 10, 20, 300, 200, 3);
  Rect rect;
  ASSERT_TRUE(platform::ClientRect(window, rect));
  EXPECT_RECT(0, 0, 300, 200, rect);
}

TEST_F(PlatformWindowingTest, TheRootRectIsTheOutlineOfTheTopLevelWindow) {
  const xcb_window_t top = NewWindow(root, 10, 20, 300, 200, 3);
  const xcb_window_t middle = NewWindow(top, 30, 40, 100, 100);
  const xcb_window_t inner = NewWindow(middle, 5, 6, 50, 50);
  for (const xcb_window_t window : {top, middle, inner}) {
    Rect rect;
    ASSERT_TRUE(platform::RootRect(window, rect));
    EXPECT_RECT(10, 20, 306, 206, rect);
  }
}

TEST_F(PlatformWindowingTest, TheDesktopIsTheRootWindow) {
  Rect rect;
  ASSERT_TRUE(platform::DesktopRect(rect));
  const Rect expected = Geometry(root);
  EXPECT_RECT(0, 0, expected.width, expected.height, rect);
  EXPECT_GT(rect.width, 0);
}

TEST_F(PlatformWindowingTest, APointIsMappedThroughAllParents) {
  const xcb_window_t top = NewWindow(root, 10, 20, 300, 200, 3);
  const xcb_window_t child = NewWindow(top, 30, 40, 100, 100);
  Point point{1, 2};
  ASSERT_TRUE(platform::MapToScreen(child, point));
  // The border of the outer window counts.
  EXPECT_EQ(10 + 3 + 30 + 1, point.x);
  EXPECT_EQ(20 + 3 + 40 + 2, point.y);
}

TEST_F(PlatformWindowingTest, TheFirstChildIsTheOneOnTop) {
  const xcb_window_t top = NewWindow(root, 10, 20, 300, 200);
  EXPECT_EQ(0u, platform::FirstChild(top));
  NewWindow(top, 0, 0, 5, 5);
  const xcb_window_t upper = NewWindow(top, 0, 0, 5, 5);
  EXPECT_EQ(upper, platform::FirstChild(top));
}

TEST_F(PlatformWindowingTest, AWindowThatIsGoneFailsAndLeavesResultsAlone) {
  const xcb_window_t window = NewWindow(root, 10, 20, 300, 200);
  Destroy(window);
  EXPECT_FALSE(platform::MoveResize(window, 1, 2, 3, 4));
  EXPECT_FALSE(platform::ShrinkToNothing(window));
  EXPECT_FALSE(platform::Invalidate(window));
  Rect rect{1, 2, 3, 4};
  EXPECT_FALSE(platform::ClientRect(window, rect));
  EXPECT_FALSE(platform::RootRect(window, rect));
  EXPECT_RECT(1, 2, 3, 4, rect);
  Point point{5, 6};
  EXPECT_FALSE(platform::MapToScreen(window, point));
  EXPECT_EQ(5, point.x);
  EXPECT_EQ(0u, platform::FirstChild(window));
  // The connection is as good as before.
  EXPECT_TRUE(platform::DesktopRect(rect));
}

TEST_F(PlatformWindowingTest, NoWindowFails) {
  Rect rect;
  Point point;
  EXPECT_FALSE(platform::MoveResize(0, 1, 2, 3, 4));
  EXPECT_FALSE(platform::ShrinkToNothing(0));
  EXPECT_FALSE(platform::Invalidate(0));
  EXPECT_FALSE(platform::ClientRect(0, rect));
  EXPECT_FALSE(platform::RootRect(0, rect));
  EXPECT_FALSE(platform::MapToScreen(0, point));
  EXPECT_EQ(0u, platform::FirstChild(0));
}

TEST_F(PlatformWindowingTest, ThreadsMayCallAtTheSameTime) {
  const xcb_window_t window = NewWindow(root, 0, 0, 10, 10);
  std::atomic<int> failures{0};
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&, i] {
      for (int turn = 0; turn < 100; ++turn) {
        Rect rect;
        if (!platform::MoveResize(window, i, turn, 10 + i, 10) ||
            !platform::ClientRect(window, rect) || rect.height != 10)
          ++failures;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(0, failures);
}

TEST(PlatformWindowingWithoutDisplayTest, EverythingFailsQuietly) {
  fresh_process::Run([] {
    unsetenv("DISPLAY");
    Rect rect{1, 2, 3, 4};
    EXPECT_FALSE(platform::DesktopRect(rect));
    EXPECT_FALSE(platform::MoveResize(1, 1, 2, 3, 4));
    EXPECT_RECT(1, 2, 3, 4, rect);
  });
}

TEST(PlatformWindowHandleTest, ANativeHandleKeepsItsBits) {
  int object = 0;
  EXPECT_EQ(&object, platform::FromWindowHandle<int*>(platform::ToWindowHandle(&object)));
  EXPECT_EQ(77ul, platform::FromWindowHandle<unsigned long>(platform::ToWindowHandle(77ul)));
}

}  // namespace

#endif  // !defined(_WIN32)
