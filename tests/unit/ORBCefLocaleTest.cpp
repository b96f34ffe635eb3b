#include "ORBCefLocale.h"

#include <gtest/gtest.h>

#include "FakeTools.h"

namespace {

TEST(ORBCefLocaleTest, EveryLanguageOfTheHostHasItsTag) {
  const std::pair<const char*, const char*> kTags[] = {
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
  for (const auto& [name, tag] : kTags) EXPECT_EQ(tag, ORBCefLocale::TagOfLanguage(name)) << name;
}

TEST(ORBCefLocaleTest, AnUnknownLanguageIsAmericanEnglish) {
  FakeTools tools;
  tools.language = "Esperanto";
  EXPECT_EQ("en-US", ORBCefLocale::ComputeLocaleTag());
  EXPECT_EQ("en-US", ORBCefLocale::TagOfLanguage("german"));
}

TEST(ORBCefLocaleTest, NoLanguageIsAmericanEnglish) {
  FakeTools tools;
  EXPECT_EQ("en-US", ORBCefLocale::ComputeLocaleTag());
  tools.language = "";
  EXPECT_EQ("en-US", ORBCefLocale::ComputeLocaleTag());
}

TEST(ORBCefLocaleTest, OffTheMainThreadThereIsNoTag) {
  FakeTools tools;
  tools.language = "German";
  tools.on_main_thread = false;
  EXPECT_EQ("", ORBCefLocale::ComputeLocaleTag());
}

TEST(ORBCefLocaleTest, PortugueseIsBrazilianOnlyByTheSetting) {
  FakeTools tools;
  tools.language = "Portuguese";
  EXPECT_EQ("pt-PT", ORBCefLocale::ComputeLocaleTag());
  tools.settings[{"FrameGeneral", "UserInterfaceLanguage"}] = 2070;
  EXPECT_EQ("pt-PT", ORBCefLocale::ComputeLocaleTag());
  tools.settings[{"FrameGeneral", "UserInterfaceLanguage"}] = 1046;
  EXPECT_EQ("pt-BR", ORBCefLocale::ComputeLocaleTag());
}

TEST(ORBCefLocaleTest, EnglishIsBritishOnlyByTheSetting) {
  FakeTools tools;
  tools.language = "English";
  EXPECT_EQ("en-US", ORBCefLocale::ComputeLocaleTag());
  tools.settings[{"FrameGeneral", "UserInterfaceLanguage"}] = 1033;
  EXPECT_EQ("en-US", ORBCefLocale::ComputeLocaleTag());
  tools.settings[{"FrameGeneral", "UserInterfaceLanguage"}] = 2057;
  EXPECT_EQ("en-GB", ORBCefLocale::ComputeLocaleTag());
}

TEST(ORBCefLocaleTest, OtherLanguagesDoNotAskForTheSetting) {
  FakeTools tools;
  tools.language = "German";
  tools.settings[{"FrameGeneral", "UserInterfaceLanguage"}] = 1046;
  EXPECT_EQ("de", ORBCefLocale::ComputeLocaleTag());
}

}  // namespace
