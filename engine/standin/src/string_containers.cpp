// The engine's lists and maps of strings. Each belongs to whoever made it, one thread at a time.
#include <algorithm>
#include <map>
#include <vector>

#include "audit.h"
#include "include/capi/cef_functions.h"

namespace {

using List = std::vector<CefString>;
using Map = std::map<CefString, CefString>;
using Multimap = std::multimap<CefString, CefString>;

// The handles are counted like objects: whoever allocates one must free it.
template <class Container>
struct Counted {
  explicit Counted(const char* name) : audited(name) {}
  Container content;
  standin::Audited audited;
};

template <class Container>
Container& Of(void* handle) {
  return static_cast<Counted<Container>*>(handle)->content;
}

// The handles of the interface are pointers to no type.
template <class Container>
void* Alloc(const char* name) {
  return new Counted<Container>(name);
}

template <class Container>
void FreeHandle(void* handle) {
  delete static_cast<Counted<Container>*>(handle);
}

int Give(const CefString& text, cef_string_t* output) {
  return cef_string_utf16_set(text.c_str(), text.length(), output, 1);
}

CefString Copy(const cef_string_t* text) {
  return text ? CefString(text->str, text->length, true) : CefString();
}

template <class Container, class Part>
int GiveAt(void* handle, size_t index, cef_string_t* output, Part part) {
  Container& container = Of<Container>(handle);
  if (index >= container.size()) {
    return 0;
  }
  auto found = container.begin();
  std::advance(found, static_cast<std::ptrdiff_t>(index));
  return Give(part(*found), output);
}

const auto kKey = [](const auto& pair) { return pair.first; };
const auto kValue = [](const auto& pair) { return pair.second; };

}  // namespace

extern "C" {

cef_string_list_t cef_string_list_alloc() {
  return static_cast<cef_string_list_t>(Alloc<List>("cef_string_list_t"));
}
size_t cef_string_list_size(cef_string_list_t list) {
  return Of<List>(list).size();
}
int cef_string_list_value(cef_string_list_t list, size_t index, cef_string_t* value) {
  return GiveAt<List>(list, index, value, [](const CefString& text) { return text; });
}
void cef_string_list_append(cef_string_list_t list, const cef_string_t* value) {
  Of<List>(list).push_back(Copy(value));
}
void cef_string_list_clear(cef_string_list_t list) {
  Of<List>(list).clear();
}
void cef_string_list_free(cef_string_list_t list) {
  FreeHandle<List>(list);
}
cef_string_list_t cef_string_list_copy(cef_string_list_t list) {
  const cef_string_list_t copy = cef_string_list_alloc();
  Of<List>(copy) = Of<List>(list);
  return copy;
}

cef_string_map_t cef_string_map_alloc() {
  return static_cast<cef_string_map_t>(Alloc<Map>("cef_string_map_t"));
}
size_t cef_string_map_size(cef_string_map_t map) {
  return Of<Map>(map).size();
}
int cef_string_map_find(cef_string_map_t map, const cef_string_t* key, cef_string_t* value) {
  const auto found = Of<Map>(map).find(Copy(key));
  return found != Of<Map>(map).end() ? Give(found->second, value) : 0;
}
int cef_string_map_key(cef_string_map_t map, size_t index, cef_string_t* key) {
  return GiveAt<Map>(map, index, key, kKey);
}
int cef_string_map_value(cef_string_map_t map, size_t index, cef_string_t* value) {
  return GiveAt<Map>(map, index, value, kValue);
}
int cef_string_map_append(cef_string_map_t map, const cef_string_t* key,
                          const cef_string_t* value) {
  Of<Map>(map).emplace(Copy(key), Copy(value));
  return 1;
}
void cef_string_map_clear(cef_string_map_t map) {
  Of<Map>(map).clear();
}
void cef_string_map_free(cef_string_map_t map) {
  FreeHandle<Map>(map);
}

cef_string_multimap_t cef_string_multimap_alloc() {
  return static_cast<cef_string_multimap_t>(Alloc<Multimap>("cef_string_multimap_t"));
}
size_t cef_string_multimap_size(cef_string_multimap_t map) {
  return Of<Multimap>(map).size();
}
size_t cef_string_multimap_find_count(cef_string_multimap_t map, const cef_string_t* key) {
  return Of<Multimap>(map).count(Copy(key));
}
int cef_string_multimap_enumerate(cef_string_multimap_t map, const cef_string_t* key,
                                  size_t value_index, cef_string_t* value) {
  auto [first, last] = Of<Multimap>(map).equal_range(Copy(key));
  for (; first != last && value_index > 0; --value_index) {
    ++first;
  }
  return first != last ? Give(first->second, value) : 0;
}
int cef_string_multimap_key(cef_string_multimap_t map, size_t index, cef_string_t* key) {
  return GiveAt<Multimap>(map, index, key, kKey);
}
int cef_string_multimap_value(cef_string_multimap_t map, size_t index, cef_string_t* value) {
  return GiveAt<Multimap>(map, index, value, kValue);
}
int cef_string_multimap_append(cef_string_multimap_t map, const cef_string_t* key,
                               const cef_string_t* value) {
  Of<Multimap>(map).emplace(Copy(key), Copy(value));
  return 1;
}
void cef_string_multimap_clear(cef_string_multimap_t map) {
  Of<Multimap>(map).clear();
}
void cef_string_multimap_free(cef_string_multimap_t map) {
  FreeHandle<Multimap>(map);
}

}  // extern "C"
