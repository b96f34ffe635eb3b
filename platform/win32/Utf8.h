// Texts between this interface, which speaks UTF-8, and the system, whose narrow functions speak a
// code page that cannot name every file: only its wide functions are called.
//
// Any thread may call these functions.
#ifndef PLATFORM_WIN32_UTF8_H
#define PLATFORM_WIN32_UTF8_H

#include <string>

namespace platform {

// Empty for a text that is no UTF-8, so that nothing is found under a name that nobody gave. Ends
// at a zero byte, as a path does.
std::wstring ToWide(const std::string& text);

std::string ToUtf8(const std::wstring& text);

}  // namespace platform

#endif  // PLATFORM_WIN32_UTF8_H
