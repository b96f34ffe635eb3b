#include "View.h"

#include <utility>

#include "Records.h"

namespace host {

View::View(orbcefglobal_c* global, ViewEvents::Pointer events, Session::Pointer session,
           const std::string& home_url)
    : _events(std::move(events)),
      _session(std::move(session)),
      _browser(global->create_browser(global, _events->Table(),
                                      _session ? _session->Table() : nullptr,
                                      LentText(home_url).get())) {
  if (_browser) {
    _browser->set_forward_console(_browser, 1);
  }
}

View::~View() {
  Close();
}

void View::Create(void* parent, const Rectangle& rectangle, const std::string& url) {
  _browser->create(_browser, parent, rectangle.data(), LentText(url).get());
}

void View::SetBounds(const Rectangle& rectangle) {
  if (_browser) {
    _browser->set_bounds(_browser, rectangle.data());
  }
}

void View::ExecuteJavaScript(const std::string& code) {
  if (_browser) {
    _browser->execute_javascript(_browser, LentText(code).get(), nullptr, 1);
  }
}

void* View::Window() const {
  return _browser ? _browser->get_window(_browser) : nullptr;
}

std::string View::CurrentUrl() const {
  return _browser ? TakeText(_browser->get_current_url(_browser)) : std::string();
}

void View::Close() {
  if (orbcefbrowser_c* browser = std::exchange(_browser, nullptr)) {
    browser->close(browser, 1);
    browser->release(browser);
  }
}

}  // namespace host
