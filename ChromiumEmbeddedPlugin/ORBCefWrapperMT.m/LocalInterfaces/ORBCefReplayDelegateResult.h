// The value of one replayed interaction. Any thread; a plain value.
#ifndef ORBCEF_REPLAY_DELEGATE_RESULT_H
#define ORBCEF_REPLAY_DELEGATE_RESULT_H

#include <cstdint>

#include "include/internal/cef_string.h"

struct ReplayDelegateResult {
  // Every failure that the browser side finds by itself.
  static constexpr int32_t kBrowserSideFailure = 200;

  int32_t code = 0;
  CefString message;
};

#endif  // ORBCEF_REPLAY_DELEGATE_RESULT_H
