// A text that is known at compile time, in the engine's own form.
//
// A `CefString` made from a `const char*` is converted and allocated anew each time. Where a page
// calls ten thousand times in a row, the keys of its arguments are such texts instead: `Text` only
// refers to them. Any thread may use them; a text must be a constant of static storage.

#ifndef ORBCEF_FIXED_TEXT_H
#define ORBCEF_FIXED_TEXT_H

#include <cstddef>

#include "include/cef_base.h"

template <std::size_t kSize>
class ORBCefFixedText {
 public:
  // @param ascii a literal.
  constexpr explicit ORBCefFixedText(const char (&ascii)[kSize])
      : _text{_units, kSize - 1, nullptr} {
    for (std::size_t index = 0; index < kSize; ++index) {
      _units[index] = static_cast<char16>(ascii[index]);
    }
  }

  ORBCefFixedText(const ORBCefFixedText&) = delete;
  ORBCefFixedText& operator=(const ORBCefFixedText&) = delete;

  // A reference to the text, which the engine never writes to.
  CefString Text() const { return CefString(&_text); }

 private:
  char16 _units[kSize] = {};
  cef_string_utf16_t _text;
};

#endif  // ORBCEF_FIXED_TEXT_H
