// The host's names for the languages of its users. Any thread.
#pragma once

#include <optional>
#include <string_view>

namespace host {

// The host's name for the language of a locale such as "de_DE.UTF-8": "German". English and
// Portuguese come without their country, which `LanguageId` tells. Anything unknown is "English".
const char* LanguageName(std::string_view locale);

// The Windows language id that refines English and Portuguese: 2057 for British English, 1046 for
// Brazilian Portuguese; no value otherwise.
std::optional<int> LanguageId(std::string_view locale);

}  // namespace host
