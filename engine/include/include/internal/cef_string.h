// CefString: the engine's UTF-16 string as a C++ value.
//
// An object either owns its structure or refers to one that belongs to somebody else. A reference
// that was made from a const structure is never written: the first write makes the object an owner
// of its own copy. Conversions go through the engine; nothing here throws. Not thread-safe, like
// any value.
#ifndef CEF_INCLUDE_INTERNAL_CEF_STRING_H_
#define CEF_INCLUDE_INTERNAL_CEF_STRING_H_

#include <string>

#include "include/internal/cef_types.h"

class CefStringUTF16 {
 public:
  using char_type = char16;
  using struct_type = cef_string_utf16_t;
  using userfree_struct_type = cef_string_userfree_utf16_t;

  CefStringUTF16() = default;
  CefStringUTF16(const CefStringUTF16& other) { Assign(other._string); }
  CefStringUTF16(CefStringUTF16&& other) noexcept { swap(other); }
  CefStringUTF16(const std::string& text) { FromString(text); }
  CefStringUTF16(const char* text) { FromString(text ? std::string(text) : std::string()); }
  CefStringUTF16(const std::wstring& text) { FromWString(text); }
  CefStringUTF16(const wchar_t* text) { FromWString(text ? std::wstring(text) : std::wstring()); }
  CefStringUTF16(const char16* text, size_t length, bool copy) { FromString(text, length, copy); }
  // Refers to a structure of the caller. The first form may write to it, the second never does.
  CefStringUTF16(cef_string_utf16_t* source) : _string(source), _writable(true) {}
  CefStringUTF16(const cef_string_utf16_t* source)
      : _string(const_cast<cef_string_utf16_t*>(source)), _writable(false) {}
  ~CefStringUTF16() { ClearAndFree(); }

  CefStringUTF16& operator=(const CefStringUTF16& other) {
    if (this != &other) {
      Assign(other._string);
    }
    return *this;
  }
  CefStringUTF16& operator=(CefStringUTF16&& other);
  CefStringUTF16& operator=(const std::string& text) {
    FromString(text);
    return *this;
  }
  CefStringUTF16& operator=(const char* text) {
    FromString(text ? std::string(text) : std::string());
    return *this;
  }
  CefStringUTF16& operator=(const std::wstring& text) {
    FromWString(text);
    return *this;
  }

  const char16* c_str() const { return _string ? _string->str : nullptr; }
  size_t length() const { return _string ? _string->length : 0; }
  size_t size() const { return length(); }
  bool empty() const { return length() == 0; }
  // Negative, zero or positive, by UTF-16 code units. An object without a structure comes before
  // all others.
  int compare(const CefStringUTF16& other) const;
  void clear();

  bool IsOwner() const { return _owner; }
  bool IsReference() const { return _string != nullptr && !_owner; }
  const cef_string_utf16_t* GetStruct() const { return _string; }
  // A structure that may be written; allocated, or copied from a const reference, when needed.
  cef_string_utf16_t* GetWritableStruct();

  void ClearAndFree();
  void Attach(cef_string_utf16_t* source, bool owner);
  // Takes over a string that the engine returned; null is an empty string.
  void AttachToUserFree(cef_string_userfree_utf16_t source);
  // Hands an owned string over; null when there is none. The receiver frees it through the engine.
  cef_string_userfree_utf16_t DetachToUserFree();
  void swap(CefStringUTF16& other) noexcept;

  // UTF-8. Sequences that are no text become U+FFFD, as the engine converts them.
  std::string ToString() const;
  bool FromString(const std::string& text);
  bool FromString(const char* text, size_t length);
  bool FromString(const char16* text, size_t length, bool copy);
  bool FromASCII(const char* text);
  std::wstring ToWString() const;
  bool FromWString(const std::wstring& text);

  operator std::string() const { return ToString(); }
  operator std::wstring() const { return ToWString(); }

 private:
  void Assign(const cef_string_utf16_t* source);
  void Own();

  cef_string_utf16_t* _string = nullptr;
  bool _owner = false;
  bool _writable = false;
};

using CefString = CefStringUTF16;

inline bool operator==(const CefString& left, const CefString& right) {
  return left.compare(right) == 0;
}
inline bool operator!=(const CefString& left, const CefString& right) {
  return left.compare(right) != 0;
}
inline bool operator<(const CefString& left, const CefString& right) {
  return left.compare(right) < 0;
}
inline bool operator<=(const CefString& left, const CefString& right) {
  return left.compare(right) <= 0;
}
inline bool operator>(const CefString& left, const CefString& right) {
  return left.compare(right) > 0;
}
inline bool operator>=(const CefString& left, const CefString& right) {
  return left.compare(right) >= 0;
}

#endif  // CEF_INCLUDE_INTERNAL_CEF_STRING_H_
