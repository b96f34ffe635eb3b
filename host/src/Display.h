// The display that the host shows its window on; where the system may be without one, a virtual one
// of the host's own. Main thread only; `main` owns it.
#pragma once

#include <memory>
#include <string>

namespace host {

class Tools;

class Display {
 public:
  Display();
  ~Display();
  Display(const Display&) = delete;
  Display& operator=(const Display&) = delete;

  // Makes sure that there is a display, of at least this size if it has to be made. False if there
  // is none.
  bool Provide(int width, int height, Tools& tools);

 private:
  struct Native;
  const std::unique_ptr<Native> _native;
};

}  // namespace host
