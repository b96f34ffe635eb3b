// Generated from the interface facts. Do not edit.
#ifndef CEF_INCLUDE_CEF_VALUES_H_
#define CEF_INCLUDE_CEF_VALUES_H_

#include "include/cef_base.h"

class CefListValue;


class CefListValue : public virtual CefBaseRefCounted {
 public:
  static CefRefPtr<CefListValue> Create();
  virtual size_t GetSize() = 0;
  virtual CefString GetString(size_t index) = 0;
  virtual bool SetString(size_t index, const CefString& value) = 0;
};

#endif  // CEF_INCLUDE_CEF_VALUES_H_
