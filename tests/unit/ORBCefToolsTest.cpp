#include "ORBCefToolsAccessor.h"

#include <cstring>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CapturedLog.h"
#include "FakeTools.h"
#include "FreshProcess.h"
#include "TempDirectory.h"

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

using Tools = ORBCefToolsAccessor;

// Every record of the host must be freed by the end of a test.
class ORBCefToolsTest : public testing::Test {
 protected:
  void TearDown() override { EXPECT_EQ(0, FakeTools::LiveRecords()); }

  FakeTools tools;
};

TEST_F(ORBCefToolsTest, TheHostsBlockNeedNotOutliveTheCall) {
  {
    _orbceftools_c table = FakeTools::Table();
    ORBCefPlugin_Tools::SetORBCefTools(&table);
    std::memset(&table, 0, sizeof(table));
  }
  EXPECT_TRUE(Tools::OnMainThread());
}

TEST_F(ORBCefToolsTest, ASecondTableReplacesTheFirst) {
  _orbceftools_c table = FakeTools::Table();
  table.get_release_level = []() -> int32_t { return 99; };
  ORBCefPlugin_Tools::SetORBCefTools(&table);
  EXPECT_EQ(99, Tools::GetOrbisReleaseLevelInfo());
}

TEST_F(ORBCefToolsTest, NullTakesTheTableAwayAndACallWithoutItIsReportedAndFaults) {
  fresh_process::ExpectDeath(
      [] {
        ORBCefPlugin_Tools::SetORBCefTools(nullptr);
        Tools::OnMainThread();
      },
      HasSubstr("_tools in ChromiumEmbeddedPlugin/ORBCefWrapperMT.m/src/ORBCefTools line 44\n"));
}

TEST_F(ORBCefToolsTest, EveryAccessorChecksTheTable) {
  std::map<std::string, std::string> values{{"key", "default"}};
  int number = 0;
  const std::function<void()> calls[] = {
      [] { Tools::OnMainThread(); },
      [] { Tools::ORBGetEnv("A"); },
      [] { Tools::ORBPutEnv("A=b"); },
      [] { Tools::ComputeLang(); },
      [] { Tools::GetOrbisReleaseLevelInfo(); },
      [] { Tools::BuildCatalogMessage("a", "b"); },
      [] { Tools::ORBGetTempDirectory(); },
      [] { Tools::ORBCreateDirectory("a"); },
      [] { Tools::IsRecordCapture(); },
      [] { Tools::IsRecordReplay(); },
      [] { Tools::GetRecordMode(); },
      [&] { Tools::GetJsonValue("{}", values); },
      [] { Tools::GetJSONModuleMap(); },
      [] { Tools::RemapURL("a"); },
      [] { Tools::SaveInPreference("a", "b", "c"); },
      [] { Tools::ReadFromPreferences("a", "b"); },
      [] { Tools::ReadFromSysSettings("a", "b"); },
      [&] { Tools::ReadFromSettings("a", "b", &number); },
      [] { Tools::PostTaskOnMainThread([](void*) {}, nullptr); },
      [] { Tools::ShouldDispatchEventsOnMainThread(); },
  };
  for (const auto& call : calls) {
    fresh_process::ExpectDeath(
        [&] {
          ORBCefPlugin_Tools::SetORBCefTools(nullptr);
          call();
        },
        HasSubstr("_tools in "));
  }
}

TEST_F(ORBCefToolsTest, PlainSlotsAreForwarded) {
  tools.on_main_thread = false;
  EXPECT_FALSE(Tools::OnMainThread());
  tools.on_main_thread = true;
  EXPECT_TRUE(Tools::OnMainThread());

  tools.Set("SOME", "value");
  EXPECT_STREQ("value", Tools::ORBGetEnv("SOME"));
  EXPECT_EQ(nullptr, Tools::ORBGetEnv("OTHER"));
  EXPECT_EQ(0, Tools::ORBPutEnv("OTHER=new"));
  EXPECT_STREQ("new", Tools::ORBGetEnv("OTHER"));
  tools.put_env_result = -3;
  EXPECT_EQ(-3, Tools::ORBPutEnv("OTHER=newer"));

  EXPECT_EQ(nullptr, Tools::ComputeLang());
  tools.language = "German";
  EXPECT_STREQ("German", Tools::ComputeLang());
  tools.release_level = 425;
  EXPECT_EQ(425, Tools::GetOrbisReleaseLevelInfo());

  tools.record_mode = ORBCEF_RECORDMODE_CAPTURE;
  EXPECT_TRUE(Tools::IsRecordCapture());
  EXPECT_FALSE(Tools::IsRecordReplay());
  EXPECT_EQ(ORBCEF_RECORDMODE_CAPTURE, Tools::GetRecordMode());
  tools.record_mode = ORBCEF_RECORDMODE_REPLAY;
  EXPECT_FALSE(Tools::IsRecordCapture());
  EXPECT_TRUE(Tools::IsRecordReplay());
  EXPECT_EQ(ORBCEF_RECORDMODE_REPLAY, Tools::GetRecordMode());

  EXPECT_FALSE(Tools::ShouldDispatchEventsOnMainThread());
  tools.dispatch_on_main_thread = true;
  EXPECT_TRUE(Tools::ShouldDispatchEventsOnMainThread());
}

TEST_F(ORBCefToolsTest, AnyByteButZeroIsTrue) {
  _orbceftools_c table = FakeTools::Table();
  table.on_main_thread = []() -> uint8_t { return 0x80; };
  ORBCefPlugin_Tools::SetORBCefTools(&table);
  EXPECT_TRUE(Tools::OnMainThread());
}

TEST_F(ORBCefToolsTest, TextsOfTheHostAreReadAndFreed) {
  tools.messages[{"Catalog", "Key"}] = "Text \xC3\xA4";
  tools.temp_directory = "/tmp/host";
  tools.save_result = "new Error('no')";
  tools.preferences[{"Store", "Key"}] = "kept";
  tools.sys_settings[{"Section", "Key"}] = "set";
  EXPECT_EQ("Text \xC3\xA4", Tools::BuildCatalogMessage("Catalog", "Key"));
  EXPECT_EQ("/tmp/host", Tools::ORBGetTempDirectory());
  EXPECT_EQ("new Error('no')", Tools::SaveInPreference("Store", "Key", "'value'"));
  EXPECT_EQ("kept", Tools::ReadFromPreferences("Store", "Key"));
  EXPECT_EQ("set", Tools::ReadFromSysSettings("Section", "Key"));
  EXPECT_THAT(tools.Calls(), ElementsAre("save_in_preference Store Key 'value'"));
}

TEST_F(ORBCefToolsTest, ANullResultCountsAsEmpty) {
  EXPECT_EQ("", Tools::BuildCatalogMessage("Catalog", "Missing"));
  EXPECT_EQ("", Tools::ORBGetTempDirectory());
  EXPECT_EQ("", Tools::SaveInPreference("Store", "Key", "1"));
  EXPECT_EQ("", Tools::ReadFromPreferences("Store", "Missing"));
  EXPECT_EQ("", Tools::ReadFromSysSettings("Section", "Missing"));
}

TEST_F(ORBCefToolsTest, CreateDirectoryPassesThePathAndTheAnswer) {
  EXPECT_TRUE(Tools::ORBCreateDirectory("/a/b"));
  tools.create_directory_result = false;
  EXPECT_FALSE(Tools::ORBCreateDirectory(""));
  EXPECT_THAT(tools.Calls(), ElementsAre("create_directory /a/b", "create_directory "));
}

TEST_F(ORBCefToolsTest, AMissingSettingLeavesTheValueAlone) {
  tools.settings[{"File", "Key"}] = 5;
  int value = -1;
  EXPECT_FALSE(Tools::ReadFromSettings("File", "Other", &value));
  EXPECT_EQ(-1, value);
  EXPECT_TRUE(Tools::ReadFromSettings("File", "Key", &value));
  EXPECT_EQ(5, value);
}

TEST_F(ORBCefToolsTest, PostTaskPassesFunctionAndData) {
  int runs = 0;
  const auto task = [](void* data) { ++*static_cast<int*>(data); };
  EXPECT_TRUE(Tools::PostTaskOnMainThread(task, &runs));
  EXPECT_EQ(1, runs);
  tools.post_task_result = false;
  EXPECT_FALSE(Tools::PostTaskOnMainThread(task, &runs));
  EXPECT_EQ(1, runs);
}

TEST_F(ORBCefToolsTest, GetJsonValueWithAnEmptyMapMakesNoCall) {
  std::map<std::string, std::string> values;
  EXPECT_FALSE(Tools::GetJsonValue("{}", values));
  EXPECT_THAT(tools.Calls(), IsEmpty());
}

TEST_F(ORBCefToolsTest, GetJsonValueKeepsTheDefaultOfAKeyThatTheHostDoesNotFill) {
  tools.json_members = {{"b", "found"}, {"unasked", "x"}};
  std::map<std::string, std::string> values{{"c", "default c"}, {"a", "default a"}, {"b", "old"}};
  EXPECT_TRUE(Tools::GetJsonValue("{\"b\":1}", values));
  EXPECT_EQ("default a", values["a"]);
  EXPECT_EQ("found", values["b"]);
  EXPECT_EQ("default c", values["c"]);
  // In the map's order, with null values.
  EXPECT_THAT(tools.Calls(), ElementsAre("get_json_value {\"b\":1} a b c"));
}

TEST_F(ORBCefToolsTest, GetJsonValueTakesValuesEvenIfTheHostAnswersFalse) {
  tools.json_members = {{"a", "found"}};
  tools.json_result = false;
  std::map<std::string, std::string> values{{"a", "default"}};
  EXPECT_FALSE(Tools::GetJsonValue("{}", values));
  EXPECT_EQ("found", values["a"]);
}

TEST_F(ORBCefToolsTest, GetJsonValueTakesAnEmptyValueOverTheDefault) {
  tools.json_members = {{"a", ""}};
  std::map<std::string, std::string> values{{"a", "default"}};
  EXPECT_TRUE(Tools::GetJsonValue("{}", values));
  EXPECT_EQ("", values["a"]);
}

TEST_F(ORBCefToolsTest, TheModuleMapLosesItsLineFeeds) {
  tools.module_map = "a\nb\n";
  std::string map;
  const std::string log = CapturedLog([&] { map = Tools::GetJSONModuleMap(); });
  EXPECT_EQ("ab", map);
  // The line shows the text as it came.
  EXPECT_THAT(log, HasSubstr("[WebRecord] Fetched WebRecord module map:\na\nb\n"));
  EXPECT_THAT(log, Not(HasSubstr("could not be loaded")));
}

TEST_F(ORBCefToolsTest, AnEmptyModuleMapIsAnErrorAndLoggedAllTheSame) {
  for (const auto& text : {std::optional<std::string>(), std::optional<std::string>("")}) {
    tools.module_map = text;
    std::string map = "not empty";
    const std::string log = CapturedLog([&] { map = Tools::GetJSONModuleMap(); });
    EXPECT_EQ("", map);
    EXPECT_THAT(log, HasSubstr("[WebRecord] Function WRModulesServicesModulesMapInit could not be "
                               "loaded from XOWebRecorderSharedServices or an empty string has "
                               "been returned\n"));
    EXPECT_THAT(log, HasSubstr("[WebRecord] Fetched WebRecord module map:\n\n"));
  }
}

TEST_F(ORBCefToolsTest, RemapURLAnswersTheHostsFile) {
  TempDirectory directory;
  const std::string path = directory.Write("page.html", "x");
  tools.url_mappings["http://a/b"] = path;
  std::string result;
  const std::string log = CapturedLog([&] { result = Tools::RemapURL("http://a/b"); });
  EXPECT_EQ(path, result);
  EXPECT_THAT(log, HasSubstr("[WebRecord] Mapping found for \"http://a/b\": " + path + "\n"));
  EXPECT_THAT(log, Not(HasSubstr("invalid path")));
  EXPECT_THAT(tools.Calls(), ElementsAre("remap_url http://a/b"));
}

TEST_F(ORBCefToolsTest, RemapURLToAMissingFileIsEmptyAndLogsTwice) {
  tools.url_mappings["http://a/b"] = "/nowhere/page.html";
  std::string result = "not empty";
  const std::string log = CapturedLog([&] { result = Tools::RemapURL("http://a/b"); });
  EXPECT_EQ("", result);
  EXPECT_THAT(log, AllOf(HasSubstr("WARNING"),
                         HasSubstr("[WebRecord] WRModulesServicesRemap returned an invalid path "
                                   "for \"http://a/b\": /nowhere/page.html\n"),
                         HasSubstr("[WebRecord] Mapping found for \"http://a/b\": \n")));
}

TEST_F(ORBCefToolsTest, RemapURLWithoutAMappingIsAnErrorAndNothingElse) {
  std::string result = "not empty";
  const std::string log = CapturedLog([&] { result = Tools::RemapURL("http://a/b"); });
  EXPECT_EQ("", result);
  EXPECT_THAT(log, HasSubstr("[WebRecord] Function WRModulesServicesRemap could not be loaded "
                             "from XOWebRecorderSharedServices or an empty string has been "
                             "returned\n"));
  EXPECT_THAT(log, Not(HasSubstr("Mapping found")));
}

}  // namespace
