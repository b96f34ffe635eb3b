// The engine's values: binary, dictionary, list, and a value of any kind. A container that is put
// into another one moves there: the object that it came from becomes invalid, and the one that is
// handed out shares the content. Each is used by one thread at a time.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "include/cef_values.h"

namespace standin {

struct Node;
using NodePtr = std::shared_ptr<Node>;
using Binary = std::vector<unsigned char>;
using List = std::vector<NodePtr>;
using Dictionary = std::map<std::string, NodePtr>;

// The content of a value.
struct Node {
  std::variant<std::monostate, bool, int, double, std::u16string, Binary, Dictionary, List> content;

  cef_value_type_t Type() const;
  NodePtr Clone(bool without_empty_children) const;
  bool IsEqual(const Node& other) const;

  // Of another kind the neutral value; an int is a double too.
  bool AsBool() const;
  int AsInt() const;
  double AsDouble() const;
  CefString AsString() const;
};

NodePtr MakeNode();
template <class T>
NodePtr MakeNode(T content) {
  const NodePtr node = MakeNode();
  node->content = std::move(content);
  return node;
}
NodePtr MakeText(const CefString& text);

// Objects around a content that may lie in a container, for its owner to see.
CefRefPtr<CefBinaryValue> WrapBinary(const NodePtr& node, bool is_owned);
CefRefPtr<CefDictionaryValue> WrapDictionary(const NodePtr& node, bool is_owned);
CefRefPtr<CefListValue> WrapList(const NodePtr& node, bool is_owned);
CefRefPtr<CefValue> WrapValue(const NodePtr& node, bool is_owned);

// Takes the content out of an object, which becomes invalid, or copies it if it lies in another
// container. Null for an invalid object.
NodePtr TakeNode(const CefRefPtr<CefBinaryValue>& value);
NodePtr TakeNode(const CefRefPtr<CefDictionaryValue>& value);
NodePtr TakeNode(const CefRefPtr<CefListValue>& value);
NodePtr TakeNode(const CefRefPtr<CefValue>& value);

// The content, to look at; null for an invalid object.
NodePtr NodeOf(const CefRefPtr<CefBinaryValue>& value);
NodePtr NodeOf(const CefRefPtr<CefDictionaryValue>& value);
NodePtr NodeOf(const CefRefPtr<CefListValue>& value);
NodePtr NodeOf(const CefRefPtr<CefValue>& value);

// As text, for the events of the control interface: "a|1|2.5|true|null".
std::string Describe(const Node& node);

}  // namespace standin
