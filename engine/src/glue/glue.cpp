#include "glue/glue.h"

namespace engine_glue {

namespace {

// Somebody else's counted object of no further type: user data of script objects.
class BaseForeign final : public Foreign<CefBaseRefCounted, cef_base_ref_counted_t> {
 public:
  using Foreign::Foreign;
};

}  // namespace

// The base has no slots beyond the four of its count.
void Fill(cef_base_ref_counted_t*) {}

cef_base_ref_counted_t* ToC(const CefRefPtr<CefBaseRefCounted>& object) {
  return Export<BaseForeign, CefBaseRefCounted, cef_base_ref_counted_t>(object);
}

CefRefPtr<CefBaseRefCounted> FromC(cef_base_ref_counted_t* structure) {
  return Import<BaseForeign, CefBaseRefCounted, cef_base_ref_counted_t>(structure);
}

void Write(void* list, const std::vector<CefString>& from) {
  for (const CefString& text : from) {
    cef_string_list_append(list, text.GetStruct());
  }
}

void Write(void* map, const std::map<CefString, CefString>& from) {
  for (const auto& [key, value] : from) {
    cef_string_map_append(map, key.GetStruct(), value.GetStruct());
  }
}

void Write(void* map, const std::multimap<CefString, CefString>& from) {
  for (const auto& [key, value] : from) {
    cef_string_multimap_append(map, key.GetStruct(), value.GetStruct());
  }
}

void Read(void* list, std::vector<CefString>& to) {
  const size_t count = cef_string_list_size(list);
  to.reserve(count);
  for (size_t i = 0; i < count; ++i) {
    CefString text;
    cef_string_list_value(list, i, text.GetWritableStruct());
    to.push_back(std::move(text));
  }
}

void Read(void* map, std::map<CefString, CefString>& to) {
  const size_t count = cef_string_map_size(map);
  for (size_t i = 0; i < count; ++i) {
    CefString key, value;
    cef_string_map_key(map, i, key.GetWritableStruct());
    cef_string_map_value(map, i, value.GetWritableStruct());
    to.emplace(std::move(key), std::move(value));
  }
}

void Read(void* map, std::multimap<CefString, CefString>& to) {
  const size_t count = cef_string_multimap_size(map);
  for (size_t i = 0; i < count; ++i) {
    CefString key, value;
    cef_string_multimap_key(map, i, key.GetWritableStruct());
    cef_string_multimap_value(map, i, value.GetWritableStruct());
    to.emplace(std::move(key), std::move(value));
  }
}

}  // namespace engine_glue
