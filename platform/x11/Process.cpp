#include "platform/Process.h"

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace platform {

namespace {

bool NeedsQuotes(const std::string& argument) {
  return argument.empty() || argument.find_first_of(" \t\n\"") != std::string::npos;
}

std::string Quoted(const std::string& argument) {
  std::string text = "\"";
  for (const char c : argument) {
    if (c == '"' || c == '\\')
      text.push_back('\\');
    text.push_back(c);
  }
  text.push_back('"');
  return text;
}

}  // namespace

std::vector<std::string> CommandLine() {
  std::ifstream file("/proc/self/cmdline", std::ios::binary);
  std::vector<std::string> arguments;
  std::string argument;
  // Each argument ends in a zero byte, an empty one too.
  while (std::getline(file, argument, '\0')) arguments.push_back(argument);
  return arguments;
}

std::string CommandLineText() {
  std::string line;
  for (const std::string& argument : CommandLine()) {
    if (!line.empty())
      line.push_back(' ');
    line += NeedsQuotes(argument) ? Quoted(argument) : argument;
  }
  return line;
}

bool IsDpiAware() {
  // X11 has no such state of a process; a host that scales says so by itself.
  return false;
}

void* ModuleHandle() {
  return nullptr;
}

void EndChildren(const std::string&, std::chrono::milliseconds) {}

const char* GetEnvironment(const char* name) {
  return std::getenv(name);
}

}  // namespace platform
