#include "Road.h"

#include <cinttypes>
#include <cstdio>

#include "Json.h"
#include "Options.h"
#include "Records.h"

namespace host {
namespace {

const char* StateName(int state) {
  static constexpr const char* kNames[] = {"unknown", "created", "DOM ready", "page unloaded"};
  return state > 0 && state < 4 ? kNames[state] : kNames[0];
}

bool IsWelcome(const std::string& url) {
  const std::string welcome = kWelcomeUrl;
  return url.compare(0, welcome.size(), welcome) == 0;
}

// Fills the field of the Welcome page the way a user does, and presses its button.
std::string SayScript(const std::string& text) {
  return "(() => {\n"
         "  const field = document.getElementById('message');\n"
         "  field.value = " +
         ScriptLiteral(text) +
         ";\n"
         "  field.dispatchEvent(new Event('input', {bubbles: true}));\n"
         "  document.getElementById('send').click();\n"
         "})();";
}

}  // namespace

void Road::OnState(int state) {
  std::printf("[event] state %d (%s)\n", state, StateName(state));
  _created = _created || state == ORBCEF_STATE_CREATED;
}

void Road::OnV8Context(bool created) {
  std::printf("[event] script context %s\n", created ? "created" : "released");
}

void Road::OnStrings(const std::vector<std::string>& strings) {
  std::printf("[event] strings %s\n", ScriptArray(strings).c_str());
  _received = true;
  if (strings.size() < 2) {
    return;
  }
  if (strings[0] == "welcome.greet") {
    Answer(strings[1]);
  } else if (strings[0] == "welcome.answered" && strings[1] == _last_answer) {
    _acknowledged = true;
    std::printf("[host] the page acknowledged the answer\n");
  }
}

void Road::OnTitle(const std::string& title) {
  std::printf("[event] title %s\n", title.c_str());
  _configuration.set_title(title);
}

void Road::OnAddress(const std::string& url) {
  std::printf("[event] address %s\n", url.c_str());
  _welcome = IsWelcome(url);
}

void Road::OnDownload(std::uint32_t id, std::int64_t received, std::int64_t total,
                      std::int64_t speed, bool complete) {
  std::printf("[event] download %" PRIu32 ": %" PRId64 " of %" PRId64 " bytes, %" PRId64 " B/s%s\n",
              id, received, total, speed, complete ? ", complete" : "");
}

void Road::OnLoading(bool loading, const std::string& url) {
  std::printf("[event] loading %s %s\n", loading ? "began" : "ended", url.c_str());
  _loaded = _loaded || (_loading && !loading);
  _loading = loading;
  if (!loading && _welcome && _configuration.say && !_said) {
    _said = true;
    std::printf("[host] saying %s\n", ScriptLiteral(*_configuration.say).c_str());
    _configuration.run_script(SayScript(*_configuration.say));
  }
}

void Road::OnDocumentSize(int width, int height) {
  std::printf("[event] document size %d x %d\n", width, height);
}

void Road::OnConsole(const std::string& message, const std::string& source, int line) {
  std::printf("[event] console %s:%d %s\n", source.c_str(), line, message.c_str());
}

void Road::OnZoom(double change) {
  std::printf("[event] zoom change %g\n", change);
}

void Road::OnRecordData(const std::string& data) {
  std::printf("[event] record data %s\n", data.c_str());
}

void Road::OnAuthentication(const std::string& origin, bool proxy, const std::string& host,
                            int port, orbcefauthcallback_c* callback) {
  const bool known = !_configuration.user.empty();
  std::printf("[event] %s %s:%d asks for credentials for %s: %s\n", proxy ? "proxy" : "server",
              host.c_str(), port, origin.c_str(), known ? "answered" : "refused");
  if (known) {
    callback->continue_with(callback, LentText(_configuration.user).get(),
                            LentText(_configuration.password).get());
  } else {
    callback->cancel(callback);
  }
}

void Road::Answer(const std::string& words) {
  _last_answer = _configuration.answer + words;
  std::printf("[host] answering %s\n", ScriptLiteral(_last_answer).c_str());
  _configuration.run_script("xocef.receive(" + ScriptArray({"welcome.answer", _last_answer}) +
                            ");");
}

}  // namespace host
