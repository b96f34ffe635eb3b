// Puts text on the desktop's clipboard.
//
// Any thread may call it. The text is copied before it returns; a system that keeps no copy of a
// clipboard's content is served by a thread of this module, to the end of the process or until
// another program puts something there.
#ifndef PLATFORM_CLIPBOARD_H
#define PLATFORM_CLIPBOARD_H

#include <cstddef>

namespace platform {

// Puts the first `bytes` bytes of a UTF-16 text there, as text. The count is in bytes, and may cut
// a character in half: where the system takes bytes it gets exactly these, and where it takes
// characters it gets those that are whole. False if the clipboard could not be had, with what was
// on it.
bool SetClipboardText(const char16_t* text, std::size_t bytes);

}  // namespace platform

#endif  // PLATFORM_CLIPBOARD_H
