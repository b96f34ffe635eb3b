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
  EXPECT_EQ("some/file", absolute.substr(absolute.size() - 9));
}

}  // namespace
