#include "ORBCefToolsWrapperMT.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "CapturedLog.h"
#include "FakeTools.h"
#include "FreshProcess.h"
#include "TempDirectory.h"
#include "include/cef_version.h"
#include "platform/Files.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace Wrapper = ORBCefToolsWrapperMT;

constexpr char kEngineVersion[] =
#if CEF_VERSION_MAJOR == 104
    "104.0.5112.81";
#else
    "108.0.5359.125";
#endif

TEST(ORBCefToolsWrapperMTTest, TheThreadGuardFailsOnAnotherThread) {
  fresh_process::Run([] {
    FakeTools tools;
    tools.Unset("ORBCEF_NO_TID_CHECK");
    EXPECT_FALSE(Wrapper::CheckThread(TID_UI));
    EXPECT_FALSE(Wrapper::CheckThread(TID_IO));
  });
}

TEST(ORBCefToolsWrapperMTTest, TheThreadGuardAlwaysPassesWithTheVariableEvenIfItIsEmpty) {
  fresh_process::Run([] {
    FakeTools tools;
    tools.Set("ORBCEF_NO_TID_CHECK", "");
    EXPECT_TRUE(Wrapper::CheckThread(TID_UI));
    EXPECT_TRUE(Wrapper::CheckThread(TID_RENDERER));
  });
}

TEST(ORBCefToolsWrapperMTTest, TheThreadGuardReadsItsVariableOnce) {
  fresh_process::Run([] {
    FakeTools tools;
    tools.Unset("ORBCEF_NO_TID_CHECK");
    EXPECT_FALSE(Wrapper::CheckThread(TID_UI));
    tools.Set("ORBCEF_NO_TID_CHECK", "1");
    EXPECT_FALSE(Wrapper::CheckThread(TID_UI));
  });
}

TEST(ORBCefToolsWrapperMTTest, OffScreenRenderingIsReadOnce) {
  fresh_process::Run([] {
    FakeTools tools;
    EXPECT_FALSE(Wrapper::IsOffScreenRendering());
    tools.Set("ORBCEF_ENABLE_OSR", "1");
    EXPECT_FALSE(Wrapper::IsOffScreenRendering());
  });
  fresh_process::Run([] {
    FakeTools tools;
    tools.Set("ORBCEF_ENABLE_OSR", "");
    EXPECT_TRUE(Wrapper::IsOffScreenRendering());
  });
}

TEST(ORBCefToolsWrapperMTTest, EitherVariableMakesATestRig) {
  fresh_process::Run([] {
    FakeTools tools;
    EXPECT_FALSE(Wrapper::IsTestRig());
  });
  for (const char* variable : {"QVL_RIG_TMP", "ORBCEF_RECORD"}) {
    fresh_process::Run([&] {
      FakeTools tools;
      tools.Set(variable, "");
      EXPECT_TRUE(Wrapper::IsTestRig());
    });
  }
}

TEST(ORBCefToolsWrapperMTTest, AnExecToolCountsWhateverItsCase) {
  FakeTools tools;
  EXPECT_FALSE(Wrapper::IsUnderTestTool());
  tools.Set("QVL_RIG_EXECTOOL", "MemoryCheckTool");
  EXPECT_TRUE(Wrapper::IsUnderTestTool());
}

TEST(ORBCefToolsWrapperMTTest, TenCharactersOfTheExecToolAreTooFew) {
  FakeTools tools;
  tools.Set("QVL_RIG_EXECTOOL", "memorychec");
  EXPECT_FALSE(Wrapper::IsUnderTestTool());
}

TEST(ORBCefToolsWrapperMTTest, PurifyAndPurcovCountEvenIfTheyAreEmpty) {
  for (const char* variable : {"ReplayPurify", "ReplayPurcov"}) {
    FakeTools tools;
    tools.Set(variable, "");
    EXPECT_TRUE(Wrapper::IsUnderTestTool()) << variable;
  }
}

TEST(ORBCefToolsWrapperMTTest, TheTestToolIsAskedForAtEachCall) {
  FakeTools tools;
  tools.Set("ReplayPurify", "1");
  EXPECT_TRUE(Wrapper::IsUnderTestTool());
  tools.Unset("ReplayPurify");
  EXPECT_FALSE(Wrapper::IsUnderTestTool());
}

TEST(ORBCefToolsWrapperMTTest, TheProductNamesEngineAndReleaseLevel) {
  FakeTools tools;
  const std::string engine = std::string("Chrome/") + kEngineVersion;
  tools.release_level = 425;
  EXPECT_EQ(engine + " 7XO/425", Wrapper::GetUserAgentProduct());
  // Made anew at each call.
  tools.release_level = 1;
  EXPECT_EQ(engine + " 7XO/1", Wrapper::GetUserAgentProduct());
}

TEST(ORBCefToolsWrapperMTTest, TheProductOfNoReleaseLevelIsOnePointZero) {
  FakeTools tools;
  const std::string product = std::string("Chrome/") + kEngineVersion + " 7XO/1.0";
  EXPECT_EQ(product, Wrapper::GetUserAgentProduct());
  tools.release_level = -4;
  EXPECT_EQ(product, Wrapper::GetUserAgentProduct());
}

TEST(ORBCefToolsWrapperMTTest, ALogTopicIsAnyPartOfTheVariable) {
  fresh_process::Run([] {
    FakeTools tools;
    tools.Set("ORBCEF_LOG", "verbose,sendString");
    EXPECT_TRUE(Wrapper::IsLogTopicEnabled("sendString"));
    EXPECT_TRUE(Wrapper::IsLogTopicEnabled("bose,se"));
    EXPECT_FALSE(Wrapper::IsLogTopicEnabled("SendString"));
    tools.Set("ORBCEF_LOG", "other");
    EXPECT_FALSE(Wrapper::IsLogTopicEnabled("other"));
  });
  fresh_process::Run([] {
    FakeTools tools;
    EXPECT_FALSE(Wrapper::IsLogTopicEnabled("sendString"));
  });
}

TEST(ORBCefToolsWrapperMTTest, TheInstallPathIsReadOnce) {
  fresh_process::Run([] {
    FakeTools tools;
    TempDirectory first;
    TempDirectory second;
    const std::string roots = first.Path() + ";" + second.Path();
    tools.Set("ORBInstallPath", roots);
    EXPECT_EQ(roots, Wrapper::InstallPath());
    tools.Set("ORBInstallPath", second.Path());
    EXPECT_EQ(roots, Wrapper::InstallPath());
  });
  fresh_process::Run([] {
    FakeTools tools;
    EXPECT_EQ("", Wrapper::InstallPath());
  });
}

TEST(ORBCefToolsWrapperMTTest, ARelativeRootStaysWhereItWasAtTheFirstCall) {
  fresh_process::Run([] {
    FakeTools tools;
    TempDirectory root;
    root.Write("webapps/a.txt", "x");
    // The temporary directory may stand on another drive, where no relative path leads.
    const std::filesystem::path folder = root.Path();
    std::filesystem::current_path(folder.parent_path());
    tools.Set("ORBInstallPath", folder.filename().string() + ";" + root.Path());
    const std::string roots = Wrapper::InstallPath();
    std::filesystem::current_path(folder);
    EXPECT_EQ(roots, Wrapper::InstallPath());
    const std::string first = Wrapper::SplitString(roots, ';').front();
    EXPECT_FALSE(platform::IsRelative(first));
    EXPECT_TRUE(std::filesystem::equivalent(folder, first));
    EXPECT_NE("", Wrapper::FindFileOnPaths("webapps/a.txt", first));
    // A directory that is somebody's current one cannot be removed everywhere.
    std::filesystem::current_path(folder.parent_path());
  });
}

TEST(ORBCefToolsWrapperMTTest, OnlyARelativeRootIsPutIntoTheHostsEnvironment) {
  TempDirectory root;
  const std::string absolute = platform::MakeAbsolute("a");
  const std::pair<std::string, std::vector<std::string>> kCases[] = {
      {"", {}},
      {root.Path(), {}},
      {root.Path() + ";" + root.Path() + ";", {}},
      {"a", {"put_env ORBInstallPath=" + absolute}},
      {root.Path() + ";a", {"put_env ORBInstallPath=" + root.Path() + ";" + absolute}},
  };
  for (const auto& [roots, calls] : kCases) {
    FakeTools tools;
    tools.Set("ORBInstallPath", roots);
    Wrapper::FixInstallPath();
    Wrapper::FixInstallPath();
    EXPECT_EQ(calls, tools.Calls()) << roots;
  }
  FakeTools tools;
  Wrapper::FixInstallPath();
  EXPECT_THAT(tools.Calls(), IsEmpty());
}

TEST(ORBCefToolsWrapperMTTest, TheBaseLanguageEndsAtTheFirstHyphen) {
  EXPECT_EQ("zh", Wrapper::BaseLanguage("zh-CN"));
  EXPECT_EQ("zh", Wrapper::BaseLanguage("zh-Hant-TW"));
  EXPECT_EQ("fil", Wrapper::BaseLanguage("fil"));
  EXPECT_EQ("", Wrapper::BaseLanguage("-US"));
  EXPECT_EQ("", Wrapper::BaseLanguage(""));
}

TEST(ORBCefToolsWrapperMTTest, ToBackslashesTurnsEverySlashOnEverySystem) {
  std::string text = "/a/b\\c";
  Wrapper::ToBackslashes(text);
  EXPECT_EQ("\\a\\b\\c", text);
}

TEST(ORBCefToolsWrapperMTTest, ToNativeSeparatorsWritesTheSystemsOwn) {
  std::string text = "a/b";
  Wrapper::ToNativeSeparators(text);
  EXPECT_EQ(std::string("a") + platform::kSeparator + "b", text);
}

TEST(ORBCefToolsWrapperMTTest, ACanonicalURLIsWrittenAsTheEngineWritesIt) {
  EXPECT_EQ("http://example.com/", Wrapper::CanonicalURL("HTTP://Example.COM"));
  EXPECT_EQ("http://example.com/c?d#e", Wrapper::CanonicalURL("http://example.com/a/../c?d#e"));
  EXPECT_EQ("", Wrapper::CanonicalURL(""));
  EXPECT_EQ("", Wrapper::CanonicalURL("no url"));
}

TEST(ORBCefToolsWrapperMTTest, SplitStringDropsOnlyAnEmptyLastPart) {
  EXPECT_THAT(Wrapper::SplitString("", ';'), IsEmpty());
  EXPECT_THAT(Wrapper::SplitString("a", ';'), ElementsAre("a"));
  EXPECT_THAT(Wrapper::SplitString("a;b", ';'), ElementsAre("a", "b"));
  EXPECT_THAT(Wrapper::SplitString("a;b;", ';'), ElementsAre("a", "b"));
  EXPECT_THAT(Wrapper::SplitString("a;;b", ';'), ElementsAre("a", "", "b"));
  EXPECT_THAT(Wrapper::SplitString(";a", ';'), ElementsAre("", "a"));
  EXPECT_THAT(Wrapper::SplitString(";", ';'), ElementsAre(""));
  EXPECT_THAT(Wrapper::SplitString("a;;", ';'), ElementsAre("a", ""));
}

TEST(ORBCefToolsWrapperMTTest, JoinStringsPutsNoSeparatorAtTheEnd) {
  EXPECT_EQ("", Wrapper::JoinStrings({}, ';'));
  EXPECT_EQ("a", Wrapper::JoinStrings({"a"}, ';'));
  EXPECT_EQ("a;;b", Wrapper::JoinStrings({"a", "", "b"}, ';'));
}

TEST(ORBCefToolsWrapperMTTest, TheFirstRootThatHasTheFileWins) {
  TempDirectory first;
  TempDirectory second;
  const std::string roots = first.Path() + ";" + second.Path();
  EXPECT_EQ("", Wrapper::FindFileOnPaths("sub/file.txt", roots));
  const std::string in_second = second.Write("sub/file.txt", "2");
  EXPECT_EQ(in_second, Wrapper::FindFileOnPaths("sub/file.txt", roots));
  const std::string in_first = first.Write("sub/file.txt", "1");
  EXPECT_EQ(in_first, Wrapper::FindFileOnPaths("sub/file.txt", roots));
}

TEST(ORBCefToolsWrapperMTTest, ADirectoryIsNoFileAndAFileIsNoDirectory) {
  TempDirectory root;
  const std::string directory = root.MakeDirectory("directory");
  root.Write("file", "x");
  EXPECT_EQ("", Wrapper::FindFileOnPaths("directory", root.Path()));
  EXPECT_EQ("", Wrapper::FindDirectoryOnPaths("file", root.Path()));
  EXPECT_EQ(directory, Wrapper::FindDirectoryOnPaths("directory", root.Path()));
}

TEST(ORBCefToolsWrapperMTTest, TheFirstRootThatHasTheDirectoryWins) {
  TempDirectory first;
  TempDirectory second;
  const std::string in_first = first.MakeDirectory("webapps/m");
  second.MakeDirectory("webapps/m");
  EXPECT_EQ(in_first,
            Wrapper::FindDirectoryOnPaths("webapps/m", first.Path() + ";" + second.Path()));
}

TEST(ORBCefToolsWrapperMTTest, NoRootsFindNothing) {
  EXPECT_EQ("", Wrapper::FindFileOnPaths("etc/passwd", ""));
  EXPECT_EQ("", Wrapper::FindDirectoryOnPaths("etc", ""));
}

// A host's counted table with nothing but the count.
struct CountedTable {
  int count = 1;
  void (*add_ref)(CountedTable*) = [](CountedTable* self) { ++self->count; };
  void (*release)(CountedTable*) = [](CountedTable* self) { --self->count; };
};

TEST(ORBCefTableRefTest, HoldsOneReferenceUntilItsEnd) {
  CountedTable table;
  {
    ORBCefTableRef<CountedTable> ref(&table);
    EXPECT_EQ(2, table.count);
    ORBCefTableRef<CountedTable> copy = ref;
    EXPECT_EQ(3, table.count);
    ORBCefTableRef<CountedTable> moved = std::move(copy);
    EXPECT_EQ(3, table.count);
    EXPECT_FALSE(copy);
    EXPECT_EQ(&table, moved.Get());
    ref = ORBCefTableRef<CountedTable>();
    EXPECT_EQ(2, table.count);
    moved.Reset();
    EXPECT_EQ(1, table.count);
    moved.Reset();
    EXPECT_EQ(1, table.count);
  }
  EXPECT_EQ(1, table.count);
}

TEST(ORBCefTableRefTest, AnAccessToNoTableIsReported) {
  FakeTools tools;
  const ORBCefTableRef<CountedTable> ref(nullptr);
  CountedTable* table = nullptr;
  const std::string log = CapturedLog([&] { table = ref.operator->(); });
  EXPECT_EQ(nullptr, table);
  EXPECT_THAT(log, HasSubstr("_p!=0 in "));
}

}  // namespace
