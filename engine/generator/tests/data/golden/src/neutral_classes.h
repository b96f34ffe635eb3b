// Generated from the interface facts. Do not edit.
#pragma once

#include "include/cef_process_message.h"
#include "include/cef_resource_bundle_handler.h"
#include "include/cef_values.h"

namespace engine_neutral {

class NeutralListValue : public CefListValue {
 public:
  size_t GetSize() override { return {}; }
  CefString GetString(size_t index) override { return {}; }
  bool SetString(size_t index, const CefString& value) override { return {}; }
};

class NeutralProcessMessage : public CefProcessMessage {
 public:
  bool IsValid() override { return {}; }
  CefRefPtr<CefProcessMessage> Copy() override { return {}; }
  CefString GetName() override { return {}; }
  CefRefPtr<CefListValue> GetArgumentList() override { return {}; }
};

}  // namespace engine_neutral
