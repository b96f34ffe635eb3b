// Generated from the interface facts. Do not edit.
#ifndef CEF_INCLUDE_CEF_RESOURCE_BUNDLE_HANDLER_H_
#define CEF_INCLUDE_CEF_RESOURCE_BUNDLE_HANDLER_H_

#include "include/cef_base.h"

class CefResourceBundleHandler;


class CefResourceBundleHandler : public virtual CefBaseRefCounted {
 public:
  using ScaleFactor = cef_scale_factor_t;
  virtual bool GetLocalizedString(int string_id, CefString& string) = 0;
  virtual bool GetDataResource(int resource_id, void*& data, size_t& data_size) = 0;
  virtual bool GetDataResourceForScale(int resource_id, ScaleFactor scale_factor, void*& data, size_t& data_size) = 0;
};

#endif  // CEF_INCLUDE_CEF_RESOURCE_BUNDLE_HANDLER_H_
