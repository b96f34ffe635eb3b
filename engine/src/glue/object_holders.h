// Holders of objects and vectors of objects.
#pragma once

#include <algorithm>
#include <vector>

#include "glue_conversions.h"

namespace engine_glue {

// An object reference that the callee may replace. The callee owns the reference that goes in; what
// comes back brings a reference of its own only if it is another object.
template <class Class, class Struct>
class ObjectToC {
 public:
  explicit ObjectToC(CefRefPtr<Class>& target)
      : _target(target), _passed(ToC(target)), _structure(_passed) {}
  ~ObjectToC() {
    if (!_structure) {
      _target = nullptr;
    } else if (_structure != _passed) {
      _target = FromC(_structure);
    }
  }
  Struct** get() { return &_structure; }

 private:
  CefRefPtr<Class>& _target;
  Struct* const _passed;
  Struct* _structure;
};

template <class Class, class Struct>
class ObjectFromC {
 public:
  explicit ObjectFromC(Struct** target)
      : _target(target), _object(FromC(target ? *target : nullptr)), _original(_object.get()) {}
  ~ObjectFromC() {
    if (!_target) {
      return;
    }
    if (!_object) {
      *_target = nullptr;
    } else if (_object.get() != _original) {
      *_target = ToC(_object);
    }
  }
  CefRefPtr<Class>& get() { return _object; }

 private:
  Struct** const _target;
  CefRefPtr<Class> _object;
  const Class* const _original;
};

// A scoped object shown to the other side for the length of a call. The struct stands first, so
// that Object() finds the object behind it.
template <class Class, class Struct>
struct ScopedExport {
  explicit ScopedExport(CefRawPtr<Class> exported) : object(exported) {
    structure.base.size = sizeof(structure);
    Fill(&structure);
  }
  Struct* get() { return &structure; }

  Struct structure{};
  CefRawPtr<Class> object;
};

template <class Class, class Struct>
class ObjectListToC {
 public:
  explicit ObjectListToC(const std::vector<CefRefPtr<Class>>& objects) {
    _structures.reserve(objects.size());
    for (const CefRefPtr<Class>& object : objects) {
      _structures.push_back(ToC(object));
    }
  }
  size_t size() const { return _structures.size(); }
  Struct* const* data() const { return _structures.data(); }

 private:
  std::vector<Struct*> _structures;
};

template <class Class, class Struct>
class ObjectListFromC {
 public:
  ObjectListFromC(std::vector<CefRefPtr<Class>>& target, size_t count)
      : _target(target), _size(count), _structures(count, nullptr) {}
  ~ObjectListFromC() {
    _target.clear();
    for (size_t i = 0; i < _structures.size(); ++i) {
      CefRefPtr<Class> object = FromC(_structures[i]);
      if (i < _size) {
        _target.push_back(object);
      }
    }
  }
  size_t* size() { return &_size; }
  Struct** data() { return _structures.data(); }

 private:
  std::vector<CefRefPtr<Class>>& _target;
  size_t _size;
  std::vector<Struct*> _structures;
};

template <class Class, class Struct>
class ObjectListIn {
 public:
  ObjectListIn(size_t count, Struct* const* structures) {
    _objects.reserve(structures ? count : 0);
    for (size_t i = 0; structures && i < count; ++i) {
      _objects.push_back(FromC(structures[i]));
    }
  }
  const std::vector<CefRefPtr<Class>>& get() const { return _objects; }

 private:
  std::vector<CefRefPtr<Class>> _objects;
};

template <class Class, class Struct>
class ObjectListInOut {
 public:
  ObjectListInOut(size_t* count, Struct** structures) : _count(count), _structures(structures) {}
  ~ObjectListInOut() {
    if (_count && _structures) {
      *_count = std::min(*_count, _objects.size());
      for (size_t i = 0; i < *_count; ++i) {
        _structures[i] = ToC(_objects[i]);
      }
    }
  }
  std::vector<CefRefPtr<Class>>& get() { return _objects; }

 private:
  size_t* const _count;
  Struct** const _structures;
  std::vector<CefRefPtr<Class>> _objects;
};

}  // namespace engine_glue
