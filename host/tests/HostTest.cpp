// Tests of the host's own parts: what it tells the module, and what it takes from the user.

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "Catalogue.h"
#include "Json.h"
#include "Languages.h"
#include "MainThread.h"
#include "Options.h"
#include "Png.h"
#include "Profile.h"
#include "Records.h"
#include "Settings.h"
#include "System.h"
#include "Tools.h"

namespace host {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

MainThread::Clock::time_point After(MainThread::Clock::duration time) {
  return MainThread::Clock::now() + time;
}

TEST(Json, ScriptLiteralIsSafeInAnyScript) {
  EXPECT_EQ(ScriptLiteral("a\"b\\c\n"), R"("a\"b\\c\n")");
  EXPECT_EQ(ScriptLiteral("\xE2\x80\xA8\xE2\x80\xA9"), R"("\u2028\u2029")");
  EXPECT_EQ(ScriptLiteral("</script><!--"), R"("\u003c/script>\u003c!--")");
  EXPECT_EQ(ScriptLiteral(std::string("\0", 1)), R"("\u0000")");
  EXPECT_EQ(ScriptLiteral("\xFF"), R"("\ufffd")");
  EXPECT_EQ(ScriptLiteral(""), R"("")");
}

TEST(Json, ScriptArrayHoldsEachText) {
  EXPECT_EQ(ScriptArray({}), "[]");
  EXPECT_EQ(ScriptArray({"a"}), R"(["a"])");
  EXPECT_EQ(ScriptArray({"a", "b\"", ""}), R"(["a", "b\"", ""])");
}

TEST(Json, ReadsTheMembersThatAreThere) {
  const auto members = ReadMembers(R"({"a": "x", "b": {"c": [1]}, "d": 2})", {"a", "b", "z"});
  ASSERT_TRUE(members);
  EXPECT_EQ(*members, (std::map<std::string, std::string>{{"a", "x"}, {"b", R"({"c":[1]})"}}));
  EXPECT_FALSE(ReadMembers("[1]", {"a"}));
  EXPECT_FALSE(ReadMembers("no json", {"a"}));
}

TEST(Languages, NameOfTheLocale) {
  EXPECT_STREQ(LanguageName("de_DE.UTF-8"), "German");
  EXPECT_STREQ(LanguageName("de"), "German");
  EXPECT_STREQ(LanguageName("de@euro"), "German");
  EXPECT_STREQ(LanguageName("fil_PH"), "Filipino");
  EXPECT_STREQ(LanguageName("fi_FI"), "Finnish");
  EXPECT_STREQ(LanguageName("zh_TW.UTF-8"), "Traditional_Chinese");
  EXPECT_STREQ(LanguageName("zh_CN"), "Simplified_Chinese");
  EXPECT_STREQ(LanguageName("pt_BR"), "Portuguese");
  EXPECT_STREQ(LanguageName("C.UTF-8"), "English");
  EXPECT_STREQ(LanguageName(""), "English");
}

TEST(Languages, IdRefinesEnglishAndPortuguese) {
  EXPECT_EQ(LanguageId("en_GB.UTF-8"), 2057);
  EXPECT_EQ(LanguageId("pt_BR"), 1046);
  EXPECT_EQ(LanguageId("en_US"), std::nullopt);
  EXPECT_EQ(LanguageId("pt_PT"), std::nullopt);
}

TEST(Options, UnattendedRunsOfTheWelcomePageSpeak) {
  std::string error;
  EXPECT_EQ(ParseOptions({"--seconds", "3"}, error)->say, "Hello");
  EXPECT_EQ(ParseOptions({"--screenshot", "a.png"}, error)->say, "Hello");
  EXPECT_EQ(ParseOptions({"--seconds", "3", "--say", "Hi"}, error)->say, "Hi");
  EXPECT_FALSE(ParseOptions({"--seconds", "3", "--url", "about:blank"}, error)->say);
  EXPECT_FALSE(ParseOptions({}, error)->say);
}

TEST(Options, ReadsValuesInBothForms) {
  std::string error;
  const auto options = ParseOptions({"--size=640x480", "--record", "replay", "--setting",
                                     "FrameGeneral/UserInterfaceLanguage=2057"},
                                    error);
  ASSERT_TRUE(options) << error;
  EXPECT_EQ(options->width, 640);
  EXPECT_EQ(options->height, 480);
  EXPECT_EQ(options->record_mode, ORBCEF_RECORDMODE_REPLAY);
  ASSERT_EQ(options->settings.size(), 1u);
  EXPECT_EQ(options->settings[0].first, "FrameGeneral/UserInterfaceLanguage");
  EXPECT_EQ(options->settings[0].second, 2057);
}

TEST(Options, RefusesWhatItDoesNotKnow) {
  const std::vector<std::vector<std::string>> wrong = {{"--unknown"},
                                                       {"page.html"},
                                                       {"--url"},
                                                       {"--url", ""},
                                                       {"--size", "640"},
                                                       {"--size", "0x480"},
                                                       {"--size", "1x99999"},
                                                       {"--size", "axb"},
                                                       {"--seconds", "0"},
                                                       {"--seconds", "-1"},
                                                       {"--seconds", "3x"},
                                                       {"--seconds", "nan"},
                                                       {"--record", "other"},
                                                       {"--setting", "a=1"},
                                                       {"--setting", "a/b=x"},
                                                       {"--credentials", "user"}};
  for (const auto& arguments : wrong) {
    std::string error;
    EXPECT_FALSE(ParseOptions(arguments, error)) << arguments[0];
    EXPECT_NE(error.find(arguments[0]), std::string::npos) << error;
  }
}

TEST(Settings, KeepsValuesFromRunToRun) {
  const Profile profile("");
  const std::string path = profile.Path() + "/settings.sqlite";
  {
    Settings settings(path);
    EXPECT_EQ(settings.Error(), "");
    EXPECT_EQ(settings.Read(Settings::kPreferences, "store", "key"), std::nullopt);
    EXPECT_EQ(settings.Write(Settings::kPreferences, "store", "key", "old"), "");
    EXPECT_EQ(settings.Write(Settings::kPreferences, "store", "key", "'; DROP TABLE x"), "");
    EXPECT_EQ(settings.Write(Settings::kPreferences, "other", "key", ""), "");
  }
  Settings settings(path);
  EXPECT_EQ(settings.Read(Settings::kPreferences, "store", "key"), "'; DROP TABLE x");
  EXPECT_EQ(settings.Read(Settings::kPreferences, "other", "key"), "");
  EXPECT_EQ(settings.Read(Settings::kSysSettings, "store", "key"), std::nullopt);
}

TEST(Settings, TellsWhyItCannotWrite) {
  Settings settings("/nowhere/at/all/settings.sqlite");
  EXPECT_NE(settings.Error(), "");
  EXPECT_EQ(settings.Write(Settings::kPreferences, "store", "key", "value"), settings.Error());
  EXPECT_EQ(settings.Read(Settings::kPreferences, "store", "key"), std::nullopt);
}

TEST(Catalogue, FallsBackToEnglish) {
  const Profile profile("");
  std::ofstream(profile.Path() + "/Texts.json")
      << R"({"English": {"a": "A", "b": "B"}, "German": {"a": "Ä"}})";
  Catalogue catalogue(profile.Path());
  EXPECT_EQ(catalogue.Find("Texts", "German", "a"), "Ä");
  EXPECT_EQ(catalogue.Find("Texts", "German", "b"), "B");
  EXPECT_EQ(catalogue.Find("Texts", "German", "c"), std::nullopt);
  EXPECT_EQ(catalogue.Find("Missing", "German", "a"), std::nullopt);
  EXPECT_EQ(catalogue.Find("../Texts", "German", "a"), std::nullopt);
}

TEST(Catalogue, EveryMenuLabelHasAText) {
  Catalogue catalogue(HOST_CATALOGUE_DIRECTORY);
  for (const char* label : {"Copy", "Cut", "Paste", "Previous", "Next", "Refresh", "OpenLink",
                            "CopyLinkURL", "Undo", "Redo", "Delete", "ResetZoom", "DevTools"}) {
    const std::string key = std::string("ContextMenu.") + label + ".Label";
    const auto english = catalogue.Find("ORBCefClientHandler", "English", key);
    const auto german = catalogue.Find("ORBCefClientHandler", "German", key);
    ASSERT_TRUE(english && german) << key;
    EXPECT_NE(*english, "");
    EXPECT_NE(*english, *german);
  }
}

TEST(MainThread, RunsTasksOfOtherThreadsInTheirOrder) {
  MainThread main_thread;
  std::vector<int> ran;
  std::thread poster([&] {
    EXPECT_FALSE(main_thread.IsCurrent());
    for (int i = 0; i < 3; ++i) {
      EXPECT_TRUE(main_thread.Post([&ran, &main_thread, i] {
        EXPECT_TRUE(main_thread.IsCurrent());
        ran.push_back(i);
      }));
    }
  });
  EXPECT_TRUE(main_thread.RunUntil([&] { return ran.size() == 3; }, After(seconds(10))));
  poster.join();
  EXPECT_EQ(ran, (std::vector<int>{0, 1, 2}));
}

TEST(MainThread, ATaskThatPostsRunsItLater) {
  MainThread main_thread;
  int turns = 0;
  bool inside = false;
  main_thread.Post([&] {
    inside = true;
    main_thread.Post([&] {
      EXPECT_FALSE(inside) << "a posted task ran inside another";
      ++turns;
    });
    inside = false;
  });
  EXPECT_TRUE(main_thread.RunUntil([&] { return turns == 1; }, After(seconds(10))));
}

TEST(MainThread, StopsAtItsDeadlineAndWhenClosed) {
  MainThread main_thread;
  EXPECT_FALSE(main_thread.RunUntil([] { return false; }, After(milliseconds(1))));
  bool ran = false;
  main_thread.Post([&] { ran = true; });
  main_thread.Close();
  EXPECT_FALSE(main_thread.Post([] {}));
  EXPECT_TRUE(main_thread.RunUntil([&] { return ran; }, After(seconds(10))));
}

TEST(Png, WritesAFileWithItsSignature) {
  const Profile profile("");
  Picture picture;
  picture.width = 2;
  picture.height = 1;
  picture.pixels = {255, 0, 0, 0, 0, 255};
  const std::string path = profile.Path() + "/a.png";
  ASSERT_TRUE(WritePng(picture, path));
  EXPECT_EQ(ReadFile(path).substr(0, 8), "\x89PNG\r\n\x1a\n");
  EXPECT_FALSE(WritePng(picture, "/nowhere/at/all/a.png"));
}

#if !defined(_WIN32)
TEST(System, TheLocaleIsTheFirstVariableThatIsNotEmpty) {
  WriteVariable("LC_ALL", "");
  WriteVariable("LC_MESSAGES", "fr_FR.UTF-8");
  WriteVariable("LANG", "de_DE.UTF-8");
  EXPECT_EQ(UserLocale(), "fr_FR.UTF-8");
  WriteVariable("LC_ALL", "en_GB.UTF-8");
  EXPECT_EQ(UserLocale(), "en_GB.UTF-8");
}
#endif

TEST(Profile, ATemporaryOneIsRemoved) {
  std::string path;
  {
    const Profile profile("");
    path = profile.Path();
    EXPECT_TRUE(std::filesystem::is_directory(path));
  }
  EXPECT_FALSE(std::filesystem::exists(path));
}

class HostTools : public ::testing::Test {
 protected:
  HostTools() {
    Tools::Configuration configuration;
    configuration.profile = _profile.Path();
    configuration.catalogues = HOST_CATALOGUE_DIRECTORY;
    configuration.locale = "en_GB.UTF-8";
    configuration.record_mode = ORBCEF_RECORDMODE_CAPTURE;
    configuration.remap = {{"http://x/", "/tmp/x"}};
    _tools.emplace(_main_thread, configuration);
  }

  _orbceftools_c& Table() { return *_tools->Table(); }

  const Profile _profile{""};
  MainThread _main_thread;
  std::optional<Tools> _tools;
};

TEST_F(HostTools, EverySlotIsFilled) {
  void* slots[20];
  static_assert(sizeof(slots) == sizeof(_orbceftools_c));
  std::memcpy(slots, &Table(), sizeof(slots));
  for (void* slot : slots) {
    EXPECT_NE(slot, nullptr);
  }
}

TEST_F(HostTools, TheMainThreadIsKnown) {
  EXPECT_EQ(Table().on_main_thread(), 1);
  std::thread([&] { EXPECT_EQ(Table().on_main_thread(), 0); }).join();
}

TEST_F(HostTools, AVariableReachesTheProcess) {
  EXPECT_EQ(Table().get_env("ORBCEF_HOST_TEST"), nullptr);
  EXPECT_EQ(Table().put_env("ORBCEF_HOST_TEST=a=b"), 0);
  EXPECT_EQ(ReadVariable("ORBCEF_HOST_TEST"), "a=b");
  EXPECT_STREQ(Table().get_env("ORBCEF_HOST_TEST"), "a=b");
  EXPECT_EQ(Table().put_env("ORBCEF_HOST_TEST="), 0);
  EXPECT_STREQ(Table().get_env("ORBCEF_HOST_TEST"), "");
  EXPECT_NE(Table().put_env("no assignment"), 0);
  EXPECT_NE(Table().put_env("=value"), 0);
}

TEST_F(HostTools, LanguageComesFromTheLocaleAndTheSettings) {
  EXPECT_STREQ(Table().compute_lang(), "English");
  int32_t id = -1;
  EXPECT_EQ(Table().read_from_settings("FrameGeneral", "UserInterfaceLanguage", &id), 1);
  EXPECT_EQ(id, 2057);
  _tools->settings().Write(Settings::kSettings, "FrameGeneral", "UserInterfaceLanguage", "1033");
  EXPECT_EQ(Table().read_from_settings("FrameGeneral", "UserInterfaceLanguage", &id), 1);
  EXPECT_EQ(id, 1033);
}

TEST_F(HostTools, AMissingOrBrokenSettingLeavesTheValue) {
  int32_t value = -1;
  EXPECT_EQ(Table().read_from_settings("file", "key", &value), 0);
  _tools->settings().Write(Settings::kSettings, "file", "key", "12x");
  EXPECT_EQ(Table().read_from_settings("file", "key", &value), 0);
  EXPECT_EQ(value, -1);
}

TEST_F(HostTools, APreferenceMakesTheRoundTrip) {
  orbcefstring_c* value = NewRecord("{a: 1}");
  EXPECT_EQ(Table().read_from_preferences("store", "key"), nullptr);
  EXPECT_EQ(TakeText(Table().save_in_preference("store", "key", value)), "");
  EXPECT_EQ(TakeText(Table().read_from_preferences("store", "key")), "{a: 1}");
  value->free(value);
}

TEST_F(HostTools, RecordModeAndItsTwoQuestionsAgree) {
  EXPECT_EQ(Table().get_record_mode(), ORBCEF_RECORDMODE_CAPTURE);
  EXPECT_EQ(Table().is_record_capture(), 1);
  EXPECT_EQ(Table().is_record_replay(), 0);
}

TEST_F(HostTools, ARemappedUrlHasItsFile) {
  orbcefstring_c* known = NewRecord("http://x/");
  orbcefstring_c* unknown = NewRecord("http://y/");
  EXPECT_EQ(TakeText(Table().remap_url(known)), "/tmp/x");
  EXPECT_EQ(Table().remap_url(unknown), nullptr);
  known->free(known);
  unknown->free(unknown);
}

TEST_F(HostTools, JsonMembersAreFilled) {
  orbcefstring_c* json = NewRecord(R"({"a": "x"})");
  orbcefstring_c* keys[] = {NewRecord("a"), NewRecord("b")};
  orbcefstring_c* values[] = {nullptr, nullptr};
  EXPECT_EQ(Table().get_json_value(json, keys, values, 2), 1);
  EXPECT_EQ(TakeText(values[0]), "x");
  EXPECT_EQ(values[1], nullptr);
  for (orbcefstring_c* record : {json, keys[0], keys[1]}) {
    record->free(record);
  }
}

TEST_F(HostTools, ADirectoryIsMadeWithItsParents) {
  orbcefstring_c* path = NewRecord(_profile.Path() + "/a/b/c");
  EXPECT_EQ(Table().create_directory(path), 1);
  EXPECT_EQ(Table().create_directory(path), 1);
  EXPECT_TRUE(std::filesystem::is_directory(TextOf(path)));
  path->free(path);
  orbcefstring_c* impossible = NewRecord("/proc/nowhere/at/all");
  EXPECT_EQ(Table().create_directory(impossible), 0);
  impossible->free(impossible);
}

TEST_F(HostTools, APostedTaskRunsOnceWithItsData) {
  int count = 0;
  std::thread([&] {
    EXPECT_EQ(
        Table().post_task_on_main_thread([](void* data) { ++*static_cast<int*>(data); }, &count),
        1);
  }).join();
  EXPECT_EQ(count, 0);
  EXPECT_TRUE(_main_thread.RunUntil([&] { return count > 0; }, After(seconds(10))));
  EXPECT_EQ(count, 1);
}

}  // namespace
}  // namespace host
