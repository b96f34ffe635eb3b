#include "values.h"

#include <algorithm>
#include <cstring>

#include "audit.h"
#include "glue_conversions.h"
#include "neutral_classes.h"

namespace standin {

namespace {

CefString FromKey(const std::string& key) {
  return CefString(key);
}

// What all kinds of value objects share. `Class` is the neutral class of the interface.
template <class Class, class Interface>
class Wrapper : public Class {
 public:
  Wrapper(NodePtr node, bool is_owned) : _node(std::move(node)), _is_owned(is_owned) {}

  bool IsValid() override { return _node != nullptr; }
  bool IsOwned() override { return _node && _is_owned; }
  bool IsSame(CefRefPtr<Interface> that) override { return _node && NodeOf(that) == _node; }
  bool IsEqual(CefRefPtr<Interface> that) override {
    const NodePtr other = NodeOf(that);
    return _node && other && _node->IsEqual(*other);
  }

  const NodePtr& Content() const { return _node; }
  NodePtr Take() {
    if (!_node || _is_owned) {
      return _node ? _node->Clone(false) : nullptr;
    }
    _is_owned = true;
    return std::exchange(_node, nullptr);
  }

 protected:
  NodePtr _node;
  bool _is_owned;
};

class StandinBinary : public Wrapper<engine_neutral::NeutralBinaryValue, CefBinaryValue> {
 public:
  using Wrapper::Wrapper;

  CefRefPtr<CefBinaryValue> Copy() override {
    return _node ? WrapBinary(_node->Clone(false), false) : nullptr;
  }
  size_t GetSize() override { return _node ? std::get<Binary>(_node->content).size() : 0; }
  size_t GetData(void* buffer, size_t buffer_size, size_t data_offset) override {
    if (!_node || !buffer || data_offset >= GetSize()) {
      return 0;
    }
    const size_t count = std::min(buffer_size, GetSize() - data_offset);
    std::memcpy(buffer, std::get<Binary>(_node->content).data() + data_offset, count);
    return count;
  }

 private:
  STANDIN_OBJECT(StandinBinary);
};

class StandinDictionary
    : public Wrapper<engine_neutral::NeutralDictionaryValue, CefDictionaryValue> {
 public:
  using Wrapper::Wrapper;

  CefRefPtr<CefDictionaryValue> Copy(bool exclude_empty_children) override {
    return _node ? WrapDictionary(_node->Clone(exclude_empty_children), false) : nullptr;
  }
  size_t GetSize() override { return _node ? Items().size() : 0; }
  bool Clear() override {
    if (_node) {
      Items().clear();
    }
    return _node != nullptr;
  }
  bool HasKey(const CefString& key) override { return Find(key) != nullptr; }
  bool GetKeys(KeyList& keys) override {
    if (!_node) {
      return false;
    }
    for (const auto& item : Items()) {
      keys.push_back(FromKey(item.first));
    }
    return true;
  }
  bool Remove(const CefString& key) override { return _node && Items().erase(key.ToString()) > 0; }
  CefValueType GetType(const CefString& key) override {
    const NodePtr item = Find(key);
    return item ? item->Type() : VTYPE_INVALID;
  }
  CefRefPtr<CefValue> GetValue(const CefString& key) override {
    const NodePtr item = Find(key);
    return item ? WrapValue(item, true) : nullptr;
  }
  bool GetBool(const CefString& key) override { return FindOrNull(key)->AsBool(); }
  int GetInt(const CefString& key) override { return FindOrNull(key)->AsInt(); }
  double GetDouble(const CefString& key) override { return FindOrNull(key)->AsDouble(); }
  CefString GetString(const CefString& key) override { return FindOrNull(key)->AsString(); }
  CefRefPtr<CefBinaryValue> GetBinary(const CefString& key) override {
    return WrapBinary(Find(key), true);
  }
  CefRefPtr<CefDictionaryValue> GetDictionary(const CefString& key) override {
    return WrapDictionary(Find(key), true);
  }
  CefRefPtr<CefListValue> GetList(const CefString& key) override {
    return WrapList(Find(key), true);
  }
  bool SetValue(const CefString& key, CefRefPtr<CefValue> value) override {
    return Put(key, TakeNode(value));
  }
  bool SetNull(const CefString& key) override { return Put(key, MakeNode()); }
  bool SetBool(const CefString& key, bool value) override { return Put(key, MakeNode(value)); }
  bool SetInt(const CefString& key, int value) override { return Put(key, MakeNode(value)); }
  bool SetDouble(const CefString& key, double value) override { return Put(key, MakeNode(value)); }
  bool SetString(const CefString& key, const CefString& value) override {
    return Put(key, MakeText(value));
  }
  bool SetBinary(const CefString& key, CefRefPtr<CefBinaryValue> value) override {
    return Put(key, TakeNode(value));
  }
  bool SetDictionary(const CefString& key, CefRefPtr<CefDictionaryValue> value) override {
    return Put(key, TakeNode(value));
  }
  bool SetList(const CefString& key, CefRefPtr<CefListValue> value) override {
    return Put(key, TakeNode(value));
  }

 private:
  Dictionary& Items() { return std::get<Dictionary>(_node->content); }
  NodePtr Find(const CefString& key) {
    if (!_node) {
      return nullptr;
    }
    const auto found = Items().find(key.ToString());
    return found != Items().end() ? found->second : nullptr;
  }
  NodePtr FindOrNull(const CefString& key) {
    const NodePtr found = Find(key);
    return found ? found : MakeNode();
  }
  bool Put(const CefString& key, const NodePtr& item) {
    if (!_node || !item) {
      return false;
    }
    Items()[key.ToString()] = item;
    return true;
  }

  STANDIN_OBJECT(StandinDictionary);
};

class StandinList : public Wrapper<engine_neutral::NeutralListValue, CefListValue> {
 public:
  using Wrapper::Wrapper;

  CefRefPtr<CefListValue> Copy() override {
    return _node ? WrapList(_node->Clone(false), false) : nullptr;
  }
  bool SetSize(size_t size) override {
    while (_node && Items().size() < size) {
      Items().push_back(MakeNode());
    }
    if (_node) {
      Items().resize(size);
    }
    return _node != nullptr;
  }
  size_t GetSize() override { return _node ? Items().size() : 0; }
  bool Clear() override { return SetSize(0); }
  bool Remove(size_t index) override {
    if (!Find(index)) {
      return false;
    }
    Items().erase(Items().begin() + static_cast<std::ptrdiff_t>(index));
    return true;
  }
  CefValueType GetType(size_t index) override {
    const NodePtr item = Find(index);
    return item ? item->Type() : VTYPE_INVALID;
  }
  CefRefPtr<CefValue> GetValue(size_t index) override {
    const NodePtr item = Find(index);
    return item ? WrapValue(item, true) : nullptr;
  }
  bool GetBool(size_t index) override { return FindOrNull(index)->AsBool(); }
  int GetInt(size_t index) override { return FindOrNull(index)->AsInt(); }
  double GetDouble(size_t index) override { return FindOrNull(index)->AsDouble(); }
  CefString GetString(size_t index) override { return FindOrNull(index)->AsString(); }
  CefRefPtr<CefBinaryValue> GetBinary(size_t index) override {
    return WrapBinary(Find(index), true);
  }
  CefRefPtr<CefDictionaryValue> GetDictionary(size_t index) override {
    return WrapDictionary(Find(index), true);
  }
  CefRefPtr<CefListValue> GetList(size_t index) override { return WrapList(Find(index), true); }
  bool SetValue(size_t index, CefRefPtr<CefValue> value) override {
    return Put(index, TakeNode(value));
  }
  bool SetNull(size_t index) override { return Put(index, MakeNode()); }
  bool SetBool(size_t index, bool value) override { return Put(index, MakeNode(value)); }
  bool SetInt(size_t index, int value) override { return Put(index, MakeNode(value)); }
  bool SetDouble(size_t index, double value) override { return Put(index, MakeNode(value)); }
  bool SetString(size_t index, const CefString& value) override {
    return Put(index, MakeText(value));
  }
  bool SetBinary(size_t index, CefRefPtr<CefBinaryValue> value) override {
    return Put(index, TakeNode(value));
  }
  bool SetDictionary(size_t index, CefRefPtr<CefDictionaryValue> value) override {
    return Put(index, TakeNode(value));
  }
  bool SetList(size_t index, CefRefPtr<CefListValue> value) override {
    return Put(index, TakeNode(value));
  }

 private:
  List& Items() { return std::get<List>(_node->content); }
  NodePtr Find(size_t index) { return _node && index < Items().size() ? Items()[index] : nullptr; }
  NodePtr FindOrNull(size_t index) {
    const NodePtr found = Find(index);
    return found ? found : MakeNode();
  }
  bool Put(size_t index, const NodePtr& item) {
    if (!_node || !item) {
      return false;
    }
    if (index >= Items().size()) {
      SetSize(index + 1);
    }
    Items()[index] = item;
    return true;
  }

  STANDIN_OBJECT(StandinList);
};

class StandinValue : public Wrapper<engine_neutral::NeutralValue, CefValue> {
 public:
  using Wrapper::Wrapper;

  CefRefPtr<CefValue> Copy() override {
    return _node ? WrapValue(_node->Clone(false), false) : nullptr;
  }
  CefValueType GetType() override { return _node ? _node->Type() : VTYPE_INVALID; }
  bool GetBool() override { return _node && _node->AsBool(); }
  int GetInt() override { return _node ? _node->AsInt() : 0; }
  double GetDouble() override { return _node ? _node->AsDouble() : 0; }
  CefString GetString() override { return _node ? _node->AsString() : CefString(); }
  CefRefPtr<CefBinaryValue> GetBinary() override { return WrapBinary(_node, true); }
  CefRefPtr<CefDictionaryValue> GetDictionary() override { return WrapDictionary(_node, true); }
  CefRefPtr<CefListValue> GetList() override { return WrapList(_node, true); }
  bool SetNull() override { return Put(MakeNode()); }
  bool SetBool(bool value) override { return Put(MakeNode(value)); }
  bool SetInt(int value) override { return Put(MakeNode(value)); }
  bool SetDouble(double value) override { return Put(MakeNode(value)); }
  bool SetString(const CefString& value) override { return Put(MakeText(value)); }
  bool SetBinary(CefRefPtr<CefBinaryValue> value) override { return Put(TakeNode(value)); }
  bool SetDictionary(CefRefPtr<CefDictionaryValue> value) override { return Put(TakeNode(value)); }
  bool SetList(CefRefPtr<CefListValue> value) override { return Put(TakeNode(value)); }

 private:
  bool Put(const NodePtr& item) {
    if (!_node || !item) {
      return false;
    }
    _node->content = item->content;
    return true;
  }

  STANDIN_OBJECT(StandinValue);
};

template <class Content, class Object, class Interface>
CefRefPtr<Interface> Wrap(const NodePtr& node, bool is_owned) {
  if (!node || !std::holds_alternative<Content>(node->content)) {
    return nullptr;
  }
  return new Object(node, is_owned);
}

// Only an object of the stand-in's own has a content; a client cannot make others.
template <class Object, class Interface>
NodePtr Take(const CefRefPtr<Interface>& value) {
  auto* const own = dynamic_cast<Object*>(value.get());
  return own ? own->Take() : nullptr;
}

template <class Object, class Interface>
NodePtr ContentOf(const CefRefPtr<Interface>& value) {
  auto* const own = dynamic_cast<Object*>(value.get());
  return own ? own->Content() : nullptr;
}

}  // namespace

CefRefPtr<CefBinaryValue> WrapBinary(const NodePtr& node, bool is_owned) {
  return Wrap<Binary, StandinBinary, CefBinaryValue>(node, is_owned);
}
CefRefPtr<CefDictionaryValue> WrapDictionary(const NodePtr& node, bool is_owned) {
  return Wrap<Dictionary, StandinDictionary, CefDictionaryValue>(node, is_owned);
}
CefRefPtr<CefListValue> WrapList(const NodePtr& node, bool is_owned) {
  return Wrap<List, StandinList, CefListValue>(node, is_owned);
}
CefRefPtr<CefValue> WrapValue(const NodePtr& node, bool is_owned) {
  return new StandinValue(node, is_owned);
}

NodePtr TakeNode(const CefRefPtr<CefBinaryValue>& value) {
  return Take<StandinBinary>(value);
}
NodePtr TakeNode(const CefRefPtr<CefDictionaryValue>& value) {
  return Take<StandinDictionary>(value);
}
NodePtr TakeNode(const CefRefPtr<CefListValue>& value) {
  return Take<StandinList>(value);
}
NodePtr TakeNode(const CefRefPtr<CefValue>& value) {
  return Take<StandinValue>(value);
}

NodePtr NodeOf(const CefRefPtr<CefBinaryValue>& value) {
  return ContentOf<StandinBinary>(value);
}
NodePtr NodeOf(const CefRefPtr<CefDictionaryValue>& value) {
  return ContentOf<StandinDictionary>(value);
}
NodePtr NodeOf(const CefRefPtr<CefListValue>& value) {
  return ContentOf<StandinList>(value);
}
NodePtr NodeOf(const CefRefPtr<CefValue>& value) {
  return ContentOf<StandinValue>(value);
}

}  // namespace standin

extern "C" {

cef_value_t* cef_value_create() {
  return engine_glue::ToC(standin::WrapValue(standin::MakeNode(), false));
}

cef_binary_value_t* cef_binary_value_create(const void* data, size_t data_size) {
  const auto* const bytes = static_cast<const unsigned char*>(data);
  using standin::Binary;
  const Binary content = data ? Binary(bytes, bytes + data_size) : Binary();
  return engine_glue::ToC(standin::WrapBinary(standin::MakeNode(content), false));
}

cef_dictionary_value_t* cef_dictionary_value_create() {
  return engine_glue::ToC(standin::WrapDictionary(standin::MakeNode(standin::Dictionary()), false));
}

cef_list_value_t* cef_list_value_create() {
  return engine_glue::ToC(standin::WrapList(standin::MakeNode(standin::List()), false));
}

}  // extern "C"
