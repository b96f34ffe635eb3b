// Holders of flags, numbers, records and vectors of them.
#pragma once

#include <algorithm>
#include <vector>

#include "glue_conversions.h"

namespace engine_glue {

class BoolToC {
 public:
  explicit BoolToC(bool* target) : _target(target), _value(target && *target ? 1 : 0) {}
  ~BoolToC() {
    if (_target) {
      *_target = _value != 0;
    }
  }
  int* get() { return _target ? &_value : nullptr; }

 private:
  bool* const _target;
  int _value;
};

class BoolFromC {
 public:
  explicit BoolFromC(int* target) : _target(target), _value(target && *target != 0) {}
  ~BoolFromC() {
    if (_target) {
      *_target = _value ? 1 : 0;
    }
  }
  bool& get() { return _value; }
  bool* pointer() { return _target ? &_value : nullptr; }

 private:
  int* const _target;
  bool _value;
};

// A number, enumeration or raw pointer that the callee may change.
template <class T>
class ValueInOut {
 public:
  explicit ValueInOut(T* target) : _target(target), _value(target ? *target : T{}) {}
  ~ValueInOut() {
    if (_target) {
      *_target = _value;
    }
  }
  T& get() { return _value; }

 private:
  T* const _target;
  T _value;
};

template <class Class, class Struct>
class PlainIn {
 public:
  explicit PlainIn(const Struct* source) : _value(source ? Class(*source) : Class()) {}
  const Class& get() const { return _value; }

 private:
  const Class _value;
};

template <class Class, class Struct>
class PlainInOut {
 public:
  explicit PlainInOut(Struct* target)
      : _target(target), _value(target ? Class(*target) : Class()) {}
  ~PlainInOut() {
    if (_target) {
      *_target = _value;
    }
  }
  Class& get() { return _value; }

 private:
  Struct* const _target;
  Class _value;
};

// Records that hold strings: read in place, or moved in and out.
template <class Class, class Struct>
class RecordIn {
 public:
  explicit RecordIn(const Struct* source) {
    if (source) {
      _value.Set(*source, false);
    }
  }
  const Class& get() const { return _value; }

 private:
  Class _value;
};

template <class Class, class Struct>
class RecordInOut {
 public:
  explicit RecordInOut(Struct* target) : _target(target) {
    if (_target) {
      _value.AttachTo(*_target);
    }
  }
  ~RecordInOut() {
    if (_target) {
      _value.DetachTo(*_target);
    }
  }
  Class& get() { return _value; }

 private:
  Struct* const _target;
  Class _value;
};

template <class T>
class ValueListIn {
 public:
  template <class U>
  ValueListIn(size_t count, const U* values) {
    if (values) {
      _values.assign(values, values + count);
    }
  }
  const std::vector<T>& get() const { return _values; }

 private:
  std::vector<T> _values;
};

// The callee's vector goes out into the caller's array, as far as there is room.
template <class T>
class ValueListInOut {
 public:
  template <class U>
  ValueListInOut(size_t* count, U* values)
      : _count(count),
        _write([](void* target, const std::vector<T>& from, size_t n) {
          std::copy_n(from.begin(), n, static_cast<U*>(target));
        }),
        _target(values) {}
  ~ValueListInOut() {
    if (_count && _target) {
      *_count = std::min(*_count, _values.size());
      _write(_target, _values, *_count);
    }
  }
  std::vector<T>& get() { return _values; }

 private:
  std::vector<T> _values;
  size_t* const _count;
  void (*const _write)(void*, const std::vector<T>&, size_t);
  void* const _target;
};

class ValueListFromC {
 public:
  template <class T>
  ValueListFromC(std::vector<T>& target, size_t count) : _size(count) {
    target.resize(count);
    _target = &target;
    _resize = [](void* vector, size_t size) { static_cast<std::vector<T>*>(vector)->resize(size); };
  }
  ~ValueListFromC() { _resize(_target, _size); }
  size_t* size() { return &_size; }

 private:
  size_t _size;
  void* _target;
  void (*_resize)(void*, size_t);
};

}  // namespace engine_glue
