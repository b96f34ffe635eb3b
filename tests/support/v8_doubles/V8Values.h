// Makes the JavaScript values of a test, each by the name of its kind.
//
// Owned by whoever holds a reference; one thread.

#ifndef V8_DOUBLES_V8_VALUES_H
#define V8_DOUBLES_V8_VALUES_H

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "v8_doubles/V8ValueDouble.h"

namespace v8_doubles {

inline CefRefPtr<CefV8Value> Undefined() {
  return new V8ValueDouble(V8ValueDouble::Kind::kUndefined);
}

inline CefRefPtr<CefV8Value> Null() {
  return new V8ValueDouble(V8ValueDouble::Kind::kNull);
}

inline CefRefPtr<CefV8Value> Bool(bool value) {
  CefRefPtr<V8ValueDouble> result = new V8ValueDouble(V8ValueDouble::Kind::kBool);
  result->number = value ? 1 : 0;
  return result;
}

inline CefRefPtr<CefV8Value> Int(int value) {
  CefRefPtr<V8ValueDouble> result = new V8ValueDouble(V8ValueDouble::Kind::kInt);
  result->number = value;
  return result;
}

inline CefRefPtr<CefV8Value> Double(double value) {
  CefRefPtr<V8ValueDouble> result = new V8ValueDouble(V8ValueDouble::Kind::kDouble);
  result->number = value;
  return result;
}

inline CefRefPtr<CefV8Value> String(std::string value) {
  CefRefPtr<V8ValueDouble> result = new V8ValueDouble(V8ValueDouble::Kind::kString);
  result->text = std::move(value);
  return result;
}

inline CefRefPtr<CefV8Value> Array(std::vector<CefRefPtr<CefV8Value>> elements) {
  CefRefPtr<V8ValueDouble> result = new V8ValueDouble(V8ValueDouble::Kind::kArray);
  result->elements = std::move(elements);
  return result;
}

// A function that returns undefined and keeps the arguments of its calls.
inline CefRefPtr<V8ValueDouble> Function() {
  return new V8ValueDouble(V8ValueDouble::Kind::kFunction);
}

inline CefRefPtr<CefV8Value> Object(std::map<std::string, CefRefPtr<CefV8Value>> properties) {
  CefRefPtr<V8ValueDouble> result = new V8ValueDouble(V8ValueDouble::Kind::kObject);
  result->properties = std::move(properties);
  return result;
}

}  // namespace v8_doubles

#endif  // V8_DOUBLES_V8_VALUES_H
