// One web view: the module's table `orbcefbrowser_c` and the host's tables that belong to it.
// Main thread only; `main` owns it. `Close` must come before the end of the object.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "Session.h"
#include "ViewEvents.h"
#include "orbcefglobal.h"

namespace host {

class View {
 public:
  using Rectangle = std::array<std::int32_t, 4>;

  // `session` may be null.
  View(orbcefglobal_c* global, ViewEvents::Pointer events, Session::Pointer session,
       const std::string& home_url);
  ~View();
  View(const View&) = delete;
  View& operator=(const View&) = delete;

  // False if the module gave no view.
  bool IsValid() const { return _browser != nullptr; }

  void Create(void* parent, const Rectangle& rectangle, const std::string& url);
  void SetBounds(const Rectangle& rectangle);
  void ExecuteJavaScript(const std::string& code);
  // The engine's window; null before it exists and after `Close`.
  void* Window() const;
  std::string CurrentUrl() const;

  // Closes the engine's browser without asking the page, and gives the table back. The engine ends
  // its side, and destroys `Window`, later.
  void Close();

 private:
  ViewEvents::Pointer _events;
  Session::Pointer _session;
  orbcefbrowser_c* _browser;
};

}  // namespace host
