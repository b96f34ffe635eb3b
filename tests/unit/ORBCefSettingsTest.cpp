#include "ORBCefSettings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "CapturedLog.h"
#include "FakeTools.h"
#include "FreshProcess.h"
#include "TempDirectory.h"
#include "platform/Files.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string TextOf(const cef_string_t& field) {
  return CefString(&field).ToString();
}

// Paths of these tests are written with "/" and compared in the system's own form.
std::string Native(std::string path) {
  for (char& c : path) {
    if (c == '/')
      c = platform::kSeparator;
  }
  return path;
}

class ORBCefSettingsTest : public testing::Test {
 protected:
  ORBCefSettingsTest() { tools.Set("ORBTemp", Native("/t")); }

  // Fills fresh settings and keeps what went to standard error.
  void Fill() {
    settings = CefSettings();
    output = CapturedLog([&] { ORBCefSettings::Fill(settings, language); });
  }
  std::string CachePath() const { return TextOf(settings.cache_path); }
  std::string LogFile() const { return TextOf(settings.log_file); }

  FakeTools tools;
  CefString language{"de"};
  CefSettings settings;
  std::string output;
};

TEST_F(ORBCefSettingsTest, TheFixedValues) {
  Fill();
  EXPECT_EQ(1, settings.no_sandbox);
  EXPECT_EQ(0, settings.chrome_runtime);
  EXPECT_EQ(1, settings.multi_threaded_message_loop);
  EXPECT_EQ(0, settings.external_message_pump);
  EXPECT_EQ(0, settings.windowless_rendering_enabled);
  EXPECT_EQ(1, settings.command_line_args_disabled);
  EXPECT_EQ("", TextOf(settings.root_cache_path));
  EXPECT_EQ("", TextOf(settings.user_data_path));
  EXPECT_EQ(0, settings.persist_session_cookies);
  EXPECT_EQ(0, settings.persist_user_preferences);
  EXPECT_EQ("", TextOf(settings.user_agent));
  EXPECT_EQ("", TextOf(settings.javascript_flags));
  EXPECT_EQ("", TextOf(settings.resources_dir_path));
  EXPECT_EQ("", TextOf(settings.locales_dir_path));
  EXPECT_EQ(0, settings.pack_loading_disabled);
  EXPECT_EQ(20, settings.uncaught_exception_stack_size);
  EXPECT_EQ(0xFFFFFFFFu, settings.background_color);
}

TEST_F(ORBCefSettingsTest, TheLanguageIsLocaleAndAcceptedLanguage) {
  Fill();
  EXPECT_EQ("de", TextOf(settings.locale));
  EXPECT_EQ("de", TextOf(settings.accept_language_list));
  language = CefString();
  Fill();
  EXPECT_EQ("", TextOf(settings.locale));
  EXPECT_EQ("", TextOf(settings.accept_language_list));
}

TEST_F(ORBCefSettingsTest, TheProductCarriesTheReleaseLevel) {
  tools.release_level = 425;
  Fill();
  EXPECT_THAT(TextOf(settings.user_agent_product), testing::EndsWith(" 7XO/425"));
  EXPECT_THAT(TextOf(settings.user_agent_product), testing::StartsWith("Chrome/"));
}

TEST_F(ORBCefSettingsTest, TheLogSeverityFollowsTheVariableExactly) {
  Fill();
  EXPECT_EQ(LOGSEVERITY_DISABLE, settings.log_severity);
  const std::pair<const char*, int> kSeverities[] = {
      {"verbose", 1}, {"Verbose", 2}, {"", 2}, {"verbose ", 2}, {"sendString", 2}};
  for (const auto& [value, severity] : kSeverities) {
    tools.Set("ORBCEF_LOG", value);
    Fill();
    EXPECT_EQ(severity, static_cast<int>(settings.log_severity)) << value;
  }
}

TEST_F(ORBCefSettingsTest, WithoutLogAndCacheNoPathIsWorkedOut) {
  tools.Set("ORBCEF_NOCACHE", "");
  Fill();
  EXPECT_EQ("", CachePath());
  EXPECT_EQ("", LogFile());
  EXPECT_EQ("", output);
  EXPECT_THAT(tools.Calls(), IsEmpty());
}

TEST_F(ORBCefSettingsTest, WithoutLogTheCacheIsOnAndNothingIsSaid) {
  Fill();
  EXPECT_EQ(Native("/t/WebCache"), CachePath());
  EXPECT_EQ("", LogFile());
  EXPECT_EQ("", output);
}

TEST_F(ORBCefSettingsTest, WithoutCacheItsPathStillPlacesTheLog) {
  tools.Set("ORBCEF_NOCACHE", "1");
  tools.Set("ORBCEF_LOG", "1");
  Fill();
  EXPECT_EQ("", CachePath());
  const std::string log_file = Native("/t/WebCache/cef_client_debug.log");
  EXPECT_EQ(log_file, LogFile());
  EXPECT_EQ("[Info] CEF logging is enabled and should be written in " + log_file + "\n", output);
}

TEST_F(ORBCefSettingsTest, WithLogAndCacheBothPathsAreSaid) {
  tools.Set("ORBCEF_LOG", "1");
  Fill();
  EXPECT_EQ("[Info] CEF logging is enabled and should be written in " +
                Native("/t/WebCache/cef_client_debug.log") +
                "\n[Info] Cache is now enabled for CEF: " + Native("/t/WebCache") + "\n",
            output);
}

TEST_F(ORBCefSettingsTest, TheCacheIsBelowORBTempWhateverItsEnd) {
  for (const char* temp : {"/t", "/t/"}) {
    tools.Set("ORBTemp", Native(temp));
    tools.release_level = 0;
    Fill();
    EXPECT_EQ(Native("/t/WebCache"), CachePath()) << temp;
    tools.release_level = 7;
    Fill();
    EXPECT_EQ(Native("/t/WebCache_7"), CachePath()) << temp;
    tools.release_level = -1;
    Fill();
    EXPECT_EQ(Native("/t/WebCache"), CachePath()) << temp;
  }
}

TEST_F(ORBCefSettingsTest, WithoutORBTempTheCacheIsInTheHostsTemporaryDirectory) {
  tools.Unset("ORBTemp");
  tools.temp_directory = Native("/host/temp");
  Fill();
  EXPECT_EQ(Native("/host/temp/WebCache"), CachePath());
}

TEST_F(ORBCefSettingsTest, TheCachePathOfTheEnvironmentIsTakenAsItStands) {
  tools.Set("ORBCEF_CACHE_PATH", Native("/x"));
  tools.release_level = 7;
  Fill();
  EXPECT_EQ(Native("/x"), CachePath());
  tools.Set("ORBCEF_CACHE_PATH", "");
  Fill();
  EXPECT_EQ("", CachePath());
}

TEST_F(ORBCefSettingsTest, ALogPathWithASeparatorAtItsEndGetsAnother) {
  tools.Set("ORBCEF_LOG", "1");
  tools.Set("ORBCEF_LOG_PATH", Native("/l/"));
  Fill();
  EXPECT_EQ(Native("/l//cef_client_debug.log"), LogFile());
  EXPECT_THAT(tools.Calls(), IsEmpty());
}

TEST_F(ORBCefSettingsTest, TheLogGoesToTheCacheIfItExists) {
  TempDirectory directory;
  tools.Set("ORBCEF_LOG", "1");
  tools.Set("ORBCEF_CACHE_PATH", directory.Path());
  tools.create_directory_result = false;
  Fill();
  EXPECT_EQ(directory.Join("cef_client_debug.log"), LogFile());
  EXPECT_THAT(tools.Calls(), IsEmpty());
}

TEST_F(ORBCefSettingsTest, TheLogGoesToTheCacheIfItCanBeMade) {
  tools.Set("ORBCEF_LOG", "1");
  tools.Set("ORBCEF_CACHE_PATH", Native("/nowhere/cache"));
  Fill();
  EXPECT_EQ(Native("/nowhere/cache/cef_client_debug.log"), LogFile());
  EXPECT_THAT(tools.Calls(), ElementsAre("create_directory " + Native("/nowhere/cache")));
}

TEST_F(ORBCefSettingsTest, TheLogGoesToTheTemporaryDirectoryIfTheCacheCannotBeMade) {
  tools.Set("ORBCEF_LOG", "1");
  tools.Set("ORBCEF_CACHE_PATH", Native("/nowhere/cache"));
  tools.create_directory_result = false;
  tools.temp_directory = Native("/host/temp");
  Fill();
  EXPECT_EQ(Native("/host/temp/cef_client_debug.log"), LogFile());
}

TEST_F(ORBCefSettingsTest, TheHelperIsFoundBelowTheFirstRootThatHasIt) {
  TempDirectory first;
  TempDirectory second;
#if defined(OS_WIN)
  const std::string helper = second.Write("code/bin/7XOWebHelper.exe", "x");
#else
  const std::string helper = second.Write("code/bin/7XOWebHelper", "x");
#endif
  tools.Set("ORBInstallPath", first.Path() + ";" + second.Path());
  Fill();
  EXPECT_EQ(helper, TextOf(settings.browser_subprocess_path));
}

TEST_F(ORBCefSettingsTest, TheHelpersPathIsAbsoluteAlsoBelowARelativeRoot) {
  TempDirectory root;
  root.Write("code/bin/7XOWebHelper", "x");
  root.Write("code/bin/7XOWebHelper.exe", "x");
  // The temporary directory may stand on another drive, where no relative path leads.
  const std::filesystem::path before = std::filesystem::current_path();
  const std::filesystem::path absolute = root.Path();
  std::filesystem::current_path(absolute.parent_path());
  tools.Set("ORBInstallPath", absolute.filename().string());
  Fill();
  std::filesystem::current_path(before);
  const std::string helper = TextOf(settings.browser_subprocess_path);
  EXPECT_FALSE(platform::IsRelative(helper));
  EXPECT_TRUE(std::filesystem::equivalent(std::filesystem::path(root.Path()) / "code" / "bin",
                                          std::filesystem::path(helper).parent_path()));
}

TEST_F(ORBCefSettingsTest, AMissingHelperLeavesItsPathEmpty) {
  Fill();
  EXPECT_EQ("", TextOf(settings.browser_subprocess_path));
  TempDirectory root;
  tools.Set("ORBInstallPath", root.Path());
  Fill();
  EXPECT_EQ("", TextOf(settings.browser_subprocess_path));
}

TEST_F(ORBCefSettingsTest, ADebuggingPortOutsideItsRangeIsNone) {
  Fill();
  EXPECT_EQ(0, settings.remote_debugging_port);
  const std::pair<const char*, int> kPorts[] = {
      {"1023", 0}, {"1024", 1024}, {"65535", 65535}, {"65536", 0},      {"port", 0},
      {"", 0},     {"-9222", 0},   {"9222x", 9222},  {"4294968320", 0}, {" 9222", 9222},
  };
  for (const auto& [value, port] : kPorts) {
    tools.Set("ORBCEF_DEVTOOLS_PORT", value);
    Fill();
    EXPECT_EQ(port, settings.remote_debugging_port) << value;
  }
}

TEST(ORBCefSettingsOffScreenTest, OffScreenRenderingIsTurnedOnByTheVariable) {
  fresh_process::Run([] {
    FakeTools tools;
    tools.Set("ORBCEF_ENABLE_OSR", "");
    CefSettings settings;
    ORBCefSettings::Fill(settings, CefString());
    EXPECT_EQ(1, settings.windowless_rendering_enabled);
  });
}

}  // namespace
