// Generated from the interface facts. Do not edit.
#include "glue_scoped.h"

namespace engine_glue {

namespace {

class CefListValueForeign final : public Foreign<CefListValue, cef_list_value_t> {
 public:
  using Foreign::Foreign;
  size_t GetSize() override {
    auto* const s = Struct<cef_list_value_t>();
    if (!Has(s, s->get_size)) {
      return {};
    }
    return s->get_size(s);
  }
  CefString GetString(size_t index) override {
    auto* const s = Struct<cef_list_value_t>();
    if (!Has(s, s->get_string)) {
      return {};
    }
    CefString returned;
    returned.AttachToUserFree(s->get_string(s, index));
    return returned;
  }
  bool SetString(size_t index, const CefString& value) override {
    auto* const s = Struct<cef_list_value_t>();
    if (!Has(s, s->set_string)) {
      return {};
    }
    return s->set_string(s, index, value.GetStruct()) != 0;
  }
};

}  // namespace

size_t CEF_CALLBACK list_value_get_size(cef_list_value_t* self) noexcept {
  return Object<CefListValue, cef_list_value_t>(self)->GetSize();
}

cef_string_userfree_t CEF_CALLBACK list_value_get_string(cef_list_value_t* self, size_t index) noexcept {
  return Object<CefListValue, cef_list_value_t>(self)->GetString(index).DetachToUserFree();
}

int CEF_CALLBACK list_value_set_string(cef_list_value_t* self, size_t index, const cef_string_t* value) noexcept {
  return Object<CefListValue, cef_list_value_t>(self)->SetString(index, CefString(value)) ? 1 : 0;
}

void Fill([[maybe_unused]] cef_list_value_t* s) {
  auto* const list_value = reinterpret_cast<cef_list_value_t*>(s);
  list_value->get_size = &list_value_get_size;
  list_value->get_string = &list_value_get_string;
  list_value->set_string = &list_value_set_string;
}

cef_list_value_t* ToC(const CefRefPtr<CefListValue>& object) {
  return Export<CefListValueForeign, CefListValue, cef_list_value_t>(object);
}

CefRefPtr<CefListValue> FromC(cef_list_value_t* structure) {
  return Import<CefListValueForeign, CefListValue, cef_list_value_t>(structure);
}

}  // namespace engine_glue
