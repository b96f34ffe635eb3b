// An intrusive counted pointer over AddRef() and Release(). Copying adds a reference, moving hands
// it on.
#ifndef CEF_INCLUDE_BASE_CEF_SCOPED_REFPTR_H_
#define CEF_INCLUDE_BASE_CEF_SCOPED_REFPTR_H_

#include <cstddef>
#include <functional>
#include <type_traits>
#include <utility>

template <class T>
class scoped_refptr {
 public:
  using element_type = T;

  scoped_refptr() = default;
  scoped_refptr(std::nullptr_t) {}
  scoped_refptr(T* pointer) : _pointer(pointer) { Retain(); }
  scoped_refptr(const scoped_refptr& other) : _pointer(other._pointer) { Retain(); }
  scoped_refptr(scoped_refptr&& other) noexcept : _pointer(other._pointer) {
    other._pointer = nullptr;
  }
  template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
  scoped_refptr(const scoped_refptr<U>& other) : _pointer(other.get()) {
    Retain();
  }
  template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
  scoped_refptr(scoped_refptr<U>&& other) noexcept : _pointer(other.release()) {}
  ~scoped_refptr() { Drop(); }

  scoped_refptr& operator=(std::nullptr_t) {
    reset();
    return *this;
  }
  scoped_refptr& operator=(T* pointer) { return *this = scoped_refptr(pointer); }
  // By value, so that assigning an object that this pointer keeps alive is safe.
  scoped_refptr& operator=(scoped_refptr other) noexcept {
    swap(other);
    return *this;
  }

  T* get() const { return _pointer; }
  T& operator*() const { return *_pointer; }
  T* operator->() const { return _pointer; }
  explicit operator bool() const { return _pointer != nullptr; }

  void reset() { scoped_refptr().swap(*this); }
  void swap(scoped_refptr& other) noexcept { std::swap(_pointer, other._pointer); }
  // Gives the reference up without releasing it.
  [[nodiscard]] T* release() {
    T* pointer = _pointer;
    _pointer = nullptr;
    return pointer;
  }

 private:
  void Retain() const {
    if (_pointer) {
      _pointer->AddRef();
    }
  }
  void Drop() const {
    if (_pointer) {
      _pointer->Release();
    }
  }

  T* _pointer = nullptr;
};

template <class T, class U>
bool operator==(const scoped_refptr<T>& left, const scoped_refptr<U>& right) {
  return left.get() == right.get();
}
template <class T, class U>
bool operator!=(const scoped_refptr<T>& left, const scoped_refptr<U>& right) {
  return left.get() != right.get();
}
template <class T, class U>
bool operator==(const scoped_refptr<T>& left, const U* right) {
  return left.get() == right;
}
template <class T, class U>
bool operator!=(const scoped_refptr<T>& left, const U* right) {
  return left.get() != right;
}
template <class T>
bool operator==(const scoped_refptr<T>& left, std::nullptr_t) {
  return !left;
}
template <class T>
bool operator!=(const scoped_refptr<T>& left, std::nullptr_t) {
  return static_cast<bool>(left);
}
template <class T>
bool operator<(const scoped_refptr<T>& left, const scoped_refptr<T>& right) {
  return std::less<T*>()(left.get(), right.get());
}

#endif  // CEF_INCLUDE_BASE_CEF_SCOPED_REFPTR_H_
