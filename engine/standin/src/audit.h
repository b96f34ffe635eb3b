// Counts what is alive, by the name of its class: the stand-in's own objects and the references
// that it holds on objects of its client. Any thread may come here. When the engine is shut down,
// and again when the process ends, whatever is still alive is named on standard error, and the
// process ends with kLeakStatus.
#pragma once

#include <string>
#include <utility>

#include "include/cef_base.h"

namespace standin {

constexpr int kLeakStatus = 77;

class Audited {
 public:
  explicit Audited(const char* name);
  Audited(const Audited& other) : Audited(other._name) {}
  Audited& operator=(const Audited&) { return *this; }
  ~Audited();

 private:
  const char* const _name;
};

// How many objects of the class are alive; of all classes for null.
int Living(const char* name);

// Names what is alive on standard error. False if there is something.
bool ReportLiving(const char* when);

// A reference on an object of the client that the stand-in keeps for longer than a call.
template <class Class>
class Held {
 public:
  Held(const char* name, CefRefPtr<Class> object) : _audited(name), _object(std::move(object)) {}
  Class* operator->() const { return _object.get(); }
  const CefRefPtr<Class>& get() const { return _object; }
  explicit operator bool() const { return static_cast<bool>(_object); }

 private:
  Audited _audited;
  CefRefPtr<Class> _object;
};

}  // namespace standin

// In place of IMPLEMENT_REFCOUNTING: counted for the audit as well.
#define STANDIN_OBJECT(ClassName)             \
  IMPLEMENT_REFCOUNTING(ClassName);           \
  const ::standin::Audited _standin_audited { \
#ClassName                                \
  }
