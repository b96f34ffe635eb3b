// Command lines: a program, switches and arguments, in the engine's order of them.
#include "command_line.h"

#include <map>
#include <vector>

#include "audit.h"
#include "glue_conversions.h"
#include "neutral_classes.h"
#include "script.h"
#include "utf.h"

namespace standin {

namespace {

// Splits at blanks that stand outside of quotes.
std::vector<std::string> SplitCommand(const std::string& text) {
  std::vector<std::string> parts;
  std::string part;
  bool is_quoted = false;
  bool has_part = false;
  for (const char c : text) {
    if (c == '"') {
      is_quoted = !is_quoted;
      has_part = true;
    } else if (c == ' ' && !is_quoted) {
      if (has_part) {
        parts.push_back(part);
      }
      part.clear();
      has_part = false;
    } else {
      part.push_back(c);
      has_part = true;
    }
  }
  if (has_part) {
    parts.push_back(part);
  }
  return parts;
}

class StandinCommandLine : public engine_neutral::NeutralCommandLine {
 public:
  explicit StandinCommandLine(std::vector<std::string> argv = {}) { Init(std::move(argv)); }

  bool IsValid() override { return true; }
  bool IsReadOnly() override { return false; }
  CefRefPtr<CefCommandLine> Copy() override { return new StandinCommandLine(All()); }
  void InitFromArgv(int argc, const char* const* argv) override {
    Init(std::vector<std::string>(argv, argv + argc));
  }
  void InitFromString(const CefString& command_line) override { Init(SplitCommand(command_line)); }
  void Reset() override { Init({}); }
  void GetArgv(std::vector<CefString>& argv) override {
    for (const std::string& part : All()) {
      argv.emplace_back(part);
    }
  }
  CefString GetCommandLineString() override {
    std::string text;
    for (const std::string& part : All()) {
      text += (text.empty() ? "" : " ") + part;
    }
    return text;
  }
  CefString GetProgram() override { return _program; }
  void SetProgram(const CefString& program) override { _program = program; }
  bool HasSwitches() override { return !_switches.empty(); }
  bool HasSwitch(const CefString& name) override {
    return _switches.count(Lower(name.ToString())) > 0;
  }
  CefString GetSwitchValue(const CefString& name) override {
    const auto found = _switches.find(Lower(name.ToString()));
    return found != _switches.end() ? CefString(found->second) : CefString();
  }
  void GetSwitches(SwitchMap& switches) override {
    for (const auto& [name, value] : _switches) {
      switches[name] = value;
    }
  }
  void AppendSwitch(const CefString& name) override { AppendSwitchWithValue(name, CefString()); }
  void AppendSwitchWithValue(const CefString& name, const CefString& value) override {
    const std::string text = value.ToString();
    _switches[Lower(name.ToString())] = text;
    _written.push_back("--" + name.ToString() + (text.empty() ? "" : "=" + text));
  }
  bool HasArguments() override { return !_arguments.empty(); }
  void GetArguments(ArgumentList& arguments) override {
    arguments.insert(arguments.end(), _arguments.begin(), _arguments.end());
  }
  void AppendArgument(const CefString& argument) override { _arguments.push_back(argument); }
  void PrependWrapper(const CefString& wrapper) override {
    _written.insert(_written.begin(), _program);
    _program = wrapper;
  }

 private:
  // What follows "--" is no switch.
  void Init(std::vector<std::string> argv) {
    _program = argv.empty() ? std::string() : argv.front();
    _switches.clear();
    _written.clear();
    _arguments.clear();
    bool are_switches = true;
    for (size_t i = 1; i < argv.size(); ++i) {
      const std::string& part = argv[i];
      const size_t dashes = part.compare(0, 2, "--") == 0  ? 2
                            : part.compare(0, 1, "-") == 0 ? 1
                                                           : 0;
      if (part == "--") {
        are_switches = false;
      } else if (are_switches && dashes > 0 && part.size() > dashes) {
        const size_t equals = part.find('=');
        _switches[Lower(part.substr(dashes, equals - dashes))] =
            equals == std::string::npos ? std::string() : part.substr(equals + 1);
        _written.push_back(part);
      } else {
        _arguments.emplace_back(part);
      }
    }
  }

  std::vector<std::string> All() const {
    std::vector<std::string> all{_program};
    all.insert(all.end(), _written.begin(), _written.end());
    for (const CefString& argument : _arguments) {
      all.push_back(argument.ToString());
    }
    return all;
  }

  std::string _program;
  std::map<std::string, std::string> _switches;
  std::vector<std::string> _written;
  std::vector<CefString> _arguments;

  STANDIN_OBJECT(StandinCommandLine);
};

}  // namespace

CefRefPtr<CefCommandLine> MakeCommandLine(const std::vector<std::string>& argv) {
  return new StandinCommandLine(argv);
}

}  // namespace standin

extern "C" cef_command_line_t* cef_command_line_create() {
  if (standin::TakeFault("command_line")) {
    return nullptr;
  }
  return engine_glue::ToC(standin::MakeCommandLine({}));
}

extern "C" cef_command_line_t* cef_command_line_get_global() {
  return engine_glue::ToC(standin::GlobalCommandLine());
}
