#include "ORBCefLocale.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "ORBCefToolsAccessor.h"

namespace ORBCefLocale {

namespace {

struct Language {
  std::string_view name;
  const char* tag;
};

constexpr Language kLanguages[] = {
    {"Amharic", "am"},
    {"Arabic", "ar"},
    {"Bulgarian", "bg"},
    {"Bengali", "bn"},
    {"Catalan", "ca"},
    {"Czech", "cs"},
    {"Danish", "da"},
    {"German", "de"},
    {"Greek", "el"},
    {"English_GB", "en-GB"},
    {"English_US", "en-US"},
    {"Spanish", "es"},
    {"Estonian", "et"},
    {"Persian", "fa"},
    {"Finnish", "fi"},
    {"Filipino", "fil"},
    {"French", "fr"},
    {"Gujarati", "gu"},
    {"Hebrew", "he"},
    {"Hindi", "hi"},
    {"Croatian", "hr"},
    {"Hungarian", "hu"},
    {"Indonesian", "id"},
    {"Italian", "it"},
    {"Japanese", "ja"},
    {"Kannada", "kn"},
    {"Korean", "ko"},
    {"Lithuanian", "lt"},
    {"Latvian", "lv"},
    {"Malayalam", "ml"},
    {"Marathi", "mr"},
    {"Malay", "ms"},
    {"Norwegian", "nb"},
    {"Dutch", "nl"},
    {"Polish", "pl"},
    {"Portuguese_BR", "pt-BR"},
    {"Portuguese", "pt-PT"},
    {"Romanian", "ro"},
    {"Russian", "ru"},
    {"Slovak", "sk"},
    {"Slovenian", "sl"},
    {"Serbian", "sr"},
    {"Swedish", "sv"},
    {"Swahili", "sw"},
    {"Tamil", "ta"},
    {"Telugu", "te"},
    {"Thai", "th"},
    {"Turkish", "tr"},
    {"Ukrainian", "uk"},
    {"Vietnamese", "vi"},
    {"Simplified_Chinese", "zh-CN"},
    {"Traditional_Chinese", "zh-TW"},
};
static_assert(std::size(kLanguages) == 52, "Each language of the host has a tag.");

constexpr char kUnknownTag[] = "en-US";

// Windows identifiers of the host's setting.
constexpr int kNoLanguageId = -1;
constexpr int kBrazilianPortuguese = 1046;
constexpr int kBritishEnglish = 2057;

int UserInterfaceLanguage() {
  int id = kNoLanguageId;
  ORBCefToolsAccessor::ReadFromSettings("FrameGeneral", "UserInterfaceLanguage", &id);
  return id;
}

// English and Portuguese have two tags each; the host's setting tells which one.
std::string WithRegion(const std::string& name) {
  if (name == "English")
    return UserInterfaceLanguage() == kBritishEnglish ? "English_GB" : "English_US";
  if (name == "Portuguese" && UserInterfaceLanguage() == kBrazilianPortuguese)
    return "Portuguese_BR";
  return name;
}

}  // namespace

std::string TagOfLanguage(const std::string& name) {
  const auto* found = std::find_if(std::begin(kLanguages), std::end(kLanguages),
                                   [&](const Language& entry) { return entry.name == name; });
  return found != std::end(kLanguages) ? found->tag : kUnknownTag;
}

std::string ComputeLocaleTag() {
  if (!ORBCefToolsAccessor::OnMainThread())
    return std::string();
  const char* language = ORBCefToolsAccessor::ComputeLang();
  return TagOfLanguage(WithRegion(language ? language : std::string()));
}

}  // namespace ORBCefLocale
