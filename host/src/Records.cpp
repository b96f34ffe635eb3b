#include "Records.h"

#include <cstdlib>
#include <cstring>

namespace host {
namespace {

void FreeRecord(orbcefstring_c* record) {
  if (!record) {
    return;
  }
  std::free(record->data);
  std::free(record);
}

}  // namespace

orbcefstring_c* NewRecord(std::string_view text) {
  auto* record = static_cast<orbcefstring_c*>(std::calloc(1, sizeof(orbcefstring_c)));
  if (!record) {
    return nullptr;
  }
  record->free = &FreeRecord;
  if (!text.empty()) {
    record->data = static_cast<char*>(std::malloc(text.size()));
    if (record->data) {
      std::memcpy(record->data, text.data(), text.size());
      record->length = text.size();
    }
  }
  return record;
}

std::string TextOf(const orbcefstring_c* record) {
  if (!record || !record->data) {
    return {};
  }
  return std::string(record->data, record->length);
}

std::string TakeText(orbcefstring_c* record) {
  std::string text = TextOf(record);
  if (record && record->free) {
    record->free(record);
  }
  return text;
}

LentText::LentText(const std::string& text)
    : _record{text.empty() ? nullptr : const_cast<char*>(text.data()), text.size(), nullptr} {}

}  // namespace host
