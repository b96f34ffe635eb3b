#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <memory>
#include <optional>

#include "audit.h"
#include "glue_conversions.h"
#include "include/cef_version.h"
#include "messages.h"
#include "neutral_classes.h"
#include "script.h"
#include "v8.h"

namespace standin {

namespace {

enum class Kind { kUndefined, kNull, kBool, kInt, kDouble, kString, kObject, kArray, kFunction };

using Values = std::vector<CefRefPtr<CefV8Value>>;

// A promise, in the version that has them, is an object that can be settled once.
#if CEF_VERSION_MAJOR >= 108
class MaybePromise : public engine_neutral::NeutralV8Value {
 public:
  bool IsPromise() override { return _is_promise; }
  bool ResolvePromise(CefRefPtr<CefV8Value> arg) override {
    Note("promise", "resolved " + DescribeScriptValue(arg));
    return std::exchange(_is_promise, false);
  }
  bool RejectPromise(const CefString& errorMsg) override {
    Note("promise", "rejected " + errorMsg.ToString());
    return std::exchange(_is_promise, false);
  }
  void BecomePromise() { _is_promise = true; }

 private:
  bool _is_promise = false;
};
#else
using MaybePromise = engine_neutral::NeutralV8Value;
#endif

class StandinV8Value : public MaybePromise {
 public:
  explicit StandinV8Value(Kind kind) : _kind(kind) {}
  explicit StandinV8Value(double number, Kind kind) : _kind(kind), _number(number) {}
  explicit StandinV8Value(const CefString& text) : _kind(Kind::kString), _text(text) {}
  StandinV8Value(const CefString& name, const CefRefPtr<CefV8Handler>& handler)
      : _kind(Kind::kFunction), _text(name) {
    if (handler) {
      _handler.emplace("client CefV8Handler", handler);
    }
  }

  bool IsValid() override { return true; }
  bool IsUndefined() override { return _kind == Kind::kUndefined; }
  bool IsNull() override { return _kind == Kind::kNull; }
  bool IsBool() override { return _kind == Kind::kBool; }
  bool IsInt() override { return IsNumber() && _number == std::trunc(_number) && IsInRange(); }
  bool IsUInt() override { return IsInt() && _number >= 0; }
  bool IsDouble() override { return IsNumber(); }
  bool IsString() override { return _kind == Kind::kString; }
  bool IsObject() override { return _kind >= Kind::kObject; }
  bool IsArray() override { return _kind == Kind::kArray; }
  bool IsFunction() override { return _kind == Kind::kFunction; }
  bool IsSame(CefRefPtr<CefV8Value> that) override { return that.get() == this; }
  bool GetBoolValue() override { return _number != 0; }
  int32 GetIntValue() override { return IsInRange() ? static_cast<int32>(_number) : 0; }
  uint32 GetUIntValue() override { return static_cast<uint32>(GetIntValue()); }
  double GetDoubleValue() override { return _number; }
  CefString GetStringValue() override { return _text; }
  bool IsUserCreated() override { return _kind == Kind::kObject; }
  bool HasValue(const CefString& key) override { return _members.count(key.ToString()) > 0; }
  bool HasValue(int index) override { return static_cast<size_t>(index) < _items.size(); }
  bool DeleteValue(const CefString& key) override { return _members.erase(key.ToString()) > 0; }
  CefRefPtr<CefV8Value> GetValue(const CefString& key) override {
    const auto found = _members.find(key.ToString());
    return found != _members.end() ? found->second : new StandinV8Value(Kind::kUndefined);
  }
  CefRefPtr<CefV8Value> GetValue(int index) override {
    return HasValue(index) ? _items[static_cast<size_t>(index)]
                           : new StandinV8Value(Kind::kUndefined);
  }
  bool SetValue(const CefString& key, CefRefPtr<CefV8Value> value, PropertyAttribute) override {
    if (!IsObject() || !value) {
      return false;
    }
    _members[key.ToString()] = value;
    return true;
  }
  bool SetValue(int index, CefRefPtr<CefV8Value> value) override {
    if (_kind != Kind::kArray || index < 0 || !value) {
      return false;
    }
    while (_items.size() <= static_cast<size_t>(index)) {
      _items.emplace_back(new StandinV8Value(Kind::kUndefined));
    }
    _items[static_cast<size_t>(index)] = value;
    return true;
  }
  bool GetKeys(std::vector<CefString>& keys) override {
    for (const auto& member : _members) {
      keys.emplace_back(member.first);
    }
    return IsObject();
  }
  bool SetUserData(CefRefPtr<CefBaseRefCounted> user_data) override {
    _user_data = user_data;
    return IsObject();
  }
  CefRefPtr<CefBaseRefCounted> GetUserData() override { return _user_data; }
  int GetArrayLength() override { return static_cast<int>(_items.size()); }
  CefString GetFunctionName() override { return IsFunction() ? _text : CefString(); }
  CefRefPtr<CefV8Handler> GetFunctionHandler() override {
    return _handler ? _handler->get() : nullptr;
  }
  CefRefPtr<CefV8Value> ExecuteFunction(CefRefPtr<CefV8Value> object,
                                        const CefV8ValueList& arguments) override {
    Note("function", _text.ToString() + " " + std::to_string(arguments.size()));
    CefRefPtr<CefV8Value> result;
    CefString exception;
    if (_handler && !(*_handler)->Execute(_text, object, arguments, result, exception)) {
      return nullptr;
    }
    return result ? result : new StandinV8Value(Kind::kUndefined);
  }
  CefRefPtr<CefV8Value> ExecuteFunctionWithContext(CefRefPtr<CefV8Context> context,
                                                   CefRefPtr<CefV8Value> object,
                                                   const CefV8ValueList& arguments) override {
    if (!context || !context->Enter()) {
      return nullptr;
    }
    const CefRefPtr<CefV8Value> result = ExecuteFunction(object, arguments);
    context->Exit();
    return result;
  }

 private:
  bool IsNumber() const { return _kind == Kind::kInt || _kind == Kind::kDouble; }
  bool IsInRange() const {
    return _number >= std::numeric_limits<int32>::min() &&
           _number <= std::numeric_limits<int32>::max();
  }

  const Kind _kind;
  const double _number = 0;
  const CefString _text;
  std::optional<Held<CefV8Handler>> _handler;
  std::map<std::string, CefRefPtr<CefV8Value>> _members;
  Values _items;
  CefRefPtr<CefBaseRefCounted> _user_data;

  STANDIN_OBJECT(StandinV8Value);
};

CefRefPtr<CefV8Value> FromNode(const Node& node) {
  switch (node.Type()) {
    case VTYPE_BOOL:
      return new StandinV8Value(node.AsBool() ? 1 : 0, Kind::kBool);
    case VTYPE_INT:
      return new StandinV8Value(node.AsInt(), Kind::kInt);
    case VTYPE_DOUBLE:
      return new StandinV8Value(node.AsDouble(), Kind::kDouble);
    case VTYPE_STRING:
      return new StandinV8Value(node.AsString());
    case VTYPE_LIST: {
      const CefRefPtr<CefV8Value> array = new StandinV8Value(Kind::kArray);
      int index = 0;
      for (const NodePtr& item : std::get<List>(node.content)) {
        array->SetValue(index++, FromNode(*item));
      }
      return array;
    }
    default:
      return new StandinV8Value(Kind::kNull);
  }
}

cef_v8value_t* Give(CefRefPtr<CefV8Value> value) {
  return TakeFault("v8_value") ? nullptr : engine_glue::ToC(value);
}

// "name=field;name=field;" behind the kind.
CefRefPtr<CefV8Value> MakeObject(const std::string& members) {
  const CefRefPtr<CefV8Value> object = new StandinV8Value(Kind::kObject);
  for (size_t start = 0; start < members.size();) {
    const size_t end = std::min(members.find(';', start), members.size());
    const std::string member = members.substr(start, end - start);
    const size_t equals = std::min(member.find('='), member.size() - 1);
    object->SetValue(member.substr(0, equals), MakeScriptValue(member.substr(equals + 1)),
                     V8_PROPERTY_ATTRIBUTE_NONE);
    start = end + 1;
  }
  return object;
}

}  // namespace

CefRefPtr<CefV8Value> MakeScriptValue(const std::string& field) {
  constexpr char kFunction[] = "function:";
  if (field.compare(0, sizeof(kFunction) - 1, kFunction) == 0) {
    return new StandinV8Value(CefString(field.substr(sizeof(kFunction) - 1)), nullptr);
  }
  if (field == "undefined:") {
    return new StandinV8Value(Kind::kUndefined);
  }
  constexpr char kObject[] = "object:";
  if (field.compare(0, sizeof(kObject) - 1, kObject) == 0) {
    return MakeObject(field.substr(sizeof(kObject) - 1));
  }
  return FromNode(*ParseField(field));
}

std::string DescribeScriptValue(const CefRefPtr<CefV8Value>& value) {
  if (!value || value->IsUndefined()) {
    return value ? "undefined" : "nothing";
  }
  if (value->IsNull()) {
    return "null";
  }
  if (value->IsBool()) {
    return value->GetBoolValue() ? "true" : "false";
  }
  if (value->IsInt()) {
    return std::to_string(value->GetIntValue());
  }
  if (value->IsDouble()) {
    return std::to_string(value->GetDoubleValue());
  }
  if (value->IsString()) {
    return "\"" + value->GetStringValue().ToString() + "\"";
  }
  return value->IsArray() ? "array" : value->IsFunction() ? "function" : "object";
}

}  // namespace standin

using standin::Give;
using standin::Kind;
using standin::StandinV8Value;

extern "C" {

cef_v8value_t* cef_v8value_create_undefined() {
  return Give(new StandinV8Value(Kind::kUndefined));
}
cef_v8value_t* cef_v8value_create_null() {
  return Give(new StandinV8Value(Kind::kNull));
}
cef_v8value_t* cef_v8value_create_bool(int value) {
  return Give(new StandinV8Value(value ? 1 : 0, Kind::kBool));
}
cef_v8value_t* cef_v8value_create_int(int32 value) {
  return Give(new StandinV8Value(value, Kind::kInt));
}
cef_v8value_t* cef_v8value_create_uint(uint32 value) {
  return Give(new StandinV8Value(value, Kind::kInt));
}
cef_v8value_t* cef_v8value_create_double(double value) {
  return Give(new StandinV8Value(value, Kind::kDouble));
}
cef_v8value_t* cef_v8value_create_string(const cef_string_t* value) {
  return Give(new StandinV8Value(value ? CefString(value->str, value->length, true) : CefString()));
}
cef_v8value_t* cef_v8value_create_object(cef_v8accessor_t* accessor,
                                         cef_v8interceptor_t* interceptor) {
  // Taken and given back: properties of these objects are plain ones.
  const CefRefPtr<CefV8Accessor> taken_accessor = engine_glue::FromC(accessor);
  const CefRefPtr<CefV8Interceptor> taken_interceptor = engine_glue::FromC(interceptor);
  return Give(new StandinV8Value(Kind::kObject));
}
cef_v8value_t* cef_v8value_create_array(int length) {
  const CefRefPtr<CefV8Value> array = new StandinV8Value(Kind::kArray);
  if (length > 0) {
    array->SetValue(length - 1, new StandinV8Value(Kind::kUndefined));
  }
  return Give(array);
}
cef_v8value_t* cef_v8value_create_function(const cef_string_t* name, cef_v8handler_t* handler) {
  return Give(
      new StandinV8Value(CefString(name->str, name->length, true), engine_glue::FromC(handler)));
}
#if CEF_VERSION_MAJOR >= 108
cef_v8value_t* cef_v8value_create_promise() {
  const CefRefPtr<StandinV8Value> promise = new StandinV8Value(Kind::kObject);
  promise->BecomePromise();
  return Give(promise);
}
#endif

}  // extern "C"
