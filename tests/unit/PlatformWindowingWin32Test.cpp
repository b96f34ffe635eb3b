// The windowing functions on Windows, as far as they differ from those on X11.
#include "platform/Windowing.h"

#if defined(_WIN32)

#include <windows.h>

#include <gtest/gtest.h>

#include "ExpectRect.h"

namespace {

using platform::Point;
using platform::Rect;
using platform::ToWindowHandle;

// The system's own class of plain windows.
constexpr wchar_t kWindowClass[] = L"STATIC";

class PlatformWindowingWin32Test : public testing::Test {
 protected:
  PlatformWindowingWin32Test()
      : top(CreateWindowExW(0, kWindowClass, L"", WS_POPUP, 10, 20, 300, 200, nullptr, nullptr,
                            nullptr, nullptr)) {}
  ~PlatformWindowingWin32Test() override { DestroyWindow(top); }
  void SetUp() override { ASSERT_NE(nullptr, top); }

  static HWND Child(HWND parent, int x, int y, int width, int height) {
    return CreateWindowExW(0, kWindowClass, L"", WS_CHILD, x, y, width, height, parent, nullptr,
                           nullptr, nullptr);
  }
  // In the coordinates of the screen.
  static Rect Outline(HWND window) {
    RECT rect{};
    EXPECT_TRUE(GetWindowRect(window, &rect));
    return Rect{static_cast<int>(rect.left), static_cast<int>(rect.top),
                static_cast<int>(rect.right - rect.left), static_cast<int>(rect.bottom - rect.top)};
  }

  const HWND top;
};

TEST_F(PlatformWindowingWin32Test, MoveResizePlacesAWindowInItsParentAndKeepsTheOrder) {
  const HWND upper = Child(top, 0, 0, 5, 5);
  const HWND lower = Child(top, 0, 0, 5, 5);
  ASSERT_TRUE(SetWindowPos(lower, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE));
  EXPECT_TRUE(platform::MoveResize(ToWindowHandle(lower), -7, 8, 90, 100));
  EXPECT_RECT(10 - 7, 20 + 8, 90, 100, Outline(lower));
  EXPECT_EQ(ToWindowHandle(upper), platform::FirstChild(ToWindowHandle(top)));
}

TEST_F(PlatformWindowingWin32Test, AShrunkenWindowIsEmptyAndKeepsItsPlace) {
  const HWND child = Child(top, 30, 40, 50, 60);
  EXPECT_TRUE(platform::ShrinkToNothing(ToWindowHandle(child)));
  EXPECT_RECT(40, 60, 0, 0, Outline(child));
}

TEST_F(PlatformWindowingWin32Test, InvalidateAsksForARepaintOfTheWholeWindow) {
  ShowWindow(top, SW_SHOWNOACTIVATE);
  ASSERT_TRUE(ValidateRect(top, nullptr));
  ASSERT_FALSE(GetUpdateRect(top, nullptr, FALSE));
  EXPECT_TRUE(platform::Invalidate(ToWindowHandle(top)));
  RECT update{};
  ASSERT_TRUE(GetUpdateRect(top, &update, FALSE));
  EXPECT_EQ(300, update.right);
  EXPECT_EQ(200, update.bottom);
}

TEST_F(PlatformWindowingWin32Test, RectanglesAndPointsAreMeasuredThroughAllParents) {
  const HWND child = Child(top, 30, 40, 100, 100);
  const HWND inner = Child(child, 5, 6, 50, 60);
  Rect rect;
  ASSERT_TRUE(platform::ClientRect(ToWindowHandle(inner), rect));
  EXPECT_RECT(0, 0, 50, 60, rect);
  ASSERT_TRUE(platform::RootRect(ToWindowHandle(inner), rect));
  EXPECT_RECT(10, 20, 300, 200, rect);
  Point point{1, 2};
  ASSERT_TRUE(platform::MapToScreen(ToWindowHandle(inner), point));
  EXPECT_EQ(10 + 30 + 5 + 1, point.x);
  EXPECT_EQ(20 + 40 + 6 + 2, point.y);
}

TEST_F(PlatformWindowingWin32Test, AWindowAtTheOriginMapsToo) {
  ASSERT_TRUE(platform::MoveResize(ToWindowHandle(top), 0, 0, 10, 10));
  Point point{3, 4};
  EXPECT_TRUE(platform::MapToScreen(ToWindowHandle(top), point));
  EXPECT_EQ(3, point.x);
  EXPECT_EQ(4, point.y);
}

TEST_F(PlatformWindowingWin32Test, TheDesktopHasTheSizeOfTheScreen) {
  Rect rect;
  ASSERT_TRUE(platform::DesktopRect(rect));
  EXPECT_RECT(0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN), rect);
  EXPECT_GT(rect.width, 0);
}

TEST_F(PlatformWindowingWin32Test, AWindowThatIsGoneAndNoWindowFail) {
  const HWND gone = Child(top, 0, 0, 5, 5);
  DestroyWindow(gone);
  for (const platform::WindowHandle window : {ToWindowHandle(gone), ToWindowHandle(HWND())}) {
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
  }
}

}  // namespace

#endif  // defined(_WIN32)
