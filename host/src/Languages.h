// The user's language as the environment tells it. Any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace host {

// The locale of messages: LC_ALL, LC_MESSAGES or LANG, the first that is not empty.
std::string EnvironmentLocale();

// The host's name for the language of a locale such as "de_DE.UTF-8": "German". English and
// Portuguese come without their country, which `LanguageId` tells. Anything unknown is "English".
const char* LanguageName(std::string_view locale);

// The Windows language id that refines English and Portuguese: 2057 for British English, 1046 for
// Brazilian Portuguese; no value otherwise.
std::optional<int> LanguageId(std::string_view locale);

}  // namespace host
