// A command line that keeps its switches in the order in which they were appended, and counts the
// questions for them.
//
// Used on the test's thread; counted like all engine objects.
#ifndef ORBCEF_TESTS_COMMAND_LINE_DOUBLE_H
#define ORBCEF_TESTS_COMMAND_LINE_DOUBLE_H

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "include/cef_command_line.h"

class CommandLineDouble : public CefCommandLine {
 public:
  CommandLineDouble() = default;
  explicit CommandLineDouble(std::vector<std::pair<std::string, std::string>> initial)
      : switches(std::move(initial)) {}

  // Name and value, in order; repeated switches stay.
  std::vector<std::pair<std::string, std::string>> switches;
  // Names that were asked for.
  std::vector<std::string> asked;

  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : switches) names.push_back(entry.first);
    return names;
  }

  bool IsValid() override { return true; }
  bool IsReadOnly() override { return false; }
  CefRefPtr<CefCommandLine> Copy() override { return new CommandLineDouble(switches); }
  void InitFromArgv(int, const char* const*) override {}
  void InitFromString(const CefString&) override {}
  void Reset() override { switches.clear(); }
  void GetArgv(std::vector<CefString>&) override {}
  CefString GetCommandLineString() override {
    std::string text = "program";
    for (const auto& [name, value] : switches)
      text += " --" + name + (value.empty() ? "" : "=" + value);
    return text;
  }
  CefString GetProgram() override { return "program"; }
  void SetProgram(const CefString&) override {}
  bool HasSwitches() override { return !switches.empty(); }
  bool HasSwitch(const CefString& name) override {
    asked.push_back(name.ToString());
    return Find(name) != switches.end();
  }
  CefString GetSwitchValue(const CefString& name) override {
    asked.push_back(name.ToString());
    const auto found = Find(name);
    return found != switches.end() ? CefString(found->second) : CefString();
  }
  void GetSwitches(SwitchMap&) override {}
  void AppendSwitch(const CefString& name) override { switches.emplace_back(name.ToString(), ""); }
  void AppendSwitchWithValue(const CefString& name, const CefString& value) override {
    switches.emplace_back(name.ToString(), value.ToString());
  }
  bool HasArguments() override { return false; }
  void GetArguments(ArgumentList&) override {}
  void AppendArgument(const CefString&) override {}
  void PrependWrapper(const CefString&) override {}

 private:
  std::vector<std::pair<std::string, std::string>>::const_iterator Find(const CefString& name) {
    const std::string wanted = name.ToString();
    return std::find_if(switches.cbegin(), switches.cend(),
                        [&](const auto& entry) { return entry.first == wanted; });
  }

  IMPLEMENT_REFCOUNTING(CommandLineDouble);
};

#endif  // ORBCEF_TESTS_COMMAND_LINE_DOUBLE_H
