// What the host asks of the operating system, its window aside. All texts are UTF-8. Any thread,
// but the caller keeps readers and writers of the environment apart.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace host {

// The module's file in an installation root.
extern const char* const kModuleFile;

// The arguments of the command line, without the program's name.
std::vector<std::string> Arguments(int argc, char** argv);

// The directory of this executable.
std::string ExecutableDirectory();

// A new directory of the host's own below the temporary directory; empty if it cannot be made.
std::string MakeTemporaryDirectory();

// The user's locale, for instance "de_DE"; empty if there is none.
std::string UserLocale();

std::optional<std::string> ReadVariable(const std::string& name);
// Child processes inherit the variable. False if the system refuses it.
bool WriteVariable(const std::string& name, const std::string& value);

// Loads a library that stays loaded to the end of the process. Null with the reason in `error`.
void* OpenLibrary(const std::string& path, std::string& error);
void* FindSymbol(void* library, const char* name, std::string& error);

// Between the host's texts and the system's names of files.
inline std::filesystem::path ToPath(const std::string& text) {
  return std::filesystem::u8path(text);
}
inline std::string ToText(const std::filesystem::path& path) {
  return path.u8string();
}

}  // namespace host
