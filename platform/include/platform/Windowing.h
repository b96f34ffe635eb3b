// What the module does to native windows: move, size, repaint and measure them.
//
// Any thread may call these functions. Windows belong to the caller. A window that is gone, or a
// system without a display, makes a function answer false (or 0) and leaves its result untouched;
// it never ends the process. Coordinates and sizes are device pixels.
#ifndef PLATFORM_WINDOWING_H
#define PLATFORM_WINDOWING_H

#include <cstdint>

namespace platform {

// The system's window handle as a number: an X11 window id or the bits of an HWND. 0 is no window.
using WindowHandle = std::uintptr_t;

// Turns the system's own handle type, a number or a pointer, into a WindowHandle and back.
template <class Native>
WindowHandle ToWindowHandle(Native native) {
  return (WindowHandle)native;
}
template <class Native>
Native FromWindowHandle(WindowHandle window) {
  return (Native)window;
}

struct Point {
  int x = 0;
  int y = 0;
};

struct Rect {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
};

// Moves and sizes a window in its parent without a change of the stacking order. Where the system
// knows no empty windows, a width or height below 1 becomes 1.
bool MoveResize(WindowHandle window, int x, int y, int width, int height);

// Makes a window as small as the system allows: nothing, or one pixel. It keeps its place, its
// order and its activation.
bool ShrinkToNothing(WindowHandle window);

// Asks for a repaint of the whole window with its background.
bool Invalidate(WindowHandle window);

// The inside of the window in its own coordinates: x and y are 0.
bool ClientRect(WindowHandle window, Rect& rect);

// The outline on the screen of the top-level window that the window lies in.
bool RootRect(WindowHandle window, Rect& rect);

// The outline of the whole desktop.
bool DesktopRect(Rect& rect);

// Turns a point of the window's inside into a point of the screen.
bool MapToScreen(WindowHandle window, Point& point);

// Destroys a view's window that the engine would leave to the host. Only on the thread that made
// it. False, with nothing done, where the engine destroys it itself.
bool EndViewWindow(WindowHandle window);

// The child of the window that is on top of its other children, 0 if there is none.
WindowHandle FirstChild(WindowHandle window);

}  // namespace platform

#endif  // PLATFORM_WINDOWING_H
