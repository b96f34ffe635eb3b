// Hands a URL or a file to the program that the desktop has for it.
//
// Any thread may call it. It does not wait for that program, and nothing of the text is read by a
// command interpreter.
#ifndef PLATFORM_SHELL_H
#define PLATFORM_SHELL_H

#include <string>

namespace platform {

// How the window of that program is shown, where the system asks for it: as it is set up for a
// page, and in its present place for a file.
enum class DesktopTarget { kUrl, kFile };

// `target` is a URL or an absolute path in UTF-8. True if the desktop took it. The empty text and
// a text that begins with "-", which an opener would read as an option, are refused.
bool OpenWithDesktop(const std::string& target, DesktopTarget kind = DesktopTarget::kUrl);

}  // namespace platform

#endif  // PLATFORM_SHELL_H
