// Generated from the interface facts. Do not edit.
#include "glue_scoped.h"

namespace engine_glue {

namespace {

class CefProcessMessageForeign final : public Foreign<CefProcessMessage, cef_process_message_t> {
 public:
  using Foreign::Foreign;
  bool IsValid() override {
    auto* const s = Struct<cef_process_message_t>();
    if (!Has(s, s->is_valid)) {
      return {};
    }
    return s->is_valid(s) != 0;
  }
  CefRefPtr<CefProcessMessage> Copy() override {
    auto* const s = Struct<cef_process_message_t>();
    if (!Has(s, s->copy)) {
      return {};
    }
    return FromC(s->copy(s));
  }
  CefString GetName() override {
    auto* const s = Struct<cef_process_message_t>();
    if (!Has(s, s->get_name)) {
      return {};
    }
    CefString returned;
    returned.AttachToUserFree(s->get_name(s));
    return returned;
  }
  CefRefPtr<CefListValue> GetArgumentList() override {
    auto* const s = Struct<cef_process_message_t>();
    if (!Has(s, s->get_argument_list)) {
      return {};
    }
    return FromC(s->get_argument_list(s));
  }
};

}  // namespace

int CEF_CALLBACK process_message_is_valid(cef_process_message_t* self) noexcept {
  return Object<CefProcessMessage, cef_process_message_t>(self)->IsValid() ? 1 : 0;
}

cef_process_message_t* CEF_CALLBACK process_message_copy(cef_process_message_t* self) noexcept {
  return ToC(Object<CefProcessMessage, cef_process_message_t>(self)->Copy());
}

cef_string_userfree_t CEF_CALLBACK process_message_get_name(cef_process_message_t* self) noexcept {
  return Object<CefProcessMessage, cef_process_message_t>(self)->GetName().DetachToUserFree();
}

cef_list_value_t* CEF_CALLBACK process_message_get_argument_list(cef_process_message_t* self) noexcept {
  return ToC(Object<CefProcessMessage, cef_process_message_t>(self)->GetArgumentList());
}

void Fill([[maybe_unused]] cef_process_message_t* s) {
  auto* const process_message = reinterpret_cast<cef_process_message_t*>(s);
  process_message->is_valid = &process_message_is_valid;
  process_message->copy = &process_message_copy;
  process_message->get_name = &process_message_get_name;
  process_message->get_argument_list = &process_message_get_argument_list;
}

cef_process_message_t* ToC(const CefRefPtr<CefProcessMessage>& object) {
  return Export<CefProcessMessageForeign, CefProcessMessage, cef_process_message_t>(object);
}

CefRefPtr<CefProcessMessage> FromC(cef_process_message_t* structure) {
  return Import<CefProcessMessageForeign, CefProcessMessage, cef_process_message_t>(structure);
}

}  // namespace engine_glue
