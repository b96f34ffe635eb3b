// The engine's value records as C++ classes. Plain records derive from the C record; records that
// hold strings are CefStructBase classes, which own their strings unless told otherwise.
#ifndef CEF_INCLUDE_INTERNAL_CEF_TYPES_WRAPPERS_H_
#define CEF_INCLUDE_INTERNAL_CEF_TYPES_WRAPPERS_H_

#include "include/internal/cef_string.h"
#include "include/internal/cef_types.h"

// Traits give: struct_type, init(s), clear(s) and set(source, target, copy).
template <class Traits>
class CefStructBase : public Traits::struct_type {
 public:
  using struct_type = typename Traits::struct_type;

  CefStructBase() : struct_type{} { Traits::init(this); }
  CefStructBase(const CefStructBase& other) : CefStructBase() { Traits::set(&other, this, true); }
  CefStructBase(const struct_type& other) : CefStructBase() { Traits::set(&other, this, true); }
  ~CefStructBase() { Traits::clear(this); }

  CefStructBase& operator=(const CefStructBase& other) {
    if (this != &other) {
      Traits::set(&other, this, true);
    }
    return *this;
  }
  CefStructBase& operator=(const struct_type& other) {
    if (this != &other) {
      Traits::set(&other, this, true);
    }
    return *this;
  }

  // Without `copy` the strings stay the source's and must outlive this object's use of them.
  void Set(const struct_type& source, bool copy) { Traits::set(&source, this, copy); }
  void Reset() {
    Traits::clear(this);
    Traits::init(this);
  }
  // Moves the source's content in and leaves the source empty.
  void AttachTo(struct_type& source) {
    Traits::clear(this);
    static_cast<struct_type&>(*this) = source;
    Traits::init(&source);
  }
  // Moves the content out into the target and leaves this object empty.
  void DetachTo(struct_type& target) {
    Traits::clear(&target);
    target = *this;
    Traits::init(this);
  }
};

#include "include/internal/cef_record_classes.h"

class CefPoint : public cef_point_t {
 public:
  CefPoint() : cef_point_t{} {}
  CefPoint(const cef_point_t& other) : cef_point_t(other) {}
  CefPoint(int left, int top) : cef_point_t{left, top} {}
  bool IsEmpty() const { return x <= 0 && y <= 0; }
  void Set(int left, int top) { *this = CefPoint(left, top); }
};
inline bool operator==(const CefPoint& a, const CefPoint& b) {
  return a.x == b.x && a.y == b.y;
}
inline bool operator!=(const CefPoint& a, const CefPoint& b) {
  return !(a == b);
}

class CefRect : public cef_rect_t {
 public:
  CefRect() : cef_rect_t{} {}
  CefRect(const cef_rect_t& other) : cef_rect_t(other) {}
  CefRect(int left, int top, int wide, int high) : cef_rect_t{left, top, wide, high} {}
  bool IsEmpty() const { return width <= 0 || height <= 0; }
  void Set(int left, int top, int wide, int high) { *this = CefRect(left, top, wide, high); }
  bool Contains(int left, int top) const {
    return left >= x && left < x + width && top >= y && top < y + height;
  }
};
inline bool operator==(const CefRect& a, const CefRect& b) {
  return a.x == b.x && a.y == b.y && a.width == b.width && a.height == b.height;
}
inline bool operator!=(const CefRect& a, const CefRect& b) {
  return !(a == b);
}

class CefSize : public cef_size_t {
 public:
  CefSize() : cef_size_t{} {}
  CefSize(const cef_size_t& other) : cef_size_t(other) {}
  CefSize(int wide, int high) : cef_size_t{wide, high} {}
  bool IsEmpty() const { return width <= 0 || height <= 0; }
  void Set(int wide, int high) { *this = CefSize(wide, high); }
};
inline bool operator==(const CefSize& a, const CefSize& b) {
  return a.width == b.width && a.height == b.height;
}
inline bool operator!=(const CefSize& a, const CefSize& b) {
  return !(a == b);
}

class CefRange : public cef_range_t {
 public:
  CefRange() : cef_range_t{} {}
  CefRange(const cef_range_t& other) : cef_range_t(other) {}
  CefRange(int first, int last) : cef_range_t{first, last} {}
};

class CefInsets : public cef_insets_t {
 public:
  CefInsets() : cef_insets_t{} {}
  CefInsets(const cef_insets_t& other) : cef_insets_t(other) {}
  CefInsets(int t, int l, int b, int r) : cef_insets_t{t, l, b, r} {}
};

class CefMainArgs : public cef_main_args_t {
 public:
  CefMainArgs() : cef_main_args_t{} {}
  CefMainArgs(const cef_main_args_t& other) : cef_main_args_t(other) {}
#if defined(OS_WIN)
  CefMainArgs(HINSTANCE module) : cef_main_args_t{module} {}
#else
  CefMainArgs(int count, char** arguments) : cef_main_args_t{count, arguments} {}
#endif
};

class CefWindowInfo : public CefStructBase<CefWindowInfoTraits> {
 public:
  CefWindowInfo() = default;
  CefWindowInfo(const cef_window_info_t& other) : CefStructBase<CefWindowInfoTraits>(other) {}

  // A window inside `parent`, in its coordinates.
  void SetAsChild(cef_window_handle_t parent, const CefRect& rectangle);
  // No window; `parent` only tells the engine which display and which dialogs to use.
  void SetAsWindowless(cef_window_handle_t parent);
#if defined(OS_WIN)
  void SetAsPopup(cef_window_handle_t parent, const CefString& name);
#endif
};

#define CefCursorHandle cef_cursor_handle_t
#define CefEventHandle cef_event_handle_t
#define CefWindowHandle cef_window_handle_t

#endif  // CEF_INCLUDE_INTERNAL_CEF_TYPES_WRAPPERS_H_
