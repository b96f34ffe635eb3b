#include "Json.h"

#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "System.h"

namespace host {
namespace {

using nlohmann::json;

std::string Dump(const json& value) {
  return value.dump(-1, ' ', true, json::error_handler_t::replace);
}

}  // namespace

std::string ScriptLiteral(const std::string& text) {
  std::string literal;
  for (const char byte : Dump(json(text))) {
    if (byte == '<') {
      literal += "\\u003c";
    } else {
      literal += byte;
    }
  }
  return literal;
}

std::string ScriptArray(const std::vector<std::string>& texts) {
  std::string array;
  for (const std::string& text : texts) {
    array += array.empty() ? "[" : ", ";
    array += ScriptLiteral(text);
  }
  return array.empty() ? "[]" : array + "]";
}

std::optional<std::map<std::string, std::string>> ReadMembers(
    const std::string& text, const std::vector<std::string>& keys) {
  const json object = json::parse(text, nullptr, false);
  if (!object.is_object()) {
    return std::nullopt;
  }
  std::map<std::string, std::string> members;
  for (const std::string& key : keys) {
    const auto member = object.find(key);
    if (member != object.end()) {
      members[key] = member->is_string() ? member->get<std::string>() : Dump(*member);
    }
  }
  return members;
}

std::map<std::string, std::string> ReadTextMap(const std::string& path) {
  std::map<std::string, std::string> map;
  const json object = json::parse(ReadFile(path), nullptr, false);
  if (object.is_object()) {
    for (const auto& [key, value] : object.items()) {
      if (value.is_string()) {
        map[key] = value.get<std::string>();
      }
    }
  }
  return map;
}

std::string ReadFile(const std::string& path) {
  std::ifstream file(ToPath(path), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace host
