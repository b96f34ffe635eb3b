#include "ORBCefCookieLine.h"

#include <algorithm>

namespace ORBCefCookieLine {

namespace {

constexpr char kWhiteSpace[] = " \t";
constexpr char kNameEnd[] = ";=";
constexpr char kValueEnd[] = ";";

struct Attribute {
  const char* name;
  void (*apply)(const std::string& value, CefCookie& cookie);
};

// "max-age" is left out like any unknown attribute: it has no effect.
constexpr Attribute kAttributes[] = {
    {"domain", [](const std::string& value,
                  CefCookie& cookie) { CefString(&cookie.domain).FromString(value); }},
    {"path", [](const std::string& value,
                CefCookie& cookie) { CefString(&cookie.path).FromString(value); }},
    // The date itself is not read, so the cookie has a date of zero.
    {"expires", [](const std::string&, CefCookie& cookie) { cookie.has_expires = 1; }},
    {"httponly", [](const std::string&, CefCookie& cookie) { cookie.httponly = 1; }},
    {"secure", [](const std::string&, CefCookie& cookie) { cookie.secure = 1; }},
};

size_t SkipWhiteSpace(const std::string& line, size_t at) {
  return std::min(line.find_first_not_of(kWhiteSpace, at), line.size());
}

// The text from `at` to the first of `ends`, without white space at its end; `at` moves to that
// end.
std::string ReadTo(const std::string& line, const char* ends, size_t& at) {
  const size_t end = std::min(line.find_first_of(ends, at), line.size());
  const std::string text = line.substr(at, end - at);
  at = end;
  return text.substr(0, text.find_last_not_of(kWhiteSpace) + 1);
}

// Only ASCII letters have a lower case here, whatever the locale.
void ToLower(std::string& text) {
  for (char& unit : text) {
    if (unit >= 'A' && unit <= 'Z') {
      unit = static_cast<char>(unit - 'A' + 'a');
    }
  }
}

}  // namespace

Pairs Split(const std::string& line) {
  Pairs pairs;
  for (size_t at = SkipWhiteSpace(line, 0); at < line.size(); at = SkipWhiteSpace(line, at)) {
    const size_t begin = at;
    std::string name = ReadTo(line, kNameEnd, at);
    std::string value;
    if (at < line.size() && line[at] == '=') {
      at = SkipWhiteSpace(line, at + 1);
      value = ReadTo(line, kValueEnd, at);
    } else if (pairs.empty()) {
      // A first text without a "=" is a value without a name.
      at = begin;
      name.clear();
      value = ReadTo(line, kValueEnd, at);
    }
    if (!pairs.empty()) {
      ToLower(name);
    }
    pairs.emplace_back(std::move(name), std::move(value));
    // Over the ";".
    ++at;
    if (at >= line.size()) {
      break;
    }
  }
  return pairs;
}

void Apply(const Pairs& pairs, CefCookie& cookie) {
  if (pairs.empty()) {
    return;
  }
  CefString(&cookie.name).FromString(pairs.front().first);
  CefString(&cookie.value).FromString(pairs.front().second);
  for (auto pair = pairs.begin() + 1; pair != pairs.end(); ++pair) {
    const auto known =
        std::find_if(std::begin(kAttributes), std::end(kAttributes),
                     [&pair](const Attribute& attribute) { return pair->first == attribute.name; });
    if (known != std::end(kAttributes)) {
      known->apply(pair->second, cookie);
    }
  }
}

CefCookie Parse(const CefString& line) {
  CefCookie cookie;
  Apply(Split(line.ToString()), cookie);
  return cookie;
}

}  // namespace ORBCefCookieLine
