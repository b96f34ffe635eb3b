// Holders of the engine's string lists and maps.
#pragma once

#include <map>
#include <type_traits>
#include <vector>

#include "glue_conversions.h"

namespace engine_glue {

void Write(void* list, const std::vector<CefString>& from);
void Write(void* map, const std::map<CefString, CefString>& from);
void Write(void* map, const std::multimap<CefString, CefString>& from);
void Read(void* list, std::vector<CefString>& to);
void Read(void* map, std::map<CefString, CefString>& to);
void Read(void* map, std::multimap<CefString, CefString>& to);

struct ListFunctions {
  static void* Alloc() { return cef_string_list_alloc(); }
  static void Clear(void* list) { cef_string_list_clear(list); }
  static void Free(void* list) { cef_string_list_free(list); }
};
struct MapFunctions {
  static void* Alloc() { return cef_string_map_alloc(); }
  static void Clear(void* map) { cef_string_map_clear(map); }
  static void Free(void* map) { cef_string_map_free(map); }
};
struct MultimapFunctions {
  static void* Alloc() { return cef_string_multimap_alloc(); }
  static void Clear(void* map) { cef_string_multimap_clear(map); }
  static void Free(void* map) { cef_string_multimap_free(map); }
};

// `Container` is const where the callee only reads.
template <class Container, class Functions>
class StringsToC {
 public:
  explicit StringsToC(Container& target) : _target(target), _strings(Functions::Alloc()) {
    if (_strings) {
      Write(_strings, target);
    }
  }
  ~StringsToC() {
    if (!_strings) {
      return;
    }
    if constexpr (!std::is_const_v<Container>) {
      _target.clear();
      Read(_strings, _target);
    }
    Functions::Free(_strings);
  }
  void* get() { return _strings; }

 private:
  Container& _target;
  void* const _strings;
};

template <class Container, class Functions>
class StringsFromC {
 public:
  explicit StringsFromC(void* strings) : _strings(strings) {
    if (_strings) {
      Read(_strings, _value);
    }
  }
  ~StringsFromC() {
    if constexpr (!std::is_const_v<Container>) {
      if (_strings) {
        Functions::Clear(_strings);
        Write(_strings, _value);
      }
    }
  }
  Container& get() { return _value; }

 private:
  void* const _strings;
  std::remove_const_t<Container> _value;
};

template <class C>
using StringListToC = StringsToC<C, ListFunctions>;
template <class C>
using StringMapToC = StringsToC<C, MapFunctions>;
template <class C>
using StringMultimapToC = StringsToC<C, MultimapFunctions>;
template <class C>
using StringListFromC = StringsFromC<C, ListFunctions>;
template <class C>
using StringMapFromC = StringsFromC<C, MapFunctions>;
template <class C>
using StringMultimapFromC = StringsFromC<C, MultimapFunctions>;

}  // namespace engine_glue
