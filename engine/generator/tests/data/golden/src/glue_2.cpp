// Generated from the interface facts. Do not edit.
#include "glue_scoped.h"

namespace engine_glue {

namespace {

class CefResourceBundleHandlerForeign final : public Foreign<CefResourceBundleHandler, cef_resource_bundle_handler_t> {
 public:
  using Foreign::Foreign;
  bool GetLocalizedString(int string_id, CefString& string) override {
    auto* const s = Struct<cef_resource_bundle_handler_t>();
    if (!Has(s, s->get_localized_string)) {
      return {};
    }
    return s->get_localized_string(s, string_id, string.GetWritableStruct()) != 0;
  }
  bool GetDataResource(int resource_id, void*& data, size_t& data_size) override {
    auto* const s = Struct<cef_resource_bundle_handler_t>();
    if (!Has(s, s->get_data_resource)) {
      return {};
    }
    return s->get_data_resource(s, resource_id, &data, &data_size) != 0;
  }
  bool GetDataResourceForScale(int resource_id, ScaleFactor scale_factor, void*& data, size_t& data_size) override {
    auto* const s = Struct<cef_resource_bundle_handler_t>();
    if (!Has(s, s->get_data_resource_for_scale)) {
      return {};
    }
    return s->get_data_resource_for_scale(s, resource_id, scale_factor, &data, &data_size) != 0;
  }
};

}  // namespace

int CEF_CALLBACK resource_bundle_handler_get_localized_string(cef_resource_bundle_handler_t* self, int string_id, cef_string_t* string) noexcept {
  CefString string_holder(string);
  return Object<CefResourceBundleHandler, cef_resource_bundle_handler_t>(self)->GetLocalizedString(string_id, string_holder) ? 1 : 0;
}

int CEF_CALLBACK resource_bundle_handler_get_data_resource(cef_resource_bundle_handler_t* self, int resource_id, void** data, size_t* data_size) noexcept {
  ValueInOut data_holder(data);
  ValueInOut data_size_holder(data_size);
  return Object<CefResourceBundleHandler, cef_resource_bundle_handler_t>(self)->GetDataResource(resource_id, data_holder.get(), data_size_holder.get()) ? 1 : 0;
}

int CEF_CALLBACK resource_bundle_handler_get_data_resource_for_scale(cef_resource_bundle_handler_t* self, int resource_id, cef_scale_factor_t scale_factor, void** data, size_t* data_size) noexcept {
  ValueInOut data_holder(data);
  ValueInOut data_size_holder(data_size);
  return Object<CefResourceBundleHandler, cef_resource_bundle_handler_t>(self)->GetDataResourceForScale(resource_id, scale_factor, data_holder.get(), data_size_holder.get()) ? 1 : 0;
}

void Fill([[maybe_unused]] cef_resource_bundle_handler_t* s) {
  auto* const resource_bundle_handler = reinterpret_cast<cef_resource_bundle_handler_t*>(s);
  resource_bundle_handler->get_localized_string = &resource_bundle_handler_get_localized_string;
  resource_bundle_handler->get_data_resource = &resource_bundle_handler_get_data_resource;
  resource_bundle_handler->get_data_resource_for_scale = &resource_bundle_handler_get_data_resource_for_scale;
}

cef_resource_bundle_handler_t* ToC(const CefRefPtr<CefResourceBundleHandler>& object) {
  return Export<CefResourceBundleHandlerForeign, CefResourceBundleHandler, cef_resource_bundle_handler_t>(object);
}

CefRefPtr<CefResourceBundleHandler> FromC(cef_resource_bundle_handler_t* structure) {
  return Import<CefResourceBundleHandlerForeign, CefResourceBundleHandler, cef_resource_bundle_handler_t>(structure);
}

}  // namespace engine_glue
