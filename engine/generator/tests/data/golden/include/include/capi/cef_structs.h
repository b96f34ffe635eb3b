// Generated from the interface facts. Do not edit.
#ifndef CEF_INCLUDE_CAPI_CEF_STRUCTS_H_
#define CEF_INCLUDE_CAPI_CEF_STRUCTS_H_

#include "include/internal/cef_types.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct _cef_base_ref_counted_t {
  size_t size;
  void(CEF_CALLBACK* add_ref)(struct _cef_base_ref_counted_t* self);
  int(CEF_CALLBACK* release)(struct _cef_base_ref_counted_t* self);
  int(CEF_CALLBACK* has_one_ref)(struct _cef_base_ref_counted_t* self);
  int(CEF_CALLBACK* has_at_least_one_ref)(struct _cef_base_ref_counted_t* self);
} cef_base_ref_counted_t;

typedef struct _cef_base_scoped_t {
  size_t size;
  void(CEF_CALLBACK* del)(struct _cef_base_scoped_t* self);
} cef_base_scoped_t;

typedef struct _cef_list_value_t cef_list_value_t;
typedef struct _cef_process_message_t cef_process_message_t;
typedef struct _cef_resource_bundle_handler_t cef_resource_bundle_handler_t;

struct _cef_list_value_t {
  cef_base_ref_counted_t base;
  size_t (CEF_CALLBACK* get_size)(struct _cef_list_value_t* self);
  cef_string_userfree_t (CEF_CALLBACK* get_string)(struct _cef_list_value_t* self, size_t index);
  int (CEF_CALLBACK* set_string)(struct _cef_list_value_t* self, size_t index, const cef_string_t* value);
};


struct _cef_process_message_t {
  cef_base_ref_counted_t base;
  int (CEF_CALLBACK* is_valid)(struct _cef_process_message_t* self);
  cef_process_message_t* (CEF_CALLBACK* copy)(struct _cef_process_message_t* self);
  cef_string_userfree_t (CEF_CALLBACK* get_name)(struct _cef_process_message_t* self);
  cef_list_value_t* (CEF_CALLBACK* get_argument_list)(struct _cef_process_message_t* self);
};


struct _cef_resource_bundle_handler_t {
  cef_base_ref_counted_t base;
  int (CEF_CALLBACK* get_localized_string)(struct _cef_resource_bundle_handler_t* self, int string_id, cef_string_t* string);
  int (CEF_CALLBACK* get_data_resource)(struct _cef_resource_bundle_handler_t* self, int resource_id, void** data, size_t* data_size);
  int (CEF_CALLBACK* get_data_resource_for_scale)(struct _cef_resource_bundle_handler_t* self, int resource_id, cef_scale_factor_t scale_factor, void** data, size_t* data_size);
};


#ifdef __cplusplus
}
#endif

#endif  // CEF_INCLUDE_CAPI_CEF_STRUCTS_H_
