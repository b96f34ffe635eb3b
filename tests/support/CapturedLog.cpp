#include "CapturedLog.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include "platform/Process.h"

namespace {

#if defined(_WIN32)

// The engine's choice of a name and a folder for what it logs before its start.
std::filesystem::path LogFile() {
  return std::filesystem::u8path(platform::CommandLine().front()).replace_filename("debug.log");
}

std::string LogFileContent() {
  std::ifstream file(LogFile(), std::ios::binary);
  std::string text;
  for (std::istreambuf_iterator<char> c(file), end; c != end; ++c) {
    if (*c != '\r')
      text.push_back(*c);
  }
  return text;
}

#else

std::string LogFileContent() {
  return std::string();
}

#endif

}  // namespace

std::string CapturedLog(const std::function<void()>& body) {
  const std::size_t old_size = LogFileContent().size();
  testing::internal::CaptureStderr();
  body();
  return testing::internal::GetCapturedStderr() + LogFileContent().substr(old_size);
}
