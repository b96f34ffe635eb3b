// The host's JSON: reading for the module, and safe text for scripts. Any thread.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace host {

// `text` as a JavaScript string literal that is safe in any script and in any document: only ASCII,
// so also without U+2028 and U+2029, and without "<", so that no "</script>" can come of it. Bytes
// that are not UTF-8 become U+FFFD.
std::string ScriptLiteral(const std::string& text);

// `texts` as a JavaScript array of such literals.
std::string ScriptArray(const std::vector<std::string>& texts);

// The members `keys` of the JSON object `json`: strings without their quotes, anything else as
// JSON. No value if `json` is not an object.
std::optional<std::map<std::string, std::string>> ReadMembers(const std::string& json,
                                                              const std::vector<std::string>& keys);

// The string members of the JSON object in a file; empty if there is none.
std::map<std::string, std::string> ReadTextMap(const std::string& path);

// The whole of a file; empty if it cannot be read.
std::string ReadFile(const std::string& path);

}  // namespace host
