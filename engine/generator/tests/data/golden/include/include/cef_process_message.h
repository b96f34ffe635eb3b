// Generated from the interface facts. Do not edit.
#ifndef CEF_INCLUDE_CEF_PROCESS_MESSAGE_H_
#define CEF_INCLUDE_CEF_PROCESS_MESSAGE_H_

#include "include/cef_base.h"

class CefListValue;
class CefProcessMessage;


class CefProcessMessage : public virtual CefBaseRefCounted {
 public:
  static CefRefPtr<CefProcessMessage> Create(const CefString& name);
  virtual bool IsValid() = 0;
  virtual CefRefPtr<CefProcessMessage> Copy() = 0;
  virtual CefString GetName() = 0;
  virtual CefRefPtr<CefListValue> GetArgumentList() = 0;
};

#include "include/cef_values.h"

#endif  // CEF_INCLUDE_CEF_PROCESS_MESSAGE_H_
