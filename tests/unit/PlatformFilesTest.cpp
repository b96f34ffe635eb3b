#include "platform/Files.h"

#include <gtest/gtest.h>

#include "TempDirectory.h"

namespace {

TEST(PlatformFilesTest, AFileIsReadableAndNoDirectory) {
  TempDirectory directory;
  const std::string file = directory.Write("a.txt", "x");
  EXPECT_TRUE(platform::IsReadable(file));
  EXPECT_TRUE(platform::IsReadable(directory.Write("empty", "")));
  EXPECT_FALSE(platform::IsDirectory(file));
}

TEST(PlatformFilesTest, ADirectoryIsNotReadable) {
  TempDirectory directory;
  EXPECT_FALSE(platform::IsReadable(directory.Path()));
  EXPECT_TRUE(platform::IsDirectory(directory.Path()));
}

TEST(PlatformFilesTest, WhatDoesNotExistIsNeither) {
  TempDirectory directory;
  EXPECT_FALSE(platform::IsReadable(directory.Join("none")));
  EXPECT_FALSE(platform::IsDirectory(directory.Join("none")));
  EXPECT_FALSE(platform::IsReadable(""));
  EXPECT_FALSE(platform::IsDirectory(""));
}

TEST(PlatformFilesTest, APathIsRelativeUnlessItStartsAtARoot) {
  EXPECT_TRUE(platform::IsRelative(""));
  EXPECT_TRUE(platform::IsRelative("a"));
  EXPECT_TRUE(platform::IsRelative(std::string("a") + platform::kSeparator + "b"));
  EXPECT_TRUE(platform::IsRelative("."));
  TempDirectory directory;
  EXPECT_FALSE(platform::IsRelative(directory.Path()));
}

TEST(PlatformFilesTest, ARelativePathIsMadeAbsoluteBelowTheCurrentDirectory) {
  TempDirectory directory;
  EXPECT_EQ("", platform::MakeAbsolute(""));
  EXPECT_EQ(directory.Path(), platform::MakeAbsolute(directory.Path()));
  const std::string absolute = platform::MakeAbsolute("some/file");
  EXPECT_FALSE(platform::IsRelative(absolute));
  EXPECT_EQ("file", absolute.substr(absolute.size() - 4));
}

TEST(PlatformFilesTest, PathsAreUtf8) {
  TempDirectory directory;
  const std::string file = directory.Write("caf\xc3\xa9/\xe6\x97\xa5\xe6\x9c\xac.txt", "x");
  EXPECT_TRUE(platform::IsReadable(file));
  EXPECT_TRUE(platform::IsDirectory(directory.Join("caf\xc3\xa9")));
  // Another encoding's name for the folder is nobody's.
  EXPECT_FALSE(platform::IsDirectory(directory.Path() + platform::kSeparator + "caf\xe9"));
}

TEST(PlatformFilesTest, APathMayHaveMoreThanTwoHundredAndSixtyCharacters) {
  TempDirectory directory;
  const std::string part(100, 'a');
  const std::string folder = part + "/" + part + "/" + part;
  const std::string file = directory.Write(folder + "/a.txt", "x");
  ASSERT_GT(file.size(), 300u);
  EXPECT_TRUE(platform::IsReadable(file));
  EXPECT_TRUE(platform::IsDirectory(directory.Join(folder)));
  EXPECT_TRUE(platform::IsReadable(directory.Path() + "/" + folder + "/../" + part + "/a.txt"));
  EXPECT_FALSE(platform::IsReadable(directory.Join(folder)));
  EXPECT_FALSE(platform::IsReadable(directory.Join(folder + "/b.txt")));
  EXPECT_FALSE(platform::IsRelative(file));
  EXPECT_TRUE(platform::IsRelative(folder));
}

#if defined(_WIN32)
TEST(PlatformFilesTest, AWindowsRootIsADriveAServerOrABackslash) {
  EXPECT_FALSE(platform::IsRelative("C:\\a"));
  EXPECT_FALSE(platform::IsRelative("c:a"));
  EXPECT_FALSE(platform::IsRelative("\\\\server\\share"));
  EXPECT_FALSE(platform::IsRelative("\\a"));
  // The system's own answer: a slash is no root.
  EXPECT_TRUE(platform::IsRelative("/a"));
}

TEST(PlatformFilesTest, SlashesServeAsWell) {
  TempDirectory directory;
  directory.Write("a/b.txt", "x");
  EXPECT_TRUE(platform::IsReadable(directory.Path() + "/a/b.txt"));
}
#endif

}  // namespace
