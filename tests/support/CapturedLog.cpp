#include "CapturedLog.h"

#if defined(_WIN32)
#include <windows.h>
#endif

#include <filesystem>
#include <fstream>
#include <iterator>

#include "include/internal/cef_logging_internal.h"
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

// The engine writes its errors to the standard error stream as well, by the handle that it finds
// when it is loaded. A capture closes that handle, and whatever gets its number later would be
// written to: a socket, say, which then waits for ever. So the engine is loaded before all tests,
// and gets a handle of its own.
class EngineWithAStreamOfItsOwn : public testing::Environment {
 public:
  void SetUp() override {
    const HANDLE stream = GetStdHandle(STD_ERROR_HANDLE);
    const HANDLE process = GetCurrentProcess();
    HANDLE own = nullptr;
    if (!DuplicateHandle(process, stream, process, &own, 0, FALSE, DUPLICATE_SAME_ACCESS))
      return;
    SetStdHandle(STD_ERROR_HANDLE, own);
    cef_get_min_log_level();
    SetStdHandle(STD_ERROR_HANDLE, stream);
  }
};
const testing::Environment* const g_engine =
    testing::AddGlobalTestEnvironment(new EngineWithAStreamOfItsOwn);

#else

std::string LogFileContent() {
  return std::string();
}

#endif

}  // namespace

LoggedFile::LoggedFile() : _old_size(LogFileContent().size()) {}

std::string LoggedFile::Text() const {
  return LogFileContent().substr(_old_size);
}

std::string CapturedLog(const std::function<void()>& body) {
  const LoggedFile file;
  testing::internal::CaptureStderr();
  body();
  return testing::internal::GetCapturedStderr() + file.Text();
}
