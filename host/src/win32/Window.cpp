#include "Window.h"

#include <windows.h>

#include <cstddef>
#include <utility>

#include "Wide.h"

namespace host {
namespace {

constexpr wchar_t kClassName[] = L"orbcef_host";
constexpr DWORD kFrameStyle = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;
constexpr DWORD kPlaceStyle = WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN;
// IDC_ARROW, which has a narrow type unless the whole program is told otherwise.
constexpr WORD kArrow = 32512;
constexpr UINT_PTR kEndTimer = 1;
constexpr UINT kEndInterval = 20;

HWND ToNative(void* window) {
  return static_cast<HWND>(window);
}

// What the screen shows of a window's inside, as rows of four bytes from top to bottom.
bool CopyFromScreen(HWND window, int width, int height, std::vector<std::uint8_t>& bytes) {
  POINT corner = {0, 0};
  ClientToScreen(window, &corner);
  // Other processes paint into windows of their own, so only the screen has the whole.
  const HDC screen = GetDC(nullptr);
  const HDC memory = CreateCompatibleDC(screen);
  const HBITMAP bitmap = CreateCompatibleBitmap(screen, width, height);
  const HGDIOBJ before = SelectObject(memory, bitmap);
  const bool copied =
      BitBlt(memory, 0, 0, width, height, screen, corner.x, corner.y, SRCCOPY) != FALSE;
  SelectObject(memory, before);
  BITMAPINFO format = {};
  format.bmiHeader.biSize = sizeof(format.bmiHeader);
  format.bmiHeader.biWidth = width;
  // Below zero: the first row is the highest.
  format.bmiHeader.biHeight = -height;
  format.bmiHeader.biPlanes = 1;
  format.bmiHeader.biBitCount = 32;
  bytes.resize(static_cast<std::size_t>(width) * height * 4);
  const int rows = GetDIBits(memory, bitmap, 0, static_cast<UINT>(height), bytes.data(), &format,
                             DIB_RGB_COLORS);
  DeleteObject(bitmap);
  DeleteDC(memory);
  ReleaseDC(nullptr, screen);
  return copied && rows == height;
}

}  // namespace

// The top-level window, and in it the place that views become children of: a view that was closed
// stays until its parent is destroyed, and that must not be the window itself.
struct Window::Native {
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_NCCREATE) {
      const auto* creation = reinterpret_cast<const CREATESTRUCTW*>(lparam);
      SetWindowLongPtrW(window, GWLP_USERDATA,
                        reinterpret_cast<LONG_PTR>(creation->lpCreateParams));
    }
    auto* self = reinterpret_cast<Native*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self && self->Handle(message, lparam)) {
      return 0;
    }
    return DefWindowProcW(window, message, wparam, lparam);
  }

  bool Handle(UINT message, LPARAM lparam) {
    switch (message) {
      case WM_SIZE:
        Resize(LOWORD(lparam), HIWORD(lparam));
        return true;
      case WM_CLOSE:
        // The engine sends the same request of the user for the window around a closed view.
        if (ending) {
          DestroyWindow(std::exchange(place, nullptr));
        } else {
          listener.on_close_requested();
        }
        return true;
      case WM_SETFOCUS:
        listener.on_focused();
        return true;
      case WM_TIMER:
        LookForTheEnd();
        return true;
      default:
        return false;
    }
  }

  void Resize(int new_width, int new_height) {
    // An iconic window has no size, which is not one for a view.
    if (!place || new_width == 0 || (new_width == width && new_height == height)) {
      return;
    }
    width = new_width;
    height = new_height;
    SetWindowPos(place, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    listener.on_resized(width, height);
  }

  // Windows of another thread end without a message to this one.
  void LookForTheEnd() {
    if (ending && !IsWindow(ending)) {
      KillTimer(frame, kEndTimer);
      listener.on_view_gone(reinterpret_cast<std::uintptr_t>(std::exchange(ending, nullptr)));
    }
  }

  Listener listener;
  HWND frame = nullptr;
  HWND place = nullptr;
  // The view that was closed.
  HWND ending = nullptr;
  int width = 0;
  int height = 0;
};

Window::Window() : _native(std::make_unique<Native>()) {}

Window::~Window() {
  if (_native->frame) {
    SetWindowLongPtrW(_native->frame, GWLP_USERDATA, 0);
    DestroyWindow(_native->frame);
  }
}

bool Window::Open(const std::string& title, int width, int height, Listener listener) {
  const HINSTANCE instance = GetModuleHandleW(nullptr);
  WNDCLASSEXW description = {};
  description.cbSize = sizeof(description);
  description.lpfnWndProc = &Native::Procedure;
  description.hInstance = instance;
  description.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(kArrow));
  description.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
  description.lpszClassName = kClassName;
  RegisterClassExW(&description);

  Native& native = *_native;
  native.listener = std::move(listener);
  native.width = width;
  native.height = height;
  RECT outer = {0, 0, width, height};
  AdjustWindowRectEx(&outer, kFrameStyle, FALSE, 0);
  native.frame = CreateWindowExW(0, kClassName, ToWide(title).c_str(), kFrameStyle, CW_USEDEFAULT,
                                 CW_USEDEFAULT, outer.right - outer.left, outer.bottom - outer.top,
                                 nullptr, nullptr, instance, &native);
  if (!native.frame) {
    return false;
  }
  // Without the object: what comes to the place is the system's to handle.
  native.place = CreateWindowExW(0, kClassName, L"", kPlaceStyle, 0, 0, width, height, native.frame,
                                 nullptr, instance, nullptr);
  ShowWindow(native.frame, SW_SHOW);
  return native.place != nullptr;
}

int Window::Descriptor() const {
  return -1;
}

void Window::Pump() {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

void* Window::Handle() const {
  return _native->place;
}

void Window::SetTitle(const std::string& title) {
  SetWindowTextW(_native->frame, ToWide(title).c_str());
}

void Window::Focus(void* view) {
  if (IsWindowVisible(ToNative(view))) {
    SetFocus(ToNative(view));
  }
}

void Window::ExpectEnd(void* view) {
  _native->ending = ToNative(view);
  SetTimer(_native->frame, kEndTimer, kEndInterval, nullptr);
}

Picture Window::Capture() {
  Picture picture;
  std::vector<std::uint8_t> bytes;
  const Native& native = *_native;
  if (!CopyFromScreen(native.place, native.width, native.height, bytes)) {
    return picture;
  }
  picture.width = native.width;
  picture.height = native.height;
  picture.pixels.reserve(bytes.size() / 4 * 3);
  // The system's order is blue, green, red and a byte without meaning.
  for (std::size_t i = 0; i + 3 < bytes.size(); i += 4) {
    picture.pixels.insert(picture.pixels.end(), {bytes[i + 2], bytes[i + 1], bytes[i]});
  }
  return picture;
}

}  // namespace host
