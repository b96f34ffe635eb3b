#include "ChildProcess.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include "TempDirectory.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <sys/wait.h>

#include <cstdlib>
#endif

namespace child_process {

namespace {

std::string Content(const std::string& path) {
  std::ifstream file(std::filesystem::u8path(path), std::ios::binary);
  const std::string raw{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  std::string text;
  for (const char c : raw) {
    if (c != '\r')
      text.push_back(c);
  }
  return text;
}

#if defined(_WIN32)

HANDLE InheritedFile(const std::string& path) {
  SECURITY_ATTRIBUTES inherited{sizeof(inherited), nullptr, TRUE};
  return CreateFileW(std::filesystem::u8path(path).c_str(), GENERIC_WRITE, FILE_SHARE_READ,
                     &inherited, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
}

int Start(const std::string& path, const std::string& argument, const std::string& output,
          const std::string& errors) {
  STARTUPINFOW start{};
  start.cb = sizeof(start);
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdOutput = InheritedFile(output);
  start.hStdError = InheritedFile(errors);
  const std::wstring program = std::filesystem::u8path(path).wstring();
  std::wstring line = L"\"" + program + L"\" " + std::filesystem::u8path(argument).wstring();
  PROCESS_INFORMATION process{};
  DWORD code = static_cast<DWORD>(-1);
  if (CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, L"C:\\",
                     &start, &process)) {
    WaitForSingleObject(process.hProcess, INFINITE);
    GetExitCodeProcess(process.hProcess, &code);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
  }
  CloseHandle(start.hStdOutput);
  CloseHandle(start.hStdError);
  return static_cast<int>(code);
}

#else

int Start(const std::string& path, const std::string& argument, const std::string& output,
          const std::string& errors) {
  const std::string command =
      "cd / && '" + path + "' '" + argument + "' >'" + output + "' 2>'" + errors + "'";
  const int status = std::system(command.c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

#endif

}  // namespace

Ending Run(const std::string& path, const std::string& argument) {
  const TempDirectory folder;
  const std::string output = folder.Join("output");
  const std::string errors = folder.Join("errors");
  Ending ending;
  ending.code = Start(path, argument, output, errors);
  ending.output = Content(output);
  ending.errors = Content(errors);
  return ending;
}

}  // namespace child_process
