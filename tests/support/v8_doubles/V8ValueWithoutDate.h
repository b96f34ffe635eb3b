// The methods of a JavaScript value whose signatures differ between the engine's versions: dates
// and promises of the engine's own, which no native asks for. A base for doubles; one thread.

#ifndef V8_DOUBLES_V8_VALUE_WITHOUT_DATE_H
#define V8_DOUBLES_V8_VALUE_WITHOUT_DATE_H

#include "include/cef_v8.h"
#include "include/cef_version.h"

namespace v8_doubles {

#if CEF_VERSION_MAJOR >= 108
class V8ValueWithoutDate : public CefV8Value {
 public:
  CefBaseTime GetDateValue() override { return CefBaseTime(); }
  bool IsPromise() override { return false; }
  bool ResolvePromise(CefRefPtr<CefV8Value>) override { return false; }
  bool RejectPromise(const CefString&) override { return false; }
};
#else
class V8ValueWithoutDate : public CefV8Value {
 public:
  CefTime GetDateValue() override { return CefTime(); }
};
#endif

}  // namespace v8_doubles

#endif  // V8_DOUBLES_V8_VALUE_WITHOUT_DATE_H
