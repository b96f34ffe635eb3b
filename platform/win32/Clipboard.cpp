#include "platform/Clipboard.h"

#include <windows.h>

#include <cstring>

namespace platform {

namespace {

// The clipboard is open. The clipboard owns the block that it took.
bool PutBlock(const char16_t* text, std::size_t bytes) {
  const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, bytes);
  if (!block)
    return false;
  void* const memory = GlobalLock(block);
  if (!memory) {
    GlobalFree(block);
    return false;
  }
  std::memcpy(memory, text, bytes);
  const bool is_taken = SetClipboardData(CF_UNICODETEXT, block) != nullptr;
  GlobalUnlock(block);
  if (!is_taken)
    GlobalFree(block);
  return is_taken;
}

}  // namespace

// Never emptied before: what another program put there in other formats stays, which is meant.
bool SetClipboardText(const char16_t* text, std::size_t bytes) {
  if (!OpenClipboard(GetActiveWindow()))
    return false;
  const bool is_put = PutBlock(text, bytes);
  CloseClipboard();
  return is_put;
}

}  // namespace platform
