// Code points in UTF-8 and UTF-16 texts. A piece that is no text counts as one U+FFFD. Pure
// functions.
#pragma once

#include <string>

#include "include/internal/cef_basic_types.h"

namespace standin {

struct CodePoint {
  char32_t code;
  bool is_valid;
};

// The code point at `at`, which moves behind it; the texts are not at their end.
CodePoint NextOfUtf8(const char* text, size_t length, size_t& at);
CodePoint NextOfUtf16(const char16* text, size_t length, size_t& at);

void AppendUtf8(std::string& text, char32_t code);
void AppendUtf16(std::u16string& text, char32_t code);

// With its ASCII letters in lower case.
std::string Lower(std::string text);

}  // namespace standin
