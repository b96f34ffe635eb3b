// Message catalogues: one JSON file for each catalogue, an object of languages (the host's names)
// that holds objects of keys and texts. A text that a language lacks is taken from "English".
// Any thread; the tools of the host own it.
#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>

namespace host {

class Catalogue {
 public:
  // Catalogues are files `<directory>/<catalogue>.json`, read when first asked for.
  explicit Catalogue(std::string directory) : _directory(std::move(directory)) {}

  std::optional<std::string> Find(const std::string& catalogue, const std::string& language,
                                  const std::string& key);

 private:
  using Texts = std::map<std::string, std::map<std::string, std::string>>;

  const Texts& Load(const std::string& catalogue);

  const std::string _directory;
  std::mutex _mutex;
  // Guarded by `_mutex`; by catalogue, then by language and key.
  std::map<std::string, Texts> _catalogues;
};

}  // namespace host
