// What the command line of the host says. A plain value, made once by `main`.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "orbcefrecords.h"

namespace host {

inline constexpr char kWelcomeUrl[] = "xortv://webapps/Welcome/index.html";

struct Options {
  std::string url = kWelcomeUrl;
  // Installation root; empty takes the first of ORBInstallPath, then the one beside the build.
  std::string root;
  // Profile directory; empty makes one that is removed at the end.
  std::string profile;
  int width = 1024;
  int height = 768;
  // Closes after this time; without it the host runs until its window is closed.
  std::optional<double> seconds;
  std::string screenshot;
  // What the host types on the Welcome page; set for unattended runs of that page.
  std::optional<std::string> say;
  orbceftypes_recordmode record_mode = ORBCEF_RECORDMODE_NONE;
  int release_level = 0;
  std::string module_map;
  std::string log;
  std::string remap;
  std::string user;
  std::string password;
  std::string turnstile;
  std::string ticket;
  // "FILE/KEY" and a number, "SECTION/KEY" and a text: written to the profile's database.
  std::vector<std::pair<std::string, int>> settings;
  std::vector<std::pair<std::string, std::string>> sys_settings;
  bool help = false;

  bool Unattended() const { return seconds.has_value() || !screenshot.empty(); }
};

// Reads the command line. Without a value, `error` tells why.
std::optional<Options> ParseOptions(const std::vector<std::string>& arguments, std::string& error);

// The text of --help.
const char* HelpText();

}  // namespace host
