#include "encoding.h"

#include <cctype>
#include <cstdlib>

#include "glue_conversions.h"
#include "values.h"

namespace standin {

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr char kHex[] = "0123456789ABCDEF";

unsigned Byte(char c) {
  return static_cast<unsigned char>(c);
}

bool IsUnreserved(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) ||
         std::string("-_.!~*'()").find(c) != std::string::npos;
}

std::string UriEncode(const std::string& text, bool use_plus) {
  std::string encoded;
  for (const char c : text) {
    if (c == ' ' && use_plus) {
      encoded.push_back('+');
    } else if (IsUnreserved(c)) {
      encoded.push_back(c);
    } else {
      encoded += {'%', kHex[Byte(c) >> 4], kHex[Byte(c) & 15]};
    }
  }
  return encoded;
}

std::string UriDecode(const std::string& text, bool plus_is_blank) {
  std::string decoded;
  for (size_t at = 0; at < text.size(); ++at) {
    const bool is_escape = text[at] == '%' && at + 2 < text.size() &&
                           std::isxdigit(static_cast<unsigned char>(text[at + 1])) &&
                           std::isxdigit(static_cast<unsigned char>(text[at + 2]));
    if (is_escape) {
      decoded.push_back(
          static_cast<char>(std::strtol(text.substr(at + 1, 2).c_str(), nullptr, 16)));
      at += 2;
    } else {
      decoded.push_back(text[at] == '+' && plus_is_blank ? ' ' : text[at]);
    }
  }
  return decoded;
}

}  // namespace

std::string Base64(const std::string& bytes) {
  std::string text;
  for (size_t at = 0; at < bytes.size(); at += 3) {
    const size_t left = bytes.size() - at;
    const unsigned group = Byte(bytes[at]) << 16 | (left > 1 ? Byte(bytes[at + 1]) << 8 : 0) |
                           (left > 2 ? Byte(bytes[at + 2]) : 0);
    text.push_back(kAlphabet[group >> 18]);
    text.push_back(kAlphabet[group >> 12 & 63]);
    text.push_back(left > 1 ? kAlphabet[group >> 6 & 63] : '=');
    text.push_back(left > 2 ? kAlphabet[group & 63] : '=');
  }
  return text;
}

bool FromBase64(const std::string& text, std::string& bytes) {
  if (text.size() % 4 != 0) {
    return false;
  }
  for (size_t at = 0; at < text.size(); at += 4) {
    unsigned group = 0;
    int count = 3;
    for (size_t i = 0; i < 4; ++i) {
      const char c = text[at + i];
      const size_t found = std::string(kAlphabet).find(c);
      if (c == '=' && at + 4 == text.size() && i >= 2) {
        count = count == 3 ? static_cast<int>(i) - 1 : count;
      } else if (found == std::string::npos || count != 3) {
        return false;
      }
      group = group << 6 | (c == '=' ? 0 : static_cast<unsigned>(found));
    }
    for (int i = 0; i < count; ++i) {
      bytes.push_back(static_cast<char>(group >> (16 - 8 * i) & 255));
    }
  }
  return true;
}

}  // namespace standin

extern "C" {

cef_string_userfree_t cef_base64encode(const void* data, size_t data_size) {
  const std::string bytes(static_cast<const char*>(data), data_size);
  return CefString(standin::Base64(bytes)).DetachToUserFree();
}

cef_binary_value_t* cef_base64decode(const cef_string_t* data) {
  std::string bytes;
  if (!standin::FromBase64(CefString(data).ToString(), bytes)) {
    return nullptr;
  }
  return engine_glue::ToC(
      standin::WrapBinary(standin::MakeNode(standin::Binary(bytes.begin(), bytes.end())), false));
}

cef_string_userfree_t cef_uriencode(const cef_string_t* text, int use_plus) {
  return CefString(standin::UriEncode(CefString(text).ToString(), use_plus != 0))
      .DetachToUserFree();
}

cef_string_userfree_t cef_uridecode(const cef_string_t* text, int convert_to_utf8,
                                    cef_uri_unescape_rule_t unescape_rule) {
  const bool plus_is_blank = (unescape_rule & UU_REPLACE_PLUS_WITH_SPACE) != 0;
  return CefString(standin::UriDecode(CefString(text).ToString(), plus_is_blank))
      .DetachToUserFree();
}

}  // extern "C"
