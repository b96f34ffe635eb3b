#include "Workload.h"

#include <algorithm>
#include <array>
#include <map>
#include <thread>
#include <type_traits>

namespace bench {

namespace {

double PerSecond(double count, int64_t begin, int64_t end) {
  return count * 1e9 / static_cast<double>(end - begin);
}

// `unit`, whole, as often as it fits into `bytes`, and dots up to the end.
std::string Repeated(std::string_view unit, size_t bytes) {
  std::string text;
  text.reserve(bytes);
  while (text.size() + unit.size() <= bytes) {
    text += unit;
  }
  return text.append(bytes - text.size(), '.');
}

// The start of the process to the end of the first load, in milliseconds.
class Start : public Workload {
 public:
  explicit Start(const Options& options) : _started(options.started) {}

  void Loaded(int64_t time) override { _loaded = time; }
  bool Begin(View&) override { return false; }
  bool Take(View&, std::string_view) override { return false; }
  std::string Failure() const override { return {}; }
  Values Results() const override {
    return {{"start", static_cast<double>(_loaded - _started) / 1e6}};
  }

 private:
  const int64_t _started;
  int64_t _loaded = 0;
};

// Strings one way, each in a message of its own, in strings a second.
class Send : public Workload {
 public:
  bool Begin(View& view) override {
    _begin = Now();
    view.Execute("sendMany(" + std::to_string(kCount) + ", " + std::to_string(kLength) + ")");
    return true;
  }
  bool Take(View&, std::string_view text) override {
    const std::string number = std::to_string(_received);
    const bool right = text.size() == kLength && text.substr(0, number.size()) == number &&
                       text[number.size()] == '.';
    _wrong += right ? 0 : 1;
    if (++_received < kCount) {
      return false;
    }
    _end = Now();
    return true;
  }
  std::string Failure() const override {
    if (_received == kCount && _wrong == 0) {
      return {};
    }
    return std::to_string(_received) + " of " + std::to_string(kCount) + " strings came, " +
           std::to_string(_wrong) + " of them wrong or out of order";
  }
  Values Results() const override { return {{"send", PerSecond(kCount, _begin, _end)}}; }

 private:
  static constexpr int kCount = 10'000;
  static constexpr size_t kLength = 64;
  int64_t _begin = 0;
  int64_t _end = 0;
  int _received = 0;
  int _wrong = 0;
};

// A call of the page that awaits the host's answer, 2,000 times: half and 99 of 100 of the calls
// take no longer than these microseconds.
class Call : public Workload {
 public:
  bool Begin(View& view) override {
    Ask(view);
    return true;
  }
  bool Take(View& view, std::string_view text) override {
    if (text == "end") {
      Finish();
      if (++_rung == kNames.size()) {
        return true;
      }
      Ask(view);
      return false;
    }
    const int64_t now = Now();
    if (_last) {
      _times.push_back(now - _last);
    }
    _last = now;
    _wrong += text == _text ? 0 : 1;
    view.Execute(_answer);
    return false;
  }
  std::string Failure() const override {
    if (_rung == kNames.size() && _wrong == 0) {
      return {};
    }
    return "calls or answers were lost or changed, " + std::to_string(_wrong) + " of them changed";
  }
  Values Results() const override { return _results; }

 private:
  static constexpr int kCount = 2'000;
  static constexpr std::array<const char*, 2> kNames = {"ascii", "cjk"};

  void Ask(View& view) {
    // 64 bytes, or 64 characters beyond ASCII.
    _text = _rung == 0 ? Repeated("0123456789abcdef", 64) : Repeated("漢字仮名", 64 * 3);
    _answer = "answer(\"" + _text + "\")";
    _last = 0;
    _times.clear();
    view.Execute("callMany(" + std::to_string(kCount) + ", \"" + _text + "\")");
  }
  void Finish() {
    // The first call has none before it.
    _wrong += static_cast<int>(_times.size()) == kCount - 1 ? 0 : 1;
    std::sort(_times.begin(), _times.end());
    for (const int percent : {50, 99}) {
      const size_t place = _times.size() * static_cast<size_t>(percent) / 100;
      _results.emplace_back(std::string(kNames[_rung]) + "-p" + std::to_string(percent),
                            _times.empty() ? 0 : static_cast<double>(_times[place]) / 1e3);
    }
  }

  size_t _rung = 0;
  // What a rung sends, and the script that answers it.
  std::string _text;
  std::string _answer;
  int64_t _last = 0;
  std::vector<int64_t> _times;
  int _wrong = 0;
  Values _results;
};

// Texts of growing size to the page and back, each when the one before has come back, in MiB a
// second, both ways counted.
class Ladder : public Workload {
 public:
  bool Begin(View& view) override {
    Ask(view);
    return true;
  }
  bool Take(View& view, std::string_view text) override {
    const Rung& rung = _rungs[_rung];
    _wrong += text == rung.text ? 0 : 1;
    if (++_received == rung.count) {
      const double bytes = 2.0 * static_cast<double>(rung.text.size()) * rung.count;
      _results.emplace_back(rung.name, PerSecond(bytes / (kKiB * kKiB), _begin, Now()));
      _received = 0;
      if (++_rung == _rungs.size()) {
        return true;
      }
    }
    Ask(view);
    return false;
  }
  std::string Failure() const override {
    if (_rung == _rungs.size() && _wrong == 0) {
      return {};
    }
    return std::to_string(_rung) + " of " + std::to_string(_rungs.size()) + " rungs done, " +
           std::to_string(_wrong) + " texts came back changed";
  }
  Values Results() const override { return _results; }

 private:
  struct Rung {
    std::string name;
    std::string text;
    int count;
  };
  static constexpr size_t kKiB = 1024;

  static std::vector<Rung> Rungs() {
    const std::pair<const char*, const char*> alphabets[] = {
        {"ascii", "0123456789abcdef"}, {"latin", "äöüßéèñ"}, {"cjk", "漢字仮名"}, {"emoji", "😀🚀🌍"}};
    const std::pair<size_t, int> sizes[] = {
        {kKiB, 500}, {16 * kKiB, 200}, {64 * kKiB, 80}, {kKiB * kKiB, 16}, {16 * kKiB * kKiB, 3}};
    std::vector<Rung> rungs;
    for (const auto& [name, unit] : alphabets) {
      for (const auto& [bytes, count] : sizes) {
        rungs.push_back({std::string(name) + "-" + std::to_string(bytes / kKiB) + "KiB",
                         Repeated(unit, bytes), count});
      }
    }
    return rungs;
  }
  void Ask(View& view) {
    if (_received == 0) {
      _begin = Now();
    }
    view.Execute("echo(\"" + _rungs[_rung].text + "\")");
  }

  const std::vector<Rung> _rungs = Rungs();
  size_t _rung = 0;
  int _received = 0;
  int _wrong = 0;
  int64_t _begin = 0;
  Values _results;
};

// Scripts of 200 bytes to the page, from the main thread and from another, in scripts a second.
class Script : public Workload {
 public:
  ~Script() override {
    if (_thread.joinable()) {
      _thread.join();
    }
  }

  bool Begin(View& view) override {
    Send(view);
    return true;
  }
  bool Take(View& view, std::string_view text) override {
    _results.emplace_back(kNames[_rung], PerSecond(kCount, _begin, Now()));
    _wrong += text == "steps " + std::to_string(kCount) ? 0 : 1;
    if (++_rung == kNames.size()) {
      return true;
    }
    _thread = std::thread([this, &view] { Send(view); });
    return false;
  }
  std::string Failure() const override {
    if (_rung == kNames.size() && _wrong == 0) {
      return {};
    }
    return "scripts were lost or ran out of order";
  }
  Values Results() const override { return _results; }

 private:
  static constexpr int kCount = 40'000;
  static constexpr size_t kLength = 200;
  static constexpr std::array<const char*, 2> kNames = {"main", "thread"};

  void Send(View& view) {
    _begin = Now();
    for (int i = 0; i < kCount; ++i) {
      const std::string call =
          "step(" + std::to_string(i) + ", " + std::to_string(kCount) + "); //";
      view.Execute(call + std::string(kLength - call.size(), '.'));
    }
  }

  size_t _rung = 0;
  int64_t _begin = 0;
  int _wrong = 0;
  std::thread _thread;
  Values _results;
};

template <class Kind>
std::unique_ptr<Workload> MakeOne(const Options& options) {
  if constexpr (std::is_constructible_v<Kind, const Options&>) {
    return std::make_unique<Kind>(options);
  } else {
    return std::make_unique<Kind>();
  }
}

}  // namespace

std::unique_ptr<Workload> Workload::Make(const Options& options) {
  static const std::map<std::string, std::unique_ptr<Workload> (*)(const Options&)> makers = {
      {"start", &MakeOne<Start>},   {"send", &MakeOne<Send>},     {"call", &MakeOne<Call>},
      {"ladder", &MakeOne<Ladder>}, {"script", &MakeOne<Script>},
  };
  const auto found = makers.find(options.workload);
  return found == makers.end() ? nullptr : found->second(options);
}

}  // namespace bench
