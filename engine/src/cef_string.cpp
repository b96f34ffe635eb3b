#include "include/internal/cef_string.h"

#include <cstring>
#include <utility>

#include "include/capi/cef_functions.h"

CefStringUTF16& CefStringUTF16::operator=(CefStringUTF16&& other) {
  // A reference is written through, as for any other assignment; everything else changes places.
  if (IsReference() || other.IsReference()) {
    Assign(other._string);
  } else {
    swap(other);
  }
  return *this;
}

int CefStringUTF16::compare(const CefStringUTF16& other) const {
  if (_string == other._string) {
    return 0;
  }
  if (!_string) {
    return -1;
  }
  if (!other._string) {
    return 1;
  }
  return cef_string_utf16_cmp(_string, other._string);
}

void CefStringUTF16::clear() {
  if (!_string) {
    return;
  }
  if (IsReference() && !_writable) {
    Own();
  }
  cef_string_utf16_clear(_string);
}

cef_string_utf16_t* CefStringUTF16::GetWritableStruct() {
  if (!_string || (IsReference() && !_writable)) {
    Own();
  }
  return _string;
}

// Makes this object the owner of a structure with the present content.
void CefStringUTF16::Own() {
  const cef_string_utf16_t* const previous = _string;
  auto* const own = new cef_string_utf16_t{};
  if (previous) {
    cef_string_utf16_set(previous->str, previous->length, own, true);
  }
  _string = own;
  _owner = true;
  _writable = true;
}

void CefStringUTF16::ClearAndFree() {
  if (_owner) {
    cef_string_utf16_clear(_string);
    delete _string;
  }
  _string = nullptr;
  _owner = false;
  _writable = false;
}

void CefStringUTF16::Attach(cef_string_utf16_t* source, bool owner) {
  ClearAndFree();
  _string = source;
  _owner = owner;
  _writable = source != nullptr;
}

void CefStringUTF16::AttachToUserFree(cef_string_userfree_utf16_t source) {
  ClearAndFree();
  if (!source) {
    return;
  }
  // The characters move over; only the engine may free the structure around them.
  _string = new cef_string_utf16_t(*source);
  _owner = true;
  _writable = true;
  *source = cef_string_utf16_t{};
  cef_string_userfree_utf16_free(source);
}

cef_string_userfree_utf16_t CefStringUTF16::DetachToUserFree() {
  if (empty()) {
    return nullptr;
  }
  cef_string_userfree_utf16_t result = cef_string_userfree_utf16_alloc();
  if (!result) {
    return nullptr;
  }
  if (_owner) {
    *result = *_string;
    *_string = cef_string_utf16_t{};
  } else {
    cef_string_utf16_set(_string->str, _string->length, result, true);
  }
  ClearAndFree();
  return result;
}

void CefStringUTF16::swap(CefStringUTF16& other) noexcept {
  std::swap(_string, other._string);
  std::swap(_owner, other._owner);
  std::swap(_writable, other._writable);
}

void CefStringUTF16::Assign(const cef_string_utf16_t* source) {
  if (!source) {
    if (IsReference() && _writable) {
      cef_string_utf16_clear(_string);
    } else {
      ClearAndFree();
    }
    return;
  }
  if (source == _string) {
    return;
  }
  cef_string_utf16_set(source->str, source->length, GetWritableStruct(), true);
}

std::string CefStringUTF16::ToString() const {
  if (empty()) {
    return std::string();
  }
  cef_string_utf8_t converted{};
  cef_string_utf16_to_utf8(_string->str, _string->length, &converted);
  std::string text(converted.str ? converted.str : "", converted.length);
  cef_string_utf8_clear(&converted);
  return text;
}

bool CefStringUTF16::FromString(const std::string& text) {
  return FromString(text.data(), text.size());
}

bool CefStringUTF16::FromString(const char* text, size_t length) {
  if (!text || length == 0) {
    clear();
    return true;
  }
  return cef_string_utf8_to_utf16(text, length, GetWritableStruct()) != 0;
}

bool CefStringUTF16::FromString(const char16* text, size_t length, bool copy) {
  return cef_string_utf16_set(text, length, GetWritableStruct(), copy) != 0;
}

bool CefStringUTF16::FromASCII(const char* text) {
  const size_t length = text ? std::strlen(text) : 0;
  if (length == 0) {
    clear();
    return true;
  }
  return cef_string_ascii_to_utf16(text, length, GetWritableStruct()) != 0;
}

std::wstring CefStringUTF16::ToWString() const {
  if (empty()) {
    return std::wstring();
  }
  cef_string_wide_t converted{};
  cef_string_utf16_to_wide(_string->str, _string->length, &converted);
  std::wstring text(converted.str ? converted.str : L"", converted.length);
  cef_string_wide_clear(&converted);
  return text;
}

bool CefStringUTF16::FromWString(const std::wstring& text) {
  if (text.empty()) {
    clear();
    return true;
  }
  return cef_string_wide_to_utf16(text.data(), text.size(), GetWritableStruct()) != 0;
}
