// The engine's strings in their three widths. Pure functions, any thread.
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <string>

#include "include/capi/cef_functions.h"
#include "utf.h"

using standin::AppendUtf16;
using standin::AppendUtf8;
using standin::NextOfUtf16;
using standin::NextOfUtf8;

namespace {

template <class Char>
void Free(Char* text) {
  std::free(text);
}

template <class String>
void Clear(String* string) {
  if (!string) {
    return;
  }
  if (string->dtor && string->str) {
    string->dtor(string->str);
  }
  *string = String{};
}

template <class String, class Char>
int Set(const Char* source, size_t length, String* output, bool copy) {
  if (!output) {
    return 0;
  }
  Clear(output);
  if (!source || length == 0) {
    return 1;
  }
  if (!copy) {
    output->str = const_cast<Char*>(source);
    output->length = length;
    return 1;
  }
  auto* const text = static_cast<Char*>(std::malloc((length + 1) * sizeof(Char)));
  if (!text) {
    return 0;
  }
  std::memcpy(text, source, length * sizeof(Char));
  text[length] = 0;
  output->str = text;
  output->length = length;
  output->dtor = &Free<Char>;
  return 1;
}

template <class String>
int Compare(const String* left, const String* right) {
  const size_t left_length = left ? left->length : 0;
  const size_t right_length = right ? right->length : 0;
  for (size_t i = 0; i < left_length && i < right_length; ++i) {
    if (left->str[i] != right->str[i]) {
      return left->str[i] < right->str[i] ? -1 : 1;
    }
  }
  return left_length == right_length ? 0 : left_length < right_length ? -1 : 1;
}

std::u16string ToUtf16(const char* source, size_t length, bool& is_text) {
  std::u16string text;
  for (size_t at = 0; at < length;) {
    const auto next = NextOfUtf8(source, length, at);
    is_text = is_text && next.is_valid;
    AppendUtf16(text, next.code);
  }
  return text;
}

std::string ToUtf8(const char16* source, size_t length, bool& is_text) {
  std::string text;
  for (size_t at = 0; at < length;) {
    const auto next = NextOfUtf16(source, length, at);
    is_text = is_text && next.is_valid;
    AppendUtf8(text, next.code);
  }
  return text;
}

// Wide characters are code points here.
std::wstring ToWide(const char16* source, size_t length, bool& is_text) {
  std::wstring text;
  for (size_t at = 0; at < length;) {
    const auto next = NextOfUtf16(source, length, at);
    is_text = is_text && next.is_valid;
    text.push_back(static_cast<wchar_t>(next.code));
  }
  return text;
}

std::u16string FromWide(const wchar_t* source, size_t length) {
  std::u16string text;
  for (size_t i = 0; i < length; ++i) {
    AppendUtf16(text, static_cast<char32_t>(source[i]));
  }
  return text;
}

int Give(const std::string& text, cef_string_utf8_t* output, bool is_text) {
  return Set(text.data(), text.size(), output, true) && is_text ? 1 : 0;
}
int Give(const std::wstring& text, cef_string_wide_t* output, bool is_text) {
  return Set(text.data(), text.size(), output, true) && is_text ? 1 : 0;
}
int Give(const std::u16string& text, cef_string_utf16_t* output, bool is_text) {
  return Set(reinterpret_cast<const char16*>(text.data()), text.size(), output, true) && is_text
             ? 1
             : 0;
}

bool IsAscii(const char* source, size_t length) {
  for (size_t i = 0; i < length; ++i) {
    if (static_cast<unsigned char>(source[i]) > 0x7F) {
      return false;
    }
  }
  return true;
}

template <class Convert>
int ChangeCase(const char16* source, size_t length, cef_string_utf16_t* output, Convert convert) {
  std::u16string text;
  for (size_t i = 0; i < length; ++i) {
    text.push_back(static_cast<char16_t>(convert(source[i])));
  }
  return Give(text, output, true);
}

template <class String>
String* AllocUserFree() {
  return static_cast<String*>(std::calloc(1, sizeof(String)));
}

template <class String>
void FreeUserFree(String* string) {
  Clear(string);
  std::free(string);
}

}  // namespace

extern "C" {

int cef_string_wide_set(const wchar_t* src, size_t src_len, cef_string_wide_t* output, int copy) {
  return Set(src, src_len, output, copy != 0);
}
int cef_string_utf8_set(const char* src, size_t src_len, cef_string_utf8_t* output, int copy) {
  return Set(src, src_len, output, copy != 0);
}
int cef_string_utf16_set(const char16* src, size_t src_len, cef_string_utf16_t* output, int copy) {
  return Set(src, src_len, output, copy != 0);
}

void cef_string_wide_clear(cef_string_wide_t* str) {
  Clear(str);
}
void cef_string_utf8_clear(cef_string_utf8_t* str) {
  Clear(str);
}
void cef_string_utf16_clear(cef_string_utf16_t* str) {
  Clear(str);
}

int cef_string_wide_cmp(const cef_string_wide_t* str1, const cef_string_wide_t* str2) {
  return Compare(str1, str2);
}
int cef_string_utf8_cmp(const cef_string_utf8_t* str1, const cef_string_utf8_t* str2) {
  return Compare(str1, str2);
}
int cef_string_utf16_cmp(const cef_string_utf16_t* str1, const cef_string_utf16_t* str2) {
  return Compare(str1, str2);
}

int cef_string_wide_to_utf8(const wchar_t* src, size_t src_len, cef_string_utf8_t* output) {
  const std::u16string text = FromWide(src, src_len);
  bool is_text = true;
  return Give(ToUtf8(reinterpret_cast<const char16*>(text.data()), text.size(), is_text), output,
              is_text);
}
int cef_string_utf8_to_wide(const char* src, size_t src_len, cef_string_wide_t* output) {
  bool is_text = true;
  const std::u16string text = ToUtf16(src, src_len, is_text);
  return Give(ToWide(reinterpret_cast<const char16*>(text.data()), text.size(), is_text), output,
              is_text);
}
int cef_string_wide_to_utf16(const wchar_t* src, size_t src_len, cef_string_utf16_t* output) {
  return Give(FromWide(src, src_len), output, true);
}
int cef_string_utf16_to_wide(const char16* src, size_t src_len, cef_string_wide_t* output) {
  bool is_text = true;
  const std::wstring text = ToWide(src, src_len, is_text);
  return Give(text, output, is_text);
}
int cef_string_utf8_to_utf16(const char* src, size_t src_len, cef_string_utf16_t* output) {
  bool is_text = true;
  const std::u16string text = ToUtf16(src, src_len, is_text);
  return Give(text, output, is_text);
}
int cef_string_utf16_to_utf8(const char16* src, size_t src_len, cef_string_utf8_t* output) {
  bool is_text = true;
  const std::string text = ToUtf8(src, src_len, is_text);
  return Give(text, output, is_text);
}
int cef_string_ascii_to_wide(const char* src, size_t src_len, cef_string_wide_t* output) {
  return Give(std::wstring(src, src + src_len), output, IsAscii(src, src_len));
}
int cef_string_ascii_to_utf16(const char* src, size_t src_len, cef_string_utf16_t* output) {
  return Give(std::u16string(src, src + src_len), output, IsAscii(src, src_len));
}

cef_string_userfree_wide_t cef_string_userfree_wide_alloc() {
  return AllocUserFree<cef_string_wide_t>();
}
cef_string_userfree_utf8_t cef_string_userfree_utf8_alloc() {
  return AllocUserFree<cef_string_utf8_t>();
}
cef_string_userfree_utf16_t cef_string_userfree_utf16_alloc() {
  return AllocUserFree<cef_string_utf16_t>();
}
void cef_string_userfree_wide_free(cef_string_userfree_wide_t str) {
  FreeUserFree(str);
}
void cef_string_userfree_utf8_free(cef_string_userfree_utf8_t str) {
  FreeUserFree(str);
}
void cef_string_userfree_utf16_free(cef_string_userfree_utf16_t str) {
  FreeUserFree(str);
}

int cef_string_utf16_to_lower(const char16* src, size_t src_len, cef_string_utf16_t* output) {
  return ChangeCase(src, src_len, output,
                    [](char16 c) { return c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c; });
}
int cef_string_utf16_to_upper(const char16* src, size_t src_len, cef_string_utf16_t* output) {
  return ChangeCase(src, src_len, output,
                    [](char16 c) { return c >= 'a' && c <= 'z' ? c - ('a' - 'A') : c; });
}

}  // extern "C"
