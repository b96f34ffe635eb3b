// URLs as the engine understands them: canonical forms of schemes with a host, of files, and of all
// the rest, which keep their path as it is. Any thread.
#pragma once

#include <string>

namespace standin {

struct Url {
  bool is_valid = false;
  bool is_standard = false;
  std::string scheme;
  std::string username;
  std::string password;
  std::string host;
  std::string port;
  std::string path;
  bool has_query = false;
  std::string query;
  bool has_fragment = false;
  std::string fragment;

  std::string Spec() const;
  // Scheme, host and port with a slash; empty without a host.
  std::string Origin() const;
};

Url ParseUrl(const std::string& text);

// From here on the scheme has a host and a path.
void AddStandardScheme(const std::string& scheme);

}  // namespace standin
