// The roots of all the engine's interfaces: counted objects and scoped objects.
#ifndef CEF_INCLUDE_CEF_BASE_H_
#define CEF_INCLUDE_CEF_BASE_H_

#include <atomic>
#include <map>
#include <memory>
#include <vector>

#include "include/base/cef_build.h"
#include "include/internal/cef_ptr.h"
#include "include/internal/cef_string.h"
#include "include/internal/cef_types.h"
#include "include/internal/cef_types_wrappers.h"

// A counted object. Any thread may add or release; the last Release() destroys the object on its
// own thread.
class CefBaseRefCounted {
 public:
  virtual void AddRef() const = 0;
  virtual bool Release() const = 0;
  virtual bool HasOneRef() const = 0;
  virtual bool HasAtLeastOneRef() const = 0;

 protected:
  virtual ~CefBaseRefCounted() = default;
};

// An object that lives for one call.
class CefBaseScoped {
 public:
  virtual ~CefBaseScoped() = default;
};

// The atomic count behind IMPLEMENT_REFCOUNTING; it starts at zero.
class CefRefCount {
 public:
  CefRefCount() = default;
  CefRefCount(const CefRefCount&) = delete;
  CefRefCount& operator=(const CefRefCount&) = delete;

  void AddRef() const { _count.fetch_add(1, std::memory_order_relaxed); }
  bool Release() const { return _count.fetch_sub(1, std::memory_order_acq_rel) == 1; }
  bool HasOneRef() const { return _count.load(std::memory_order_acquire) == 1; }
  bool HasAtLeastOneRef() const { return _count.load(std::memory_order_acquire) >= 1; }

 private:
  mutable std::atomic<int> _count{0};
};

#define IMPLEMENT_REFCOUNTING(ClassName)          \
 public:                                          \
  void AddRef() const override {                  \
    _ref_count.AddRef();                          \
  }                                               \
  bool Release() const override {                 \
    if (_ref_count.Release()) {                   \
      delete static_cast<const ClassName*>(this); \
      return true;                                \
    }                                             \
    return false;                                 \
  }                                               \
  bool HasOneRef() const override {               \
    return _ref_count.HasOneRef();                \
  }                                               \
  bool HasAtLeastOneRef() const override {        \
    return _ref_count.HasAtLeastOneRef();         \
  }                                               \
                                                  \
 private:                                         \
  CefRefCount _ref_count

#endif  // CEF_INCLUDE_CEF_BASE_H_
