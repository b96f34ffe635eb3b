// A JavaScript value without V8, for tests of what natives make of their arguments.
//
// It converts as the engine does: `GetStringValue` of anything but a text is empty, the number
// getters convert between number kinds and give 0 for everything else. Made by the functions of
// V8Values.h; counted like any engine object; one thread.

#ifndef V8_DOUBLES_V8_VALUE_DOUBLE_H
#define V8_DOUBLES_V8_VALUE_DOUBLE_H

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "v8_doubles/V8ValueWithoutDate.h"

namespace v8_doubles {

class V8ValueDouble : public V8ValueWithoutDate {
 public:
  enum class Kind { kUndefined, kNull, kBool, kInt, kDouble, kString, kObject, kArray, kFunction };

  explicit V8ValueDouble(Kind kind) : _kind(kind) {}

  // Whether the value's context still lives: a function of a context that was released is none.
  bool valid = true;
  // What the value is.
  double number = 0;
  std::string text;
  // A property that is present as a null reference is one that the engine does not give; an absent
  // one is undefined.
  std::map<std::string, CefRefPtr<CefV8Value>> properties;
  std::vector<CefRefPtr<CefV8Value>> elements;
  // What a function does; its calls are counted.
  std::function<CefRefPtr<CefV8Value>(const CefV8ValueList&)> function;
  int calls = 0;
  CefV8ValueList last_arguments;
  // What `this` was in the last call.
  CefRefPtr<CefV8Value> last_object;

  bool IsValid() override { return valid; }
  bool IsUndefined() override { return _kind == Kind::kUndefined; }
  bool IsNull() override { return _kind == Kind::kNull; }
  bool IsBool() override { return _kind == Kind::kBool; }
  bool IsInt() override { return _kind == Kind::kInt; }
  bool IsUInt() override { return _kind == Kind::kInt && number >= 0; }
  bool IsDouble() override { return _kind == Kind::kDouble; }
  bool IsDate() override { return false; }
  bool IsString() override { return _kind == Kind::kString; }
  bool IsObject() override { return IsArray() || IsFunction() || _kind == Kind::kObject; }
  bool IsArray() override { return _kind == Kind::kArray; }
  bool IsArrayBuffer() override { return false; }
  bool IsFunction() override { return valid && _kind == Kind::kFunction; }
  bool IsSame(CefRefPtr<CefV8Value> that) override { return that.get() == this; }

  bool GetBoolValue() override { return IsBool() && number != 0; }
  int32 GetIntValue() override { return IsNumber() ? static_cast<int32>(number) : 0; }
  uint32 GetUIntValue() override { return IsNumber() ? static_cast<uint32>(number) : 0; }
  double GetDoubleValue() override { return IsNumber() ? number : 0; }
  CefString GetStringValue() override { return IsString() ? CefString(text) : CefString(); }

  bool IsUserCreated() override { return false; }
  bool HasException() override { return false; }
  CefRefPtr<CefV8Exception> GetException() override { return nullptr; }
  bool ClearException() override { return true; }
  bool WillRethrowExceptions() override { return false; }
  bool SetRethrowExceptions(bool) override { return false; }

  bool HasValue(const CefString& key) override { return properties.count(key.ToString()) != 0; }
  bool HasValue(int index) override { return IsIndex(index); }
  bool DeleteValue(const CefString& key) override { return properties.erase(key.ToString()) != 0; }
  bool DeleteValue(int) override { return false; }
  CefRefPtr<CefV8Value> GetValue(const CefString& key) override {
    const auto property = properties.find(key.ToString());
    return property != properties.end() ? property->second : new V8ValueDouble(Kind::kUndefined);
  }
  CefRefPtr<CefV8Value> GetValue(int index) override {
    return IsIndex(index) ? elements[static_cast<std::size_t>(index)]
                          : new V8ValueDouble(Kind::kUndefined);
  }
  bool SetValue(const CefString& key, CefRefPtr<CefV8Value> value, PropertyAttribute) override {
    properties[key.ToString()] = std::move(value);
    return true;
  }
  bool SetValue(int, CefRefPtr<CefV8Value>) override { return false; }
  bool SetValue(const CefString&, AccessControl, PropertyAttribute) override { return false; }
  bool GetKeys(std::vector<CefString>& keys) override {
    for (const auto& property : properties) {
      keys.push_back(property.first);
    }
    return true;
  }

  bool SetUserData(CefRefPtr<CefBaseRefCounted>) override { return false; }
  CefRefPtr<CefBaseRefCounted> GetUserData() override { return nullptr; }
  int GetExternallyAllocatedMemory() override { return 0; }
  int AdjustExternallyAllocatedMemory(int) override { return 0; }
  int GetArrayLength() override { return static_cast<int>(elements.size()); }
  CefRefPtr<CefV8ArrayBufferReleaseCallback> GetArrayBufferReleaseCallback() override {
    return nullptr;
  }
  bool NeuterArrayBuffer() override { return false; }
  CefString GetFunctionName() override { return CefString(); }
  CefRefPtr<CefV8Handler> GetFunctionHandler() override { return nullptr; }
  CefRefPtr<CefV8Value> ExecuteFunction(CefRefPtr<CefV8Value> object,
                                        const CefV8ValueList& arguments) override {
    ++calls;
    last_object = object;
    last_arguments = arguments;
    return function ? function(arguments) : new V8ValueDouble(Kind::kUndefined);
  }
  CefRefPtr<CefV8Value> ExecuteFunctionWithContext(CefRefPtr<CefV8Context>,
                                                   CefRefPtr<CefV8Value> object,
                                                   const CefV8ValueList& arguments) override {
    return ExecuteFunction(object, arguments);
  }

 private:
  bool IsNumber() const { return _kind == Kind::kInt || _kind == Kind::kDouble; }
  bool IsIndex(int index) const {
    return index >= 0 && static_cast<std::size_t>(index) < elements.size();
  }

  const Kind _kind;

  IMPLEMENT_REFCOUNTING(V8ValueDouble);
};

}  // namespace v8_doubles

#endif  // V8_DOUBLES_V8_VALUE_DOUBLE_H
