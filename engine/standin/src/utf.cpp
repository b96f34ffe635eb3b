#include "utf.h"

#include <algorithm>
#include <cctype>

namespace standin {

namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kLast = 0x10FFFF;

bool IsSurrogate(char32_t code) {
  return code >= 0xD800 && code <= 0xDFFF;
}

// The range that the second byte of a sequence must lie in, by its first: it keeps overlong forms,
// surrogates and codes that are too large out.
struct SecondByte {
  unsigned char least;
  unsigned char most;
};

SecondByte SecondByteAfter(unsigned char first) {
  switch (first) {
    case 0xE0:
      return {0xA0, 0xBF};
    case 0xED:
      return {0x80, 0x9F};
    case 0xF0:
      return {0x90, 0xBF};
    case 0xF4:
      return {0x80, 0x8F};
    default:
      return {0x80, 0xBF};
  }
}

}  // namespace

CodePoint NextOfUtf8(const char* text, size_t length, size_t& at) {
  const auto first = static_cast<unsigned char>(text[at++]);
  if (first < 0x80) {
    return {first, true};
  }
  if (first < 0xC2 || first > 0xF4) {
    return {kReplacement, false};
  }
  const int more = first < 0xE0 ? 1 : first < 0xF0 ? 2 : 3;
  char32_t code = first & (0x3F >> more);
  SecondByte range = SecondByteAfter(first);
  for (int i = 0; i < more; ++i) {
    const auto byte = at < length ? static_cast<unsigned char>(text[at]) : 0;
    if (byte < range.least || byte > range.most) {
      return {kReplacement, false};
    }
    code = (code << 6) | (byte & 0x3Fu);
    range = {0x80, 0xBF};
    ++at;
  }
  return {code, true};
}

CodePoint NextOfUtf16(const char16* text, size_t length, size_t& at) {
  const char32_t unit = text[at++];
  if (!IsSurrogate(unit)) {
    return {unit, true};
  }
  if (unit > 0xDBFF || at >= length || text[at] < 0xDC00 || text[at] > 0xDFFF) {
    return {kReplacement, false};
  }
  const char32_t low = text[at++];
  return {0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00), true};
}

void AppendUtf8(std::string& text, char32_t code) {
  if (code < 0x80) {
    text.push_back(static_cast<char>(code));
    return;
  }
  const int more = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
  const auto lead = static_cast<unsigned char>(0xFF00u >> (more + 1));
  text.push_back(static_cast<char>(lead | (code >> (6 * more))));
  for (int i = more - 1; i >= 0; --i) {
    text.push_back(static_cast<char>(0x80 | ((code >> (6 * i)) & 0x3F)));
  }
}

void AppendUtf16(std::u16string& text, char32_t code) {
  if (code > kLast || IsSurrogate(code)) {
    code = kReplacement;
  }
  if (code < 0x10000) {
    text.push_back(static_cast<char16_t>(code));
    return;
  }
  code -= 0x10000;
  text.push_back(static_cast<char16_t>(0xD800 + (code >> 10)));
  text.push_back(static_cast<char16_t>(0xDC00 + (code & 0x3FF)));
}

std::string Lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

}  // namespace standin
