#include "messages.h"

#include <cstdlib>

#include "audit.h"
#include "glue_conversions.h"
#include "neutral_classes.h"
#include "script.h"

namespace standin {

namespace {

class StandinMessage : public engine_neutral::NeutralProcessMessage {
 public:
  StandinMessage(const CefString& name, NodePtr arguments)
      : _name(name), _arguments(std::move(arguments)) {}

  bool IsValid() override { return true; }
  CefRefPtr<CefProcessMessage> Copy() override {
    return new StandinMessage(_name, _arguments->Clone(false));
  }
  CefString GetName() override { return _name; }
  CefRefPtr<CefListValue> GetArgumentList() override {
    return TakeFault("message_arguments") ? nullptr : WrapList(_arguments, true);
  }

 private:
  const CefString _name;
  const NodePtr _arguments;

  STANDIN_OBJECT(StandinMessage);
};

NodePtr ParseStrings(const std::string& text) {
  List items;
  for (size_t start = 0; start <= text.size();) {
    const size_t end = std::min(text.find('|', start), text.size());
    items.push_back(MakeText(text.substr(start, end - start)));
    start = end + 1;
  }
  return MakeNode(std::move(items));
}

}  // namespace

CefRefPtr<CefProcessMessage> MakeMessage(const CefString& name, const NodePtr& arguments) {
  return new StandinMessage(name, arguments);
}

NodePtr ParseField(const std::string& field) {
  const size_t colon = field.find(':');
  const std::string kind = field.substr(0, colon);
  const std::string text = colon == std::string::npos ? std::string() : field.substr(colon + 1);
  if (kind == "bool") {
    return MakeNode(text == "1");
  }
  if (kind == "int") {
    return MakeNode(std::atoi(text.c_str()));
  }
  if (kind == "double") {
    return MakeNode(std::strtod(text.c_str(), nullptr));
  }
  if (kind == "string") {
    return MakeText(text);
  }
  return kind == "strings" ? ParseStrings(text) : MakeNode();
}

NodePtr ParseFields(const char* const* fields, int count) {
  List items;
  for (int i = 0; i < count; ++i) {
    items.push_back(ParseField(fields[i]));
  }
  return MakeNode(std::move(items));
}

std::string DescribeMessage(const CefRefPtr<CefProcessMessage>& message) {
  const NodePtr arguments = NodeOf(message->GetArgumentList());
  return message->GetName().ToString() + "(" + (arguments ? Describe(*arguments) : "") + ")";
}

}  // namespace standin

extern "C" cef_process_message_t* cef_process_message_create(const cef_string_t* name) {
  if (standin::TakeFault("process_message")) {
    return nullptr;
  }
  return engine_glue::ToC(
      standin::MakeMessage(CefString(name), standin::MakeNode(standin::List())));
}
