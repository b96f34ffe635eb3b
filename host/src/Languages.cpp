#include "Languages.h"

namespace host {
namespace {

struct Language {
  std::string_view code;
  const char* name;
};

// Locales with a country come before those of the bare language.
constexpr Language kLanguages[] = {
    {"zh_TW", "Traditional_Chinese"},
    {"zh_HK", "Traditional_Chinese"},
    {"zh", "Simplified_Chinese"},
    {"am", "Amharic"},
    {"ar", "Arabic"},
    {"bg", "Bulgarian"},
    {"bn", "Bengali"},
    {"ca", "Catalan"},
    {"cs", "Czech"},
    {"da", "Danish"},
    {"de", "German"},
    {"el", "Greek"},
    {"en", "English"},
    {"es", "Spanish"},
    {"et", "Estonian"},
    {"fa", "Persian"},
    {"fi", "Finnish"},
    {"fil", "Filipino"},
    {"fr", "French"},
    {"gu", "Gujarati"},
    {"he", "Hebrew"},
    {"hi", "Hindi"},
    {"hr", "Croatian"},
    {"hu", "Hungarian"},
    {"id", "Indonesian"},
    {"it", "Italian"},
    {"ja", "Japanese"},
    {"kn", "Kannada"},
    {"ko", "Korean"},
    {"lt", "Lithuanian"},
    {"lv", "Latvian"},
    {"ml", "Malayalam"},
    {"mr", "Marathi"},
    {"ms", "Malay"},
    {"nb", "Norwegian"},
    {"no", "Norwegian"},
    {"nl", "Dutch"},
    {"pl", "Polish"},
    {"pt", "Portuguese"},
    {"ro", "Romanian"},
    {"ru", "Russian"},
    {"sk", "Slovak"},
    {"sl", "Slovenian"},
    {"sr", "Serbian"},
    {"sv", "Swedish"},
    {"sw", "Swahili"},
    {"ta", "Tamil"},
    {"te", "Telugu"},
    {"th", "Thai"},
    {"tr", "Turkish"},
    {"uk", "Ukrainian"},
    {"vi", "Vietnamese"},
};

// True if `locale` is `code`, or `code` with a country, encoding or variant behind it.
bool Matches(std::string_view locale, std::string_view code) {
  if (locale.substr(0, code.size()) != code) {
    return false;
  }
  return locale.size() == code.size() ||
         std::string_view("_.@").find(locale[code.size()]) != std::string_view::npos;
}

}  // namespace

const char* LanguageName(std::string_view locale) {
  for (const Language& language : kLanguages) {
    if (Matches(locale, language.code)) {
      return language.name;
    }
  }
  return "English";
}

std::optional<int> LanguageId(std::string_view locale) {
  if (Matches(locale, "en_GB")) {
    return 2057;
  }
  if (Matches(locale, "pt_BR")) {
    return 1046;
  }
  return std::nullopt;
}

}  // namespace host
