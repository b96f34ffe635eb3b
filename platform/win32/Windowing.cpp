#include "platform/Windowing.h"

#include <windows.h>

namespace platform {

namespace {

constexpr UINT kMoveResize = SWP_NOZORDER;
constexpr UINT kShrink = SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE;
static_assert(kMoveResize == 4 && kShrink == 22);

HWND Native(WindowHandle window) {
  return FromWindowHandle<HWND>(window);
}

// Some functions take the null handle for the desktop, which is no window of a caller's.
bool Exists(WindowHandle window) {
  return IsWindow(Native(window)) != FALSE;
}

Rect ToRect(const RECT& rect) {
  return Rect{static_cast<int>(rect.left), static_cast<int>(rect.top),
              static_cast<int>(rect.right - rect.left), static_cast<int>(rect.bottom - rect.top)};
}

bool Outline(HWND window, Rect& rect) {
  RECT found{};
  if (!GetWindowRect(window, &found))
    return false;
  rect = ToRect(found);
  return true;
}

}  // namespace

bool MoveResize(WindowHandle window, int x, int y, int width, int height) {
  return SetWindowPos(Native(window), nullptr, x, y, width, height, kMoveResize) != FALSE;
}

bool ShrinkToNothing(WindowHandle window) {
  return SetWindowPos(Native(window), nullptr, 0, 0, 0, 0, kShrink) != FALSE;
}

bool Invalidate(WindowHandle window) {
  return Exists(window) && InvalidateRect(Native(window), nullptr, TRUE) != FALSE;
}

bool ClientRect(WindowHandle window, Rect& rect) {
  RECT found{};
  if (!GetClientRect(Native(window), &found))
    return false;
  rect = ToRect(found);
  return true;
}

bool RootRect(WindowHandle window, Rect& rect) {
  return Outline(GetAncestor(Native(window), GA_ROOT), rect);
}

bool DesktopRect(Rect& rect) {
  return Outline(GetDesktopWindow(), rect);
}

bool MapToScreen(WindowHandle window, Point& point) {
  if (!Exists(window))
    return false;
  POINT mapped{point.x, point.y};
  // The result is the distance that the point was moved by, which may be none.
  SetLastError(ERROR_SUCCESS);
  if (!MapWindowPoints(Native(window), nullptr, &mapped, 1) && GetLastError() != ERROR_SUCCESS)
    return false;
  point = Point{static_cast<int>(mapped.x), static_cast<int>(mapped.y)};
  return true;
}

bool EndViewWindow(WindowHandle window) {
  return DestroyWindow(Native(window)) != FALSE;
}

WindowHandle FirstChild(WindowHandle window) {
  return ToWindowHandle(GetWindow(Native(window), GW_CHILD));
}

}  // namespace platform
