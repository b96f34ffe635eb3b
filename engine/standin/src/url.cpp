#include "url.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <mutex>
#include <set>
#include <vector>

#include "include/capi/cef_functions.h"
#include "include/cef_parser.h"
#include "script.h"
#include "utf.h"

namespace standin {

namespace {

// The schemes with a host, with the port that need not be named.
const std::map<std::string, std::string>& DefaultPorts() {
  static const auto& ports = *new std::map<std::string, std::string>{
      {"http", "80"}, {"https", "443"}, {"ws", "80"}, {"wss", "443"}, {"ftp", "21"}};
  return ports;
}

struct Schemes {
  std::mutex lock;
  // Guarded by lock.
  std::set<std::string> added;
};

Schemes& TheSchemes() {
  static Schemes& schemes = *new Schemes();
  return schemes;
}

bool IsStandard(const std::string& scheme) {
  const std::lock_guard<std::mutex> guard(TheSchemes().lock);
  return DefaultPorts().count(scheme) > 0 || TheSchemes().added.count(scheme) > 0;
}

// Blanks around the text and line ends within it do not count.
std::string Trimmed(const std::string& text) {
  std::string kept;
  for (const char c : text) {
    if (c != '\n' && c != '\r' && c != '\t') {
      kept.push_back(c);
    }
  }
  const size_t first = kept.find_first_not_of(' ');
  const size_t last = kept.find_last_not_of(' ');
  return first == std::string::npos ? std::string() : kept.substr(first, last - first + 1);
}

bool IsSchemeText(const std::string& text) {
  return !text.empty() && std::isalpha(static_cast<unsigned char>(text.front())) &&
         std::all_of(text.begin(), text.end(), [](unsigned char c) {
           return std::isalnum(c) || c == '+' || c == '-' || c == '.';
         });
}

// What a URL never holds in the open.
std::string Escaped(const std::string& text, const char* also) {
  constexpr char kHex[] = "0123456789ABCDEF";
  std::string escaped;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte <= 0x20 || byte >= 0x7F || std::string(also).find(c) != std::string::npos) {
      escaped += {'%', kHex[byte >> 4], kHex[byte & 15]};
    } else {
      escaped.push_back(c);
    }
  }
  return escaped;
}

// Without "." and "..", which never leave the root.
std::string ResolvedPath(std::string path) {
  std::replace(path.begin(), path.end(), '\\', '/');
  std::vector<std::string> parts;
  size_t start = 1;
  while (start <= path.size()) {
    const size_t end = std::min(path.find('/', start), path.size());
    const std::string part = path.substr(start, end - start);
    const bool is_last = end == path.size();
    if (part == "..") {
      if (!parts.empty()) {
        parts.pop_back();
      }
    } else if (part != ".") {
      parts.push_back(part);
    }
    if (is_last && (part == "." || part == "..")) {
      parts.emplace_back();
    }
    start = end + 1;
  }
  std::string resolved;
  for (const std::string& part : parts) {
    resolved += "/" + part;
  }
  return resolved.empty() ? "/" : resolved;
}

bool IsHostText(const std::string& host) {
  return std::none_of(host.begin(), host.end(), [](unsigned char c) {
    return c <= 0x20 || c >= 0x7F ||
           std::string("\"#%/<>?@\\^`{|}").find(static_cast<char>(c)) != std::string::npos;
  });
}

// Splits what stands between "//" and the path.
bool ParseAuthority(std::string authority, Url& url) {
  const size_t at = authority.rfind('@');
  if (at != std::string::npos) {
    const std::string user = authority.substr(0, at);
    const size_t colon = user.find(':');
    url.username = user.substr(0, colon);
    url.password = colon == std::string::npos ? std::string() : user.substr(colon + 1);
    authority = authority.substr(at + 1);
  }
  const size_t bracket = authority.rfind(']');
  const size_t colon = authority.find(':', bracket == std::string::npos ? 0 : bracket);
  url.host = Lower(authority.substr(0, colon));
  std::string port = colon == std::string::npos ? std::string() : authority.substr(colon + 1);
  if (!std::all_of(port.begin(), port.end(), [](unsigned char c) { return std::isdigit(c); }) ||
      port.size() > 5 || (!port.empty() && std::stoi(port) > 65535) || !IsHostText(url.host)) {
    return false;
  }
  const auto known = DefaultPorts().find(url.scheme);
  if (!port.empty()) {
    port = std::to_string(std::stoi(port));
  }
  url.port = known != DefaultPorts().end() && known->second == port ? std::string() : port;
  return true;
}

void ParsePathAndRest(std::string rest, Url& url) {
  const size_t hash = rest.find('#');
  if (hash != std::string::npos) {
    url.has_fragment = true;
    url.fragment = Escaped(rest.substr(hash + 1), "\"<>`");
    rest.resize(hash);
  }
  const size_t mark = rest.find('?');
  if (mark != std::string::npos) {
    url.has_query = true;
    url.query = Escaped(rest.substr(mark + 1), "\"<>'");
    rest.resize(mark);
  }
  url.path = rest;
}

Url ParseStandard(Url url, const std::string& rest) {
  const size_t start = rest.find_first_not_of("/\\");
  const std::string after = start == std::string::npos ? std::string() : rest.substr(start);
  const size_t end = std::min(after.find_first_of("/\\?#"), after.size());
  url.is_standard = true;
  if (!ParseAuthority(after.substr(0, end), url) || url.host.empty()) {
    return Url();
  }
  ParsePathAndRest(after.substr(end), url);
  url.path = Escaped(ResolvedPath(url.path.empty() ? "/" : url.path), "\"<>`{}");
  url.is_valid = true;
  return url;
}

Url ParseFile(Url url, const std::string& rest) {
  url.is_standard = true;
  std::string path = rest;
  if (rest.compare(0, 2, "//") == 0) {
    const size_t end = std::min(rest.find_first_of("/?#", 2), rest.size());
    url.host = Lower(rest.substr(2, end - 2));
    path = rest.substr(end);
  }
  ParsePathAndRest(path, url);
  if (url.host == "localhost") {
    url.host.clear();
  }
  url.path = Escaped(ResolvedPath(url.path.empty() ? "/" : url.path), "\"<>`{}");
  url.is_valid = true;
  return url;
}

}  // namespace

Url ParseUrl(const std::string& text) {
  const std::string trimmed = Trimmed(text);
  const size_t colon = trimmed.find(':');
  if (colon == std::string::npos || !IsSchemeText(trimmed.substr(0, colon))) {
    return Url();
  }
  Url url;
  url.scheme = Lower(trimmed.substr(0, colon));
  const std::string rest = trimmed.substr(colon + 1);
  if (url.scheme == "file") {
    return ParseFile(url, rest);
  }
  if (IsStandard(url.scheme)) {
    return ParseStandard(url, rest);
  }
  ParsePathAndRest(rest, url);
  url.is_valid = true;
  return url;
}

std::string Url::Spec() const {
  std::string text = scheme + ":";
  if (is_standard) {
    text += "//" + username + (password.empty() ? "" : ":" + password) +
            (username.empty() && password.empty() ? "" : "@") + host +
            (port.empty() ? "" : ":" + port);
  }
  return text + path + (has_query ? "?" + query : "") + (has_fragment ? "#" + fragment : "");
}

std::string Url::Origin() const {
  return is_standard && !host.empty()
             ? scheme + "://" + host + (port.empty() ? "" : ":" + port) + "/"
             : std::string();
}

void AddStandardScheme(const std::string& scheme) {
  const std::lock_guard<std::mutex> guard(TheSchemes().lock);
  TheSchemes().added.insert(scheme);
}

}  // namespace standin

namespace {

void Give(const std::string& text, cef_string_t& field) {
  CefString view(&field);
  view = text;
}

std::string Text(const cef_string_t& field) {
  return CefString(&field).ToString();
}

}  // namespace

extern "C" int cef_parse_url(const cef_string_t* url, cef_urlparts_t* parts) {
  const standin::Url parsed = standin::ParseUrl(CefString(url).ToString());
  if (!parsed.is_valid || !parts || standin::TakeFault("parse_url")) {
    return 0;
  }
  Give(parsed.Spec(), parts->spec);
  Give(parsed.scheme, parts->scheme);
  Give(parsed.username, parts->username);
  Give(parsed.password, parts->password);
  Give(parsed.host, parts->host);
  Give(parsed.port, parts->port);
  Give(parsed.Origin(), parts->origin);
  Give(parsed.path, parts->path);
  Give(parsed.query, parts->query);
  Give(parsed.fragment, parts->fragment);
  return 1;
}

extern "C" int cef_create_url(const cef_urlparts_t* parts, cef_string_t* url) {
  std::string text = Text(parts->spec);
  if (text.empty()) {
    const std::string user = Text(parts->username);
    const std::string password = Text(parts->password);
    const std::string port = Text(parts->port);
    const std::string query = Text(parts->query);
    const std::string fragment = Text(parts->fragment);
    text = Text(parts->scheme) + "://" + user + (password.empty() ? "" : ":" + password) +
           (user.empty() ? "" : "@") + Text(parts->host) + (port.empty() ? "" : ":" + port) +
           Text(parts->path) + (query.empty() ? "" : "?" + query) +
           (fragment.empty() ? "" : "#" + fragment);
  }
  const standin::Url parsed = standin::ParseUrl(text);
  if (parsed.is_valid) {
    CefString target(url);
    target = parsed.Spec();
  }
  return parsed.is_valid ? 1 : 0;
}
