// The host's window: a plain X11 top-level window that the view becomes a child of. Main thread
// only; `main` owns it.
#pragma once

#include <functional>
#include <string>

#include "Png.h"

struct _XDisplay;

namespace host {

class Window {
 public:
  struct Listener {
    std::function<void(int width, int height)> on_resized;
    // The user asks for the window to be closed.
    std::function<void()> on_close_requested;
    // A child of the window is gone.
    std::function<void(unsigned long window)> on_child_destroyed;
    // The window got the keyboard focus.
    std::function<void()> on_focused;
  };

  Window() = default;
  ~Window();
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  // Opens and shows the window. False if the display of the environment cannot be reached.
  bool Open(const std::string& title, int width, int height, Listener listener);

  // The descriptor to wait on, and the reading of all events that have come.
  int Descriptor() const;
  void Pump();

  // The window to create the view in.
  void* Handle() const;

  void SetTitle(const std::string& title);
  void Focus(void* child);

  // What the window shows; empty if it cannot be read.
  Picture Capture();

 private:
  void Resize(int width, int height);

  Listener _listener;
  _XDisplay* _display = nullptr;
  unsigned long _window = 0;
  unsigned long _delete_atom = 0;
  int _width = 0;
  int _height = 0;
};

}  // namespace host
