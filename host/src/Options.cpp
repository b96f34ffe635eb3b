#include "Options.h"

#include <charconv>
#include <cstdlib>
#include <functional>
#include <map>

namespace host {
namespace {

bool ReadInt(const std::string& text, int& value) {
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, value);
  return result.ec == std::errc() && result.ptr == end;
}

bool ReadSeconds(const std::string& text, std::optional<double>& value) {
  char* end = nullptr;
  const double number = std::strtod(text.c_str(), &end);
  if (text.empty() || *end != '\0' || !(number > 0) || number > 1e6) {
    return false;
  }
  value = number;
  return true;
}

bool ReadSize(const std::string& text, Options& options) {
  const std::size_t cross = text.find('x');
  constexpr int kLargest = 16384;
  return cross != std::string::npos && ReadInt(text.substr(0, cross), options.width) &&
         ReadInt(text.substr(cross + 1), options.height) && options.width > 0 &&
         options.width <= kLargest && options.height > 0 && options.height <= kLargest;
}

bool ReadRecordMode(const std::string& text, Options& options) {
  static const std::map<std::string, orbceftypes_recordmode> kModes = {
      {"capture", ORBCEF_RECORDMODE_CAPTURE}, {"replay", ORBCEF_RECORDMODE_REPLAY}};
  const auto found = kModes.find(text);
  if (found == kModes.end()) {
    return false;
  }
  options.record_mode = found->second;
  return true;
}

// Splits "PLACE/KEY=VALUE" into "PLACE/KEY" and the value.
bool SplitSetting(const std::string& text, std::string& name, std::string& value) {
  const std::size_t equals = text.find('=');
  const std::size_t slash = text.find('/');
  if (equals == std::string::npos || slash == std::string::npos || slash > equals) {
    return false;
  }
  name = text.substr(0, equals);
  value = text.substr(equals + 1);
  return true;
}

bool ReadSetting(const std::string& text, Options& options) {
  std::string name;
  std::string value;
  int number = 0;
  if (!SplitSetting(text, name, value) || !ReadInt(value, number)) {
    return false;
  }
  options.settings.emplace_back(name, number);
  return true;
}

bool ReadSysSetting(const std::string& text, Options& options) {
  std::string name;
  std::string value;
  if (!SplitSetting(text, name, value)) {
    return false;
  }
  options.sys_settings.emplace_back(name, value);
  return true;
}

bool ReadCredentials(const std::string& text, Options& options) {
  const std::size_t colon = text.find(':');
  if (colon == std::string::npos) {
    return false;
  }
  options.user = text.substr(0, colon);
  options.password = text.substr(colon + 1);
  return true;
}

using Reader = std::function<bool(const std::string&, Options&)>;

Reader Text(std::string Options::*field) {
  return [field](const std::string& text, Options& options) {
    options.*field = text;
    return !text.empty();
  };
}

const std::map<std::string, Reader>& Readers() {
  static const std::map<std::string, Reader> kReaders = {
      {"--url", Text(&Options::url)},
      {"--root", Text(&Options::root)},
      {"--profile", Text(&Options::profile)},
      {"--screenshot", Text(&Options::screenshot)},
      {"--module-map", Text(&Options::module_map)},
      {"--log", Text(&Options::log)},
      {"--remap", Text(&Options::remap)},
      {"--turnstile", Text(&Options::turnstile)},
      {"--ticket", Text(&Options::ticket)},
      {"--size", &ReadSize},
      {"--record", &ReadRecordMode},
      {"--setting", &ReadSetting},
      {"--sys-setting", &ReadSysSetting},
      {"--credentials", &ReadCredentials},
      {"--seconds", [](const std::string& text,
                       Options& options) { return ReadSeconds(text, options.seconds); }},
      {"--release-level", [](const std::string& text,
                             Options& options) { return ReadInt(text, options.release_level); }},
      {"--say", [](const std::string& text, Options& options) {
         options.say = text;
         return true;
       }}};
  return kReaders;
}

}  // namespace

std::optional<Options> ParseOptions(const std::vector<std::string>& arguments, std::string& error) {
  Options options;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (argument == "--help" || argument == "-h") {
      options.help = true;
      return options;
    }
    const std::size_t equals = argument.find('=');
    const std::string name = argument.substr(0, equals);
    const auto reader = Readers().find(name);
    if (reader == Readers().end()) {
      error = "unknown option " + argument;
      return std::nullopt;
    }
    std::string value;
    if (equals != std::string::npos) {
      value = argument.substr(equals + 1);
    } else if (i + 1 < arguments.size()) {
      value = arguments[++i];
    } else {
      error = name + " needs a value";
      return std::nullopt;
    }
    if (!reader->second(value, options)) {
      error = name + " does not take '" + value + "'";
      return std::nullopt;
    }
  }
  if (!options.say && options.Unattended() && options.url == kWelcomeUrl) {
    options.say = "Hello";
  }
  return options;
}

const char* HelpText() {
  return R"(orbcef_host: a window with one web view of the module ORBCefWrapperMT.

usage: orbcef_host [options]

  --url URL             page to open (default xortv://webapps/Welcome/index.html)
  --root DIR            installation root (default: first root of ORBInstallPath,
                        else the root beside the build's bin directory)
  --profile DIR         cache, log and settings (default: a new one, removed at the end)
  --log LEVEL           info or verbose: log of the engine and the module, on standard error
                        and in the profile (default none)
  --size WxH            size of the window in pixels (default 1024x768)
  --seconds N           close after N seconds
  --screenshot FILE     write a PNG of the window, then close; without --seconds as soon as
                        the page has answered, at the latest after 30 seconds
  --say TEXT            type TEXT on the Welcome page and press its button
                        (default "Hello" with --seconds or --screenshot)
  --record MODE         capture or replay
  --module-map FILE     JSON text of the web-record module map
  --remap FILE          JSON object of URLs and the local files that stand for them
  --release-level N     release level that the host tells (default 0, none)
  --setting F/K=N       integer setting K of file F, kept in the profile
  --sys-setting S/K=T   system setting K of section S, kept in the profile
  --credentials U:P     answer to servers that ask for a user and password
  --turnstile URL       base URL of the single-sign-on service
  --ticket TEXT         the session's ticket: the view opens with it
  --help                this text

Without a DISPLAY the host starts an Xvfb of its own, where there are X servers at all.

Exit status:
   0  the view was created, the page loaded and sent a string and, if it is the Welcome page,
      acknowledged the host's answer
   1  an error of the host itself     2  wrong usage
   3  module not found                4  symbol of the factory missing
   5  factory refused                 6  engine did not start: no view
   7  the page did not load           8  no string came from the page
   9  the answer was not acknowledged
  10  no display                     11  screenshot failed
  12  the view did not close in time
)";
}

}  // namespace host
