#include "include/internal/cef_types_wrappers.h"

void CefWindowInfo::SetAsChild(cef_window_handle_t parent, const CefRect& rectangle) {
#if defined(OS_WIN)
  style = WS_CHILD | WS_CLIPCHILDREN | WS_CLIPSIBLINGS | WS_TABSTOP | WS_VISIBLE;
#endif
  parent_window = parent;
  bounds = rectangle;
}

void CefWindowInfo::SetAsWindowless(cef_window_handle_t parent) {
  windowless_rendering_enabled = 1;
  parent_window = parent;
}

#if defined(OS_WIN)
void CefWindowInfo::SetAsPopup(cef_window_handle_t parent, const CefString& name) {
  style = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN | WS_CLIPSIBLINGS | WS_VISIBLE;
  parent_window = parent;
  bounds = CefRect(CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT);
  // Without "this" it would declare a variable of that name.
  CefString(&this->window_name) = name;
}
#endif
