// The road of one run: prints each event of the view on a line of its own, answers the page's
// strings, and keeps how far the run came. Main thread only; `main` owns it.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "ViewEvents.h"

namespace host {

class Road : public ViewListener {
 public:
  struct Configuration {
    // Typed on the Welcome page when it has loaded; no value leaves that to the user.
    std::optional<std::string> say;
    // What the host answers, before the page's own words.
    std::string answer;
    std::string user;
    std::string password;
    // Runs a script in the view.
    std::function<void(const std::string&)> run_script;
    std::function<void(const std::string&)> set_title;
  };

  explicit Road(Configuration configuration) : _configuration(std::move(configuration)) {}

  bool Created() const { return _created; }
  bool Loaded() const { return _loaded; }
  bool Received() const { return _received; }
  // True on other pages than Welcome too: they have nothing to acknowledge.
  bool Acknowledged() const { return _acknowledged || !_welcome; }
  bool Done() const { return _created && _loaded && _received && Acknowledged(); }

  void OnState(int state) override;
  void OnV8Context(bool created) override;
  void OnStrings(const std::vector<std::string>& strings) override;
  void OnTitle(const std::string& title) override;
  void OnAddress(const std::string& url) override;
  void OnDownload(std::uint32_t id, std::int64_t received, std::int64_t total, std::int64_t speed,
                  bool complete) override;
  void OnLoading(bool loading, const std::string& url) override;
  void OnDocumentSize(int width, int height) override;
  void OnConsole(const std::string& message, const std::string& source, int line) override;
  void OnZoom(double change) override;
  void OnRecordData(const std::string& data) override;
  void OnAuthentication(const std::string& origin, bool proxy, const std::string& host, int port,
                        orbcefauthcallback_c* callback) override;

 private:
  void Answer(const std::string& words);

  const Configuration _configuration;
  bool _created = false;
  bool _loading = false;
  bool _loaded = false;
  bool _welcome = false;
  bool _said = false;
  bool _received = false;
  bool _acknowledged = false;
  std::string _last_answer;
};

}  // namespace host
