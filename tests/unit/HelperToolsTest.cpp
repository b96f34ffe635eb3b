// The helper's tools table, and the helper as a process beside a module, a false one or none.

#include "HelperTools.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <thread>

#include "ChildProcess.h"
#include "Environment.h"
#include "TempDirectory.h"

namespace {

using child_process::Ending;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

// The text of a record, which is freed as the module would do it.
std::string Take(orbcefstring_c* record) {
  if (!record) {
    return "(null)";
  }
  const std::string text(record->data ? record->data : "", record->length);
  record->free(record);
  return text;
}

class HelperToolsTest : public testing::Test {
 protected:
  bool CreateDirectory(std::string path) {
    orbcefstring_c record = {path.data(), path.size(), nullptr};
    return tools->create_directory(&record) != 0;
  }

  _orbceftools_c* const tools = HelperTools();
};

TEST_F(HelperToolsTest, TheTableIsCompleteAndAlwaysTheSame) {
  std::array<void*, sizeof(_orbceftools_c) / sizeof(void*)> slots;
  static_assert(sizeof(slots) == sizeof(_orbceftools_c));
  std::memcpy(slots.data(), tools, sizeof(slots));
  for (const void* slot : slots) {
    EXPECT_NE(nullptr, slot);
  }
  EXPECT_EQ(tools, HelperTools());
}

TEST_F(HelperToolsTest, TheMainThreadIsTheOneThatAskedFirst) {
  uint8_t elsewhere = 1;
  std::thread([&] { elsewhere = tools->on_main_thread(); }).join();
  EXPECT_EQ(1, tools->on_main_thread());
  EXPECT_EQ(0, elsewhere);
}

TEST_F(HelperToolsTest, TheEnvironmentIsThatOfTheProcess) {
  EXPECT_EQ(0, tools->put_env("ORBCEF_UNIT_TEST_VARIABLE=a=b"));
  EXPECT_STREQ("a=b", tools->get_env("ORBCEF_UNIT_TEST_VARIABLE"));
  EXPECT_STREQ("a=b", std::getenv("ORBCEF_UNIT_TEST_VARIABLE"));
  EXPECT_EQ(0, tools->put_env("ORBCEF_UNIT_TEST_VARIABLE="));
  EXPECT_STREQ("", tools->get_env("ORBCEF_UNIT_TEST_VARIABLE"));
  SetEnvironment("ORBCEF_UNIT_TEST_VARIABLE", nullptr);
  EXPECT_EQ(nullptr, tools->get_env("ORBCEF_UNIT_TEST_VARIABLE"));
}

TEST_F(HelperToolsTest, WhatIsNoAssignmentIsRefused) {
  EXPECT_NE(0, tools->put_env("ORBCEF_UNIT_TEST_VARIABLE"));
  EXPECT_NE(0, tools->put_env("=value"));
  EXPECT_NE(0, tools->put_env(""));
  EXPECT_NE(0, tools->put_env(nullptr));
}

TEST_F(HelperToolsTest, TheTemporaryDirectoryIsThatOfTheProcess) {
  EXPECT_EQ(std::filesystem::temp_directory_path().u8string(), Take(tools->get_temp_directory()));
}

TEST_F(HelperToolsTest, ADirectoryIsCreatedWithItsParents) {
  const TempDirectory folder;
  const std::filesystem::path path = folder.Join("one/tw\xc3\xb6");
  EXPECT_TRUE(CreateDirectory(path.u8string()));
  EXPECT_TRUE(std::filesystem::is_directory(path));
  EXPECT_TRUE(CreateDirectory(path.u8string()));
}

TEST_F(HelperToolsTest, ADirectoryThatCannotBeIsReported) {
  const TempDirectory folder;
  folder.Write("file", "x");
  EXPECT_FALSE(CreateDirectory(folder.Join("file")));
  EXPECT_FALSE(CreateDirectory(folder.Join("file/below")));
  EXPECT_FALSE(CreateDirectory(""));
  EXPECT_EQ(0, tools->create_directory(nullptr));
}

TEST_F(HelperToolsTest, WhatOnlyAHostHasIsAnsweredWithNone) {
  int32_t setting = -1;
  EXPECT_STREQ("English", tools->compute_lang());
  EXPECT_EQ(0, tools->get_release_level());
  EXPECT_EQ(nullptr, tools->build_catalog_message("ORBCefClientHandler", "key"));
  EXPECT_EQ(0, tools->is_record_capture());
  EXPECT_EQ(0, tools->is_record_replay());
  EXPECT_EQ(ORBCEF_RECORDMODE_NONE, tools->get_record_mode());
  EXPECT_EQ(0, tools->get_json_value(nullptr, nullptr, nullptr, 0));
  EXPECT_EQ(nullptr, tools->get_json_module_map());
  EXPECT_EQ(nullptr, tools->remap_url(nullptr));
  EXPECT_EQ(nullptr, tools->read_from_preferences("ORBCefStore", "key"));
  EXPECT_EQ(nullptr, tools->read_from_sys_settings("section", "key"));
  EXPECT_EQ(0, tools->read_from_settings("FrameGeneral", "UserInterfaceLanguage", &setting));
  EXPECT_EQ(-1, setting);
  EXPECT_EQ(0, tools->should_dispatch_events_on_main_thread());
}

TEST_F(HelperToolsTest, ASavedPreferenceIsRejectedAndNotLostInSilence) {
  EXPECT_THAT(Take(tools->save_in_preference("ORBCefStore", "key", nullptr)),
              StartsWith("new Error("));
}

TEST_F(HelperToolsTest, ATaskIsRefusedAndNeverRuns) {
  bool ran = false;
  EXPECT_EQ(0, tools->post_task_on_main_thread([](void* data) { *static_cast<bool*>(data) = true; },
                                               &ran));
  EXPECT_FALSE(ran);
}

// A variable of this process, which the helper inherits, for one test.
class ScopedVariable {
 public:
  ScopedVariable(const char* name, const std::string& value)
      : _name(name), _old(std::getenv(name) ? std::getenv(name) : "") {
    SetEnvironment(name, value.c_str());
  }
  ~ScopedVariable() { SetEnvironment(_name, _old.empty() ? nullptr : _old.c_str()); }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

 private:
  const char* const _name;
  const std::string _old;
};

#if defined(_WIN32)
constexpr char kHelperFile[] = "7XOWebHelper.exe";
constexpr char kModuleFile[] = "ORBCefWrapperMT.dll";
constexpr char kLibraryPath[] = "PATH";
#else
constexpr char kHelperFile[] = "7XOWebHelper";
constexpr char kModuleFile[] = "libORBCefWrapperMT.so";
constexpr char kLibraryPath[] = "LD_LIBRARY_PATH";
#endif

// Runs a copy of the helper in a folder that holds nothing but what the test puts there.
class HelperProcessTest : public testing::Test {
 protected:
  void SetUp() override { Copy(ORBCEF_HELPER_FILE, kHelperFile); }

  void Copy(const char* from, const char* name) {
    std::filesystem::copy_file(from, std::filesystem::u8path(folder.Join(name)));
  }
  std::string ModuleFile() const { return folder.Join(kModuleFile); }
  Ending Run() const { return child_process::Run(folder.Join(kHelperFile), "--type=renderer"); }

  const TempDirectory folder;
};

TEST_F(HelperProcessTest, TheModuleBesideItIsCalledInOrderAndGivesTheExitCode) {
  const ScopedVariable variable("ORBCEF_UNIT_TEST_VARIABLE", "inherited");
  Copy(ORBCEF_HELPER_MODULE_DOUBLE, kModuleFile);
  const Ending ending = Run();
  EXPECT_EQ(42, ending.code);
  EXPECT_EQ(
      "factory 1 0 orbcefglobal_c\nset_tools table tools\nexecute table 0 null env=inherited\n",
      ending.output);
  EXPECT_EQ("", ending.errors);
}

TEST_F(HelperProcessTest, WithoutAModuleOneLineSaysWhichFileIsMissing) {
  const Ending ending = Run();
  EXPECT_EQ(120, ending.code);
  EXPECT_THAT(ending.errors,
              StartsWith("7XOWebHelper: cannot load the module \"" + ModuleFile() + "\""));
  EXPECT_EQ(1, std::count(ending.errors.begin(), ending.errors.end(), '\n'));
}

TEST_F(HelperProcessTest, TheModuleIsNotSearchedForElsewhere) {
  const std::string elsewhere =
      std::filesystem::path(ORBCEF_HELPER_MODULE_DOUBLE).parent_path().string();
  const ScopedVariable variable(kLibraryPath, elsewhere);
  EXPECT_EQ(120, Run().code);
}

TEST_F(HelperProcessTest, AFileThatIsNoLibraryIsNotLoaded) {
  folder.Write(kModuleFile, "no library");
  const Ending ending = Run();
  EXPECT_EQ(120, ending.code);
  EXPECT_THAT(ending.errors, HasSubstr("cannot load the module"));
}

TEST_F(HelperProcessTest, AModuleWithoutTheFactoryHasItsOwnExitCode) {
  Copy(ORBCEF_HELPER_EMPTY_MODULE, kModuleFile);
  const Ending ending = Run();
  EXPECT_EQ(121, ending.code);
  EXPECT_EQ(
      "7XOWebHelper: the module \"" + ModuleFile() + "\" has no symbol orbcef_pluginfactory\n",
      ending.errors);
}

TEST_F(HelperProcessTest, AModuleThatRefusesTheVersionHasItsOwnExitCode) {
  const ScopedVariable variable("ORBCEF_UNIT_TEST_REFUSE", "1");
  Copy(ORBCEF_HELPER_MODULE_DOUBLE, kModuleFile);
  const Ending ending = Run();
  EXPECT_EQ(122, ending.code);
  EXPECT_THAT(ending.errors, EndsWith("does not serve this helper's version\n"));
}

}  // namespace
