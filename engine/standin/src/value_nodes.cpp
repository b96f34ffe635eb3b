#include <algorithm>
#include <sstream>

#include "values.h"

namespace standin {

namespace {

constexpr cef_value_type_t kTypes[] = {VTYPE_NULL,   VTYPE_BOOL,   VTYPE_INT,        VTYPE_DOUBLE,
                                       VTYPE_STRING, VTYPE_BINARY, VTYPE_DICTIONARY, VTYPE_LIST};

bool IsEmptyContainer(const Node& node) {
  const auto* const list = std::get_if<List>(&node.content);
  const auto* const dictionary = std::get_if<Dictionary>(&node.content);
  return (list && list->empty()) || (dictionary && dictionary->empty());
}

bool AreEqual(const NodePtr& left, const NodePtr& right) {
  return left->IsEqual(*right);
}

std::string DescribeList(const List& list) {
  std::string text;
  for (const NodePtr& item : list) {
    text += (text.empty() ? "" : "|") + Describe(*item);
  }
  return text;
}

}  // namespace

NodePtr MakeNode() {
  return std::make_shared<Node>();
}

NodePtr MakeText(const CefString& text) {
  return MakeNode(std::u16string(text.c_str(), text.c_str() + text.length()));
}

cef_value_type_t Node::Type() const {
  return kTypes[content.index()];
}

NodePtr Node::Clone(bool without_empty_children) const {
  const NodePtr copy = MakeNode();
  if (const auto* const list = std::get_if<List>(&content)) {
    List items;
    for (const NodePtr& item : *list) {
      items.push_back(item->Clone(without_empty_children));
    }
    copy->content = std::move(items);
  } else if (const auto* const dictionary = std::get_if<Dictionary>(&content)) {
    Dictionary items;
    for (const auto& [key, item] : *dictionary) {
      const NodePtr cloned = item->Clone(without_empty_children);
      if (!without_empty_children || !IsEmptyContainer(*cloned)) {
        items.emplace(key, cloned);
      }
    }
    copy->content = std::move(items);
  } else {
    copy->content = content;
  }
  return copy;
}

bool Node::IsEqual(const Node& other) const {
  if (content.index() != other.content.index()) {
    return false;
  }
  if (const auto* const list = std::get_if<List>(&content)) {
    const List& others = std::get<List>(other.content);
    return std::equal(list->begin(), list->end(), others.begin(), others.end(), &AreEqual);
  }
  if (const auto* const dictionary = std::get_if<Dictionary>(&content)) {
    const Dictionary& others = std::get<Dictionary>(other.content);
    return std::equal(dictionary->begin(), dictionary->end(), others.begin(), others.end(),
                      [](const auto& a, const auto& b) {
                        return a.first == b.first && AreEqual(a.second, b.second);
                      });
  }
  return content == other.content;
}

bool Node::AsBool() const {
  const bool* const value = std::get_if<bool>(&content);
  return value && *value;
}

int Node::AsInt() const {
  const int* const value = std::get_if<int>(&content);
  return value ? *value : 0;
}

double Node::AsDouble() const {
  const double* const value = std::get_if<double>(&content);
  return value ? *value : AsInt();
}

CefString Node::AsString() const {
  const auto* const text = std::get_if<std::u16string>(&content);
  return text ? CefString(reinterpret_cast<const char16*>(text->data()), text->size(), true)
              : CefString();
}

std::string Describe(const Node& node) {
  std::ostringstream text;
  switch (node.Type()) {
    case VTYPE_BOOL:
      text << (node.AsBool() ? "true" : "false");
      break;
    case VTYPE_INT:
      text << node.AsInt();
      break;
    case VTYPE_DOUBLE:
      text << node.AsDouble();
      break;
    case VTYPE_STRING:
      text << node.AsString().ToString();
      break;
    case VTYPE_BINARY:
      text << std::get<Binary>(node.content).size() << " bytes";
      break;
    case VTYPE_DICTIONARY:
      for (const auto& [key, item] : std::get<Dictionary>(node.content)) {
        text << key << "=" << Describe(*item) << ";";
      }
      break;
    case VTYPE_LIST:
      text << DescribeList(std::get<List>(node.content));
      break;
    default:
      text << "null";
  }
  return text.str();
}

}  // namespace standin
