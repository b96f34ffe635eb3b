// The host's window: a plain top-level window that the view becomes a child of. Main thread only;
// `main` owns it.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "Png.h"

namespace host {

class Window {
 public:
  struct Listener {
    std::function<void(int width, int height)> on_resized;
    // The user asks for the window to be closed.
    std::function<void()> on_close_requested;
    // A view in the window is gone.
    std::function<void(std::uintptr_t view)> on_view_gone;
    // The window got the keyboard focus.
    std::function<void()> on_focused;
  };

  Window();
  ~Window();
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  // Opens and shows the window. False if the display of the environment cannot be reached.
  bool Open(const std::string& title, int width, int height, Listener listener);

  // The descriptor to wait on, -1 where there is none, and the reading of all events that have
  // come.
  int Descriptor() const;
  void Pump();

  // The window to create the view in.
  void* Handle() const;

  void SetTitle(const std::string& title);
  void Focus(void* view);

  // Is told before a view is closed, and does what the engine leaves to the window then. The
  // listener hears of the end.
  void ExpectEnd(void* view);

  // What the window shows; empty if it cannot be read.
  Picture Capture();

 private:
  struct Native;

  const std::unique_ptr<Native> _native;
};

}  // namespace host
