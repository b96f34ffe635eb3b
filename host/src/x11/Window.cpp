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

struct Window::Native {
  void Resize(int new_width, int new_height) {
    if (new_width == width && new_height == height) {
      return;
    }
    width = new_width;
    height = new_height;
    listener.on_resized(width, height);
  }

  Listener listener;
  Display* display = nullptr;
  ::Window window = 0;
  Atom delete_atom = 0;
  int width = 0;
  int height = 0;
};

Window::Window() : _native(std::make_unique<Native>()) {}

Window::~Window() {
  if (_native->display) {
    XDestroyWindow(_native->display, _native->window);
    XCloseDisplay(_native->display);
  }
}

bool Window::Open(const std::string& title, int width, int height, Listener listener) {
  _native->display = XOpenDisplay(nullptr);
  if (!_native->display) {
    return false;
  }
  XSetErrorHandler(&ReportError);
  _native->listener = std::move(listener);
  _native->width = width;
  _native->height = height;
  const int screen = DefaultScreen(_native->display);
  const unsigned long white = WhitePixel(_native->display, screen);
  _native->window = XCreateSimpleWindow(_native->display, RootWindow(_native->display, screen), 0,
                                        0, static_cast<unsigned>(width),
                                        static_cast<unsigned>(height), 0, white, white);
  XSelectInput(_native->display, _native->window,
               StructureNotifyMask | SubstructureNotifyMask | FocusChangeMask);
  _native->delete_atom = XInternAtom(_native->display, "WM_DELETE_WINDOW", False);
  XSetWMProtocols(_native->display, _native->window, &_native->delete_atom, 1);
  SetTitle(title);
  XMapWindow(_native->display, _native->window);
  XFlush(_native->display);
  return true;
}

int Window::Descriptor() const {
  return ConnectionNumber(_native->display);
}

void Window::Pump() {
  while (XPending(_native->display) > 0) {
    XEvent event;
    XNextEvent(_native->display, &event);
    switch (event.type) {
      case ConfigureNotify:
        if (event.xconfigure.window == _native->window) {
          _native->Resize(event.xconfigure.width, event.xconfigure.height);
        }
        break;
      case ClientMessage:
        if (static_cast<unsigned long>(event.xclient.data.l[0]) == _native->delete_atom) {
          _native->listener.on_close_requested();
        }
        break;
      case DestroyNotify:
        _native->listener.on_view_gone(event.xdestroywindow.window);
        break;
      case FocusIn:
        if (event.xfocus.window == _native->window && event.xfocus.detail != NotifyInferior) {
          _native->listener.on_focused();
        }
        break;
      default:
        break;
    }
  }
}

void* Window::Handle() const {
  return reinterpret_cast<void*>(static_cast<std::uintptr_t>(_native->window));
}

void Window::SetTitle(const std::string& title) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(title.data());
  const int length = static_cast<int>(title.size());
  const Atom utf8 = XInternAtom(_native->display, "UTF8_STRING", False);
  XChangeProperty(_native->display, _native->window,
                  XInternAtom(_native->display, "_NET_WM_NAME", False), utf8, 8, PropModeReplace,
                  bytes, length);
  XChangeProperty(_native->display, _native->window, XA_WM_NAME, utf8, 8, PropModeReplace, bytes,
                  length);
  XFlush(_native->display);
}

void Window::Focus(void* view) {
  const auto window = static_cast<unsigned long>(reinterpret_cast<std::uintptr_t>(view));
  XWindowAttributes attributes;
  if (window != 0 && XGetWindowAttributes(_native->display, window, &attributes) != 0 &&
      attributes.map_state == IsViewable) {
    XSetInputFocus(_native->display, window, RevertToParent, CurrentTime);
    XFlush(_native->display);
  }
}

void Window::ExpectEnd(void*) {
  // The engine destroys the view's window itself.
}

Picture Window::Capture() {
  Picture picture;
  XImage* image =
      XGetImage(_native->display, _native->window, 0, 0, static_cast<unsigned>(_native->width),
                static_cast<unsigned>(_native->height), AllPlanes, ZPixmap);
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

}  // namespace host
