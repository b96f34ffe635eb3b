#include "Catalogue.h"

#include <fstream>
#include <nlohmann/json.hpp>

#include "System.h"

namespace host {

std::optional<std::string> Catalogue::Find(const std::string& catalogue,
                                           const std::string& language, const std::string& key) {
  const std::lock_guard<std::mutex> guard(_mutex);
  const Texts& texts = Load(catalogue);
  for (const std::string& candidate : {language, std::string("English")}) {
    const auto keys = texts.find(candidate);
    if (keys == texts.end()) {
      continue;
    }
    const auto text = keys->second.find(key);
    if (text != keys->second.end()) {
      return text->second;
    }
  }
  return std::nullopt;
}

const Catalogue::Texts& Catalogue::Load(const std::string& catalogue) {
  const auto [entry, added] = _catalogues.try_emplace(catalogue);
  // A name with a separator would leave the directory.
  if (!added || catalogue.find('/') != std::string::npos) {
    return entry->second;
  }
  std::ifstream file(ToPath(_directory + "/" + catalogue + ".json"));
  const nlohmann::json json = nlohmann::json::parse(file, nullptr, false);
  if (!json.is_object()) {
    return entry->second;
  }
  for (const auto& [language, keys] : json.items()) {
    for (const auto& [key, text] : keys.items()) {
      if (text.is_string()) {
        entry->second[language][key] = text.get<std::string>();
      }
    }
  }
  return entry->second;
}

}  // namespace host
