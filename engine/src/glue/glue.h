// The hand-written part of the glue between the engine's C structs and its C++ classes.
//
// A `Foreign` object shows a struct of the other side as a C++ object; an `Exported` struct shows a
// C++ object of this side to the other. An object that crosses and comes back is the same object
// again: both directions look first whether what they are given is the counterpart's wrapper.
// Everything here may run on any thread. A struct that arrives as an argument brings one reference,
// which the C++ pointer made from it owns and gives back, on every path.
#pragma once

#include <atomic>
#include <type_traits>
#include <typeinfo>

#include "glue/holders.h"
#include "glue_conversions.h"

namespace engine_glue {

// Whether the other side's struct has the slot: it may be older and shorter, or leave a slot null
// for the default.
template <class Struct, class Slot>
bool Has(const Struct* s, const Slot& slot) {
  const auto* base = reinterpret_cast<const size_t*>(s);
  const auto end =
      reinterpret_cast<const char*>(&slot) - reinterpret_cast<const char*>(s) + sizeof(slot);
  return static_cast<size_t>(end) <= *base && slot != nullptr;
}

template <class Class, class StructType>
class Foreign : public Class {
 public:
  // Takes over the reference that came with `structure`.
  explicit Foreign(StructType* structure) : _structure(structure) {}
  Foreign(const Foreign&) = delete;
  Foreign& operator=(const Foreign&) = delete;

  void AddRef() const final { _count.AddRef(); }
  bool Release() const final {
    if (_count.Release()) {
      delete this;
      return true;
    }
    return false;
  }
  bool HasOneRef() const final { return _count.HasOneRef() && Base()->has_one_ref(Base()) != 0; }
  bool HasAtLeastOneRef() const final { return _count.HasAtLeastOneRef(); }

  // The struct with one more reference, for a callee that will own it.
  StructType* Lend() const {
    Base()->add_ref(Base());
    return _structure;
  }

 protected:
  ~Foreign() override { Base()->release(Base()); }

  // The struct as one of its bases or as itself.
  template <class AsStruct>
  AsStruct* Struct() const {
    return reinterpret_cast<AsStruct*>(_structure);
  }

 private:
  cef_base_ref_counted_t* Base() const {
    return reinterpret_cast<cef_base_ref_counted_t*>(_structure);
  }

  StructType* const _structure;
  CefRefCount _count;
};

template <class Class, class StructType>
class ForeignScoped : public Class {
 public:
  explicit ForeignScoped(StructType* structure) : _structure(structure) {}

 protected:
  template <class AsStruct>
  AsStruct* Struct() const {
    return reinterpret_cast<AsStruct*>(_structure);
  }

 private:
  StructType* const _structure;
};

// The struct stands first, so that a pointer to it is a pointer to the whole.
template <class Class, class StructType>
struct Exported {
  StructType structure{};
  std::atomic<int> count{1};
  CefRefPtr<Class> object;

  static Exported* Of(void* structure) { return static_cast<Exported*>(structure); }

  static void CEF_CALLBACK AddRef(cef_base_ref_counted_t* self) {
    Of(self)->count.fetch_add(1, std::memory_order_relaxed);
  }
  static int CEF_CALLBACK Release(cef_base_ref_counted_t* self) {
    if (Of(self)->count.fetch_sub(1, std::memory_order_acq_rel) == 1) {
      delete Of(self);
      return 1;
    }
    return 0;
  }
  static int CEF_CALLBACK HasOneRef(cef_base_ref_counted_t* self) {
    return Of(self)->count.load(std::memory_order_acquire) == 1 && Of(self)->object->HasOneRef();
  }
  static int CEF_CALLBACK HasAtLeastOneRef(cef_base_ref_counted_t* self) {
    return Of(self)->count.load(std::memory_order_acquire) >= 1;
  }

  explicit Exported(const CefRefPtr<Class>& exported) : object(exported) {
    auto* const base = reinterpret_cast<cef_base_ref_counted_t*>(&structure);
    base->size = sizeof(structure);
    base->add_ref = &AddRef;
    base->release = &Release;
    base->has_one_ref = &HasOneRef;
    base->has_at_least_one_ref = &HasAtLeastOneRef;
    Fill(&structure);
  }
};

// The object behind a struct of this side.
template <class Class, class StructType, class AnyStruct>
decltype(auto) Object(AnyStruct* self) {
  if constexpr (std::is_base_of_v<CefBaseScoped, Class>) {
    return reinterpret_cast<ScopedExport<Class, StructType>*>(self)->object;
  } else {
    const CefRefPtr<Class>& object = Exported<Class, StructType>::Of(self)->object;
    return object;
  }
}

// A struct with one reference for the callee; null for null.
template <class ForeignClass, class Class, class StructType>
StructType* Export(const CefRefPtr<Class>& object) {
  if (!object) {
    return nullptr;
  }
  const Class& exact = *object;
  if (typeid(exact) == typeid(ForeignClass)) {
    return static_cast<const ForeignClass*>(object.get())->Lend();
  }
  return &(new Exported<Class, StructType>(object))->structure;
}

// The object behind a struct, whose reference is taken over; null for null.
template <class ForeignClass, class Class, class StructType>
CefRefPtr<Class> Import(StructType* structure) {
  if (!structure) {
    return nullptr;
  }
  auto* const base = reinterpret_cast<cef_base_ref_counted_t*>(structure);
  if (base->add_ref == &Exported<Class, StructType>::AddRef) {
    CefRefPtr<Class> object = Object<Class, StructType>(structure);
    base->release(base);
    return object;
  }
  return new ForeignClass(structure);
}

}  // namespace engine_glue
