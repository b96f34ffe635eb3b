#include "Window.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <cstdint>
#include <cstdio>
#include <utility>

namespace host {
namespace {

// The engine's windows come and go on its own threads, so a request on one of them may come too
// late. Xlib would end the process for it.
int ReportError(Display* display, XErrorEvent* error) {
  char text[256] = {};
  XGetErrorText(display, error->error_code, text, sizeof(text));
  std::fprintf(stderr, "[x11] %s (request %d)\n", text, error->request_code);
  return 0;
}

std::uint8_t Channel(unsigned long pixel, unsigned long mask) {
  if (mask == 0) {
    return 0;
  }
  while ((mask & 1) == 0) {
    mask >>= 1;
    pixel >>= 1;
  }
  return static_cast<std::uint8_t>((pixel & mask) * 255 / mask);
}

}  // namespace

Window::~Window() {
  if (_display) {
    XDestroyWindow(_display, _window);
    XCloseDisplay(_display);
  }
}

bool Window::Open(const std::string& title, int width, int height, Listener listener) {
  _display = XOpenDisplay(nullptr);
  if (!_display) {
    return false;
  }
  XSetErrorHandler(&ReportError);
  _listener = std::move(listener);
  _width = width;
  _height = height;
  const int screen = DefaultScreen(_display);
  const unsigned long white = WhitePixel(_display, screen);
  _window = XCreateSimpleWindow(_display, RootWindow(_display, screen), 0, 0,
                                static_cast<unsigned>(width), static_cast<unsigned>(height), 0,
                                white, white);
  XSelectInput(_display, _window, StructureNotifyMask | SubstructureNotifyMask | FocusChangeMask);
  _delete_atom = XInternAtom(_display, "WM_DELETE_WINDOW", False);
  XSetWMProtocols(_display, _window, &_delete_atom, 1);
  SetTitle(title);
  XMapWindow(_display, _window);
  XFlush(_display);
  return true;
}

int Window::Descriptor() const {
  return ConnectionNumber(_display);
}

void Window::Pump() {
  while (XPending(_display) > 0) {
    XEvent event;
    XNextEvent(_display, &event);
    switch (event.type) {
      case ConfigureNotify:
        if (event.xconfigure.window == _window) {
          Resize(event.xconfigure.width, event.xconfigure.height);
        }
        break;
      case ClientMessage:
        if (static_cast<unsigned long>(event.xclient.data.l[0]) == _delete_atom) {
          _listener.on_close_requested();
        }
        break;
      case DestroyNotify:
        _listener.on_child_destroyed(event.xdestroywindow.window);
        break;
      case FocusIn:
        if (event.xfocus.window == _window && event.xfocus.detail != NotifyInferior) {
          _listener.on_focused();
        }
        break;
      default:
        break;
    }
  }
}

void* Window::Handle() const {
  return reinterpret_cast<void*>(static_cast<std::uintptr_t>(_window));
}

void Window::SetTitle(const std::string& title) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(title.data());
  const int length = static_cast<int>(title.size());
  const Atom utf8 = XInternAtom(_display, "UTF8_STRING", False);
  XChangeProperty(_display, _window, XInternAtom(_display, "_NET_WM_NAME", False), utf8, 8,
                  PropModeReplace, bytes, length);
  XChangeProperty(_display, _window, XA_WM_NAME, utf8, 8, PropModeReplace, bytes, length);
  XFlush(_display);
}

void Window::Focus(void* child) {
  const auto window = static_cast<unsigned long>(reinterpret_cast<std::uintptr_t>(child));
  XWindowAttributes attributes;
  if (window != 0 && XGetWindowAttributes(_display, window, &attributes) != 0 &&
      attributes.map_state == IsViewable) {
    XSetInputFocus(_display, window, RevertToParent, CurrentTime);
    XFlush(_display);
  }
}

Picture Window::Capture() {
  Picture picture;
  XImage* image = XGetImage(_display, _window, 0, 0, static_cast<unsigned>(_width),
                            static_cast<unsigned>(_height), AllPlanes, ZPixmap);
  if (!image) {
    return picture;
  }
  picture.width = image->width;
  picture.height = image->height;
  picture.pixels.reserve(static_cast<std::size_t>(image->width) * image->height * 3);
  for (int y = 0; y < image->height; ++y) {
    for (int x = 0; x < image->width; ++x) {
      const unsigned long pixel = XGetPixel(image, x, y);
      for (const unsigned long mask : {image->red_mask, image->green_mask, image->blue_mask}) {
        picture.pixels.push_back(Channel(pixel, mask));
      }
    }
  }
  XDestroyImage(image);
  return picture;
}

void Window::Resize(int width, int height) {
  if (width == _width && height == _height) {
    return;
  }
  _width = width;
  _height = height;
  _listener.on_resized(width, height);
}

}  // namespace host
