// What the host has set for one view. Flags are single atomic values, written by the host's main
// thread and read by every engine thread; the strings have a small lock of their own, under which
// nothing else is called. Owned by the client handler.
#ifndef ORBCEF_VIEW_SETTINGS_H
#define ORBCEF_VIEW_SETTINGS_H

#include <atomic>
#include <cstdint>
#include <mutex>

#include "include/internal/cef_string.h"

class ORBCefViewSettings {
 public:
  // A string that several threads read and write.
  class SharedString {
   public:
    CefString Get() const {
      const std::lock_guard<std::mutex> guard(_lock);
      return _value;
    }
    void Set(const CefString& value) {
      const std::lock_guard<std::mutex> guard(_lock);
      _value = value;
    }

   private:
    mutable std::mutex _lock;
    CefString _value;
  };

  std::atomic<bool> reload_enabled{true};
  std::atomic<bool> history_enabled{true};
  std::atomic<bool> zoom_by_page_enabled{true};
  std::atomic<bool> forward_console{false};
  std::atomic<bool> local_files_allowed{false};
  std::atomic<bool> external_navigation_allowed{true};
  std::atomic<bool> js_dialogs_allowed{false};
  std::atomic<int32_t> popup_mode{1};
  // The last word of the page; nothing in the module asks for it.
  std::atomic<bool> focused_form_control{false};

  SharedString home_url;
  SharedString error_url;
  SharedString download_dir;
  SharedString accept_language;
};

#endif  // ORBCEF_VIEW_SETTINGS_H
